#include "storage.h"

#include "status.h"
#include "storage_error.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tavro::host {
namespace {

constexpr std::int32_t kApplication = 0x5476'4442; // "TvDB"
constexpr std::int32_t kForm = 1;

// How long a write waits for another process's: far longer than the largest copy takes.
constexpr int kBusyMilliseconds = 10'000;

// The write-ahead log keeps every committed transaction from a killed process; without a sync for each,
// only a power failure can lose the last ones. It goes into the database every 16 MB.
constexpr char kSettings[] = R"(
    PRAGMA journal_mode = WAL;
    PRAGMA synchronous = NORMAL;
    PRAGMA wal_autocheckpoint = 4000;
)";

// A deleted list keeps its row, without a name, so that its versions are never given again. The columns
// after the stored ones are for the reader of the tables.
constexpr char kTables[] = R"(
    CREATE TABLE lists (
        number INTEGER PRIMARY KEY,
        name TEXT,
        version INTEGER NOT NULL,
        next_position INTEGER NOT NULL,
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

constexpr char kDeleteRecords[] = "DELETE FROM records WHERE number BETWEEN ? AND ?";

std::int64_t first_record(const ListKey& list) { return list.record(0); }
std::int64_t last_record(const ListKey& list) { return list.record(kMwNoRecordId); }
std::uint16_t record_id_of_number(std::int64_t number) { return static_cast<std::uint16_t>(number & 0xFFFF); }

std::string prepared_directory(const std::string& directory) {
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    std::error_code ignored;
    if (error && std::filesystem::exists(directory, ignored)) {
        error = std::make_error_code(std::errc::not_a_directory); // C++ libraries differ in what they say here
    }
    if (error) {
        throw storage_failure("make the storage directory", directory, error.value());
    }
    return directory;
}

// Makes the tables of a new database and refuses one that is somebody else's.
void prepare_database(Connection& database, const std::string& path) {
    sqlite3_int64 form = database.number("PRAGMA application_id");
    if (form == 0 && database.number("SELECT count(*) FROM sqlite_master") == 0) {
        database.execute("BEGIN IMMEDIATE; PRAGMA application_id = " + std::to_string(kApplication) +
                         "; PRAGMA user_version = " + std::to_string(kForm) + ";" + kTables + "COMMIT");
        return;
    }
    if (form != kApplication || database.number("PRAGMA user_version") != kForm) {
        throw Failure(kHostStorageUnavailable, path + " is not a list database of this version; move it away to "
                                                      "start without lists, or set TAVRO_HOME to another directory");
    }
}

// Opens or makes the database.
Connection opened(const std::string& path, LockFile& lock_file) {
    struct Opening {
        LockFile& file;
        explicit Opening(LockFile& lock_file) : file(lock_file) { file.begin_opening(); }
        ~Opening() { file.end_opening(); }
    };
    const Opening alone(lock_file); // several processes may start at once on a new directory
    Connection database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.set_busy_timeout(kBusyMilliseconds);
    database.execute(kSettings);
    prepare_database(database, path);
    return database;
}

} // namespace

// A write transaction in which a list gets its next version.
class Storage::Change {
public:
    Change(Storage& storage, const ListKey& list)
        : storage_(storage), list_(list), transaction_(storage.database_, Transaction::Kind::kWrite) {
        Statement row = storage_.database_.prepare(
            "SELECT version, next_position FROM lists WHERE number = ? AND name IS NOT NULL");
        there_ = row.bind(list.number()).step();
        if (there_) {
            version_ = row.number(0) + 1;
            position_ = row.number(1);
        }
    }

    bool list_is_there() const { return there_; }
    // Where the next record goes, once for each record.
    std::int64_t take_position() { return position_++; }
    void set_next_position(std::int64_t position) { position_ = position; }

    void delete_records() {
        storage_.database_.prepare(kDeleteRecords).bind(first_record(list_)).bind(last_record(list_)).run();
    }

    // Makes it last, and gives the list's new version.
    void commit(std::int64_t* version = nullptr) {
        storage_.database_.prepare("UPDATE lists SET version = ?, next_position = ? WHERE number = ?")
            .bind(version_)
            .bind(position_)
            .bind(list_.number())
            .run();
        transaction_.commit();
        if (version != nullptr) {
            *version = version_;
        }
    }

private:
    Storage& storage_;
    ListKey list_;
    Transaction transaction_;
    bool there_ = false;
    std::int64_t version_ = 0;
    std::int64_t position_ = 0;
};

Storage::Storage(const std::string& directory)
    : path_(prepared_directory(directory) + "/lists.db"), lock_file_(std::make_shared<LockFile>(directory + "/locks")),
      database_(opened(path_, *lock_file_)) {}

MwStatus Storage::create(const ListKey& list, const std::string& name) {
    Transaction transaction(database_, Transaction::Kind::kWrite);
    database_
        .prepare("INSERT INTO lists (number, name, version, next_position) VALUES (?, ?, 0, 0) "
                 "ON CONFLICT (number) DO UPDATE SET name = excluded.name, version = version + 1 WHERE name IS NULL")
        .bind(list.number())
        .bind(name)
        .run();
    if (database_.changes() == 0) {
        return kHostListExists;
    }
    transaction.commit();
    return kMwOk;
}

MwStatus Storage::remove(const ListKey& list) {
    Change change(*this, list);
    if (!change.list_is_there()) {
        return kHostNoSuchList;
    }
    change.delete_records();
    database_.prepare("UPDATE lists SET name = NULL WHERE number = ?").bind(list.number()).run();
    change.commit();
    return kMwOk;
}

MwStatus Storage::clean(const ListKey& list) {
    Change change(*this, list);
    if (!change.list_is_there()) {
        return kHostNoSuchList;
    }
    change.delete_records();
    change.commit();
    return kMwOk;
}

MwStatus Storage::copy(const ListKey& from, const ListKey& to) {
    Change change(*this, to);
    Statement source = database_.prepare("SELECT next_position FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!change.list_is_there() || !source.bind(from.number()).step()) {
        return kHostNoSuchList;
    }
    change.delete_records();
    database_
        .prepare("INSERT INTO records (number, position, bytes) "
                 "SELECT number + ?, position, bytes FROM records WHERE number BETWEEN ? AND ? ORDER BY number")
        .bind(first_record(to) - first_record(from))
        .bind(first_record(from))
        .bind(last_record(from))
        .run();
    change.set_next_position(source.number(0));
    change.commit();
    return kMwOk;
}

MwStatus Storage::replace(const ListKey& list, const Kind& kind, const StoredRecords& records) {
    Change change(*this, list);
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
}

MwStatus Storage::add(const ListKey& list, const Kind& kind, const void* record, std::int64_t* version) {
    Change change(*this, list);
    if (!change.list_is_there()) {
        return kHostNoSuchList;
    }
    database_.prepare("INSERT OR IGNORE INTO records (number, position, bytes) VALUES (?, ?, ?)")
        .bind(list.record(record_id_of(kind, record)))
        .bind(change.take_position())
        .bind(record, kind.record_bytes)
        .run();
    if (database_.changes() == 0) {
        return kMwRecordExists;
    }
    change.commit(version);
    return kMwOk;
}

MwStatus Storage::update(const ListKey& list, const Kind& kind, const void* record, std::int64_t* version) {
    Change change(*this, list);
    if (!change.list_is_there()) {
        return kHostNoSuchList;
    }
    database_.prepare("UPDATE records SET bytes = ? WHERE number = ?")
        .bind(record, kind.record_bytes)
        .bind(list.record(record_id_of(kind, record)))
        .run();
    if (database_.changes() == 0) {
        return kHostNoSuchRecord;
    }
    change.commit(version);
    return kMwOk;
}

MwStatus Storage::remove_record(const ListKey& list, std::uint16_t record_id, std::int64_t* version) {
    Change change(*this, list);
    if (!change.list_is_there()) {
        return kHostNoSuchList;
    }
    database_.prepare("DELETE FROM records WHERE number = ?").bind(list.record(record_id)).run();
    if (database_.changes() == 0) {
        return kHostNoSuchRecord;
    }
    change.commit(version);
    return kMwOk;
}

MwStatus Storage::version(const ListKey& list, std::int64_t* version) {
    Statement row = database_.prepare("SELECT version FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!row.bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    *version = row.number(0);
    return kMwOk;
}

MwStatus Storage::get(const ListKey& list, const Kind& kind, std::uint16_t record_id, void* record,
                      std::int64_t* version) {
    Statement row = database_.prepare("SELECT version, bytes FROM lists LEFT JOIN records ON records.number = ? "
                                      "WHERE lists.number = ? AND name IS NOT NULL");
    if (!row.bind(list.record(record_id)).bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    *version = row.number(0);
    if (row.is_null(1)) {
        return kHostNoSuchRecord;
    }
    std::memcpy(record, row.blob(1), std::min(kind.record_bytes, row.blob_bytes(1)));
    return kMwOk;
}

MwStatus Storage::highest_record_id(const ListKey& list, std::uint16_t* record_id) {
    Statement row = database_.prepare("SELECT (SELECT number FROM records WHERE number BETWEEN ? AND ? "
                                      "ORDER BY number DESC LIMIT 1) FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!row.bind(first_record(list)).bind(last_record(list)).bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    *record_id = row.is_null(0) ? 0 : record_id_of_number(row.number(0));
    return row.is_null(0) ? kMwEmpty : kMwOk;
}

MwStatus Storage::load_order(const ListKey& list, Order& order) {
    const Transaction one_state(database_, Transaction::Kind::kRead);
    std::int64_t version = 0;
    const MwStatus status = this->version(list, &version);
    if (status != kMwOk) {
        return status;
    }
    std::vector<std::pair<std::int64_t, std::uint16_t>> chosen; // position and id
    Statement rows = database_.prepare("SELECT number, position, bytes FROM records WHERE number BETWEEN ? AND ?");
    rows.bind(first_record(list)).bind(last_record(list));
    while (rows.step()) {
        if (order.filter().matches(rows.blob(2))) {
            chosen.emplace_back(rows.number(1), record_id_of_number(rows.number(0)));
        }
    }
    std::sort(chosen.begin(), chosen.end());
    std::vector<std::uint16_t> ids;
    ids.reserve(chosen.size());
    for (const auto& [position, id] : chosen) {
        ids.push_back(id);
    }
    order.load(std::move(ids), version);
    return kMwOk;
}

MwStatus Storage::load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records) {
    const Transaction one_state(database_, Transaction::Kind::kRead);
    Statement row = database_.prepare("SELECT name FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!row.bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    name = row.text(0);
    Statement rows =
        database_.prepare("SELECT number, bytes FROM records WHERE number BETWEEN ? AND ? ORDER BY position");
    rows.bind(first_record(list)).bind(last_record(list));
    while (rows.step()) {
        const std::byte* const bytes = rows.blob(1);
        records.ids.push_back(record_id_of_number(rows.number(0)));
        records.bytes.insert(records.bytes.end(), bytes, bytes + rows.blob_bytes(1));
    }
    records.bytes.resize(records.ids.size() * kind.record_bytes);
    return kMwOk;
}

} // namespace tavro::host
