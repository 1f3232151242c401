// A test of the natives of all four list kinds over the fake JNI platform and the scripted middleware.
#pragma once

#include "fake_jni.h"
#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"
#include "script.h"
#include "scripted_test.h"

#include <cstdint>

namespace tavro::test {

// Sets up all four managers.
class EveryNativeTest : public ScriptedTest {
protected:
    EveryNativeTest() {
        chList = &channels;
        tsList = &streams;
        nwList = &networks;
        satList = &satellites;
    }
    ~EveryNativeTest() override {
        chList = nullptr;
        tsList = nullptr;
        nwList = nullptr;
        satList = nullptr;
    }

    // Gives every list that many records.
    static void count(std::uint32_t number) {
        for (const char* call :
             {"x_svl_get_num_rec_by_brdcst_type", "x_tsl_get_num_recs", "x_nwl_get_num_rec", "x_satl_get_num_recs"}) {
            script::always(call, {0, number, {}, 0, {}});
        }
    }

    // A Java object that serves as a record of any kind and has keys and fields of every type.
    static FakeObject& filled_object(FakeJni& jni) {
        FakeObject& object = jni.object("object");
        object.keys = {"SvlIdSvlRecId",
                       "TslIdTslRecId",
                       "NwlIdNwlRecId",
                       "TslRecId",
                       "ServiceName",
                       "BroadcastType",
                       "DadInfo",
                       "MajorChannelNumber",
                       "NetworkName",
                       "TargetRegionCode",
                       "TslNwlRecId",
                       "AcTsName",
                       "FecInner",
                       "Standard",
                       "NwlNetworkId",
                       "RecId",
                       "MaskStatusOn",
                       "OrbitPosition",
                       "Name",
                       "AntennaType",
                       "LnbPower",
                       "DiseqcPosition",
                       "DiseqcPositionEx",
                       "DiseqcPolar",
                       "SingleCableUserBandSub",
                       "LnbSwitchFreq",
                       "TslSatlRecId",
                       "AlternateFrequencyInfoList"};
        object.int_fields = {{"broadcastType", 2}, {"majorChannelNumber", 5}};
        FakeObject& array = jni.object("array");
        array.elements = {&jni.object("entry"), &jni.object("entry")};
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
                                {"tslSatlRecId", &text},
                                {"alternateFrequencyInfoList", &array},
                                {"targetRegionCode", &jni.int_array({1})}};
        return object;
    }

    NativeVltTvChannelList channels;
    NativeVltTvTransportStreamList streams;
    NativeVltTvNetworkList networks;
    NativeVltTvSatelliteList satellites;
};

} // namespace tavro::test
