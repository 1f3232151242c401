// Natives that fail while the log gate is closed: the same calls and results as with the gate open, but no line.

#include "every_native_test.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;
using Lines = std::vector<std::string>;

namespace {

struct Failure {
    const char* name;
    const char* call; // the middleware call or JNI call that fails
    bool (*returns_nothing)(FakeJni&);
    const char* line; // the end of the line that the native writes about it
};

void PrintTo(const Failure& failure, std::ostream* out) { *out << failure.name; }

jstring text(FakeJni& jni, const char* text) { return FakeJni::string_ref(jni.string(text)); }

const Failure kFailures[] = {
    {"ServiceRead", "x_svl_get_rec",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, text(jni, "1,17")) == nullptr;
     },
     "getSVLInfo fail ret=-22 "},
    {"ServiceListRead", "x_svl_get_rec_by_brdcst_type",
     [](FakeJni& jni) { return com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1) == nullptr; },
     "get_svl_list_info getInfoByIdx fail ret=-22 "},
    {"ServiceListReadByStream", "x_svl_get_rec_by_ts",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord(jni.env(), nullptr, 1, 7) ==
                nullptr;
     },
     "get_svl_list_info_by_transportRecord getInfoByIdx fail ret=-22 "},
    {"StreamRead", "x_tsl_get_rec",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_transportstreamlist_getInfo(jni.env(), nullptr, text(jni, "1,17")) == nullptr;
     },
     "getSVLInfo fail ret=-22 "},
    {"StreamListRead", "x_tsl_get_rec_by_rec_idx",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_transportstreamlist_getInfoList(jni.env(), nullptr, 1) == nullptr;
     },
     "getInfoList getInfoByIdx fail ret=-22 "},
    {"StreamListReadBySatellite", "x_tsl_get_rec_by_sat",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(jni.env(), nullptr, 1, 7) == nullptr;
     },
     "getInfoListBySatellite getInfoByIdx fail ret=-22 "},
    {"StreamUpdateByRecordId", "",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(jni.env(), nullptr, 1, text(jni, "17")) ==
                -22;
     },
     "updateInfo_by_recId tmpRecId=0 "},
    {"NetworkRead", "x_nwl_get_rec",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_networklist_getInfo(jni.env(), nullptr, text(jni, "1,17"), nullptr) == nullptr;
     },
     "getInfo fail ret=-22 "},
    {"SatelliteListRead", "x_satl_get_rec_by_rec_idx",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 1, nullptr) == nullptr;
     },
     "getInfoList : getInfoByIdx failed!"},
    {"ClassOfResults", "FindClass(java/util/ArrayList)",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_networklist_getInfoList(jni.env(), nullptr, 1, nullptr) == nullptr;
     },
     "getInfoList : ArrayList class not find!"},
    {"AddOfResults", "GetMethodID(add, (Ljava/lang/Object;)Z)",
     [](FakeJni& jni) {
         return com_velotra_tv_tavro_networklist_getInfoList(jni.env(), nullptr, 1, nullptr) == nullptr;
     },
     "getInfoList : ArrayList class not find!"},
};

class ClosedGate : public tavro::test::EveryNativeTest, public testing::WithParamInterface<Failure> {
protected:
    // The journal of the failing native.
    Lines fail(const char* level) {
        start_again();
        log_level(level);
        count(2);
        for (const char* call : {"x_svl_get_num_rec_by_ts", "x_tsl_get_num_rec_by_sat"}) {
            script::always(call, {0, 2, {}, 0, {}});
        }
        const std::string call = GetParam().call;
        FakeJni jni;
        if (call.rfind("x_", 0) == 0) {
            script::always(call, {-7, {}, {}, 0, {}});
        } else if (!call.empty()) {
            jni.fail(call);
        }
        EXPECT_TRUE(GetParam().returns_nothing(jni));
        return jni.journal();
    }
    static bool is_line(const std::string& entry) { return entry.rfind("log ", 0) == 0; }
};

TEST_P(ClosedGate, AFailureMakesTheSameCallsWithoutALine) {
    Lines open = fail("d");
    const std::string line = GetParam().line;
    EXPECT_TRUE(std::any_of(open.begin(), open.end(), [&](const std::string& entry) {
        return is_line(entry) && entry.size() > line.size() &&
               entry.compare(entry.size() - line.size(), line.size(), line) == 0;
    })) << line;
    open.erase(std::remove_if(open.begin(), open.end(), is_line), open.end());
    EXPECT_EQ(fail(""), open);
}

INSTANTIATE_TEST_SUITE_P(Natives, ClosedGate, testing::ValuesIn(kFailures),
                         [](const testing::TestParamInfo<Failure>& info) { return std::string(info.param.name); });

} // namespace
