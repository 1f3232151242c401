// printf-style formatting into a string.
#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

// Returns the formatted text, of any length. Returns "" if the format is invalid.
inline std::string format_text(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    std::array<char, 512> most; // nearly every text fits
    const int length = std::vsnprintf(most.data(), most.size(), format, arguments);
    const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
    std::string text;
    if (size < most.size()) {
        text.assign(most.data(), size);
    } else {
        text.resize(size + 1); // the last byte takes the NUL
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}
