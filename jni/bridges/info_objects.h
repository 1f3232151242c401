// What the natives need that hand records to Java as objects: classes and a result list.
#pragma once

#include "jni/env/jni_env.h"

namespace tavro {

// A Java class with its constructor without arguments.
struct JavaClass {
    jclass cls = nullptr;
    jmethodID constructor = nullptr;
};

// Finds a class and its constructor. When one of them is missing, says so on behalf of the native `name` in
// the words for it and returns false; an exception is pending then.
bool find_class(Jni& jni, const char* name, const char* path, const char* no_class, const char* no_constructor,
                JavaClass& found);

// A java.util.ArrayList that is filled for Java.
class ResultList {
public:
    // Makes the list. When the platform lacks the class or a method, says so on behalf of the native `name`
    // and returns false; an exception is pending then.
    bool create(Jni& jni, const char* name);

    void add(Jni& jni, jobject element) { jni.call_boolean(list_, add_, element); }
    jobject list() const { return list_; }

private:
    jobject list_ = nullptr;
    jmethodID add_ = nullptr;
};

} // namespace tavro
