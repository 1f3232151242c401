#include "jni/records/record_getters.h"

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

std::optional<jint> unsigned_value(const Getter& getter, const std::byte* structure) {
    return static_cast<jint>(number_at(getter.from, structure));
}

std::optional<jint> flag_value(const Getter& getter, const std::byte* structure) {
    return (number_at(getter.from, structure) & getter.mask) != 0 ? 1 : 0;
}

void hand_over(const Getter& getter, Jni& jni, jclass cls, jobject object, const std::byte* structure) {
    if (jni.failed()) {
        return;
    }
    if (getter.value != nullptr) {
        const std::optional<jint> value = getter.value(getter, structure);
        if (value) {
            jni.call_void(object, jni.method(cls, getter.setter, "(I)V"), *value);
        }
        return;
    }
    const auto* chars = reinterpret_cast<const char*>(structure + getter.from.offset);
    jmethodID setter = jni.method(cls, getter.setter, "(Ljava/lang/String;)V");
    const std::size_t length = strnlen(chars, getter.from.width);
    const bool terminated = length < getter.from.width;
    const LocalRef text(jni, jni.new_string(terminated ? chars : std::string(chars, length).c_str()));
    jni.call_void(object, setter, text.get());
}

const Getter* find_getter(const Getter* first, const Getter* last, const char* key) {
    for (const Getter* getter = first; getter != last; ++getter) {
        if (std::strcmp(getter->key, key) == 0) {
            return getter;
        }
    }
    return nullptr;
}

} // namespace tavro
