// Whole transcripts of every kind, spelled out. The other tests build the texts that they expect from the kind's words
// (list_kind.h); these do not.
#include "manager_test.h"

#include <map>

namespace {

using namespace tavro::test;

class Transcript : public EachKind {};

TEST_P(Transcript, ReadsExactlyLikeThis) {
    const std::string services = "log 3 NativeVltTvChannelList_Cpp: ";
    const std::string streams = "log 3 NativeVltTvTransportStreamList_Cpp: [NativeVltTvTransportStreamList]";
    const std::string networks = "log 3 NativeVltTvNetworkList_Cpp: [NativeVltTvNetworkList]";
    const std::string satellites = "log 3 [SATELITE] NativeVltTvSatelliteList_Cpp: ";
    Bytes zero(kind.record_bytes);
    const std::map<const ListKind*, Steps> expected = {
        {&kServices,
         {{services + "[NativeVltChannelList][clean]: mwdbId = 1 \n"}, // deliberate: without "Tv"
          {services + "[NativeVltTvChannelList][getMwdbHandle]: mwdbId = 1 mwdbHandle:0x10001\n"},
          {"x_svl_lock(0x10001)"},
          {"x_svl_clean(0x10001)"},
          {"x_svl_unlock(0x10001)"},
          {services + "[NativeVltTvChannelList][open]: mwdbId = 5 \n"},
          {"x_svl_open(5, 0, 0)"},
          {services + "[NativeVltTvChannelList][setMwdbHandle]: mwdbId = 5 mwdbHandle:0x10005\n"},
          {services + "[NativeVltTvChannelList][open]: mwdbId = 5 set handle ok \n"},
          {services + "[NativeVltTvChannelList][updateInfo]: mwdbId = 5 \n"},
          {services + "[NativeVltTvChannelList][getMwdbHandle]: mwdbId = 5 mwdbHandle:0x10005\n"},
          {services + "[NativeVltTvChannelList][updateInfo]:rec_id:0 ui2_prog_id:0 ac_name:\n"},
          {"x_svl_update_rec(0x10005, record, 0)", zero}}},
        {&kTransportStreams,
         {{streams + "[clean]: mwdbId = 1 \n"},
          {"x_tsl_lock(0x20001)"},
          {"x_tsl_clean(0x20001)"},
          {"x_tsl_unlock(0x20001)"},
          {streams + "[open]: mwdbId = 5 \n"},
          {"x_tsl_open(5, 0, 0)"},
          {streams + "[setMwdbHandle]: mwdbId = 5 mwdbHandle:0x20005\n"},
          {streams + "[updateInfo]: mwdbId = 5 \n"},
          {streams + "[updateInfo]:rec_id:0 ts_id:0 s_nw_name:\n"},
          {"x_tsl_update_rec(0x20005, record, 0)", zero}}},
        {&kNetworks,
         {{networks + "[clean]: mwdbId = 1 \n"},
          {networks + "[getMwdbHandle]: mwdbId = 1 mwdbHandle:0x30001\n"},
          {"x_nwl_lock(0x30001)"},
          {"x_nwl_clean(0x30001)"},
          {"x_nwl_unlock(0x30001)"},
          {networks + "[open]: mwdbId = 5 \n"},
          {"x_nwl_open(5, 0, 0)"},
          {networks + "[setMwdbHandle]: mwdbId = 5 mwdbHandle:0x30005\n"},
          {networks + "[updateInfo]: mwdbId = 5 \n"},
          {networks + "[getMwdbHandle]: mwdbId = 5 mwdbHandle:0x30005\n"},
          {networks + "[updateInfo]:rec_id:0 nw_id:0 nit_ver:0 s_nw_name:\n"},
          {"x_nwl_update_rec(0x30005, record, 0)", zero}}},
        {&kSatellites,
         {{satellites + "[clean]: satId = 1 \n"},
          {satellites + "[NativeVltTvSatelliteList][getSatHandle]: satId = 1 satHandle:0x40001\n"},
          {"x_satl_lock(0x40001)"},
          {"x_satl_clean(0x40001)"},
          {"x_satl_unlock(0x40001)"},
          {satellites + "[open]: satId = 5 \n"},
          {"x_satl_open(5, 0, 0)"},
          {satellites + "[NativeVltTvSatelliteList][setSatHandle]: satId = 5 satHandle:0x40005\n"},
          {satellites + "[updateInfo]: satId = 5 \n"},
          {satellites + "[NativeVltTvSatelliteList][getSatHandle]: satId = 5 satHandle:0x40005\n"},
          {"x_satl_update_rec(0x40005, record, 0)", zero}}},
    };
    given_open(1);
    EXPECT_EQ(manager->clean(1), 0);
    EXPECT_EQ(manager->open(5), 0);
    EXPECT_EQ(manager->update(5, zero), 0);
    expect_journal(expected.at(&kind));
}

INSTANTIATE_TEST_SUITE_P(Lists, Transcript, kAllKinds, kind_name);

} // namespace
