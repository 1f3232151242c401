#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvTransportStreamList.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/record_filter.h"
#include "script.h"
#include "scripted_test.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace script = tavro::script;

namespace {

using Lines = std::vector<std::string>;

class RecordFilter : public tavro::test::ScriptedTest {
protected:
    RecordFilter() {
        TslKind::handles().clear();
        NwlKind::handles().clear();
        chList = &manager;
        service.t_header.ui2_tsl_id = 3;
        service.t_header.ui2_tsl_rec_id = 17;
        service.t_header.ui2_nwl_id = 4;
        service.t_header.ui2_nwl_rec_id = 18;
    }
    ~RecordFilter() override {
        chList = nullptr;
        TslKind::handles().clear();
        NwlKind::handles().clear();
    }

    // Scripts the 16-bit number at `offset` of the record that `call` reads.
    static void record(const std::string& call, std::size_t offset, std::uint16_t number, MwStatus status = kMwOk) {
        script::Answer answer;
        answer.status = status;
        answer.record.resize(offset + sizeof(number));
        std::memcpy(answer.record.data() + offset, &number, sizeof(number));
        script::always(call, answer);
    }

    NativeVltTvChannelList manager;
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

TEST_F(RecordFilter, ByTransportStreamComparesTheIdOfTheStreamRecordThatTheServicePointsAt) {
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_EQ(script::lines(), (Lines{"x_tsl_open(3, 0, 0)", "x_tsl_get_rec(0x20003, 17)", "x_tsl_close(0x20003)"}));
    EXPECT_FALSE(IsMatchCondition(1, 1102, service));
    EXPECT_FALSE(IsMatchCondition(1, 1101 + 65536, service));
}

TEST_F(RecordFilter, ByNetworkComparesTheIdOfTheNetworkRecordThatTheServicePointsAt) {
    record("x_nwl_get_rec", 10, 8468);
    EXPECT_TRUE(IsMatchCondition(2, 8468, service));
    EXPECT_EQ(script::lines(), (Lines{"x_nwl_open(4, 0, 0)", "x_nwl_get_rec(0x30004, 18)", "x_nwl_close(0x30004)"}));
    EXPECT_FALSE(IsMatchCondition(2, 8469, service));
}

TEST_F(RecordFilter, ARecordThatCannotBeReadDoesNotMatchEvenWithTheWantedId) {
    record("x_tsl_get_rec", 16, 0, -30);
    EXPECT_FALSE(IsMatchCondition(1, 0, service));
    record("x_nwl_get_rec", 10, 0, -30);
    EXPECT_FALSE(IsMatchCondition(2, 0, service));
}

TEST_F(RecordFilter, OpensWithTheChannelListsStoragePathWhenItHasOne) {
    manager.setPath("/data/svl");
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    record("x_nwl_get_rec", 10, 8468);
    EXPECT_TRUE(IsMatchCondition(2, 8468, service));
    EXPECT_EQ(script::lines(),
              (Lines{"x_tsl_open(3, 0, 0)", "x_tsl_fs_sync(0x20003, 0, \"/data/svl\", 3)", "x_tsl_get_rec(0x20003, 17)",
                     "x_tsl_close(0x20003)", "x_nwl_open(4, 0, 0)", "x_nwl_fs_sync(0x30004, 0, \"/data/svl\", 4)",
                     "x_nwl_get_rec(0x30004, 18)", "x_nwl_close(0x30004)"}));
}

TEST_F(RecordFilter, AListThatIsOpenIsServedFromTheMapOnceAndThenOpenedAgain) {
    TslKind::handles().insert(3, 0x77);
    TslKind::handles().insert(9, 0x99);
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_EQ(script::lines(), (Lines{"x_tsl_get_rec(0x77, 17)", "x_tsl_close(0x77)", "x_tsl_close(0x99)",
                                      "x_tsl_open(3, 0, 0)", "x_tsl_get_rec(0x20003, 17)", "x_tsl_close(0x20003)"}));
}

TEST_F(RecordFilter, AFailedOpenDoesNotKeepTheReadFromBeingTried) {
    script::answer("x_tsl_open", {-5, {}, {}, 0, {}});
    script::answer("x_tsl_create", {-5, {}, {}, 0, {}});
    record("x_tsl_get_rec", 16, 1101);
    EXPECT_TRUE(IsMatchCondition(1, 1101, service));
    EXPECT_EQ(script::lines(), (Lines{"x_tsl_open(3, 0, 0)", "x_tsl_create(\"fs_Tsl_2\", 3, 1, 16, 0, 0)",
                                      "x_tsl_open(3, 0, 0)", "x_tsl_get_rec(0x20003, 17)", "x_tsl_close(0x20003)"}));
}

} // namespace
