// Makes the control of the scripted platform available to Java tests (class Script).

#include "script.h"

#include <jni.h>

#include <cstddef>
#include <cstring>
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

SCRIPT(void, setProperty)(JNIEnv* env, jclass, jstring name, jstring value) {
    script::set_property(text_of(env, name), text_of(env, value));
}
