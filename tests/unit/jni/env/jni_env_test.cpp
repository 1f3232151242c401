// JNI calls after one has failed: none is made.
#include "fake_jni.h"
#include "jni/env/jni_env.h"
#include "scripted_test.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using tavro::Jni;
using tavro::test::FakeJni;
using tavro::test::FakeObject;
using Lines = std::vector<std::string>;

namespace {

class FailedJni : public tavro::test::ScriptedTest {
protected:
    FailedJni() { log_level("d"); }

    FakeJni platform;
    FakeObject& object = platform.object("object");
    FakeObject& text = platform.string("text");
    FakeObject& ints = platform.int_array({1});
    jobject ref = FakeJni::ref(object);
    jclass cls = static_cast<jclass>(FakeJni::ref(platform.object("class")));
    Jni jni{platform.env()};
    jmethodID method = jni.method(cls, "method", "()V");
    jfieldID field = jni.field(cls, "field", "I");
};

TEST_F(FailedJni, MakesNoFurtherCallAndReturnsNothing) {
    platform.fail("FindClass(Missing)");
    EXPECT_EQ(jni.find_class("Missing"), nullptr);
    EXPECT_TRUE(jni.failed());
    platform.clear_journal();

    EXPECT_EQ(jni.find_class("Class"), nullptr);
    EXPECT_EQ(jni.class_of(ref), nullptr);
    EXPECT_EQ(jni.method(cls, "method", "()V"), nullptr);
    EXPECT_EQ(jni.field(cls, "field", "I"), nullptr);
    EXPECT_EQ(jni.new_string("new"), nullptr);
    EXPECT_EQ(jni.new_object(cls, method), nullptr);
    EXPECT_FALSE(jni.call_boolean(ref, method, ref));
    EXPECT_FALSE(jni.call_boolean(ref, method, FakeJni::string_ref(text)));
    EXPECT_EQ(jni.call_int(ref, method), 0);
    EXPECT_EQ(jni.call_object(ref, method, FakeJni::string_ref(text)), nullptr);
    jni.call_void(ref, method, jint{1});
    EXPECT_EQ(jni.int_value(ref, field), 0);
    EXPECT_EQ(jni.object_value(ref, field), nullptr);
    EXPECT_EQ(jni.element(static_cast<jobjectArray>(ref), 0), nullptr);
    EXPECT_EQ(jni.keep_utf_chars(FakeJni::string_ref(text)), nullptr);
    EXPECT_EQ(jni.keep_int_elements(static_cast<jintArray>(FakeJni::ref(ints))), nullptr);
    EXPECT_EQ(jni.text(FakeJni::string_ref(text)), "");
    EXPECT_EQ(platform.journal(), Lines{});
}

TEST_F(FailedJni, ANullObjectMethodOrFieldIsAFailure) {
    const auto fails = [&](auto call) {
        Jni fresh(platform.env());
        platform.clear_journal();
        call(fresh);
        EXPECT_TRUE(fresh.failed());
        EXPECT_EQ(platform.journal(), Lines{});
    };
    fails([&](Jni& fresh) { fresh.call_int(nullptr, method); });
    fails([&](Jni& fresh) { fresh.call_int(ref, nullptr); });
    fails([&](Jni& fresh) { fresh.int_value(nullptr, field); });
    fails([&](Jni& fresh) { fresh.int_value(ref, nullptr); });
    fails([&](Jni& fresh) { fresh.method(nullptr, "method", "()V"); });
    fails([&](Jni& fresh) { fresh.method(cls, nullptr, "()V"); });
}

TEST_F(FailedJni, ABooleanThatIsFalseIsNoFailure) {
    for (const jint value : {1, 0}) {
        object.int_answers["method"] = value;
        EXPECT_EQ(jni.call_boolean(ref, method, ref), value == 1);
        EXPECT_EQ(jni.call_boolean(ref, method, FakeJni::string_ref(text)), value == 1);
        EXPECT_FALSE(jni.failed());
    }
}

TEST_F(FailedJni, ANullArrayHasNoElementsAndIsNoFailure) {
    platform.clear_journal();
    EXPECT_EQ(jni.keep_int_elements(nullptr), nullptr);
    EXPECT_FALSE(jni.failed());
    EXPECT_EQ(platform.journal(), Lines{});
}

} // namespace
