// The scripted platform: its journal, its replies, and its defaults.
#include "middleware/channel_id.h"
#include "middleware/files.h"
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"
#include "script.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <cstring>
#include <future>
#include <gtest/gtest.h>
#include <thread>

using namespace tavro;

namespace {

namespace script = tavro::script;
using Lines = std::vector<std::string>;

class Script : public ::testing::Test {
protected:
    Script() { script::reset(); }
    ~Script() override { script::reset(); }

    static std::string get(const char* name, const char* default_value) {
        char value[PROPERTY_VALUE_MAX];
        const int length = property_get(name, value, default_value);
        EXPECT_EQ(length, static_cast<int>(std::strlen(value)));
        return value;
    }

    MwdbHandle handle = 0;
    std::int32_t version = -1;
    std::uint16_t number = 77;
};

} // namespace

TEST_F(Script, JournalsEveryServiceListCall) {
    _SVL_REC_T record{};
    EXPECT_EQ(x_svl_open(1, 0, 0, &handle), kMwOk);
    EXPECT_EQ(handle, 0x10001u);
    EXPECT_EQ(x_svl_create("fs_Svl_0", 2, 1, 16, 0, 0, &handle), kMwOk);
    EXPECT_EQ(handle, 0x10002u);
    x_svl_close(0x10001);
    x_svl_delete(0x10001);
    x_svl_clean(0x10001);
    x_svl_copy_date(0x10001, 0x10002);
    x_svl_fs_sync(0x10001, 0, "/data/list", 1);
    x_svl_fs_store(0x10001, "/data/list", 1);
    x_svl_lock(0x10001);
    x_svl_unlock(0x10001);
    x_svl_read_lock(0x10001);
    x_svl_read_unlock(0x10001);
    EXPECT_EQ(x_svl_qry_rec_id(0x10001, 3, &number), kMwOk);
    EXPECT_EQ(number, 1);
    x_svl_add_rec(0x10001, &record);
    x_svl_add_rec(0x10001, nullptr);
    x_svl_update_rec(0x10001, &record, 0);
    x_svl_del_rec(0x10001, 17);
    x_svl_get_rec(0x10001, 17, &record, &version);
    x_svl_get_rec_by_brdcst_type(0x10001, 0, 0xFFFFFFFF, 3, &record, &version);
    x_svl_get_rec_by_ts(0x10001, 1, 5, 0xFFFFFFFF, 3, &record, &version);
    x_svl_get_num_rec_by_brdcst_type(0x10001, 0, 0xFFFFFFFF, &number, &version);
    x_svl_get_num_rec_by_ts(0x10001, 1, 5, 0xFFFFFFFF, &number, &version);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(version, 0);
    EXPECT_EQ(script::lines(), (Lines{"x_svl_open(1, 0, 0)",
                                      "x_svl_create(\"fs_Svl_0\", 2, 1, 16, 0, 0)",
                                      "x_svl_close(0x10001)",
                                      "x_svl_delete(0x10001)",
                                      "x_svl_clean(0x10001)",
                                      "x_svl_copy_date(0x10001, 0x10002)",
                                      "x_svl_fs_sync(0x10001, 0, \"/data/list\", 1)",
                                      "x_svl_fs_store(0x10001, \"/data/list\", 1)",
                                      "x_svl_lock(0x10001)",
                                      "x_svl_unlock(0x10001)",
                                      "x_svl_read_lock(0x10001)",
                                      "x_svl_read_unlock(0x10001)",
                                      "x_svl_qry_rec_id(0x10001, 3)",
                                      "x_svl_add_rec(0x10001, record)",
                                      "x_svl_add_rec(0x10001, null)",
                                      "x_svl_update_rec(0x10001, record, 0)",
                                      "x_svl_del_rec(0x10001, 17)",
                                      "x_svl_get_rec(0x10001, 17)",
                                      "x_svl_get_rec_by_brdcst_type(0x10001, 0, 0xffffffff, 3)",
                                      "x_svl_get_rec_by_ts(0x10001, 1, 5, 0xffffffff, 3)",
                                      "x_svl_get_num_rec_by_brdcst_type(0x10001, 0, 0xffffffff)",
                                      "x_svl_get_num_rec_by_ts(0x10001, 1, 5, 0xffffffff)"}));
}

TEST_F(Script, JournalsTheOtherKindsUnderTheirNames) {
    _TSL_REC_T stream{};
    _NWL_REC_T network{};
    _SATL_REC_T satellite{};
    x_tsl_open(3, 0, 0, &handle);
    EXPECT_EQ(handle, 0x20003u);
    x_nwl_open(3, 0, 0, &handle);
    EXPECT_EQ(handle, 0x30003u);
    x_satl_open(3, 0, 0, &handle);
    EXPECT_EQ(handle, 0x40003u);
    x_tsl_delete(handle);
    x_nwl_update_rec(handle, &network, 1);
    x_satl_get_rec(handle, 2, &satellite, &version);
    x_tsl_get_rec_by_rec_idx(handle, 4, &stream, &version);
    x_tsl_get_num_recs(handle, &number, &version);
    x_tsl_get_rec_by_sat(handle, 65535, 1, 2, 3, &stream, &version);
    x_tsl_get_num_rec_by_sat(handle, 65535, 1, 2, &number, &version);
    x_nwl_get_rec_by_rec_idx(handle, 4, &network, &version);
    x_nwl_get_num_rec(handle, &number, &version);
    x_satl_get_rec_by_rec_idx(handle, -4, &satellite, &version);
    x_satl_get_num_recs(handle, &number, &version);
    EXPECT_EQ(script::lines(),
              (Lines{"x_tsl_open(3, 0, 0)", "x_nwl_open(3, 0, 0)", "x_satl_open(3, 0, 0)", "x_tsl_delete(0x40003)",
                     "x_nwl_update_rec(0x40003, record, 1)", "x_satl_get_rec(0x40003, 2)",
                     "x_tsl_get_rec_by_rec_idx(0x40003, 4)", "x_tsl_get_num_recs(0x40003)",
                     "x_tsl_get_rec_by_sat(0x40003, 65535, 1, 2, 3)", "x_tsl_get_num_rec_by_sat(0x40003, 65535, 1, 2)",
                     "x_nwl_get_rec_by_rec_idx(0x40003, 4)", "x_nwl_get_num_rec(0x40003)",
                     "x_satl_get_rec_by_rec_idx(0x40003, -4)", "x_satl_get_num_recs(0x40003)"}));
}

TEST_F(Script, JournalsFilesChannelIdsAndLogLines) {
    std::uint32_t words[3] = {9, 9, 9};
    EXPECT_EQ(fs_raw_init(0, "/cache/x"), kMwOk);
    EXPECT_EQ(fs_raw_qry_fpath(0, "/cache/x", &words[0], &words[1], &words[2]), kMwOk);
    EXPECT_EQ(fs_raw_copy(0, "a", 0, "b"), kMwOk);
    EXPECT_EQ(x_fm_delete_file(0, nullptr), kMwOk);
    EXPECT_EQ(x_sb_gen_channel_id(1, -2, 3), 0u);
    EXPECT_EQ(x_sb_get_channel_index(4000000000u), 0);
    EXPECT_EQ(__android_log_print(3, "TAG", "number %d\n", 7), 1);
    EXPECT_EQ(__android_log_print(6, nullptr, "text"), 1);
    EXPECT_EQ(words[0] + words[1] + words[2], 0u);
    EXPECT_EQ(script::lines(),
              (Lines{"fs_raw_init(0, \"/cache/x\")", "fs_raw_qry_fpath(0, \"/cache/x\")",
                     "fs_raw_copy(0, \"a\", 0, \"b\")", "x_fm_delete_file(0, null)", "x_sb_gen_channel_id(1, -2, 3)",
                     "x_sb_get_channel_index(4000000000)", "log 3 TAG: number 7\n", "log 6 -: text"}));
}

TEST_F(Script, KeepsTheRecordsThatAreHandedIn) {
    _NWL_REC_T record;
    std::memset(&record, 0x5A, sizeof record);
    x_nwl_add_rec(1, &record);
    x_nwl_del_rec(1, 2);
    std::memset(&record, 0, sizeof record);
    const std::vector<script::Entry> journal = script::journal();
    ASSERT_EQ(journal.size(), 2u);
    EXPECT_EQ(journal[0].record, std::vector<std::byte>(304, std::byte{0x5A}));
    EXPECT_EQ(journal[1].record, std::vector<std::byte>());
}

TEST_F(Script, QueuedAnswersComeFirstThenTheLastingOne) {
    script::always("x_svl_lock", {-3});
    script::answer("x_svl_lock", {-1});
    script::answer("x_svl_lock", {-2});
    EXPECT_EQ(x_svl_lock(1), -1);
    EXPECT_EQ(x_svl_lock(1), -2);
    EXPECT_EQ(x_svl_lock(1), -3);
    EXPECT_EQ(x_svl_lock(1), -3);
    EXPECT_EQ(x_svl_unlock(1), kMwOk);
}

TEST_F(Script, OutValuesNeedSuccessOrAValueOfTheirOwn) {
    handle = 5;
    script::answer("x_svl_open", {-1});
    EXPECT_EQ(x_svl_open(1, 0, 0, &handle), -1);
    EXPECT_EQ(handle, 5u);
    script::answer("x_svl_open", {0, 0});
    EXPECT_EQ(x_svl_open(1, 0, 0, &handle), kMwOk);
    EXPECT_EQ(handle, 0u);
    script::answer("x_nwl_qry_rec_id", {-6, 0});
    EXPECT_EQ(x_nwl_qry_rec_id(1, 2, &number), -6);
    EXPECT_EQ(number, 0);
    script::answer("x_nwl_get_num_rec", {0, 40000, {}, 12});
    EXPECT_EQ(x_nwl_get_num_rec(1, &number, &version), kMwOk);
    EXPECT_EQ(number, 40000);
    EXPECT_EQ(version, 12);
    script::answer("x_nwl_get_num_rec", {-1});
    EXPECT_EQ(x_nwl_get_num_rec(1, &number, &version), -1);
    EXPECT_EQ(number, 40000);
    EXPECT_EQ(version, 12);
}

TEST_F(Script, RecordsComeWhateverTheStatus) {
    _NWL_REC_T record;
    std::memset(&record, 0x11, sizeof record);
    x_nwl_get_rec(1, 2, &record, &version);
    EXPECT_EQ(record.ui4_nwl_flags, 0x11111111u);
    script::answer("x_nwl_get_rec", {-1, {}, std::vector<std::byte>(4, std::byte{0x22})});
    EXPECT_EQ(x_nwl_get_rec(1, 2, &record, &version), -1);
    EXPECT_EQ(record.ui4_nwl_flags, 0x22222222u);
    EXPECT_EQ(record.ui2_nwl_rec_id, 0x1111u);
    script::answer("x_nwl_get_rec", {0, {}, std::vector<std::byte>(1000, std::byte{0x33})});
    EXPECT_EQ(x_nwl_get_rec(1, 2, &record, &version), kMwOk);
    EXPECT_EQ(record.aui1_reserved_45[258], 0x33);
}

TEST_F(Script, AnswersForFilesChannelIdsAndTheLog) {
    std::uint32_t words[3] = {};
    script::answer("fs_raw_qry_fpath", {0, {}, {}, 0, {7, 8, 9}});
    fs_raw_qry_fpath(0, "x", &words[0], &words[1], &words[2]);
    EXPECT_EQ(words[0] * 100 + words[1] * 10 + words[2], 789u);
    script::answer("fs_raw_qry_fpath", {-8, {}, {}, 0, {1, 1, 1}});
    EXPECT_EQ(fs_raw_qry_fpath(0, "x", &words[0], &words[1], &words[2]), -8);
    EXPECT_EQ(words[0], 7u);
    script::answer("fs_raw_init", {-1});
    EXPECT_EQ(fs_raw_init(0, "x"), -1);
    script::answer("fs_raw_copy", {-2});
    EXPECT_EQ(fs_raw_copy(0, "x", 0, "y"), -2);
    script::answer("x_fm_delete_file", {-3});
    EXPECT_EQ(x_fm_delete_file(0, "x"), -3);
    script::answer("x_sb_gen_channel_id", {0, 0xFFFFFFFF});
    EXPECT_EQ(x_sb_gen_channel_id(1, 2, 3), 0xFFFFFFFFu);
    script::answer("x_sb_get_channel_index", {0, 6});
    EXPECT_EQ(x_sb_get_channel_index(1), 6);
    script::answer("__android_log_print", {-4});
    EXPECT_EQ(__android_log_print(3, "TAG", "text"), -4);
}

TEST_F(Script, PropertiesAreJournaledOnRequestOnly) {
    script::set_property("name", "D");
    EXPECT_EQ(get("name", ""), "D");
    EXPECT_EQ(get("other", "default"), "default");
    EXPECT_EQ(script::lines(), Lines{});
    script::journal_properties(true);
    EXPECT_EQ(get("name", ""), "D");
    EXPECT_EQ(get("other", "default"), "default");
    EXPECT_EQ(get("other", nullptr), "");
    EXPECT_EQ(script::lines(), (Lines{"property_get(\"name\", \"\")", "property_get(\"other\", \"default\")",
                                      "property_get(\"other\", \"\")"}));
    script::set_property("name", std::string(100, 'x'));
    EXPECT_EQ(get("name", ""), std::string(91, 'x'));
}

TEST_F(Script, ResetForgetsEverything) {
    int seen = 0;
    script::observe([&](const std::string&) { ++seen; });
    script::observe_failures([&](MwStatus) { ++seen; });
    script::always("x_svl_lock", {-1});
    script::answer("x_svl_unlock", {-1});
    script::set_property("name", "D");
    script::journal_properties(true);
    x_svl_clean(1);
    EXPECT_EQ(seen, 1);
    script::reset();
    EXPECT_EQ(x_svl_lock(1), kMwOk);
    EXPECT_EQ(x_svl_unlock(1), kMwOk);
    EXPECT_EQ(get("name", ""), "");
    script::answer("x_svl_clean", {-1});
    x_svl_clean(1);
    EXPECT_EQ(script::lines(), (Lines{"x_svl_lock(0x1)", "x_svl_unlock(0x1)", "x_svl_clean(0x1)"}));
    EXPECT_EQ(seen, 1);
}

TEST_F(Script, AnObserverOfFailuresGetsEachFailedStatusAfterItsText) {
    Lines seen;
    script::observe([&](const std::string& text) { seen.push_back(text); });
    script::observe_failures([&](MwStatus status) { seen.push_back(std::to_string(status)); });
    script::answer("x_svl_clean", {-5});
    script::answer("fs_raw_init", {-12});
    x_svl_clean(1);
    x_svl_clean(2);
    fs_raw_init(0, "/data/list");
    EXPECT_EQ(seen, (Lines{"x_svl_clean(0x1)", "-5", "x_svl_clean(0x2)", "fs_raw_init(0, \"/data/list\")", "-12"}));
}

TEST_F(Script, CountsTheHandlesThatAreOpen) {
    using Handles = std::vector<std::uint32_t>;
    script::forget_handles();
    x_tsl_open(1, 0, 0, &handle);
    x_svl_create("fs_Svl_1", 2, 1, 16, 0, 0, &handle);
    x_svl_open(2, 0, 0, &handle);
    script::answer("x_svl_open", {-5, 0x10003});
    x_svl_open(3, 0, 0, &handle);
    script::answer("x_svl_open", {0, 0});
    x_svl_open(4, 0, 0, &handle);
    script::reset();
    EXPECT_EQ(script::open_handles(), (Handles{0x10002, 0x10002, 0x20001}));
    script::answer("x_tsl_close", {-5});
    x_tsl_close(0x20001);
    x_svl_close(0x10002);
    x_svl_close(0x10009);
    EXPECT_EQ(script::open_handles(), (Handles{0x10002, 0x20001}));
    x_svl_delete(0x10002);
    EXPECT_EQ(script::open_handles(), (Handles{0x20001}));
    script::forget_handles();
    EXPECT_EQ(script::open_handles(), Handles{});
}

TEST_F(Script, AnObserverCanHoldAThreadInsideACall) {
    std::promise<void> inside;
    std::promise<void> go_on;
    script::observe([&](const std::string& text) {
        if (text == "x_svl_lock(0x1)") {
            inside.set_value();
            go_on.get_future().wait();
        }
    });
    std::thread caller([] { x_svl_lock(1); });
    inside.get_future().wait();
    x_svl_unlock(2);
    EXPECT_EQ(script::lines(), (Lines{"x_svl_lock(0x1)", "x_svl_unlock(0x2)"}));
    go_on.set_value();
    caller.join();
}

TEST_F(Script, JournalsTheCallsOfManyThreads) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 100; ++n) {
                x_svl_lock(1);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(script::lines(), Lines(800, "x_svl_lock(0x1)"));
}
