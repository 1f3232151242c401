#include "tool/java_values.h"

#include "services/failure.h"
#include "services/storage_error.h"

#include <new>

namespace tavro::tool {
namespace {

#define STORAGE_PACKAGE "com/velotra/tv/tavro/tool/storage/"

// Set once, when the library is loaded.
jclass library_class = nullptr;
jclass list_class = nullptr;
jmethodID make_failure = nullptr;
jmethodID make_list = nullptr;

jclass global_class(JNIEnv* env, const char* name) {
    const Local<jclass> found(env, checked(env->FindClass(name)));
    return static_cast<jclass>(checked(env->NewGlobalRef(found.get())));
}

// Returns what a Java method has returned. Throws JavaException if it has thrown.
jobject returned(JNIEnv* env, jobject result) {
    if (env->ExceptionCheck() == JNI_TRUE) {
        throw JavaException{};
    }
    return result;
}

jbyteArray new_array(JNIEnv* env, const void* bytes, std::size_t count) {
    const auto size = static_cast<jsize>(count);
    jbyteArray array = checked(env->NewByteArray(size));
    env->SetByteArrayRegion(array, 0, size, static_cast<const jbyte*>(bytes));
    return array;
}

void throw_failure(JNIEnv* env, const std::string& message) {
    const Local<jbyteArray> text(env, new_array(env, message.data(), message.size()));
    const Local<jobject> failure(env,
                                 returned(env, env->CallStaticObjectMethod(library_class, make_failure, text.get())));
    env->Throw(static_cast<jthrowable>(failure.get()));
}

void throw_out_of_memory(JNIEnv* env) {
    const Local<jclass> error(env, env->FindClass("java/lang/OutOfMemoryError"));
    if (error.get() != nullptr) {
        env->ThrowNew(error.get(), "no memory for the records of a list");
    }
}

} // namespace

void look_up_classes(JNIEnv* env) {
    library_class = global_class(env, STORAGE_PACKAGE "ToolLibrary");
    list_class = global_class(env, STORAGE_PACKAGE "RawList");
    make_failure =
        checked(env->GetStaticMethodID(library_class, "failure", "([B)Lcom/velotra/tv/tavro/tool/input/Failure;"));
    make_list = checked(env->GetMethodID(list_class, "<init>", "(II[BIJJ[B)V"));
}

void forget_classes(JNIEnv* env) {
    env->DeleteGlobalRef(library_class);
    env->DeleteGlobalRef(list_class);
    library_class = nullptr;
    list_class = nullptr;
}

std::string to_string(JNIEnv* env, jbyteArray array) {
    std::string text(static_cast<std::size_t>(env->GetArrayLength(array)), '\0');
    env->GetByteArrayRegion(array, 0, static_cast<jsize>(text.size()), reinterpret_cast<jbyte*>(text.data()));
    return text;
}

std::vector<std::byte> to_bytes(JNIEnv* env, jbyteArray array) {
    std::vector<std::byte> bytes(static_cast<std::size_t>(env->GetArrayLength(array)));
    env->GetByteArrayRegion(array, 0, static_cast<jsize>(bytes.size()), reinterpret_cast<jbyte*>(bytes.data()));
    return bytes;
}

jobject to_java(JNIEnv* env, const JavaList& list) {
    const Local<jbyteArray> name(env, new_array(env, list.name.data(), list.name.size()));
    const Local<jbyteArray> bytes(env, list.bytes == nullptr ? nullptr
                                                             : new_array(env, list.bytes->data(), list.bytes->size()));
    return returned(env,
                    env->NewObject(list_class, make_list, static_cast<jint>(list.kind), static_cast<jint>(list.list_id),
                                   name.get(), static_cast<jint>(list.records), static_cast<jlong>(list.version),
                                   static_cast<jlong>(list.changed), bytes.get()));
}

jobjectArray to_java(JNIEnv* env, const std::vector<host::ListEntry>& lists) {
    jobjectArray array = checked(env->NewObjectArray(static_cast<jsize>(lists.size()), list_class, nullptr));
    jsize index = 0;
    for (const host::ListEntry& list : lists) {
        const JavaList row{list.list.kind, list.list.list_id, list.name,
                           list.records,   list.version,      list.changed.value_or(-1)};
        const Local<jobject> element(env, to_java(env, row));
        env->SetObjectArrayElement(array, index++, element.get());
    }
    return array;
}

void throw_in_java(JNIEnv* env) noexcept {
    try {
        throw;
    } catch (const JavaException&) {
        return; // pending already
    } catch (const std::bad_alloc&) {
        throw_out_of_memory(env);
    } catch (const std::exception& error) {
        try {
            throw_failure(env, error.what());
        } catch (const JavaException&) {
            return;
        }
    }
}

} // namespace tavro::tool
