// Rows that put the values of a Java object into a record.
//
// The keys of a structure are a constexpr table of rows, one row per key, in the order in which the keys are
// asked. A row names the Java field and says how and where its value is put. Keys that the object does not carry
// leave their bytes as they are.
#pragma once

#include "jni/records/code_table.h"
#include "jni/records/place.h"
#include "jni/records/record_object.h"

#include <cstddef>
#include <cstdint>

namespace tavro {

// How a value is put for one medium.
struct Variant {
    Place to;                         // width 0: the value is dropped
    const CodeTable* codes = nullptr; // null: the value is put unchanged
};

struct ToRecordRow {
    // Reads the value from the object and puts it into the structure.
    using Put = void (*)(const ToRecordRow&, RecordObject&, std::byte* structure);
    // Writes the row's debug line; `value` is the Java value of int fields.
    using Trace = void (*)(const ToRecordRow&, const std::byte* structure, jint value);

    const char* key;   // asked with isContainsKey
    const char* field; // Java field that holds the value
    Put put;
    Place to;              // where the value goes; of a row with variants, where it goes for a terrestrial stream
    Trace trace = nullptr; // null when the row writes no line

    Place to_record = {};              // record identifiers: place of the record id; the list id goes to `to`
    std::uint32_t mask = 0;            // flags: the bit in `to`
    const CodeTable* codes = nullptr;  // codes: their table
    const Variant* variants = nullptr; // values whose place depends on the medium: one entry per medium
    const char* name = nullptr;        // the value's name in the row's debug line
};

// How values are put. A missing field puts nothing and writes no line.
void put_integer(const ToRecordRow& row, RecordObject& object, std::byte* structure);
void put_code(const ToRecordRow& row, RecordObject& object, std::byte* structure);
void put_flag_if_one(const ToRecordRow& row, RecordObject& object, std::byte* structure);
void put_flag_if_positive(const ToRecordRow& row, RecordObject& object, std::byte* structure);
void put_cut_text(const ToRecordRow& row, RecordObject& object, std::byte* structure);
void put_short_text(const ToRecordRow& row, RecordObject& object, std::byte* structure);
void put_record_id(const ToRecordRow& row, RecordObject& object, std::byte* structure);

// An int, cut to the width of its place.
constexpr ToRecordRow integer(const char* key, const char* field, Place to, ToRecordRow::Trace trace = nullptr) {
    return {key, field, put_integer, to, trace};
}

// An int that is converted into a code.
constexpr ToRecordRow code(const char* key, const char* field, Place to, const CodeTable& codes) {
    ToRecordRow row = {key, field, put_code, to};
    row.codes = &codes;
    return row;
}

// An int that sets the bits of `mask` when it is 1 and clears them otherwise.
constexpr ToRecordRow flag(const char* key, const char* field, Place to, std::uint32_t mask,
                           ToRecordRow::Trace trace = nullptr) {
    ToRecordRow row = {key, field, put_flag_if_one, to, trace};
    row.mask = mask;
    return row;
}

// An int that sets the bits of `mask` when it is positive and clears them otherwise.
constexpr ToRecordRow flag_if_positive(const char* key, const char* field, Place to, std::uint32_t mask) {
    ToRecordRow row = {key, field, put_flag_if_positive, to};
    row.mask = mask;
    return row;
}

// A string: its modified UTF-8, cut to the place less its last byte; the rest of the place becomes NUL. Null puts
// nothing.
constexpr ToRecordRow text(const char* key, const char* field, Place to, ToRecordRow::Trace trace = nullptr) {
    return {key, field, put_cut_text, to, trace};
}

// A string that is put only when it fits its place with a NUL; the bytes after the NUL stay. Null puts nothing. The
// line is written in any case.
constexpr ToRecordRow short_text(const char* key, const char* field, Place to, ToRecordRow::Trace trace = nullptr) {
    return {key, field, put_short_text, to, trace};
}

// A record identifier, split into list id and record id. One that cannot be parsed puts nothing.
constexpr ToRecordRow record_id(const char* key, const char* field, Place list, Place record) {
    ToRecordRow row = {key, field, put_record_id, list};
    row.to_record = record;
    return row;
}

// A value with a rule of its own. `codes` names its table; the rule does the conversion.
constexpr ToRecordRow special(const char* key, const char* field, ToRecordRow::Put put, Place to,
                              const CodeTable* codes = nullptr) {
    ToRecordRow row = {key, field, put, to};
    row.codes = codes;
    return row;
}

// The same for a value whose place depends on the medium.
template <std::size_t N>
constexpr ToRecordRow special(const char* key, const char* field, ToRecordRow::Put put, const Variant (&variants)[N],
                              const CodeTable* codes = nullptr) {
    ToRecordRow row = special(key, field, put, variants[0].to, codes);
    row.variants = variants;
    return row;
}

// Puts text: cut to the place less its last byte, the rest of the place becomes NUL.
void put_text(std::byte* structure, Place to, const char* text);

// Puts the low bytes of a value, as many as the place is wide (1, 2 or 4).
void put(std::byte* structure, Place to, std::uint32_t value);

// Puts a value as one variant says.
void put(std::byte* structure, const Variant& variant, jint value);

// Puts the values of all rows, in order. The object's isContainsKey must have been looked up.
void put_rows(const ToRecordRow* first, const ToRecordRow* last, RecordObject& object, std::byte* structure);

template <std::size_t N, class Structure>
void put_all(const ToRecordRow (&rows)[N], RecordObject& object, Structure& structure) {
    put_rows(rows, rows + N, object, reinterpret_cast<std::byte*>(&structure));
}

} // namespace tavro
