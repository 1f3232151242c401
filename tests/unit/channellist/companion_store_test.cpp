// Adding, copying, reading and counting records: what the transport stream and network lists do alike.
#include "store_test_support.h"

namespace {

using namespace tavro::test;

class Companion : public EachKind {
protected:
    Companion() { given_open(5); }

    std::string word() const { return kind.is_transport_streams() ? "tsl" : "nwl"; }
    Steps entry(const std::string& operation, int id = 5) const {
        return debug("[" + operation + "]: mwdbId = " + std::to_string(id) + " \n");
    }
    Steps ok(const std::string& operation, int record_id) const {
        return debug("[" + operation + "]: x_" + word() + "_add_rec OK , " + word() +
                     "_rec_id=" + std::to_string(record_id) + "  \n");
    }
    Steps add_failed() const { return debug("[addInfo]: x_" + word() + "_add_rec fail \n"); }
    Steps copy_failed() const { return debug("[copyInfo]: fail \n"); }
    Steps locked(const Steps& work) const { return call("lock(@5)") + work + call("unlock(@5)"); }
    Steps query() const { return call("qry_rec_id(@5, 2)"); }

    // The sample under another record id.
    Bytes sample_as(std::uint16_t record_id) const {
        Bytes record = sample;
        put16(record, kind.record_id_at, record_id);
        return record;
    }
    // The sample as a record of that list.
    Bytes sample_in(std::uint16_t list_id) const {
        Bytes record = sample;
        if (kind.is_transport_streams()) {
            put16(record, 708, list_id);
            put16(record, 712, list_id);
            record[20] = static_cast<std::byte>(list_id);
        } else {
            put16(record, 6, list_id);
        }
        return record;
    }

    Bytes record = sample;
};

TEST_P(Companion, AddInfoStoresTheRecordUnderTheHighestIdPlusOneUnderTheLock) {
    for (const std::uint16_t highest : {0, 1, 299, 65533, 65534}) {
        record = sample;
        const auto id = static_cast<std::uint16_t>(highest + 1);
        answer("qry_rec_id", with_value(0, highest));
        EXPECT_EQ(store->add(5, &record), 0);
        expect_journal(entry("addInfo") + found(5) + query() + locked(call("add_rec(@5, record)", sample_as(id))) +
                       ok("addInfo", id));
        EXPECT_EQ(record, sample_as(id));
    }
}

TEST_P(Companion, AddInfoToAnEmptyListStoresTheRecordUnderOne) {
    answer("qry_rec_id", with_value(-6, 0));
    EXPECT_EQ(store->add(5, &record), 0);
    expect_journal(entry("addInfo") + found(5) + query() + locked(call("add_rec(@5, record)", sample_as(1))) +
                   ok("addInfo", 1));
    EXPECT_EQ(record, sample_as(1));
}

TEST_P(Companion, AddInfoFailsWithoutAFurtherLineWhenTheListOffersNoId) {
    const struct {
        MwStatus status;
        std::uint32_t highest;
    } cases[] = {{0, 65535}, {-6, 1}, {-6, 65535}, {-3, 0}, {-3, 12}, {-8, 0}, {-11, 0}, {6, 0}};
    for (const auto& c : cases) {
        answer("qry_rec_id", with_value(c.status, c.highest));
        EXPECT_EQ(store->add(5, &record), -22) << c.status << ' ' << c.highest;
        expect_journal(entry("addInfo") + found(5) + query());
        EXPECT_EQ(record, sample);
    }
}

TEST_P(Companion, AddInfoThatTheMiddlewareRefusesSaysSoAndReleasesTheLock) {
    for (const MwStatus status : {-3, -11}) { // a taken id is not written over
        record = sample;
        answer("qry_rec_id", with_value(0, 40));
        answer("add_rec", status);
        EXPECT_EQ(store->add(5, &record), -22);
        expect_journal(entry("addInfo") + found(5) + query() + locked(call("add_rec(@5, record)", sample_as(41))) +
                       add_failed());
        EXPECT_EQ(record, sample_as(41));
    }
}

TEST_P(Companion, AddInfoOfNoRecordOrToHandleZeroSaysThatItFailedWithoutACall) {
    EXPECT_EQ(store->add(5, nullptr), -22);
    expect_journal(entry("addInfo") + found(5) + add_failed());
    given_handle(6, 0);
    EXPECT_EQ(store->add(6, &record), -22);
    expect_journal(entry("addInfo", 6) + found(6, 0) + add_failed());
    EXPECT_EQ(record, sample);
}

TEST_P(Companion, CopyInfoNamesThisListInTheRecordAndKeepsItsId) {
    EXPECT_EQ(store->copy_record(5, &record), 0);
    expect_journal(entry("copyInfo") + found(5) + locked(call("add_rec(@5, record)", sample_in(5))) +
                   ok("copyInfo", 17));
    EXPECT_EQ(record, sample_in(5));
}

TEST_P(Companion, CopyInfoNamesTheListByItsLowBits) {
    given_open(260);
    EXPECT_EQ(store->copy_record(65796, &record), 0);
    expect_journal(entry("copyInfo", 65796) + found(260) + call("lock(@260)") +
                   call("add_rec(@260, record)", sample_in(260)) + call("unlock(@260)") + ok("copyInfo", 17));
    EXPECT_EQ(record, sample_in(260));
}

TEST_P(Companion, CopyInfoReplacesARecordThatHasTheIdAlreadyUnderTheSameLock) {
    const Steps calls =
        locked(call("add_rec(@5, record)", sample_in(5)) + call("update_rec(@5, record, 1)", sample_in(5)));
    answer("add_rec", -11);
    EXPECT_EQ(store->copy_record(5, &record), 0);
    expect_journal(entry("copyInfo") + found(5) + calls + ok("copyInfo", 17));
    for (const MwStatus status : {-3, -11}) {
        answer("add_rec", -11);
        answer("update_rec", status);
        EXPECT_EQ(store->copy_record(5, &record), -22);
        expect_journal(entry("copyInfo") + found(5) + calls + copy_failed());
    }
}

TEST_P(Companion, CopyInfoReplacesNothingAfterAnyOtherFailure) {
    for (const MwStatus status : {-3, -6, -12}) {
        answer("add_rec", status);
        EXPECT_EQ(store->copy_record(5, &record), -22);
        expect_journal(entry("copyInfo") + found(5) + locked(call("add_rec(@5, record)", sample_in(5))) +
                       copy_failed());
    }
}

TEST_P(Companion, CopyInfoOfNoRecordOrToHandleZeroSaysThatItFailedWithoutACall) {
    EXPECT_EQ(store->copy_record(5, nullptr), -22);
    expect_journal(entry("copyInfo") + found(5) + copy_failed());
    given_handle(6, 0);
    EXPECT_EQ(store->copy_record(6, &record), -22);
    expect_journal(entry("copyInfo", 6) + found(6, 0) + copy_failed());
    EXPECT_EQ(record, sample);
}

TEST_P(Companion, TheStatusesOfTheLockCountForNothingInAddsAndCopies) {
    always("lock", -1);
    always("unlock", -1);
    answer("qry_rec_id", with_value(0, 40));
    EXPECT_EQ(store->add(5, &record), 0);
    expect_journal(entry("addInfo") + found(5) + query() + locked(call("add_rec(@5, record)", sample_as(41))) +
                   ok("addInfo", 41));
    record = sample;
    EXPECT_EQ(store->copy_record(5, &record), 0);
    expect_journal(entry("copyInfo") + found(5) + locked(call("add_rec(@5, record)", sample_in(5))) +
                   ok("copyInfo", 17));
}

TEST_P(Companion, AddsAndCopiesOpenAListThatIsNotOpenButCreateNone) {
    const Steps opening = opened(6);
    answer("qry_rec_id", with_value(-6, 0));
    EXPECT_EQ(store->add(6, &record), 0);
    expect_journal(entry("addInfo", 6) + opening + call("qry_rec_id(@6, 2)") + call("lock(@6)") +
                   call("add_rec(@6, record)", sample_as(1)) + call("unlock(@6)") + ok("addInfo", 1));
    answer("open", -7);
    EXPECT_EQ(store->add(7, &record), -22);
    expect_journal(entry("addInfo", 7) + call("open(7, 0, 0)"));
    answer("open", -7);
    EXPECT_EQ(store->copy_record(7, &record), -22);
    expect_journal(entry("copyInfo", 7) + call("open(7, 0, 0)"));
    EXPECT_EQ(store->copy_record(65536, &record), -22);
    expect_journal(entry("copyInfo", 65536) + call("open(0, 0, 0)"));
    EXPECT_EQ(record, sample_as(1));
}

TEST_P(Companion, AddsAndCopiesMakeTheSameCallsWhateverTheGateLetsPass) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        record = sample;
        EXPECT_EQ(store->add(5, &record), 0);
        expect_journal(entry("addInfo") + opened(5) + query() + locked(call("add_rec(@5, record)", sample_as(2))) +
                       ok("addInfo", 2));
        record = sample;
        EXPECT_EQ(store->copy_record(5, &record), 0);
        expect_journal(entry("copyInfo") + found(5) + locked(call("add_rec(@5, record)", sample_in(5))) +
                       ok("copyInfo", 17));
        answer("add_rec", -3);
        EXPECT_EQ(store->copy_record(5, nullptr), -22);
        EXPECT_EQ(store->add(5, nullptr), -22);
        expect_journal(entry("copyInfo") + found(5) + copy_failed() + entry("addInfo") + found(5) + add_failed());
    }
}

TEST_P(Companion, GetInfoByIdxGivesRecordAndVersionAtTheIndexCutToSixteenBits) {
    const struct {
        int index;
        const char* passed;
    } cases[] = {{0, "0"}, {65539, "3"}, {-1, "65535"}};
    for (const auto& c : cases) {
        Bytes read(kind.record_bytes);
        int version = 0;
        answer("get_rec_by_rec_idx", with_record(0, sample, 9));
        EXPECT_EQ(store->get_by_index(5, c.index, version, read), 0);
        expect_journal(debug("#[getInfoByIdx]: mwdbId = 5 idx = " + std::to_string(c.index) + "\n") + found(5) +
                       call(std::string("get_rec_by_rec_idx(@5, ") + c.passed + ")") +
                       debug(std::string("#[getInfoByIdx]:") + kind.sample_trace));
        EXPECT_EQ(read, sample);
        EXPECT_EQ(version, 9);
    }
}

TEST_P(Companion, GetInfoGivesTheRecordOfTheIdCutToSixteenBits) {
    const Steps told = kind.is_transport_streams() ? Steps{} : debug(std::string("#[getInfo]:") + kind.sample_trace);
    for (const int id : {65539, -65533}) {
        Bytes read(kind.record_bytes);
        answer("get_rec", with_record(0, sample));
        EXPECT_EQ(store->get(5, id, read), 0);
        expect_journal((kind.is_transport_streams()
                            ? Steps{}
                            : debug("#[getInfo]: mwdbId = 5 recId = " + std::to_string(id) + "\n")) +
                       found(5) + call("get_rec(@5, 3)") + told);
        EXPECT_EQ(read, sample);
    }
}

TEST_P(Companion, AnEmptyListCountsZero) {
    const bool streams = kind.is_transport_streams();
    answer(streams ? "get_num_recs" : "get_num_rec", with_value(0, 0));
    EXPECT_EQ(store->count(5), 0);
    expect_journal(debug("#[getInfoListNum]: mwdbId = 5 \n") + found(5) +
                   call(streams ? "get_num_recs(@5)" : "get_num_rec(@5)") +
                   (streams ? Steps{} : debug("#[getInfoListNum]:i2_num_rec:0 \n")));
}

TEST_P(Companion, UpdateInfoListIsAPlaceholderThatFailsAndOpensNothing) {
    for (const int id : {5, 6, 0}) {
        EXPECT_EQ(store->update_records(id), -22);
        expect_journal(debug("#[updateInfoList]: mwdbId = " + std::to_string(id) + " \n"));
    }
    expect_open_lists({{5, handle(5)}});
}

INSTANTIATE_TEST_SUITE_P(Companions, Companion, kCompanions, kind_name);

} // namespace
