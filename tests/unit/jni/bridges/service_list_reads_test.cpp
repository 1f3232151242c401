// The service list's natives that read: records are returned as their bytes.

#include "allocations.h"
#include "bridge_test_support.h"

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class ServiceReads : public BridgeTest {
protected:
    ServiceReads() : BridgeTest(service_kind()) {}

    jbyteArray get_list() { return com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, 1); }
};

TEST_F(ServiceReads, OneServiceIsReadWithoutALockAndReturnedAsItsBytes) {
    script::answer("x_svl_get_rec", reads(kind.sample));
    jbyteArray bytes = com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, text("1,17"));
    EXPECT_EQ(journal(),
              joined(chars("1,17"), call("get_rec(@1, 17)"), Lines{"NewByteArray(552)", "SetByteArrayRegion(0, 552)"}));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes_in(bytes), kind.sample);
}

TEST_F(ServiceReads, OneServiceThatCannotBeReadIsNull) {
    log_level("D");
    script::answer("x_svl_get_rec", fails());
    EXPECT_EQ(com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, text("1,17")), nullptr);
    EXPECT_EQ(journal().back(), native_line("getSVLInfo", " getSVLInfo fail ret=-22 "));
}

TEST_F(ServiceReads, AListIsReadUnderItsLockBeforeTheArrayIsMade) {
    script::always("x_svl_get_num_rec_by_brdcst_type", counts(2));
    script::answer("x_svl_get_rec_by_brdcst_type", reads(kind.sample));
    jbyteArray bytes = get_list(); // the second read leaves its record as it is: zero
    Bytes expected = kind.sample;
    expected.resize(2 * expected.size());
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes_in(bytes), expected);
    EXPECT_EQ(journal(), joined(call("open(1, 0, 0)"), call("read_lock(@1)"),
                                call("get_num_rec_by_brdcst_type(@1, 0, 0xffffffff)"),
                                call("get_rec_by_brdcst_type(@1, 0, 0xffffffff, 0)"),
                                call("get_rec_by_brdcst_type(@1, 0, 0xffffffff, 1)"), call("read_unlock(@1)"),
                                call("close(@1)"), Lines{"NewByteArray(1104)", "SetByteArrayRegion(0, 1104)"}));
}

TEST_F(ServiceReads, AListThatDoesNotFitInMemoryIsNullWithALine) {
    script::always("x_svl_get_num_rec_by_brdcst_type", counts(3));
    script::always("x_svl_get_num_rec_by_ts", counts(3));
    const std::string line = kJniLine + "sa_svl_buffer malloc fail";
    for (const bool by_stream : {false, true}) {
        for (const bool logged : {true, false}) {
            log_level(logged ? "D" : "");
            jni.clear_journal();
            {
                const FailingAllocation of_the_buffer(1);
                EXPECT_EQ(by_stream ? com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord(jni.env(),
                                                                                                          nullptr, 1, 7)
                                    : get_list(),
                          nullptr);
            }
            const Lines counted = call(by_stream ? "get_num_rec_by_ts(@1, 1, 7, 0xffffffff)"
                                                 : "get_num_rec_by_brdcst_type(@1, 0, 0xffffffff)");
            EXPECT_EQ(journal(), joined(call("open(1, 0, 0)"), call("read_lock(@1)"), counted,
                                        logged ? Lines{line} : Lines{}, call("read_unlock(@1)"), call("close(@1)")));
        }
    }
}

TEST_F(ServiceReads, AListIsNullWithALineWhenOneRecordCannotBeRead) {
    log_level("D");
    script::always("x_svl_get_num_rec_by_brdcst_type", counts(3));
    script::answer("x_svl_get_rec_by_brdcst_type", reads(kind.sample));
    script::answer("x_svl_get_rec_by_brdcst_type", fails());
    EXPECT_EQ(get_list(), nullptr);
    EXPECT_EQ(jni.journal_with("fail ret"), Lines{kJniLine + "get_svl_list_info getInfoByIdx fail ret=-22 "});
    EXPECT_EQ(jni.journal_with("get_rec_by").size(), 2U);
    EXPECT_EQ(jni.journal_with("_close("), call("close(@1)"));
}

} // namespace
