// What the transport stream list store does unlike the others.
#include "store_test_support.h"

namespace {

using namespace tavro::test;

class TransportStreamListStore : public StoreTest {
protected:
    TransportStreamListStore() : StoreTest(kTransportStreams) {}

    // Reads by satellite into `read`.
    int read(int list_id, int satellite_list, int satellite, int index) {
        read_bytes.assign(kind.record_bytes, std::byte{0});
        _TSL_REC_T record = {};
        const int result =
            manager.getInfoByIdxBySatellite(list_id, satellite_list, satellite, index, &version, &record);
        std::memcpy(read_bytes.data(), &record, sizeof(record));
        return result;
    }
    Steps read_entry(int list_id, int index) const {
        return debug("#[getInfoByIdxBySatellite]: mwdbId = " + std::to_string(list_id) +
                     " idx = " + std::to_string(index) + "\n");
    }
    Steps count_entry(int list_id) const {
        return debug("#[getInfoListNumBySatellite]: mwdbId = " + std::to_string(list_id) + " \n");
    }

    NativeVltTvTransportStreamList manager;
    const Bytes sample = kind.sample();
    const Steps sample_told = debug("#[getInfoByIdxBySatellite]:rec_id:17 ts_id:258 s_nw_name:Name\n");
    Bytes read_bytes;
    int version = 0;
};

TEST_F(TransportStreamListStore, GetInfoByIdxBySatelliteReadsAmongEveryNetworksRecordsOfTheSatellite) {
    given_open(5);
    answer("get_rec_by_sat", with_record(0, sample, 9));
    EXPECT_EQ(read(5, 7, 2, 3), 0);
    expect_journal(read_entry(5, 3) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") + sample_told);
    EXPECT_EQ(read_bytes, sample);
    EXPECT_EQ(version, 9);
}

TEST_F(TransportStreamListStore, GetInfoByIdxBySatelliteCutsItsNumbersToSixteenBits) {
    given_open(5);
    answer("get_rec_by_sat", with_record(0, sample));
    EXPECT_EQ(read(65541, 65543, -1, 65539), 0);
    expect_journal(read_entry(65541, 65539) + call("get_rec_by_sat(@5, 65535, 7, 65535, 3)") + sample_told);
}

TEST_F(TransportStreamListStore, GetInfoByIdxBySatelliteThatFailsTellsTheRecordAllTheSame) {
    given_open(5);
    answer("get_rec_by_sat", with_record(-3, sample));
    EXPECT_EQ(read(5, 7, 2, 3), -22);
    expect_journal(read_entry(5, 3) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") + sample_told);
}

TEST_F(TransportStreamListStore, GetInfoByIdxBySatelliteOpensTheListOrFails) {
    answer("get_rec_by_sat", with_record(0, sample));
    EXPECT_EQ(read(5, 7, 2, 3), 0);
    expect_journal(read_entry(5, 3) + opened(5) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") + sample_told);
    answer("open", -7);
    EXPECT_EQ(read(6, 7, 2, 3), -22);
    expect_journal(read_entry(6, 3) + call("open(6, 0, 0)"));
    EXPECT_EQ(read(0, 7, 2, 3), -22);
    expect_journal(read_entry(0, 3) + call("open(0, 0, 0)"));
    given_handle(7, 0);
    EXPECT_EQ(read(7, 7, 2, 3), -22);
    expect_journal(read_entry(7, 3));
    expect_open_lists({{5, handle(5)}, {7, 0}});
}

TEST_F(TransportStreamListStore, GetInfoListNumBySatelliteCountsEveryNetworksRecordsOfTheSatellite) {
    given_open(5);
    answer("get_num_rec_by_sat", with_value(0, 65535));
    EXPECT_EQ(manager.getInfoListNumBySatellite(5, 7, 2), 65535);
    expect_journal(count_entry(5) + call("get_num_rec_by_sat(@5, 65535, 7, 2)"));
    answer("get_num_rec_by_sat", with_value(0, 4));
    EXPECT_EQ(manager.getInfoListNumBySatellite(65541, 65543, -1), 4);
    expect_journal(count_entry(65541) + call("get_num_rec_by_sat(@5, 65535, 7, 65535)"));
}

TEST_F(TransportStreamListStore, GetInfoListNumBySatelliteIsZeroWhenTheCountFails) {
    given_open(5);
    answer("get_num_rec_by_sat", with_value(-3, 4));
    EXPECT_EQ(manager.getInfoListNumBySatellite(5, 7, 2), 0);
    expect_journal(count_entry(5) + call("get_num_rec_by_sat(@5, 65535, 7, 2)"));
    given_handle(7, 0);
    EXPECT_EQ(manager.getInfoListNumBySatellite(7, 7, 2), 0);
    expect_journal(count_entry(7));
}

TEST_F(TransportStreamListStore, GetInfoListNumBySatelliteOpensTheListOrFails) {
    answer("get_num_rec_by_sat", with_value(0, 4));
    EXPECT_EQ(manager.getInfoListNumBySatellite(5, 7, 2), 4);
    expect_journal(count_entry(5) + opened(5) + call("get_num_rec_by_sat(@5, 65535, 7, 2)"));
    answer("open", -7);
    EXPECT_EQ(manager.getInfoListNumBySatellite(6, 7, 2), -22);
    expect_journal(count_entry(6) + call("open(6, 0, 0)"));
    EXPECT_EQ(manager.getInfoListNumBySatellite(0, 7, 2), -22);
    expect_journal(count_entry(0) + call("open(0, 0, 0)"));
    expect_open_lists({{5, handle(5)}});
}

TEST_F(TransportStreamListStore, RemovalsTellTheStatusUnderTheLockBehindTheGateOfErrors) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        given_open(5);
        const Steps calls = call("lock(@5)") + call("del_rec(@5, 17)") + error("i4_ret: -9") + call("unlock(@5)");
        answer("del_rec", -9);
        EXPECT_EQ(manager.removeInfo("5,65553"), -22);
        expect_journal(debug("[removeInfo]: string recId = 5,65553 \n") +
                       debug("[removeInfo]: tslId = 5, tslRecId = 17 \n") + calls);
        answer("del_rec", -9);
        EXPECT_EQ(manager.removeInfoByRecId(5, "6,65553"), -22);
        expect_journal(debug("[removeInfoByRecId]: string recId = 6,65553 \n") +
                       debug("[removeInfoByRecId]: mwdbId = 5, tslRecId = 17 \n") + calls);
    }
}

TEST_F(TransportStreamListStore, GetInfoListIsAPlaceholderThatSucceedsSilently) {
    EXPECT_EQ(manager.getInfoList(5), 0);
    EXPECT_EQ(manager.getInfoList(0), 0);
    expect_journal({});
}

TEST_F(TransportStreamListStore, TheSharedTranscriptsReadAsTheyStand) {
    given_open(1);
    EXPECT_EQ(manager.clean(1), 0);
    EXPECT_EQ(manager.open(5), 0);
    const std::string start = "log 3 NativeVltTvTransportStreamList_Cpp: [NativeVltTvTransportStreamList]";
    expect_journal({{start + "[clean]: mwdbId = 1 \n"},
                    {"x_tsl_lock(0x20001)"},
                    {"x_tsl_clean(0x20001)"},
                    {"x_tsl_unlock(0x20001)"},
                    {start + "[open]: mwdbId = 5 \n"},
                    {"x_tsl_open(5, 0, 0)"},
                    {start + "[setMwdbHandle]: mwdbId = 5 mwdbHandle:0x20005\n"}});
}

} // namespace
