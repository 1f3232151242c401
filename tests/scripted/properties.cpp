// The scripted system properties.
#include "recorder.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstring>

extern "C" int property_get(const char* key, char* value, const char* default_value) {
    const std::string otherwise = default_value == nullptr ? "" : default_value;
    const std::string found = tavro::script::property(key, otherwise).value_or(otherwise);
    const std::size_t length = std::min<std::size_t>(found.size(), PROPERTY_VALUE_MAX - 1);
    std::memcpy(value, found.data(), length);
    value[length] = '\0';
    return static_cast<int>(length);
}
