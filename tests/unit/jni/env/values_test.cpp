// Service types and their keys, and the debug aid that prints a value of a Java map.
#include "fake_jni.h"
#include "jni/env/values.h"
#include "script.h"
#include "scripted_test.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

using Lines = std::vector<std::string>;

TEST(ServiceType, HasAKey) {
    const struct {
        int type;
        const char* key;
    } cases[] = {
        {0, "SERVICE_TYPE_OTHER"},
        {1, "SERVICE_TYPE_AUDIO_VIDEO"},
        {2, "SERVICE_TYPE_AUDIO"},
        {3, "SERVICE_TYPE_OTHER"},
        {4, "SERVICE_TYPE_AUDIO_VIDEO"},
        {5, "SERVICE_TYPE_AUDIO"},
        {6, "SERVICE_TYPE_OTHER"},
        {7, "SERVICE_TYPE_AUDIO_VIDEO"},
        {8, "SERVICE_TYPE_AUDIO"},
        {9, "SERVICE_TYPE_OTHER"},
        {-1, "SERVICE_TYPE_OTHER"},
        {257, "SERVICE_TYPE_OTHER"},
        {std::numeric_limits<int>::min(), "SERVICE_TYPE_OTHER"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(convert_service_type_to_key(c.type), c.key) << c.type;
    }
}

TEST(ServiceType, IsConvertedFromItsKeyToOneOfThree) {
    EXPECT_EQ(convert_key_to_convert_service("SERVICE_TYPE_AUDIO_VIDEO"), 1);
    EXPECT_EQ(convert_key_to_convert_service("SERVICE_TYPE_AUDIO"), 2);
    for (const char* key : {"SERVICE_TYPE_OTHER", "", "SERVICE_TYPE_AUDI", "service_type_audio"}) {
        EXPECT_EQ(convert_key_to_convert_service(key), 0) << key;
    }
}

TEST(ServiceType, ConvertingFourToItsKeyAndBackGivesOne) {
    EXPECT_EQ(convert_key_to_convert_service(convert_service_type_to_key(4)), 1);
    EXPECT_EQ(convert_key_to_convert_service(convert_service_type_to_key(5)), 2);
    EXPECT_EQ(convert_key_to_convert_service(convert_service_type_to_key(6)), 0);
}

class MapValueDump : public tavro::test::ScriptedTest {
protected:
    MapValueDump() { log_level("d"); }

    void dump(int kind) {
        showMapListValue(jni.env(), "Key", kind, FakeJni::ref(map), static_cast<jclass>(FakeJni::ref(cls)));
    }

    FakeJni jni;
    FakeObject& map = jni.object("map");
    FakeObject& cls = jni.object("class");
};

TEST_F(MapValueDump, WritesABoolean) {
    map.int_answers["getBoolean"] = 1;
    dump(2);
    EXPECT_EQ(jni.journal(), (Lines{"NewStringUTF(\"Key\")", "GetMethodID(getBoolean, (Ljava/lang/String;)Z)",
                                    "map.getBoolean(\"Key\")", "log 3 -: [jni_VltTvList_Init]Get bool = true\n",
                                    "DeleteLocalRef(\"Key\")"}));
    map.int_answers["getBoolean"] = 0;
    jni.clear_journal();
    dump(2);
    EXPECT_EQ(jni.journal_with("log"), Lines{"log 3 -: [jni_VltTvList_Init]Get bool = false\n"});
}

TEST_F(MapValueDump, WritesAStringAndKeepsItsCharacters) {
    map.object_answers["getString"] = &jni.string("value");
    dump(1);
    EXPECT_EQ(jni.journal(),
              (Lines{"NewStringUTF(\"Key\")", "GetMethodID(getString, (Ljava/lang/String;)Ljava/lang/String;)",
                     "map.getString(\"Key\")", "GetStringUTFChars(\"value\")",
                     "log 3 -: [jni_VltTvList_Init]Get String = value\n", "DeleteLocalRef(\"Key\")"}));
    EXPECT_EQ(jni.unreleased_chars(), 1);
}

TEST_F(MapValueDump, WritesANullStringAsEmptyText) {
    dump(1);
    EXPECT_EQ(jni.journal_with("log"), Lines{"log 3 -: [jni_VltTvList_Init]Get String = \n"});
}

TEST_F(MapValueDump, WritesAnInt) {
    map.int_answers["getInteger"] = -5;
    dump(0);
    EXPECT_EQ(jni.journal(), (Lines{"NewStringUTF(\"Key\")", "GetMethodID(getInteger, (Ljava/lang/String;)I)",
                                    "map.getInteger(\"Key\")", "log 3 -: [jni_VltTvList_Init]Get Int = -5\n",
                                    "DeleteLocalRef(\"Key\")"}));
}

TEST_F(MapValueDump, WritesNothingOfAnotherKind) {
    dump(3);
    EXPECT_EQ(jni.journal(), (Lines{"NewStringUTF(\"Key\")", "DeleteLocalRef(\"Key\")"}));
}

TEST_F(MapValueDump, WritesNothingWhenTheMethodIsMissing) {
    const struct {
        int kind;
        const char* look_up;
    } cases[] = {{0, "GetMethodID(getInteger, (Ljava/lang/String;)I)"},
                 {1, "GetMethodID(getString, (Ljava/lang/String;)Ljava/lang/String;)"},
                 {2, "GetMethodID(getBoolean, (Ljava/lang/String;)Z)"}};
    for (const auto& c : cases) {
        FakeJni failing;
        failing.fail(c.look_up);
        showMapListValue(failing.env(), "Key", c.kind, FakeJni::ref(map), static_cast<jclass>(FakeJni::ref(cls)));
        EXPECT_EQ(failing.journal(), (Lines{"NewStringUTF(\"Key\")", c.look_up, "DeleteLocalRef(\"Key\")"}));
    }
}

TEST_F(MapValueDump, WritesNothingWithTheGateClosed) {
    log_level("");
    for (const int kind : {0, 1, 2}) {
        dump(kind);
    }
    EXPECT_EQ(jni.journal_with("log"), Lines{});
    EXPECT_EQ(jni.journal_with("map."),
              (Lines{"map.getInteger(\"Key\")", "map.getString(\"Key\")", "map.getBoolean(\"Key\")"}));
}

} // namespace
