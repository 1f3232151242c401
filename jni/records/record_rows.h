// Conversion of Java record objects into middleware structures, driven by rows.
//
// A structure's key vocabulary is a constexpr table of rows, one a key, in the order in which the keys
// are asked. A row says which Java field holds the value and how and where it is stored. Keys that the
// object does not carry leave their bytes as they are.
#pragma once

#include "jni/records/code_table.h"
#include "jni/records/record_object.h"

#include <cstddef>
#include <cstdint>

namespace tavro {

// Where a value goes in the structure: offset and width in bytes.
struct Place {
    std::uint16_t offset;
    std::uint16_t width;
};

#define TAVRO_PLACE(TYPE, MEMBER)                                                                                      \
    tavro::Place {                                                                                                     \
        static_cast<std::uint16_t>(offsetof(TYPE, MEMBER)),                                                            \
            static_cast<std::uint16_t>(sizeof(static_cast<TYPE*>(nullptr)->MEMBER))                                    \
    }

// What becomes of a value in one variant of a structure.
struct Variant {
    Place to;                         // of width 0: nothing is stored
    const CodeTable* codes = nullptr; // null: the value is stored as it is
};

struct Row {
    // Reads the value from the object and stores it in the structure.
    using Store = void (*)(const Row&, RecordObject&, std::byte* structure);
    // Writes the row's debug line; `value` is the Java value of int fields.
    using Trace = void (*)(const Row&, const std::byte* structure, jint value);

    const char* key;   // asked with isContainsKey
    const char* field; // Java field that holds the value
    Store store;
    Place to;
    Trace trace = nullptr; // null when the row writes no line

    Place to_record = {};              // of a record identifier: where the record id goes, the list id going to `to`
    std::uint32_t mask = 0;            // of a flag: its bit in `to`
    const CodeTable* codes = nullptr;  // of a code: its table
    const Variant* variants = nullptr; // of a value whose place depends on the record: one entry a variant
    const char* name = nullptr;        // what the row's line calls the value
};

// How values are stored. A missing field stores nothing and writes no line.
void store_integer(const Row& row, RecordObject& object, std::byte* structure);
void store_code(const Row& row, RecordObject& object, std::byte* structure);
void store_flag_if_one(const Row& row, RecordObject& object, std::byte* structure);
void store_flag_if_positive(const Row& row, RecordObject& object, std::byte* structure);
void store_text(const Row& row, RecordObject& object, std::byte* structure);
void store_short_text(const Row& row, RecordObject& object, std::byte* structure);
void store_record_id(const Row& row, RecordObject& object, std::byte* structure);

// An int, cut to the width of its place.
constexpr Row integer(const char* key, const char* field, Place to, Row::Trace trace = nullptr) {
    return {key, field, store_integer, to, trace};
}

// An int that stands for a code.
constexpr Row code(const char* key, const char* field, Place to, const CodeTable& codes) {
    Row row = {key, field, store_code, to};
    row.codes = &codes;
    return row;
}

// An int that sets the bits of `mask` when it is exactly 1 and clears them otherwise.
constexpr Row flag(const char* key, const char* field, Place to, std::uint32_t mask, Row::Trace trace = nullptr) {
    Row row = {key, field, store_flag_if_one, to, trace};
    row.mask = mask;
    return row;
}

// The same for an int that sets them when it is greater than 0.
constexpr Row flag_if_positive(const char* key, const char* field, Place to, std::uint32_t mask) {
    Row row = {key, field, store_flag_if_positive, to};
    row.mask = mask;
    return row;
}

// A string: as much of its modified UTF-8 as fits before the place's last byte, filled up with NULs; the
// last byte is always NUL. Null stores nothing.
constexpr Row text(const char* key, const char* field, Place to, Row::Trace trace = nullptr) {
    return {key, field, store_text, to, trace};
}

// A string that is stored only when it is shorter than its place; the bytes behind its NUL stay. Null
// stores nothing. The line is written all the same.
constexpr Row short_text(const char* key, const char* field, Place to, Row::Trace trace = nullptr) {
    return {key, field, store_short_text, to, trace};
}

// A record identifier string, split into list id and record id. One that cannot be parsed stores nothing.
constexpr Row record_id(const char* key, const char* field, Place list, Place record) {
    Row row = {key, field, store_record_id, list};
    row.to_record = record;
    return row;
}

// Anything else.
constexpr Row special(const char* key, const char* field, Row::Store store, Place to = {}) {
    return {key, field, store, to};
}

// Copies text up to the place's last byte, fills it up with NULs; the last byte is always NUL.
void put_text(std::byte* structure, Place to, const char* text);

// Writes the low bytes of a value, as many as the place is wide (1, 2 or 4).
void put(std::byte* structure, Place to, std::uint32_t value);

// Stores a value as one variant has it.
void put(std::byte* structure, const Variant& variant, jint value);

// Walks the rows in order. The object's isContainsKey must have been looked up.
void walk_rows(const Row* first, const Row* last, RecordObject& object, std::byte* structure);

template <std::size_t N, class Structure>
void walk(const Row (&rows)[N], RecordObject& object, Structure& structure) {
    walk_rows(rows, rows + N, object, reinterpret_cast<std::byte*>(&structure));
}

} // namespace tavro
