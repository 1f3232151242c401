// Makes the control of the scripted platform available to Java: the natives of com.velotra.tv.tavro.scripted.Script,
// which checks their arguments.

#include "middleware/calls.h"
#include "script.h"

#include <jni.h>

#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <string>
#include <vector>

namespace script = tavro::script;

namespace {

std::string text_of(JNIEnv* env, jstring text) {
    const char* chars = env->GetStringUTFChars(text, nullptr);
    std::string copy = chars;
    env->ReleaseStringUTFChars(text, chars);
    return copy;
}

script::Answer make_answer(JNIEnv* env, jint status, jboolean has_value, jint value, jbyteArray record) {
    script::Answer answer;
    answer.status = status;
    if (has_value != JNI_FALSE) {
        answer.value = static_cast<std::uint32_t>(value);
    }
    if (record != nullptr) {
        answer.record.resize(static_cast<std::size_t>(env->GetArrayLength(record)));
        env->GetByteArrayRegion(record, 0, static_cast<jsize>(answer.record.size()),
                                reinterpret_cast<jbyte*>(answer.record.data()));
    }
    return answer;
}

// The platform's libraries, which all platforms have under the same names.
constexpr const char* kPlatform[] = {"libvelotra_tv_services.so", "libvelotra_tv_svl_builder.so",
                                     "libvelotra_tv_basic.so", "liblog.so", "libcutils.so"};

// The path of the library with that file name in the scripted platform: in the folder of this library.
std::string scripted(const char* library) {
    Dl_info found = {};
    const std::string own = ::dladdr(reinterpret_cast<void*>(&script::reset), &found) == 0 ? "" : found.dli_fname;
    return own.substr(0, own.rfind('/') + 1) + library;
}

// The path of a library that is loaded, or an empty text.
std::string loaded_from(const char* library) {
    void* const handle = ::dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    link_map* map = nullptr;
    return handle == nullptr || ::dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 ? "" : map->l_name;
}

#define TAVRO_CALL_NAME(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) #NAME,
constexpr const char* kCalls[] = {TAVRO_MIDDLEWARE_CALLS(TAVRO_CALL_NAME) "__android_log_print"};
#undef TAVRO_CALL_NAME

} // namespace

#define SCRIPT(RESULT, NAME) extern "C" JNIEXPORT RESULT JNICALL Java_com_velotra_tv_tavro_scripted_Script_##NAME

// Loads the scripted platform, so that it serves every library that is loaded later: the loader does not load a second
// library of the same name. Returns null, or why it cannot serve them.
SCRIPT(jstring, select)(JNIEnv* env, jclass) {
    for (const char* library : kPlatform) {
        const std::string path = loaded_from(library);
        std::error_code ignored;
        if (path.empty() && ::dlopen(scripted(library).c_str(), RTLD_NOW) == nullptr) {
            return env->NewStringUTF(::dlerror());
        } else if (!path.empty() && !std::filesystem::equivalent(path, scripted(library), ignored)) {
            return env->NewStringUTF((path + " is loaded already").c_str());
        }
    }
    return nullptr;
}

SCRIPT(jboolean, isCall)(JNIEnv* env, jclass, jstring name) {
    const std::string text = text_of(env, name);
    for (const char* call : kCalls) {
        if (text == call) {
            return JNI_TRUE;
        }
    }
    return JNI_FALSE;
}

SCRIPT(void, reset)(JNIEnv*, jclass) { script::reset(); }

SCRIPT(void, answer0)
(JNIEnv* env, jclass, jstring call, jint status, jboolean has_value, jint value, jbyteArray record) {
    script::answer(text_of(env, call), make_answer(env, status, has_value, value, record));
}

SCRIPT(void, always0)
(JNIEnv* env, jclass, jstring call, jint status, jboolean has_value, jint value, jbyteArray record) {
    script::always(text_of(env, call), make_answer(env, status, has_value, value, record));
}

SCRIPT(jobjectArray, lines)(JNIEnv* env, jclass) {
    const std::vector<std::string> lines = script::lines();
    auto* array = env->NewObjectArray(static_cast<jsize>(lines.size()), env->FindClass("java/lang/String"), nullptr);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        jstring line = env->NewStringUTF(lines[i].c_str());
        env->SetObjectArrayElement(array, static_cast<jsize>(i), line);
        env->DeleteLocalRef(line);
    }
    return array;
}

SCRIPT(jbyteArray, record0)(JNIEnv* env, jclass, jint index) {
    const std::vector<std::byte> record = script::journal().at(static_cast<std::size_t>(index)).record;
    auto* array = env->NewByteArray(static_cast<jsize>(record.size()));
    env->SetByteArrayRegion(array, 0, static_cast<jsize>(record.size()), reinterpret_cast<const jbyte*>(record.data()));
    return array;
}

SCRIPT(void, forgetHandles)(JNIEnv*, jclass) { script::forget_handles(); }

SCRIPT(jintArray, openHandles)(JNIEnv* env, jclass) {
    const std::vector<std::uint32_t> handles = script::open_handles();
    auto* array = env->NewIntArray(static_cast<jsize>(handles.size()));
    env->SetIntArrayRegion(array, 0, static_cast<jsize>(handles.size()), reinterpret_cast<const jint*>(handles.data()));
    return array;
}

SCRIPT(void, setProperty0)(JNIEnv* env, jclass, jstring name, jstring value) {
    script::set_property(text_of(env, name), text_of(env, value));
}
