// How the arguments and results of a JNI call are described, by their types.
#pragma once

#include "trace/jni_observer.h"

#include <cstdarg>
#include <string>
#include <type_traits>

namespace tavro::trace {

template <class Value>
constexpr bool kIsReference = std::is_convertible_v<Value, jobject>;

// Notes the first object, for observers that want no descriptions.
template <class Given>
void note(JniCall& call, Given given) {
    if constexpr (kIsReference<Given>) {
        call.first = call.first == nullptr ? given : call.first;
    }
}

inline void describe(JniObserver& observer, JniCall& call, jobject object) {
    call.arguments.push_back(observer.reference(call.env, object));
}
inline void describe(JniObserver& observer, JniCall& call, jmethodID method) {
    call.signature = observer.member_signature(method);
    call.member = observer.member_name(method);
    call.arguments.push_back(call.member);
}
inline void describe(JniObserver& observer, JniCall& call, jfieldID field) {
    call.is_field = true;
    call.member = observer.member_name(field);
    call.arguments.push_back(call.member);
}
inline void describe(JniObserver& observer, JniCall& call, const char* text) {
    call.texts.push_back(text);
    call.memory = text;
    call.arguments.push_back(call.function.effect == Effect::kGivesBack ? "characters"
                                                                        : abbreviated(observer.quotation(text)));
}
inline void describe(JniObserver&, JniCall& call, jboolean value) {
    call.arguments.emplace_back(value != JNI_FALSE ? "true" : "false");
}
template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>> describe(JniObserver&, JniCall& call, Number number) {
    call.arguments.push_back(std::to_string(number));
}
// Other pointers, such as buffers, are not written.
template <class Pointee>
std::enable_if_t<!kIsReference<Pointee*>> describe(JniObserver&, JniCall& call, Pointee* pointer) {
    call.memory = pointer;
}

// The arguments of a method.
void describe(JniObserver& observer, JniCall& call, va_list given);
void describe(JniObserver& observer, JniCall& call, const jvalue* values);

// Results. Look-ups are written only if they fail.
inline std::string describe_result(JniObserver& observer, JniCall& call, jobject result) {
    return observer.reference_result(call, result);
}
inline std::string describe_result(JniObserver&, JniCall&, jboolean result) {
    return result != JNI_FALSE ? "true" : "false";
}
template <class Number>
std::enable_if_t<!std::is_pointer_v<Number>, std::string> describe_result(JniObserver&, JniCall&, Number result) {
    return std::to_string(result);
}
std::string describe_result(JniObserver& observer, JniCall& call, jmethodID method);
std::string describe_result(JniObserver& observer, JniCall& call, jfieldID field);
template <class Pointee>
std::enable_if_t<!kIsReference<Pointee*>, std::string> describe_result(JniObserver& observer, JniCall& call,
                                                                       Pointee* memory) {
    if (memory == nullptr) {
        return "null";
    }
    observer.memory_result(call, memory);
    if constexpr (std::is_same_v<Pointee, const char>) {
        return observer.quotation(memory);
    } else {
        return "";
    }
}

} // namespace tavro::trace
