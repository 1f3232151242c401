#pragma once

namespace tavro::counts {

// Number of records in every list of the platform.
inline constexpr int kRecords = 1000;

} // namespace tavro::counts
