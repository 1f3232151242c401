// Shared parts of the floor's natives.
#pragma once

#include "middleware/types.h"

#include <android/log.h>
#include <cutils/properties.h>
#include <jni.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tavro::bench::floor {

inline constexpr int kDone = 0;
inline constexpr int kFailed = -22;

#define FLOOR_PROPERTY "vendor.vlt.broadcast.log.level"
#define FLOOR_PACKAGE "com/velotra/tv/tavro/services/channellist/"

// True if lines of `level` are logged. Like the library, it clears the value's buffer first, and builds the second
// property name in allocated memory.
[[gnu::noinline]] inline bool gate(int level) {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(FLOOR_PROPERTY, value, "");
    if (value[0] == '\0') {
        auto* name = static_cast<char*>(std::malloc(sizeof("persist." FLOOR_PROPERTY)));
        std::memcpy(name, "persist." FLOOR_PROPERTY, sizeof("persist." FLOOR_PROPERTY));
        property_get(name, value, "");
        std::free(name);
    }
    switch (value[0]) {
    case 'V':
    case 'v':
        return level >= 1;
    case 'D':
    case 'd':
        return level >= 2;
    case 'I':
    case 'i':
        return level >= 3;
    case 'W':
    case 'w':
        return level >= 4;
    case 'E':
    case 'e':
        return level >= 5;
    default:
        return false;
    }
}

#define FLOOR_DEBUG(tag, ...)                                                                                          \
    do {                                                                                                               \
        if (gate(2)) {                                                                                                 \
            __android_log_print(3, tag, __VA_ARGS__);                                                                  \
        }                                                                                                              \
    } while (false)
#define FLOOR_ERROR(tag, ...)                                                                                          \
    do {                                                                                                               \
        if (gate(5)) {                                                                                                 \
            __android_log_print(6, tag, __VA_ARGS__);                                                                  \
        }                                                                                                              \
    } while (false)
// A log line of the bridges, which have no tag.
#define FLOOR_BRIDGE(...) FLOOR_DEBUG(nullptr, "[jni_VltTvList_Init] " __VA_ARGS__)

// Defines the handles of a kind's open lists, by list id, and a look-up that logs when it finds or stores a handle.
#define FLOOR_HANDLES(PREFIX, TAG, CLASS, LIST, HANDLE, GET, SET, TRACES)                                              \
    static tavro::MwdbHandle PREFIX##_handles[65536];                                                                  \
    static tavro::MwdbHandle PREFIX##_handle(int list) {                                                               \
        const auto key = static_cast<std::uint16_t>(list);                                                             \
        tavro::MwdbHandle& handle = PREFIX##_handles[key];                                                             \
        if (handle != 0) {                                                                                             \
            if (TRACES) {                                                                                              \
                FLOOR_DEBUG(TAG, CLASS "[" GET "]: " LIST " = %d " HANDLE ":0x%x\n", key, handle);                     \
            }                                                                                                          \
            return handle;                                                                                             \
        }                                                                                                              \
        if (x_##PREFIX##_open(key, 0, 0, &handle) == tavro::kMwOk) {                                                   \
            FLOOR_DEBUG(TAG, CLASS "[" SET "]: " LIST " = %d " HANDLE ":0x%x\n", key, handle);                         \
        }                                                                                                              \
        return handle;                                                                                                 \
    }

// Parses digits; `text` then points after them.
inline int digits(const char*& text) {
    int number = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        number = number * 10 + (*text - '0');
    }
    return number;
}

struct Ids {
    int list;
    int record;
};

inline Ids ids_in(const char* text) {
    Ids ids;
    ids.list = digits(text);
    ++text;
    ids.record = digits(text);
    return ids;
}

inline Ids parse(JNIEnv* env, jstring identifier) {
    const char* chars = env->GetStringUTFChars(identifier, nullptr);
    const Ids ids = ids_in(chars);
    env->ReleaseStringUTFChars(identifier, chars);
    return ids;
}

// An identifier's text. The buffer is large enough for every identifier.
struct IdText {
    char chars[24];
};

inline IdText text_of(JNIEnv* env, jstring identifier) {
    IdText text;
    const char* chars = env->GetStringUTFChars(identifier, nullptr);
    std::strcpy(text.chars, chars);
    env->ReleaseStringUTFChars(identifier, chars);
    return text;
}

inline char* put_digits(char* to, unsigned int number) {
    char backwards[12];
    char* end = backwards;
    do {
        *end++ = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    while (end != backwards) {
        *to++ = *--end;
    }
    return to;
}

inline IdText text_of(int list, int record) {
    IdText text;
    char* end = put_digits(text.chars, static_cast<unsigned int>(list));
    *end++ = ',';
    *put_digits(end, static_cast<unsigned int>(record)) = '\0';
    return text;
}

inline jstring identifier(JNIEnv* env, int list, int record) {
    FLOOR_BRIDGE("[combineMId] mwdbId = %d, recId = %d", list, record);
    return env->NewStringUTF(text_of(list, record).chars);
}

inline jbyteArray bytes(JNIEnv* env, const void* from, std::size_t size) {
    jbyteArray array = env->NewByteArray(static_cast<jsize>(size));
    env->SetByteArrayRegion(array, 0, static_cast<jsize>(size), static_cast<const jbyte*>(from));
    return array;
}

// A Java record object with its isContainsKey.
struct Object {
    JNIEnv* env;
    jobject object;
    jclass method_class;
    jclass field_class;
    jmethodID contains;
};

inline void look_up(Object& o, const char* signature) {
    o.contains = o.env->GetMethodID(o.method_class, "isContainsKey", signature);
}

inline jint int_field(const Object& o, const char* name) {
    jfieldID field = o.env->GetFieldID(o.field_class, name, "I");
    return o.env->GetIntField(o.object, field);
}

inline jstring string_field(const Object& o, const char* name) {
    jfieldID field = o.env->GetFieldID(o.field_class, name, "Ljava/lang/String;");
    return static_cast<jstring>(o.env->GetObjectField(o.object, field));
}

// Parses the identifier in a field and releases its string.
inline Ids ids_field(const Object& o, const char* name) {
    jstring identifier = string_field(o, name);
    const Ids ids = parse(o.env, identifier);
    o.env->DeleteLocalRef(identifier);
    return ids;
}

// Both copy the text of a field and return its string, which the caller releases. The UTF characters are not released.
inline jstring text_field(const Object& o, const char* name, char* to, std::size_t width) {
    jstring string = string_field(o, name);
    const char* chars = o.env->GetStringUTFChars(string, nullptr);
    const std::size_t length = strnlen(chars, width - 1);
    std::memcpy(to, chars, length);
    std::memset(to + length, 0, width - length);
    return string;
}

inline jstring short_text_field(const Object& o, const char* name, char* to, std::size_t width) {
    jstring string = string_field(o, name);
    const char* chars = o.env->GetStringUTFChars(string, nullptr);
    const std::size_t length = std::strlen(chars);
    if (length < width) {
        std::memcpy(to, chars, length + 1);
    }
    return string;
}

inline void set_bits(std::uint32_t& flags, bool on, std::uint32_t mask) { flags = on ? flags | mask : flags & ~mask; }

// Runs the statements if the object contains the key.
#define FLOOR_KEY(o, key, ...)                                                                                         \
    do {                                                                                                               \
        jstring name = (o).env->NewStringUTF(key);                                                                     \
        if ((o).env->CallBooleanMethod((o).object, (o).contains, (o).object, name) != JNI_FALSE) {                     \
            __VA_ARGS__;                                                                                               \
        }                                                                                                              \
        (o).env->DeleteLocalRef(name);                                                                                 \
    } while (false)

#define FLOOR_INT(o, key, field, to) FLOOR_KEY(o, key, (to) = static_cast<decltype(to)>(int_field(o, field)))
#define FLOOR_FLAG(o, key, field, to, mask) FLOOR_KEY(o, key, set_bits(to, int_field(o, field) == 1, mask))
#define FLOOR_TEXT(o, key, field, to) FLOOR_KEY(o, key, (o).env->DeleteLocalRef(text_field(o, field, to, sizeof(to))))

// Looks up a list's methods in the order of the natives, and gets its size.
struct JavaList {
    jmethodID get;
    jint size;
};

inline JavaList java_list(JNIEnv* env, jobject list, bool size_first = false) {
    jclass cls = env->GetObjectClass(list);
    jmethodID size = size_first ? env->GetMethodID(cls, "size", "()I") : nullptr;
    jmethodID get = env->GetMethodID(cls, "get", "(I)Ljava/lang/Object;");
    if (!size_first) {
        size = env->GetMethodID(cls, "size", "()I");
    }
    const JavaList result = {get, env->CallIntMethod(list, size)};
    env->DeleteLocalRef(cls);
    return result;
}

// A class and its default constructor.
struct JavaClass {
    jclass cls;
    jmethodID constructor;
};

inline JavaClass java_class(JNIEnv* env, const char* path) {
    jclass cls = env->FindClass(path);
    return {cls, env->GetMethodID(cls, "<init>", "()V")};
}

// The java.util.ArrayList for a native's results.
struct ResultList {
    jobject list;
    jmethodID add;
};

inline ResultList result_list(JNIEnv* env) {
    const JavaClass cls = java_class(env, "java/util/ArrayList");
    jobject list = env->NewObject(cls.cls, cls.constructor);
    return {list, env->GetMethodID(cls.cls, "add", "(Ljava/lang/Object;)Z")};
}

// The object whose setters receive a record's values.
struct Carrier {
    JNIEnv* env;
    jclass cls;
    jobject object;
};

inline void set_int(const Carrier& c, const char* setter, jint value) {
    c.env->CallVoidMethod(c.object, c.env->GetMethodID(c.cls, setter, "(I)V"), value);
}

inline void set_text(const Carrier& c, const char* setter, const char* chars, std::size_t width) {
    char text[80];
    const std::size_t length = strnlen(chars, width);
    if (length == width) {
        std::memcpy(text, chars, length);
        text[length] = '\0';
        chars = text;
    }
    jmethodID method = c.env->GetMethodID(c.cls, setter, "(Ljava/lang/String;)V");
    jstring string = c.env->NewStringUTF(chars);
    c.env->CallVoidMethod(c.object, method, string);
    c.env->DeleteLocalRef(string);
}

} // namespace tavro::bench::floor
