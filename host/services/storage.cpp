#include "storage.h"

#include "list_queries.h"
#include "status.h"
#include "storage_error.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>

namespace tavro::host {
namespace {

// With WAL, a killed process loses no committed transaction. Commits are not synced, so a power failure can lose the
// latest ones. The log is checkpointed every 4 MB; adds were slower with a log of 16 MB or more. A longer log is cut to
// that length when it is used again.
constexpr char kSettings[] = R"(
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = NORMAL;
    PRAGMA cell_size_check = ON;
    PRAGMA journal_size_limit = 4194304;
)";
constexpr int kFramesUntilCheckpoint = 1000;

// A deleted list keeps its row, with a NULL name, so that its versions are never reused. `changed` is the time of the
// last change, in milliseconds since 1970 (UTC); NULL if that was made by the first version. The generated columns are
// for people who query the tables.
constexpr char kTables[] = R"(
    CREATE TABLE lists (
        number INTEGER PRIMARY KEY,
        name TEXT,
        version INTEGER NOT NULL,
        next_position INTEGER NOT NULL,
        changed INTEGER,
        kind AS (number >> 16),
        list_id AS (number & 65535));
    CREATE TABLE records (
        number INTEGER PRIMARY KEY,
        position INTEGER NOT NULL,
        bytes BLOB NOT NULL,
        kind AS (number >> 32),
        list_id AS ((number >> 16) & 65535),
        record_id AS (number & 65535));
)";

// The database file takes its space in pages, and before the commit of a change that needs them. Otherwise the change
// could be in the log and find no space in the database, and the log would grow forever. With larger steps, SQLite
// would end the file with bytes for which no space was taken.
constexpr int kPageBytes = 4096;

// How many records are deleted at a time if the file system is full. Fewer if even that needs too much space.
constexpr int kMostInAStep = 256;

constexpr char kDeleteRecords[] = "DELETE FROM records WHERE number BETWEEN ? AND ?";

// In milliseconds since 1970, UTC. A clock that is not set is at its start.
std::int64_t present_time() {
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    return std::max<std::int64_t>(0, std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

std::string prepare_directory(const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    std::error_code ignored;
    if (error && std::filesystem::exists(directory, ignored)) {
        error = std::make_error_code(std::errc::not_a_directory); // C++ standard libraries report different errors here
    }
    if (error) {
        throw storage_failure("create the storage directory", directory, error.value());
    }
    return directory;
}

// Creates the tables in a new database, and upgrades an older one. Throws Failure if an existing one is not a list
// database of this version.
void prepare_database(Connection& database, const std::string& path) {
    sqlite3_int64 application = database.number("PRAGMA application_id");
    if (application == 0 && database.number("SELECT count(*) FROM sqlite_master") == 0) {
        database.execute("BEGIN IMMEDIATE; PRAGMA application_id = " + std::to_string(kListDatabaseApplication) +
                         "; PRAGMA user_version = " + std::to_string(kListDatabaseVersion) + ";" + kTables + "COMMIT");
        return;
    }
    const std::int64_t version = database.number("PRAGMA user_version");
    if (application == kListDatabaseApplication && version == kOldListDatabaseVersion) {
        database.execute("BEGIN IMMEDIATE; ALTER TABLE lists ADD COLUMN changed INTEGER; PRAGMA user_version = " +
                         std::to_string(kListDatabaseVersion) + "; COMMIT");
        return;
    }
    if (application != kListDatabaseApplication || version != kListDatabaseVersion) {
        throw Failure(kHostStorageUnavailable, path + " is not a list database of this version; move it away to "
                                                      "start without lists, or set TAVRO_HOME to another directory");
    }
}

// True if the file system may be full. SQLite reports a full one with different codes.
bool may_be_full(const SqlError& error) { return error.code() == SQLITE_FULL || error.code() == SQLITE_IOERR; }

// Examines the file system, too.
bool is_full(const SqlError& error) {
    return may_be_full(error) && storage_failure(error).status() == kHostStorageFull;
}

// On file systems without shared memory SQLite does not use a write-ahead log.
bool has_wal(Connection& database) {
    Statement mode = database.prepare("PRAGMA journal_mode");
    return mode.step() && mode.text(0, "the journal mode") == "wal";
}

// Opens or creates the database.
Connection open_database(const std::string& path, LockFile& lock_file) {
    struct Opening {
        LockFile& file;
        explicit Opening(LockFile& lock_file) : file(lock_file) { file.begin_opening(); }
        ~Opening() { file.end_opening(); }
    };
    const Opening alone(lock_file); // several processes may start in a new directory at once
    Connection database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.set_busy_timeout(kBusyMilliseconds);
    database.execute(kSettings);
    int step = kPageBytes;
    sqlite3_file_control(database.handle(), "main", SQLITE_FCNTL_CHUNK_SIZE, &step);
    prepare_database(database, path);
    check_database(database);
    return database;
}

} // namespace

// A write transaction that gives a list its next version.
class Storage::Change {
public:
    // Nobody else can commit during the transaction, so the state stays current until commit().
    Change(Storage& storage, const ListKey& list, ListState& state)
        : storage_(storage), list_(list), state_(state), transaction_(storage.database_, Transaction::Kind::kWrite),
          there_(storage.refresh(list, state) == kMwOk), position_(state.next_position) {}

    bool list_is_there() const { return there_; }
    // Returns the position for the next record and advances it.
    std::int64_t take_position() { return position_++; }
    void set_next_position(std::int64_t position) { position_ = position; }

    void delete_records() {
        storage_.database_.prepare(kDeleteRecords).bind(first_record(list_)).bind(last_record(list_)).run();
    }

    // Commits, and updates the state to the list's new version.
    void commit() {
        storage_.database_.prepare("UPDATE lists SET version = ?, next_position = ?, changed = ? WHERE number = ?")
            .bind(state_.version + 1)
            .bind(position_)
            .bind(present_time())
            .bind(list_.number())
            .run();
        storage_.commit(transaction_);
        ++state_.version;
        state_.next_position = position_;
    }

    // Commits if the last statement changed a row. Otherwise returns `unchanged`.
    MwStatus commit_change(MwStatus unchanged) {
        if (storage_.database_.changes() == 0) {
            return unchanged;
        }
        commit();
        return kMwOk;
    }

private:
    Storage& storage_;
    ListKey list_;
    ListState& state_;
    Transaction transaction_;
    bool there_;
    std::int64_t position_;
};

Storage::Storage(const std::string& directory)
    : path_(prepare_directory(directory) + "/lists.db"), lock_file_(std::make_shared<LockFile>(directory + "/locks")),
      database_(open_database(path_, *lock_file_)), watch_(has_wal(database_) ? database_.handle() : nullptr) {
    sqlite3_wal_hook(database_.handle(), &Storage::on_commit, this);
}

// SQLite calls this after every commit of this connection.
int Storage::on_commit(void* storage, sqlite3* database, const char* name, int frames) {
    static_cast<Storage*>(storage)->frames_in_log_ = static_cast<std::uint32_t>(frames);
    if (frames >= kFramesUntilCheckpoint) {
        // Copies as much as readers allow. What remains, also after an error, is retried after the next commit.
        sqlite3_wal_checkpoint_v2(database, name, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    }
    return SQLITE_OK;
}

// Runs `body`, which makes a change. If there is no space for it, tries once more with a log that starts over.
template <class Body>
MwStatus Storage::with_space(Body body) {
    try {
        return body();
    } catch (const SqlError& error) {
        if (!may_be_full(error)) {
            throw;
        }
    }
    reuse_log();
    return body();
}

// Copies the log into the database, so that the next change overwrites the log from its start. Does nothing if another
// process is using the log.
void Storage::reuse_log() {
    database_.set_busy_timeout(0);
    sqlite3_wal_checkpoint_v2(database_.handle(), nullptr, SQLITE_CHECKPOINT_RESTART, nullptr, nullptr);
    database_.set_busy_timeout(kBusyMilliseconds);
}

// Deletes the records of the list, a few at a time: each step overwrites the log of the one before, so it needs little
// space or none.
void Storage::delete_in_steps(const ListKey& list, ListState& state) {
    for (int records = kMostInAStep; records > 0;) {
        try {
            Change change(*this, list, state);
            database_
                .prepare("DELETE FROM records WHERE number IN (SELECT number FROM records WHERE number BETWEEN ? AND ? "
                         "ORDER BY number DESC LIMIT ?)")
                .bind(first_record(list))
                .bind(last_record(list))
                .bind(records)
                .run();
            if (change.commit_change(kHostNoSuchRecord) != kMwOk) {
                return;
            }
        } catch (const SqlError& error) {
            if (!is_full(error) || records == 1) {
                throw;
            }
            records /= 2;
        }
        reuse_log();
    }
}

// Takes the space for the database's pages, including those of the open transaction. A checkpoint gives back what the
// pages do not need, and other programs leave files of any size, so each change asks for it.
void Storage::take_space() { database_.need_space(database_.number("PRAGMA page_count") * std::int64_t{kPageBytes}); }

void Storage::commit(Transaction& transaction) {
    if (database_.has_moved()) {
        throw Failure(kHostStorageUnavailable, "cannot use the list database " + path_ +
                                                   ": it was moved or removed while this process used it; put it "
                                                   "back, or restart the process");
    }
    take_space();
    transaction.commit();
    watch_.committed(frames_in_log_);
}

MwStatus Storage::create(const ListKey& list, const std::string& name, ListState& state) {
    return with_space([&]() -> MwStatus {
        Transaction transaction(database_, Transaction::Kind::kWrite);
        ListState made;
        {
            Statement row = database_.prepare(
                "INSERT INTO lists (number, name, version, next_position, changed) VALUES (?, ?, 0, 0, ?) ON CONFLICT "
                "(number) DO UPDATE SET name = excluded.name, version = version + 1, changed = excluded.changed WHERE "
                "name IS NULL RETURNING version, next_position");
            if (!row.bind(list.number()).bind(name).bind(present_time()).step()) {
                return kHostListExists;
            }
            made = state_of(row, watch_.epoch());
            row.run();
        }
        commit(transaction);
        state = made;
        return kMwOk;
    });
}

// Makes a change that deletes all records of a list, and `also`.
template <class Also>
MwStatus Storage::delete_all(const ListKey& list, ListState& state, Also also) {
    const auto in_one = [&]() -> MwStatus {
        Change change(*this, list, state);
        if (!change.list_is_there()) {
            return kHostNoSuchList;
        }
        change.delete_records();
        also();
        change.commit();
        return kMwOk;
    };
    try {
        return with_space(in_one);
    } catch (const SqlError& error) {
        if (!is_full(error)) {
            throw;
        }
    }
    delete_in_steps(list, state);
    return in_one();
}

MwStatus Storage::remove(const ListKey& list, ListState& state) {
    return delete_all(list, state, [&] {
        database_.prepare("UPDATE lists SET name = NULL WHERE number = ?").bind(list.number()).run();
    });
}

MwStatus Storage::clean(const ListKey& list, ListState& state) {
    return delete_all(list, state, [] {});
}

MwStatus Storage::copy(const Kind& kind, const ListKey& from, const ListKey& to, ListState& state) {
    return with_space([&]() -> MwStatus {
        Change change(*this, to, state);
        ListState source;
        if (!change.list_is_there() || refresh(from, source) != kMwOk) {
            return kHostNoSuchList;
        }
        check_records(database_, from, kind);
        change.delete_records();
        database_
            .prepare("INSERT INTO records (number, position, bytes) "
                     "SELECT number + ?, position, bytes FROM records WHERE number BETWEEN ? AND ? ORDER BY number")
            .bind(first_record(to) - first_record(from))
            .bind(first_record(from))
            .bind(last_record(from))
            .run();
        change.set_next_position(source.next_position);
        change.commit();
        return kMwOk;
    });
}

MwStatus Storage::replace(const ListKey& list, const Kind& kind, const StoredRecords& records, ListState& state) {
    return with_space([&]() -> MwStatus {
        Change change(*this, list, state);
        if (!change.list_is_there()) {
            return kHostNoSuchList;
        }
        change.delete_records();
        for (std::size_t i = 0; i < records.ids.size(); ++i) {
            database_.prepare("INSERT INTO records (number, position, bytes) VALUES (?, ?, ?)")
                .bind(list.record(records.ids[i]))
                .bind(change.take_position())
                .bind(records.bytes.data() + i * kind.record_bytes, kind.record_bytes)
                .run();
        }
        change.commit();
        return kMwOk;
    });
}

MwStatus Storage::add(const ListKey& list, const Kind& kind, const void* record, ListState& state) {
    return with_space([&]() -> MwStatus {
        Change change(*this, list, state);
        if (!change.list_is_there()) {
            return kHostNoSuchList;
        }
        database_.prepare("INSERT OR IGNORE INTO records (number, position, bytes) VALUES (?, ?, ?)")
            .bind(list.record(record_id_of(kind, record)))
            .bind(change.take_position())
            .bind(record, kind.record_bytes)
            .run();
        return change.commit_change(kMwRecordExists);
    });
}

MwStatus Storage::update(const ListKey& list, const Kind& kind, const void* record, ListState& state) {
    return with_space([&]() -> MwStatus {
        Change change(*this, list, state);
        if (!change.list_is_there()) {
            return kHostNoSuchList;
        }
        database_.prepare("UPDATE records SET bytes = ? WHERE number = ?")
            .bind(record, kind.record_bytes)
            .bind(list.record(record_id_of(kind, record)))
            .run();
        return change.commit_change(kHostNoSuchRecord);
    });
}

MwStatus Storage::remove_record(const ListKey& list, std::uint16_t record_id, ListState& state) {
    return with_space([&]() -> MwStatus {
        Change change(*this, list, state);
        if (!change.list_is_there()) {
            return kHostNoSuchList;
        }
        database_.prepare("DELETE FROM records WHERE number = ?").bind(list.record(record_id)).run();
        return change.commit_change(kHostNoSuchRecord);
    });
}

MwStatus Storage::refresh(const ListKey& list, ListState& state) {
    const std::uint64_t epoch = watch_.epoch(); // before the query, whose result may be newer
    return state.epoch == epoch ? kMwOk : query_state(database_, list, epoch, state);
}

MwStatus Storage::read(const ListKey& list, const Kind& kind, std::uint16_t record_id, ListState& state,
                       ListImage& image) {
    const std::uint64_t epoch = watch_.epoch();
    return query_record(database_, list, kind, record_id, epoch, state, image);
}

MwStatus Storage::read_highest_id(const ListKey& list, ListState& state, ListImage& image) {
    const std::uint64_t epoch = watch_.epoch();
    return query_highest_id(database_, list, epoch, state, image);
}

MwStatus Storage::read_all(const ListKey& list, const Kind& kind, ListState& state, ListImage& image) {
    const Transaction one_state(database_, Transaction::Kind::kRead);
    const std::uint64_t epoch = watch_.epoch();
    return query_all(database_, list, kind, epoch, state, image);
}

MwStatus Storage::load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records) {
    const Transaction one_state(database_, Transaction::Kind::kRead);
    return query_records(database_, list, kind, name, records);
}

} // namespace tavro::host
