// Lack of memory: for each call, every single allocation fails in turn, and the list storage stays usable.
#include "each_failure.h"
#include "services/status.h"

#include <cstdlib>
#include <new>
#include <sqlite3.h>

namespace {

// Counts the allocations of C++ and of SQLite while it is armed, and fails one of them, or this one and all later ones.
class Allocations {
public:
    static void fail(long number, bool later_too) {
        left = number;
        all_later = later_too;
    }
    // Returns whether an allocation failed.
    static bool disarm() {
        const bool reached = left <= 0;
        left = kUnarmed;
        return reached;
    }
    static bool next_fails() {
        if (left == kUnarmed) {
            return false;
        }
        --left;
        return left == 0 || (left < 0 && all_later);
    }

private:
    static constexpr long kUnarmed = 1'000'000'000;
    static inline thread_local long left = kUnarmed;
    static inline thread_local bool all_later = false;
};

sqlite3_mem_methods usual_memory;

// SQLite takes its memory functions before it is first used.
const int configured = [] {
    sqlite3_shutdown();
    sqlite3_config(SQLITE_CONFIG_GETMALLOC, &usual_memory);
    sqlite3_mem_methods failing = usual_memory;
    failing.xMalloc = [](int bytes) { return Allocations::next_fails() ? nullptr : usual_memory.xMalloc(bytes); };
    failing.xRealloc = [](void* memory, int bytes) {
        return Allocations::next_fails() ? nullptr : usual_memory.xRealloc(memory, bytes);
    };
    return sqlite3_config(SQLITE_CONFIG_MALLOC, &failing);
}();

void* allocate(std::size_t bytes) {
    void* const memory = Allocations::next_fails() ? nullptr : std::malloc(bytes == 0 ? 1 : bytes);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

void* operator new(std::size_t bytes) { return allocate(bytes); }
void* operator new[](std::size_t bytes) { return allocate(bytes); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

class Memory : public EachFailure {
protected:
    void SetUp() override {
        ASSERT_EQ(configured, SQLITE_OK);
        EachFailure::SetUp();
    }
    void fail(long number, bool later_too) override { Allocations::fail(number, later_too); }
    bool end_failures() override { return Allocations::disarm(); }
    bool is_expected(MwStatus failure) const override { return failure == kHostOutOfMemory; }
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
