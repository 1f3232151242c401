// Lack of memory: for each call, every single allocation fails in turn, and the list storage stays usable.
#include "each_failure.h"
#include "failing_memory.h"
#include "services/status.h"

#include <optional>
#include <sqlite3.h>

namespace {

sqlite3_mem_methods usual_memory;

// SQLite takes its memory functions before it is first used.
const int configured = [] {
    sqlite3_shutdown();
    sqlite3_config(SQLITE_CONFIG_GETMALLOC, &usual_memory);
    sqlite3_mem_methods failing = usual_memory;
    failing.xMalloc = [](int bytes) { return FailingMemory::next_fails() ? nullptr : usual_memory.xMalloc(bytes); };
    failing.xRealloc = [](void* memory, int bytes) {
        return FailingMemory::next_fails() ? nullptr : usual_memory.xRealloc(memory, bytes);
    };
    return sqlite3_config(SQLITE_CONFIG_MALLOC, &failing);
}();

class Memory : public EachFailure {
protected:
    void SetUp() override {
        ASSERT_EQ(configured, SQLITE_OK);
        EachFailure::SetUp();
    }
    void fail(long number, bool later_too) override { memory_.emplace(static_cast<int>(number - 1), later_too); }
    bool end_failures() override {
        const bool failed = memory_->has_failed();
        memory_.reset();
        return failed;
    }
    bool is_expected(MwStatus failure) const override { return failure == kHostOutOfMemory; }

private:
    std::optional<FailingMemory> memory_;
};

} // namespace

TEST_F(Memory, RunsOutInAnOpen) {
    MwdbHandle handle = 0;
    fail_each([] {}, [&] { return x_nwl_open(1, 0, 0, &handle); });
}

TEST_F(Memory, RunsOutInACreate) {
    MwdbHandle handle = 0;
    fail_each([] { opened<Networks>(1); },
              [&] { return x_nwl_create("three", 3, kMwCreateMode, kMwCreateGrowth, 0, 0, &handle); });
}

TEST_F(Memory, RunsOutInACleanOrADelete) {
    fail_each([](MwdbHandle list) { return x_nwl_clean(list); });
    fail_each([](MwdbHandle list) { return x_nwl_delete(list); });
}

TEST_F(Memory, RunsOutInACopy) {
    fail_each([&](MwdbHandle list) { return x_nwl_copy_date(list, other_); });
}

TEST_F(Memory, RunsOutInALoad) {
    const std::string path = file();
    fail_each([&](MwdbHandle list) { return x_nwl_fs_sync(list, kMwRootDrive, path.c_str(), 1); }, {false});
}

TEST_F(Memory, RunsOutInAStore) {
    const std::string path = file();
    fail_each([&](MwdbHandle list) { return x_nwl_fs_store(list, path.c_str(), 1); }, {false});
}

TEST_F(Memory, RunsOutInAnAdd) {
    fail_each([](MwdbHandle list) { return add<Networks>(list, 40, 0x44); });
}

TEST_F(Memory, RunsOutInAnUpdate) {
    fail_each([](MwdbHandle list) {
        auto record = record_of<Networks>(3, 0x44);
        return x_nwl_update_rec(list, &record, kMwUpdatePlain);
    });
}

TEST_F(Memory, RunsOutInARemoval) {
    fail_each([](MwdbHandle list) { return x_nwl_del_rec(list, 3); });
}

TEST_F(Memory, RunsOutInAReadByIdOrByIndex) {
    _NWL_REC_T record{};
    std::int32_t version = 0;
    fail_each([&](MwdbHandle list) { return x_nwl_get_rec(list, 3, &record, &version); });
    fail_each([&](MwdbHandle list) { return x_nwl_get_rec_by_rec_idx(list, 2, &record, &version); });
}

TEST_F(Memory, RunsOutInACountOrAQuery) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    fail_each([&](MwdbHandle list) { return x_nwl_get_num_rec(list, &number, &version); });
    fail_each([&](MwdbHandle list) { return x_nwl_qry_rec_id(list, kMwQueryHighestRecordId, &number); });
    fail_each([&](MwdbHandle list) { return x_nwl_qry_rec_id(list, kMwQueryNextRecordId, &number); });
}
