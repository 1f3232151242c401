// The lower bound for the time of an import: adds the records that an import stored, through SQLite's C interface, one
// transaction each, and as durably as the workstation's platform: import_floor FROM TO [ROWS]
//
// FROM is the list database of the import, TO the database to create. Adds each record once or, with ROWS, cycles
// through the records until ROWS rows are added. Prints the number of rows and the nanoseconds.
#include <chrono>
#include <cstdio>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

class Database {
public:
    Database(const char* path, int flags) {
        sqlite3* opened = nullptr;
        const int code = sqlite3_open_v2(path, &opened, flags, nullptr);
        database_.reset(opened);
        need(code == SQLITE_OK);
    }

    void run(const char* sql) { need(sqlite3_exec(get(), sql, nullptr, nullptr, nullptr) == SQLITE_OK); }
    sqlite3_stmt* prepare(const char* sql) {
        sqlite3_stmt* statement = nullptr;
        need(sqlite3_prepare_v2(get(), sql, -1, &statement, nullptr) == SQLITE_OK);
        return statement;
    }
    void need(bool done) {
        if (!done) {
            throw std::runtime_error(sqlite3_errmsg(get()));
        }
    }

private:
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };
    sqlite3* get() { return database_.get(); }
    std::unique_ptr<sqlite3, Close> database_;
};

std::vector<std::string> rows_of(const char* path) {
    Database database(path, SQLITE_OPEN_READONLY);
    sqlite3_stmt* select = database.prepare("SELECT bytes FROM records ORDER BY kind, list_id, position");
    std::vector<std::string> rows;
    while (sqlite3_step(select) == SQLITE_ROW) {
        rows.emplace_back(static_cast<const char*>(sqlite3_column_blob(select, 0)),
                          static_cast<std::size_t>(sqlite3_column_bytes(select, 0)));
    }
    database.need(sqlite3_finalize(select) == SQLITE_OK && !rows.empty());
    return rows;
}

// Uses the same settings as host/services/storage.cpp.
std::chrono::nanoseconds add(const std::vector<std::string>& rows, std::size_t count, const char* path) {
    const auto start = std::chrono::steady_clock::now();
    Database database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; PRAGMA wal_autocheckpoint = 1000;"
                 "CREATE TABLE records (number INTEGER PRIMARY KEY, position INTEGER NOT NULL, bytes BLOB NOT NULL)");
    sqlite3_stmt* insert = database.prepare("INSERT INTO records VALUES (?, ?, ?)");
    for (std::size_t i = 0; i < count; ++i) {
        const std::string& row = rows[i % rows.size()];
        sqlite3_bind_int64(insert, 1, static_cast<sqlite3_int64>(i));
        sqlite3_bind_int64(insert, 2, static_cast<sqlite3_int64>(i));
        sqlite3_bind_blob(insert, 3, row.data(), static_cast<int>(row.size()), SQLITE_STATIC);
        database.need(sqlite3_step(insert) == SQLITE_DONE);
        sqlite3_reset(insert);
    }
    const auto end = std::chrono::steady_clock::now();
    sqlite3_finalize(insert);
    return end - start;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3 && count != 4) {
        std::fputs("usage: import_floor FROM TO [ROWS]\n", stderr);
        return 2;
    }
    try {
        const std::vector<std::string> rows = rows_of(arguments[1]);
        const std::size_t number = count == 4 ? std::stoul(arguments[3]) : rows.size();
        const std::chrono::nanoseconds time = add(rows, number, arguments[2]);
        std::printf("%zu %lld\n", number, static_cast<long long>(time.count()));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "import_floor: cannot copy the records of '%s' to '%s': %s\n", arguments[1], arguments[2],
                     error.what());
        return 1;
    }
    return 0;
}
