// JNI calls of the tool's natives, and how their failures become Java exceptions.
#pragma once

#include "services/list_source.h"

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::tool {

// Thrown after a JNI call has failed. A Java exception is pending.
struct JavaException {};

// Returns the result of a JNI call that returns null after a failure. Throws JavaException if it is null.
template <class Result>
Result checked(Result result) {
    if (result == nullptr) {
        throw JavaException{};
    }
    return result;
}

// A local reference, deleted at the end of the scope.
template <class Reference>
class Local {
public:
    Local(JNIEnv* env, Reference reference) : env_(env), reference_(reference) {}
    ~Local() {
        if (reference_ != nullptr) {
            env_->DeleteLocalRef(reference_);
        }
    }
    Local(const Local&) = delete;
    Local& operator=(const Local&) = delete;
    Reference get() const { return reference_; }

private:
    JNIEnv* env_;
    Reference reference_;
};

// A list or its row, to be given to Java as a RawList.
struct JavaList {
    std::int64_t kind = 0;
    std::int64_t list_id = 0;
    const std::string& name;
    std::int64_t records = 0;
    std::int64_t version = 0;
    std::int64_t changed = -1;                     // in milliseconds since 1970, UTC; negative if unknown
    const std::vector<std::byte>* bytes = nullptr; // of the records; null becomes a Java null
};

// Looks up and forgets the Java classes that the natives use. `look_up_classes` throws JavaException.
void look_up_classes(JNIEnv* env);
void forget_classes(JNIEnv* env);

// A copy of the elements of an array, as a text or as bytes. An array of Java that is too large for this process's
// memory throws std::bad_alloc.
std::string to_string(JNIEnv* env, jbyteArray array);
std::vector<std::byte> to_bytes(JNIEnv* env, jbyteArray array);

// New Java objects. They throw JavaException.
jobject to_java(JNIEnv* env, const JavaList& list);
jobjectArray to_java(JNIEnv* env, const std::vector<host::ListEntry>& lists);

// To be called while a C++ exception is being handled: throws the Java exception for it.
void throw_in_java(JNIEnv* env) noexcept;

// Runs the body of a native. A C++ exception becomes a Java exception, and the result 0.
template <class Body>
auto native(JNIEnv* env, Body body) noexcept -> decltype(body()) {
    try {
        return body();
    } catch (...) {
        throw_in_java(env);
        return decltype(body())();
    }
}

} // namespace tavro::tool
