#include "recording_env.h"

#include "control.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace tavro::bench {

namespace {

JNIEnv* real = nullptr;
RecordingEnv* recorder = nullptr;
std::vector<std::string> journal;
std::map<const void*, int> references; // numbers of references
int next_reference = 0;
std::map<const void*, std::string> ids; // names and signatures of method and field ids

std::string ref(const void* reference) {
    if (reference == nullptr) {
        return "null";
    }
    const auto [entry, added] = references.emplace(reference, next_reference);
    next_reference += added ? 1 : 0;
    return "#" + std::to_string(entry->second);
}

// A reference that a call has just returned. It gets a new number even if the virtual machine reuses an address.
std::string made(const void* reference) {
    references.erase(reference);
    return ref(reference);
}

std::string quoted(const char* text) { return text == nullptr ? "null" : "\"" + std::string(text) + "\""; }

template <class... Words>
void say(const char* call, const Words&... words) {
    std::string line = call;
    ((line += " ", line += words), ...);
    journal.push_back(std::move(line));
}

// The arguments of a Java method call, formatted according to the method's signature.
std::string values_of(const void* method, std::va_list values) {
    std::va_list copy;
    va_copy(copy, values);
    std::string text;
    const std::string& id = ids[method];
    for (std::size_t at = id.find('(') + 1; at < id.size() && id[at] != ')'; ++at) {
        const bool object = id[at] == 'L' || id[at] == '[';
        if (object) {
            at = id.find(';', at);
            text += " " + ref(va_arg(copy, jobject));
        } else {
            text += " " + std::to_string(va_arg(copy, jint));
        }
    }
    va_end(copy);
    return text;
}

template <int Slot>
void JNICALL unexpected() {
    std::fprintf(stderr,
                 "native_bench: the JNI call in slot %d of the table is not recorded; add it to recording_env.cpp\n",
                 Slot);
    std::abort();
}

constexpr int kSlots = sizeof(JNINativeInterface_) / sizeof(void*);

template <int... Slots>
void fill_unexpected(void** table, std::integer_sequence<int, Slots...>) {
    ((table[Slots] = reinterpret_cast<void*>(&unexpected<Slots>)), ...);
}

void journal_platform(const char* text) { journal.emplace_back(text); }

} // namespace

struct RecordingCalls {
    static jclass JNICALL FindClass(JNIEnv*, const char* name) {
        jclass result = real->FindClass(name);
        say("FindClass", name, made(result));
        ids[result] = name;
        return result;
    }
    static jclass JNICALL GetObjectClass(JNIEnv*, jobject object) {
        const std::string of = ref(object);
        jclass result = real->GetObjectClass(object);
        say("GetObjectClass", of, made(result));
        return result;
    }
    static jmethodID JNICALL GetMethodID(JNIEnv*, jclass cls, const char* name, const char* signature) {
        jmethodID result = real->GetMethodID(cls, name, signature);
        ids[result] = std::string(name) + signature;
        say("GetMethodID", ref(cls), name, signature);
        return result;
    }
    static jfieldID JNICALL GetFieldID(JNIEnv*, jclass cls, const char* name, const char* descriptor) {
        jfieldID result = real->GetFieldID(cls, name, descriptor);
        ids[result] = std::string(name) + " " + descriptor;
        say("GetFieldID", ref(cls), name, descriptor);
        return result;
    }
    static jstring JNICALL NewStringUTF(JNIEnv*, const char* text) {
        jstring result = real->NewStringUTF(text);
        say("NewStringUTF", quoted(text), made(result));
        return result;
    }
    static const char* JNICALL GetStringUTFChars(JNIEnv*, jstring text, jboolean* copied) {
        const char* result = real->GetStringUTFChars(text, copied);
        say("GetStringUTFChars", ref(text), copied == nullptr ? "" : "copied?", quoted(result));
        return result;
    }
    static void JNICALL ReleaseStringUTFChars(JNIEnv*, jstring text, const char* chars) {
        say("ReleaseStringUTFChars", ref(text));
        real->ReleaseStringUTFChars(text, chars);
    }
    static jint* JNICALL GetIntArrayElements(JNIEnv*, jintArray array, jboolean* copied) {
        say("GetIntArrayElements", ref(array), copied == nullptr ? "" : "copied?");
        return real->GetIntArrayElements(array, copied);
    }
    static jsize JNICALL GetArrayLength(JNIEnv*, jarray array) {
        say("GetArrayLength", ref(array));
        return real->GetArrayLength(array);
    }
    static jobject JNICALL GetObjectArrayElement(JNIEnv*, jobjectArray array, jsize index) {
        jobject result = real->GetObjectArrayElement(array, index);
        say("GetObjectArrayElement", ref(array), std::to_string(index), made(result));
        return result;
    }
    static void JNICALL DeleteLocalRef(JNIEnv*, jobject reference) {
        say("DeleteLocalRef", ref(reference));
        references.erase(reference);
        real->DeleteLocalRef(reference);
    }
    static jboolean JNICALL CallBooleanMethodV(JNIEnv*, jobject object, jmethodID method, std::va_list values) {
        say("CallBooleanMethodV", ref(object), ids[method], values_of(method, values));
        return real->functions->CallBooleanMethodV(real, object, method, values);
    }
    static jint JNICALL CallIntMethodV(JNIEnv*, jobject object, jmethodID method, std::va_list values) {
        say("CallIntMethodV", ref(object), ids[method], values_of(method, values));
        return real->functions->CallIntMethodV(real, object, method, values);
    }
    static void JNICALL CallVoidMethodV(JNIEnv*, jobject object, jmethodID method, std::va_list values) {
        say("CallVoidMethodV", ref(object), ids[method], values_of(method, values));
        real->functions->CallVoidMethodV(real, object, method, values);
    }
    static jobject JNICALL CallObjectMethodV(JNIEnv*, jobject object, jmethodID method, std::va_list values) {
        const std::string of = ref(object) + " " + ids[method] + values_of(method, values);
        jobject result = real->functions->CallObjectMethodV(real, object, method, values);
        say("CallObjectMethodV", of, made(result));
        return result;
    }
    static jobject JNICALL NewObjectV(JNIEnv*, jclass cls, jmethodID method, std::va_list values) {
        const std::string of = ref(cls) + " " + ids[method] + values_of(method, values);
        jobject result = real->functions->NewObjectV(real, cls, method, values);
        say("NewObjectV", of, made(result));
        return result;
    }
    static jint JNICALL GetIntField(JNIEnv*, jobject object, jfieldID field) {
        say("GetIntField", ref(object), ids[field]);
        return real->GetIntField(object, field);
    }
    static jobject JNICALL GetObjectField(JNIEnv*, jobject object, jfieldID field) {
        const std::string of = ref(object) + " " + ids[field];
        jobject result = real->GetObjectField(object, field);
        say("GetObjectField", of, made(result));
        return result;
    }
    static jbyteArray JNICALL NewByteArray(JNIEnv*, jsize length) {
        jbyteArray result = real->NewByteArray(length);
        say("NewByteArray", std::to_string(length), made(result));
        return result;
    }
    static void JNICALL SetByteArrayRegion(JNIEnv*, jbyteArray array, jsize start, jsize length, const jbyte* bytes) {
        std::string digits;
        for (jsize i = 0; i < length; ++i) {
            char pair[4];
            std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned char>(bytes[i]));
            digits += pair;
        }
        say("SetByteArrayRegion", ref(array), std::to_string(start), std::to_string(length), digits);
        real->SetByteArrayRegion(array, start, length, bytes);
    }
    static jint JNICALL RegisterNatives(JNIEnv*, jclass cls, const JNINativeMethod* methods, jint count) {
        say("RegisterNatives", ids[cls], std::to_string(count));
        for (jint i = 0; i < count; ++i) {
            say("  ", methods[i].name, methods[i].signature);
        }
        recorder->registered_.push_back({ids[cls], methods, count});
        return real->RegisterNatives(cls, methods, count);
    }
    // Used by the check itself to load the library; not recorded.
    static jint JNICALL GetJavaVM(JNIEnv*, JavaVM** vm) {
        *vm = recorder->vm();
        return JNI_OK;
    }
    static jint JNICALL GetEnv(JavaVM*, void** env, jint version) {
        say("GetEnv", std::to_string(version));
        *env = recorder->env();
        return JNI_OK;
    }
};

RecordingEnv::RecordingEnv(JNIEnv* real_env) : env_(), vm_() {
    real = real_env;
    recorder = this;
    static JNINativeInterface_ table = *real_env->functions;
    fill_unexpected(reinterpret_cast<void**>(&table), std::make_integer_sequence<int, kSlots>());
#define TAVRO_RECORDED(NAME) table.NAME = RecordingCalls::NAME
    TAVRO_RECORDED(FindClass);
    TAVRO_RECORDED(GetObjectClass);
    TAVRO_RECORDED(GetMethodID);
    TAVRO_RECORDED(GetFieldID);
    TAVRO_RECORDED(NewStringUTF);
    TAVRO_RECORDED(GetStringUTFChars);
    TAVRO_RECORDED(ReleaseStringUTFChars);
    TAVRO_RECORDED(GetIntArrayElements);
    TAVRO_RECORDED(GetArrayLength);
    TAVRO_RECORDED(GetObjectArrayElement);
    TAVRO_RECORDED(DeleteLocalRef);
    TAVRO_RECORDED(CallBooleanMethodV);
    TAVRO_RECORDED(CallIntMethodV);
    TAVRO_RECORDED(CallVoidMethodV);
    TAVRO_RECORDED(CallObjectMethodV);
    TAVRO_RECORDED(NewObjectV);
    TAVRO_RECORDED(GetIntField);
    TAVRO_RECORDED(GetObjectField);
    TAVRO_RECORDED(NewByteArray);
    TAVRO_RECORDED(SetByteArrayRegion);
    TAVRO_RECORDED(RegisterNatives);
    TAVRO_RECORDED(GetJavaVM);
#undef TAVRO_RECORDED
    env_.functions = &table;
    static JNIInvokeInterface_ invoke = {};
    invoke.GetEnv = RecordingCalls::GetEnv;
    vm_.functions = &invoke;
}

void RecordingEnv::start() {
    journal.clear();
    references.clear();
    next_reference = 0;
    tavro_memory_journal = journal_platform;
}

std::vector<std::string> RecordingEnv::stop() {
    tavro_memory_journal = nullptr;
    return std::move(journal);
}

} // namespace tavro::bench
