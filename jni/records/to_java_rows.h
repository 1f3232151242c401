// Rows that pass the values of a record to a Java object: one row per key, naming the setter.
#pragma once

#include "jni/env/jni_env.h"
#include "jni/records/place.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tavro {

struct ToJavaRow {
    // The value for an int setter; the setter is not called without one.
    using Value = std::optional<jint> (*)(const ToJavaRow&, const std::byte* structure);
    // Writes the debug line that precedes the value when it is asked for by its key.
    using Trace = void (*)(const std::byte* structure);

    const char* key;
    const char* setter; // takes an int, or a string where `value` is null
    Value value;
    Place from;
    std::uint32_t mask = 0; // flags: the bit in `from`
    Trace trace = nullptr;
};

// How int values are read.
std::optional<jint> unsigned_value(const ToJavaRow& row, const std::byte* structure);
std::optional<jint> flag_value(const ToJavaRow& row, const std::byte* structure);

constexpr ToJavaRow number_to_java(const char* key, const char* setter, Place from, ToJavaRow::Trace trace = nullptr) {
    return {key, setter, unsigned_value, from, 0, trace};
}

// 1 when the bit is set, else 0.
constexpr ToJavaRow flag_to_java(const char* key, const char* setter, Place from, std::uint32_t mask) {
    return {key, setter, flag_value, from, mask, nullptr};
}

// A value with a rule of its own.
constexpr ToJavaRow special_to_java(const char* key, const char* setter, ToJavaRow::Value value, Place from) {
    return {key, setter, value, from, 0, nullptr};
}

// Text up to its NUL, or the whole place if unterminated.
constexpr ToJavaRow text_to_java(const char* key, const char* setter, Place from, ToJavaRow::Trace trace = nullptr) {
    return {key, setter, nullptr, from, 0, trace};
}

// Passes one value to its setter on `object`; setters are looked up on `cls`. Deletes the reference of a string made
// for it.
void pass(const ToJavaRow& row, Jni& jni, jclass cls, jobject object, const std::byte* structure);

// Passes all values, in the order of the rows.
template <std::size_t N, class Structure>
void pass_all(const ToJavaRow (&rows)[N], Jni& jni, jclass cls, jobject object, const Structure& structure) {
    for (const ToJavaRow& row : rows) {
        pass(row, jni, cls, object, reinterpret_cast<const std::byte*>(&structure));
    }
}

// The row of a key; null when there is none.
const ToJavaRow* find_row(const ToJavaRow* first, const ToJavaRow* last, const char* key);

// Writes the line of one key and passes its value. Returns false, with nothing done, when no row has the key.
template <std::size_t N, class Structure>
bool pass_one(const ToJavaRow (&rows)[N], Jni& jni, jclass cls, jobject object, const char* key,
              const Structure& structure) {
    const auto* bytes = reinterpret_cast<const std::byte*>(&structure);
    const ToJavaRow* row = find_row(rows, rows + N, key);
    if (row == nullptr) {
        return false;
    }
    if (row->trace != nullptr) {
        row->trace(bytes);
    }
    pass(*row, jni, cls, object, bytes);
    return true;
}

} // namespace tavro
