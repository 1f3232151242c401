// Every native on a platform whose first, second, third... JNI call fails, until a run in which none does.

#include "every_native_test.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace tavro;

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

using Lines = std::vector<std::string>;

bool starts_with(const std::string& text, const std::string& start) { return text.rfind(start, 0) == 0; }

// Calls that release something. They are allowed at any time.
bool is_clean_up(const std::string& call) {
    return starts_with(call, "DeleteLocalRef(") || starts_with(call, "ReleaseStringUTFChars(") ||
           call.find("unlock(") != std::string::npos || call.find("_close(") != std::string::npos;
}

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Lines that may follow a failed call although the native is about to return.
bool may_follow(const std::string& failed, const std::string& line) {
    const auto ends_with_one_of = [&](std::initializer_list<const char*> ends) {
        return std::any_of(ends.begin(), ends.end(), [&](const char* end) { return ends_with(line, end); });
    };
    // An unlock or close looks up its handle.
    if (line.find("[getMwdbHandle]: ") != std::string::npos || line.find("[getSatHandle]: ") != std::string::npos) {
        return true;
    }
    // A string without characters is reported. Natives that pass the text to their manager pass the empty text, as for
    // a null string, and the manager reports and rejects it.
    if (starts_with(failed, "GetStringUTFChars(")) {
        return line == "log 6 -: Invalid String.\n" ||
               ends_with_one_of({"[open]: mwdbId = 1 path =  \n", "[open]: satId = 1 path =  \n",
                                 "[store]: mwdbId = 1 path = \n", "[store]: satId = 1 path = \n",
                                 ": string recId =  \n", ": Unknown recId info.\n"});
    }
    // Natives that make objects report the class that they lack.
    return ends_with_one_of({" : ArrayList class not find!", " : Info class not find!", " : init class failed!",
                             " : VltTvNetworkInfoBase class not find!", " : VltTvSatelliteInfoBase class not find!",
                             " : jcls_init init class failed!"});
}

// An update of services whose identifier cannot be read reads record 0, which changes nothing. These are the read and
// its lines.
bool reads_record_0(const std::string& native, const std::string& entry) {
    return starts_with(native, "channelUpdateInfo") &&
           (ends_with(entry, "_open(1, 0, 0)") || ends_with(entry, "_get_rec(0x10001, 0)") ||
            entry.find("[setMwdbHandle]: ") != std::string::npos || entry.find("List][getInfo]:") != std::string::npos);
}

// Whether a native's result reports a failure.
bool is_failure(jint status) { return status < 0; }
bool is_failure(jobject result) { return result == nullptr; }
bool is_failure(jstring identifier) { return identifier == nullptr || FakeJni::from(identifier).text.empty(); }

// Calls a native and returns whether it reported a failure.
using Call = std::function<bool(FakeJni&, FakeObject& object)>;

struct Native {
    const char* name;
    Call reports_failure;
};

// Calls of natives by their parameters: list 1, a text, the object, a list of objects, or names of keys.
using Names = std::vector<const char*>;

jobject objects(FakeJni& jni, FakeObject& object, std::size_t number) {
    return FakeJni::ref(jni.list(std::vector<FakeObject*>(number, &object)));
}
jobject names(FakeJni& jni, const Names& all) {
    std::vector<FakeObject*> strings;
    for (const char* name : all) {
        strings.push_back(&jni.string(name));
    }
    return all.empty() ? nullptr : FakeJni::ref(jni.list(strings));
}
jstring string(FakeJni& jni, const char* text) { return FakeJni::string_ref(jni.string(text)); }

template <class Result>
Call with_list(Result (*native)(JNIEnv*, jobject, jint)) {
    return [=](FakeJni& jni, FakeObject&) { return is_failure(native(jni.env(), nullptr, 1)); };
}
template <class Result>
Call with_list(Result (*native)(JNIEnv*, jobject, jint, jint), jint of) {
    return [=](FakeJni& jni, FakeObject&) { return is_failure(native(jni.env(), nullptr, 1, of)); };
}
template <class Result>
Call with_text(Result (*native)(JNIEnv*, jobject, jstring), const char* text) {
    return [=](FakeJni& jni, FakeObject&) { return is_failure(native(jni.env(), nullptr, string(jni, text))); };
}
template <class Result>
Call with_text(Result (*native)(JNIEnv*, jobject, jint, jstring), const char* text) {
    return [=](FakeJni& jni, FakeObject&) { return is_failure(native(jni.env(), nullptr, 1, string(jni, text))); };
}
template <class Result>
Call with_object(Result (*native)(JNIEnv*, jobject, jobject)) {
    return
        [=](FakeJni& jni, FakeObject& object) { return is_failure(native(jni.env(), nullptr, FakeJni::ref(object))); };
}
template <class Result>
Call with_object(Result (*native)(JNIEnv*, jobject, jint, jobject)) {
    return [=](FakeJni& jni, FakeObject& object) {
        return is_failure(native(jni.env(), nullptr, 1, FakeJni::ref(object)));
    };
}
Call with_objects(jint (*native)(JNIEnv*, jobject, jobject), std::size_t number) {
    return [=](FakeJni& jni, FakeObject& object) {
        return is_failure(native(jni.env(), nullptr, objects(jni, object, number)));
    };
}
Call with_objects(jint (*native)(JNIEnv*, jobject, jint, jobject), std::size_t number) {
    return [=](FakeJni& jni, FakeObject& object) {
        return is_failure(native(jni.env(), nullptr, 1, objects(jni, object, number)));
    };
}
Call with_keys(jobject (*native)(JNIEnv*, jobject, jint, jobject), const Names& keys) {
    return [=](FakeJni& jni, FakeObject&) { return is_failure(native(jni.env(), nullptr, 1, names(jni, keys))); };
}
Call with_keys(jobject (*native)(JNIEnv*, jobject, jstring, jobject), const Names& keys) {
    return [=](FakeJni& jni, FakeObject&) {
        return is_failure(native(jni.env(), nullptr, string(jni, "1,17"), names(jni, keys)));
    };
}

void PrintTo(const Native& native, std::ostream* out) { *out << native.name; }

class FailingPlatform : public tavro::test::EveryNativeTest, public testing::WithParamInterface<Native> {};

TEST_P(FailingPlatform, NothingButCleanUpFollowsTheFailureOfAnyCall) {
    bool clean = false;
    for (int n = 1; !clean; ++n) {
        start_again();
        count(2);
        FakeJni jni;
        FakeObject& object = filled_object(jni);
        jni.fail_nth(n);
        log_level("d");
        const bool reports_failure = GetParam().reports_failure(jni, object);
        clean = !jni.exception_pending();
        EXPECT_TRUE(clean || reports_failure) << n;
        EXPECT_EQ(jni.forbidden_calls(), Lines{}) << n;

        // After the failure the native only releases what it holds.
        Lines rest = jni.journal_from_failure();
        const std::string failed = rest.empty() ? "" : rest.front();
        rest.erase(std::remove_if(rest.begin(), rest.end(), is_clean_up), rest.end());
        for (std::size_t i = 1; i < rest.size(); ++i) {
            EXPECT_TRUE(may_follow(failed, rest[i]) || reads_record_0(GetParam().name, rest[i]))
                << "after " << failed << ": " << rest[i];
        }
        const auto number = [&](const char* call) { return jni.journal_with(call).size(); };
        EXPECT_EQ(number("_lock("), number("_unlock(")) << failed;
        ASSERT_LT(n, 1000);
    }
}

const Names kNetworkKeys = {"NetworkName", "NwlIdNwlRecId"};
const Names kSatelliteKeys = {"Name", "LnbType"};

const Native kNatives[] = {
    {"channelOpenPath", with_text(com_velotra_tv_tavro_channellist_open_path, "/data/x")},
    {"channelStore", with_text(com_velotra_tv_tavro_channellist_store, "/data/x")},
    {"channelGetInfo", with_text(com_velotra_tv_tavro_channellist_getSVLInfo, "1,17")},
    {"channelGetInfoList", with_list(com_velotra_tv_tavro_channellist_getSVLInfoList)},
    {"channelUpdateInfo", with_object(com_velotra_tv_tavro_channellist_updateInfo)},
    {"channelUpdateInfoByRecId", with_text(com_velotra_tv_tavro_channellist_updateInfo_by_recId, "2,17")},
    {"channelUpdateInfoList", with_objects(com_velotra_tv_tavro_channellist_updateInfoList, 2)},
    {"channelAddInfo", with_object(com_velotra_tv_tavro_channellist_add_Info)},
    {"channelAddInfoByRecId", with_text(com_velotra_tv_tavro_channellist_add_Info_by_recId, "2,17")},
    {"channelRemoveInfo", with_text(com_velotra_tv_tavro_channellist_remove_info, "2,17")},
    {"channelRemoveInfoByRecId", with_text(com_velotra_tv_tavro_channellist_remove_Info_by_recId, "2,17")},
    {"channelGetInfoListByStream", with_list(com_velotra_tv_tavro_channellist_getInfoListByTransportStream, 7)},
    {"channelGetInfoListByStreamRecord",
     with_list(com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord, 7)},
    {"channelGetInfoListByNetwork", with_list(com_velotra_tv_tavro_channellist_getInfoListByNetwork, 7)},
    {"streamOpenPath", with_text(com_velotra_tv_tavro_transportstreamlist_open_path, "/data/x")},
    {"streamStore", with_text(com_velotra_tv_tavro_transportstreamlist_store, "/data/x")},
    {"streamGetInfo", with_text(com_velotra_tv_tavro_transportstreamlist_getInfo, "1,17")},
    {"streamGetInfoList", with_list(com_velotra_tv_tavro_transportstreamlist_getInfoList)},
    {"streamUpdateInfo", with_object(com_velotra_tv_tavro_transportstreamlist_updateInfo)},
    {"streamUpdateInfoByRecId", with_text(com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId, "2,17")},
    {"streamUpdateInfoList", with_objects(com_velotra_tv_tavro_transportstreamlist_updateInfoList, 2)},
    {"streamAddInfo", with_object(com_velotra_tv_tavro_transportstreamlist_add_Info)},
    {"streamAddInfoByRecId", with_text(com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId, "2,17")},
    {"streamRemoveInfo", with_text(com_velotra_tv_tavro_transportstreamlist_remove_info, "2,17")},
    {"streamRemoveInfoByRecId", with_text(com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId, "2,17")},
    {"streamGetInfoListBySatellite", with_list(com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite, 7)},
    {"networkOpenPath", with_text(com_velotra_tv_tavro_networklist_open_path, "/data/x")},
    {"networkStore", with_text(com_velotra_tv_tavro_networklist_store, "/data/x")},
    {"networkGetInfo", with_keys(com_velotra_tv_tavro_networklist_getInfo, {})},
    {"networkGetInfoByKeys", with_keys(com_velotra_tv_tavro_networklist_getInfo, kNetworkKeys)},
    {"networkGetInfoList", with_keys(com_velotra_tv_tavro_networklist_getInfoList, {})},
    {"networkGetInfoListByKeys", with_keys(com_velotra_tv_tavro_networklist_getInfoList, kNetworkKeys)},
    {"networkUpdateInfo", with_object(com_velotra_tv_tavro_networklist_updateInfo)},
    {"networkUpdateInfoByRecId", with_text(com_velotra_tv_tavro_networklist_updateInfo_by_recId, "2,17")},
    {"networkUpdateInfoList", with_objects(com_velotra_tv_tavro_networklist_updateInfoList, 2)},
    {"networkAddInfo", with_object(com_velotra_tv_tavro_networklist_add_Info)},
    {"networkAddInfoByRecId", with_text(com_velotra_tv_tavro_networklist_add_Info_by_recId, "2,17")},
    {"networkRemoveInfo", with_text(com_velotra_tv_tavro_networklist_remove_info, "2,17")},
    {"networkRemoveInfoByRecId", with_text(com_velotra_tv_tavro_networklist_remove_info_by_recId, "2,17")},
    {"satelliteOpenPath", with_text(com_velotra_tv_tavro_satellitelist_open_path, "/data/x")},
    {"satelliteStore", with_text(com_velotra_tv_tavro_satellitelist_store, "/data/x")},
    {"satelliteGetInfo", with_keys(com_velotra_tv_tavro_satellitelist_getInfo, {})},
    {"satelliteGetInfoByKeys", with_keys(com_velotra_tv_tavro_satellitelist_getInfo, kSatelliteKeys)},
    {"satelliteGetInfoList", with_keys(com_velotra_tv_tavro_satellitelist_getInfoList, {})},
    {"satelliteGetInfoListByKeys", with_keys(com_velotra_tv_tavro_satellitelist_getInfoList, kSatelliteKeys)},
    {"satelliteUpdateInfo", with_object(com_velotra_tv_tavro_satellitelist_updateInfo)},
    {"satelliteUpdateInfoByRecId", with_text(com_velotra_tv_tavro_satellitelist_updateInfo_by_recId, "2,17")},
    {"satelliteUpdateInfoList", with_objects(com_velotra_tv_tavro_satellitelist_updateInfoList, 2)},
    {"satelliteAddInfo", with_object(com_velotra_tv_tavro_satellitelist_add_Info)},
    {"satelliteAddInfoByRecId", with_text(com_velotra_tv_tavro_satellitelist_add_Info_by_recId, "2,17")},
    {"satelliteRemoveInfo", with_text(com_velotra_tv_tavro_satellitelist_remove_info, "2,17")},
    {"satelliteRemoveInfoByRecId", with_text(com_velotra_tv_tavro_satellitelist_remove_info_by_recId, "2,17")},
    {"channelUpdateInfoEmptyList", with_objects(com_velotra_tv_tavro_channellist_updateInfoList, 0)},
    {"streamUpdateInfoEmptyList", with_objects(com_velotra_tv_tavro_transportstreamlist_updateInfoList, 0)},
    {"networkUpdateInfoEmptyList", with_objects(com_velotra_tv_tavro_networklist_updateInfoList, 0)},
    {"satelliteUpdateInfoEmptyList", with_objects(com_velotra_tv_tavro_satellitelist_updateInfoList, 0)},
    {"satelliteOpenPathOfAnOpenList",
     [](FakeJni& jni, FakeObject&) {
         SatlKind::handles().insert(1, 0x40001);
         return is_failure(com_velotra_tv_tavro_satellitelist_open_path(jni.env(), nullptr, 1, string(jni, "/data/x")));
     }},
};

// An update of a list in which the identifier of an element cannot be read.
struct ListUpdate {
    const char* name;
    const char* calls; // start of the list calls
    jint (*update)(JNIEnv* env, jobject list);
};

void PrintTo(const ListUpdate& update, std::ostream* out) { *out << update.name; }

class FailingIdentifier : public tavro::test::EveryNativeTest, public testing::WithParamInterface<ListUpdate> {};

// This is not a bad identifier: after one, services and networks leave their list locked, and streams go on.
TEST_P(FailingIdentifier, WithoutCharactersFailsTheListUpdateAndReleasesTheLock) {
    const struct {
        std::size_t before; // elements with a good identifier
        std::size_t after;
    } cases[] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
    for (const auto& c : cases) {
        start_again();
        FakeJni jni;
        FakeObject& good = filled_object(jni);
        for (const char* field : {"svlIdSvlRecId", "tslIdTslRecId", "NwlIdNwlRecId"}) {
            good.object_fields[field] = &jni.string("1,16");
        }
        jni.fail("GetStringUTFChars(\"1,17\")");
        std::vector<FakeObject*> elements(c.before, &good);
        elements.push_back(&filled_object(jni));
        elements.insert(elements.end(), c.after, &good);
        EXPECT_EQ(GetParam().update(jni.env(), FakeJni::ref(jni.list(elements))), -22) << c.before << c.after;
        const std::string calls = GetParam().calls;
        EXPECT_EQ(jni.journal_with(calls + "lock(").size(), 1U);
        EXPECT_EQ(jni.journal_with(calls + "unlock(").size(), 1U);
        EXPECT_EQ(jni.journal_with(calls + "update_rec(").size(), c.before);
        EXPECT_EQ(jni.journal_with(calls + "get_rec(").size(), c.before);
        EXPECT_EQ(jni.journal_with("list.get(").size(), c.before + 1);
        EXPECT_EQ(jni.forbidden_calls(), Lines{});
    }
}

const ListUpdate kListUpdates[] = {
    {"Services", "x_svl_",
     [](JNIEnv* env, jobject list) { return com_velotra_tv_tavro_channellist_updateInfoList(env, nullptr, 1, list); }},
    {"TransportStreams", "x_tsl_",
     [](JNIEnv* env, jobject list) {
         return com_velotra_tv_tavro_transportstreamlist_updateInfoList(env, nullptr, 1, list);
     }},
    {"Networks", "x_nwl_",
     [](JNIEnv* env, jobject list) { return com_velotra_tv_tavro_networklist_updateInfoList(env, nullptr, 1, list); }},
};

INSTANTIATE_TEST_SUITE_P(Natives, FailingIdentifier, testing::ValuesIn(kListUpdates),
                         [](const testing::TestParamInfo<ListUpdate>& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(Natives, FailingPlatform, testing::ValuesIn(kNatives),
                         [](const testing::TestParamInfo<Native>& info) { return info.param.name; });

} // namespace
