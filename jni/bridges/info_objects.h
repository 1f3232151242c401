// What the natives need that pass records to Java as objects: classes, a result list and the writer of one object.
#pragma once

#include "jni/env/jni_env.h"

namespace tavro {

// A Java class with its constructor without arguments.
struct JavaClass {
    jclass cls = nullptr;
    jmethodID constructor = nullptr;
};

// Finds a class and its constructor. If one is missing, returns false and logs `no_class` or `no_constructor` for the
// native `name`; an exception is pending.
bool find_class(Jni& jni, const char* name, const char* path, const char* no_class, const char* no_constructor,
                JavaClass& found);

// A new java.util.ArrayList for the results.
class ResultList {
public:
    // Creates the list. If the class or a method is missing, returns false and logs that for the native `name`; an
    // exception is pending.
    bool create(Jni& jni, const char* name);

    void add(Jni& jni, jobject element) { jni.call_boolean(list_, add_, element); }
    jobject list() const { return list_; }

private:
    jobject list_ = nullptr;
    jmethodID add_ = nullptr;
};

// The Java classes that a record is written to. Values are set on a carrier of the base class, and the info object
// takes them over.
struct InfoClasses {
    JavaClass info;
    JavaClass base;
};

// Names of the info object's method that takes the carrier over, and of the carrier's identifier setter.
struct InfoMethods {
    const char* take_over;
    const char* take_over_signature;
    const char* set_identifier;
};

// Writes records to Java info objects, through one carrier.
class InfoWriter {
public:
    InfoWriter(Jni& jni, const InfoClasses& classes, const InfoMethods& methods)
        : jni_(jni), base_(classes.base.cls), set_identifier_(methods.set_identifier),
          carrier_(jni.new_object(base_, classes.base.constructor)),
          take_over_(jni.method(classes.info.cls, methods.take_over, methods.take_over_signature)) {}

    jclass base_class() const { return base_; }
    jobject carrier() const { return carrier_; }

    void set_identifier(jstring identifier) {
        jni_.call_void(carrier_, jni_.method(base_, set_identifier_, "(Ljava/lang/String;)V"), identifier);
    }

    // Passes the carrier's values to an info object. Returns the object, or null after a failed JNI call.
    jobject finish(jobject info) {
        jni_.call_void(info, take_over_, carrier_);
        return jni_.failed() ? nullptr : info;
    }

private:
    Jni& jni_;
    jclass base_;
    const char* set_identifier_;
    jobject carrier_;
    jmethodID take_over_;
};

} // namespace tavro
