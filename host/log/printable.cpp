#include "printable.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::string_view kDot = "\xC2\xB7";

unsigned char byte_at(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

bool is_control(unsigned char byte) { return (byte < 0x20 && byte != '\n' && byte != '\t') || byte == 0x7F; }
bool is_c1(unsigned char byte) { return byte >= 0x80 && byte <= 0x9F; }

// True if the byte may have to be shown as a dot. Most lines contain no such byte.
bool is_suspicious(char letter) {
    const unsigned char byte = static_cast<unsigned char>(letter);
    return is_control(byte) || is_c1(byte);
}

// Length in bytes of the valid UTF-8 sequence at `start`, or 1 if there is none. Overlong forms, surrogates and values
// above U+10FFFF are invalid (Unicode, table 3-7).
std::size_t sequence_length(std::string_view text, std::size_t start) {
    const unsigned char lead = byte_at(text, start);
    std::size_t length = 1;
    unsigned char lowest = 0x80; // of the second byte
    unsigned char highest = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        lowest = lead == 0xE0 ? 0xA0 : lowest;
        highest = lead == 0xED ? 0x9F : highest;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        lowest = lead == 0xF0 ? 0x90 : lowest;
        highest = lead == 0xF4 ? 0x8F : highest;
    }
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char byte = byte_at(text, start + i);
        if (byte < (i == 1 ? lowest : 0x80) || byte > (i == 1 ? highest : 0xBF)) {
            return 1;
        }
    }
    return length;
}

} // namespace

std::string printable(std::string text) {
    const auto first = std::find_if(text.begin(), text.end(), is_suspicious);
    if (first == text.end()) {
        return text;
    }
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = sequence_length(text, at);
        const unsigned char byte = byte_at(text, at);
        const bool c1 = length == 1 ? is_c1(byte) : byte == 0xC2 && is_c1(byte_at(text, at + 1));
        shown.append(c1 || is_control(byte) ? kDot : std::string_view(text).substr(at, length));
        at += length;
    }
    return shown;
}
