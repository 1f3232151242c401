#include "snapshot.h"

#include "common/open_file.h"
#include "list_queries.h"
#include "read_only_files.h"
#include "status.h"
#include "storage_error.h"

#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <thread>

namespace tavro::host {
namespace {

// Writers create, remove and repair files meanwhile, so opening may take several attempts.
constexpr int kMostAttempts = 100;
constexpr std::chrono::milliseconds kPause{2};

bool exists(const std::string& path) {
    struct stat found {};
    return ::stat(path.c_str(), &found) == 0;
}

// Errors that a writer may have caused.
bool may_pass(int code) {
    return code == SQLITE_READONLY || code == SQLITE_CANTOPEN || code == SQLITE_IOERR || code == SQLITE_PROTOCOL;
}

// Throws Failure if it is not a list database of this version. Returns false if it has no tables yet.
bool has_tables(Connection& database, const std::string& path) {
    const std::int64_t application = database.number("PRAGMA application_id");
    if (application == 0 && database.number("SELECT count(*) FROM sqlite_master") == 0) {
        return false;
    }
    if (application != kListDatabaseApplication) {
        throw Failure(kHostStorageUnavailable, "cannot read " + path + ": it is not a list database");
    }
    const std::int64_t version = database.number("PRAGMA user_version");
    if (version != kListDatabaseVersion && version != kOldListDatabaseVersion) {
        throw Failure(kHostStorageUnavailable, "cannot read the list database " + path +
                                                   ": it was written by another version; use that version");
    }
    return true;
}

} // namespace

// A database without content has no lists, and SQLite would remove its log.
bool Snapshot::has_database() const {
    struct stat found {};
    if (::stat(path_.c_str(), &found) == 0) {
        return !S_ISREG(found.st_mode) || found.st_size != 0;
    }
    if (errno == ENOENT) {
        return false;
    }
    throw read_failure(path_, errno);
}

Snapshot::Files Snapshot::files() const { return {exists(path_ + "-wal"), exists(path_ + "-shm")}; }

std::unique_ptr<Connection> Snapshot::open(const Files& files) const {
    const bool shared = files.log && files.index;
    auto database = std::make_unique<Connection>(
        Connection::to_read(path_, shared ? shared_read_only_files() : unshared_read_only_files()));
    database->set_busy_timeout(kBusyMilliseconds);
    database->execute("PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON; BEGIN");
    if (!has_tables(*database, path_)) {
        return nullptr;
    }
    check_database(*database);
    return database;
}

// Begins the transaction. Returns false if there is no database or no table.
bool Snapshot::open() {
    fill_standard_descriptors();
    for (int attempt = 1;; ++attempt) {
        if (!has_database()) {
            return false;
        }
        const Files before = files();
        const auto unchanged = [&] { return files() == before; };
        try {
            database_ = open(before);
            files_ = before; // if a writer has come since, the first read finds out
            return database_ != nullptr;
        } catch (const SqlError& error) {
            if (attempt >= kMostAttempts || (unchanged() && !may_pass(error.code()))) {
                throw read_failure(error);
            }
        } catch (const Failure&) {
            if (attempt >= kMostAttempts || unchanged()) {
                throw;
            }
        }
        std::this_thread::sleep_for(kPause);
    }
}

// Runs `body` with the database. If a writer has come, calls `discard` and starts over: what was read may be mixed.
template <class Body, class Discard>
MwStatus Snapshot::reading(Body body, Discard discard) {
    for (int attempt = 1;; ++attempt) {
        if (database_ == nullptr && !open()) {
            return kHostNoSuchList;
        }
        try {
            const MwStatus status = body(*database_);
            if (is_intact()) {
                return status;
            }
        } catch (const SqlError& error) {
            if (is_intact()) {
                throw read_failure(error);
            }
        }
        if (attempt >= kMostAttempts) {
            throw Failure(kHostStorageUnavailable,
                          "cannot read the list database " + path_ + ": other processes change it all the time");
        }
        database_.reset();
        discard();
    }
}

void Snapshot::begin() {
    if (database_ == nullptr) {
        open();
    }
}

std::vector<ListEntry> Snapshot::lists(std::int64_t first, std::int64_t last) {
    std::vector<ListEntry> lists;
    reading(
        [&](Connection& database) {
            lists = query_lists(database, first, last);
            return kMwOk;
        },
        [&] { lists.clear(); });
    return lists;
}

MwStatus Snapshot::refresh(const ListKey& list, ListState& state) {
    if (state.epoch == epoch()) {
        return kMwOk;
    }
    return reading([&](Connection& database) { return query_state(database, list, epoch(), state); },
                   [&] { state = {}; });
}

MwStatus Snapshot::read(const ListKey& list, const Kind& kind, std::uint16_t record_id, ListState& state,
                        ListImage& image) {
    return reading(
        [&](Connection& database) { return query_record(database, list, kind, record_id, epoch(), state, image); },
        [&] { image.clear(); });
}

MwStatus Snapshot::read_highest_id(const ListKey& list, ListState& state, ListImage& image) {
    return reading([&](Connection& database) { return query_highest_id(database, list, epoch(), state, image); },
                   [&] { image.clear(); });
}

MwStatus Snapshot::read_all(const ListKey& list, const Kind& kind, ListState& state, ListImage& image) {
    return reading([&](Connection& database) { return query_all(database, list, kind, epoch(), state, image); },
                   [&] { image.clear(); });
}

MwStatus Snapshot::load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records) {
    return reading(
        [&](Connection& database) {
            records = {};
            return query_records(database, list, kind, name, records);
        },
        [&] { records = {}; });
}

} // namespace tavro::host
