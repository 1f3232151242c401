// Which services a filter by transport stream or by network keeps, and which lists it reads for that.

#include "every_native_test.h"
#include "jni/bridges/record_filter.h"
#include "record_calls.h"
#include "script.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

using namespace tavro;

namespace script = tavro::script;

namespace {

using tavro::test::Lines;

class RecordFilter : public tavro::test::EveryNativeTest {
protected:
    RecordFilter() {
        service.t_header.ui2_tsl_id = 3;
        service.t_header.ui2_tsl_rec_id = 17;
        service.t_header.ui2_nwl_id = 4;
        service.t_header.ui2_nwl_rec_id = 18;
    }

    // Makes `call` read a record with that 16-bit number at `offset`.
    static void record(const std::string& call, std::size_t offset, std::uint16_t number, MwStatus status = kMwOk) {
        script::Answer answer;
        answer.status = status;
        answer.record.resize(offset + sizeof(number));
        std::memcpy(answer.record.data() + offset, &number, sizeof(number));
        script::always(call, answer);
    }

    _SVL_REC_T service = {};
};

TEST_F(RecordFilter, KindZeroMatchesEveryRecord) {
    EXPECT_TRUE(IsMatchCondition(0, 0, service));
    EXPECT_TRUE(IsMatchCondition(0, 12345, service));
    EXPECT_EQ(script::lines(), Lines{});
}

TEST_F(RecordFilter, AnyOtherKindMatchesNone) {
    for (const int kind : {5, 3, -1}) {
        EXPECT_FALSE(IsMatchCondition(kind, 0, service)) << kind;
    }
    EXPECT_EQ(script::lines(), Lines{});
}

TEST_F(RecordFilter, ByTransportStreamComparesTheIdOfTheServicesStream) {
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_EQ(script::lines(), (Lines{"x_tsl_open(3, 0, 0)", "x_tsl_get_rec(0x20003, 17)", "x_tsl_close(0x20003)"}));
    EXPECT_FALSE(IsMatchCondition(1, 1102, service));
    EXPECT_FALSE(IsMatchCondition(1, 1101 + 65536, service));
}

TEST_F(RecordFilter, ByNetworkComparesTheIdOfTheServicesNetwork) {
    record("x_nwl_get_rec", 10, 8468);
    EXPECT_TRUE(IsMatchCondition(2, 8468, service));
    EXPECT_EQ(script::lines(), (Lines{"x_nwl_open(4, 0, 0)", "x_nwl_get_rec(0x30004, 18)", "x_nwl_close(0x30004)"}));
    EXPECT_FALSE(IsMatchCondition(2, 8469, service));
}

TEST_F(RecordFilter, ARecordThatCannotBeReadDoesNotMatch) {
    record("x_tsl_get_rec", 16, 0, -30);
    EXPECT_FALSE(IsMatchCondition(1, 0, service));
    record("x_nwl_get_rec", 10, 0, -30);
    EXPECT_FALSE(IsMatchCondition(2, 0, service));
}

TEST_F(RecordFilter, OpensListsFromTheServiceListsPathWhenItHasOne) {
    channels.setPath("/data/svl");
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    record("x_nwl_get_rec", 10, 8468);
    EXPECT_TRUE(IsMatchCondition(2, 8468, service));
    EXPECT_EQ(script::lines(),
              (Lines{"x_tsl_open(3, 0, 0)", "x_tsl_fs_sync(0x20003, 0, \"/data/svl\", 3)", "x_tsl_get_rec(0x20003, 17)",
                     "x_tsl_close(0x20003)", "x_nwl_open(4, 0, 0)", "x_nwl_fs_sync(0x30004, 0, \"/data/svl\", 4)",
                     "x_nwl_get_rec(0x30004, 18)", "x_nwl_close(0x30004)"}));
}

TEST_F(RecordFilter, AnOpenListIsReadOnceThenClosedAndOpenedAgain) {
    TslKind::handles().insert(3, 0x77);
    TslKind::handles().insert(9, 0x99);
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_EQ(script::lines(), (Lines{"x_tsl_get_rec(0x77, 17)", "x_tsl_close(0x77)", "x_tsl_close(0x99)",
                                      "x_tsl_open(3, 0, 0)", "x_tsl_get_rec(0x20003, 17)", "x_tsl_close(0x20003)"}));
}

TEST_F(RecordFilter, TheReadIsTriedAfterAFailedOpen) {
    script::answer("x_tsl_open", {-5, {}, {}, 0, {}});
    script::answer("x_tsl_create", {-5, {}, {}, 0, {}});
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_EQ(script::lines(), (Lines{"x_tsl_open(3, 0, 0)", "x_tsl_create(\"fs_Tsl_2\", 3, 1, 16, 0, 0)",
                                      "x_tsl_open(3, 0, 0)", "x_tsl_get_rec(0x20003, 17)", "x_tsl_close(0x20003)"}));
}

} // namespace
