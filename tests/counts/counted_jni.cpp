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

test::FakeObject* CountedJni::object_value(test::FakeObject& object, const LookUp& field) {
    test::FakeObject*& value = object.object_fields[field.name];
    if (value == nullptr && object.has_all_keys) {
        if (field.signature == "[I") {
            value = &int_array({1, 2, 3, 4, 5});
        } else if (field.signature[0] == '[') {
            value = &list({&this->object("one"), &this->object("two"), &this->object("three"), &this->object("four"),
                           &this->object("five")});
        } else {
            value = &string(field.name.find("RecId") != std::string::npos ? "1,17" : "Das Erste HD");
        }
    }
    return value;
}

} // namespace tavro::counts
