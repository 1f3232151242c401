#include "jni/log/log_gate.h"

#include <cutils/properties.h>

#include <cstdlib>
#include <cstring>
#include <limits>

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

// `length` is the length of the property's name. Inline, so that it is a constant for the library's own property.
inline bool passes(int level, const char* property, std::size_t length) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(property, value, "");
    if (value[0] == '\0') {
        constexpr std::size_t kPrefixLength = sizeof(kFallbackPrefix) - 1;
        auto* const fallback = static_cast<char*>(std::malloc(kPrefixLength + length + 1));
        if (fallback != nullptr) {
            std::memcpy(fallback, kFallbackPrefix, kPrefixLength);
            std::memcpy(fallback + kPrefixLength, property, length + 1);
            property_get(fallback, value, "");
            std::free(fallback);
        }
    }
    // An empty value starts with its terminator, which no threshold matches. Deliberate: the comparison is signed, so
    // that the highest level always passes.
    return threshold(value[0]) <= level;
}

} // namespace

unsigned int __velotra_log_is_loggable(int level, const char* property) {
    return passes(level, property, std::strlen(property)) ? 1 : 0;
}

namespace tavro {

bool is_loggable(int level) { return passes(level, kLogLevelProperty, sizeof(kLogLevelProperty) - 1); }

} // namespace tavro
