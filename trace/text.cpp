#include "trace/text.h"

#include <cstddef>
#include <cstdio>

namespace tavro::trace {
namespace {

unsigned char byte_at(std::string_view text, std::size_t index) {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
}

// The length of the printable character at `at`: 0 for control characters and invalid UTF-8 (Unicode, table 3-7).
std::size_t character_length(std::string_view text, std::size_t at) {
    const unsigned char lead = byte_at(text, at);
    if (lead < 0x80) {
        return lead < 0x20 || lead == 0x7F ? 0 : 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    const std::size_t length = lead < 0xE0 ? 2 : (lead < 0xF0 ? 3 : 4);
    unsigned char lowest = lead == 0xE0 ? 0xA0 : (lead == 0xF0 ? 0x90 : 0x80);
    if (lead == 0xC2) {
        lowest = 0xA0; // U+0080 to U+009F are control characters
    }
    const unsigned char highest = lead == 0xED ? 0x9F : (lead == 0xF4 ? 0x8F : 0xBF);
    if (byte_at(text, at + 1) < lowest || byte_at(text, at + 1) > highest) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if ((byte_at(text, at + i) & 0xC0U) != 0x80) {
            return 0;
        }
    }
    return length;
}

void append_escaped(std::string& out, unsigned char byte) {
    if (byte == '\n') {
        out += "\\n";
    } else if (byte == '\t') {
        out += "\\t";
    } else {
        char code[5] = {};
        std::snprintf(code, sizeof(code), "\\x%02x", byte);
        out += code;
    }
}

} // namespace

std::string escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = character_length(text, at);
        if (length == 0) {
            append_escaped(out, byte_at(text, at));
            ++at;
        } else {
            out.append(text.substr(at, length));
            at += length;
        }
    }
    return out;
}

std::string json_escaped(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (const char letter : text) {
        if (letter == '"' || letter == '\\') {
            out += '\\';
        }
        out += letter;
    }
    return out;
}

std::string quoted(std::string_view text) {
    const std::string with_backslashes = json_escaped(text); // before control characters get backslashes of their own
    return '"' + escaped(with_backslashes) + '"';
}

std::string quoted(const char* text) { return text == nullptr ? "null" : quoted(std::string_view(text)); }

std::string hexadecimal(std::uint64_t number) {
    char text[19] = {};
    std::snprintf(text, sizeof(text), "0x%llx", static_cast<unsigned long long>(number));
    return text;
}

} // namespace tavro::trace
