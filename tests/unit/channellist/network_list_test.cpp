// What the network list manager does differently.
#include "manager_test.h"

namespace {

using namespace tavro::test;

class NetworkList : public ManagerTest {
protected:
    NetworkList() : ManagerTest(kNetworks) {}

    NativeVltTvNetworkList manager;
};

TEST_F(NetworkList, GetInfoListIsAPlaceholderThatSucceedsWithALine) {
    for (const int id : {5, 0}) {
        EXPECT_EQ(manager.getInfoList(id), 0);
        expect_journal(debug("[NativeVltTvNetworkList][getInfoList]: mwdbId = " + std::to_string(id) + "\n"));
    }
    expect_open_lists({});

    start(kNoLine);
    EXPECT_EQ(manager.getInfoList(5), 0);
    expect_journal(debug("closed"));
}

TEST_F(NetworkList, TheRecordLineHasUnsignedNumbersAndMayHaveAnEmptyName) {
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
    expect_journal(entry("updateInfo") + found(5) +
                   debug("#[updateInfo]:rec_id:65535 nw_id:65534 nit_ver:255 s_nw_name:\n") +
                   call("update_rec(@5, record, 0)", written));
}

} // namespace
