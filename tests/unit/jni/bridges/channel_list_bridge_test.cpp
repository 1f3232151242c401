// What the channel list's natives ask of the platform, in one order with their middleware calls, and
// what they do when it fails. Their behaviour on a real Java virtual machine is tested in tests/jvm.

#include "fake_jni.h"
#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "script.h"
#include "scripted_test.h"

#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

bool refuse_large_arrays = false;

} // namespace

// The listing's buffer is the one place that allocates without throwing.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return refuse_large_arrays ? nullptr : ::operator new[](size);
}

namespace {

using Lines = std::vector<std::string>;

class ChannelBridge : public tavro::test::ScriptedTest {
protected:
    ChannelBridge() {
        SvlKind::handles().clear();
        chList = &manager;
        for (const int id : {1, 2}) {
            SvlKind::handles().insert(id, 0x10000U + static_cast<MwdbHandle>(id));
        }
    }
    ~ChannelBridge() override {
        chList = nullptr;
        SvlKind::handles().clear();
    }

    static void count(std::uint32_t number) {
        script::always("x_svl_get_num_rec_by_brdcst_type", {0, number, {}, 0, {}});
    }
    static jstring ref(FakeObject& text) { return FakeJni::string_ref(text); }

    NativeVltTvChannelList manager;
    FakeJni jni;
    FakeObject& channel = jni.object("channel");
    FakeObject& id = jni.string("1,17");
};

TEST_F(ChannelBridge, OneServiceIsReadAndHandedOverAsItsBytes) {
    script::Answer answer;
    answer.record.resize(sizeof(_SVL_REC_T));
    for (std::size_t i = 0; i < answer.record.size(); ++i) {
        answer.record[i] = static_cast<std::byte>(i * 3);
    }
    script::answer("x_svl_get_rec", answer);
    jbyteArray bytes = com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, ref(id));
    ASSERT_NE(bytes, nullptr);
    ASSERT_EQ(FakeJni::from(bytes).bytes.size(), 552U);
    EXPECT_EQ(std::memcmp(FakeJni::from(bytes).bytes.data(), answer.record.data(), 552), 0);
    EXPECT_EQ(jni.journal(), (Lines{"GetStringUTFChars(\"1,17\")", "ReleaseStringUTFChars(\"1,17\")",
                                    "x_svl_get_rec(0x10001, 17)", "NewByteArray(552)", "SetByteArrayRegion(0, 552)"}));
}

TEST_F(ChannelBridge, AListIsReadUnderItsReadLockAndBothAreGivenBackBeforeTheArrayIsMade) {
    count(2);
    jbyteArray bytes = com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1);
    EXPECT_EQ(FakeJni::from(bytes).bytes, std::vector<jbyte>(2 * 552));
    EXPECT_EQ(jni.journal(),
              (Lines{"x_svl_open(1, 0, 0)", "x_svl_read_lock(0x10001)",
                     "x_svl_get_num_rec_by_brdcst_type(0x10001, 0, 0xffffffff)",
                     "x_svl_get_rec_by_brdcst_type(0x10001, 0, 0xffffffff, 0)",
                     "x_svl_get_rec_by_brdcst_type(0x10001, 0, 0xffffffff, 1)", "x_svl_read_unlock(0x10001)",
                     "x_svl_close(0x10001)", "NewByteArray(1104)", "SetByteArrayRegion(0, 1104)"}));
}

TEST_F(ChannelBridge, AListThatDoesNotFitInMemoryIsNullWithALine) {
    log_level("d");
    count(3);
    refuse_large_arrays = true;
    EXPECT_EQ(com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1), nullptr);
    refuse_large_arrays = false;
    const Lines& journal = jni.journal();
    const auto line =
        std::find(journal.begin(), journal.end(), "log 3 -: [jni_VltTvList_Init] sa_svl_buffer malloc fail");
    ASSERT_NE(line, journal.end());
    EXPECT_EQ(*(line + 1), "x_svl_read_unlock(0x10001)");
    EXPECT_EQ(jni.journal_with("x_svl_close"), Lines{"x_svl_close(0x10001)"});
    EXPECT_EQ(jni.journal_with("get_rec"), Lines{});
}

TEST_F(ChannelBridge, AnUpdateAsksForItsRecordIdAndItsChannelNumberAroundTheHeader) {
    channel.keys = {"SvlIdSvlRecId"};
    channel.object_fields = {{"svlIdSvlRecId", &id}};
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfo(jni.env(), nullptr, 2, FakeJni::ref(channel)), 0);
    const std::string method = "GetMethodID(isContainsKey, "
                               "(Lcom/velotra/tv/tavro/services/channellist/VltTvChannelInfoBase;Ljava/lang/String;)Z)";
    const Lines head = {"GetObjectClass(channel)",
                        method,
                        "NewStringUTF(\"SvlIdSvlRecId\")",
                        "channel.isContainsKey(channel, \"SvlIdSvlRecId\")",
                        "GetFieldID(svlIdSvlRecId, Ljava/lang/String;)",
                        "GetObjectField(svlIdSvlRecId)",
                        "GetStringUTFChars(\"1,17\")",
                        "ReleaseStringUTFChars(\"1,17\")",
                        "DeleteLocalRef(\"1,17\")",
                        "DeleteLocalRef(\"SvlIdSvlRecId\")",
                        "x_svl_get_rec(0x10002, 17)",
                        method};
    const Lines tail = {"NewStringUTF(\"MajorChannelNumber\")",
                        "channel.isContainsKey(channel, \"MajorChannelNumber\")",
                        "DeleteLocalRef(\"MajorChannelNumber\")",
                        "NewStringUTF(\"MinorChannelNumber\")",
                        "channel.isContainsKey(channel, \"MinorChannelNumber\")",
                        "DeleteLocalRef(\"MinorChannelNumber\")",
                        "x_svl_lock(0x10002)",
                        "x_svl_update_rec(0x10002, record, 0)",
                        "x_svl_unlock(0x10002)"};
    const Lines& journal = jni.journal();
    ASSERT_EQ(journal.size(), head.size() + tail.size() + 31 * 3 + 2);
    EXPECT_EQ(Lines(journal.begin(), journal.begin() + static_cast<std::ptrdiff_t>(head.size())), head);
    EXPECT_EQ(Lines(journal.end() - static_cast<std::ptrdiff_t>(tail.size()), journal.end()), tail);
}

TEST_F(ChannelBridge, AListUpdateLooksItsMethodsUpAndAsksTheSizeBeforeItLocks) {
    FakeObject& list = jni.list({});
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1, FakeJni::ref(list)), 0);
    EXPECT_EQ(jni.journal(),
              (Lines{"GetObjectClass(list)", "GetMethodID(get, (I)Ljava/lang/Object;)", "GetMethodID(size, ()I)",
                     "list.size()", "DeleteLocalRef(class of list)", "x_svl_lock(0x10001)", "x_svl_unlock(0x10001)"}));
}

TEST_F(ChannelBridge, AListUpdateReadsTheRecordIdFieldWithoutAskingForItsKey) {
    channel.object_fields = {{"svlIdSvlRecId", &id}};
    FakeObject& list = jni.list({&channel});
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1, FakeJni::ref(list)), 0);
    EXPECT_EQ(jni.journal_with("vlIdSvlRecId"),
              (Lines{"GetFieldID(svlIdSvlRecId, Ljava/lang/String;)", "GetObjectField(svlIdSvlRecId)"}));
    EXPECT_EQ(jni.journal_with("x_svl"), (Lines{"x_svl_lock(0x10001)", "x_svl_get_rec(0x10001, 17)",
                                                "x_svl_update_rec(0x10001, record, 0)", "x_svl_unlock(0x10001)"}));
}

TEST_F(ChannelBridge, ANullRecordObjectFailsBeforeAnythingIsAsked) {
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfo(jni.env(), nullptr, 1, nullptr), -22);
    EXPECT_EQ(jni.journal(), Lines{});
    jstring added = com_velotra_tv_tavro_channellist_add_Info(jni.env(), nullptr, 1, nullptr);
    EXPECT_EQ(FakeJni::from(added).text, "");
    EXPECT_EQ(jni.journal(), Lines{"NewStringUTF(\"\")"});
}

TEST_F(ChannelBridge, ANullListFailsBeforeTheLock) {
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1, nullptr), -22);
    EXPECT_EQ(jni.journal(), Lines{});
}

TEST_F(ChannelBridge, ANullElementCountsAsARecordThatCannotBeRead) {
    FakeObject& list = jni.list({&channel, nullptr, &channel});
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1, FakeJni::ref(list)), -22);
    EXPECT_EQ(jni.journal_with("x_svl"), (Lines{"x_svl_lock(0x10001)", "x_svl_get_rec(0x10001, 0)",
                                                "x_svl_update_rec(0x10001, record, 0)", "x_svl_unlock(0x10001)"}));
}

TEST_F(ChannelBridge, AMissingRecordIdFieldGivesRecordIdZeroAndStoresNothing) {
    FakeObject& list = jni.list({&channel});
    jni.fail("GetFieldID(svlIdSvlRecId, Ljava/lang/String;)");
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1, FakeJni::ref(list)), -22);
    EXPECT_EQ(jni.journal_with("x_svl"),
              (Lines{"x_svl_lock(0x10001)", "x_svl_get_rec(0x10001, 0)", "x_svl_unlock(0x10001)"}));
    EXPECT_TRUE(jni.exception_pending());
    EXPECT_EQ(jni.forbidden_calls(), Lines{});
}

} // namespace
