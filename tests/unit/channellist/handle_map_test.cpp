// Which lists are open: the map itself, and the managers' operations on it.
#include "manager_test.h"

#include <utility>

using namespace tavro;

namespace {

using namespace tavro::test;

using Entries = std::vector<std::pair<int, MwdbHandle>>;

Entries entries(const HandleMap& map) { return Entries(map.begin(), map.end()); }

TEST(HandleMap, InsertKeepsTheHandleThatAListHas) {
    HandleMap map;
    EXPECT_TRUE(map.insert(5, 0x15));
    EXPECT_FALSE(map.insert(5, 0x25));
    ASSERT_NE(map.find(5), nullptr);
    EXPECT_EQ(*map.find(5), 0x15U);
}

TEST(HandleMap, KeysAreTheLowSixteenBitsInAscendingOrder) {
    HandleMap map;
    EXPECT_TRUE(map.insert(-1, 1));
    EXPECT_TRUE(map.insert(65541, 2));
    EXPECT_TRUE(map.insert(3, 3));
    EXPECT_FALSE(map.insert(5, 4));
    EXPECT_EQ(entries(map), (Entries{{3, 3}, {5, 2}, {65535, 1}}));
    map.erase(65539);
    EXPECT_EQ(entries(map), (Entries{{5, 2}, {65535, 1}}));
    map.clear();
    EXPECT_EQ(entries(map), Entries{});
}

TEST(HandleMap, FindsNothingForListZeroOrAListThatIsNotOpen) {
    HandleMap map;
    EXPECT_EQ(map.find(5), nullptr);
    map.insert(5, 1);
    EXPECT_EQ(map.find(6), nullptr);
    map.insert(0, 2); // is ignored
    EXPECT_EQ(map.find(0), nullptr);
    EXPECT_EQ(map.find(65536), nullptr);
}

class Handles : public EachKind {
protected:
    static constexpr unsigned int kUntouched = 0x1234;
    unsigned int out = kUntouched;
};

TEST_P(Handles, GetReturnsTheHandleOfAnOpenList) {
    given_open(5);
    EXPECT_TRUE(manager->get_handle(5, out));
    EXPECT_EQ(out, handle(5));
    expect_journal(found(5));
    out = kUntouched;
    EXPECT_TRUE(manager->get_handle(65541, out));
    EXPECT_EQ(out, handle(5));
    expect_journal(found(5));
}

TEST_P(Handles, GetOfAListThatIsNotOpenLeavesTheHandleAlone) {
    EXPECT_FALSE(manager->get_handle(5, out));
    given_open(5);
    for (const int id : {6, 0, 65536}) {
        EXPECT_FALSE(manager->get_handle(id, out)) << id;
    }
    EXPECT_EQ(out, kUntouched);
    expect_journal({});
}

TEST_P(Handles, SetRecordsAnOpenHandleWithoutACall) {
    out = 0x77;
    EXPECT_TRUE(manager->set_handle(65541, out, true));
    EXPECT_EQ(out, 0x77U);
    expect_journal(handle_line("set", 5, 0x77));
    expect_open_lists({{5, 0x77}});
}

TEST_P(Handles, SetOpensAListThatIsNotOpenYetAndReturnsItsHandle) {
    EXPECT_TRUE(manager->set_handle(65541, out, false));
    EXPECT_EQ(out, handle(5));
    expect_journal(opened(5));
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Handles, SetNeverReplacesAHandleAndClosesNone) {
    given_open(5);
    out = 0x77;
    EXPECT_FALSE(manager->set_handle(5, out, true));
    expect_journal(recorded(5));
    answer("open", with_value(0, 0x78));
    EXPECT_FALSE(manager->set_handle(5, out, false));
    EXPECT_EQ(out, 0x78U);
    expect_journal(opened(5)); // with the handle recorded first
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Handles, SetRecordsNothingWhenTheListCannotBeOpened) {
    answer("open", with_value(-7, 0x77));
    EXPECT_FALSE(manager->set_handle(5, out, false));
    expect_journal(tried_open(5));
    expect_open_lists({});
}

TEST_P(Handles, SetRecordsNoHandleZero) {
    out = 0;
    EXPECT_FALSE(manager->set_handle(5, out, true));
    expect_journal({});
    answer("open", with_value(0, 0));
    EXPECT_FALSE(manager->set_handle(5, out, false));
    expect_journal(tried_open(5));
    expect_open_lists({});
}

TEST_P(Handles, SetTriesToOpenListZeroButRecordsNothing) {
    for (const int id : {0, 65536}) {
        EXPECT_FALSE(manager->set_handle(id, out, false));
        expect_journal(tried_open(0));
        EXPECT_FALSE(manager->set_handle(id, out, true));
        expect_journal({});
    }
    expect_open_lists({});
}

TEST_P(Handles, DeleteForgetsTheRecordedHandleAndClosesNothing) {
    given_open(5);
    given_open(6);
    EXPECT_TRUE(manager->delete_handle(65541, 0x77));
    expect_journal(forgotten(5)); // the handle that was recorded
    expect_open_lists({{6, handle(6)}});
}

TEST_P(Handles, DeleteIgnoresListZeroHandleZeroAndListsThatAreNotOpen) {
    EXPECT_TRUE(manager->delete_handle(5, 0x77));
    given_open(5);
    EXPECT_TRUE(manager->delete_handle(5, 0));
    EXPECT_TRUE(manager->delete_handle(6, 0x77));
    EXPECT_TRUE(manager->delete_handle(0, 0x77));
    EXPECT_TRUE(manager->delete_handle(65536, 0x77));
    expect_journal({});
    expect_open_lists({{5, handle(5)}});
}

TEST_P(Handles, ClearClosesEveryListInAscendingOrderDespiteFailures) {
    for (const char* property : {kEveryLine, kNoLine}) {
        start(property);
        given_open(65535);
        given_open(5);
        given_handle(7, 0);
        given_open(6);
        answer("close", -1);
        manager->clear_handles();
        expect_journal(handle_line("clear", 5, handle(5)) + call("close(@5)") + handle_line("clear", 6, handle(6)) +
                       call("close(@6)") + handle_line("clear", 7, 0) + call("close(0x0)") +
                       handle_line("clear", 65535, handle(65535)) + call("close(@65535)"));
        expect_open_lists({});
    }
    manager->clear_handles();
    expect_journal({});
}

TEST_P(Handles, EveryManagerOfAKindSharesTheHandles) {
    const auto other = kind.make();
    EXPECT_EQ(other->open(5), 0);
    expect_journal(entry("open") + opened(5) + set_handle_ok(5));
    EXPECT_TRUE(manager->get_handle(5, out));
    EXPECT_EQ(out, handle(5));
    expect_journal(found(5));
}

TEST_P(Handles, DestroyingAManagerClosesTheListsOfItsKindOnly) {
    auto other = kind.make();
    given_open(6);
    given_open(5);
    for (const ListKind* any : kEveryKind) {
        any->handles->insert(9, 0x99);
    }
    other.reset();
    expect_journal(handle_line("clear", 5, handle(5)) + call("close(@5)") + handle_line("clear", 6, handle(6)) +
                   call("close(@6)") + handle_line("clear", 9, 0x99) + call("close(0x99)"));
    expect_open_lists({});
    int left = 0;
    for (const ListKind* any : kEveryKind) {
        left += any->handles->find(9) != nullptr ? 1 : 0;
    }
    EXPECT_EQ(left, 3);
}

TEST_P(Handles, AFailedCloseCanBeTriedAgain) {
    EXPECT_EQ(manager->open(5), 0);
    answer("close", -1);
    EXPECT_EQ(manager->close(5), -22);
    EXPECT_EQ(manager->close(5), 0);
    expect_journal(entry("open") + opened(5) + set_handle_ok(5) + entry("close") + found(5) + call("close(@5)") +
                   entry("close") + found(5) + call("close(@5)") + forgotten(5));
    expect_open_lists({});
}

INSTANTIATE_TEST_SUITE_P(Lists, Handles, kAllKinds, kind_name);

} // namespace
