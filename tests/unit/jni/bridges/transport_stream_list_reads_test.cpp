// The transport stream list's natives that read: records are returned as their bytes.

#include "bridge_test_support.h"

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class TransportStreamReads : public BridgeTest {
protected:
    TransportStreamReads() : BridgeTest(transport_stream_kind()) { log_level("D"); }

    jbyteArray get(const char* identifier) {
        jni.clear_journal();
        return com_velotra_tv_tavro_transportstreamlist_getInfo(jni.env(), nullptr, text(identifier));
    }
};

TEST_F(TransportStreamReads, OneStreamIsReadWithoutALockAndReturnedAsItsBytes) {
    script::answer(call_name("get_rec"), reads(kind.sample));
    jbyteArray bytes = get("1,17");
    EXPECT_EQ(journal(),
              joined(chars("1,17"), call("get_rec(@1, 17)"), Lines{"NewByteArray(724)", "SetByteArrayRegion(0, 724)"}));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes_in(bytes), kind.sample);
}

TEST_F(TransportStreamReads, OneStreamThatCannotBeReadIsNull) {
    script::answer(call_name("get_rec"), fails());
    EXPECT_EQ(get("1,17"), nullptr);
    EXPECT_EQ(journal(), joined(chars("1,17"), call("get_rec(@1, 17)"),
                                Lines{native_line("getInfo", " getSVLInfo fail ret=-22 ")}));
    EXPECT_EQ(get("1,x"), nullptr);
    EXPECT_EQ(journal(), chars("1,x"));
}

// The two natives that return a whole list, with the middleware calls that they read by.
struct ListReader {
    const char* name;
    jbyteArray (*read)(JNIEnv* env);
    const char* count; // call and its arguments before the index
    const char* get;
    const char* arguments;
};

const ListReader kListReaders[] = {
    {"getInfoList", [](JNIEnv* env) { return com_velotra_tv_tavro_transportstreamlist_getInfoList(env, nullptr, 1); },
     "get_num_recs", "get_rec_by_rec_idx", "@1"},
    {"getInfoListBySatellite",
     [](JNIEnv* env) { return com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(env, nullptr, 1, 9); },
     "get_num_rec_by_sat", "get_rec_by_sat", "@1, 65535, 1, 9"},
};

class TransportStreamLists : public TransportStreamReads, public testing::WithParamInterface<ListReader> {
protected:
    Lines record(const std::string& index) const {
        return call(std::string(reader.get) + "(" + reader.arguments + ", " + index + ")");
    }

    const ListReader& reader = GetParam();
    const Lines begun = joined(entry(reader.name), call("read_lock(@1)"),
                               call(std::string(reader.count) + "(" + reader.arguments + ")"));
    const Lines unlocked = call("read_unlock(@1)");
};

TEST_P(TransportStreamLists, FillOneArrayRecordByRecordUnderTheReadLock) {
    script::answer(call_name(reader.count), counts(2));
    script::answer(call_name(reader.get), reads(kind.sample));
    jbyteArray bytes = reader.read(jni.env()); // the second read leaves its record as it is: zero
    EXPECT_EQ(journal(), joined(begun, Lines{"NewByteArray(1448)"}, record("0"), Lines{"SetByteArrayRegion(0, 724)"},
                                record("1"), Lines{"SetByteArrayRegion(724, 724)"}, unlocked));
    Bytes expected = kind.sample;
    expected.resize(1448);
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes_in(bytes), expected);
}

TEST_P(TransportStreamLists, WithoutRecordsUnlockAndAreNull) {
    EXPECT_EQ(reader.read(jni.env()), nullptr);
    EXPECT_EQ(journal(), joined(begun, unlocked));
}

TEST_P(TransportStreamLists, AreNullWithALineWhenOneRecordCannotBeRead) {
    script::answer(call_name(reader.count), counts(3));
    script::answer(call_name(reader.get), reads(kind.sample));
    script::answer(call_name(reader.get), fails());
    EXPECT_EQ(reader.read(jni.env()), nullptr);
    EXPECT_EQ(journal(), joined(begun, Lines{"NewByteArray(2172)"}, record("0"), Lines{"SetByteArrayRegion(0, 724)"},
                                record("1"), Lines{native_line(reader.name, " getInfoByIdx fail ret=-22 ")}, unlocked));
}

TEST_P(TransportStreamLists, ThatDoNotFitInMemoryAreNullAndUnlocked) {
    script::answer(call_name(reader.count), counts(3));
    jni.fail("NewByteArray(2172)");
    EXPECT_EQ(reader.read(jni.env()), nullptr);
    EXPECT_EQ(journal(), joined(begun, Lines{"NewByteArray(2172)"}, unlocked));
}

INSTANTIATE_TEST_SUITE_P(Natives, TransportStreamLists, testing::ValuesIn(kListReaders),
                         [](const testing::TestParamInfo<ListReader>& info) { return info.param.name; });

} // namespace
