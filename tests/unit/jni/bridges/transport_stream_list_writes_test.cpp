// What the transport stream list's natives do differently when they add and update. record_writes_test.cpp has the
// shared rules.

#include "bridge_test_support.h"

#include <utility>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class TransportStreamWrites : public BridgeTest {
protected:
    TransportStreamWrites() : BridgeTest(transport_stream_kind()) {}

    jint update_by_record_id(jstring identifier) {
        jni.clear_journal();
        return com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(jni.env(), nullptr, 2, identifier);
    }
};

TEST_F(TransportStreamWrites, AListUpdateSkipsBadIdentifiersAndKeepsTheirKeys) {
    std::vector<FakeObject*> elements = {&named("a,b"), &named(nullptr), &named(""), &named("1,17")};
    EXPECT_EQ(com_velotra_tv_tavro_transportstreamlist_updateInfoList(jni.env(), nullptr, 1,
                                                                      FakeJni::ref(jni.list(elements))),
              0);
    const Lines end = given_back("stream");
    EXPECT_EQ(journal_from("list.get(0)"),
              joined(Lines{"list.get(0)"}, id_asked_and_kept(id_read("a,b")), end, Lines{"list.get(1)"},
                     id_asked_and_kept(id_read()), end, Lines{"list.get(2)"}, id_asked_and_kept(id_read("")), end,
                     Lines{"list.get(3)"}, id_asked(id_read("1,17")), call("get_rec(@1, 17)"),
                     stream_conversion("stream"), call("update_rec(@1, record, 0)"), end, call("unlock(@1)")));
}

TEST_F(TransportStreamWrites, AnUpdateByRecordIdKeepsTheCharactersOfItsLine) {
    EXPECT_EQ(update_by_record_id(text("1,17")), 0);
    EXPECT_EQ(jni.unreleased_chars(), 1);
}

TEST_F(TransportStreamWrites, AnUpdateByRecordIdLogsABadIdentifier) {
    log_level("D");
    const std::string name = entry("updateInfo_by_recId")[0];
    EXPECT_EQ(update_by_record_id(text("1,x")), -22);
    EXPECT_EQ(journal(), joined(Lines{name}, chars_kept("1,x"), Lines{name + " recId=1,x"}, chars("1,x"),
                                Lines{name + " tmpRecId=0 "}));
    EXPECT_EQ(update_by_record_id(nullptr), -22);
    EXPECT_EQ(journal(), (Lines{name, name + " recId=", "log 6 -: Invalid String.\n", "log 6 -: Invalid param.\n",
                                name + " tmpRecId=0 "}));
}

TEST_F(TransportStreamWrites, AnAddConvertsTheObjectAndAsksForNoIdentifier) {
    log_level("D");
    jstring added = com_velotra_tv_tavro_transportstreamlist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(object()));
    EXPECT_EQ(text_of(added), "1,2");
    EXPECT_EQ(journal_before(call("qry_rec_id(@1, 2)")[0]),
              joined(entry("add_Info"), Lines{"NewStringUTF(\"\")", kJniLine + "[_set_ts_info][2544] "},
                     stream_conversion("stream")));
}

} // namespace
