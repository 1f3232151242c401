// Loads the agent into a virtual machine and gives it to Java tests (class JniCalls).

#include "agent/recorder.h"
#include "script.h"

#include <jni.h>

using namespace tavro::agent;

namespace {

jobjectArray to_array(JNIEnv* env, const std::vector<std::string>& texts) {
    auto* array = env->NewObjectArray(static_cast<jsize>(texts.size()), env->FindClass("java/lang/String"), nullptr);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        jstring text = env->NewStringUTF(texts[i].c_str());
        env->SetObjectArrayElement(array, static_cast<jsize>(i), text);
        env->DeleteLocalRef(text);
    }
    return array;
}

std::string text_of(JNIEnv* env, jstring text) {
    const char* chars = env->GetStringUTFChars(text, nullptr);
    std::string copy = chars;
    env->ReleaseStringUTFChars(text, chars);
    return copy;
}

// Puts the middleware calls and log lines of the scripted platform between the JNI calls.
void record_platform(const std::string& text) {
    Recorder& recorder = Recorder::of_thread();
    if (recorder.with_lines()) {
        // A log line's text is put in quotes: "log 3 TAG: TEXT".
        const std::size_t tag = text.rfind("log ", 0) == 0 ? text.find(": ") + 2 : text.size();
        recorder.line(text.substr(0, tag) + (tag < text.size() ? quoted(text.c_str() + tag) : ""));
    }
}

// Adds the status of a middleware call that fails.
void record_failure(tavro::MwStatus status) {
    Recorder& recorder = Recorder::of_thread();
    if (recorder.with_lines()) {
        recorder.end_line(" = " + std::to_string(status));
    }
}

} // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void*) {
    void* jvmti = nullptr;
    const bool replaced = vm->GetEnv(&jvmti, JVMTI_VERSION_1_2) == JNI_OK &&
                          tavro::trace::replace_jni_functions(static_cast<jvmtiEnv*>(jvmti), Recorder::of_calls);
    return replaced ? JNI_VERSION_1_8 : JNI_ERR;
}

#define JNI_CALLS(RESULT, NAME)                                                                                        \
    extern "C" JNIEXPORT RESULT JNICALL Java_com_velotra_tv_tavro_services_channellist_JniCalls_##NAME

JNI_CALLS(void, begin)
(JNIEnv* env, jclass, jobjectArray names, jobjectArray objects, jstring failing_text, jint failing_number) {
    std::vector<std::string> all_names;
    std::vector<jobject> all_objects;
    for (jsize i = 0; i < env->GetArrayLength(names); ++i) {
        all_names.push_back(text_of(env, static_cast<jstring>(env->GetObjectArrayElement(names, i))));
        all_objects.push_back(env->NewGlobalRef(env->GetObjectArrayElement(objects, i)));
    }
    tavro::script::observe(record_platform);
    tavro::script::observe_failures(record_failure);
    Recorder::of_thread().begin(all_names, all_objects, {text_of(env, failing_text), failing_number}, true);
}
JNI_CALLS(void, beginCounting)(JNIEnv*, jclass) { Recorder::of_thread().begin({}, {}, {{}, 0}, false); }
JNI_CALLS(void, end)(JNIEnv* env, jclass) { Recorder::of_thread().end(env); }
JNI_CALLS(jobjectArray, lines)(JNIEnv* env, jclass) { return to_array(env, Recorder::of_thread().lines()); }
JNI_CALLS(jobjectArray, held)(JNIEnv* env, jclass) { return to_array(env, Recorder::of_thread().held().texts()); }
JNI_CALLS(jboolean, failed)(JNIEnv*, jclass) { return static_cast<jboolean>(Recorder::of_thread().failed()); }
JNI_CALLS(jint, maximum)(JNIEnv*, jclass) { return Recorder::of_thread().held().maximum(); }
JNI_CALLS(jstring, maximumByFunction)(JNIEnv* env, jclass) {
    return env->NewStringUTF(Recorder::of_thread().held().maximum_by_function().c_str());
}
