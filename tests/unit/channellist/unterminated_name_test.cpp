// Names that the middleware left without their NUL, in records all of whose bytes are 0xFF: log lines print them up to
// the end of their field. Satellite lists log no record.
#include "manager_test.h"

namespace {

using namespace tavro::test;

class UnterminatedName : public EachKind {
protected:
    UnterminatedName() {
        given_open(5);
        record = full;
    }

    const Bytes full = Bytes(kind.record_bytes, std::byte{0xFF});
};

TEST_P(UnterminatedName, AnUpdateLogsItUpToTheEndOfItsField) {
    EXPECT_EQ(manager->update(5, record), 0);
    expect_journal(entry("updateInfo") + found(5) + record_line("updateInfo", full) +
                   call("update_rec(@5, record, 0)", full));
}

TEST_P(UnterminatedName, AReadLogsItUpToTheEndOfItsField) {
    Bytes read(kind.record_bytes);
    answer("get_rec", with_record(0, full));
    EXPECT_EQ(manager->get(5, 17, read), 0);
    EXPECT_EQ(read, full);
    expect_journal(get_entry(5, 17) + found(5) + call("get_rec(@5, 17)") + got(full));
}

INSTANTIATE_TEST_SUITE_P(Lists, UnterminatedName, kAllKinds, kind_name);

class UnterminatedCompanionName : public UnterminatedName {};

TEST_P(UnterminatedCompanionName, AReadByIndexLogsItUpToTheEndOfItsField) {
    Bytes read(kind.record_bytes);
    int version = 0;
    answer("get_rec_by_rec_idx", with_record(0, full));
    EXPECT_EQ(manager->get_by_index(5, 4, version, read), 0);
    EXPECT_EQ(read, full);
    expect_journal(index_entry("getInfoByIdx", 5, 4) + found(5) + call("get_rec_by_rec_idx(@5, 4)") +
                   record_line("getInfoByIdx", full));
}

TEST_P(UnterminatedCompanionName, AnAddDoesNotLogIt) {
    EXPECT_EQ(manager->add(5, &record), 0);
    Bytes added = full;
    put16(added, kind.record_id_at, 2);
    expect_journal(record_entry("addInfo") + found(5) + call("qry_rec_id(@5, 2)") +
                   locked(5, call("add_rec(@5, record)", added)) +
                   debug("[addInfo]: " + kind.calls() + "add_rec OK , " + kind.word + "_rec_id=2  \n"));
}

INSTANTIATE_TEST_SUITE_P(Companions, UnterminatedCompanionName, kCompanions, kind_name);

class UnterminatedServiceName : public UnterminatedName {};

TEST_P(UnterminatedServiceName, AnAddLogsItUpToTheEndOfItsField) {
    EXPECT_EQ(manager->add(5, &record), 0);
    Bytes added = full;
    put16(added, kind.record_id_at, 1);
    expect_journal(entry("addInfo") + found(5) + call("qry_rec_id(@5, 3)") + record_line("addInfo", added) +
                   call("add_rec(@5, record)", added));
}

INSTANTIATE_TEST_SUITE_P(Lists, UnterminatedServiceName, testing::Values(&kServices), kind_name);

class UnterminatedNameBySatellite : public ManagerTest {
protected:
    UnterminatedNameBySatellite() : ManagerTest(kTransportStreams) { given_open(5); }

    NativeVltTvTransportStreamList manager;
};

TEST_F(UnterminatedNameBySatellite, AReadBySatelliteLogsItUpToTheEndOfItsField) {
    const auto read = std::make_unique<_TSL_REC_T>(); // in memory of its own, so that a read past its end is seen
    int version = 0;
    answer("get_rec_by_sat", with_record(0, Bytes(sizeof(*read), std::byte{0xFF})));
    EXPECT_EQ(manager.getInfoByIdxBySatellite(5, 7, 2, 3, &version, read.get()), 0);
    expect_journal(
        index_entry("getInfoByIdxBySatellite", 5, 3) + call("get_rec_by_sat(@5, 65535, 7, 2, 3)") +
        debug("#[getInfoByIdxBySatellite]:rec_id:65535 ts_id:65535 s_nw_name:" + std::string(32, '\xFF') + "\n"));
}

} // namespace
