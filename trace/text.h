// How values are written in a trace.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavro::trace {

// The text in UTF-8 without control characters: these, and bytes that are not valid UTF-8, become \n, \t or \xNN.
std::string escaped(std::string_view text);

// The same in double quotes; quotes and backslashes inside are escaped. Null becomes the word null.
std::string quoted(std::string_view text);
std::string quoted(const char* text);

// "0x1f".
std::string hexadecimal(std::uint64_t number);

// The text as the content of a JSON string. It must have been escaped before.
std::string json_escaped(std::string_view text);

} // namespace tavro::trace
