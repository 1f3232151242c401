// A Java record object, asked key by key which of its values are set.
#pragma once

#include "jni/env/jni_env.h"

#include <optional>

namespace tavro {

// A Java record object. It answers isContainsKey(object, key) for every value that was set; values are
// read from its fields by name. Nothing is cached but the method id, for as long as the caller says:
// every conversion looks it up anew.
class RecordObject {
public:
    // `cls` is the class that methods and fields are looked up on. `contains_key_signature` is that of
    // the record kind's isContainsKey.
    RecordObject(Jni& jni, jclass cls, jobject object, const char* contains_key_signature)
        : RecordObject(jni, cls, cls, object, contains_key_signature) {}
    // The same with fields looked up on a class of their own.
    RecordObject(Jni& jni, jclass method_class, jclass field_class, jobject object, const char* contains_key_signature)
        : jni_(jni), method_class_(method_class), field_class_(field_class), object_(object),
          contains_key_signature_(contains_key_signature) {}
    // The same with isContainsKey looked up before.
    RecordObject(Jni& jni, jclass cls, jobject object, jmethodID contains_key)
        : jni_(jni), method_class_(cls), field_class_(cls), object_(object), contains_key_signature_(nullptr),
          contains_key_(contains_key) {}
    RecordObject(const RecordObject&) = delete;
    RecordObject& operator=(const RecordObject&) = delete;

    Jni& jni() { return jni_; }

    // Looks isContainsKey up. Until then, and when it is missing, no key is present.
    void look_up_contains_key() {
        contains_key_ = jni_.method(method_class_, "isContainsKey", contains_key_signature_);
    }

    // The value of a field. Nothing when the class has no such field; an exception is pending then.
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

// One key put to a record object. The key's Java string lives as long as this.
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

    // Leaves the key's local reference to the end of the native call.
    void keep_reference() { kept_ = true; }

private:
    Jni& jni_;
    jstring name_;
    bool present_;
    bool kept_ = false;
};

} // namespace tavro
