// Makes the control of the scripted platform available to Java tests (class Script).

#include "script.h"

#include <jni.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
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

// The part of inACopy that runs in the copy.
[[noreturn]] void run_in_copy(JNIEnv* env, jobject runnable, int output) {
    const rlimit no_core = {};
    ::setrlimit(RLIMIT_CORE, &no_core);
    ::alarm(10);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    env->CallVoidMethod(runnable, env->GetMethodID(env->GetObjectClass(runnable), "run", "()V"));
    if (env->ExceptionCheck() != JNI_FALSE) {
        env->ExceptionDescribe();
        ::_exit(1);
    }
    ::_exit(0);
}

std::string everything_from(int file) {
    std::string all;
    char buffer[4096];
    ssize_t size = 0;
    while ((size = ::read(file, buffer, sizeof buffer)) > 0 || (size < 0 && errno == EINTR)) {
        all.append(buffer, static_cast<std::size_t>(size < 0 ? 0 : size));
    }
    return all;
}

} // namespace

#define SCRIPT(RESULT, NAME)                                                                                           \
    extern "C" JNIEXPORT RESULT JNICALL Java_com_velotra_tv_tavro_services_channellist_Script_##NAME

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

SCRIPT(jbyteArray, record)(JNIEnv* env, jclass, jint index) {
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

SCRIPT(void, setProperty)(JNIEnv* env, jclass, jstring name, jstring value) {
    script::set_property(text_of(env, name), text_of(env, value));
}

// Only the calling thread goes on in the copy: what waits for another one, such as a garbage collection, does not
// return. An alarm ends it after 10 s.
SCRIPT(jstring, inACopy)(JNIEnv* env, jclass, jobject runnable) {
    int ends[2] = {};
    if (::pipe(ends) != 0) {
        return nullptr;
    }
    const pid_t copy = ::fork();
    if (copy == 0) {
        ::close(ends[0]);
        run_in_copy(env, runnable, ends[1]);
    }
    ::close(ends[1]);
    std::string output = copy < 0 ? "" : everything_from(ends[0]);
    ::close(ends[0]);
    int status = 0;
    if (copy < 0 || ::waitpid(copy, &status, 0) != copy) {
        return nullptr;
    }
    output += WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                  : "exit " + std::to_string(WEXITSTATUS(status));
    return env->NewStringUTF(output.c_str());
}
