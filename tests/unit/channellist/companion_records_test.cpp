// Adding, copying, reading and counting records of transport stream, network and satellite lists.
#include "manager_test.h"

using namespace tavro;

namespace {

using namespace tavro::test;

class CompanionRecords : public EachKind {
protected:
    CompanionRecords() { given_open(5); }

    Steps written(const std::string& operation, int record_id) const {
        return debug("[" + operation + "]: " + kind.calls() + "add_rec OK , " + kind.word +
                     "_rec_id=" + std::to_string(record_id) + "  \n");
    }
    Steps add_failed() const { return debug("[addInfo]: " + kind.calls() + "add_rec fail \n"); }
    Steps copy_failed() const { return debug("[copyInfo]: fail \n"); }
    // addInfo asks for the highest record id and adds the record under the next one; copyInfo adds it as it is.
    Steps asking() const { return record_entry("addInfo") + found(5) + call("qry_rec_id(@5, 2)"); }
    Steps adding(std::uint16_t id) const {
        return asking() + locked(5, call("add_rec(@5, record)", kind.sample_as(id)));
    }
    Steps copying(const Steps& more = {}) const {
        return record_entry("copyInfo") + found(5) + locked(5, call("add_rec(@5, record)", kind.sample_in(5)) + more);
    }
    Steps refused_add(int id, const Steps& lookup) const { return record_entry("addInfo", id) + lookup + add_failed(); }
    Steps refused_copy(int id, const Steps& lookup) const {
        return record_entry("copyInfo", id) + lookup + copy_failed();
    }
};

TEST_P(CompanionRecords, AddInfoAddsUnderTheHighestIdPlusOneUnderTheLock) {
    for (const std::uint16_t highest : {0, 1, 299, 65533, 65534}) {
        record = sample;
        const auto id = static_cast<std::uint16_t>(highest + 1);
        answer("qry_rec_id", with_value(0, highest));
        EXPECT_EQ(manager->add(5, &record), 0);
        expect_journal(adding(id) + written("addInfo", id));
        EXPECT_EQ(record, kind.sample_as(id));
    }
}

TEST_P(CompanionRecords, AddInfoToAnEmptyListAddsUnderOne) {
    answer("qry_rec_id", with_value(-6, 0));
    EXPECT_EQ(manager->add(5, &record), 0);
    expect_journal(adding(1) + written("addInfo", 1));
    EXPECT_EQ(record, kind.sample_as(1));
}

TEST_P(CompanionRecords, AddInfoFailsSilentlyWhenTheListOffersNoId) {
    const struct {
        MwStatus status;
        std::uint32_t highest;
    } cases[] = {{0, 65535}, {-6, 1}, {-6, 65535}, {-3, 0}, {-3, 12}, {-8, 0}, {-11, 0}, {6, 0}};
    for (const auto& c : cases) {
        answer("qry_rec_id", with_value(c.status, c.highest));
        EXPECT_EQ(manager->add(5, &record), -22) << c.status << ' ' << c.highest;
        expect_journal(asking());
        EXPECT_EQ(record, sample);
    }
}

TEST_P(CompanionRecords, AddInfoLogsARefusalAndReleasesTheLock) {
    for (const MwStatus status : {-3, -11}) { // a record that has the id is not overwritten
        record = sample;
        answer("qry_rec_id", with_value(0, 40));
        answer("add_rec", status);
        EXPECT_EQ(manager->add(5, &record), -22);
        expect_journal(adding(41) + add_failed());
        EXPECT_EQ(record, kind.sample_as(41));
    }
}

TEST_P(CompanionRecords, NoRecordOrHandleZeroFailsWithoutACall) {
    EXPECT_EQ(manager->add(5, nullptr), -22);
    EXPECT_EQ(manager->copy_record(5, nullptr), -22);
    expect_journal(refused_add(5, found(5)) + refused_copy(5, found(5)));
    given_handle(6, 0);
    EXPECT_EQ(manager->add(6, &record), -22);
    EXPECT_EQ(manager->copy_record(6, &record), -22);
    expect_journal(refused_add(6, found(6, 0)) + refused_copy(6, found(6, 0)));
    EXPECT_EQ(record, sample);
}

TEST_P(CompanionRecords, CopyInfoKeepsTheIdAndWritesTheListIdFields) {
    EXPECT_EQ(manager->copy_record(5, &record), 0);
    expect_journal(copying() + written("copyInfo", 17));
    EXPECT_EQ(record, kind.sample_in(5));

    put16(record, kind.record_id_at, 65535);
    const Bytes last = record;
    EXPECT_EQ(manager->copy_record(5, &record), 0);
    expect_journal(record_entry("copyInfo") + found(5) + locked(5, call("add_rec(@5, record)", last)) +
                   written("copyInfo", 65535));
    EXPECT_EQ(record, last);
}

TEST_P(CompanionRecords, CopyInfoWritesTheLowBitsOfTheListId) {
    given_open(260);
    EXPECT_EQ(manager->copy_record(65796, &record), 0);
    expect_journal(record_entry("copyInfo", 65796) + found(260) +
                   locked(260, call("add_rec(@260, record)", kind.sample_in(260))) + written("copyInfo", 17));
    EXPECT_EQ(record, kind.sample_in(260));
}

TEST_P(CompanionRecords, CopyInfoReplacesARecordOfThatIdUnderTheSameLock) {
    const Steps replacing = copying(call("update_rec(@5, record, 1)", kind.sample_in(5)));
    answer("add_rec", -11);
    EXPECT_EQ(manager->copy_record(5, &record), 0);
    expect_journal(replacing + written("copyInfo", 17));
    for (const MwStatus status : {-3, -11}) {
        answer("add_rec", -11);
        answer("update_rec", status);
        EXPECT_EQ(manager->copy_record(5, &record), -22);
        expect_journal(replacing + copy_failed());
    }
}

TEST_P(CompanionRecords, CopyInfoReplacesNothingAfterAnyOtherFailure) {
    for (const MwStatus status : {-3, -6, -12}) {
        answer("add_rec", status);
        EXPECT_EQ(manager->copy_record(5, &record), -22);
        expect_journal(copying() + copy_failed());
    }
}

TEST_P(CompanionRecords, AddsAndCopiesIgnoreLockErrors) {
    always("lock", -1);
    always("unlock", -1);
    answer("qry_rec_id", with_value(0, 40));
    EXPECT_EQ(manager->add(5, &record), 0);
    expect_journal(adding(41) + written("addInfo", 41));
    record = sample;
    EXPECT_EQ(manager->copy_record(5, &record), 0);
    expect_journal(copying() + written("copyInfo", 17));
}

TEST_P(CompanionRecords, AddsAndCopiesOpenAListButCreateNone) {
    answer("qry_rec_id", with_value(-6, 0));
    EXPECT_EQ(manager->add(6, &record), 0);
    expect_journal(record_entry("addInfo", 6) + opened(6) + call("qry_rec_id(@6, 2)") +
                   locked(6, call("add_rec(@6, record)", kind.sample_as(1))) + written("addInfo", 1));
    for (const int id : {7, 0, 65536}) {
        answer("open", -7);
        EXPECT_EQ(manager->add(id, &record), -22);
        answer("open", -7);
        EXPECT_EQ(manager->copy_record(id, &record), -22);
        expect_journal(record_entry("addInfo", id) + tried_open(id) + record_entry("copyInfo", id) + tried_open(id));
    }
    EXPECT_EQ(record, kind.sample_as(1));
}

TEST_P(CompanionRecords, NoAddOrCopyReachesListZero) {
    EXPECT_EQ(manager->add(65536, &record), -22);
    EXPECT_EQ(manager->copy_record(65536, &record), -22);
    expect_journal(record_entry("addInfo", 65536) + tried_open(0) + record_entry("copyInfo", 65536) + tried_open(0));
}

TEST_P(CompanionRecords, AddsAndCopiesMakeTheSameCallsWhateverTheGate) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        given_open(5);
        record = sample;
        EXPECT_EQ(manager->add(5, &record), 0);
        expect_journal(adding(2) + written("addInfo", 2));
        record = sample;
        EXPECT_EQ(manager->copy_record(5, &record), 0);
        expect_journal(copying() + written("copyInfo", 17));
        EXPECT_EQ(manager->copy_record(5, nullptr), -22);
        EXPECT_EQ(manager->add(5, nullptr), -22);
        expect_journal(refused_copy(5, found(5)) + refused_add(5, found(5)));
    }
}

TEST_P(CompanionRecords, GetInfoByIdxReadsRecordAndVersionAtTheIndex) {
    for (const int index : {0, 4, 65539, -1, 2147483647}) {
        Bytes read(kind.record_bytes);
        int version = 0;
        answer("get_rec_by_rec_idx", with_record(0, sample, 9));
        EXPECT_EQ(manager->get_by_index(5, index, version, read), 0);
        const int passed = kind.cuts_index ? index & 0xFFFF : index;
        expect_journal(index_entry("getInfoByIdx", 5, index) + found(5) +
                       call("get_rec_by_rec_idx(@5, " + std::to_string(passed) + ")") +
                       record_line("getInfoByIdx", sample));
        EXPECT_EQ(read, sample);
        EXPECT_EQ(version, 9);
    }
}

TEST_P(CompanionRecords, GetInfoTakesTheLowSixteenBitsOfTheRecordId) {
    for (const int id : {65539, -65533}) {
        Bytes read(kind.record_bytes);
        answer("get_rec", with_record(0, sample));
        EXPECT_EQ(manager->get(5, id, read), 0);
        expect_journal(get_entry(5, id) + found(5) + call("get_rec(@5, 3)") + got(sample));
        EXPECT_EQ(read, sample);
    }
}

TEST_P(CompanionRecords, AnEmptyListCountsZero) {
    answer(kind.count_call, with_value(0, 0));
    EXPECT_EQ(manager->count(5), 0);
    expect_journal(entry("getInfoListNum") + found(5) + call(std::string(kind.count_call) + "(@5)") + counted(0));
}

INSTANTIATE_TEST_SUITE_P(Companions, CompanionRecords, kCompanions, kind_name);

class UpdatingAList : public CompanionRecords {};

TEST_P(UpdatingAList, UpdateInfoListIsAPlaceholderThatFailsAndOpensNothing) {
    for (const int id : {5, 6, 0}) {
        EXPECT_EQ(manager->update_records(id), -22);
        expect_journal(entry("updateInfoList", id));
    }
    expect_open_lists({{5, handle(5)}});
}

// Satellite lists have no updateInfoList; the one of service lists writes no line.
INSTANTIATE_TEST_SUITE_P(Lists, UpdatingAList, testing::Values(&kTransportStreams, &kNetworks), kind_name);

} // namespace
