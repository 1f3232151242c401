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

    // Returns a record object that has a value for every key that `use` queries.
    template <class Use>
    test::FakeObject& with_all_keys(const std::string& name, Use use) {
        test::FakeObject& made = object(name);
        std::size_t known = 0;
        do { // repeat, because some keys are queried only if others exist
            known = made.keys.size();
            clear_journal();
            use(made);
            set_requested(made);
        } while (known != made.keys.size());
        return made;
    }

private:
    void* native(const std::string& cls, const std::string& name, const std::string& signature) const;
    void set_requested(test::FakeObject& made);

    JNINativeInterface_ table_;
};

} // namespace tavro::counts
