#include "jni/records/to_java_rows.h"

#include <cstring>
#include <string>

namespace tavro {

namespace {

std::uint32_t number_at(Place from, const std::byte* structure) {
    std::uint32_t value = 0; // little-endian: the low bytes come first
    std::memcpy(&value, structure + from.offset, from.width);
    return value;
}

} // namespace

std::optional<jint> unsigned_value(const ToJavaRow& row, const std::byte* structure) {
    return static_cast<jint>(number_at(row.from, structure));
}

std::optional<jint> flag_value(const ToJavaRow& row, const std::byte* structure) {
    return (number_at(row.from, structure) & row.mask) != 0 ? 1 : 0;
}

void pass(const ToJavaRow& row, Jni& jni, jclass cls, jobject object, const std::byte* structure) {
    if (jni.failed()) {
        return;
    }
    if (row.value != nullptr) {
        const std::optional<jint> value = row.value(row, structure);
        if (value) {
            jni.call_void(object, jni.method(cls, row.setter, "(I)V"), *value);
        }
        return;
    }
    const auto* chars = reinterpret_cast<const char*>(structure + row.from.offset);
    jmethodID setter = jni.method(cls, row.setter, "(Ljava/lang/String;)V");
    const std::size_t length = strnlen(chars, row.from.width);
    const bool terminated = length < row.from.width;
    const LocalRef text(jni, jni.new_string(terminated ? chars : std::string(chars, length).c_str()));
    jni.call_void(object, setter, text.get());
}

const ToJavaRow* find_row(const ToJavaRow* first, const ToJavaRow* last, const char* key) {
    for (const ToJavaRow* row = first; row != last; ++row) {
        if (std::strcmp(row->key, key) == 0) {
            return row;
        }
    }
    return nullptr;
}

} // namespace tavro
