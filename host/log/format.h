// printf-style formatting into a string.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <string>

// The whole formatted text, however long it is; empty when the format is faulty.
inline std::string format_text(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length) + 1); // the last byte takes the NUL
        std::vsnprintf(text.data(), text.size(), format, again);
        text.pop_back();
    }
    va_end(again);
    return text;
}
