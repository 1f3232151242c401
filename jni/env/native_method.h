// Rows of the native method tables, checked against the C++ functions at compile time.
#pragma once

#include <jni.h>

namespace tavro {

namespace signature {

// Skips one type of a JNI signature if it matches T; returns null otherwise. jobject matches every class that jni.h has
// no type for (lists, record objects).
template <class T>
constexpr const char* skip(const char* at);

constexpr const char* skip_text(const char* at, const char* text) {
    while (*text != '\0') {
        if (at == nullptr || *at++ != *text++) {
            return nullptr;
        }
    }
    return at;
}

template <>
constexpr const char* skip<jint>(const char* at) {
    return skip_text(at, "I");
}

template <>
constexpr const char* skip<jbyteArray>(const char* at) {
    return skip_text(at, "[B");
}

template <>
constexpr const char* skip<jstring>(const char* at) {
    return skip_text(at, "Ljava/lang/String;");
}

template <>
constexpr const char* skip<jobject>(const char* at) {
    if (at == nullptr || *at != 'L' || skip<jstring>(at) != nullptr) {
        return nullptr;
    }
    while (*at != ';') {
        if (*at++ == '\0') {
            return nullptr;
        }
    }
    return at + 1;
}

} // namespace signature

// Whether a function of this type implements an instance method with that JNI signature.
template <class Result, class... Arguments>
constexpr bool fits(Result (*)(JNIEnv*, jobject, Arguments...), const char* text) {
    const char* at = signature::skip_text(text, "(");
    ((at = at == nullptr ? nullptr : signature::skip<Arguments>(at)), ...);
    at = at == nullptr ? nullptr : signature::skip_text(at, ")");
    at = at == nullptr ? nullptr : signature::skip<Result>(at);
    return at != nullptr && *at == '\0';
}

// The type of a row's function pointer. Using it fails to compile when the signature does not fit the function.
template <bool SignatureFits>
struct NativeFunction {
    static_assert(SignatureFits, "the JNI signature does not fit the function of this row");
    using Pointer = void*;
};

} // namespace tavro

// One row: Java method name, JNI signature, function. The check is a template argument and generates no code, so that
// tables of rows are constant data. Some platforms' jni.h declares the texts as char*; JNI never writes to them.
#define TAVRO_NATIVE(NAME, SIGNATURE, FUNCTION)                                                                        \
    JNINativeMethod {                                                                                                  \
        const_cast<char*>(NAME), const_cast<char*>(SIGNATURE),                                                         \
            reinterpret_cast<tavro::NativeFunction<tavro::fits(FUNCTION, SIGNATURE)>::Pointer>(FUNCTION)               \
    }
