// Record identifiers, "list id, comma, record id", and the decimal numbers in them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace tavro {

// Removes the digits at the front of a text and sets `number` to their value. Returns false and leaves the text alone
// unless there are one to nine of them, which always fit an int.
inline bool take_digits(std::string_view& text, int& number) {
    constexpr std::size_t kMostDigits = 9;
    const std::size_t most = std::min(text.size(), kMostDigits + 1);
    std::size_t digits = 0;
    int value = 0;
    for (; digits < most && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
        value = digits < kMostDigits ? value * 10 + (text[digits] - '0') : value;
    }
    if (digits == 0 || digits > kMostDigits) {
        return false;
    }
    text.remove_prefix(digits);
    number = value;
    return true;
}

// Handles leading blanks, signs and numbers of ten or more digits; throws what std::stoi throws.
[[gnu::cold, gnu::noinline]] inline int unusual_decimal(std::string_view text) { return std::stoi(std::string(text)); }

// The number that a text begins with, as std::stoi reads it: leading blanks and anything after the number are
// ignored. Text without a number, or with one beyond an int, raises std::stoi's exception.
inline int decimal(std::string_view text) {
    int number = 0;
    return take_digits(text, number) ? number : unusual_decimal(text);
}

// Splits an identifier of the usual form: digits, a comma, digits, and then nothing, or a second comma with anything
// after it. Returns false and leaves the out values alone for any other text.
inline bool take_apart(std::string_view identifier, int& list_id, int& record_id) {
    int list = 0;
    int record = 0;
    if (!take_digits(identifier, list) || identifier.empty() || identifier.front() != ',') {
        return false;
    }
    identifier.remove_prefix(1);
    if (!take_digits(identifier, record) || (!identifier.empty() && identifier.front() != ',')) {
        return false;
    }
    list_id = list;
    record_id = record;
    return true;
}

} // namespace tavro
