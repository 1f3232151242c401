// What the network list's natives that write, remove and forward ask of the platform, in one order with their
// middleware calls and lines; those that read are in network_list_reads_test.cpp.

#include "bridge_test_support.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"

#include <gtest/gtest.h>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

// How every list update begins, up to its first element.
const Lines kListUpdateStart = {"GetObjectClass(list)",          "GetMethodID(get, (I)Ljava/lang/Object;)",
                                "GetMethodID(size, ()I)",        "list.size()",
                                "DeleteLocalRef(class of list)", "x_nwl_lock(0x30001)"};
const Lines kUnlocked = {"x_nwl_unlock(0x30001)"};
const Lines kStored = {"x_nwl_update_rec(0x30001, record, 0)"};
const Lines kStoredLocked = {"x_nwl_lock(0x30001)", "x_nwl_update_rec(0x30001, record, 0)", "x_nwl_unlock(0x30001)"};
const Lines kObjectAsked = {"GetObjectClass(network)",
                            "GetMethodID(isContainsKey, "
                            "(Lcom/velotra/tv/tavro/services/channellist/VltTvNetworkInfoBase;Ljava/lang/String;)Z)"};
// What ends an element of a list update.
const Lines kElementGivenBack = {"DeleteLocalRef(class of network)", "DeleteLocalRef(network)"};

class NetworkBridge : public BridgeTest {
protected:
    NetworkBridge()
        : BridgeTest({"com_velotra_tv_tavro_networklist_", "network", "NwlIdNwlRecId", "NwlIdNwlRecId",
                      NwlKind::handles(), 3}) {
        nwList = &manager;
        std::memset(&stored, 0xA5, sizeof(stored));
        stored.ui2_nwl_rec_id = 17;
    }
    ~NetworkBridge() override { nwList = nullptr; }

    // What asking for the five values leaves when none is there, or all are.
    static Lines values_asked() {
        Lines lines;
        for (const char* key :
             {"NetworkVersion", "NetworkName", "NwlFavNetworkCandidate", "NwlFavNetwork", "NwlNetworkId"}) {
            lines = joined(lines, asked("network", key));
        }
        return lines;
    }
    static Lines values_read() {
        return joined(asked("network", "NetworkVersion", int_read("NetworkVersion")),
                      asked("network", "NetworkName", text_read("NetworkName", "Due")),
                      asked("network", "NwlFavNetworkCandidate", int_read("NwlFavNetworkCandidate")),
                      asked("network", "NwlFavNetwork", int_read("NwlFavNetwork")),
                      asked("network", "NwlNetworkId", int_read("NwlNetworkId")));
    }
    void carry_values(FakeObject& object) {
        object.keys.insert(
            {"NetworkVersion", "NetworkName", "NwlFavNetworkCandidate", "NwlFavNetwork", "NwlNetworkId"});
        object.object_fields["NetworkName"] = &jni.string("Due");
    }
    static Lines read(int record_id) { return {"x_nwl_get_rec(0x30001, " + std::to_string(record_id) + ")"}; }

    jint update(FakeObject& object) {
        return com_velotra_tv_tavro_networklist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(object));
    }
    jint update_list(std::vector<FakeObject*> elements) {
        return com_velotra_tv_tavro_networklist_updateInfoList(jni.env(), nullptr, 1,
                                                               FakeJni::ref(jni.list(std::move(elements))));
    }
    jint update_by_record_id(const char* identifier) {
        jni.clear_journal();
        return com_velotra_tv_tavro_networklist_updateInfo_by_recId(jni.env(), nullptr, 2, ref(jni.string(identifier)));
    }

    NativeVltTvNetworkList manager;
    _NWL_REC_T stored = {};
};

TEST_F(NetworkBridge, AnUpdateReadsTheRecordAsksTheKeysAndLocksTheStoreAlone) {
    FakeObject& full = named("9,17");
    carry_values(full);
    EXPECT_EQ(update(full), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(id_read("9,17")), read(17), values_read(), kStoredLocked));
    EXPECT_EQ(jni.unreleased_chars(), 1); // of the name
    jni.clear_journal();
    EXPECT_EQ(update(object()), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked({}), read(0), values_asked(), kStoredLocked));
    jni.clear_journal();
    EXPECT_EQ(update(named(nullptr)), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(id_read()), read(0), values_asked(), kStoredLocked));
}

TEST_F(NetworkBridge, AnUpdateHandsOverZerosWhereNothingWasStored) {
    EXPECT_EQ(update(named("1,17")), 0);
    EXPECT_EQ(last_record(), std::vector<std::byte>(sizeof(_NWL_REC_T)));
    script::answer("x_nwl_get_rec", reads(bytes_of(stored))); // for the first element
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), 0);
    EXPECT_EQ(last_record(), std::vector<std::byte>(sizeof(_NWL_REC_T)));
}

TEST_F(NetworkBridge, AnUpdateKeepsTheKeysStringAtABadIdentifierAndFailsAtOnce) {
    for (const char* bad : {"x,1", "1,x", "17", ""}) {
        jni.clear_journal();
        EXPECT_EQ(update(named(bad)), -22);
        EXPECT_EQ(journal(), joined(kObjectAsked, id_asked_and_kept(id_read(bad)))) << bad;
    }
}

TEST_F(NetworkBridge, AnUpdateThatCannotBeReadTakesNoLockAndOneThatIsNotStoredGivesItBack) {
    script::answer("x_nwl_get_rec", fails());
    EXPECT_EQ(update(named("1,17")), -22);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(id_read("1,17")), read(17)));
    jni.clear_journal();
    script::answer("x_nwl_update_rec", fails());
    EXPECT_EQ(update(object()), -22);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked({}), read(0), values_asked(), kStoredLocked));
}

TEST_F(NetworkBridge, AnUpdateThatLacksAMethodAFieldOrAStringEndsBeforeTheStoreIsAsked) {
    log_level("D");
    for (const std::string& missing :
         {kObjectAsked[1], "NewStringUTF(" + tavro::test::quoted(kind.id_key) + ")", id_read()[0], chars("1,17")[0]}) {
        const Lines invalid =
            missing == chars("1,17")[0] ? Lines{"log 6 -: Invalid String.\n"} : Lines{}; // no characters
        FakeJni one;
        one.fail(missing);
        EXPECT_EQ(com_velotra_tv_tavro_networklist_updateInfo(one.env(), nullptr, 1, FakeJni::ref(named("1,17"))), -22);
        EXPECT_EQ(one.journal_with("x_nwl"), Lines{}) << missing;
        EXPECT_EQ(one.journal_with("log "), joined(entry("updateInfo", 3462), invalid)) << missing;
        EXPECT_TRUE(one.exception_pending());

        FakeJni many;
        many.fail(missing);
        FakeObject& list = jni.list({&named("1,17"), &named("1,18")});
        EXPECT_EQ(com_velotra_tv_tavro_networklist_updateInfoList(many.env(), nullptr, 1, FakeJni::ref(list)), -22);
        EXPECT_EQ(many.journal_with("x_nwl"), (Lines{"x_nwl_lock(0x30001)", "x_nwl_unlock(0x30001)"})) << missing;
        EXPECT_EQ(many.journal_with("log 3 -:"), entry("updateInfoList")) << missing;
        EXPECT_EQ(many.journal_with("log 6"), invalid) << missing;
        EXPECT_TRUE(many.exception_pending());
    }
}

TEST_F(NetworkBridge, ANullObjectOrListFailsBehindItsLineAndAsksNothing) {
    log_level("D");
    EXPECT_EQ(com_velotra_tv_tavro_networklist_updateInfo(jni.env(), nullptr, 1, nullptr), -22);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_updateInfoList(jni.env(), nullptr, 1, nullptr), -22);
    jstring added = com_velotra_tv_tavro_networklist_add_Info(jni.env(), nullptr, 1, nullptr);
    EXPECT_EQ(text_of(added), "");
    EXPECT_EQ(journal(), joined(entry("updateInfo", 3462), entry("updateInfoList"), entry("add_Info", 3109),
                                Lines{"NewStringUTF(\"\")"}));
}

TEST_F(NetworkBridge, AListUpdateAsksTheSizeThenLocksThenLooksAtEachElement) {
    EXPECT_EQ(update_list({}), 0);
    EXPECT_EQ(journal(), joined(kListUpdateStart, kUnlocked));
    jni.clear_journal();
    FakeObject& full = named("9,17");
    carry_values(full);
    EXPECT_EQ(update_list({&full, &object(), &named(nullptr)}), 0);
    EXPECT_EQ(journal(),
              joined(kListUpdateStart, Lines{"list.get(0)"}, kObjectAsked, id_asked(id_read("9,17")), read(17),
                     values_read(), kStored, kElementGivenBack, Lines{"list.get(1)"}, kObjectAsked, id_asked({}),
                     read(0), values_asked(), kStored, kElementGivenBack, Lines{"list.get(2)"}, kObjectAsked,
                     id_asked(id_read()), read(0), values_asked(), kStored, kElementGivenBack, kUnlocked));
}

TEST_F(NetworkBridge, AListUpdateEndsAtABadIdentifierWithItsKeysStringAndItsLockKept) {
    const Lines bad = joined(kObjectAsked, id_asked_and_kept(id_read("x,1")), kElementGivenBack);
    EXPECT_EQ(update_list({&named("x,1"), &named("1,17")}), -22);
    EXPECT_EQ(journal(), joined(kListUpdateStart, Lines{"list.get(0)"}, bad));
    jni.clear_journal();
    EXPECT_EQ(update_list({&named("1,17"), &named("x,1"), &named("1,18")}), 0);
    EXPECT_EQ(journal(), joined(kListUpdateStart, Lines{"list.get(0)"}, kObjectAsked, id_asked(id_read("1,17")),
                                read(17), values_asked(), kStored, kElementGivenBack, Lines{"list.get(1)"}, bad));
}

TEST_F(NetworkBridge, AListUpdateStopsAtAnElementThatCannotBeReadOrStoredAndUnlocks) {
    const Lines first =
        joined(kListUpdateStart, Lines{"list.get(0)"}, kObjectAsked, id_asked(id_read("1,17")), read(17));
    script::answer("x_nwl_get_rec", fails());
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(first, kElementGivenBack, kUnlocked));
    jni.clear_journal();
    script::answer("x_nwl_update_rec", fails());
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(first, values_asked(), kStored, kElementGivenBack, kUnlocked));
    jni.clear_journal();
    EXPECT_EQ(update_list({nullptr, &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(kListUpdateStart, Lines{"list.get(0)"}, kUnlocked));
}

TEST_F(NetworkBridge, AnUpdateByRecordIdLocksTheTargetForTheStoreAlone) {
    log_level("D");
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    EXPECT_EQ(update_by_record_id("1,17"), 0);
    const Lines begun = entry("updateInfo_by_recId", 3555);
    EXPECT_EQ(journal(),
              joined(begun, chars("1,17"), read(17),
                     Lines{"x_nwl_lock(0x30002)", "x_nwl_update_rec(0x30002, record, 0)", "x_nwl_unlock(0x30002)"}));
    _NWL_REC_T expected = stored;
    expected.ui2_nwl_id = 2;
    EXPECT_EQ(last_record(), bytes_of(expected));

    script::answer("x_nwl_get_rec", fails());
    EXPECT_EQ(update_by_record_id("1,17"), -22);
    EXPECT_EQ(journal(), joined(begun, chars("1,17"), read(17)));
    EXPECT_EQ(update_by_record_id("1,x"), -22);
    EXPECT_EQ(journal(), joined(begun, chars("1,x")));
    script::answer("x_nwl_update_rec", fails());
    EXPECT_EQ(update_by_record_id("1,17"), -22);
    EXPECT_EQ(jni.journal_with("lock("), (Lines{"x_nwl_lock(0x30002)", "x_nwl_unlock(0x30002)"}));
}

TEST_F(NetworkBridge, AnAddAsksForTheIdentifierLastLeavesTheLockToTheStoreAndTellsHowItEnded) {
    log_level("D");
    FakeObject* object = &named("1,77");
    carry_values(*object);
    const auto add = [&] {
        jni.clear_journal();
        jstring added = com_velotra_tv_tavro_networklist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(*object));
        return text_of(added);
    };
    const Lines begun = joined(entry("add_Info", 3109), Lines{"NewStringUTF(\"\")"}, kObjectAsked);
    const Lines added = {"x_nwl_qry_rec_id(0x30001, 2)", "x_nwl_lock(0x30001)", "x_nwl_add_rec(0x30001, record)",
                         "x_nwl_unlock(0x30001)"};
    const Lines answered = {kJniLine + "[nwList->addInfo][0] ", kJniLine + "[combineMId] mwdbId = 1, recId = 2",
                            "NewStringUTF(\"1,2\")"};
    const Lines full = joined(begun, values_read(), id_asked(id_read("1,77")), added);
    EXPECT_EQ(add(), "1,2");
    EXPECT_EQ(journal(), joined(full, answered));
    script::answer("x_nwl_add_rec", fails());
    EXPECT_EQ(add(), "");
    EXPECT_EQ(journal(), joined(full, Lines{kJniLine + "[nwList->addInfo][-22] "}));
    for (const char* bad : {"x,1", "1,x", "17"}) { // the key's string is given back all the same
        object = &named(bad);
        EXPECT_EQ(add(), "1,2");
        const Lines line = bad == std::string("17") ? Lines{"log 6 -: Unknown data s_Id.\n"} : Lines{};
        EXPECT_EQ(journal(),
                  joined(begun, values_asked(), id_asked(joined(id_read(), chars(bad), line, given_back(quoted(bad)))),
                         added, answered))
            << bad;
    }
}

TEST_F(NetworkBridge, AnAddByRecordIdLeavesTheLockToTheStoreAndTellsHowItEnded) {
    log_level("D");
    const auto add = [&](const char* identifier) {
        jni.clear_journal();
        jstring added =
            com_velotra_tv_tavro_networklist_add_Info_by_recId(jni.env(), nullptr, 2, ref(jni.string(identifier)));
        return text_of(added);
    };
    const Lines begun = joined(entry("add_Info_by_recId", 3208), Lines{"NewStringUTF(\"\")"});
    const Lines found = joined(begun, chars("1,17"), read(17));
    const Lines copied = {"x_nwl_lock(0x30002)", "x_nwl_add_rec(0x30002, record)", "x_nwl_unlock(0x30002)"};
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    EXPECT_EQ(add("1,17"), "2,17");
    EXPECT_EQ(journal(), joined(found, copied,
                                Lines{kJniLine + "[nwList->copyInfo][0] ",
                                      kJniLine + "[combineMId] mwdbId = 2, recId = 17", "NewStringUTF(\"2,17\")"}));
    script::answer("x_nwl_add_rec", fails());
    EXPECT_EQ(add("1,17"), "");
    EXPECT_EQ(journal(), joined(found, copied, Lines{kJniLine + "[nwList->copyInfo][-22] "}));
    script::answer("x_nwl_get_rec", fails());
    EXPECT_EQ(add("1,17"), "");
    EXPECT_EQ(journal(), found);
    EXPECT_EQ(add("1,x"), "");
    EXPECT_EQ(journal(), joined(begun, chars("1,x")));
}

TEST_F(NetworkBridge, RemovesLeaveTheLockToTheStoreBehindTheirLine) {
    log_level("D");
    const auto removed = [](const std::string& record_id) {
        return Lines{"x_nwl_lock(0x30001)", "x_nwl_del_rec(0x30001, " + record_id + ")", "x_nwl_unlock(0x30001)"};
    };
    EXPECT_EQ(com_velotra_tv_tavro_networklist_remove_info(jni.env(), nullptr, ref(jni.string("1,17"))), 0);
    EXPECT_EQ(journal(), joined(entry("remove_info", 3238), chars("1,17"), removed("17")));
    jni.clear_journal();
    EXPECT_EQ(com_velotra_tv_tavro_networklist_remove_info_by_recId(jni.env(), nullptr, 1, ref(jni.string("9,18"))), 0);
    EXPECT_EQ(journal(), joined(entry("remove_info_by_recId", 3248), chars("9,18"), removed("18")));
}

TEST_F(NetworkBridge, TheOtherNativesPassOnTheirCallWithoutALine) {
    log_level("D");
    FakeObject& path = jni.string("/data/nwl");
    EXPECT_EQ(com_velotra_tv_tavro_networklist_open(jni.env(), nullptr, 3), 0);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_open_path(jni.env(), nullptr, 4, ref(path)), 0);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_store(jni.env(), nullptr, 4, ref(path)), 0);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_clean(jni.env(), nullptr, 1), 0);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_copy(jni.env(), nullptr, 1, 2), 0);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_close(jni.env(), nullptr, 3), 0);
    EXPECT_EQ(com_velotra_tv_tavro_networklist_delete(jni.env(), nullptr, 4), 0);
    EXPECT_EQ(journal(),
              joined(Lines{"x_nwl_open(3, 0, 0)"}, chars("/data/nwl"),
                     Lines{"x_nwl_open(4, 0, 0)", "x_nwl_fs_sync(0x30004, 0, \"/data/nwl\", 4)"}, chars("/data/nwl"),
                     Lines{"x_nwl_lock(0x30004)", "x_nwl_fs_store(0x30004, \"/data/nwl\", 4)", "x_nwl_unlock(0x30004)",
                           "x_nwl_lock(0x30001)", "x_nwl_clean(0x30001)", "x_nwl_unlock(0x30001)",
                           "x_nwl_lock(0x30002)", "x_nwl_copy_date(0x30001, 0x30002)", "x_nwl_unlock(0x30002)",
                           "x_nwl_close(0x30003)", "x_nwl_delete(0x30004)"}));
}

TEST_F(NetworkBridge, SetUpReplacesTheManagerSilentlyAndKeepsOpenListsOpen) {
    log_level("D");
    const jint first = com_velotra_tv_tavro_nw_list_native_setup(jni.env(), nullptr);
    auto* left_behind = nwList;
    ASSERT_NE(left_behind, &manager);
    const jint second = com_velotra_tv_tavro_nw_list_native_setup(jni.env(), nullptr);
    ASSERT_NE(nwList, left_behind);
    EXPECT_EQ(jni.journal(), Lines{});
    EXPECT_EQ(first, static_cast<jint>(reinterpret_cast<std::uintptr_t>(&nwList)));
    EXPECT_EQ(second, first);
    EXPECT_NE(NwlKind::handles().find(1), nullptr);

    NwlKind::handles().clear();
    delete left_behind;
    delete nwList;
}

} // namespace
