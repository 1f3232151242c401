// Which satellite lists are open, and how they are opened, created and loaded.
#include "satellite_store_support.h"

namespace {

using namespace tavro::test;

class SatelliteHandles : public SatelliteStore {
protected:
    static constexpr unsigned int kUntouched = 0x1234;
    unsigned int out = kUntouched;
};

TEST_F(SatelliteHandles, GetGivesTheHandleOfAnOpenList) {
    given_open(5);
    for (const int id : {5, 65541}) {
        out = kUntouched;
        EXPECT_TRUE(manager.getSatHandle(id, &out));
        EXPECT_EQ(out, 0x40005U);
        expect_journal(found(5));
    }
}

TEST_F(SatelliteHandles, GetOfAListThatIsNotOpenLeavesTheHandleAlone) {
    EXPECT_FALSE(manager.getSatHandle(5, &out));
    given_open(5);
    for (const int id : {6, 0, 65536}) {
        EXPECT_FALSE(manager.getSatHandle(id, &out)) << id;
    }
    EXPECT_EQ(out, kUntouched);
    expect_journal({});
}

TEST_F(SatelliteHandles, SetRecordsAnOpenHandleWithoutACall) {
    out = 0x77;
    EXPECT_TRUE(manager.setSatHandle(65541, &out, true));
    EXPECT_EQ(out, 0x77U);
    expect_journal(handle_line("setSatHandle", 5, "0x77"));
    expect_open_lists({{5, 0x77}});
}

TEST_F(SatelliteHandles, SetOpensAListThatIsNotOpenYetAndGivesItsHandle) {
    EXPECT_TRUE(manager.setSatHandle(65541, &out, false));
    EXPECT_EQ(out, 0x40005U);
    expect_journal(opened(5));
    expect_open_lists({{5, 0x40005}});
}

TEST_F(SatelliteHandles, SetNeverReplacesAHandleAndClosesNone) {
    given_open(5);
    out = 0x77;
    EXPECT_FALSE(manager.setSatHandle(5, &out, true));
    expect_journal(recorded(5)); // the handle that was recorded first
    answer("open", with_value(0, 0x78));
    EXPECT_FALSE(manager.setSatHandle(5, &out, false));
    EXPECT_EQ(out, 0x78U);
    expect_journal(opened(5));
    expect_open_lists({{5, 0x40005}});
}

TEST_F(SatelliteHandles, SetRecordsNothingWhenTheListCannotBeOpenedOrHasNoHandle) {
    answer("open", with_value(-7, 0x77));
    EXPECT_FALSE(manager.setSatHandle(5, &out, false));
    answer("open", with_value(0, 0));
    EXPECT_FALSE(manager.setSatHandle(5, &out, false));
    expect_journal(tried_open(5) + tried_open(5));
    out = 0;
    EXPECT_FALSE(manager.setSatHandle(5, &out, true));
    expect_journal({});
    expect_open_lists({});
}

TEST_F(SatelliteHandles, SetRecordsNothingForListZeroWhichItTriesToOpenAllTheSame) {
    for (const int id : {0, 65536}) {
        EXPECT_FALSE(manager.setSatHandle(id, &out, false));
        expect_journal(tried_open(0));
        EXPECT_FALSE(manager.setSatHandle(id, &out, true));
        expect_journal({});
    }
    expect_open_lists({});
}

TEST_F(SatelliteHandles, DeleteForgetsTheHandleWhicheverIsGivenAndClosesNothing) {
    given_open(5);
    given_open(6);
    EXPECT_TRUE(manager.deleteSatHandle(65541, 0x77));
    expect_journal(forgotten(5)); // the handle that was recorded
    expect_open_lists({{6, 0x40006}});
}

TEST_F(SatelliteHandles, DeleteDoesNothingForListZeroHandleZeroOrAListThatIsNotOpen) {
    EXPECT_TRUE(manager.deleteSatHandle(5, 0x77));
    given_open(5);
    EXPECT_TRUE(manager.deleteSatHandle(5, 0));
    EXPECT_TRUE(manager.deleteSatHandle(6, 0x77));
    EXPECT_TRUE(manager.deleteSatHandle(0, 0x77));
    EXPECT_TRUE(manager.deleteSatHandle(65536, 0x77));
    expect_journal({});
    expect_open_lists({{5, 0x40005}});
}

TEST_F(SatelliteHandles, ClearClosesEveryListInAscendingOrderWhateverTheMiddlewareSays) {
    for (const char* property : {kEveryLine, kNoLine}) {
        start(property);
        given_open(65535);
        given_open(5);
        given_handle(7, 0);
        given_open(6);
        answer("close", -1);
        manager.clearSatHandle();
        expect_journal(handle_line("clearSatHandle", 5, "@5") + call("close(@5)") +
                       handle_line("clearSatHandle", 6, "@6") + call("close(@6)") +
                       handle_line("clearSatHandle", 7, "0x0") + call("close(0x0)") +
                       handle_line("clearSatHandle", 65535, "@65535") + call("close(@65535)"));
        expect_open_lists({});
    }
    manager.clearSatHandle();
    expect_journal({});
}

TEST_F(SatelliteHandles, EveryManagerSharesTheHandles) {
    NativeVltTvSatelliteList other;
    EXPECT_EQ(other.open(5), 0);
    expect_journal(entry("open", 5) + opened(5));
    EXPECT_TRUE(manager.getSatHandle(5, &out));
    EXPECT_EQ(out, 0x40005U);
    expect_journal(found(5));
    other.clearSatHandle();
    EXPECT_FALSE(manager.getSatHandle(5, &out));
}

TEST_F(SatelliteHandles, DestroyingAManagerClosesTheSatelliteListsAlone) {
    auto other = std::make_unique<NativeVltTvSatelliteList>();
    const std::vector<HandleMap*> others = {&SvlKind::handles(), &TslKind::handles(), &NwlKind::handles()};
    for (HandleMap* map : others) {
        map->insert(6, 0x99);
    }
    given_open(6);
    given_open(5);
    expect_journal({});
    other.reset();
    expect_journal(handle_line("clearSatHandle", 5, "@5") + call("close(@5)") + handle_line("clearSatHandle", 6, "@6") +
                   call("close(@6)"));
    expect_open_lists({});
    for (const HandleMap* map : others) {
        EXPECT_NE(map->find(6), nullptr);
    }
}

class OpeningSatellites : public SatelliteStore {
protected:
    static constexpr char kPath[] = "/data/satl.bin";

    Steps path_entry(int id, const std::string& path = kPath) const {
        return debug("[open]: satId = " + std::to_string(id) + " path = " + path + " \n");
    }
    Steps create(int id, int number) const {
        return call("create(\"fs_satl_" + std::to_string(number) + "\", " + key(id) + ", 1, 16, 0, 0)");
    }
    Steps sync(int id, const std::string& path = kPath) const {
        return call("fs_sync(@" + key(id) + ", 0, \"" + path + "\", " + key(id) + ")");
    }
    Steps prepared(const std::string& path = kPath) const { return file_call("fs_raw_init(0, \"" + path + "\")"); }
};

TEST_F(OpeningSatellites, OpenRecordsAListThatExistsAndSaysNoMore) {
    EXPECT_EQ(manager.open(5), 0);
    expect_journal(entry("open", 5) + opened(5));
    expect_open_lists({{5, 0x40005}});
}

TEST_F(OpeningSatellites, OpenOfAListThatDoesNotExistCreatesItUnderTheNumberBelowItsId) {
    const struct {
        int id;
        int number;
    } cases[] = {{1, 0}, {2, 1}, {65535, 65534}, {-1, 65534}, {65537, 0}, {100000, 34463}};
    for (const auto& c : cases) {
        start(kEveryLine);
        answer("open", -7);
        EXPECT_EQ(manager.open(c.id), 0);
        expect_journal(entry("open", c.id) + tried_open(c.id) + create(c.id, c.number) + recorded(c.id));
        expect_open_lists({{static_cast<std::uint16_t>(c.id), handle(c.id)}});
    }
}

TEST_F(OpeningSatellites, OpenOfAnOpenListDoesNotTouchTheMiddleware) {
    given_open(1);
    EXPECT_EQ(manager.open(1), 0);
    expect_journal(entry("open", 1) + found(1));
    EXPECT_EQ(manager.open(65537), 0);
    expect_journal(entry("open", 65537) + found(1));
    expect_open_lists({{1, 0x40001}});
}

TEST_F(OpeningSatellites, OpenWhoseCreateFailsSucceedsAndRecordsNothing) {
    for (const MwStatus status : {-7, -8, -12}) {
        answer("open", -7);
        answer("create", with_value(status, 0x77));
        EXPECT_EQ(manager.open(5), 0);
        expect_journal(entry("open", 5) + tried_open(5) + create(5, 4));
        expect_open_lists({});
    }
}

TEST_F(OpeningSatellites, OpenThatYieldsNoHandleFails) {
    answer("open", with_value(0, 0));
    EXPECT_EQ(manager.open(5), -22);
    expect_journal(entry("open", 5) + tried_open(5));

    answer("open", -7);
    answer("create", with_value(0, 0));
    EXPECT_EQ(manager.open(5), -22);
    expect_journal(entry("open", 5) + tried_open(5) + create(5, 4));
    expect_open_lists({});
}

TEST_F(OpeningSatellites, OpenOfListZeroOpensOrCreatesNumberZeroButRecordsNothing) {
    for (const int id : {0, 65536}) {
        EXPECT_EQ(manager.open(id), -22);
        expect_journal(entry("open", id) + tried_open(0));
        answer("open", -7);
        EXPECT_EQ(manager.open(id), -22);
        expect_journal(entry("open", id) + tried_open(0) + create(0, 0));
        answer("open", -7);
        answer("create", -7);
        EXPECT_EQ(manager.open(id), 0);
        expect_journal(entry("open", id) + tried_open(0) + create(0, 0));
        expect_open_lists({});
    }
}

TEST_F(OpeningSatellites, OpenMakesTheSameCallsWhateverTheGateLetsPass) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        answer("open", -7);
        EXPECT_EQ(manager.open(5), 0);
        expect_journal(entry("open", 5) + tried_open(5) + create(5, 4) + recorded(5));
        EXPECT_EQ(manager.open(5, ""), 0);
        answer("fs_sync", -12);
        EXPECT_EQ(manager.open(6, kPath), 0);
        expect_journal(path_entry(5, "") + found(5) + path_entry(6) + tried_open(6) + sync(6) + recorded(6) +
                       prepared());
    }
}

TEST_F(OpeningSatellites, OpenWithAnEmptyPathOfAnOpenListSucceeds) {
    given_open(5);
    for (const int id : {5, 65541}) {
        EXPECT_EQ(manager.open(id, ""), 0);
        expect_journal(path_entry(id, "") + found(5));
    }
    expect_open_lists({{5, 0x40005}});
}

TEST_F(OpeningSatellites, OpenWithAnEmptyPathOfAListThatIsNotOpenFailsWithoutACall) {
    given_open(5);
    for (const int id : {6, 0, 65536}) {
        EXPECT_EQ(manager.open(id, ""), -22);
        expect_journal(path_entry(id, ""));
    }
    expect_open_lists({{5, 0x40005}});
}

TEST_F(OpeningSatellites, OpenWithAPathOfAnOpenListNeitherCountsNorLoadsIt) {
    given_open(5);
    for (const int id : {5, 65541}) {
        EXPECT_EQ(manager.open(id, kPath), 0);
        expect_journal(path_entry(id) + found(5));
    }
    expect_open_lists({{5, 0x40005}});
}

TEST_F(OpeningSatellites, OpenWithAPathLoadsTheListFromTheFile) {
    EXPECT_EQ(manager.open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5) + sync(5) + recorded(5));
    EXPECT_EQ(manager.open(65542, kPath), 0);
    expect_journal(path_entry(65542) + tried_open(6) + sync(6) + recorded(6));
    expect_open_lists({{5, 0x40005}, {6, 0x40006}});
}

TEST_F(OpeningSatellites, OpenWithAPathCreatesAListThatDoesNotExistAndLoadsIt) {
    for (const MwStatus status : {-7, -8, -12}) { // the create's status takes the open's place
        start(kEveryLine);
        answer("open", status);
        EXPECT_EQ(manager.open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + create(5, 4) + sync(5) + recorded(5));
        expect_open_lists({{5, 0x40005}});
    }
}

TEST_F(OpeningSatellites, OpenWithAPathRecordsTheListAlsoWhenItsFileCannotBeLoaded) {
    for (const MwStatus status : {-8, -3}) { // -8: there is no file yet
        start(kEveryLine);
        answer("fs_sync", status);
        EXPECT_EQ(manager.open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + sync(5) + recorded(5));
        expect_open_lists({{5, 0x40005}});
    }
}

TEST_F(OpeningSatellites, OpenWithThePathOfAFileThatIsNoListPreparesTheFile) {
    answer("fs_sync", -12);
    EXPECT_EQ(manager.open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5) + sync(5) + recorded(5) + prepared());
    expect_open_lists({{5, 0x40005}});
}

TEST_F(OpeningSatellites, OpenWithAPathWhoseCreateFailsRecordsNothingAndPreparesOnlyAFileThatIsNoList) {
    for (const MwStatus status : {-7, -8, -12}) {
        answer("open", -7);
        answer("create", with_value(status, 0x77));
        EXPECT_EQ(manager.open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + create(5, 4) + (status == -12 ? prepared() : Steps{}));
        expect_open_lists({});
    }
}

TEST_F(OpeningSatellites, OpenWithAPathThatYieldsNoHandleLoadsNothingAndSucceeds) {
    answer("open", with_value(0, 0));
    EXPECT_EQ(manager.open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5));

    answer("open", -7);
    answer("create", with_value(0, 0));
    EXPECT_EQ(manager.open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5) + create(5, 4));
    expect_open_lists({});
}

TEST_F(OpeningSatellites, OpenOfListZeroWithAPathLoadsItButRecordsNothingAndFails) {
    for (const int id : {0, 65536}) {
        for (const MwStatus status : {0, -8, -12}) { // the file is not prepared after the failure
            answer("open", -7);
            answer("fs_sync", status);
            EXPECT_EQ(manager.open(id, kPath), -22);
            expect_journal(path_entry(id) + tried_open(0) + create(0, 0) + sync(0));
            expect_open_lists({});
        }
    }
}

TEST_F(OpeningSatellites, OpenWithAScanPathLooksForNoCache) {
    const std::string path = "/data/scan_cable";
    for (const MwStatus status : {-8, -12}) {
        start(kEveryLine);
        answer("fs_sync", status);
        EXPECT_EQ(manager.open(5, path), 0);
        expect_journal(path_entry(5, path) + tried_open(5) + sync(5, path) + recorded(5) +
                       (status == -12 ? prepared(path) : Steps{}));
    }
}

} // namespace
