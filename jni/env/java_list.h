// A java.util.List passed to a native.
#pragma once

#include "jni/env/jni_env.h"

namespace tavro {

// Looks up the list's methods and gets its size when constructed. A null list is a failed call (Jni::failed).
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
    // The element at a position, as a local reference; may be null.
    jobject get(jint index) { return jni_.call_object(list_, get_, index); }

private:
    Jni& jni_;
    jobject list_;
    jmethodID get_;
    jint size_;
};

} // namespace tavro
