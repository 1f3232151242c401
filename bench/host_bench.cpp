// Speed of the workstation's middleware, compared with plain SQLite doing the same work.
//
// Uses its own storage directory below the system's temporary directory instead of TAVRO_HOME. Run it in an optimized
// build: host_bench --benchmark_filter=…
#include "middleware/svl.h"
#include "services/control.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

constexpr int kShort = 100;
constexpr int kLong = 60'000;

void need(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

// A storage directory that is removed after the benchmark.
class Home {
public:
    Home() {
        std::string pattern = (fs::temp_directory_path() / "tavro-bench-XXXXXX").string();
        need(::mkdtemp(pattern.data()) != nullptr, "cannot create a temporary directory");
        directory_ = pattern;
        ::setenv("TAVRO_HOME", directory_.c_str(), 1);
        tavro_host_reset();
    }
    ~Home() {
        tavro_host_reset();
        fs::remove_all(directory_);
    }
    std::string path(const char* name) const { return directory_ + "/" + name; }

private:
    std::string directory_;
};

_SVL_REC_T service(int id) {
    _SVL_REC_T record{};
    record.ui2_svl_rec_id = static_cast<std::uint16_t>(id);
    record.t_header.ui2_tsl_rec_id = static_cast<std::uint16_t>(id % 10);
    return record;
}

void add(MwdbHandle list, int id) {
    _SVL_REC_T record = service(id);
    need(x_svl_add_rec(list, &record) == kMwOk, "add failed");
}

MwdbHandle list_of(std::uint16_t list_id, int records) {
    MwdbHandle list = 0;
    need(x_svl_create("bench", list_id, 1, 16, 0, 0, &list) == kMwOk, "create failed");
    for (int id = 1; id <= records; ++id) {
        add(list, id);
    }
    return list;
}

// Adds a record to a list of range(0) records. Removing it again is not measured.
void BM_Add(benchmark::State& state) {
    const Home home;
    const int records = static_cast<int>(state.range(0));
    const MwdbHandle list = list_of(1, records);
    for (auto _ : state) {
        add(list, records + 1);
        state.PauseTiming();
        need(x_svl_del_rec(list, static_cast<std::uint16_t>(records + 1)) == kMwOk, "remove failed");
        state.ResumeTiming();
    }
}
BENCHMARK(BM_Add)->Arg(kShort)->Arg(kLong);

// Cycles through kShort indices up to range(0) in a list of kLong records.
void BM_ReadByIndex(benchmark::State& state) {
    const Home home;
    const MwdbHandle list = list_of(1, kLong);
    _SVL_REC_T record{};
    std::int32_t version = 0;
    std::uint16_t step = 0;
    for (auto _ : state) {
        const auto index = static_cast<std::uint16_t>(state.range(0) - step++ % kShort);
        need(x_svl_get_rec_by_brdcst_type(list, 0, 0xFFFFFFFF, index, &record, &version) == kMwOk, "read failed");
    }
}
BENCHMARK(BM_ReadByIndex)->Arg(kShort)->Arg(kLong / 2)->Arg(kLong - 1);

// Reads records by random ids from a list of kLong records.
void BM_ReadById(benchmark::State& state) {
    const Home home;
    const MwdbHandle list = list_of(1, kLong);
    _SVL_REC_T record{};
    std::int32_t version = 0;
    std::uint32_t random = 1;
    for (auto _ : state) {
        random = random * 1'664'525 + 1'013'904'223;
        const auto id = static_cast<std::uint16_t>((random >> 8) % kLong + 1);
        need(x_svl_get_rec(list, id, &record, &version) == kMwOk, "read failed");
    }
}
BENCHMARK(BM_ReadById);

// Reads one record by index from a list of range(0) records after another connection has changed the list.
void BM_ReadAfterAChangeElsewhere(benchmark::State& state) {
    const Home home;
    const MwdbHandle list = list_of(1, static_cast<int>(state.range(0)));
    sqlite3* other = nullptr;
    need(sqlite3_open(home.path("lists.db").c_str(), &other) == SQLITE_OK, "cannot open the list database");
    for (auto _ : state) {
        state.PauseTiming();
        need(sqlite3_exec(other, "UPDATE lists SET version = version + 1", nullptr, nullptr, nullptr) == SQLITE_OK,
             "change failed");
        state.ResumeTiming();
        _SVL_REC_T record{};
        std::int32_t version = 0;
        need(x_svl_get_rec_by_brdcst_type(list, 0, 0xFFFFFFFF, 0, &record, &version) == kMwOk, "read failed");
    }
    sqlite3_close(other);
}
BENCHMARK(BM_ReadAfterAChangeElsewhere)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMillisecond);

// Counts and reads the services of one transport stream: a tenth of the list.
void BM_FilteredWalk(benchmark::State& state) {
    const Home home;
    const MwdbHandle list = list_of(1, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        _SVL_REC_T record{};
        std::uint16_t count = 0;
        std::int32_t version = 0;
        need(x_svl_get_num_rec_by_ts(list, 0, 3, 0xFFFFFFFF, &count, &version) == kMwOk, "count failed");
        for (std::uint16_t index = 0; index < count; ++index) {
            need(x_svl_get_rec_by_ts(list, 0, 3, 0xFFFFFFFF, index, &record, &version) == kMwOk, "read failed");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) / 10);
}
BENCHMARK(BM_FilteredWalk)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMillisecond);

void BM_Copy(benchmark::State& state) {
    const Home home;
    const MwdbHandle from = list_of(1, static_cast<int>(state.range(0)));
    const MwdbHandle to = list_of(2, 0);
    for (auto _ : state) {
        need(x_svl_copy_date(from, to) == kMwOk, "copy failed");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Copy)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMillisecond);

void BM_Store(benchmark::State& state) {
    const Home home;
    const MwdbHandle list = list_of(1, static_cast<int>(state.range(0)));
    const std::string file = home.path("list");
    for (auto _ : state) {
        need(x_svl_fs_store(list, file.c_str(), 1) == kMwOk, "store failed");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_Store)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMillisecond);

// The baseline: one table of records in a database with the same settings.
class PlainDatabase {
public:
    explicit PlainDatabase(const Home& home) {
        need(sqlite3_open(home.path("plain.db").c_str(), &database_) == SQLITE_OK, "cannot create a database");
        run("PRAGMA journal_mode = WAL");
        run("PRAGMA synchronous = NORMAL");
        run("CREATE TABLE records (id INTEGER PRIMARY KEY, bytes BLOB)");
        insert_ = prepare("INSERT INTO records VALUES (?, ?)");
        select_ = prepare("SELECT bytes FROM records WHERE id = ?");
    }
    ~PlainDatabase() {
        sqlite3_finalize(insert_);
        sqlite3_finalize(select_);
        sqlite3_close(database_);
    }
    PlainDatabase(const PlainDatabase&) = delete;
    PlainDatabase& operator=(const PlainDatabase&) = delete;

    void run(const char* sql) {
        need(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) == SQLITE_OK, "statement failed");
    }
    void add(int id) {
        const _SVL_REC_T record = service(id);
        sqlite3_bind_int(insert_, 1, id);
        sqlite3_bind_blob(insert_, 2, &record, sizeof record, SQLITE_STATIC);
        need(sqlite3_step(insert_) == SQLITE_DONE, "insert failed");
        sqlite3_reset(insert_);
    }
    // Adds records 1 to `count` in one transaction.
    void fill(int count) {
        run("BEGIN");
        for (int id = 1; id <= count; ++id) {
            add(id);
        }
        run("COMMIT");
    }
    void read(int id) {
        sqlite3_bind_int(select_, 1, id);
        need(sqlite3_step(select_) == SQLITE_ROW, "select failed");
        benchmark::DoNotOptimize(sqlite3_column_blob(select_, 0));
        sqlite3_reset(select_);
    }

private:
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        need(sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) == SQLITE_OK, "statement failed");
        return statement;
    }

    sqlite3* database_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
    sqlite3_stmt* select_ = nullptr;
};

void BM_PlainAdd(benchmark::State& state) {
    const Home home;
    PlainDatabase database(home);
    int id = 0;
    for (auto _ : state) {
        database.add(++id);
    }
}
BENCHMARK(BM_PlainAdd);

void BM_PlainRead(benchmark::State& state) {
    const Home home;
    PlainDatabase database(home);
    database.fill(kLong);
    int id = 0;
    for (auto _ : state) {
        database.read(++id % kShort + 1);
    }
}
BENCHMARK(BM_PlainRead);

void BM_PlainCopy(benchmark::State& state) {
    const Home home;
    PlainDatabase database(home);
    database.fill(static_cast<int>(state.range(0)));
    database.run("CREATE TABLE copies (id INTEGER PRIMARY KEY, bytes BLOB)");
    for (auto _ : state) {
        database.run("BEGIN; DELETE FROM copies; INSERT INTO copies SELECT * FROM records; COMMIT");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PlainCopy)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMillisecond);

// Writes the same rows to a file with SQLite, without syncing the file.
void BM_PlainStore(benchmark::State& state) {
    const Home home;
    PlainDatabase database(home);
    database.fill(static_cast<int>(state.range(0)));
    const std::string file = home.path("copy.db");
    const std::string copy = "VACUUM INTO '" + file + "'";
    for (auto _ : state) {
        database.run(copy.c_str());
        state.PauseTiming();
        fs::remove(file);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PlainStore)->Arg(kShort)->Arg(kLong)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
