// The fake Java environment of the unit tests, with the library loaded and its natives callable.
#pragma once

#include "counting.h"
#include "fake_jni.h"

#include <string>

namespace tavro::counts {

class CountedJni : public test::FakeJni {
public:
    // Loads the library.
    CountedJni();

    // Calls a native of a list class, such as "VltTvChannelList".
    template <class Result, class... Arguments>
    Result call(const char* cls, const char* name, const char* signature, Arguments... arguments) {
        auto* function = reinterpret_cast<Result (*)(JNIEnv*, jobject, Arguments...)>(native(cls, name, signature));
        const Running library(Running::What::kLibrary);
        return function(env(), nullptr, arguments...);
    }

    // A record object with a value under every key.
    test::FakeObject& with_all_keys(const std::string& name) {
        test::FakeObject& made = object(name);
        made.has_all_keys = true;
        return made;
    }

private:
    test::FakeObject* object_value(test::FakeObject& object, const LookUp& field) override;
    void* native(const std::string& cls, const std::string& name, const std::string& signature) const;

    JNINativeInterface_ table_;
};

} // namespace tavro::counts
