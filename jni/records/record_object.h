// A Java record object: a bag of values that are set or not, each under a key.
#pragma once

#include "jni/env/jni_env.h"

#include <optional>

namespace tavro {

// A Java record object. isContainsKey(object, key) says whether a value was set; values are read from fields by name.
// Only isContainsKey's method id is kept, and only until the next look_up_contains_key().
class RecordObject {
public:
    // Methods and fields are looked up on `cls`; `contains_key_signature` is the signature of isContainsKey.
    RecordObject(Jni& jni, jclass cls, jobject object, const char* contains_key_signature)
        : RecordObject(jni, cls, cls, object, contains_key_signature) {}
    // The same, with fields looked up on `field_class`.
    RecordObject(Jni& jni, jclass method_class, jclass field_class, jobject object, const char* contains_key_signature)
        : jni_(jni), method_class_(method_class), field_class_(field_class), object_(object),
          contains_key_signature_(contains_key_signature) {}
    // The same, with isContainsKey looked up already.
    RecordObject(Jni& jni, jclass cls, jobject object, jmethodID contains_key)
        : jni_(jni), method_class_(cls), field_class_(cls), object_(object), contains_key_signature_(nullptr),
          contains_key_(contains_key) {}
    RecordObject(const RecordObject&) = delete;
    RecordObject& operator=(const RecordObject&) = delete;

    Jni& jni() { return jni_; }

    // Looks up isContainsKey. Before that, and when it is missing, no key is present.
    void look_up_contains_key() {
        contains_key_ = jni_.method(method_class_, "isContainsKey", contains_key_signature_);
    }

    // The value of a field. Nothing, with an exception pending, when the class has no such field.
    std::optional<jint> int_field(const char* name) {
        const jint value = jni_.int_value(object_, jni_.field(field_class_, name, "I"));
        return jni_.failed() ? std::nullopt : std::optional<jint>(value);
    }
    // The same for object fields, whose value may be null.
    std::optional<jobject> object_field(const char* name, const char* descriptor) {
        jobject value = jni_.object_value(object_, jni_.field(field_class_, name, descriptor));
        return jni_.failed() ? std::nullopt : std::optional<jobject>(value);
    }
    std::optional<jstring> string_field(const char* name) {
        const std::optional<jobject> value = object_field(name, "Ljava/lang/String;");
        return value ? std::optional<jstring>(static_cast<jstring>(*value)) : std::nullopt;
    }

private:
    friend class Key;

    Jni& jni_;
    jclass method_class_;
    jclass field_class_;
    jobject object_;
    const char* contains_key_signature_;
    jmethodID contains_key_ = nullptr; // null until looked up
};

// Asks a record object for one key. Holds the key's Java string until the end of the scope.
class Key {
public:
    Key(RecordObject& object, const char* name)
        : jni_(object.jni_), name_(jni_.new_string(name)),
          present_(jni_.call_boolean(object.object_, object.contains_key_, object.object_, name_)) {}
    ~Key() {
        if (!kept_) {
            jni_.delete_local(name_);
        }
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    bool present() const { return present_; }

    // Keeps the key's local reference until the native returns.
    void keep_reference() { kept_ = true; }

private:
    Jni& jni_;
    jstring name_;
    bool present_;
    bool kept_ = false;
};

} // namespace tavro
