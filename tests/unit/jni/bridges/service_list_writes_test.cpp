// What the service list's natives do differently when they update. record_writes_test.cpp has the rules that all kinds
// share.

#include "bridge_test_support.h"

#include <cstddef>
#include <set>
#include <utility>

namespace {

using namespace tavro::test;

const std::string kContainsKey = contains_key_of(kPackage + "VltTvChannelInfoBase");
const Lines kListAsked = {"GetObjectClass(list)", "GetMethodID(get, (I)Ljava/lang/Object;)", "GetMethodID(size, ()I)",
                          "list.size()", "DeleteLocalRef(class of list)"};

class ServiceWrites : public BridgeTest {
protected:
    ServiceWrites() : BridgeTest(service_kind()) {}

    jint update_list(std::vector<FakeObject*> elements) {
        jni.clear_journal();
        return com_velotra_tv_tavro_channellist_updateInfoList(jni.env(), nullptr, 1,
                                                               FakeJni::ref(jni.list(std::move(elements))));
    }
    Lines stored() const { return call("update_rec(@1, record, 0)"); }
    Lines read(const std::string& record_id) const { return call("get_rec(@1, " + record_id + ")"); }
};

TEST_F(ServiceWrites, AnUpdateAsksForTheChannelNumberAfterTheHeader) {
    FakeObject& service = named("1,17");
    EXPECT_EQ(com_velotra_tv_tavro_channellist_updateInfo(jni.env(), nullptr, 2, FakeJni::ref(service)), 0);
    const Lines head = joined(Lines{"GetObjectClass(channel)", kContainsKey}, id_asked(id_read("1,17")),
                              call("get_rec(@2, 17)"), Lines{kContainsKey});
    const Lines tail = joined(all_asked("channel", {"MajorChannelNumber", "MinorChannelNumber"}),
                              call_under_lock("update_rec(@2, record, 0)", "@2"));
    const std::size_t header_keys = 31;
    const Lines lines = journal();
    ASSERT_EQ(lines.size(), head.size() + tail.size() + header_keys * asked("", "").size() + 2);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(head.size())), head);
    EXPECT_EQ(Lines(lines.end() - static_cast<std::ptrdiff_t>(tail.size()), lines.end()), tail);
}

TEST_F(ServiceWrites, ANumberForAnUnknownBroadcastTypeIsLogged) {
    log_level("D");
    for (jint type = 0; type < 12; ++type) {
        FakeObject& service = named("1,17");
        service.keys.insert({"BroadcastType", "MajorChannelNumber"});
        service.int_fields = {{"broadcastType", type}, {"majorChannelNumber", 5}};
        const std::set<jint> known = {tavro::kBroadcastDvb, tavro::kBroadcastType3, tavro::kBroadcastType5,
                                      tavro::kBroadcastDtmb};
        const Lines expected = known.count(type) != 0 ? Lines{}
                                                      : Lines{kJniLine + "e_brdcst_type = " + std::to_string(type) +
                                                              ", unsupport type stheader.e_serv_type=0 \n"};
        jni.clear_journal();
        com_velotra_tv_tavro_channellist_updateInfo(jni.env(), nullptr, 2, FakeJni::ref(service));
        EXPECT_EQ(jni.journal_with("unsupport"), expected) << type;
        jni.clear_journal();
        com_velotra_tv_tavro_channellist_add_Info(jni.env(), nullptr, 2, FakeJni::ref(service));
        EXPECT_EQ(jni.journal_with("unsupport"), expected) << type;
    }
}

TEST_F(ServiceWrites, AnEmptyListUpdateAsksForTheSizeThenLocks) {
    EXPECT_EQ(update_list({}), 0);
    EXPECT_EQ(journal(), joined(kListAsked, call("lock(@1)"), call("unlock(@1)")));
}

TEST_F(ServiceWrites, AListUpdateReadsTheIdentifierWithoutAskingItsKey) {
    FakeObject& service = named("1,17");
    service.keys.clear();
    EXPECT_EQ(update_list({&service}), 0);
    EXPECT_EQ(jni.journal_with("vlIdSvlRecId"), id_read());
    EXPECT_EQ(jni.journal_with(kind.calls), joined(call("lock(@1)"), read("17"), stored(), call("unlock(@1)")));
}

// Deliberate: the result is that of the element before, and the lock is kept.
TEST_F(ServiceWrites, AListUpdateEndsAtABadIdentifierAndStaysLocked) {
    EXPECT_EQ(update_list({&named("x,1"), &named("1,17")}), -22);
    EXPECT_EQ(jni.journal_with(kind.calls), call("lock(@1)"));
    EXPECT_EQ(update_list({&named("1,17"), &named("x,1"), &named("1,18")}), 0);
    EXPECT_EQ(jni.journal_with(kind.calls), joined(call("lock(@1)"), read("17"), stored()));
}

TEST_F(ServiceWrites, ANullElementEndsAListUpdate) {
    EXPECT_EQ(update_list({&object(), nullptr, &object()}), -22);
    EXPECT_EQ(jni.journal_with(kind.calls), joined(call("lock(@1)"), read("0"), stored(), call("unlock(@1)")));
}

TEST_F(ServiceWrites, AMissingIdentifierFieldReadsRecord0AndStoresNothing) {
    jni.fail(id_read()[0]);
    EXPECT_EQ(update_list({&object()}), -22);
    EXPECT_EQ(jni.journal_with(kind.calls), joined(call("lock(@1)"), read("0"), call("unlock(@1)")));
    EXPECT_TRUE(jni.exception_pending());
    EXPECT_EQ(jni.forbidden_calls(), Lines{});
}

} // namespace
