#include "agent/recorder.h"

#include <algorithm>
#include <cstdio>

namespace tavro::agent {

Table original;
jvmtiEnv* jvmti = nullptr;

namespace {

constexpr char kPackage[] = "com/velotra/tv/tavro/services/channellist/";

// The signature of a class, such as "Ljava/lang/String;".
std::string signature_of(jclass cls) {
    char* signature = nullptr;
    if (cls == nullptr || jvmti->GetClassSignature(cls, &signature, nullptr) != JVMTI_ERROR_NONE) {
        return "";
    }
    std::string copy = signature;
    jvmti->Deallocate(reinterpret_cast<unsigned char*>(signature));
    return copy;
}

std::string signature_of_object(JNIEnv* env, jobject object) {
    jclass cls = original.GetObjectClass(env, object);
    std::string signature = signature_of(cls);
    original.DeleteLocalRef(env, cls);
    return signature;
}

constexpr char kString[] = "Ljava/lang/String;";
constexpr char kClass[] = "Ljava/lang/Class;";

// Name of a primitive array's element type; empty for other signatures.
std::string element_type(const std::string& signature) {
    if (signature == "[B") {
        return "byte";
    }
    return signature == "[I" ? "int" : "";
}

// The first word of a reference's label.
const char* label_of(const std::string& signature) {
    if (signature == kString) {
        return "string";
    }
    if (signature == kClass) {
        return "class";
    }
    return signature.front() == '[' ? "array" : "object";
}

bool is_list_native(jmethodID method) {
    jboolean native = JNI_FALSE;
    jclass cls = nullptr;
    if (jvmti->IsMethodNative(method, &native) != JVMTI_ERROR_NONE || native == JNI_FALSE ||
        jvmti->GetMethodDeclaringClass(method, &cls) != JVMTI_ERROR_NONE) {
        return false;
    }
    return signature_of(cls).find(std::string("L") + kPackage + "VltTv") == 0;
}

} // namespace

std::string quoted(const char* text) {
    if (text == nullptr) {
        return "null";
    }
    std::string all = "\"";
    for (const char* at = text; *at != '\0'; ++at) {
        if (*at == '\n') {
            all += "\\n";
        } else if (*at < ' ' || *at > '~') {
            char escaped[5] = {};
            std::snprintf(escaped, sizeof(escaped), "\\x%02x", static_cast<unsigned char>(*at));
            all += escaped;
        } else {
            all += *at;
        }
    }
    return all + '"';
}

std::string abbreviated(std::string text) {
    for (std::size_t at = text.find(kPackage); at != std::string::npos; at = text.find(kPackage, at)) {
        text.replace(at, sizeof(kPackage) - 1, ".../");
    }
    return text;
}

std::string class_name(jclass cls) {
    std::string signature = signature_of(cls);
    if (signature.empty() || signature.front() != 'L') {
        return signature;
    }
    signature.pop_back();
    return signature.substr(signature.rfind('/') + 1);
}

std::string description(JNIEnv* env, jobject object) {
    const std::string signature = signature_of_object(env, object);
    if (signature == kClass) {
        return class_name(static_cast<jclass>(object));
    }
    if (signature == kString) {
        const char* chars = original.GetStringUTFChars(env, static_cast<jstring>(object), nullptr);
        std::string text = quoted(chars);
        original.ReleaseStringUTFChars(env, static_cast<jstring>(object), chars);
        return text;
    }
    if (signature.front() == '[') {
        const std::string type = element_type(signature);
        return (type.empty() ? "Object" : type) + "[" +
               std::to_string(original.GetArrayLength(env, static_cast<jarray>(object))) + "]";
    }
    return signature.substr(signature.rfind('/') + 1, signature.size() - signature.rfind('/') - 2);
}

std::string Held::add(JNIEnv* env, jobject reference, const char* made_by, const std::string& origin) {
    if (reference == nullptr) {
        return "null";
    }
    int number = 0;
    std::string label;
    if (env != nullptr) {
        number = 1;
        while (numbers_.count(number) != 0) {
            ++number;
        }
        numbers_.insert(number);
        label = label_of(signature_of_object(env, reference)) + std::to_string(number);
    }
    frames_.back()[reference] = {label, origin, made_by, number};
    ++live_by_[made_by];
    if (++live_ > maximum_) {
        maximum_ = live_;
        maximum_by_ = live_by_;
    }
    return label;
}

void Held::remove(jobject reference) {
    for (std::size_t i = frames_.size(); i-- > 0;) {
        const auto found = frames_[i].find(reference);
        if (found != frames_[i].end()) {
            forget(found->second);
            frames_[i].erase(found);
            return;
        }
    }
}

void Held::pop_frame() {
    if (frames_.size() > 1) {
        for (const auto& [handle, reference] : frames_.back()) {
            forget(reference);
        }
        frames_.pop_back();
    }
}

void Held::forget(const Reference& reference) {
    --live_;
    --live_by_[reference.made_by];
    numbers_.erase(reference.number);
}

const Reference* Held::find(jobject reference) const {
    for (const auto& frame : frames_) {
        const auto found = frame.find(reference);
        if (found != frame.end()) {
            return &found->second;
        }
    }
    return nullptr;
}

std::string Held::remove_memory(const void* memory) {
    const auto found = memory_.find(memory);
    if (found == memory_.end()) {
        return "";
    }
    std::string text = found->second;
    memory_.erase(found);
    return text;
}

std::string Held::maximum_by_function() const {
    std::string text;
    for (const auto& [made_by, number] : maximum_by_) {
        if (number > 0) {
            text += (text.empty() ? "" : ", ") + std::to_string(number) + " " + made_by;
        }
    }
    return text;
}

std::vector<std::string> Held::texts() const {
    std::vector<std::string> all;
    for (const auto& frame : frames_) {
        for (const auto& [handle, reference] : frame) {
            all.push_back("reference " + reference.origin);
        }
    }
    for (const auto& [address, text] : memory_) {
        all.push_back(text);
    }
    std::sort(all.begin(), all.end());
    return all;
}

Recorder& Recorder::of_thread() {
    thread_local Recorder recorder;
    return recorder;
}

void Recorder::begin(std::vector<std::string> names, std::vector<jobject> objects, Failing failing, bool with_lines) {
    *this = Recorder();
    names_ = std::move(names);
    objects_ = std::move(objects);
    failing_ = std::move(failing);
    with_lines_ = with_lines;
    on_ = true;
}

void Recorder::end(JNIEnv* env) {
    on_ = false;
    for (jobject object : objects_) {
        original.DeleteGlobalRef(env, object);
    }
    objects_.clear();
}

bool Recorder::is_to_fail(const std::string& text) {
    return text.find(failing_.text) != std::string::npos && ++matching_ == failing_.number;
}

std::string Recorder::known_name(JNIEnv* env, jobject reference) const {
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (original.IsSameObject(env, objects_[i], reference) != JNI_FALSE) {
            return names_[i];
        }
    }
    return "";
}

std::string Recorder::label(JNIEnv* env, jobject reference) const {
    if (reference == nullptr) {
        return "null";
    }
    const Reference* found = held_.find(reference);
    if (found != nullptr) {
        return found->label;
    }
    const std::string name = known_name(env, reference);
    return name.empty() ? "unknown" : name;
}

std::string Recorder::origin(JNIEnv* env, jobject reference) const {
    const Reference* found = held_.find(reference);
    return found == nullptr ? "argument " + label(env, reference) : found->origin;
}

std::string Recorder::id_name(const void* id) const {
    if (id == nullptr) {
        return "null";
    }
    const auto found = ids_.find(id);
    return found == ids_.end() ? "unknown" : found->second.name;
}

std::string Recorder::id_signature(const void* id) const {
    const auto found = ids_.find(id);
    return found == ids_.end() ? "" : found->second.signature;
}

bool Recorder::in_list_native() {
    jmethodID method = nullptr;
    jlocation location = 0;
    if (jvmti->GetFrameLocation(nullptr, 0, &method, &location) != JVMTI_ERROR_NONE) {
        return false;
    }
    thread_local jmethodID last = nullptr;
    thread_local bool last_is_list_native = false;
    if (method != last) {
        last = method;
        last_is_list_native = is_list_native(method);
    }
    return last_is_list_native;
}

} // namespace tavro::agent
