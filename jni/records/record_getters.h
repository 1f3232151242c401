// Handing middleware structures to Java objects, driven by rows: one a key, with the setter that takes
// its value.
#pragma once

#include "jni/env/jni_env.h"
#include "jni/records/record_rows.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tavro {

struct Getter {
    // The value of an int key; nothing, and then no setter is called, when the structure has none.
    using Value = std::optional<jint> (*)(const Getter&, const std::byte* structure);
    // Writes the line that comes before the value when it is asked for by its key.
    using Trace = void (*)(const std::byte* structure);

    const char* key;
    const char* setter; // takes an int, or a string where `value` is null
    Value value;
    Place from;
    std::uint32_t mask = 0; // of a flag: its bit in `from`
    Trace trace = nullptr;
};

// How int values are read.
std::optional<jint> unsigned_value(const Getter& getter, const std::byte* structure);
std::optional<jint> flag_value(const Getter& getter, const std::byte* structure);

constexpr Getter number_getter(const char* key, const char* setter, Place from, Getter::Trace trace = nullptr) {
    return {key, setter, unsigned_value, from, 0, trace};
}

// 1 when the bit is set, else 0.
constexpr Getter flag_getter(const char* key, const char* setter, Place from, std::uint32_t mask) {
    return {key, setter, flag_value, from, mask, nullptr};
}

// A value that is worked out.
constexpr Getter special_getter(const char* key, const char* setter, Getter::Value value, Place from = {}) {
    return {key, setter, value, from, 0, nullptr};
}

// The text up to its NUL, or all of its place.
constexpr Getter text_getter(const char* key, const char* setter, Place from, Getter::Trace trace = nullptr) {
    return {key, setter, nullptr, from, 0, trace};
}

// Hands one value to the setter of `object`, looked up on `cls`. A string made for it is given back.
void hand_over(const Getter& getter, Jni& jni, jclass cls, jobject object, const std::byte* structure);

// Hands all values over, in the order of the rows.
template <std::size_t N, class Structure>
void hand_over_all(const Getter (&getters)[N], Jni& jni, jclass cls, jobject object, const Structure& structure) {
    for (const Getter& getter : getters) {
        hand_over(getter, jni, cls, object, reinterpret_cast<const std::byte*>(&structure));
    }
}

// Finds the row of a key; null when there is none.
const Getter* find_getter(const Getter* first, const Getter* last, const char* key);

// Hands over the value of one key, with its line. An unknown key does nothing and returns false.
template <std::size_t N, class Structure>
bool hand_over_one(const Getter (&getters)[N], Jni& jni, jclass cls, jobject object, const char* key,
                   const Structure& structure) {
    const auto* bytes = reinterpret_cast<const std::byte*>(&structure);
    const Getter* getter = find_getter(getters, getters + N, key);
    if (getter == nullptr) {
        return false;
    }
    if (getter->trace != nullptr) {
        getter->trace(bytes);
    }
    hand_over(*getter, jni, cls, object, bytes);
    return true;
}

} // namespace tavro
