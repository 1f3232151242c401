// What the network list store does unlike the others.
#include "store_test_support.h"

namespace {

using namespace tavro::test;

class NetworkListStore : public StoreTest {
protected:
    NetworkListStore() : StoreTest(kNetworks) {}

    NativeVltTvNetworkList manager;
};

TEST_F(NetworkListStore, GetInfoListIsAPlaceholderThatSucceedsWithALineOfItsOwn) {
    for (const int id : {5, 0}) {
        EXPECT_EQ(manager.getInfoList(id), 0);
        expect_journal(debug("[NativeVltTvNetworkList][getInfoList]: mwdbId = " + std::to_string(id) + "\n"));
    }
    expect_open_lists({});
}

TEST_F(NetworkListStore, TheRecordTraceTellsTheWidestNumbersUnsignedAndAnEmptyName) {
    _NWL_REC_T record = {};
    record.ui2_nwl_rec_id = 65535;
    record.ui2_nw_id = 65534;
    record.ui1_nw_version = 255;
    given_open(5);
    EXPECT_EQ(manager.updateInfo(5, &record), 0);
    Bytes written(304);
    put16(written, 4, 65535);
    put16(written, 10, 65534);
    written[12] = std::byte{255};
    expect_journal(debug("#[updateInfo]: mwdbId = 5 \n") + found(5) +
                   debug("#[updateInfo]:rec_id:65535 nw_id:65534 nit_ver:255 s_nw_name:\n") +
                   call("update_rec(@5, record, 0)", written));
}

TEST_F(NetworkListStore, TheSharedTranscriptsReadAsTheyStand) {
    given_open(1);
    EXPECT_EQ(manager.clean(1), 0);
    EXPECT_EQ(manager.open(5), 0);
    const std::string start = "log 3 NativeVltTvNetworkList_Cpp: [NativeVltTvNetworkList]";
    expect_journal({{start + "[clean]: mwdbId = 1 \n"},
                    {start + "[getMwdbHandle]: mwdbId = 1 mwdbHandle:0x30001\n"},
                    {"x_nwl_lock(0x30001)"},
                    {"x_nwl_clean(0x30001)"},
                    {"x_nwl_unlock(0x30001)"},
                    {start + "[open]: mwdbId = 5 \n"},
                    {"x_nwl_open(5, 0, 0)"},
                    {start + "[setMwdbHandle]: mwdbId = 5 mwdbHandle:0x30005\n"}});
}

} // namespace
