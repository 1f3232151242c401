#pragma once

namespace tavro::counts {

// How many records each list of the platform has.
inline constexpr int kRecords = 1000;

} // namespace tavro::counts
