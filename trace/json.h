// Events in the Trace Event Format, which Perfetto and Chrome read.
#pragma once

#include <cstdint>
#include <string>

namespace tavro::trace {

// The text as a JSON string. It must have been escaped, see text.h.
std::string json_string(const std::string& text);

// The text as a JSON number if it is a whole decimal number of at most 15 digits, otherwise as a JSON string.
std::string json_value(const std::string& text);

// Nanoseconds as microseconds with three places.
std::string json_microseconds(std::int64_t nanoseconds);

// An event of this process at a time in nanoseconds. `phase` is the kind of event, such as X; `rest` its other members.
std::string json_event(long thread, const char* phase, std::int64_t at_ns, const std::string& rest);

} // namespace tavro::trace
