// What the transport stream list's natives ask of the platform, in one order with their middleware calls and
// lines. Their behaviour on a real Java virtual machine is tested in tests/jvm.

#include "bridge_test_support.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/transport_stream_list_bridge.h"

#include <gtest/gtest.h>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

// How every list update begins, up to its first element.
const Lines kListUpdateStart = {"GetObjectClass(list)",
                                "GetMethodID(get, (I)Ljava/lang/Object;)",
                                "GetMethodID(size, ()I)",
                                "list.size()",
                                "DeleteLocalRef(class of list)",
                                "x_tsl_lock(0x20001)",
                                kFindStreamClass,
                                kStreamContainsKey};
const Lines kElementGivenBack = {"DeleteLocalRef(stream)"};
const Lines kUnlocked = {"x_tsl_unlock(0x20001)"};
const Lines kStored = {"x_tsl_update_rec(0x20001, record, 0)"};
const Lines kStoredLocked = joined(Lines{"x_tsl_lock(0x20001)"}, kStored, kUnlocked);
const Lines kObjectAsked = {"GetObjectClass(stream)", kStreamContainsKey};

class TransportStreamBridge : public BridgeTest {
protected:
    TransportStreamBridge()
        : BridgeTest({"com_velotra_tv_tavro_transportstreamlist_", "stream", "TslIdTslRecId", "tslIdTslRecId",
                      TslKind::handles(), 2}) {
        tsList = &manager;
        for (std::size_t i = 0; i < stored.size(); ++i) {
            stored[i] = static_cast<std::byte>(i * 3);
        }
        stored[0] = std::byte{17};
        stored[1] = std::byte{0};
    }
    ~TransportStreamBridge() override { tsList = nullptr; }

    // The identifier of a single update: one string, which stays to the end of the native call.
    Lines one_id_read(const std::string& text) const { return joined(id_read(), chars(text)); }
    static Lines read(int record_id) { return {"x_tsl_get_rec(0x20001, " + std::to_string(record_id) + ")"}; }
    static Lines updated(int record_id) { return joined(read(record_id), stream_conversion("stream")); }

    jint update(FakeObject& stream) {
        return com_velotra_tv_tavro_transportstreamlist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(stream));
    }
    jint update_list(std::vector<FakeObject*> elements) {
        return com_velotra_tv_tavro_transportstreamlist_updateInfoList(jni.env(), nullptr, 1,
                                                                       FakeJni::ref(jni.list(std::move(elements))));
    }

    NativeVltTvTransportStreamList manager;
    std::vector<std::byte> stored = std::vector<std::byte>(sizeof(_TSL_REC_T));
};

TEST_F(TransportStreamBridge, AnUpdateReadsTheRecordAsksTheKeysAndLocksTheStoreAlone) {
    EXPECT_EQ(update(named("9,17")), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(one_id_read("9,17")), updated(17), kStoredLocked));
    jni.clear_journal();
    EXPECT_EQ(update(object()), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked({}), updated(0), kStoredLocked));
    jni.clear_journal();
    EXPECT_EQ(update(named(nullptr)), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(id_read()), updated(0), kStoredLocked));
}

TEST_F(TransportStreamBridge, AnUpdateHandsOverZerosWhereNothingWasStored) {
    EXPECT_EQ(update(named("1,17")), 0);
    EXPECT_EQ(last_record(), std::vector<std::byte>(sizeof(_TSL_REC_T)));
    script::answer("x_tsl_get_rec", reads(stored)); // for the first element
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), 0);
    EXPECT_EQ(last_record(), std::vector<std::byte>(sizeof(_TSL_REC_T)));
}

TEST_F(TransportStreamBridge, AnUpdateKeepsTheKeysStringAtABadIdentifierAndFailsAtOnce) {
    for (const char* bad : {"x,1", "1,x", "17", ""}) {
        jni.clear_journal();
        EXPECT_EQ(update(named(bad)), -22);
        EXPECT_EQ(journal(), joined(kObjectAsked, id_asked_and_kept(one_id_read(bad)))) << bad;
    }
}

TEST_F(TransportStreamBridge, AnUpdateOfARecordThatCannotBeReadFailsWithoutTheLock) {
    script::answer("x_tsl_get_rec", fails());
    EXPECT_EQ(update(named("1,17")), -22);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(one_id_read("1,17")), read(17)));
}

TEST_F(TransportStreamBridge, AnUpdateThatIsNotStoredGivesTheLockBack) {
    script::answer("x_tsl_update_rec", fails());
    EXPECT_EQ(update(object()), -22);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked({}), updated(0), kStoredLocked));
}

TEST_F(TransportStreamBridge, ANullObjectOrListFailsBehindItsLineAndAsksNothing) {
    log_level("D");
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_updateInfo(jni.env(), nullptr, 1, nullptr), -22);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_updateInfoList(jni.env(), nullptr, 1, nullptr), -22);
    jstring added = com_velotra_tv_tavro_transportstreamlist_add_Info(jni.env(), nullptr, 1, nullptr);
    EXPECT_EQ(text_of(added), "");
    EXPECT_EQ(journal(), joined(entry("updateInfo"), entry("updateInfoList"), entry("add_Info", 2811),
                                Lines{"NewStringUTF(\"\")"}));
}

TEST_F(TransportStreamBridge, AnEmptyListUpdateAsksTheSizeThenLocksThenFindsTheClass) {
    EXPECT_EQ(update_list({}), 0);
    EXPECT_EQ(journal(), joined(kListUpdateStart, kUnlocked));
}

TEST_F(TransportStreamBridge, AListUpdateDoesForEachElementWhatItCarries) {
    EXPECT_EQ(update_list({&named("9,17"), &object(), &named("1,18")}), 0);
    EXPECT_EQ(journal(), joined(kListUpdateStart, Lines{"list.get(0)"}, id_asked(id_read("9,17")), updated(17), kStored,
                                kElementGivenBack, Lines{"list.get(1)"}, id_asked({}), updated(0), kStored,
                                kElementGivenBack, Lines{"list.get(2)"}, id_asked(id_read("1,18")), updated(18),
                                kStored, kElementGivenBack, kUnlocked));
}

TEST_F(TransportStreamBridge, AListUpdateKeepsTheKeysStringOfAnElementThatItLeavesOut) {
    EXPECT_EQ(update_list({&named("a,b"), &named(nullptr), &named(""), &named("1,17")}), 0);
    EXPECT_EQ(journal(),
              joined(kListUpdateStart, Lines{"list.get(0)"}, id_asked_and_kept(id_read("a,b")), kElementGivenBack,
                     Lines{"list.get(1)"}, id_asked_and_kept(id_read()), kElementGivenBack, Lines{"list.get(2)"},
                     id_asked_and_kept(id_read("")), kElementGivenBack, Lines{"list.get(3)"}, id_asked(id_read("1,17")),
                     updated(17), kStored, kElementGivenBack, kUnlocked));
}

TEST_F(TransportStreamBridge, AListUpdateStopsAtAnElementThatCannotBeReadOrStoredAndUnlocks) {
    const Lines first = joined(kListUpdateStart, Lines{"list.get(0)"}, id_asked(id_read("1,17")));
    script::answer("x_tsl_get_rec", fails());
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(first, read(17), kElementGivenBack, kUnlocked));
    jni.clear_journal();
    script::answer("x_tsl_update_rec", fails());
    EXPECT_EQ(update_list({&named("1,17"), &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(first, updated(17), kStored, kElementGivenBack, kUnlocked));
    jni.clear_journal();
    EXPECT_EQ(update_list({nullptr, &named("1,18")}), -22);
    EXPECT_EQ(journal(), joined(kListUpdateStart, Lines{"list.get(0)"}, kUnlocked));
}

TEST_F(TransportStreamBridge, AnUpdateByRecordIdKeepsTheCharactersOfItsLineAndLocksTheTargetForTheStore) {
    log_level("D");
    script::answer("x_tsl_get_rec", reads(stored));
    EXPECT_EQ(
        com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(jni.env(), nullptr, 300, ref(jni.string("1,17"))),
        0);
    const std::string name = entry("updateInfo_by_recId")[0];
    EXPECT_EQ(journal(), joined(Lines{name}, chars_kept("1,17"), Lines{name + " recId=1,17"}, chars("1,17"),
                                Lines{"x_tsl_get_rec(0x20001, 17)", "x_tsl_lock(0x2012c)",
                                      "x_tsl_update_rec(0x2012c, record, 0)", "x_tsl_unlock(0x2012c)"}));
    EXPECT_EQ(jni.unreleased_chars(), 1);

    std::vector<std::byte> expected = stored;
    expected[20] = std::byte{44}; // 300 cut to a byte
    for (const std::size_t list_id : {708U, 712U}) {
        expected[list_id] = std::byte{0x2C};
        expected[list_id + 1] = std::byte{0x01};
    }
    EXPECT_EQ(last_record(), expected);
}

TEST_F(TransportStreamBridge, AnUpdateByRecordIdFailsWithoutTheLockWhenItsSourceCannotBeRead) {
    log_level("D");
    const auto run = [&](jstring identifier) {
        jni.clear_journal();
        return com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(jni.env(), nullptr, 2, identifier);
    };
    const std::string name = entry("updateInfo_by_recId")[0];
    script::answer("x_tsl_get_rec", fails());
    EXPECT_EQ(run(ref(jni.string("1,17"))), -22);
    EXPECT_EQ(journal(), joined(Lines{name}, chars_kept("1,17"), Lines{name + " recId=1,17"}, chars("1,17"), read(17)));
    EXPECT_EQ(run(ref(jni.string("1,x"))), -22);
    EXPECT_EQ(journal(), joined(Lines{name}, chars_kept("1,x"), Lines{name + " recId=1,x"}, chars("1,x"),
                                Lines{name + " tmpRecId=0 "}));
    EXPECT_EQ(run(nullptr), -22);
    EXPECT_EQ(journal(), (Lines{name, name + " recId=", "log 6 -: Invalid String.\n", "log 6 -: Invalid param.\n",
                                name + " tmpRecId=0 "}));
}

TEST_F(TransportStreamBridge, OneStreamIsReadWithoutALockAndHandedOverAsItsBytes) {
    log_level("D");
    const auto get = [&](const char* identifier) {
        jni.clear_journal();
        return com_velotra_tv_tavro_transportstreamlist_getInfo(jni.env(), nullptr, ref(jni.string(identifier)));
    };
    const Lines asked_for = joined(chars("1,17"), read(17));
    script::answer("x_tsl_get_rec", reads(stored));
    jbyteArray bytes = get("1,17");
    EXPECT_EQ(journal(), joined(asked_for, Lines{"NewByteArray(724)", "SetByteArrayRegion(0, 724)"}));
    ASSERT_NE(bytes, nullptr);
    ASSERT_EQ(FakeJni::from(bytes).bytes.size(), stored.size());
    EXPECT_EQ(std::memcmp(FakeJni::from(bytes).bytes.data(), stored.data(), stored.size()), 0);

    script::answer("x_tsl_get_rec", fails());
    EXPECT_EQ(get("1,17"), nullptr);
    EXPECT_EQ(journal(), joined(asked_for, Lines{kJniLine + kind.natives + "getInfo getSVLInfo fail ret=-22 "}));
    EXPECT_EQ(get("1,x"), nullptr);
    EXPECT_EQ(journal(), chars("1,x"));
}

// The two natives that hand a whole list over, with the middleware calls that they read by.
struct ListReader {
    const char* name;
    jbyteArray (*read)(JNIEnv* env);
    const char* count_call;
    const char* counted;
    const char* read_call;
    const char* first;
    const char* second;
};

const ListReader kListReaders[] = {
    {"getInfoList", [](JNIEnv* env) { return com_velotra_tv_tavro_transportstreamlist_getInfoList(env, nullptr, 1); },
     "x_tsl_get_num_recs", "x_tsl_get_num_recs(0x20001)", "x_tsl_get_rec_by_rec_idx",
     "x_tsl_get_rec_by_rec_idx(0x20001, 0)", "x_tsl_get_rec_by_rec_idx(0x20001, 1)"},
    {"getInfoListBySatellite",
     [](JNIEnv* env) { return com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(env, nullptr, 1, 9); },
     "x_tsl_get_num_rec_by_sat", "x_tsl_get_num_rec_by_sat(0x20001, 65535, 1, 9)", "x_tsl_get_rec_by_sat",
     "x_tsl_get_rec_by_sat(0x20001, 65535, 1, 9, 0)", "x_tsl_get_rec_by_sat(0x20001, 65535, 1, 9, 1)"},
};

class TransportStreamListReader : public TransportStreamBridge, public testing::WithParamInterface<ListReader> {
protected:
    TransportStreamListReader() { log_level("D"); }

    const ListReader& reader = GetParam();
    const std::string name = entry(reader.name)[0];
    const Lines started = {name, "x_tsl_read_lock(0x20001)", reader.counted};
    const Lines unlocked = {"x_tsl_read_unlock(0x20001)"};
};

TEST_P(TransportStreamListReader, FillsOneArrayRecordByRecordUnderTheReadLock) {
    script::answer(reader.count_call, counts(2));
    script::answer(reader.read_call, reads(stored));
    jbyteArray bytes = reader.read(jni.env()); // the second read leaves its record as it is: zero
    EXPECT_EQ(journal(), joined(started,
                                Lines{"NewByteArray(1448)", reader.first, "SetByteArrayRegion(0, 724)", reader.second,
                                      "SetByteArrayRegion(724, 724)"},
                                unlocked));
    std::vector<std::byte> expected = stored;
    expected.resize(1448);
    ASSERT_NE(bytes, nullptr);
    ASSERT_EQ(FakeJni::from(bytes).bytes.size(), expected.size());
    EXPECT_EQ(std::memcmp(FakeJni::from(bytes).bytes.data(), expected.data(), expected.size()), 0);
}

TEST_P(TransportStreamListReader, OfNoRecordsUnlocksAndGivesNull) {
    EXPECT_EQ(reader.read(jni.env()), nullptr);
    EXPECT_EQ(journal(), joined(started, unlocked));
}

TEST_P(TransportStreamListReader, ThatFailsAtARecordSaysSoUnderItsOwnNameUnlocksAndGivesNull) {
    script::answer(reader.count_call, counts(3));
    script::answer(reader.read_call, reads(stored));
    script::answer(reader.read_call, fails());
    EXPECT_EQ(reader.read(jni.env()), nullptr);
    EXPECT_EQ(journal(), joined(started,
                                Lines{"NewByteArray(2172)", reader.first, "SetByteArrayRegion(0, 724)", reader.second,
                                      name + " getInfoByIdx fail ret=-22 "},
                                unlocked));
}

INSTANTIATE_TEST_SUITE_P(Natives, TransportStreamListReader, testing::ValuesIn(kListReaders),
                         [](const testing::TestParamInfo<ListReader>& info) { return info.param.name; });

TEST_F(TransportStreamBridge, AnAddLeavesTheLockToTheStoreAndTellsHowItEnded) {
    log_level("D");
    const auto add = [&](std::int32_t status) {
        jni.clear_journal();
        script::answer("x_tsl_add_rec", {status, {}, {}, 0, {}});
        jstring added =
            com_velotra_tv_tavro_transportstreamlist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object()));
        return text_of(added);
    };
    const Lines calls = joined(entry("add_Info", 2811), Lines{"NewStringUTF(\"\")", kJniLine + "[_set_ts_info][2544] "},
                               stream_conversion("stream"),
                               Lines{"x_tsl_qry_rec_id(0x20001, 2)", "x_tsl_lock(0x20001)",
                                     "x_tsl_add_rec(0x20001, record)", "x_tsl_unlock(0x20001)"});
    EXPECT_EQ(add(0), "1,2");
    EXPECT_EQ(journal(),
              joined(calls, Lines{kJniLine + "[tsList->addInfo][0] ", kJniLine + "[combineMId] mwdbId = 1, recId = 2",
                                  "NewStringUTF(\"1,2\")"}));
    EXPECT_EQ(add(-9), "");
    EXPECT_EQ(journal(), joined(calls, Lines{kJniLine + "[tsList->addInfo][-22] "}));
}

TEST_F(TransportStreamBridge, AnAddByRecordIdLeavesTheLockToTheStoreAndTellsHowItEnded) {
    log_level("D");
    const auto add = [&](const char* identifier) {
        jni.clear_journal();
        jstring added = com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId(jni.env(), nullptr, 2,
                                                                                   ref(jni.string(identifier)));
        return text_of(added);
    };
    const Lines begun = joined(entry("add_Info_by_recId", 2836), Lines{"NewStringUTF(\"\")"});
    const Lines found = joined(begun, chars("1,17"), read(17));
    const Lines copied = {"x_tsl_lock(0x20002)", "x_tsl_add_rec(0x20002, record)", "x_tsl_unlock(0x20002)"};
    script::answer("x_tsl_get_rec", reads(stored));
    EXPECT_EQ(add("1,17"), "2,17");
    EXPECT_EQ(journal(), joined(found, copied,
                                Lines{kJniLine + "[tsList->copyInfo][0] ",
                                      kJniLine + "[combineMId] mwdbId = 2, recId = 17", "NewStringUTF(\"2,17\")"}));
    script::answer("x_tsl_add_rec", fails());
    EXPECT_EQ(add("1,17"), "");
    EXPECT_EQ(journal(), joined(found, copied, Lines{kJniLine + "[tsList->copyInfo][-22] "}));
    script::answer("x_tsl_get_rec", fails());
    EXPECT_EQ(add("1,17"), "");
    EXPECT_EQ(journal(), found);
    EXPECT_EQ(add("1,x"), "");
    EXPECT_EQ(journal(), joined(begun, chars("1,x")));
}

TEST_F(TransportStreamBridge, RemovesLeaveTheLockToTheStoreBehindTheirLine) {
    log_level("D");
    const auto removed = [](const std::string& record_id) {
        return Lines{"x_tsl_lock(0x20001)", "x_tsl_del_rec(0x20001, " + record_id + ")",
                     "log 6 NativeVltTvTransportStreamList_Cpp: i4_ret: 0", "x_tsl_unlock(0x20001)"};
    };
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_remove_info(jni.env(), nullptr, ref(jni.string("1,17"))), 0);
    EXPECT_EQ(journal(), joined(entry("remove_info", 2867), chars("1,17"), removed("17")));
    jni.clear_journal();
    EXPECT_EQ(
        com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId(jni.env(), nullptr, 1, ref(jni.string("9,18"))),
        0);
    EXPECT_EQ(journal(), joined(entry("remove_info_by_recId", 2876), chars("9,18"), removed("18")));
}

TEST_F(TransportStreamBridge, TheOtherNativesPassOnTheirCallWithoutALine) {
    log_level("D");
    FakeObject& path = jni.string("/data/tsl");
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_open(jni.env(), nullptr, 3), 0);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_open_path(jni.env(), nullptr, 4, ref(path)), 0);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_store(jni.env(), nullptr, 4, ref(path)), 0);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_clean(jni.env(), nullptr, 1), 0);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_copy(jni.env(), nullptr, 1, 2), 0);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_close(jni.env(), nullptr, 3), 0);
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_delete(jni.env(), nullptr, 4), 0);
    EXPECT_EQ(journal(),
              joined(Lines{"x_tsl_open(3, 0, 0)"}, chars("/data/tsl"),
                     Lines{"x_tsl_open(4, 0, 0)", "x_tsl_fs_sync(0x20004, 0, \"/data/tsl\", 4)"}, chars("/data/tsl"),
                     Lines{"x_tsl_lock(0x20004)", "x_tsl_fs_store(0x20004, \"/data/tsl\", 4)", "x_tsl_unlock(0x20004)",
                           "x_tsl_lock(0x20001)", "x_tsl_clean(0x20001)", "x_tsl_unlock(0x20001)",
                           "x_tsl_lock(0x20002)", "x_tsl_copy_date(0x20001, 0x20002)", "x_tsl_unlock(0x20002)",
                           "x_tsl_close(0x20003)", "x_tsl_delete(0x20004)"}));
}

TEST_F(TransportStreamBridge, SetUpReplacesTheManagerSilentlyAndKeepsOpenListsOpen) {
    log_level("D");
    const jint first = com_velotra_tv_tavro_ts_list_native_setup(jni.env(), nullptr);
    auto* left_behind = tsList;
    ASSERT_NE(left_behind, &manager);
    const jint second = com_velotra_tv_tavro_ts_list_native_setup(jni.env(), nullptr);
    ASSERT_NE(tsList, left_behind);
    EXPECT_EQ(jni.journal(), Lines{});
    EXPECT_EQ(first, static_cast<jint>(reinterpret_cast<std::uintptr_t>(&tsList)));
    EXPECT_EQ(second, first);
    EXPECT_NE(TslKind::handles().find(1), nullptr);

    TslKind::handles().clear();
    delete left_behind;
    delete tsList;
}

} // namespace
