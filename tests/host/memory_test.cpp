// Lack of memory: for each call, every single allocation fails in turn, and the list storage stays usable.
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <new>
#include <sqlite3.h>

using namespace tavro;

namespace fs = std::filesystem;

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

class Memory : public Workspace {
protected:
    // Storage before each call: lists 1 and 2, and a list file.
    void SetUp() override {
        ASSERT_EQ(configured, SQLITE_OK);
        fill(created<Networks>(1), {{1, 17}, {3, 51}, {2, 34}});
        fill(created<Networks>(2), {{7, 119}});
        fill(created<Networks>(9), {{8, 136}, {4, 68}});
        ASSERT_EQ(x_nwl_fs_store(opened<Networks>(9), file().c_str(), 9), kMwOk);
        restart();
        database_ = read_file(home() + "/lists.db");
        list_file_ = read_file(file());
    }

    std::string file() const { return path("list"); }

    static void fill(MwdbHandle handle, const Contents& records) {
        for (const auto& [id, fill] : records) {
            ASSERT_EQ(add<Networks>(handle, static_cast<std::uint16_t>(id), static_cast<unsigned char>(fill)), kMwOk);
        }
    }

    // Everything that is stored, as text.
    std::string stored() const {
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open((home() + "/lists.db").c_str(), &database), SQLITE_OK);
        std::string all;
        const auto take = [](void* text, int columns, char** values, char**) {
            for (int i = 0; i < columns; ++i) {
                *static_cast<std::string*>(text) += values[i] == nullptr ? "none " : std::string(values[i]) + " ";
            }
            return 0;
        };
        for (const char* table : {"SELECT number, name, version, next_position FROM lists ORDER BY number",
                                  "SELECT number, position, hex(bytes) FROM records ORDER BY number"}) {
            EXPECT_EQ(sqlite3_exec(database, table, take, &all, nullptr), SQLITE_OK);
        }
        // Succeeds only if no transaction is open, neither for writing nor for reading.
        int frames = 0;
        EXPECT_EQ(sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_TRUNCATE, &frames, nullptr),
                  SQLITE_OK);
        sqlite3_close(database);
        return all;
    }

    static Contents contents_of(std::uint16_t list) {
        MwdbHandle handle = 0;
        const MwStatus status = x_nwl_open(list, 0, 0, &handle);
        if (status != kMwOk) {
            return {{-1, status}};
        }
        const Contents all = contents<Networks>(handle);
        x_nwl_close(handle);
        return all;
    }
    static std::vector<Contents> all_contents() { return {contents_of(1), contents_of(2), contents_of(3)}; }

    void start_over() {
        restart();
        fs::remove(home() + "/lists.db-wal");
        write_file(home() + "/lists.db", database_);
        write_file(file(), list_file_);
    }

    // Makes the call again and again, on the same storage, until no more allocation fails; `later_too` says whether all
    // allocations after the failed one fail, too. `prepare` runs before each and is not disturbed.
    void fail_each_allocation(const std::function<void()>& prepare, const std::function<MwStatus()>& call,
                              const std::vector<bool>& later = {false, true}) {
        start_over();
        prepare();
        const std::string before = stored();
        const std::vector<Contents> read_before = all_contents();
        ASSERT_EQ(call(), kMwOk);
        const std::string after = stored();
        const std::string file_after = read_file(file());
        const std::vector<Contents> read_after = all_contents();
        for (const bool later_too : later) {
            bool failed = true;
            for (long number = 1; failed; number += later_too ? 3 : 1) {
                SCOPED_TRACE("allocation " + std::to_string(number) + (later_too ? " and all later ones" : ""));
                start_over();
                prepare();
                Allocations::fail(number, later_too);
                const MwStatus status = call();
                failed = Allocations::disarm();
                // SQLite does without some allocations.
                ASSERT_TRUE(status == kMwOk || (failed && status == kHostOutOfMemory)) << status;
                ASSERT_EQ(all_contents(), status == kMwOk ? read_after : read_before);
                ASSERT_EQ(stored(), status == kMwOk ? after : before);
                ASSERT_EQ(read_file(file()), status == kMwOk ? file_after : list_file_);
                if (status != kMwOk) {
                    ASSERT_EQ(call(), kMwOk);
                    ASSERT_EQ(stored(), after);
                }
                ASSERT_LT(number, 20000);
            }
        }
    }

    // The same for a call that gets a handle of list 1, with its records in memory and without.
    void fail_each_allocation(const std::function<MwStatus(MwdbHandle)>& call,
                              const std::vector<bool>& in_memory_or_not = {false, true}) {
        MwdbHandle handle = 0;
        for (const bool in_memory : in_memory_or_not) {
            SCOPED_TRACE(in_memory ? "records in memory" : "records not read");
            fail_each_allocation(
                [&] {
                    handle = opened<Networks>(1);
                    other_ = opened<Networks>(2);
                    if (in_memory) {
                        contents<Networks>(handle);
                        contents<Networks>(other_);
                    }
                },
                [&] { return call(handle); }, in_memory ? std::vector<bool>{false} : std::vector<bool>{false, true});
        }
    }

    MwdbHandle other_ = 0; // of list 2

private:
    std::string database_;
    std::string list_file_;
};

} // namespace

TEST_F(Memory, RunsOutInAnOpen) {
    MwdbHandle handle = 0;
    fail_each_allocation([] {}, [&] { return x_nwl_open(1, 0, 0, &handle); });
}

TEST_F(Memory, RunsOutInACreate) {
    MwdbHandle handle = 0;
    fail_each_allocation([] { opened<Networks>(1); },
                         [&] { return x_nwl_create("three", 3, kMwCreateMode, kMwCreateGrowth, 0, 0, &handle); });
}

TEST_F(Memory, RunsOutInACleanOrADelete) {
    fail_each_allocation([](MwdbHandle list) { return x_nwl_clean(list); });
    fail_each_allocation([](MwdbHandle list) { return x_nwl_delete(list); });
}

TEST_F(Memory, RunsOutInACopy) {
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_copy_date(list, other_); });
}

TEST_F(Memory, RunsOutInALoad) {
    const std::string path = file();
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_fs_sync(list, kMwRootDrive, path.c_str(), 1); }, {false});
}

TEST_F(Memory, RunsOutInAStore) {
    const std::string path = file();
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_fs_store(list, path.c_str(), 1); }, {false});
}

TEST_F(Memory, RunsOutInAnAdd) {
    fail_each_allocation([](MwdbHandle list) { return add<Networks>(list, 40, 0x44); });
}

TEST_F(Memory, RunsOutInAnUpdate) {
    fail_each_allocation([](MwdbHandle list) {
        auto record = record_of<Networks>(3, 0x44);
        return x_nwl_update_rec(list, &record, kMwUpdatePlain);
    });
}

TEST_F(Memory, RunsOutInARemoval) {
    fail_each_allocation([](MwdbHandle list) { return x_nwl_del_rec(list, 3); });
}

TEST_F(Memory, RunsOutInAReadByIdOrByIndex) {
    _NWL_REC_T record{};
    std::int32_t version = 0;
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_get_rec(list, 3, &record, &version); });
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_get_rec_by_rec_idx(list, 2, &record, &version); });
}

TEST_F(Memory, RunsOutInACountOrAQuery) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_get_num_rec(list, &number, &version); });
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_qry_rec_id(list, kMwQueryHighestRecordId, &number); });
    fail_each_allocation([&](MwdbHandle list) { return x_nwl_qry_rec_id(list, kMwQueryNextRecordId, &number); });
}

TEST_F(Memory, RunsOutInALockAnUnlockOrAClose) {
    fail_each_allocation([](MwdbHandle list) {
        const MwStatus status = x_nwl_lock(list);
        return status == kMwOk ? x_nwl_unlock(list) : status;
    });
    fail_each_allocation([](MwdbHandle list) {
        const MwStatus status = x_nwl_read_lock(list);
        return status == kMwOk ? x_nwl_read_unlock(list) : status;
    });
    fail_each_allocation([](MwdbHandle list) {
        const MwStatus status = x_nwl_close(list);
        return status == kHostBadHandle ? kMwOk : status; // closed before memory ran out
    });
}
