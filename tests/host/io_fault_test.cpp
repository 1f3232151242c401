// Failing files: for each call, every operation that changes a file fails in turn, SQLite's and the stand-ins' own.
#include "each_failure.h"
#include "edited_database.h"
#include "file_calls.h"
#include "services/status.h"

#include <cerrno>

namespace {

class FileFaults : public EachFailure, public ::testing::WithParamInterface<int> {
protected:
    void fail(long number, bool later_too) override {
        FileCalls::fail_change(static_cast<int>(number), GetParam(), later_too ? 1 : 0);
    }
    bool end_failures() override { return FileCalls::end_failures(); }
    bool is_expected(MwStatus failure) const override {
        if (GetParam() == ENOSPC) {
            return failure == kHostStorageFull || failure == kHostStorageUnavailable;
        }
        return failure == kHostStorageUnavailable || failure == kHostCannotReadFile || failure == kHostCannotWriteFile;
    }

    const FileCalls calls_;
};

std::string error_name(const ::testing::TestParamInfo<int>& info) {
    return info.param == ENOSPC ? "NoSpace" : "BrokenDisk";
}

} // namespace

INSTANTIATE_TEST_SUITE_P(, FileFaults, ::testing::Values(EIO, ENOSPC), error_name);

TEST_P(FileFaults, HitAnOpenOrACreate) {
    MwdbHandle handle = 0;
    fail_each([] {}, [&] { return x_nwl_open(1, 0, 0, &handle); });
    fail_each([] { opened<Networks>(1); },
              [&] { return x_nwl_create("three", 3, kMwCreateMode, kMwCreateGrowth, 0, 0, &handle); });
}

TEST_P(FileFaults, HitACleanOrADelete) {
    fail_each([](MwdbHandle list) { return x_nwl_clean(list); });
    fail_each([](MwdbHandle list) { return x_nwl_delete(list); });
}

// A list that does not fit into the log is removed in steps. Only a full disk may end that half-way.
TEST_P(FileFaults, HitACleanOrADeleteOfALongListAgainAndAgain) {
    constexpr int kRecords = 1000;
    int partial = 0;
    for (const auto call : {x_nwl_clean, x_nwl_delete}) {
        for (int period = 4; period <= 120; period += 4) {
            SCOPED_TRACE(period);
            start_over();
            edit_database(home() + "/lists.db", "DELETE FROM records WHERE list_id = 1");
            insert_records<Networks>(home() + "/lists.db", 3, 1, 1, kRecords);
            const MwdbHandle list = opened<Networks>(1);
            FileCalls::fail_change(1, GetParam(), period);
            const MwStatus status = call(list);
            count_failure(end_failures());
            const Contents left = contents_of(1);
            const int records = left.empty() || left[0].first == -1 ? 0 : static_cast<int>(left.size());
            if (status == kMwOk) {
                EXPECT_EQ(records, 0);
                continue;
            }
            EXPECT_TRUE(is_expected(status)) << status;
            EXPECT_TRUE(records == kRecords || GetParam() == ENOSPC) << records;
            partial += records < kRecords ? 1 : 0;
            EXPECT_EQ(call(list), kMwOk);
        }
    }
    EXPECT_EQ(partial > 0, GetParam() == ENOSPC);
}

TEST_P(FileFaults, HitACopyALoadOrAStore) {
    const std::string path = file();
    fail_each([&](MwdbHandle list) { return x_nwl_copy_date(list, other_); });
    fail_each([&](MwdbHandle list) { return x_nwl_fs_sync(list, kMwRootDrive, path.c_str(), 1); });
    fail_each([&](MwdbHandle list) { return x_nwl_fs_store(list, path.c_str(), 1); });
}

TEST_P(FileFaults, HitAnAddAnUpdateOrARemoval) {
    fail_each([](MwdbHandle list) { return add<Networks>(list, 40, 0x44); });
    fail_each([](MwdbHandle list) {
        auto record = record_of<Networks>(3, 0x44);
        return x_nwl_update_rec(list, &record, kMwUpdatePlain);
    });
    fail_each([](MwdbHandle list) { return x_nwl_del_rec(list, 3); });
}
