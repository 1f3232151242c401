// Opening, creating, loading and copying lists: what the three stores do alike.
#include "store_test_support.h"

namespace {

using namespace tavro::test;

class Opening : public EachKind {
protected:
    static constexpr char kPath[] = "/data/list.bin";

    Steps entry(int id) const { return debug("#[open]: mwdbId = " + std::to_string(id) + " \n"); }
    Steps path_entry(int id) const {
        return debug("#[open]: mwdbId = " + std::to_string(id) + " path = /data/list.bin \n");
    }
    Steps create(int id, int number) const {
        return call(std::string("create(\"") + kind.storage + std::to_string(number) + "\", " + key(id) +
                    ", 1, 16, 0, 0)");
    }
    Steps sync(int id) const { return call("fs_sync(@" + key(id) + ", 0, \"/data/list.bin\", " + key(id) + ")"); }

    // The service list alone says that it opened a list, and that it prepared a file.
    Steps said(int id) const {
        return kind.is_services() ? debug("#[open]: mwdbId = " + std::to_string(id) + " set handle ok \n") : Steps{};
    }
    Steps prepared() const {
        return file_call("fs_raw_init(0, \"/data/list.bin\")") +
               (kind.is_services() ? error("#[open]: init current path  ps_svl_path /data/list.bin \n") : Steps{});
    }
};

TEST_P(Opening, OpenRecordsAListThatExists) {
    EXPECT_EQ(store->open(5), 0);
    expect_journal(entry(5) + opened(5) + said(5));
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Opening, OpenOfAListThatDoesNotExistCreatesItUnderTheNumberBelowItsId) {
    const struct {
        int id;
        int number;
    } cases[] = {{1, 0}, {2, 1}, {65535, 65534}, {-1, 65534}, {65537, 0}, {100000, 34463}};
    for (const auto& c : cases) {
        start(kEveryLine);
        answer("open", -7);
        EXPECT_EQ(store->open(c.id), 0);
        expect_journal(entry(c.id) + call("open(" + key(c.id) + ", 0, 0)") + create(c.id, c.number) + recorded(c.id) +
                       said(c.id));
        expect_open_lists({{static_cast<std::uint16_t>(c.id), handle(c.id)}});
    }
}

TEST_P(Opening, OpenOfAnOpenListDoesNotTouchTheMiddleware) {
    given_open(1);
    EXPECT_EQ(store->open(1), 0);
    expect_journal(entry(1) + found(1));
    EXPECT_EQ(store->open(65537), 0);
    expect_journal(entry(65537) + found(1));
    expect_open_lists({{1, handle(1)}});
}

TEST_P(Opening, OpenWhoseCreateFailsRecordsNothingAndFailsForServicesAlone) {
    answer("open", -7);
    answer("create", with_value(-7, 0x77));
    EXPECT_EQ(store->open(5), kind.is_services() ? -22 : 0);
    expect_journal(entry(5) + call("open(5, 0, 0)") + create(5, 4));
    expect_open_lists({});
}

TEST_P(Opening, OpenThatYieldsNoHandleFails) {
    answer("open", with_value(0, 0));
    EXPECT_EQ(store->open(5), -22);
    expect_journal(entry(5) + call("open(5, 0, 0)"));

    answer("open", -7);
    answer("create", with_value(0, 0));
    EXPECT_EQ(store->open(5), -22);
    expect_journal(entry(5) + call("open(5, 0, 0)") + create(5, 4));
    expect_open_lists({});
}

TEST_P(Opening, OpenOfListZeroOpensOrCreatesNumberZeroButRecordsNothing) {
    for (const int id : {0, 65536}) {
        EXPECT_EQ(store->open(id), -22);
        expect_journal(entry(id) + call("open(0, 0, 0)"));
        answer("open", -7);
        EXPECT_EQ(store->open(id), -22);
        expect_journal(entry(id) + call("open(0, 0, 0)") + create(0, 0));
        expect_open_lists({});
    }
}

TEST_P(Opening, OpenMakesTheSameCallsWhateverTheGateLetsPass) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        answer("open", -7);
        EXPECT_EQ(store->open(5), 0);
        expect_journal(entry(5) + call("open(5, 0, 0)") + create(5, 4) + recorded(5) + said(5));
    }
}

TEST_P(Opening, OpenWithAnEmptyPathFails) {
    for (const bool open : {false, true}) {
        start(kEveryLine);
        if (open) {
            given_open(5);
        }
        EXPECT_EQ(store->open(5, ""), -22);
        expect_journal(debug("#[open]: mwdbId = 5 path =  \n"));
    }
}

TEST_P(Opening, OpenWithAPathLoadsTheListFromTheFile) {
    EXPECT_EQ(store->open(5, kPath), 0);
    expect_journal(path_entry(5) + call("open(5, 0, 0)") + sync(5) + recorded(5));
    EXPECT_EQ(store->open(65542, kPath), 0);
    expect_journal(path_entry(65542) + call("open(6, 0, 0)") + sync(6) + recorded(6));
    expect_open_lists({{5, handle(5)}, {6, handle(6)}});
}

TEST_P(Opening, OpenWithAPathCreatesAListThatDoesNotExistAndLoadsIt) {
    for (const MwStatus status : {-7, -8, -12}) { // the create's status takes the open's place
        start(kEveryLine);
        answer("open", status);
        EXPECT_EQ(store->open(5, kPath), 0);
        expect_journal(path_entry(5) + call("open(5, 0, 0)") + create(5, 4) + sync(5) + recorded(5));
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithAPathRecordsTheListAlsoWhenItsFileCannotBeLoaded) {
    for (const MwStatus status : {-8, -3}) {
        start(kEveryLine);
        answer("fs_sync", status);
        EXPECT_EQ(store->open(5, kPath), 0);
        expect_journal(path_entry(5) + call("open(5, 0, 0)") + sync(5) + recorded(5));
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithThePathOfAFileThatIsNoListPreparesTheFile) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        answer("fs_sync", -12);
        EXPECT_EQ(store->open(5, kPath), 0);
        expect_journal(path_entry(5) + call("open(5, 0, 0)") + sync(5) + recorded(5) + prepared());
        expect_open_lists({{5, handle(5)}});
    }
}

TEST_P(Opening, OpenWithAPathWhoseCreateFailsRecordsNothingAndSucceeds) {
    for (const MwStatus status : {-7, -8, -12}) {
        start(kEveryLine);
        answer("open", -7);
        answer("create", with_value(status, 0x77));
        EXPECT_EQ(store->open(5, kPath), 0);
        expect_journal(path_entry(5) + call("open(5, 0, 0)") + create(5, 4) + (status == -12 ? prepared() : Steps{}));
        expect_open_lists({});
    }
}

TEST_P(Opening, OpenWithAPathThatYieldsNoHandleLoadsNothingAndSucceeds) {
    answer("open", with_value(0, 0));
    EXPECT_EQ(store->open(5, kPath), 0);
    expect_journal(path_entry(5) + call("open(5, 0, 0)"));

    answer("open", -7);
    answer("create", with_value(0, 0));
    EXPECT_EQ(store->open(5, kPath), 0);
    expect_journal(path_entry(5) + call("open(5, 0, 0)") + create(5, 4));
    expect_open_lists({});
}

TEST_P(Opening, OpenOfListZeroWithAPathLoadsItButRecordsNothingAndFails) {
    for (const int id : {0, 65536}) {
        for (const MwStatus status : {0, -12}) { // the file is not prepared after the failure
            start(kEveryLine);
            answer("open", -7);
            answer("fs_sync", status);
            EXPECT_EQ(store->open(id, kPath), -22);
            expect_journal(path_entry(id) + call("open(0, 0, 0)") + create(0, 0) + sync(0));
            expect_open_lists({});
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Stores, Opening, kAllKinds, kind_name);

class OpeningACompanion : public Opening {};

TEST_P(OpeningACompanion, OpenWithAPathOfAnOpenListNeitherCountsNorLoadsIt) {
    given_open(5);
    EXPECT_EQ(store->open(5, kPath), 0);
    expect_journal(path_entry(5) + found(5));
    EXPECT_EQ(store->open(65541, kPath), 0);
    expect_journal(path_entry(65541) + found(5));
    expect_open_lists({{5, handle(5)}});
}

INSTANTIATE_TEST_SUITE_P(Companions, OpeningACompanion, kCompanions, kind_name);

class Copying : public EachKind {
protected:
    const Steps entry = debug("#[copy]: srcMwdbId = 5 destMwdbId = 6\n");
};

TEST_P(Copying, CopyHandsOverSourceAndDestinationWithoutALock) {
    given_open(5);
    given_open(6);
    EXPECT_EQ(store->copy(5, 6), 0);
    expect_journal(entry + found(5) + found(6) + call("copy_date(@5, @6)"));
    answer("copy_date", -3);
    EXPECT_EQ(store->copy(5, 6), -22);
    expect_journal(entry + found(5) + found(6) + call("copy_date(@5, @6)"));
}

TEST_P(Copying, CopyOpensTheSourceAndThenTheDestination) {
    EXPECT_EQ(store->copy(5, 6), 0);
    expect_journal(entry + opened(5) + opened(6) + call("copy_date(@5, @6)"));
    expect_open_lists({{5, handle(5)}, {6, handle(6)}});
}

TEST_P(Copying, CopyFailsWhenEitherListCannotBeOpened) {
    answer("open", -7);
    EXPECT_EQ(store->copy(5, 6), -22);
    expect_journal(entry + call("open(5, 0, 0)"));
    expect_open_lists({});

    given_open(5);
    answer("open", -7);
    EXPECT_EQ(store->copy(5, 6), -22);
    expect_journal(entry + found(5) + call("open(6, 0, 0)"));
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Copying, CopyFailsWhenEitherHandleIsZeroAfterLookingForBoth) {
    given_handle(5, 0);
    given_open(6);
    EXPECT_EQ(store->copy(5, 6), -22);
    expect_journal(entry + found(5, 0) + found(6));
    EXPECT_EQ(store->copy(6, 5), -22);
    expect_journal(debug("#[copy]: srcMwdbId = 6 destMwdbId = 5\n") + found(6) + found(5, 0));
}

TEST_P(Copying, CopyCutsBothIdsToSixteenBitsAndKnowsNoListZero) {
    given_open(5);
    given_open(6);
    EXPECT_EQ(store->copy(65541, -65530), 0);
    expect_journal(debug("#[copy]: srcMwdbId = 65541 destMwdbId = -65530\n") + found(5) + found(6) +
                   call("copy_date(@5, @6)"));
    EXPECT_EQ(store->copy(5, 65536), -22);
    expect_journal(debug("#[copy]: srcMwdbId = 5 destMwdbId = 65536\n") + found(5) + call("open(0, 0, 0)"));
}

INSTANTIATE_TEST_SUITE_P(Stores, Copying, kAllKinds, kind_name);

class Storing : public EachKind {};

TEST_P(Storing, StoreWithAnEmptyPathFailsBeforeTheListIsLookedFor) {
    given_open(5);
    EXPECT_EQ(store->store(5, ""), -22);
    EXPECT_EQ(store->store(6, ""), -22);
    expect_journal(debug("#[store]: mwdbId = 5 path = \n") + debug("#[store]: mwdbId = 6 path = \n"));
    expect_open_lists({{5, handle(5)}});
}

INSTANTIATE_TEST_SUITE_P(Stores, Storing, kAllKinds, kind_name);

} // namespace
