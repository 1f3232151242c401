// The highest number of local references that a native holds does not depend on the length of its list or its keys.
#include "every_native_test.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace tavro::test;

struct Walk {
    const char* name;
    // Returns whether the native succeeded with those elements or keys.
    bool (*run)(JNIEnv* env, jobject elements, jobject keys, jstring identifier);
};

void PrintTo(const Walk& walk, std::ostream* out) { *out << walk.name; }

class BoundedReferencesTest : public EveryNativeTest {
protected:
    struct References {
        int most;
        int left;
    };
    // Runs the native on that many elements, records and keys.
    static References walk(const Walk& native, std::size_t length, bool with_names) {
        forget_open_lists();
        count(static_cast<std::uint32_t>(length));
        FakeJni jni;
        std::vector<FakeObject*> elements;
        std::vector<FakeObject*> keys;
        const std::vector<std::string> names = {"NetworkName", "NwlIdNwlRecId", "NwlNetworkId", "Name", "LnbType"};
        for (std::size_t i = 0; i < length; ++i) {
            elements.push_back(&filled_object(jni));
            if (!with_names) {
                elements.back()->keys.erase("Name");
            }
            keys.push_back(&jni.string(names[i % names.size()]));
        }
        EXPECT_TRUE(native.run(jni.env(), FakeJni::ref(jni.list(elements)), FakeJni::ref(jni.list(keys)),
                               FakeJni::string_ref(jni.string("1,17"))));
        return {jni.most_references(), jni.live_references()};
    }
};

class BoundedReferences : public BoundedReferencesTest, public testing::WithParamInterface<Walk> {};

bool update_satellites(JNIEnv* env, jobject elements, jobject, jstring) {
    return com_velotra_tv_tavro_satellitelist_updateInfoList(env, nullptr, elements) == 0;
}

TEST_P(BoundedReferences, DoNotGrowWithTheLength) {
    const References few = walk(GetParam(), 5, false);
    const References many = walk(GetParam(), 200, false);
    EXPECT_EQ(many.most, few.most);
    EXPECT_EQ(many.left, few.left);
    EXPECT_GT(many.most, 0);
    EXPECT_LE(many.most, 16); // every virtual machine has room for this many without a request
}

// Deliberate: the reference to the name of a satellite is not released.
TEST_F(BoundedReferencesTest, GrowByTheNameOfEachSatelliteOfAListUpdate) {
    const Walk update = {"", update_satellites};
    EXPECT_EQ(walk(update, 200, true).left, walk(update, 200, false).left + 200);
}

const Walk kWalks[] = {
    {"channelUpdateInfoList",
     [](JNIEnv* env, jobject elements, jobject, jstring) {
         return com_velotra_tv_tavro_channellist_updateInfoList(env, nullptr, 1, elements) == 0;
     }},
    {"streamUpdateInfoList",
     [](JNIEnv* env, jobject elements, jobject, jstring) {
         return com_velotra_tv_tavro_transportstreamlist_updateInfoList(env, nullptr, 1, elements) == 0;
     }},
    {"networkUpdateInfoList",
     [](JNIEnv* env, jobject elements, jobject, jstring) {
         return com_velotra_tv_tavro_networklist_updateInfoList(env, nullptr, 1, elements) == 0;
     }},
    {"satelliteUpdateInfoList", update_satellites},
    {"networkGetInfoList",
     [](JNIEnv* env, jobject, jobject, jstring) {
         return com_velotra_tv_tavro_networklist_getInfoList(env, nullptr, 1, nullptr) != nullptr;
     }},
    {"networkGetInfoListByKeys",
     [](JNIEnv* env, jobject, jobject keys, jstring) {
         return com_velotra_tv_tavro_networklist_getInfoList(env, nullptr, 1, keys) != nullptr;
     }},
    {"networkGetInfoByKeys",
     [](JNIEnv* env, jobject, jobject keys, jstring identifier) {
         return com_velotra_tv_tavro_networklist_getInfo(env, nullptr, identifier, keys) != nullptr;
     }},
    {"satelliteGetInfoList",
     [](JNIEnv* env, jobject, jobject, jstring) {
         return com_velotra_tv_tavro_satellitelist_getInfoList(env, nullptr, 1, nullptr) != nullptr;
     }},
    {"satelliteGetInfoListByKeys",
     [](JNIEnv* env, jobject, jobject keys, jstring) {
         return com_velotra_tv_tavro_satellitelist_getInfoList(env, nullptr, 1, keys) != nullptr;
     }},
    {"satelliteGetInfoByKeys",
     [](JNIEnv* env, jobject, jobject keys, jstring identifier) {
         return com_velotra_tv_tavro_satellitelist_getInfo(env, nullptr, identifier, keys) != nullptr;
     }},
};

INSTANTIATE_TEST_SUITE_P(Natives, BoundedReferences, testing::ValuesIn(kWalks),
                         [](const testing::TestParamInfo<Walk>& info) { return info.param.name; });

} // namespace
