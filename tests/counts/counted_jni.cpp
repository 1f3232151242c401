#include "counted_jni.h"

#include "counting.h"

#include <cstdio>
#include <cstdlib>

namespace tavro::counts {
namespace {

using Table = JNINativeInterface_;

Table original;

template <auto Slot>
struct Replacement;
template <class Result, class... Arguments, Result (JNICALL* Table::*Slot)(JNIEnv*, Arguments...)>
struct Replacement<Slot> {
    static Result JNICALL call(JNIEnv* env, Arguments... arguments) {
        const Running fake(Running::What::kFake);
        return (original.*Slot)(env, arguments...);
    }
};

template <auto... Slots>
void replace(Table& table) {
    ((table.*Slots = Replacement<Slots>::call), ...);
}

// Returns the text between the prefix `first` and the suffix `last`, or "" if `text` does not have both.
std::string between(const std::string& text, const std::string& first, const std::string& last) {
    const bool found = text.size() >= first.size() + last.size() && text.compare(0, first.size(), first) == 0 &&
                       text.compare(text.size() - last.size(), last.size(), last) == 0;
    return found ? text.substr(first.size(), text.size() - first.size() - last.size()) : "";
}

} // namespace

CountedJni::CountedJni() : table_(*env()->functions) {
    original = table_;
    replace<&Table::FindClass, &Table::GetObjectClass, &Table::GetMethodID, &Table::GetFieldID, &Table::NewStringUTF,
            &Table::GetStringUTFChars, &Table::ReleaseStringUTFChars, &Table::DeleteLocalRef,
            &Table::CallBooleanMethodV, &Table::CallIntMethodV, &Table::CallObjectMethodV, &Table::CallVoidMethodV,
            &Table::NewObjectV, &Table::GetIntField, &Table::GetObjectField, &Table::GetArrayLength,
            &Table::GetObjectArrayElement, &Table::GetIntArrayElements, &Table::NewByteArray,
            &Table::SetByteArrayRegion, &Table::RegisterNatives>(table_);
    env()->functions = &table_;
    if (JNI_OnLoad(vm(), nullptr) != JNI_VERSION_1_4) {
        std::fprintf(stderr, "cannot load the library\n");
        std::exit(1);
    }
}

void* CountedJni::native(const std::string& cls, const std::string& name, const std::string& signature) const {
    for (const Registered& table : registered) {
        if (table.cls != "com/velotra/tv/tavro/services/channellist/" + cls) {
            continue;
        }
        for (const JNINativeMethod& method : table.methods) {
            if (name == method.name && signature == method.signature) {
                return method.fnPtr;
            }
        }
    }
    std::fprintf(stderr, "native %s.%s%s not found\n", cls.c_str(), name.c_str(), signature.c_str());
    std::exit(1);
}

void CountedJni::set_requested(test::FakeObject& made) {
    for (const std::string& call : journal()) {
        const std::string key = between(call, "NewStringUTF(\"", "\")");
        if (!key.empty()) {
            made.keys.insert(key);
        }
        const std::string text = between(call, "GetFieldID(", ", Ljava/lang/String;)");
        if (!text.empty()) {
            made.object_fields[text] = &string(text.find("RecId") != std::string::npos ? "1,17" : "Das Erste HD");
        }
        const std::string codes = between(call, "GetFieldID(", ", [I)");
        if (!codes.empty()) {
            made.object_fields[codes] = &int_array({1, 2, 3, 4, 5});
        }
        if (call.rfind("GetFieldID(alternateFrequencyInfoList, ", 0) == 0) {
            made.object_fields["alternateFrequencyInfoList"] =
                &list({&object("one"), &object("two"), &object("three"), &object("four"), &object("five")});
        }
    }
}

} // namespace tavro::counts
