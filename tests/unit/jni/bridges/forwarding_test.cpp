// What all four list kinds have in common: set-up, and the natives that only pass a call on to their manager.

#include "bridge_test_support.h"

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class Forwarding : public BridgeKindTest {
protected:
    Forwarding() { log_level("D"); }

    const BridgeNatives& natives = kind.natives;
};

TEST_P(Forwarding, SetUpReplacesTheManagerAndKeepsOpenListsOpen) {
    const void* const before = kind.manager.current();
    const jint first = natives.set_up(jni.env(), nullptr);
    const void* const left_behind = kind.manager.current();
    ASSERT_NE(left_behind, before);
    const jint second = natives.set_up(jni.env(), nullptr);
    ASSERT_NE(kind.manager.current(), left_behind);
    EXPECT_EQ(jni.journal(), joined(entry("native_setup"), entry("native_setup")));
    EXPECT_EQ(first, static_cast<jint>(reinterpret_cast<std::uintptr_t>(kind.manager.address)));
    EXPECT_EQ(second, first);
    EXPECT_NE(kind.handles().find(300), nullptr);

    kind.handles().clear(); // a manager that is destroyed closes them
    kind.manager.destroy(left_behind);
    kind.manager.destroy(kind.manager.current());
}

TEST_P(Forwarding, OpenOpensTheList) {
    EXPECT_EQ(natives.open(jni.env(), nullptr, 3), 0);
    EXPECT_EQ(journal(), joined(entry("open"), call("open(3, 0, 0)")));
}

TEST_P(Forwarding, OpenWithAPathLoadsTheList) {
    EXPECT_EQ(natives.open_path(jni.env(), nullptr, 3, text("/data/x")), 0);
    EXPECT_EQ(journal(), joined(entry("open_path"), chars("/data/x"), call("open(3, 0, 0)"),
                                call("fs_sync(@3, 0, \"/data/x\", 3)")));
}

TEST_P(Forwarding, CloseClosesTheList) {
    EXPECT_EQ(natives.close(jni.env(), nullptr, 1), 0);
    EXPECT_EQ(journal(), joined(entry("close"), call("close(@1)")));
}

TEST_P(Forwarding, CleanLeavesTheLockToTheManager) {
    EXPECT_EQ(natives.clean(jni.env(), nullptr, 1), 0);
    EXPECT_EQ(journal(), joined(entry("clean"), call_under_lock("clean(@1)", "@1")));
}

TEST_P(Forwarding, DeleteDeletesTheList) {
    EXPECT_EQ(natives.remove_list(jni.env(), nullptr, 1), 0);
    EXPECT_EQ(journal(), joined(entry("delete"), call("delete(@1)")));
}

TEST_P(Forwarding, StoreWritesTheListToTheFile) {
    EXPECT_EQ(natives.store(jni.env(), nullptr, 1, text("/data/x")), 0);
    EXPECT_EQ(journal(),
              joined(entry("store"), chars("/data/x"), call_under_lock("fs_store(@1, \"/data/x\", 1)", "@1")));
}

TEST_P(Forwarding, CopyHoldsTheTargetsLock) {
    EXPECT_EQ(natives.copy(jni.env(), nullptr, 1, 2), 0);
    EXPECT_EQ(journal(), joined(entry("copy"), call_under_lock("copy_date(@1, @2)", "@2")));
}

TEST_P(Forwarding, RemoveDeletesTheRecordThatTheIdentifierNames) {
    EXPECT_EQ(natives.remove(jni.env(), nullptr, text("1,17")), 0);
    EXPECT_EQ(journal(), joined(entry("remove_info"), chars("1,17"), call_under_lock("del_rec(@1, 17)", "@1")));
}

TEST_P(Forwarding, RemoveByRecordIdDeletesFromTheListGiven) {
    EXPECT_EQ(natives.remove_by_record_id(jni.env(), nullptr, 1, text("9,18")), 0);
    EXPECT_EQ(journal(),
              joined(entry(kind.remove_by_record_id), chars("9,18"), call_under_lock("del_rec(@1, 18)", "@1")));
}

TEST_P(Forwarding, RemoveOfAnIdentifierWithoutACommaReturnsMinusOne) {
    EXPECT_EQ(natives.remove(jni.env(), nullptr, text("17")), -1);
    EXPECT_EQ(natives.remove_by_record_id(jni.env(), nullptr, 1, text("17")), -1);
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
}

TEST_P(Forwarding, ReturnsTheStatusOfItsManager) {
    for (const char* failing : {"close", "clean", "delete", "fs_store", "copy_date", "del_rec"}) {
        script::always(call_name(failing), fails());
    }
    EXPECT_EQ(natives.open(jni.env(), nullptr, 0), -22);
    EXPECT_EQ(natives.close(jni.env(), nullptr, 1), -22);
    EXPECT_EQ(natives.clean(jni.env(), nullptr, 1), -22);
    EXPECT_EQ(natives.remove_list(jni.env(), nullptr, 1), -22);
    EXPECT_EQ(natives.open_path(jni.env(), nullptr, 3, text("")), -22);
    EXPECT_EQ(natives.store(jni.env(), nullptr, 1, text("/data/x")), -22);
    EXPECT_EQ(natives.copy(jni.env(), nullptr, 1, 2), -22);
    EXPECT_EQ(natives.remove(jni.env(), nullptr, text("1,17")), -22);
    EXPECT_EQ(natives.remove_by_record_id(jni.env(), nullptr, 1, text("1,17")), -22);
}

TEST_P(Forwarding, OpenWithAPathThatHasNoCharactersFails) {
    jni.fail(chars_kept("/data/x")[0]);
    EXPECT_EQ(natives.open_path(jni.env(), nullptr, 3, text("/data/x")), -22);
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
    // The native of service lists calls its manager, which refuses an empty path. The others do not.
    EXPECT_EQ(jni.journal_with("List_Cpp: ").empty(), !kind.is_services());
    EXPECT_TRUE(jni.exception_pending());
}

TEST_P(Forwarding, ANullPathOrIdentifierIsAnEmptyOne) {
    EXPECT_EQ(natives.open_path(jni.env(), nullptr, 3, nullptr), -22);
    EXPECT_EQ(natives.remove(jni.env(), nullptr, nullptr), -1);
    EXPECT_EQ(natives.remove_by_record_id(jni.env(), nullptr, 1, nullptr), -1);
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
    EXPECT_FALSE(jni.exception_pending());
}

INSTANTIATE_TEST_SUITE_P(Kinds, Forwarding,
                         testing::Values(&service_kind(), &transport_stream_kind(), &network_kind(), &satellite_kind()),
                         kind_name);

} // namespace
