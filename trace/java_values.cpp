#include "trace/java_values.h"

#include "trace/agent.h"
#include "trace/text.h"

#include <cstddef>

namespace tavro::trace {
namespace {

// The JNI signature of a class, such as "Ljava/lang/String;"; "" if it cannot be read.
std::string signature_of(jclass cls) {
    char* signature = nullptr;
    if (cls == nullptr || tool_interface()->GetClassSignature(cls, &signature, nullptr) != JVMTI_ERROR_NONE) {
        return "";
    }
    std::string copy = signature;
    tool_interface()->Deallocate(reinterpret_cast<unsigned char*>(signature));
    return copy;
}

// "ArrayList" for "Ljava/util/ArrayList;".
std::string simple_name(const std::string& signature) {
    const std::size_t slash = signature.rfind('/');
    const std::size_t start = slash == std::string::npos ? 1 : slash + 1;
    return signature.size() > start ? signature.substr(start, signature.size() - start - 1) : "object";
}

std::string element_name(const std::string& signature) {
    static constexpr const char* kPrimitives[] = {"Zboolean", "Bbyte", "Cchar",  "Sshort",
                                                  "Iint",     "Jlong", "Ffloat", "Ddouble"};
    for (const char* primitive : kPrimitives) {
        if (signature[1] == primitive[0]) {
            return primitive + 1;
        }
    }
    return signature[1] == '[' ? element_name(signature.substr(1)) + "[]" : simple_name(signature.substr(1));
}

std::string string_text(JNIEnv* env, jstring text) {
    const jsize characters = env->GetStringLength(text);
    std::string bytes(static_cast<std::size_t>(env->GetStringUTFLength(text)) + 1, '\0'); // a NUL may be added
    env->GetStringUTFRegion(text, 0, characters, bytes.data());
    bytes.pop_back();
    return quoted(bytes);
}

// The size of a list of the class library as "[3]"; "" for anything else. Lists of other classes may do anything when
// they are asked for their size.
std::string size_text(JNIEnv* env, jobject object, jclass cls, const std::string& signature) {
    if (signature.rfind("Ljava/util/", 0) != 0) {
        return "";
    }
    jmethodID size = env->GetMethodID(cls, "size", "()I");
    if (size == nullptr) {
        env->ExceptionClear();
        return "";
    }
    const jint number = env->CallIntMethod(object, size);
    if (env->ExceptionCheck() != JNI_FALSE) {
        env->ExceptionClear();
        return "";
    }
    return '[' + std::to_string(number) + ']';
}

} // namespace

std::string object_text(JNIEnv* env, jobject object) {
    if (object == nullptr) {
        return "null";
    }
    jclass cls = env->GetObjectClass(object);
    const std::string signature = signature_of(cls);
    std::string text;
    if (signature == "Ljava/lang/String;") {
        text = string_text(env, static_cast<jstring>(object));
    } else if (signature == "Ljava/lang/Class;") {
        text = "class " + simple_name(signature_of(static_cast<jclass>(object)));
    } else if (!signature.empty() && signature.front() == '[') {
        text = element_name(signature) + '[' + std::to_string(env->GetArrayLength(static_cast<jarray>(object))) + ']';
    } else {
        text = simple_name(signature) + size_text(env, object, cls, signature);
    }
    env->DeleteLocalRef(cls);
    return text;
}

std::string pending_exception(JNIEnv* env) {
    if (env->ExceptionCheck() == JNI_FALSE) {
        return "";
    }
    jthrowable thrown = env->ExceptionOccurred();
    env->ExceptionClear(); // hardly any call is allowed while an exception is pending
    jclass cls = env->GetObjectClass(thrown);
    std::string signature = signature_of(cls);
    env->DeleteLocalRef(cls);
    env->Throw(thrown);
    env->DeleteLocalRef(thrown);
    for (char& letter : signature) {
        letter = letter == '/' ? '.' : letter;
    }
    return signature.size() > 2 ? signature.substr(1, signature.size() - 2) : "an exception";
}

} // namespace tavro::trace
