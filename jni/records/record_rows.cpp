#include "jni/records/record_rows.h"

#include "jni/env/record_id.h"

#include <cstring>

namespace tavro {
namespace {

template <class Unsigned>
void put_as(std::byte* at, std::uint32_t value) {
    const auto cut = static_cast<Unsigned>(value);
    std::memcpy(at, &cut, sizeof(cut));
}

} // namespace

void put(std::byte* structure, Place to, std::uint32_t value) {
    std::byte* at = structure + to.offset;
    switch (to.width) {
    case 1:
        put_as<std::uint8_t>(at, value);
        break;
    case 2:
        put_as<std::uint16_t>(at, value);
        break;
    default:
        put_as<std::uint32_t>(at, value);
        break;
    }
}

void put(std::byte* structure, const Variant& variant, jint value) {
    if (variant.to.width != 0) {
        put(structure, variant.to,
            variant.codes == nullptr ? static_cast<std::uint32_t>(value) : (*variant.codes)(value));
    }
}

void put_text(std::byte* structure, Place to, const char* text) {
    std::byte* at = structure + to.offset;
    const std::size_t length = strnlen(text, to.width - 1U);
    std::memcpy(at, text, length);
    std::memset(at + length, 0, to.width - length);
}

namespace {

void trace(const Row& row, const std::byte* structure, jint value) {
    if (row.trace != nullptr) {
        row.trace(row, structure, value);
    }
}

// Reads the row's int field, lets `store` do what it does with it, and writes the row's line.
template <class Store>
void store_int(const Row& row, RecordObject& object, std::byte* structure, Store store) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        store(*value);
        trace(row, structure, *value);
    }
}

void put_flag(const Row& row, std::byte* structure, bool on) {
    std::uint32_t flags = 0;
    std::memcpy(&flags, structure + row.to.offset, sizeof(flags));
    put(structure, row.to, on ? flags | row.mask : flags & ~row.mask);
}

} // namespace

void store_integer(const Row& row, RecordObject& object, std::byte* structure) {
    store_int(row, object, structure, [&](jint value) { put(structure, Variant{row.to}, value); });
}

void store_code(const Row& row, RecordObject& object, std::byte* structure) {
    store_int(row, object, structure, [&](jint value) { put(structure, Variant{row.to, row.codes}, value); });
}

void store_flag_if_one(const Row& row, RecordObject& object, std::byte* structure) {
    store_int(row, object, structure, [&](jint value) { put_flag(row, structure, value == 1); });
}

void store_flag_if_positive(const Row& row, RecordObject& object, std::byte* structure) {
    store_int(row, object, structure, [&](jint value) { put_flag(row, structure, value > 0); });
}

void store_text(const Row& row, RecordObject& object, std::byte* structure) {
    const LocalRef value(object.jni(), object.string_field(row.field).value_or(nullptr));
    const char* chars = object.jni().keep_utf_chars(value.get());
    if (chars != nullptr) {
        put_text(structure, row.to, chars);
        trace(row, structure, 0);
    }
}

void store_short_text(const Row& row, RecordObject& object, std::byte* structure) {
    const LocalRef value(object.jni(), object.string_field(row.field).value_or(nullptr));
    const char* chars = object.jni().keep_utf_chars(value.get());
    if (object.jni().failed()) {
        return;
    }
    const std::size_t length = chars == nullptr ? row.to.width : std::strlen(chars);
    if (length < row.to.width) {
        std::memcpy(structure + row.to.offset, chars, length + 1);
    }
    trace(row, structure, 0);
}

void store_record_id(const Row& row, RecordObject& object, std::byte* structure) {
    const LocalRef value(object.jni(), object.string_field(row.field).value_or(nullptr));
    int list_id = 0;
    int record_id = 0;
    if (parse_identifier(object.jni(), value.get(), list_id, record_id)) {
        put(structure, row.to, static_cast<std::uint32_t>(list_id));
        put(structure, row.to_record, static_cast<std::uint32_t>(record_id));
    }
}

void walk_rows(const Row* first, const Row* last, RecordObject& object, std::byte* structure) {
    for (const Row* row = first; row != last; ++row) {
        const Key key(object, row->key);
        if (key.present()) {
            row->store(*row, object, structure);
        }
    }
}

} // namespace tavro
