#include "jni/env/jni_env.h"

#include "jni/env/jni_log.h"

using namespace tavro;

namespace tavro {
jclass Jni::find_class(const char* path) { return failed_ ? nullptr : checked(env_->FindClass(path)); }

jclass Jni::class_of(jobject object) {
    return failed_ || object == nullptr ? nullptr : checked(env_->GetObjectClass(object));
}

jmethodID Jni::method(jclass cls, const char* name, const char* signature) {
    return usable(cls, name) ? checked(env_->GetMethodID(cls, name, signature)) : nullptr;
}

jfieldID Jni::field(jclass cls, const char* name, const char* descriptor) {
    return usable(cls, name) ? checked(env_->GetFieldID(cls, name, descriptor)) : nullptr;
}

jstring Jni::new_string(const char* text) { return failed_ ? nullptr : checked(env_->NewStringUTF(text)); }

std::string Jni::text(jstring text) {
    if (failed_) {
        return {};
    }
    return UtfChars(*this, text).text();
}

std::string UtfChars::text() const {
    std::string copy = c_str();
    if (copy.empty()) {
        TAVRO_LOG_ERROR(kNoTag, "Invalid String.\n");
    }
    return copy;
}

const char* Jni::keep_utf_chars(jstring text) {
    return failed_ || text == nullptr ? nullptr : checked(env_->GetStringUTFChars(text, nullptr));
}

const jint* Jni::keep_int_elements(jintArray array) {
    return failed_ || array == nullptr ? nullptr : checked(env_->GetIntArrayElements(array, nullptr));
}

jbyteArray to_byte_array(JNIEnv* env, const void* bytes, std::size_t size) {
    // The largest list has 65,535 records of 724 bytes, which fits a jsize.
    const auto length = static_cast<jsize>(size);
    jbyteArray array = env->NewByteArray(length);
    if (array != nullptr) {
        env->SetByteArrayRegion(array, 0, length, static_cast<const jbyte*>(bytes));
    }
    return array;
}

} // namespace tavro

std::string jstr2str(JNIEnv* env, jstring text) { return Jni(env).text(text); }
