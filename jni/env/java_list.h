// A java.util.List that came as an argument.
#pragma once

#include "jni/env/jni_env.h"

namespace tavro {

// Looks the list's methods up and asks its size at once. A null list fails the native call (Jni::failed).
class JavaList {
public:
    enum class LookUp { kGetFirst, kSizeFirst };

    JavaList(Jni& jni, jobject list, LookUp order = LookUp::kGetFirst) : jni_(jni), list_(list) {
        const LocalRef cls(jni, jni.class_of(list));
        jmethodID size = order == LookUp::kSizeFirst ? jni.method(cls.get(), "size", "()I") : nullptr;
        get_ = jni.method(cls.get(), "get", "(I)Ljava/lang/Object;");
        size_ = jni.call_int(list, order == LookUp::kSizeFirst ? size : jni.method(cls.get(), "size", "()I"));
    }

    jint size() const { return size_; }
    // The element at a position, which may be null; a local reference.
    jobject get(jint index) { return jni_.call_object(list_, get_, index); }

private:
    Jni& jni_;
    jobject list_;
    jmethodID get_;
    jint size_;
};

} // namespace tavro
