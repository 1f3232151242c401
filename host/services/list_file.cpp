#include "list_file.h"

#include "common/replacement_file.h"
#include "common/user_file.h"
#include "sqlite.h"
#include "status.h"

#include <algorithm>
#include <new>
#include <numeric>
#include <utility>

namespace tavro::host {
namespace {

// The statements that made the tables, which SQLite keeps in the file. No others are accepted: views, triggers,
// generated columns and virtual tables could make a read run any code.
constexpr char kListTable[] = "CREATE TABLE list (kind INTEGER NOT NULL, kind_name TEXT NOT NULL, list_id INTEGER NOT "
                              "NULL, name TEXT NOT NULL, records INTEGER NOT NULL, checksum INTEGER NOT NULL)";
constexpr char kOldListTable[] = "CREATE TABLE list (kind INTEGER NOT NULL, kind_name TEXT NOT NULL, list_id INTEGER "
                                 "NOT NULL, name TEXT NOT NULL)";
constexpr char kRecordsTable[] =
    "CREATE TABLE records (record_id INTEGER PRIMARY KEY, position INTEGER NOT NULL, bytes BLOB NOT NULL)";

constexpr std::int64_t kMostRecords = kMwNoRecordId; // their ids are 0 to 65534

// Limits for content that is not checked yet.
constexpr int kMostRowBytes = 4096; // of a record, the list's row or a CREATE statement
constexpr int kMostNameBytes = 1 << 16;
constexpr int kSchemaSteps = 1000; // of SQLite's virtual machine, for the two tables

// Twice what a full list takes: SQLite's pages are at least half full.
std::size_t most_file_bytes(const Kind& kind) {
    return (std::size_t{1} << 20) + 2 * static_cast<std::size_t>(kMostRecords) * (kind.record_bytes + 24);
}

// FNV-1a with 64 bits, which SQLite stores as a signed number. Detects every change of a single byte.
std::int64_t checksum(const std::vector<std::byte>& bytes) {
    std::uint64_t sum = 0xCBF2'9CE4'8422'2325;
    for (const std::byte byte : bytes) {
        sum = (sum ^ static_cast<std::uint64_t>(byte)) * 0x100'0000'01B3;
    }
    return static_cast<std::int64_t>(sum);
}

// Makes a database in memory. It needs neither a journal nor syncs.
Connection build(const Kind& kind, std::uint16_t list_id, const std::string& name, const StoredRecords& records) {
    Connection file("file:list?vfs=memdb", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI);
    file.execute("PRAGMA journal_mode = OFF; PRAGMA application_id = " + std::to_string(kListFileApplication) +
                 "; PRAGMA user_version = " + std::to_string(kListFileVersion) + "; BEGIN; " + kListTable + "; " +
                 kRecordsTable);
    const std::string kind_name = kind.name; // outlives the statement
    file.prepare("INSERT INTO list VALUES (?, ?, ?, ?, ?, ?)")
        .bind(kind.number)
        .bind(kind_name)
        .bind(list_id)
        .bind(name)
        .bind(static_cast<std::int64_t>(records.ids.size()))
        .bind(checksum(records.bytes))
        .run();
    // In the order of their ids, so that SQLite fills its pages.
    std::vector<std::size_t> by_id(records.ids.size());
    std::iota(by_id.begin(), by_id.end(), std::size_t{0});
    std::sort(by_id.begin(), by_id.end(),
              [&](std::size_t one, std::size_t other) { return records.ids[one] < records.ids[other]; });
    for (const std::size_t i : by_id) {
        file.prepare("INSERT INTO records VALUES (?, ?, ?)")
            .bind(records.ids[i])
            .bind(static_cast<std::int64_t>(i + 1))
            .bind(records.bytes.data() + i * kind.record_bytes, kind.record_bytes)
            .run();
    }
    file.execute("COMMIT");
    return file;
}

// Makes every statement end with an error after so many steps, or never.
void limit_steps(Connection& file, int steps) {
    sqlite3_progress_handler(
        file.handle(), steps, [](void*) { return 1; }, nullptr);
}

// Opens the content as a database that cannot be changed. `content` must outlive it.
Connection open_content(const void* content, std::size_t bytes) {
    Connection file(":memory:", SQLITE_OPEN_READWRITE);
    sqlite3_limit(file.handle(), SQLITE_LIMIT_LENGTH, kMostRowBytes);
    sqlite3_db_config(file.handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    limit_steps(file, kSchemaSteps);
    auto* const writable = const_cast<unsigned char*>(static_cast<const unsigned char*>(content));
    const auto size = static_cast<sqlite3_int64>(bytes);
    if (sqlite3_deserialize(file.handle(), "main", writable, size, size, SQLITE_DESERIALIZE_READONLY) != SQLITE_OK) {
        throw std::bad_alloc();
    }
    file.execute("PRAGMA cell_size_check = ON");
    return file;
}

bool has_table(Connection& file, const std::string& name, const std::string& statement) {
    Statement tables = file.prepare("SELECT count(*) FROM sqlite_schema WHERE name = ? AND sql = ?");
    return tables.bind(name).bind(statement).step() && tables.number(0) == 1;
}

bool has_tables(Connection& file, const char* list_table) {
    return file.number("SELECT count(*) FROM sqlite_schema") == 2 && has_table(file, "list", list_table) &&
           has_table(file, "records", kRecordsTable);
}

// Reads the records, of which there are at most `most`. Returns false if they are not those of a list.
bool read_records(Connection& file, const Kind& kind, std::int64_t most, StoredRecords& records) {
    std::int64_t found = 0;
    std::int64_t last_id = -1;
    Statement rows = file.prepare("SELECT record_id, position, bytes FROM records");
    while (rows.step()) {
        last_id = rows.number(0, "an id", last_id + 1, kMwNoRecordId - 1);
        const auto place = static_cast<std::size_t>(rows.number(1, "a position", 1, most)) - 1;
        const std::byte* const bytes = rows.blob(2, "a record", kind.record_bytes);
        if (place >= records.ids.size()) {
            records.ids.resize(place + 1, kMwNoRecordId);
            records.bytes.resize((place + 1) * kind.record_bytes);
        }
        if (record_id_of(kind, bytes) != last_id || records.ids[place] != kMwNoRecordId) {
            return false;
        }
        records.ids[place] = static_cast<std::uint16_t>(last_id);
        std::copy_n(bytes, kind.record_bytes, records.bytes.data() + place * kind.record_bytes);
        ++found;
    }
    return static_cast<std::size_t>(found) == records.ids.size(); // no position is free
}

// Only for a file whose tables have been read to their end: on a tree of many levels, which a read refuses, the check
// would use up the stack.
bool is_sound(Connection& file) {
    Statement check = file.prepare("PRAGMA quick_check(1)");
    return check.step() && check.text(0, "the result") == "ok";
}

// Reads a list of that kind, or of any kind if it is null; then also its id and name, which loads ignore. Throws
// SqlError if SQLite finds the database damaged.
ListFileState read_list(Connection& file, std::size_t file_bytes, const Kind* only, ListFile& found) {
    if (file.number("PRAGMA application_id") != kListFileApplication) {
        return ListFileState::kNotAListFile;
    }
    const std::int64_t version = file.number("PRAGMA user_version");
    const bool old = version == kOldListFileVersion;
    if (version != kListFileVersion && !old) {
        return ListFileState::kOtherVersion;
    }
    // SQLite reads a truncated last page as if it were filled with zeros.
    if (file.number("PRAGMA page_count") * file.number("PRAGMA page_size") != static_cast<std::int64_t>(file_bytes) ||
        !has_tables(file, old ? kOldListTable : kListTable)) {
        return ListFileState::kDamaged;
    }
    Statement list = file.prepare(old ? "SELECT kind, list_id FROM list LIMIT 2"
                                      : "SELECT kind, list_id, records, checksum FROM list LIMIT 2");
    found.kind = list.step() ? find_kind(list.number(0)) : nullptr;
    if (found.kind == nullptr || (only != nullptr && found.kind != only)) {
        return ListFileState::kDamaged;
    }
    if (only == nullptr) {
        found.list_id = static_cast<std::uint16_t>(list.number(1, "a list id", 1, 0xFFFF));
    }
    const std::int64_t number = old ? 0 : list.number(2);
    const std::int64_t sum = old ? 0 : list.number(3);
    if (list.step()) {
        return ListFileState::kDamaged;
    }
    if (only == nullptr) {
        sqlite3_limit(file.handle(), SQLITE_LIMIT_LENGTH, kMostNameBytes);
        Statement name = file.prepare("SELECT name FROM list");
        found.name = name.step() ? name.text(0, "a name") : "";
        sqlite3_limit(file.handle(), SQLITE_LIMIT_LENGTH, kMostRowBytes);
    }
    limit_steps(file, 0); // read_records is bounded
    StoredRecords& records = found.records;
    const std::int64_t most = std::min(kMostRecords, static_cast<std::int64_t>(file_bytes / found.kind->record_bytes));
    const bool sound =
        read_records(file, *found.kind, most, records) &&
        (old ? is_sound(file)
             : (static_cast<std::int64_t>(records.ids.size()) == number && checksum(records.bytes) == sum));
    return sound ? ListFileState::kSound : ListFileState::kDamaged;
}

// `only` as above.
ListFileState parse(const void* content, std::size_t bytes, const Kind* only, ListFile& list) {
    try {
        ListFile found;
        Connection file = open_content(content, bytes);
        const ListFileState state = read_list(file, bytes, only, found);
        if (state == ListFileState::kSound) {
            list = std::move(found);
        }
        return state;
    } catch (const SqlError& error) { // the content is in memory, so nothing else can be wrong
        return error.code() == SQLITE_NOTADB ? ListFileState::kNotAListFile : ListFileState::kDamaged;
    }
}

ListFileState read(const std::string& path, const Kind* only, ListFile& list) {
    constexpr char kAction[] = "read list file";
    std::uint64_t size = 0;
    const File file = open_to_read(kAction, path, size);
    if (!file.is_open()) {
        return ListFileState::kNoFile;
    }
    const Kind& largest = kTsl;
    static_assert(kTsl.record_bytes >= kSvl.record_bytes && kTsl.record_bytes >= kNwl.record_bytes &&
                  kTsl.record_bytes >= kSatl.record_bytes);
    if (size > most_file_bytes(only == nullptr ? largest : *only)) {
        return ListFileState::kNotAListFile;
    }
    auto bytes = static_cast<std::size_t>(size);
    std::vector<unsigned char> content(bytes);
    const int error = read_all(file, content.data(), bytes);
    if (error != 0) {
        throw file_failure(kHostCannotReadFile, kAction, path, error);
    }
    return parse(content.data(), bytes, only, list);
}

// For a list of one kind, whose records go to `records`.
MwStatus status_of(ListFileState state, ListFile& list, StoredRecords& records) {
    switch (state) {
    case ListFileState::kSound:
        records = std::move(list.records);
        return kMwOk;
    case ListFileState::kNoFile:
        return kMwNoFile;
    default:
        return kMwNotAListFile;
    }
}

} // namespace

void write_list_file(const std::string& path, const Kind& kind, std::uint16_t list_id, const std::string& name,
                     const StoredRecords& records) {
    constexpr char kAction[] = "write list file";
    refuse_special_file(kHostCannotWriteFile, kAction, path);
    Connection file = build(kind, list_id, name, records);
    sqlite3_int64 bytes = 0;
    const unsigned char* const content = sqlite3_serialize(file.handle(), "main", &bytes, SQLITE_SERIALIZE_NOCOPY);
    ReplacementFile replacement(path);
    replacement.write(content, static_cast<std::size_t>(bytes));
    const int error = replacement.commit();
    if (error != 0) {
        throw file_failure(kHostCannotWriteFile, kAction, path, error);
    }
}

MwStatus read_list_file(const std::string& path, const Kind& kind, StoredRecords& records) {
    ListFile list;
    const ListFileState state = read(path, &kind, list);
    return status_of(state, list, records);
}

MwStatus parse_list_file(const void* content, std::size_t bytes, const Kind& kind, StoredRecords& records) {
    ListFile list;
    const ListFileState state = parse(content, bytes, &kind, list);
    return status_of(state, list, records);
}

ListFileState read_list_file(const std::string& path, ListFile& list) { return read(path, nullptr, list); }

ListFileState parse_list_file(const void* content, std::size_t bytes, ListFile& list) {
    return parse(content, bytes, nullptr, list);
}

} // namespace tavro::host
