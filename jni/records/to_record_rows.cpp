#include "jni/records/to_record_rows.h"

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

void trace(const ToRecordRow& row, const std::byte* structure, jint value) {
    if (row.trace != nullptr) {
        row.trace(row, structure, value);
    }
}

// Reads the row's int field, lets `put_value` put it, and writes the row's line.
template <class Put>
void put_int(const ToRecordRow& row, RecordObject& object, std::byte* structure, Put put_value) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        put_value(*value);
        trace(row, structure, *value);
    }
}

void put_flag(const ToRecordRow& row, std::byte* structure, bool on) {
    std::uint32_t flags = 0;
    std::memcpy(&flags, structure + row.to.offset, sizeof(flags));
    put(structure, row.to, on ? flags | row.mask : flags & ~row.mask);
}

} // namespace

void put_integer(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    put_int(row, object, structure, [&](jint value) { put(structure, Variant{row.to}, value); });
}

void put_code(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    put_int(row, object, structure, [&](jint value) { put(structure, Variant{row.to, row.codes}, value); });
}

void put_flag_if_one(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    put_int(row, object, structure, [&](jint value) { put_flag(row, structure, value == 1); });
}

void put_flag_if_positive(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    put_int(row, object, structure, [&](jint value) { put_flag(row, structure, value > 0); });
}

void put_cut_text(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const LocalRef value(object.jni(), object.string_field(row.field).value_or(nullptr));
    const char* chars = object.jni().keep_utf_chars(value.get());
    if (chars != nullptr) {
        put_text(structure, row.to, chars);
        trace(row, structure, 0);
    }
}

void put_short_text(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
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

void put_record_id(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const LocalRef value(object.jni(), object.string_field(row.field).value_or(nullptr));
    int list_id = 0;
    int record_id = 0;
    if (parse_identifier(object.jni(), value.get(), list_id, record_id)) {
        put(structure, row.to, static_cast<std::uint32_t>(list_id));
        put(structure, row.to_record, static_cast<std::uint32_t>(record_id));
    }
}

void put_rows(const ToRecordRow* first, const ToRecordRow* last, RecordObject& object, std::byte* structure) {
    for (const ToRecordRow* row = first; row != last; ++row) {
        const Key key(object, row->key);
        if (key.present()) {
            row->put(*row, object, structure);
        }
    }
}

} // namespace tavro
