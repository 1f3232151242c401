// A test of the natives of all four list kinds over the fake JNI platform and the scripted middleware.
#pragma once

#include "fake_jni.h"
#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"
#include "native_cases.h"
#include "script.h"
#include "scripted_test.h"

#include <cstdint>

namespace tavro::test {

// Sets up all four managers.
class EveryNativeTest : public ScriptedTest {
protected:
    EveryNativeTest() { set_managers(); }
    ~EveryNativeTest() override {
        chList = nullptr;
        tsList = nullptr;
        nwList = nullptr;
        satList = nullptr;
    }

    void set_managers() {
        channels.setPath("");
        chList = &channels;
        tsList = &streams;
        nwList = &networks;
        satList = &satellites;
    }

    // Gives every list that many records.
    static void count(std::uint32_t number) {
        for (const char* call :
             {"x_svl_get_num_rec_by_brdcst_type", "x_tsl_get_num_recs", "x_nwl_get_num_rec", "x_satl_get_num_recs"}) {
            script::always(call, {0, number, {}, 0, {}});
        }
    }

    NativeVltTvChannelList channels;
    NativeVltTvTransportStreamList streams;
    NativeVltTvNetworkList networks;
    NativeVltTvSatelliteList satellites;
};

} // namespace tavro::test
