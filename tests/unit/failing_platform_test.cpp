// Every native under a platform that fails at its first, second, … JNI call, until none fails any more.

#include "fake_jni.h"
#include "jni/channel_list_bridge.h"
#include "jni/managers.h"
#include "jni/network_list_bridge.h"
#include "jni/satellite_list_bridge.h"
#include "jni/transport_stream_list_bridge.h"
#include "script.h"
#include "scripted_test.h"

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

bool hands_a_record_over(const std::string& line) { return line.find(", record") != std::string::npos; }

struct Native {
    const char* name;
    std::function<void(FakeJni&, FakeObject& object)> run;
};

void PrintTo(const Native& native, std::ostream* out) { *out << native.name; }

class FailingPlatform : public tavro::test::ScriptedTest, public testing::WithParamInterface<Native> {
protected:
    FailingPlatform() {
        chList = &channels;
        tsList = &streams;
        nwList = &networks;
        satList = &satellites;
        clear();
    }
    ~FailingPlatform() override {
        clear();
        chList = nullptr;
        tsList = nullptr;
        nwList = nullptr;
        satList = nullptr;
    }

    static void clear() {
        for (HandleMap* map : {&m_mwdbIdHandleMap, &m_tslHandleMap, &m_nwlHandleMap, &m_satIdHandleMap}) {
            map->clear();
        }
    }

    // A record object of any kind that carries a bit of everything.
    static FakeObject& filled_object(FakeJni& jni) {
        FakeObject& object = jni.object("object");
        object.keys = {"SvlIdSvlRecId", "TslIdTslRecId",  "NwlIdNwlRecId",      "TslRecId",    "ServiceName",
                       "BroadcastType", "DadInfo",        "MajorChannelNumber", "NetworkName", "TargetRegionCode",
                       "TslNwlRecId",   "AcTsName",       "FecInner",           "Standard",    "NwlNetworkId",
                       "RecId",         "MaskStatusOn",   "OrbitPosition",      "Name",        "AntennaType",
                       "LnbPower",      "DiseqcPosition", "DiseqcPositionEx",   "DiseqcPolar", "SingleCableUserBandSub",
                       "LnbSwitchFreq"};
        object.int_fields = {{"broadcastType", 2}, {"majorChannelNumber", 5}};
        FakeObject& text = jni.string("2,18");
        object.object_fields = {{"svlIdSvlRecId", &jni.string("1,17")},
                                {"tslIdTslRecId", &jni.string("1,17")},
                                {"NwlIdNwlRecId", &jni.string("1,17")},
                                {"RecId", &jni.string("1,17")},
                                {"Name", &text},
                                {"tslRecId", &text},
                                {"serviceName", &text},
                                {"dadInfo", &text},
                                {"networkName", &text},
                                {"NetworkName", &text},
                                {"tslNwlRecId", &text},
                                {"acTsName", &text},
                                {"targetRegionCode", &jni.int_array({1})}};
        return object;
    }

    NativeVltTvChannelList channels;
    NativeVltTvTransportStreamList streams;
    NativeVltTvNetworkList networks;
    NativeVltTvSatelliteList satellites;
};

TEST_P(FailingPlatform, NeverCallsWithAnExceptionPendingNorStoresNorLeavesALock) {
    bool clean = false;
    for (int n = 1; !clean; ++n) {
        script::reset();
        clear();
        for (const char* count :
             {"x_svl_get_num_rec_by_brdcst_type", "x_tsl_get_num_recs", "x_nwl_get_num_rec", "x_satl_get_num_recs"}) {
            script::always(count, {0, 2, {}, 0, {}});
        }
        FakeJni jni;
        FakeObject& object = filled_object(jni);
        jni.fail_nth(n);
        GetParam().run(jni, object);
        clean = !jni.exception_pending();
        EXPECT_EQ(jni.forbidden_calls(), Lines{}) << n;

        // Nothing is stored behind the failure.
        const Lines rest = jni.journal_from_failure();
        EXPECT_EQ(std::count_if(rest.begin(), rest.end(), hands_a_record_over), 0) << n;

        // A list update whose identifier has no characters ends as with any identifier that cannot be parsed: for
        // services and networks with the list locked.
        const std::string name = GetParam().name;
        const bool left_locked = !rest.empty() && rest.front() == "GetStringUTFChars(\"1,17\")" &&
                                 (name == "channelUpdateInfoList" || name == "networkUpdateInfoList");
        const auto number = [&](const char* call) { return jni.journal_with(call).size(); };
        EXPECT_EQ(number("_lock("), number("_unlock(") + (left_locked ? 1U : 0U)) << n;
        ASSERT_LT(n, 1000);
    }
}

const Native kNatives[] = {
    {"channelOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_open_path(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"channelStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_store(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"channelGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")));
     }},
    {"channelGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1);
     }},
    {"channelUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_channellist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"channelUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_updateInfo_by_recId(jni.env(), nullptr, 1,
                                                              FakeJni::string_ref(jni.string("2,17")));
     }},
    {"channelUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1,
                                                         FakeJni::ref(jni.list({&object, &object})));
     }},
    {"channelAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_channellist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"channelAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_add_Info_by_recId(jni.env(), nullptr, 1,
                                                            FakeJni::string_ref(jni.string("2,17")));
     }},
    {"channelRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_channellist_remove_info(jni.env(), nullptr, FakeJni::string_ref(jni.string("2,17")));
     }},
    {"streamOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_open_path(jni.env(), nullptr, 1,
                                                            FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"streamStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_store(jni.env(), nullptr, 1,
                                                        FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"streamGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_getInfo(jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")));
     }},
    {"streamGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_getInfoList(jni.env(), nullptr, 1);
     }},
    {"streamUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_transportstreamlist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"streamUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(jni.env(), nullptr, 1,
                                                                      FakeJni::string_ref(jni.string("2,17")));
     }},
    {"streamUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_transportstreamlist_updateInfoList(jni.env(), nullptr, 1,
                                                                 FakeJni::ref(jni.list({&object, &object})));
     }},
    {"streamAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_transportstreamlist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"streamAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId(jni.env(), nullptr, 1,
                                                                    FakeJni::string_ref(jni.string("2,17")));
     }},
    {"streamRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_transportstreamlist_remove_info(jni.env(), nullptr,
                                                              FakeJni::string_ref(jni.string("2,17")));
     }},
    {"networkOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_open_path(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"networkStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_store(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"networkGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_getInfo(jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")), nullptr);
     }},
    {"networkGetInfoByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_getInfo(
             jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")),
             FakeJni::ref(jni.list({&jni.string("NetworkName"), &jni.string("NwlIdNwlRecId")})));
     }},
    {"networkGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_getInfoList(jni.env(), nullptr, 1, nullptr);
     }},
    {"networkGetInfoListByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_getInfoList(
             jni.env(), nullptr, 1, FakeJni::ref(jni.list({&jni.string("NetworkName"), &jni.string("NwlIdNwlRecId")})));
     }},
    {"networkUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_networklist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"networkUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_updateInfo_by_recId(jni.env(), nullptr, 1,
                                                              FakeJni::string_ref(jni.string("2,17")));
     }},
    {"networkUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_networklist_updateInfoList(jni.env(), nullptr, 1,
                                                         FakeJni::ref(jni.list({&object, &object})));
     }},
    {"networkAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_networklist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"networkAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_add_Info_by_recId(jni.env(), nullptr, 1,
                                                            FakeJni::string_ref(jni.string("2,17")));
     }},
    {"networkRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_networklist_remove_info(jni.env(), nullptr, FakeJni::string_ref(jni.string("2,17")));
     }},
    {"satelliteOpenPath",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_open_path(jni.env(), nullptr, 1,
                                                      FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"satelliteStore",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_store(jni.env(), nullptr, 1, FakeJni::string_ref(jni.string("/data/x")));
     }},
    {"satelliteGetInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")),
                                                    nullptr);
     }},
    {"satelliteGetInfoByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_getInfo(
             jni.env(), nullptr, FakeJni::string_ref(jni.string("1,17")),
             FakeJni::ref(jni.list({&jni.string("Name"), &jni.string("LnbType")})));
     }},
    {"satelliteGetInfoList",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 1, nullptr);
     }},
    {"satelliteGetInfoListByKeys",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_getInfoList(
             jni.env(), nullptr, 1, FakeJni::ref(jni.list({&jni.string("Name"), &jni.string("LnbType")})));
     }},
    {"satelliteUpdateInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(object));
     }},
    {"satelliteUpdateInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_updateInfo_by_recId(jni.env(), nullptr, 1,
                                                                FakeJni::string_ref(jni.string("2,17")));
     }},
    {"satelliteUpdateInfoList",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr,
                                                           FakeJni::ref(jni.list({&object, &object})));
     }},
    {"satelliteAddInfo",
     [](FakeJni& jni, FakeObject& object) {
         com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object));
     }},
    {"satelliteAddInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_add_Info_by_recId(jni.env(), nullptr, 1,
                                                              FakeJni::string_ref(jni.string("2,17")));
     }},
    {"satelliteRemoveInfo",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_remove_info(jni.env(), nullptr, FakeJni::string_ref(jni.string("2,17")));
     }},
    {"satelliteRemoveInfoByRecId",
     [](FakeJni& jni, FakeObject& object) {
         static_cast<void>(object);
         com_velotra_tv_tavro_satellitelist_remove_info_by_recId(jni.env(), nullptr, 1,
                                                                 FakeJni::string_ref(jni.string("2,17")));
     }},
};

INSTANTIATE_TEST_SUITE_P(Natives, FailingPlatform, testing::ValuesIn(kNatives),
                         [](const testing::TestParamInfo<Native>& info) { return info.param.name; });

} // namespace
