// Failing files: for each call, every operation that changes a file fails in turn, SQLite's and the stand-ins' own.
#include "each_failure.h"
#include "file_calls.h"
#include "services/status.h"

#include <cerrno>

namespace {

class FileFaults : public EachFailure, public ::testing::WithParamInterface<int> {
protected:
    void fail(long number, bool later_too) override {
        FileCalls::fail_change(static_cast<int>(number), GetParam(), later_too);
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
