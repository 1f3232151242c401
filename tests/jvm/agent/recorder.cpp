#include "agent/recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace tavro::agent {

using trace::class_name;
using trace::class_signature;
using trace::Effect;
using trace::JniCall;
using trace::original_jni;

namespace {

std::string signature_of_object(JNIEnv* env, jobject object) {
    jclass cls = original_jni.GetObjectClass(env, object);
    std::string signature = class_signature(cls);
    original_jni.DeleteLocalRef(env, cls);
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

const char* memory_word(const JniCall& call) {
    return call.function.shown.find("String") != std::string::npos ? "characters" : "elements";
}

bool makes(const JniCall& call) { return call.function.shown.rfind("New", 0) == 0; }

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

std::string description(JNIEnv* env, jobject object) {
    const std::string signature = signature_of_object(env, object);
    if (signature == kClass) {
        return class_name(static_cast<jclass>(object));
    }
    if (signature == kString) {
        const char* chars = original_jni.GetStringUTFChars(env, static_cast<jstring>(object), nullptr);
        std::string text = quoted(chars);
        original_jni.ReleaseStringUTFChars(env, static_cast<jstring>(object), chars);
        return text;
    }
    if (signature.front() == '[') {
        const std::string type = element_type(signature);
        return (type.empty() ? "Object" : type) + "[" +
               std::to_string(original_jni.GetArrayLength(env, static_cast<jarray>(object))) + "]";
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
        original_jni.DeleteGlobalRef(env, object);
    }
    objects_.clear();
}

trace::JniObserver* Recorder::of_calls(JNIEnv* env) {
    Recorder& recorder = of_thread();
    return recorder.on_ && trace::is_list_native_running(env) ? &recorder : nullptr;
}

bool Recorder::begin(JniCall& call) {
    end_references(call);
    if (!with_lines_) {
        return false;
    }
    give_back(call);
    return call.function.exception != nullptr && is_to_fail(call.text());
}

void Recorder::failed(JniCall& call) {
    line(call.text() + ") fails: " + (std::strrchr(call.function.exception, '/') + 1));
}

void Recorder::end(JniCall& call, const std::string& result) {
    line(call.text() + ")" + (result.empty() ? "" : " = " + result));
}

// Does what a call does to local references, before the call, since that ends them.
void Recorder::end_references(const JniCall& call) {
    if (call.function.effect == Effect::kDeletesLocal) {
        held_.remove(call.first);
    } else if (call.function.effect == Effect::kPopsFrame) {
        held_.pop_frame();
    } else if (call.function.effect == Effect::kPushesFrame) {
        held_.push_frame();
    }
}

// Does what a call does to memory and global references, and notes in its text if these are not held.
void Recorder::give_back(JniCall& call) {
    if (call.function.effect == Effect::kDeletesGlobal) {
        held_.remove_memory(call.first);
    } else if (call.function.effect == Effect::kGivesBack) {
        const std::string held = held_.remove_memory(call.memory);
        if (held != std::string(memory_word(call)) + " of " + origin(call.env, call.first)) {
            call.arguments.emplace_back("not held");
        }
    }
}

std::string Recorder::reference_result(JniCall& call, jobject result) {
    const bool is_global = call.function.effect == Effect::kMakesGlobal;
    if (!with_lines_) {
        return is_global ? "" : held_.add(nullptr, result, call.function.name, "");
    }
    if (result == nullptr) {
        return "null";
    }
    if (is_global) {
        held_.add_memory(result, "global reference");
        return "global";
    }
    const std::string known = known_name(call.env, result);
    const std::string& name = call.function.shown;
    std::string origin = name;
    if (name == "NewStringUTF") {
        origin = "string " + description(call.env, result);
    } else if (name == "GetObjectClass" || name == "FindClass") {
        origin = "class " + description(call.env, result);
    } else if (makes(call)) {
        origin = "new " + description(call.env, result);
    } else if (!call.member.empty()) {
        origin = (call.is_field ? "field " : "result of ") + call.member;
    }
    const std::string label = held_.add(call.env, result, call.function.name, origin);
    return makes(call) ? label // the arguments say what it is
                       : label + " " + (known.empty() ? description(call.env, result) : known);
}

void Recorder::memory_result(JniCall& call, const void* memory) {
    if (call.function.effect == Effect::kGets) {
        held_.add_memory(memory, std::string(memory_word(call)) + " of " + origin(call.env, call.first));
    }
}

bool Recorder::is_to_fail(const std::string& text) {
    return text.find(failing_.text) != std::string::npos && ++matching_ == failing_.number;
}

std::string Recorder::known_name(JNIEnv* env, jobject reference) const {
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (original_jni.IsSameObject(env, objects_[i], reference) != JNI_FALSE) {
            return names_[i];
        }
    }
    return "";
}

std::string Recorder::reference(JNIEnv* env, jobject object) {
    if (object == nullptr) {
        return "null";
    }
    const Reference* found = held_.find(object);
    if (found != nullptr) {
        return found->label;
    }
    const std::string name = known_name(env, object);
    return name.empty() ? "unknown" : name;
}

std::string Recorder::origin(JNIEnv* env, jobject object) {
    const Reference* found = held_.find(object);
    return found == nullptr ? "argument " + reference(env, object) : found->origin;
}

std::string Recorder::member_name(const void* id) {
    if (id == nullptr) {
        return "null";
    }
    const auto found = ids_.find(id);
    return found == ids_.end() ? "unknown" : found->second.name;
}

std::string Recorder::member_signature(const void* id) {
    const auto found = ids_.find(id);
    return found == ids_.end() ? "" : found->second.signature;
}

} // namespace tavro::agent
