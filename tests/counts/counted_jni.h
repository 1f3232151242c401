// The fake Java environment of the unit tests, with the library loaded and its natives at hand.
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

    // A record object with a value under every key that `ask` asks it for.
    template <class Ask>
    test::FakeObject& with_all_keys(const std::string& name, Ask ask) {
        test::FakeObject& made = object(name);
        std::size_t known = 0;
        do { // values are asked for only under keys that are there
            known = made.keys.size();
            clear_journal();
            ask(made);
            set_asked(made);
        } while (known != made.keys.size());
        return made;
    }

private:
    void* native(const std::string& cls, const std::string& name, const std::string& signature) const;
    void set_asked(test::FakeObject& made);

    JNINativeInterface_ table_;
};

} // namespace tavro::counts
