// Reads are served from memory, and still see every earlier change by any process.
#include "changes.h"
#include "child_process.h"
#include "edited_database.h"
#include "kinds.h"
#include "services/control.h"
#include "services/status.h"
#include "workspace.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <map>
#include <random>
#include <sqlite3.h>

using namespace tavro;

namespace {

constexpr std::uint16_t kHighestIdUsed = 12;

// Ids of the records filled with `fill`, in list order, read with a filter of the kind.
template <class Kind>
std::vector<int> filtered(MwdbHandle, unsigned char) {
    return {};
}
template <class Kind, class Count, class Read>
std::vector<int> walk(Count count, Read read) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    EXPECT_EQ(count(&number, &version), kMwOk);
    std::vector<int> ids;
    for (std::uint16_t index = 0; index < number; ++index) {
        typename Kind::Record record{};
        EXPECT_EQ(read(index, &record, &version), kMwOk);
        ids.push_back(Kind::id_of(record));
    }
    return ids;
}
template <>
std::vector<int> filtered<Services>(MwdbHandle handle, unsigned char fill) {
    const auto both = static_cast<std::uint16_t>(fill << 8 | fill);
    return walk<Services>(
        [&](auto... out) { return x_svl_get_num_rec_by_ts(handle, both, both, kMwEveryNetworkMask, out...); },
        [&](auto... out) { return x_svl_get_rec_by_ts(handle, both, both, kMwEveryNetworkMask, out...); });
}
template <>
std::vector<int> filtered<TransportStreams>(MwdbHandle handle, unsigned char fill) {
    const auto both = static_cast<std::uint16_t>(fill << 8 | fill);
    return walk<TransportStreams>(
        [&](auto... out) { return x_tsl_get_num_rec_by_sat(handle, 0xFFFF, both, both, out...); },
        [&](auto... out) { return x_tsl_get_rec_by_sat(handle, 0xFFFF, both, both, out...); });
}
template <class Kind>
constexpr bool kHasFilter = std::is_same_v<Kind, Services> || std::is_same_v<Kind, TransportStreams>;

// Reads a record by id. Returns its fill byte, or the status.
template <class Kind>
int fill_of(MwdbHandle handle, std::uint16_t id) {
    typename Kind::Record record{};
    std::int32_t version = 0;
    const MwStatus status = Kind::get(handle, id, &record, &version);
    if (status != kMwOk) {
        return status;
    }
    const unsigned char fill = reinterpret_cast<const unsigned char*>(&record)[sizeof record - 1];
    EXPECT_EQ(bytes_of(record), bytes_of(record_of<Kind>(id, fill)));
    return fill;
}

template <class Kind>
class Freshness : public Workspace {
protected:
    Freshness() : other({"changes", Kind::kName}) {}

    void change(const std::string& line) { ASSERT_EQ(own.apply(line), kMwOk) << line; }
    void other_changes(const std::string& line) { ASSERT_EQ(other.ask(line), "0") << line; }

    // Checks the list with every kind of read, beginning with read number `first`: the first read has to detect the
    // change.
    static void expect_list(MwdbHandle handle, const Contents& all, int first = 0) {
        for (int read = 0; read < 5; ++read) {
            check(handle, all, (first + read) % 5);
        }
    }

    Changes<Kind> own;
    ChildProcess other; // makes changes on request

private:
    static void check(MwdbHandle handle, const Contents& all, int read) {
        SCOPED_TRACE("read " + std::to_string(read));
        std::uint16_t number = 0;
        std::int32_t version = 0;
        switch (read) {
        case 0:
            EXPECT_EQ(Kind::count(handle, &number, &version), kMwOk);
            EXPECT_EQ(number, all.size());
            break;
        case 1:
            for (std::uint16_t id = 0; id <= kHighestIdUsed; ++id) {
                const auto expected =
                    std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.first == id; });
                EXPECT_EQ(fill_of<Kind>(handle, id), expected == all.end() ? kHostNoSuchRecord : expected->second)
                    << id;
            }
            break;
        case 2:
            EXPECT_EQ(contents_by_index(handle, all.size()), all);
            break;
        case 3:
            for (const unsigned char fill :
                 {0x11, 0x22, 0x33, 0x11}) { // the next round starts with the last filter of this one
                std::vector<int> ids;
                for (const auto& [id, record_fill] : all) {
                    if (kHasFilter<Kind> && record_fill == fill) {
                        ids.push_back(id);
                    }
                }
                EXPECT_EQ(filtered<Kind>(handle, fill), ids);
            }
            break;
        default:
            std::uint16_t highest = 0;
            for (const auto& one : all) {
                highest = std::max(highest, static_cast<std::uint16_t>(one.first));
            }
            EXPECT_EQ(Kind::query(handle, kMwQueryHighestRecordId, &number), all.empty() ? kMwEmpty : kMwOk);
            EXPECT_EQ(number, highest);
            EXPECT_EQ(Kind::query(handle, kMwQueryNextRecordId, &number), kMwOk);
            EXPECT_EQ(number, highest + 1);
        }
    }

    // Reads by index without counting first.
    static Contents contents_by_index(MwdbHandle handle, std::size_t expected) {
        Contents all;
        typename Kind::Record record{};
        std::int32_t version = 0;
        for (std::uint16_t index = 0; Kind::get_at(handle, index, &record, &version) == kMwOk; ++index) {
            const unsigned char fill = reinterpret_cast<const unsigned char*>(&record)[sizeof record - 1];
            all.emplace_back(Kind::id_of(record), fill);
            if (all.size() > expected) {
                break;
            }
        }
        return all;
    }
};

TYPED_TEST_SUITE(Freshness, EveryKind, KindNames);

class ManyReaders : public Workspace {
protected:
    std::string database() const { return home() + "/lists.db"; }
};

// SQLite's default VFS without shared memory, and so without a write-ahead log.
class FileSystemWithoutSharedMemory {
public:
    FileSystemWithoutSharedMemory() : unshared_(*usual_) {
        unshared_.zName = "unshared";
        unshared_.xOpen = [](sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
            const int code = usual_->xOpen(usual_, name, file, flags, out_flags);
            if (code == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) {
                methods_ = *file->pMethods;
                methods_.iVersion = 1;
                file->pMethods = &methods_;
            }
            return code;
        };
        sqlite3_vfs_register(&unshared_, /*makeDflt*/ 1);
    }
    ~FileSystemWithoutSharedMemory() {
        tavro_host_reset(); // closes the files first
        sqlite3_vfs_unregister(&unshared_);
        sqlite3_vfs_register(usual_, /*makeDflt*/ 1);
    }
    FileSystemWithoutSharedMemory(const FileSystemWithoutSharedMemory&) = delete;
    FileSystemWithoutSharedMemory& operator=(const FileSystemWithoutSharedMemory&) = delete;

private:
    static inline sqlite3_vfs* const usual_ = sqlite3_vfs_find(nullptr);
    static inline sqlite3_io_methods methods_{};
    sqlite3_vfs unshared_;
};

} // namespace

// Every kind of change by the other process, followed by every kind of read in this one.
TYPED_TEST(Freshness, EveryChangeOfAnotherProcessIsSeenByTheNextRead) {
    const MwdbHandle handle = created<TypeParam>(1);
    this->change("create 2");
    this->change("add 2 9 51");
    this->change("store 2 " + this->path("file"));
    for (int first = 0; first < 5; ++first) {
        SCOPED_TRACE("first read " + std::to_string(first));
        this->change("clean 1");
        this->change("add 1 7 17");
        this->change("add 1 3 34");
        this->expect_list(handle, {{7, 0x11}, {3, 0x22}});
        this->other_changes("add 1 5 51");
        this->expect_list(handle, {{7, 0x11}, {3, 0x22}, {5, 0x33}}, first);
        this->other_changes("update 1 7 34");
        this->expect_list(handle, {{7, 0x22}, {3, 0x22}, {5, 0x33}}, first);
        this->other_changes("remove 1 3");
        this->expect_list(handle, {{7, 0x22}, {5, 0x33}}, first);
        this->other_changes("clean 1");
        this->expect_list(handle, {}, first);
        this->other_changes("copy 2 1");
        this->expect_list(handle, {{9, 0x33}}, first);
        this->other_changes("update 1 9 17");
        this->expect_list(handle, {{9, 0x11}}, first);
        this->other_changes("load 1 " + this->path("file"));
        this->expect_list(handle, {{9, 0x33}}, first);
        this->other_changes("delete 1");
        EXPECT_EQ(fill_of<TypeParam>(handle, 9), kHostNoSuchList);
        EXPECT_EQ(contents<TypeParam>(handle), (Contents{{-1, kHostNoSuchList}}));
        MwdbHandle none = 0;
        EXPECT_EQ(TypeParam::open(1, 0, 0, &none), kHostNoSuchList);
        this->other_changes("create 1");
        this->expect_list(handle, {}, first);
        this->other_changes("add 1 4 34");
        this->expect_list(handle, {{4, 0x22}}, first);
    }
}

// Two processes change two lists at random; a model holds the expected contents.
TYPED_TEST(Freshness, ChangesOfTwoProcessesMayComeInAnyOrder) {
    std::mt19937 random(20'000 + sizeof(typename TypeParam::Record));
    const auto number_up_to = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)) + 1; };
    std::map<int, Contents> model{{1, {}}, {2, {}}};
    const std::map<int, MwdbHandle> handles{{1, created<TypeParam>(1)}, {2, created<TypeParam>(2)}};
    for (int step = 0; step < 400; ++step) {
        const int list = number_up_to(2);
        const int id = number_up_to(kHighestIdUsed);
        const int fill = number_up_to(3) * 0x11;
        Contents& all = model[list];
        const auto found = std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.first == id; });
        const std::string name = " " + std::to_string(list);
        const std::string words = name + " " + std::to_string(id) + " " + std::to_string(fill);
        std::string change;
        if (number_up_to(25) == 1) {
            change = "copy " + std::to_string(3 - list) + name;
            all = model[3 - list];
        } else if (number_up_to(40) == 1) {
            change = "clean" + name;
            all.clear();
        } else if (found == all.end()) {
            change = "add" + words;
            all.emplace_back(id, fill);
        } else if (number_up_to(2) == 1) {
            change = "update" + words;
            found->second = fill;
        } else {
            change = "remove" + words;
            all.erase(found);
        }
        SCOPED_TRACE("step " + std::to_string(step) + ": " + change);
        if (number_up_to(2) == 1) {
            this->change(change);
        } else {
            this->other_changes(change);
        }
        if (number_up_to(3) != 1) { // otherwise several changes come between two reads
            this->expect_list(handles.at(list), model[list], number_up_to(5));
        }
        if (this->HasFailure()) {
            return;
        }
    }
    this->expect_list(handles.at(1), model[1]);
    this->expect_list(handles.at(2), model[2]);
}

TYPED_TEST(Freshness, AFailedChangeChangesNothingInMemory) {
    const MwdbHandle handle = created<TypeParam>(1);
    this->change("add 1 7 17");
    this->expect_list(handle, {{7, 0x11}});
    EXPECT_EQ(this->own.apply("add 1 7 34"), kMwRecordExists);
    EXPECT_EQ(this->own.apply("update 1 8 34"), kHostNoSuchRecord);
    EXPECT_EQ(this->own.apply("remove 1 8"), kHostNoSuchRecord);
    EXPECT_EQ(this->own.apply("create 1"), kHostListExists);
    EXPECT_EQ(this->own.apply("load 1 " + this->path("missing")), kMwNoFile);
    this->expect_list(handle, {{7, 0x11}});
}

TEST_F(ManyReaders, SeeWhatAWriterLeftWhereverItWasKilled) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 1000, 0x44), kMwOk);
    Contents all{{1000, 0x44}};
    int killed = 0;
    int lost = 0;
    for (bool finished = false; !finished;) {
        SCOPED_TRACE("killed before step " + std::to_string(killed + 1));
        ASSERT_EQ(contents<Networks>(handle), all);
        const int id = killed + 1;
        const int end = ChildProcess({"killed_add", std::to_string(id), std::to_string(id)}).wait();
        ASSERT_TRUE(end == 0 || end == -SIGKILL) << end;
        finished = end == 0;
        const int fill = fill_of<Networks>(handle, static_cast<std::uint16_t>(id));
        if (fill == id) {
            all.emplace_back(id, id);
        } else {
            EXPECT_EQ(fill, kHostNoSuchRecord);
            ++lost;
        }
        EXPECT_TRUE(fill == id || !finished);
        EXPECT_EQ(contents<Networks>(handle), all);
        ASSERT_EQ(add<Networks>(handle, static_cast<std::uint16_t>(2000 + id), 0x55), kMwOk);
        all.emplace_back(2000 + id, 0x55);
        EXPECT_EQ(contents<Networks>(handle), all);
        killed += finished ? 0 : 1;
        ASSERT_LT(killed, 200);
    }
    // The writer was killed both before and after its commit.
    EXPECT_GT(lost, 4);
    EXPECT_GT(killed, lost);
    restart();
    EXPECT_EQ(contents<Networks>(opened<Networks>(1)), all);
}

// Reads need no pause between changes, and never mix the states before and after a change.
TEST_F(ManyReaders, GetAResultWhileAnotherProcessWritesWithoutAPause) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 1, 0), kMwOk);
    insert_records<Networks>(database(), 3, 1, 2, 10000);
    std::uint16_t number = 0;
    std::int32_t first = 0;
    const std::uint64_t before = tavro_host_work();
    ASSERT_EQ(x_nwl_get_num_rec(handle, &number, &first), kMwOk);
    const std::uint64_t one_load = tavro_host_work() - before;
    ChildProcess writer({"churn"});
    ASSERT_EQ(writer.read_line(), "updated");
    std::int32_t last = first;
    int changes_seen = 0;
    for (int reads = 0; changes_seen < 40 && reads < 10'000'000 && !HasFailure(); ++reads) {
        _NWL_REC_T record{};
        std::int32_t version = 0;
        const std::uint64_t before_read = tavro_host_work();
        EXPECT_EQ(x_nwl_get_rec_by_rec_idx(handle, 0, &record, &version), kMwOk);
        EXPECT_LE(tavro_host_work() - before_read, one_load + 100); // loads the list no more than once
        EXPECT_GE(version, last);
        changes_seen += version > last ? 1 : 0;
        last = version;
        // The writer's first update, to version first + 1, fills the record with 0, the next one with 1.
        EXPECT_EQ(bytes_of(record), bytes_of(record_of<Networks>(1, static_cast<unsigned char>(version - first - 1))));
        EXPECT_EQ(x_nwl_get_rec(handle, 1, &record, &version), kMwOk);
        EXPECT_EQ(bytes_of(record), bytes_of(record_of<Networks>(1, static_cast<unsigned char>(version - first - 1))));
        EXPECT_GE(version, last);
        EXPECT_EQ(x_nwl_get_num_rec(handle, &number, &version), kMwOk);
        EXPECT_EQ(number, 10000);
    }
    EXPECT_EQ(changes_seen, 40);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(ManyReaders, SeeEditsOfTheDatabaseThatRaiseTheVersion) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 7, 0x11), kMwOk);
    ASSERT_EQ(contents<Networks>(handle), (Contents{{7, 0x11}}));
    const std::string rest(2 * (sizeof(_NWL_REC_T) - 6), '2');
    edit_database(database(), "BEGIN IMMEDIATE; UPDATE records SET bytes = x'222222220700" + rest +
                                  "' WHERE kind = 3 AND list_id = 1;"
                                  "UPDATE lists SET version = version + 1 WHERE kind = 3 AND list_id = 1; COMMIT");
    EXPECT_EQ(fill_of<Networks>(handle, 7), 0x22);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{7, 0x22}}));
}

TEST_F(ManyReaders, SeeEveryChangeWithoutSharedMemoryToo) {
    const FileSystemWithoutSharedMemory file_system;
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 7, 0x11), kMwOk);
    EXPECT_FALSE(std::filesystem::exists(home() + "/lists.db-shm"));
    EXPECT_EQ(contents<Networks>(handle), (Contents{{7, 0x11}}));
    const std::uint64_t before = tavro_host_work();
    EXPECT_EQ(fill_of<Networks>(handle, 7), 0x11);
    EXPECT_GT(tavro_host_work(), before); // the read goes to the database
    edit_database(database(), "BEGIN IMMEDIATE; DELETE FROM records; UPDATE lists SET version = version + 1; COMMIT");
    EXPECT_EQ(fill_of<Networks>(handle, 7), kHostNoSuchRecord);
    EXPECT_EQ(contents<Networks>(handle), Contents{});
    ASSERT_EQ(add<Networks>(handle, 8, 0x22), kMwOk);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{8, 0x22}}));
}
