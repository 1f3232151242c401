#include "jni/env/values.h"

#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"

using namespace tavro;

namespace {

constexpr char kAudioVideoKey[] = "SERVICE_TYPE_AUDIO_VIDEO";
constexpr char kAudioKey[] = "SERVICE_TYPE_AUDIO";
constexpr char kOtherKey[] = "SERVICE_TYPE_OTHER";

constexpr int kOther = 0;
constexpr int kAudioVideo = 1;
constexpr int kAudio = 2;

} // namespace

std::string convert_service_type_to_key(int service_type) {
    switch (service_type) {
    case 1:
    case 4:
    case 7:
        return kAudioVideoKey;
    case 2:
    case 5:
    case 8:
        return kAudioKey;
    default:
        return kOtherKey;
    }
}

int convert_key_to_convert_service(std::string key) {
    if (key == kAudioVideoKey) {
        return kAudioVideo;
    }
    return key == kAudioKey ? kAudio : kOther;
}

void showMapListValue(JNIEnv* env, const char* key, int value_kind, jobject object, jclass cls) {
    Jni jni(env);
    jstring java_key = jni.new_string(key);
    if (value_kind == kMapBoolean) {
        const bool value = jni.call_boolean(object, jni.method(cls, "getBoolean", "(Ljava/lang/String;)Z"), java_key);
        if (!jni.failed()) {
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]Get bool = %s\n", value ? "true" : "false");
        }
    } else if (value_kind == kMapString) {
        jobject value =
            jni.call_object(object, jni.method(cls, "getString", "(Ljava/lang/String;)Ljava/lang/String;"), java_key);
        const char* chars = jni.keep_utf_chars(static_cast<jstring>(value));
        if (!jni.failed()) {
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]Get String = %s\n", chars == nullptr ? "" : chars);
        }
    } else if (value_kind == kMapInteger) {
        const jint value = jni.call_int(object, jni.method(cls, "getInteger", "(Ljava/lang/String;)I"), java_key);
        if (!jni.failed()) {
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]Get Int = %d\n", value);
        }
    }
    jni.delete_local(java_key);
}
