// The JNI environment of one native call.
#pragma once

#include <jni.h>

#include <string>

namespace tavro {

// Makes JNI calls until one fails. After a look-up or allocation that returned null an exception is pending, and JNI
// allows hardly any call. From then on every call here does nothing and returns null, 0 or false. A null class, object,
// method or field passed to a call counts as a failure too. The success path costs one branch and no extra JNI call.
//
// Exceptions thrown by Java callees are not checked: ExceptionCheck would add a JNI call to the success path, whose
// call sequence is part of the contract.
class Jni {
public:
    explicit Jni(JNIEnv* env) : env_(env) {}
    Jni(const Jni&) = delete;
    Jni& operator=(const Jni&) = delete;

    JNIEnv* env() const { return env_; }

    // Whether a call has failed. A Java exception is pending, unless the failure was a null object.
    bool failed() const { return failed_; }

    // These return local references. LocalRef deletes one before the native returns.
    jclass find_class(const char* path);
    jclass class_of(jobject object); // null for a null object
    jmethodID method(jclass cls, const char* name, const char* signature);
    jfieldID field(jclass cls, const char* name, const char* descriptor);
    jstring new_string(const char* text);

    // Allowed after a failed call, too.
    void delete_local(jobject reference) {
        if (reference != nullptr) {
            env_->DeleteLocalRef(reference);
        }
    }

    template <class... Arguments>
    bool call_boolean(jobject object, jmethodID method, Arguments... arguments) {
        return usable(object, method) && env_->CallBooleanMethod(object, method, arguments...) != JNI_FALSE;
    }
    template <class... Arguments>
    jint call_int(jobject object, jmethodID method, Arguments... arguments) {
        return usable(object, method) ? env_->CallIntMethod(object, method, arguments...) : 0;
    }
    template <class... Arguments>
    jobject call_object(jobject object, jmethodID method, Arguments... arguments) {
        return usable(object, method) ? env_->CallObjectMethod(object, method, arguments...) : nullptr;
    }

    template <class... Arguments>
    void call_void(jobject object, jmethodID method, Arguments... arguments) {
        if (usable(object, method)) {
            env_->CallVoidMethod(object, method, arguments...);
        }
    }
    jobject new_object(jclass cls, jmethodID constructor) {
        return usable(cls, constructor) ? checked(env_->NewObject(cls, constructor)) : nullptr;
    }

    jint int_value(jobject object, jfieldID field) {
        return usable(object, field) ? env_->GetIntField(object, field) : 0;
    }
    jobject object_value(jobject object, jfieldID field) {
        return usable(object, field) ? env_->GetObjectField(object, field) : nullptr;
    }

    // The text of a string as modified UTF-8. Empty, with an error line, for an empty or null string and when the
    // platform returns no characters. Empty without a line after a failed call.
    std::string text(jstring text);

    // The modified UTF-8 characters of a string. Deliberate: never released, unless UtfChars holds them. Null for a
    // null string and when the platform has no memory.
    const char* keep_utf_chars(jstring text);

    // The elements of an array. Deliberate: never released. Null as above.
    const jint* keep_int_elements(jintArray array);

    // An element of an object array, which may be null; the array may not.
    jobject element(jobjectArray array, jsize index) {
        return failed_ ? nullptr : env_->GetObjectArrayElement(array, index);
    }

private:
    template <class Id>
    bool usable(jobject object, Id id) {
        failed_ = failed_ || object == nullptr || id == nullptr;
        return !failed_;
    }
    template <class Pointer>
    Pointer checked(Pointer result) {
        failed_ = failed_ || result == nullptr;
        return result;
    }

    JNIEnv* env_;
    bool failed_ = false;
};

// A local reference, deleted at the end of the scope. Natives hold with it everything that they get for one element of
// a list or one record, so that the number of live references does not grow with the list; a JVM may allow only 512.
// The exceptions are listed in docs/architecture.md, "What is deliberately not released".
template <class Reference>
class LocalRef {
public:
    LocalRef(Jni& jni, Reference reference) : jni_(jni), reference_(reference) {}
    ~LocalRef() { jni_.delete_local(reference_); }
    LocalRef(const LocalRef&) = delete;
    LocalRef& operator=(const LocalRef&) = delete;

    Reference get() const { return reference_; }

private:
    Jni& jni_;
    Reference reference_;
};

// The modified UTF-8 characters of a string, released at the end of the scope. Empty for a null string and when the
// platform returns no characters.
class UtfChars {
public:
    UtfChars(Jni& jni, jstring text) : env_(jni.env()), text_(text), chars_(jni.keep_utf_chars(text)) {}
    ~UtfChars() {
        if (chars_ != nullptr) {
            env_->ReleaseStringUTFChars(text_, chars_);
        }
    }
    UtfChars(const UtfChars&) = delete;
    UtfChars& operator=(const UtfChars&) = delete;

    const char* c_str() const { return chars_ == nullptr ? "" : chars_; }

    // A copy, with an error line when it is empty.
    std::string text() const;

private:
    JNIEnv* env_;
    jstring text_;
    const char* chars_;
};

// A new Java byte array with `size` bytes from `bytes`. Null, with an exception pending, when there is no memory.
jbyteArray to_byte_array(JNIEnv* env, const void* bytes, std::size_t size);

} // namespace tavro

// The text of a Java string; see Jni::text. An exception is pending when the platform returned no characters.
std::string jstr2str(JNIEnv* env, jstring text);
