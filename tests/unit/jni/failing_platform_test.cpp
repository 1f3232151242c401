// Every native under a platform that fails at its first, second, … JNI call, until none fails any more.

#include "every_native_test.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

using Lines = std::vector<std::string>;

bool starts_with(const std::string& text, const std::string& start) { return text.rfind(start, 0) == 0; }

// What gives something back, which is allowed at any time.
bool gives_back(const std::string& call) {
    return starts_with(call, "DeleteLocalRef(") || starts_with(call, "ReleaseStringUTFChars(") ||
           call.find("unlock(") != std::string::npos || call.find("_close(") != std::string::npos;
}

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The lines that may follow a failed call although it is over with the native: what they say did happen.
bool may_follow(const std::string& failed, const std::string& line) {
    const auto ends_with_one_of = [&](std::initializer_list<const char*> ends) {
        return std::any_of(ends.begin(), ends.end(), [&](const char* end) { return ends_with(line, end); });
    };
    // An unlock or close looks its handle up.
    if (line.find("[getMwdbHandle]: ") != std::string::npos || line.find("[getSatHandle]: ") != std::string::npos) {
        return true;
    }
    // A string without characters is reported. Natives that hand the text to their manager do so with the empty
    // text, as for a null string, and the manager reports and refuses it.
    if (starts_with(failed, "GetStringUTFChars(")) {
        return line == "log 6 -: Invalid String.\n" ||
               ends_with_one_of({"[open]: mwdbId = 1 path =  \n", "[open]: satId = 1 path =  \n",
                                 "[store]: mwdbId = 1 path = \n", "[store]: satId = 1 path = \n",
                                 ": string recId =  \n", ": Unknown recId info.\n"});
    }
    // Classes that hold results are reported, by the natives that make objects.
    return ends_with_one_of({" : ArrayList class not find!", " : Info class not find!", " : init class failed!",
                             " : VltTvNetworkInfoBase class not find!", " : VltTvSatelliteInfoBase class not find!",
                             " : jcls_init init class failed!"});
}

// Updates of services whose identifier cannot be asked for read record 0, which changes nothing; these are the
// read and its lines.
bool reads_record_0(const std::string& native, const std::string& entry) {
    return starts_with(native, "channelUpdateInfo") &&
           (ends_with(entry, "_open(1, 0, 0)") || ends_with(entry, "_get_rec(0x10001, 0)") ||
            entry.find("[setMwdbHandle]: ") != std::string::npos || entry.find("List][getInfo]:") != std::string::npos);
}

// What natives answer when they have failed.
bool is_failure(jint status) { return status < 0; }
bool is_failure(jobject result) { return result == nullptr; }
bool is_failure(jstring identifier) { return identifier == nullptr || FakeJni::from(identifier).text.empty(); }

struct Native {
    const char* name;
    std::function<bool(FakeJni&, FakeObject& object)> reports_failure; // calls it
};

void PrintTo(const Native& native, std::ostream* out) { *out << native.name; }

class FailingPlatform : public tavro::test::EveryNativeTest, public testing::WithParamInterface<Native> {};

TEST_P(FailingPlatform, NeverCallsWithAnExceptionPendingNorStoresNorLeavesALockNorReportsSuccess) {
    bool clean = false;
    for (int n = 1; !clean; ++n) {
        script::reset();
        clear();
        count(2);
        FakeJni jni;
        FakeObject& object = filled_object(jni);
        jni.fail_nth(n);
        log_level("d");
        const bool reports_failure = GetParam().reports_failure(jni, object);
        clean = !jni.exception_pending();
        EXPECT_TRUE(clean || reports_failure) << n;
        EXPECT_EQ(jni.forbidden_calls(), Lines{}) << n;

        // What follows the failure gives something back.
        Lines rest = jni.journal_from_failure();
        const std::string failed = rest.empty() ? "" : rest.front();
        rest.erase(std::remove_if(rest.begin(), rest.end(), gives_back), rest.end());
        for (std::size_t i = 1; i < rest.size(); ++i) {
            EXPECT_TRUE(may_follow(failed, rest[i]) || reads_record_0(GetParam().name, rest[i]))
                << "after " << failed << ": " << rest[i];
        }
        const auto number = [&](const char* call) { return jni.journal_with(call).size(); };
        EXPECT_EQ(number("_lock("), number("_unlock(")) << failed;
        ASSERT_LT(n, 1000);
    }
}

const Native kNatives[] = {
    {"channelOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_channellist_open_path(jni.env(), nullptr, 1,
                                                                      FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"channelStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_channellist_store(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"channelGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17"))));
     }},
    {"channelGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1));
     }},
    {"channelUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_channellist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"channelUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_channellist_updateInfo_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"channelUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1,
                                                                           FakeJni::ref(jni.list({&object, &object}))));
     }},
    {"channelAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_channellist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"channelAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_channellist_add_Info_by_recId(jni.env(), nullptr, 1,
                                                                              FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"channelRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_channellist_remove_info(jni.env(), nullptr, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"streamOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_open_path(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"streamStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_store(jni.env(), nullptr, 1,
                                                                          FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"streamGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_getInfo(jni.env(), nullptr,
                                                                            FakeJni::string_ref(jni.string("1,17"))));
     }},
    {"streamGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_getInfoList(jni.env(), nullptr, 1));
     }},
    {"streamUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(
             com_velotra_tv_tavro_transportstreamlist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"streamUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"streamUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_transportstreamlist_updateInfoList(
             jni.env(), nullptr, 1, FakeJni::ref(jni.list({&object, &object}))));
     }},
    {"streamAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(
             com_velotra_tv_tavro_transportstreamlist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"streamAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"streamRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_remove_info(
             jni.env(), nullptr, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"networkOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_open_path(jni.env(), nullptr, 1,
                                                                      FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"networkStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_networklist_store(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"networkGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_getInfo(jni.env(), nullptr,
                                                                    FakeJni::string_ref(jni.string("1,17")), nullptr));
     }},
    {"networkGetInfoByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_getInfo(
             jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")),
             FakeJni::ref(jni.list({&jni.string("NetworkName"), &jni.string("NwlIdNwlRecId")}))));
     }},
    {"networkGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_getInfoList(jni.env(), nullptr, 1, nullptr));
     }},
    {"networkGetInfoListByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_getInfoList(
             jni.env(), nullptr, 1,
             FakeJni::ref(jni.list({&jni.string("NetworkName"), &jni.string("NwlIdNwlRecId")}))));
     }},
    {"networkUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_networklist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"networkUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_updateInfo_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"networkUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_networklist_updateInfoList(jni.env(), nullptr, 1,
                                                                           FakeJni::ref(jni.list({&object, &object}))));
     }},
    {"networkAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_networklist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"networkAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_networklist_add_Info_by_recId(jni.env(), nullptr, 1,
                                                                              FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"networkRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_networklist_remove_info(jni.env(), nullptr, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"satelliteOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_open_path(jni.env(), nullptr, 1,
                                                                        FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"satelliteStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_store(jni.env(), nullptr, 1,
                                                                    FakeJni::string_ref(jni.string("/data/x"))));
     }},
    {"satelliteGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_getInfo(
             jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")), nullptr));
     }},
    {"satelliteGetInfoByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_getInfo(
             jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")),
             FakeJni::ref(jni.list({&jni.string("Name"), &jni.string("LnbType")}))));
     }},
    {"satelliteGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 1, nullptr));
     }},
    {"satelliteGetInfoListByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_getInfoList(
             jni.env(), nullptr, 1, FakeJni::ref(jni.list({&jni.string("Name"), &jni.string("LnbType")}))));
     }},
    {"satelliteUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(object)));
     }},
    {"satelliteUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_updateInfo_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"satelliteUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_satellitelist_updateInfoList(
             jni.env(), nullptr, FakeJni::ref(jni.list({&object, &object}))));
     }},
    {"satelliteAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         return is_failure(com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object)));
     }},
    {"satelliteAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_add_Info_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"satelliteRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_remove_info(jni.env(), nullptr,
                                                                          FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"satelliteRemoveInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_satellitelist_remove_info_by_recId(
             jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("2,17"))));
     }},
    {"channelUpdateInfoEmptyList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1, FakeJni::ref(jni.list({}))));
     }},
    {"streamUpdateInfoEmptyList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(com_velotra_tv_tavro_transportstreamlist_updateInfoList(jni.env(), nullptr, 1,
                                                                                   FakeJni::ref(jni.list({}))));
     }},
    {"networkUpdateInfoEmptyList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_networklist_updateInfoList(jni.env(), nullptr, 1, FakeJni::ref(jni.list({}))));
     }},
    {"satelliteUpdateInfoEmptyList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         return is_failure(
             com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(jni.list({}))));
     }},
    {"satelliteOpenPathOfAnOpenList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         SatlKind::handles().insert(1, 0x40001);
         return is_failure(com_velotra_tv_tavro_satellitelist_open_path(jni.env(), nullptr, 1,
                                                                        FakeJni::string_ref(jni.string("/data/x"))));
     }},
};

// A list update whose elements' identifiers cannot be read.
struct ListUpdate {
    const char* name;
    const char* calls; // start of the list calls
    jint (*update)(JNIEnv* env, jobject list);
};

void PrintTo(const ListUpdate& update, std::ostream* out) { *out << update.name; }

class FailingIdentifier : public tavro::test::EveryNativeTest, public testing::WithParamInterface<ListUpdate> {};

// It is no bad identifier, at which services and networks leave their list locked and streams go on.
TEST_P(FailingIdentifier, WithoutCharactersFailsTheListUpdateAndGivesTheLockBack) {
    const struct {
        std::size_t before; // elements with a good identifier
        std::size_t after;
    } cases[] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
    for (const auto& c : cases) {
        script::reset();
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
