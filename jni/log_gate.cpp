#include "jni/log_gate.h"

#include <cutils/properties.h>

#include <cstring>
#include <limits>
#include <memory>

namespace {

constexpr int kNothingPasses = std::numeric_limits<int>::max();
constexpr char kFallbackPrefix[] = "persist.";

// The lowest level that passes when the property's value starts with `first`.
constexpr int threshold(char first) {
    const char upper = first >= 'a' && first <= 'z' ? static_cast<char>(first - 'a' + 'A') : first;
    switch (upper) {
    case 'V':
        return 1;
    case 'D':
        return 2;
    case 'I':
        return 3;
    case 'W':
        return 4;
    case 'E':
        return 5;
    default:
        return kNothingPasses;
    }
}

} // namespace

unsigned int __velotra_log_is_loggable(int level, const char* property) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(property, value, "");
    if (value[0] == '\0') {
        const std::size_t prefix_length = sizeof(kFallbackPrefix) - 1;
        const std::size_t length = std::strlen(property);
        const auto fallback = std::make_unique<char[]>(prefix_length + length + 1);
        std::memcpy(fallback.get(), kFallbackPrefix, prefix_length);
        std::memcpy(fallback.get() + prefix_length, property, length);
        property_get(fallback.get(), value, "");
    }
    // An empty value has the terminator as its first character, which no threshold knows. The signed
    // comparison lets the highest level through whatever the property says.
    return threshold(value[0]) <= level ? 1 : 0;
}
