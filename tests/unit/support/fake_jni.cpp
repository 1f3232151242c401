#include "fake_jni.h"

#include "in_platform.h"
#include "record_calls.h"
#include "script.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <utility>

namespace tavro::test {
namespace {

// How many instructions string functions execute depends on the position of the text in its cache line. All texts start
// at the same position, so that instructions can be counted.
char* aligned_copy(const std::string& text) {
    constexpr std::size_t kCacheLine = 64;
    void* memory = nullptr;
    if (posix_memalign(&memory, kCacheLine, text.size() + 1) != 0) {
        throw std::bad_alloc();
    }
    return static_cast<char*>(std::memcpy(memory, text.c_str(), text.size() + 1));
}

} // namespace

FakeJni::FakeJni() {
    fill_table();
    mark_calls();
    env_.functions = &table_;
    // The last slot that the library never calls carries the way back to this object.
    table_.reserved0 = this;
    vm_table_.reserved0 = this;
    vm_table_.GetEnv = [](JavaVM* vm, void** env, jint version) -> jint {
        auto& fake = *static_cast<FakeJni*>(vm->functions->reserved0);
        fake.journal_.push_back("GetEnv(" + std::to_string(version) + ")");
        *env = fake.get_env_result == JNI_OK ? fake.env() : nullptr;
        return fake.get_env_result;
    };
    vm_.functions = &vm_table_;
    script::observe([this](const std::string& text) { journal_.push_back(text); });
}

FakeJni::~FakeJni() {
    script::observe({});
    EXPECT_EQ(misused_references_, std::vector<std::string>{});
}

FakeJni& FakeJni::self(JNIEnv* env) { return *static_cast<FakeJni*>(env->functions->reserved0); }

FakeObject& FakeJni::make() { return objects_.emplace_back(); }

FakeObject& FakeJni::object(const std::string& name) {
    FakeObject& made = make();
    made.name = name;
    return made;
}

FakeObject& FakeJni::string(const std::string& text) {
    FakeObject& made = object(quoted(text));
    made.text = text;
    return made;
}

FakeObject& FakeJni::int_array(std::vector<jint> elements) {
    FakeObject& made = object("int[]");
    made.ints = std::move(elements);
    return made;
}

FakeObject& FakeJni::list(std::vector<FakeObject*> elements) {
    FakeObject& made = object("list");
    made.elements = std::move(elements);
    return made;
}

std::vector<std::string> FakeJni::journal_with(const std::string& part) const {
    std::vector<std::string> found;
    std::copy_if(journal_.begin(), journal_.end(), std::back_inserter(found),
                 [&](const std::string& text) { return text.find(part) != std::string::npos; });
    return found;
}

std::vector<std::string> FakeJni::journal_from_failure() const {
    return pending_
               ? std::vector<std::string>(journal_.begin() + static_cast<std::ptrdiff_t>(failed_at_), journal_.end())
               : std::vector<std::string>();
}

bool FakeJni::call(const std::string& text) {
    journal_.push_back(text);
    if (pending_) {
        forbidden_.push_back(text);
    }
    return true;
}

bool FakeJni::fallible(const std::string& text) {
    call(text);
    const auto failing = failing_.find(text);
    const bool fails = (failing != failing_.end() && --failing->second <= 0) || (countdown_ > 0 && --countdown_ == 0);
    if (fails && !pending_) {
        failed_at_ = journal_.size() - 1;
    }
    pending_ = pending_ || fails;
    return !fails;
}

void FakeJni::count_references_anew() {
    references_.clear();
    live_references_ = 0;
    most_references_ = 0;
}

jobject FakeJni::referred(FakeObject* object) {
    if (object == nullptr) {
        return nullptr;
    }
    ++references_[object];
    most_references_ = std::max(most_references_, ++live_references_);
    return ref(*object);
}

void FakeJni::give_back(FakeObject& object) {
    int& references = references_[&object];
    if (references == 0) {
        misused_references_.push_back("released but not held: " + object.name);
        return;
    }
    --references;
    --live_references_;
}

FakeObject& FakeJni::used(jobject reference) {
    FakeObject& object = from(reference);
    const auto found = references_.find(&object);
    if (found != references_.end() && found->second == 0) {
        misused_references_.push_back("used after its release: " + object.name);
    }
    return object;
}

FakeObject* FakeJni::used_argument(FakeObject* object) { return object == nullptr ? nullptr : &used(ref(*object)); }

template <class Id>
Id FakeJni::looked_up(const char* call, const LookUp& member) {
    LookUp& known = look_ups_.emplace_back(member);
    return fallible(call + ("(" + member.name + ", " + member.signature + ")")) ? reinterpret_cast<Id>(&known)
                                                                                : nullptr;
}

void FakeJni::fill_table() {
    table_.FindClass = [](JNIEnv* env, const char* path) -> jclass {
        FakeJni& fake = self(env);
        return fake.fallible("FindClass(" + std::string(path) + ")")
                   ? static_cast<jclass>(fake.referred(&fake.object(path)))
                   : nullptr;
    };
    table_.GetObjectClass = [](JNIEnv* env, jobject object) -> jclass {
        FakeJni& fake = self(env);
        fake.call("GetObjectClass(" + fake.used(object).name + ")");
        return static_cast<jclass>(fake.referred(&fake.object("class of " + from(object).name)));
    };
    table_.GetMethodID = [](JNIEnv* env, jclass cls, const char* name, const char* signature) -> jmethodID {
        FakeJni& fake = self(env);
        return fake.looked_up<jmethodID>("GetMethodID", {fake.used(cls).name, name, signature, ""});
    };
    table_.GetFieldID = [](JNIEnv* env, jclass cls, const char* name, const char* descriptor) -> jfieldID {
        FakeJni& fake = self(env);
        return fake.looked_up<jfieldID>("GetFieldID",
                                        {fake.used(cls).name, name, descriptor, std::exchange(fake.asked_key_, "")});
    };
    table_.NewStringUTF = [](JNIEnv* env, const char* text) -> jstring {
        FakeJni& fake = self(env);
        return fake.fallible("NewStringUTF(" + quoted(text) + ")")
                   ? static_cast<jstring>(fake.referred(&fake.string(text)))
                   : nullptr;
    };
    table_.GetStringUTFChars = [](JNIEnv* env, jstring text, jboolean* is_copy) -> const char* {
        FakeJni& fake = self(env);
        const std::string copy_asked = is_copy == nullptr ? "" : ", isCopy";
        if (!fake.fallible("GetStringUTFChars(" + fake.used(text).name + copy_asked + ")")) {
            return nullptr;
        }
        ++fake.unreleased_chars_;
        return fake.chars_.emplace_back(aligned_copy(from(text).text), std::free).get();
    };
    table_.ReleaseStringUTFChars = [](JNIEnv* env, jstring text, const char*) {
        FakeJni& fake = self(env);
        fake.journal_.push_back("ReleaseStringUTFChars(" + fake.used(text).name + ")");
        --fake.unreleased_chars_;
    };
    table_.DeleteLocalRef = [](JNIEnv* env, jobject object) {
        self(env).journal_.push_back("DeleteLocalRef(" + from(object).name + ")");
        self(env).give_back(from(object));
    };
    table_.CallBooleanMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) -> jboolean {
        const auto& member = *reinterpret_cast<const LookUp*>(method);
        if (member.name == "add") {
            auto* element = self(env).used_argument(va_arg(arguments, FakeObject*));
            self(env).call(self(env).used(object).name + ".add(" + element->name + ")");
            from(object).elements.push_back(element);
            return JNI_TRUE;
        }
        if (member.name != "isContainsKey") {
            const auto* key = self(env).used_argument(va_arg(arguments, FakeObject*));
            self(env).call(self(env).used(object).name + "." + member.name + "(" + key->name + ")");
            return from(object).int_answers[member.name] != 0 ? JNI_TRUE : JNI_FALSE;
        }
        const auto* subject = self(env).used_argument(va_arg(arguments, FakeObject*));
        const auto* key = self(env).used_argument(va_arg(arguments, FakeObject*));
        self(env).call(self(env).used(object).name + ".isContainsKey(" + subject->name + ", " + key->name + ")");
        self(env).asked_key_ = key->text;
        return from(object).has_all_keys || from(object).keys.count(key->text) != 0 ? JNI_TRUE : JNI_FALSE;
    };
    table_.CallIntMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) -> jint {
        const auto& member = *reinterpret_cast<const LookUp*>(method);
        if (member.name == "size") {
            self(env).call(self(env).used(object).name + ".size()");
            return static_cast<jint>(from(object).elements.size());
        }
        const auto* key = self(env).used_argument(va_arg(arguments, FakeObject*));
        self(env).call(self(env).used(object).name + "." + member.name + "(" + key->name + ")");
        return from(object).int_answers[member.name];
    };
    table_.CallObjectMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) -> jobject {
        const auto& member = *reinterpret_cast<const LookUp*>(method);
        if (member.name == "get") {
            const jint index = va_arg(arguments, jint);
            self(env).call(self(env).used(object).name + ".get(" + std::to_string(index) + ")");
            return self(env).referred(from(object).elements.at(static_cast<std::size_t>(index)));
        }
        const auto* key = self(env).used_argument(va_arg(arguments, FakeObject*));
        self(env).call(self(env).used(object).name + "." + member.name + "(" + key->name + ")");
        return self(env).referred(from(object).object_answers[member.name]);
    };
    table_.CallVoidMethodV = [](JNIEnv* env, jobject object, jmethodID method, va_list arguments) {
        const auto& member = *reinterpret_cast<const LookUp*>(method);
        const std::string argument = member.signature == "(I)V"
                                         ? std::to_string(va_arg(arguments, jint))
                                         : self(env).used_argument(va_arg(arguments, FakeObject*))->name;
        self(env).call(self(env).used(object).name + "." + member.name + "(" + argument + ")");
    };
    table_.NewObjectV = [](JNIEnv* env, jclass cls, jmethodID, va_list) -> jobject {
        FakeJni& fake = self(env);
        const std::string& path = fake.used(cls).name;
        const std::string name = path.substr(path.rfind('/') + 1);
        return fake.fallible("NewObject(" + name + ")") ? fake.referred(&fake.object(name)) : nullptr;
    };
    table_.GetIntField = [](JNIEnv* env, jobject object, jfieldID field) -> jint {
        const auto& member = *reinterpret_cast<const LookUp*>(field);
        self(env).call("GetIntField(" + member.name + ")");
        return self(env).int_value(self(env).used(object), member);
    };
    table_.GetObjectField = [](JNIEnv* env, jobject object, jfieldID field) -> jobject {
        const auto& member = *reinterpret_cast<const LookUp*>(field);
        self(env).call("GetObjectField(" + member.name + ")");
        return self(env).referred(self(env).object_value(self(env).used(object), member));
    };
    table_.GetArrayLength = [](JNIEnv* env, jarray array) -> jsize {
        self(env).call("GetArrayLength(" + self(env).used(array).name + ")");
        return static_cast<jsize>(std::max(from(array).ints.size(), from(array).elements.size()));
    };
    table_.GetObjectArrayElement = [](JNIEnv* env, jobjectArray array, jsize index) -> jobject {
        self(env).call("GetObjectArrayElement(" + std::to_string(index) + ")");
        return self(env).referred(self(env).used(array).elements.at(static_cast<std::size_t>(index)));
    };
    table_.GetIntArrayElements = [](JNIEnv* env, jintArray array, jboolean*) -> jint* {
        static jint nothing = 0;
        FakeJni& fake = self(env);
        if (!fake.fallible("GetIntArrayElements(" + fake.used(array).name + ")")) {
            return nullptr;
        }
        return from(array).ints.empty() ? &nothing : from(array).ints.data();
    };
    table_.NewByteArray = [](JNIEnv* env, jsize length) -> jbyteArray {
        FakeJni& fake = self(env);
        if (!fake.fallible("NewByteArray(" + std::to_string(length) + ")")) {
            return nullptr;
        }
        FakeObject& made = fake.object("byte[]");
        made.bytes.resize(static_cast<std::size_t>(length));
        return static_cast<jbyteArray>(fake.referred(&made));
    };
    table_.SetByteArrayRegion = [](JNIEnv* env, jbyteArray array, jsize start, jsize length, const jbyte* bytes) {
        self(env).call("SetByteArrayRegion(" + std::to_string(start) + ", " + std::to_string(length) + ")");
        std::copy(bytes, bytes + length, from(array).bytes.begin() + start);
    };
    table_.RegisterNatives = [](JNIEnv* env, jclass cls, const JNINativeMethod* methods, jint count) -> jint {
        FakeJni& fake = self(env);
        if (!fake.fallible("RegisterNatives(" + from(cls).name + ", " + std::to_string(count) + ")")) {
            return -1;
        }
        if (fake.register_result == JNI_OK) {
            fake.registered.push_back({from(cls).name, {methods, methods + count}});
        }
        return fake.register_result;
    };
}

// A function of the table that marks its call as the platform's.
template <auto Slot, class Result, class... Arguments>
auto FakeJni::marked(Result (JNICALL* JNINativeInterface_::*)(JNIEnv*, Arguments...)) {
    return [](JNIEnv* env, Arguments... arguments) -> Result {
        const InPlatform here;
        return (self(env).unmarked_.*Slot)(env, arguments...);
    };
}

void FakeJni::mark_calls() {
    unmarked_ = table_;
    table_.CallBooleanMethodV =
        marked<&JNINativeInterface_::CallBooleanMethodV>(&JNINativeInterface_::CallBooleanMethodV);
    table_.CallIntMethodV = marked<&JNINativeInterface_::CallIntMethodV>(&JNINativeInterface_::CallIntMethodV);
    table_.CallObjectMethodV = marked<&JNINativeInterface_::CallObjectMethodV>(&JNINativeInterface_::CallObjectMethodV);
    table_.CallVoidMethodV = marked<&JNINativeInterface_::CallVoidMethodV>(&JNINativeInterface_::CallVoidMethodV);
    table_.DeleteLocalRef = marked<&JNINativeInterface_::DeleteLocalRef>(&JNINativeInterface_::DeleteLocalRef);
    table_.FindClass = marked<&JNINativeInterface_::FindClass>(&JNINativeInterface_::FindClass);
    table_.GetArrayLength = marked<&JNINativeInterface_::GetArrayLength>(&JNINativeInterface_::GetArrayLength);
    table_.GetFieldID = marked<&JNINativeInterface_::GetFieldID>(&JNINativeInterface_::GetFieldID);
    table_.GetIntArrayElements =
        marked<&JNINativeInterface_::GetIntArrayElements>(&JNINativeInterface_::GetIntArrayElements);
    table_.GetIntField = marked<&JNINativeInterface_::GetIntField>(&JNINativeInterface_::GetIntField);
    table_.GetMethodID = marked<&JNINativeInterface_::GetMethodID>(&JNINativeInterface_::GetMethodID);
    table_.GetObjectArrayElement =
        marked<&JNINativeInterface_::GetObjectArrayElement>(&JNINativeInterface_::GetObjectArrayElement);
    table_.GetObjectClass = marked<&JNINativeInterface_::GetObjectClass>(&JNINativeInterface_::GetObjectClass);
    table_.GetObjectField = marked<&JNINativeInterface_::GetObjectField>(&JNINativeInterface_::GetObjectField);
    table_.GetStringUTFChars = marked<&JNINativeInterface_::GetStringUTFChars>(&JNINativeInterface_::GetStringUTFChars);
    table_.NewByteArray = marked<&JNINativeInterface_::NewByteArray>(&JNINativeInterface_::NewByteArray);
    table_.NewObjectV = marked<&JNINativeInterface_::NewObjectV>(&JNINativeInterface_::NewObjectV);
    table_.NewStringUTF = marked<&JNINativeInterface_::NewStringUTF>(&JNINativeInterface_::NewStringUTF);
    table_.RegisterNatives = marked<&JNINativeInterface_::RegisterNatives>(&JNINativeInterface_::RegisterNatives);
    table_.ReleaseStringUTFChars =
        marked<&JNINativeInterface_::ReleaseStringUTFChars>(&JNINativeInterface_::ReleaseStringUTFChars);
    table_.SetByteArrayRegion =
        marked<&JNINativeInterface_::SetByteArrayRegion>(&JNINativeInterface_::SetByteArrayRegion);
}

} // namespace tavro::test
