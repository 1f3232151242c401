// What a satellite list store does to lists and records beyond the course that all its operations take
// (satellite_operations_test.cpp) and the opening of lists (satellite_handles_test.cpp).
#include "satellite_store_support.h"

#include <stdexcept>

namespace {

using namespace tavro::test;

class SatelliteListStore : public SatelliteStore {
protected:
    SatelliteListStore() { given_open(5); }

    Steps ok(const std::string& operation, int record_id) const {
        return debug("[" + operation + "]: x_satl_add_rec OK , satl_rec_id=" + std::to_string(record_id) + "  \n");
    }
    Steps add_failed() const { return debug("[addInfo]: x_satl_add_rec fail \n"); }
    Steps copy_failed() const { return debug("[copyInfo]: fail \n"); }
    Steps query() const { return call("qry_rec_id(@5, 2)"); }
    Steps adding(std::uint16_t id) const { return call("add_rec(@5, record)", bytes_of(sample_as(id))); }
    Steps text(const std::string& operation, const std::string& identifier) const {
        return debug("[" + operation + "]: string recId = " + identifier + " \n");
    }
    Steps numbers(const std::string& operation, const std::string& list, std::uint32_t record) const {
        return debug("[" + operation + "]: satId = " + list + ", satRecId = " + std::to_string(record) + " \n");
    }

    _SATL_REC_T record = sample();
};

TEST_F(SatelliteListStore, LockingAListRecordedWithHandleZeroPassesItOn) {
    given_handle(6, 0);
    EXPECT_EQ(manager.lockSatl(6), 0);
    EXPECT_EQ(manager.unLockSatl(6), 0);
    EXPECT_EQ(manager.readLockSatl(6), 0);
    EXPECT_EQ(manager.readUnLockSatl(6), 0);
    expect_journal(found_zero(6) + call("lock(0x0)") + found_zero(6) + call("unlock(0x0)") + found_zero(6) +
                   call("read_lock(0x0)") + found_zero(6) + call("read_unlock(0x0)"));
}

TEST_F(SatelliteListStore, AFailedCloseCanBeTriedAgain) {
    answer("close", -1);
    EXPECT_EQ(manager.close(5), -22);
    EXPECT_EQ(manager.close(5), 0);
    expect_journal(entry("close", 5) + found(5) + call("close(@5)") + entry("close", 5) + found(5) + call("close(@5)") +
                   forgotten(5));
    expect_open_lists({});
}

TEST_F(SatelliteListStore, CopyHandsOverSourceAndDestinationWithoutALock) {
    const Steps copy_entry = debug("[copy]: srcSatId = 5 destSatId = 6\n");
    EXPECT_EQ(manager.copy(5, 6), 0);
    expect_journal(copy_entry + found(5) + opened(6) + call("copy_date(@5, @6)"));
    answer("copy_date", -3);
    EXPECT_EQ(manager.copy(5, 6), -22);
    expect_journal(copy_entry + found(5) + found(6) + call("copy_date(@5, @6)"));
    EXPECT_EQ(manager.copy(65541, -65530), 0);
    expect_journal(debug("[copy]: srcSatId = 65541 destSatId = -65530\n") + found(5) + found(6) +
                   call("copy_date(@5, @6)"));
}

TEST_F(SatelliteListStore, CopyFailsWhenEitherListCannotBeOpenedOrHasNoHandle) {
    answer("open", -7);
    EXPECT_EQ(manager.copy(6, 5), -22);
    expect_journal(debug("[copy]: srcSatId = 6 destSatId = 5\n") + tried_open(6));
    answer("open", -7);
    EXPECT_EQ(manager.copy(5, 6), -22);
    expect_journal(debug("[copy]: srcSatId = 5 destSatId = 6\n") + found(5) + tried_open(6));
    given_handle(7, 0);
    EXPECT_EQ(manager.copy(7, 5), -22);
    expect_journal(debug("[copy]: srcSatId = 7 destSatId = 5\n") + found_zero(7) + found(5));
    EXPECT_EQ(manager.copy(5, 7), -22);
    expect_journal(debug("[copy]: srcSatId = 5 destSatId = 7\n") + found(5) + found_zero(7));
}

TEST_F(SatelliteListStore, StoreWithAnEmptyPathFailsBeforeTheListIsLookedFor) {
    EXPECT_EQ(manager.store(5, ""), -22);
    EXPECT_EQ(manager.store(6, ""), -22);
    expect_journal(debug("[store]: satId = 5 path = \n") + debug("[store]: satId = 6 path = \n"));
    expect_open_lists({{5, 0x40005}});
}

TEST_F(SatelliteListStore, AddInfoStoresTheRecordUnderTheHighestIdPlusOneUnderTheLock) {
    for (const std::uint16_t highest : {0, 1, 299, 65533, 65534}) {
        record = sample();
        const auto id = static_cast<std::uint16_t>(highest + 1);
        answer("qry_rec_id", with_value(0, highest));
        EXPECT_EQ(manager.addInfo(5, &record), 0);
        expect_journal(entry("addInfo", 5) + found(5) + query() + locked(5, adding(id)) + ok("addInfo", id));
        EXPECT_EQ(bytes_of(record), bytes_of(sample_as(id)));
    }
}

TEST_F(SatelliteListStore, AddInfoToAnEmptyListStoresTheRecordUnderOne) {
    answer("qry_rec_id", with_value(-6, 0));
    EXPECT_EQ(manager.addInfo(5, &record), 0);
    expect_journal(entry("addInfo", 5) + found(5) + query() + locked(5, adding(1)) + ok("addInfo", 1));
    EXPECT_EQ(bytes_of(record), bytes_of(sample_as(1)));
}

TEST_F(SatelliteListStore, AddInfoFailsWithoutAFurtherLineWhenTheListOffersNoId) {
    const struct {
        MwStatus status;
        std::uint32_t highest;
    } cases[] = {{0, 65535}, {-6, 1}, {-6, 65535}, {-3, 0}, {-3, 12}, {-8, 0}, {-11, 0}, {6, 0}};
    for (const auto& c : cases) {
        answer("qry_rec_id", with_value(c.status, c.highest));
        EXPECT_EQ(manager.addInfo(5, &record), -22) << c.status << ' ' << c.highest;
        expect_journal(entry("addInfo", 5) + found(5) + query());
        EXPECT_EQ(bytes_of(record), bytes_of(sample()));
    }
}

TEST_F(SatelliteListStore, AddInfoThatTheMiddlewareRefusesSaysSoAndReleasesTheLock) {
    for (const MwStatus status : {-3, -11}) { // a taken id is not written over
        record = sample();
        answer("qry_rec_id", with_value(0, 40));
        answer("add_rec", status);
        EXPECT_EQ(manager.addInfo(5, &record), -22);
        expect_journal(entry("addInfo", 5) + found(5) + query() + locked(5, adding(41)) + add_failed());
    }
}

TEST_F(SatelliteListStore, AddsAndCopiesOfNoRecordOrToHandleZeroSayThatTheyFailedWithoutACall) {
    EXPECT_EQ(manager.addInfo(5, nullptr), -22);
    EXPECT_EQ(manager.copyInfo(5, nullptr), -22);
    expect_journal(entry("addInfo", 5) + found(5) + add_failed() + entry("copyInfo", 5) + found(5) + copy_failed());
    given_handle(6, 0);
    EXPECT_EQ(manager.addInfo(6, &record), -22);
    EXPECT_EQ(manager.copyInfo(6, &record), -22);
    expect_journal(entry("addInfo", 6) + found_zero(6) + add_failed() + entry("copyInfo", 6) + found_zero(6) +
                   copy_failed());
    EXPECT_EQ(bytes_of(record), bytes_of(sample()));
}

TEST_F(SatelliteListStore, AddsAndCopiesOpenAListThatIsNotOpenButCreateNoneAndSayNoMoreWhenThatFails) {
    answer("qry_rec_id", with_value(-6, 0));
    EXPECT_EQ(manager.addInfo(6, &record), 0);
    expect_journal(entry("addInfo", 6) + opened(6) + call("qry_rec_id(@6, 2)") +
                   locked(6, call("add_rec(@6, record)", bytes_of(sample_as(1)))) + ok("addInfo", 1));
    for (const int id : {7, 0, 65536}) {
        answer("open", -7);
        EXPECT_EQ(manager.addInfo(id, &record), -22);
        answer("open", -7);
        EXPECT_EQ(manager.copyInfo(id, &record), -22);
        expect_journal(entry("addInfo", id) + tried_open(id) + entry("copyInfo", id) + tried_open(id));
    }
}

TEST_F(SatelliteListStore, CopyInfoWritesTheRecordAsItIsGiven) {
    EXPECT_EQ(manager.copyInfo(65541, &record), 0);
    expect_journal(entry("copyInfo", 65541) + found(5) + locked(5, adding(17)) + ok("copyInfo", 17));
    EXPECT_EQ(bytes_of(record), bytes_of(sample()));
    record.ui2_satl_rec_id = 65535;
    EXPECT_EQ(manager.copyInfo(5, &record), 0);
    expect_journal(entry("copyInfo", 5) + found(5) + locked(5, adding(65535)) + ok("copyInfo", 65535));
}

TEST_F(SatelliteListStore, CopyInfoReplacesARecordThatHasTheIdAlreadyUnderTheSameLock) {
    const Steps calls = locked(5, adding(17) + call("update_rec(@5, record, 1)", bytes_of(sample())));
    answer("add_rec", -11);
    EXPECT_EQ(manager.copyInfo(5, &record), 0);
    expect_journal(entry("copyInfo", 5) + found(5) + calls + ok("copyInfo", 17));
    for (const MwStatus status : {-3, -11}) {
        answer("add_rec", -11);
        answer("update_rec", status);
        EXPECT_EQ(manager.copyInfo(5, &record), -22);
        expect_journal(entry("copyInfo", 5) + found(5) + calls + copy_failed());
    }
}

TEST_F(SatelliteListStore, CopyInfoReplacesNothingAfterAnyOtherFailure) {
    for (const MwStatus status : {-3, -6, -12}) {
        answer("add_rec", status);
        EXPECT_EQ(manager.copyInfo(5, &record), -22);
        expect_journal(entry("copyInfo", 5) + found(5) + locked(5, adding(17)) + copy_failed());
    }
}

TEST_F(SatelliteListStore, AddsAndCopiesMakeTheSameCallsWhateverTheGateAndTheLockSay) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        given_open(5);
        always("lock", -1);
        always("unlock", -1);
        record = sample();
        EXPECT_EQ(manager.addInfo(5, &record), 0);
        expect_journal(entry("addInfo", 5) + found(5) + query() + locked(5, adding(2)) + ok("addInfo", 2));
        record = sample();
        EXPECT_EQ(manager.copyInfo(5, &record), 0);
        EXPECT_EQ(manager.copyInfo(5, nullptr), -22);
        EXPECT_EQ(manager.addInfo(5, nullptr), -22);
        expect_journal(entry("copyInfo", 5) + found(5) + locked(5, adding(17)) + ok("copyInfo", 17) +
                       entry("copyInfo", 5) + found(5) + copy_failed() + entry("addInfo", 5) + found(5) + add_failed());
    }
}

TEST_F(SatelliteListStore, GetInfoGivesTheRecordThatTheTextNames) {
    const struct {
        const char* identifier;
        const char* list; // as told
        std::uint32_t record;
    } cases[] = {
        {"5,1207", "5", 1207},         {"5, 1207", "5", 1207},          {" \t+5abc,01207xyz", "5", 1207},
        {"5,1207,9", "5", 1207}, // the first comma counts
        {"65541,1207", "65541", 1207}, {"-65531,1207", "-65531", 1207}, {"5,66743", "5", 66743},
        {"5,-64329", "5", 0xFFFF04B7},
    };
    for (const auto& c : cases) {
        _SATL_REC_T read = {};
        answer("get_rec", with_record(0, bytes_of(sample()), 3));
        EXPECT_EQ(manager.getInfo(c.identifier, &read), 0) << c.identifier;
        expect_journal(text("getInfo", c.identifier) + numbers("getInfo", c.list, c.record) + found(5) +
                       call("get_rec(@5, 1207)"));
        EXPECT_EQ(bytes_of(read), bytes_of(sample()));
    }
}

TEST_F(SatelliteListStore, RemovalsTakeTheRecordFromTheTextAndCutItInTheCall) {
    const struct {
        const char* identifier;
        std::uint32_t record;
    } cases[] = {{"5,1207", 1207}, {"5,65553", 65553}, {"5,-1", 0xFFFFFFFF}, {"5,2147483647", 2147483647}, {"5,0", 0}};
    for (const auto& c : cases) {
        const Steps removal = found(5) + locked(5, call("del_rec(@5, " + std::to_string(c.record & 0xFFFF) + ")"));
        EXPECT_EQ(manager.removeInfo(c.identifier), 0);
        expect_journal(text("removeInfo", c.identifier) + numbers("removeInfo", "5", c.record) + removal);
        EXPECT_EQ(manager.removeInfoByRecId(5, c.identifier), 0);
        expect_journal(text("removeInfoByRecId", c.identifier) +
                       debug("[removeInfoByRecId]: mwdbId = 5, nwlRecId = " + std::to_string(c.record) + " \n") +
                       removal);
    }
}

TEST_F(SatelliteListStore, RemoveInfoByRecIdTakesTheListFromItsArgumentAlone) {
    for (const char* identifier : {"3,17", ",17", "list,17", "99999999999,17", "3,17,9"}) {
        EXPECT_EQ(manager.removeInfoByRecId(65541, identifier), 0) << identifier;
        expect_journal(text("removeInfoByRecId", identifier) +
                       debug("[removeInfoByRecId]: mwdbId = 65541, nwlRecId = 17 \n") + found(5) +
                       locked(5, call("del_rec(@5, 17)")));
    }
}

TEST_F(SatelliteListStore, TextWithoutACommaIsAnUnknownRecordAndTouchesNothing) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        for (const char* identifier : {"17", "", "5;17"}) {
            EXPECT_EQ(manager.getInfo(identifier, &record), -1);
            expect_journal(text("getInfo", identifier) + error("Unknown recId info.\n"));
            EXPECT_EQ(manager.removeInfo(identifier), -1);
            expect_journal(text("removeInfo", identifier) + error("Unknown recId info.\n"));
            EXPECT_EQ(manager.removeInfoByRecId(5, identifier), -1);
            expect_journal(text("removeInfoByRecId", identifier) + error("Unknown recId info.\n"));
        }
    }
    EXPECT_EQ(bytes_of(record), bytes_of(sample()));
}

TEST_F(SatelliteListStore, TextThatIsNoNumberRaisesTheConversionsError) {
    const auto get = [&](const char* identifier) { return manager.getInfo(identifier, &record); };
    for (const char* identifier : {",17", "x,17", "5,", "5,x", ",", "-,17"}) {
        EXPECT_THROW(get(identifier), std::invalid_argument) << identifier;
        EXPECT_THROW(manager.removeInfo(identifier), std::invalid_argument) << identifier;
        expect_journal(text("getInfo", identifier) + text("removeInfo", identifier));
    }
    for (const char* identifier : {"2147483648,17", "5,2147483648", "5,-2147483649"}) {
        EXPECT_THROW(get(identifier), std::out_of_range) << identifier;
        EXPECT_THROW(manager.removeInfo(identifier), std::out_of_range) << identifier;
        expect_journal(text("getInfo", identifier) + text("removeInfo", identifier));
    }
    EXPECT_THROW(manager.removeInfoByRecId(5, "5,x"), std::invalid_argument);
    EXPECT_THROW(manager.removeInfoByRecId(5, "5,2147483648"), std::out_of_range);
    expect_journal(text("removeInfoByRecId", "5,x") + text("removeInfoByRecId", "5,2147483648"));
}

TEST_F(SatelliteListStore, GetInfoByIdxGivesRecordAndVersionAtTheIndexWhichIsNotCut) {
    for (const int index : {0, 4, 70000, -1, 2147483647}) {
        _SATL_REC_T read = {};
        int version = 0;
        answer("get_rec_by_rec_idx", with_record(0, bytes_of(sample()), 9));
        EXPECT_EQ(manager.getInfoByIdx(5, index, &version, &read), 0);
        expect_journal(
            debug("[NativeVltTvSatelliteList][getInfoByIdx]: satId = 5 idx = " + std::to_string(index) + "\n") +
            found(5) + call("get_rec_by_rec_idx(@5, " + std::to_string(index) + ")"));
        EXPECT_EQ(bytes_of(read), bytes_of(sample()));
        EXPECT_EQ(version, 9);
    }
}

TEST_F(SatelliteListStore, GetInfoListNumOfAnEmptyListIsZero) {
    answer("get_num_recs", with_value(0, 0));
    EXPECT_EQ(manager.getInfoListNum(5), 0);
    expect_journal(entry("getInfoListNum", 5) + found(5) + call("get_num_recs(@5)") +
                   debug("[getInfoListNum]:i2_num_rec:0 \n"));
}

TEST_F(SatelliteListStore, StorageNamesMayBeTwiceAsLongAsTheOtherKinds) {
    static_assert(SatlKind::kNameBytes == 65); // no list id needs as much
    static_assert(NwlKind::kNameBytes == 32);
    answer("open", -7);
    EXPECT_EQ(manager.open(65535), 0);
    expect_journal(entry("open", 65535) + tried_open(65535) + call("create(\"fs_satl_65534\", 65535, 1, 16, 0, 0)") +
                   recorded(65535));
}

TEST_F(SatelliteListStore, GetInfoListNumOfListZeroFailsWithoutASecondLine) {
    EXPECT_EQ(manager.getInfoListNum(0), -22);
    expect_journal(entry("getInfoListNum", 0) + tried_open(0));
}

TEST_F(SatelliteListStore, TheTranscriptsReadAsTheyStand) {
    EXPECT_EQ(manager.clean(5), 0);
    EXPECT_EQ(manager.open(6), 0);
    const std::string start = "log 3 [SATELITE] NativeVltTvSatelliteList_Cpp: ";
    expect_journal({{start + "[clean]: satId = 5 \n"},
                    {start + "[NativeVltTvSatelliteList][getSatHandle]: satId = 5 satHandle:0x40005\n"},
                    {"x_satl_lock(0x40005)"},
                    {"x_satl_clean(0x40005)"},
                    {"x_satl_unlock(0x40005)"},
                    {start + "[open]: satId = 6 \n"},
                    {"x_satl_open(6, 0, 0)"},
                    {start + "[NativeVltTvSatelliteList][setSatHandle]: satId = 6 satHandle:0x40006\n"}});
}

} // namespace
