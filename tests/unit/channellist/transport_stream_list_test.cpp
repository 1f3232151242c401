// What the transport stream list manager does differently: reads and counts by satellite.
#include "manager_test.h"

namespace {

using namespace tavro::test;

class TransportStreamList : public ManagerTest {
protected:
    TransportStreamList() : ManagerTest(kTransportStreams) {}

    // Reads by satellite into `read`.
    int read(int list_id, int satellite_list, int satellite, int index) {
        read_bytes.assign(kind.record_bytes, std::byte{0});
        _TSL_REC_T record = {};
        const int result =
            manager.getInfoByIdxBySatellite(list_id, satellite_list, satellite, index, &version, &record);
        std::memcpy(read_bytes.data(), &record, sizeof(record));
        return result;
    }
    Steps read_entry(int list_id, int index) const { return index_entry("getInfoByIdxBySatellite", list_id, index); }
    Steps count_entry(int list_id) const { return entry("getInfoListNumBySatellite", list_id); }

    NativeVltTvTransportStreamList manager;
    const Bytes sample = kind.sample();
    const Steps sample_line = record_line("getInfoByIdxBySatellite", sample);
    Bytes read_bytes;
    int version = 0;
};

TEST_F(TransportStreamList, AReadBySatelliteCoversEveryNetwork) {
    given_open(5);
    answer("get_rec_by_sat", with_record(0, sample, 9));
    EXPECT_EQ(read(5, 7, 2, 3), 0);
    expect_journal(read_entry(5, 3) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") + sample_line);
    EXPECT_EQ(read_bytes, sample);
    EXPECT_EQ(version, 9);
}

TEST_F(TransportStreamList, AReadBySatellitePassesTheLowSixteenBitsOfItsNumbers) {
    given_open(5);
    answer("get_rec_by_sat", with_record(0, sample));
    EXPECT_EQ(read(65541, 65543, -1, 65539), 0);
    expect_journal(read_entry(65541, 65539) + call("get_rec_by_sat(@5, 65535, 7, 65535, 3)") + sample_line);
}

TEST_F(TransportStreamList, AReadBySatelliteLogsTheRecordEvenIfItFails) {
    given_open(5);
    answer("get_rec_by_sat", with_record(-3, sample));
    EXPECT_EQ(read(5, 7, 2, 3), -22);
    expect_journal(read_entry(5, 3) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") + sample_line);
}

TEST_F(TransportStreamList, AReadBySatelliteOpensTheListOrFails) {
    answer("get_rec_by_sat", with_record(0, sample));
    EXPECT_EQ(read(5, 7, 2, 3), 0);
    expect_journal(read_entry(5, 3) + opened(5) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") + sample_line);
    answer("open", -7);
    EXPECT_EQ(read(6, 7, 2, 3), -22);
    expect_journal(read_entry(6, 3) + tried_open(6));
    EXPECT_EQ(read(0, 7, 2, 3), -22);
    expect_journal(read_entry(0, 3) + tried_open(0));
    given_handle(7, 0);
    EXPECT_EQ(read(7, 7, 2, 3), -22);
    expect_journal(read_entry(7, 3));
    expect_open_lists({{5, handle(5)}, {7, 0}});
}

TEST_F(TransportStreamList, ACountBySatelliteCoversEveryNetwork) {
    given_open(5);
    answer("get_num_rec_by_sat", with_value(0, 65535));
    EXPECT_EQ(manager.getInfoListNumBySatellite(5, 7, 2), 65535);
    expect_journal(count_entry(5) + call("get_num_rec_by_sat(@5, 65535, 7, 2)"));
    answer("get_num_rec_by_sat", with_value(0, 4));
    EXPECT_EQ(manager.getInfoListNumBySatellite(65541, 65543, -1), 4);
    expect_journal(count_entry(65541) + call("get_num_rec_by_sat(@5, 65535, 7, 65535)"));
}

TEST_F(TransportStreamList, ACountBySatelliteThatFailsIsZero) {
    given_open(5);
    answer("get_num_rec_by_sat", with_value(-3, 4));
    EXPECT_EQ(manager.getInfoListNumBySatellite(5, 7, 2), 0);
    expect_journal(count_entry(5) + call("get_num_rec_by_sat(@5, 65535, 7, 2)"));
    given_handle(7, 0);
    EXPECT_EQ(manager.getInfoListNumBySatellite(7, 7, 2), 0);
    expect_journal(count_entry(7));
}

TEST_F(TransportStreamList, ACountBySatelliteOpensTheListOrFails) {
    answer("get_num_rec_by_sat", with_value(0, 4));
    EXPECT_EQ(manager.getInfoListNumBySatellite(5, 7, 2), 4);
    expect_journal(count_entry(5) + opened(5) + call("get_num_rec_by_sat(@5, 65535, 7, 2)"));
    answer("open", -7);
    EXPECT_EQ(manager.getInfoListNumBySatellite(6, 7, 2), -22);
    expect_journal(count_entry(6) + tried_open(6));
    EXPECT_EQ(manager.getInfoListNumBySatellite(0, 7, 2), -22);
    expect_journal(count_entry(0) + tried_open(0));
    expect_open_lists({{5, handle(5)}});
}

TEST_F(TransportStreamList, RemovalsLogTheStatusUnderTheLockAsAnError) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        given_open(5);
        const Steps calls = call("lock(@5)") + call("del_rec(@5, 17)") + error("i4_ret: -9") + call("unlock(@5)");
        answer("del_rec", -9);
        EXPECT_EQ(manager.removeInfo("5,65553"), -22);
        expect_journal(identifier_line("removeInfo", "5,65553") + debug("[removeInfo]: tslId = 5, tslRecId = 17 \n") +
                       calls);
        answer("del_rec", -9);
        EXPECT_EQ(manager.removeInfoByRecId(5, "6,65553"), -22);
        expect_journal(identifier_line("removeInfoByRecId", "6,65553") +
                       debug("[removeInfoByRecId]: mwdbId = 5, tslRecId = 17 \n") + calls);
    }
}

TEST_F(TransportStreamList, GetInfoListIsASilentPlaceholderThatSucceeds) {
    EXPECT_EQ(manager.getInfoList(5), 0);
    EXPECT_EQ(manager.getInfoList(0), 0);
    expect_journal({});
}

} // namespace
