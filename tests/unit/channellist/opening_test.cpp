// Opening, creating, loading, copying and storing lists.
#include "manager_test.h"

using namespace tavro;

namespace {

using namespace tavro::test;

constexpr char kPath[] = "/data/list.bin";

class Opening : public EachKind {
protected:
    Steps path_entry(int id) const { return open_entry(id, kPath); }
    Steps loaded(int id, const std::string& path = kPath) const {
        return call("fs_sync(@" + key(id) + ", 0, \"" + path + "\", " + key(id) + ")");
    }
    Steps prepared(const std::string& path = kPath) const {
        return file_call("fs_raw_init(0, \"" + path + "\")") +
               (kind.logs_prepared_file ? error("#[open]: init current path  ps_svl_path " + path + " \n") : Steps{});
    }
};

TEST_P(Opening, OpenRecordsAListThatExists) {
    EXPECT_EQ(manager->open(5), 0);
    expect_journal(entry("open", 5) + opened(5) + set_handle_ok(5));
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Opening, OpenCreatesAListThatDoesNotExistUnderItsIdLessOne) {
    const struct {
        int id;
        int number;
    } cases[] = {{1, 0}, {2, 1}, {65535, 65534}, {-1, 65534}, {65537, 0}, {100000, 34463}};
    for (const auto& c : cases) {
        start(kEveryLine);
        answer("open", -7);
        EXPECT_EQ(manager->open(c.id), 0);
        expect_journal(entry("open", c.id) + tried_open(c.id) + created(c.id, c.number) + recorded(c.id) +
                       set_handle_ok(c.id));
        expect_open_lists({{static_cast<std::uint16_t>(c.id), handle(c.id)}});
    }
}

TEST_P(Opening, OpenOfAnOpenListDoesNotTouchTheMiddleware) {
    given_open(1);
    EXPECT_EQ(manager->open(1), 0);
    expect_journal(entry("open", 1) + found(1));
    EXPECT_EQ(manager->open(65537), 0);
    expect_journal(entry("open", 65537) + found(1));
    expect_open_lists({{1, handle(1)}});
}

TEST_P(Opening, OpenWhoseCreateFailsRecordsNothing) {
    for (const MwStatus status : {-7, -8, -12}) {
        answer("open", -7);
        answer("create", with_value(status, 0x77));
        EXPECT_EQ(manager->open(5), kind.failed_create_result);
        expect_journal(entry("open", 5) + tried_open(5) + created(5, 4));
        expect_open_lists({});
    }
}

TEST_P(Opening, OpenThatYieldsNoHandleFails) {
    answer("open", with_value(0, 0));
    EXPECT_EQ(manager->open(5), -22);
    expect_journal(entry("open", 5) + tried_open(5));

    answer("open", -7);
    answer("create", with_value(0, 0));
    EXPECT_EQ(manager->open(5), -22);
    expect_journal(entry("open", 5) + tried_open(5) + created(5, 4));
    expect_open_lists({});
}

TEST_P(Opening, OpenOfListZeroOpensOrCreatesItButRecordsNothing) {
    for (const int id : {0, 65536}) {
        EXPECT_EQ(manager->open(id), -22);
        expect_journal(entry("open", id) + tried_open(0));
        answer("open", -7);
        EXPECT_EQ(manager->open(id), -22);
        expect_journal(entry("open", id) + tried_open(0) + created(0, 0));
        answer("open", -7);
        answer("create", -7);
        EXPECT_EQ(manager->open(id), kind.failed_create_result);
        expect_journal(entry("open", id) + tried_open(0) + created(0, 0));
        expect_open_lists({});
    }
}

TEST_P(Opening, OpenMakesTheSameCallsWhateverTheGateLetsPass) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        answer("open", -7);
        EXPECT_EQ(manager->open(5), 0);
        expect_journal(entry("open", 5) + tried_open(5) + created(5, 4) + recorded(5) + set_handle_ok(5));
    }
}

TEST_P(Opening, OpenWithAnEmptyPathMakesNoCall) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        for (const int id : {5, 0, 65536}) {
            EXPECT_EQ(manager->open(id, ""), -22);
            expect_journal(open_entry(id, ""));
        }
        expect_open_lists({});

        given_open(5);
        for (const int id : {5, 65541}) {
            EXPECT_EQ(manager->open(id, ""), kind.open_list_takes_empty_path ? 0 : -22);
            expect_journal(open_entry(id, "") + (kind.open_list_takes_empty_path ? found(5) : Steps{}));
        }
        EXPECT_EQ(manager->open(6, ""), -22);
        expect_journal(open_entry(6, ""));
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithAPathLoadsTheListFromTheFile) {
    EXPECT_EQ(manager->open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5) + loaded(5) + recorded(5));
    EXPECT_EQ(manager->open(65542, kPath), 0);
    expect_journal(path_entry(65542) + tried_open(6) + loaded(6) + recorded(6));
    expect_open_lists({{5, handle(5)}, {6, handle(6)}});
}

TEST_P(Opening, OpenWithAPathCreatesAListThatDoesNotExistAndLoadsIt) {
    for (const MwStatus status : {-7, -8, -12}) { // the create's status takes the open's place
        start(kEveryLine);
        answer("open", status);
        EXPECT_EQ(manager->open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + created(5, 4) + loaded(5) + recorded(5));
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithAPathRecordsTheListEvenIfItsFileCannotBeLoaded) {
    for (const MwStatus status : {-8, -3}) {
        start(kEveryLine);
        answer("fs_sync", status);
        EXPECT_EQ(manager->open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + loaded(5) + recorded(5));
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithAPathPreparesAFileThatIsNotAListFile) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        answer("fs_sync", -12);
        EXPECT_EQ(manager->open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + loaded(5) + recorded(5) + prepared());
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithAPathSucceedsEvenIfTheCreateFails) {
    for (const MwStatus status : {-7, -8, -12}) {
        start(kEveryLine);
        answer("open", -7);
        answer("create", with_value(status, 0x77));
        EXPECT_EQ(manager->open(5, kPath), 0);
        expect_journal(path_entry(5) + tried_open(5) + created(5, 4) + (status == -12 ? prepared() : Steps{}));
        expect_open_lists({});
    }
}

TEST_P(Opening, OpenWithAPathSucceedsEvenWithoutAHandle) {
    answer("open", with_value(0, 0));
    EXPECT_EQ(manager->open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5));

    answer("open", -7);
    answer("create", with_value(0, 0));
    EXPECT_EQ(manager->open(5, kPath), 0);
    expect_journal(path_entry(5) + tried_open(5) + created(5, 4));
    expect_open_lists({});
}

TEST_P(Opening, OpenOfListZeroWithAPathLoadsItAndFails) {
    for (const int id : {0, 65536}) {
        for (const MwStatus status : {0, -8, -12}) { // the file is not prepared after the failure
            start(kEveryLine);
            answer("open", -7);
            answer("fs_sync", status);
            EXPECT_EQ(manager->open(id, kPath), -22);
            expect_journal(path_entry(id) + tried_open(0) + created(0, 0) + loaded(0));
            expect_open_lists({});
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Lists, Opening, kAllKinds, kind_name);

class OpeningACompanion : public Opening {};

TEST_P(OpeningACompanion, OpenWithAPathLeavesAnOpenListAlone) {
    given_open(5);
    for (const int id : {5, 65541}) {
        EXPECT_EQ(manager->open(id, kPath), 0);
        expect_journal(path_entry(id) + found(5));
    }
    expect_open_lists({{5, handle(5)}});
}

TEST_P(OpeningACompanion, OpenWithAScanPathLooksForNoCache) {
    const std::string path = "/data/scan_cable";
    for (const MwStatus status : {-8, -12}) {
        start(kEveryLine);
        answer("fs_sync", status);
        EXPECT_EQ(manager->open(5, path), 0);
        expect_journal(open_entry(5, path) + tried_open(5) + loaded(5, path) + recorded(5) +
                       (status == -12 ? prepared(path) : Steps{}));
    }
}

INSTANTIATE_TEST_SUITE_P(Companions, OpeningACompanion, kCompanions, kind_name);

class Copying : public EachKind {
protected:
    const Steps entry = copy_entry(5, 6);
    const Steps copying = call("copy_date(@5, @6)");
};

TEST_P(Copying, CopyPassesSourceAndDestinationWithoutALock) {
    given_open(5);
    given_open(6);
    EXPECT_EQ(manager->copy(5, 6), 0);
    expect_journal(entry + found(5) + found(6) + copying);
    answer("copy_date", -3);
    EXPECT_EQ(manager->copy(5, 6), -22);
    expect_journal(entry + found(5) + found(6) + copying);
}

TEST_P(Copying, CopyOpensTheSourceAndThenTheDestination) {
    EXPECT_EQ(manager->copy(5, 6), 0);
    expect_journal(entry + opened(5) + opened(6) + copying);
    expect_open_lists({{5, handle(5)}, {6, handle(6)}});
}

TEST_P(Copying, CopyFailsWhenEitherListCannotBeOpened) {
    answer("open", -7);
    EXPECT_EQ(manager->copy(5, 6), -22);
    expect_journal(entry + tried_open(5));
    expect_open_lists({});

    given_open(5);
    answer("open", -7);
    EXPECT_EQ(manager->copy(5, 6), -22);
    expect_journal(entry + found(5) + tried_open(6));
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Copying, CopyFailsWhenEitherHandleIsZeroAfterBothLookups) {
    given_handle(5, 0);
    given_open(6);
    EXPECT_EQ(manager->copy(5, 6), -22);
    expect_journal(entry + found(5, 0) + found(6));
    EXPECT_EQ(manager->copy(6, 5), -22);
    expect_journal(copy_entry(6, 5) + found(6) + found(5, 0));
}

TEST_P(Copying, CopyTakesTheLowSixteenBitsOfBothIds) {
    given_open(5);
    given_open(6);
    EXPECT_EQ(manager->copy(65541, -65530), 0);
    expect_journal(copy_entry(65541, -65530) + found(5) + found(6) + copying);
}

TEST_P(Copying, CopyFailsForListZero) {
    given_open(5);
    EXPECT_EQ(manager->copy(5, 65536), -22);
    expect_journal(copy_entry(5, 65536) + found(5) + tried_open(0));
}

INSTANTIATE_TEST_SUITE_P(Lists, Copying, kAllKinds, kind_name);

class Storing : public EachKind {};

TEST_P(Storing, StoreWithAnEmptyPathFailsBeforeTheLookup) {
    given_open(5);
    EXPECT_EQ(manager->store(5, ""), -22);
    EXPECT_EQ(manager->store(6, ""), -22);
    expect_journal(store_entry(5, "") + store_entry(6, ""));
    expect_open_lists({{5, handle(5)}});
}

INSTANTIATE_TEST_SUITE_P(Lists, Storing, kAllKinds, kind_name);

} // namespace
