#include "list_file.h"

#include "common/replacement_file.h"
#include "sqlite.h"
#include "status.h"
#include "storage_error.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavro::host {
namespace {

// SQLite need not journal or sync: nobody else sees the temporary file, and ReplacementFile syncs it.
constexpr char kSchema[] = R"(
    PRAGMA journal_mode = OFF;
    PRAGMA synchronous = OFF;
    BEGIN;
    CREATE TABLE list (kind INTEGER NOT NULL, kind_name TEXT NOT NULL, list_id INTEGER NOT NULL, name TEXT NOT NULL);
    CREATE TABLE records (record_id INTEGER PRIMARY KEY, position INTEGER NOT NULL, bytes BLOB NOT NULL);
)";

void write_temporary(const std::string& path, const Kind& kind, std::uint16_t list_id, const std::string& name,
                     const StoredRecords& records) {
    Connection file(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    file.execute("PRAGMA application_id = " + std::to_string(kListFileApplication) +
                 "; PRAGMA user_version = " + std::to_string(kListFileVersion));
    file.execute(kSchema);
    file.prepare("INSERT INTO list VALUES (?, ?, ?, ?)")
        .bind(kind.number)
        .bind(std::string(kind.name))
        .bind(list_id)
        .bind(name)
        .run();
    for (std::size_t i = 0; i < records.ids.size(); ++i) {
        file.prepare("INSERT INTO records VALUES (?, ?, ?)")
            .bind(records.ids[i])
            .bind(static_cast<std::int64_t>(i + 1))
            .bind(records.bytes.data() + i * kind.record_bytes, kind.record_bytes)
            .run();
    }
    file.execute("COMMIT");
}

// Throws SqlError if SQLite finds the database damaged. The page count is compared with the file's size, `file_bytes`,
// because SQLite silently pads a truncated last page with zeros.
MwStatus read_rows(Connection& file, std::int64_t file_bytes, const Kind& kind, StoredRecords& records) {
    if (file.number("PRAGMA page_count") * file.number("PRAGMA page_size") != file_bytes ||
        file.number("PRAGMA application_id") != kListFileApplication ||
        file.number("PRAGMA user_version") != kListFileVersion || file.number("SELECT count(*) FROM list") != 1 ||
        file.number("SELECT kind FROM list") != kind.number) {
        return kMwNotAListFile;
    }
    Statement rows = file.prepare("SELECT record_id, bytes FROM records ORDER BY position");
    while (rows.step()) {
        const std::int64_t record_id = rows.number(0);
        if (record_id < 0 || record_id >= kMwNoRecordId || rows.blob_bytes(1) != kind.record_bytes ||
            record_id_of(kind, rows.blob(1)) != record_id) {
            return kMwNotAListFile;
        }
        const std::byte* const bytes = rows.blob(1);
        records.ids.push_back(static_cast<std::uint16_t>(record_id));
        records.bytes.insert(records.bytes.end(), bytes, bytes + kind.record_bytes);
    }
    return kMwOk;
}

// Checks that the file can be read, because SQLite reports a permission error as a missing file.
MwStatus check_readable(const std::string& path, std::int64_t& file_bytes) {
    struct stat found {};
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    int error = descriptor < 0 || ::fstat(descriptor, &found) != 0 ? errno : 0;
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    if (error == 0 && S_ISDIR(found.st_mode)) {
        error = EISDIR;
    }
    if (error == ENOENT) {
        return kMwNoFile;
    }
    if (error != 0) {
        throw Failure(kHostCannotReadFile, "cannot read list file " + path + ": " + std::strerror(error) +
                                               "; check the path and the file's permissions");
    }
    file_bytes = found.st_size;
    return kMwOk;
}

bool is_damage(int code) {
    return code == SQLITE_NOTADB || code == SQLITE_CORRUPT || code == SQLITE_ERROR || code == SQLITE_CANTOPEN ||
           code == SQLITE_READONLY;
}

} // namespace

void write_list_file(const std::string& path, const Kind& kind, std::uint16_t list_id, const std::string& name,
                     const StoredRecords& records) {
    ReplacementFile replacement(path);
    try {
        write_temporary(replacement.temporary(), kind, list_id, name, records);
    } catch (const SqlError& error) {
        throw write_failure(path, error);
    }
    const int error = replacement.commit();
    if (error != 0) {
        throw write_failure(path, error);
    }
}

MwStatus read_list_file(const std::string& path, const Kind& kind, StoredRecords& records) {
    std::int64_t file_bytes = 0;
    const MwStatus readable = check_readable(path, file_bytes);
    if (readable != kMwOk) {
        return readable;
    }
    try {
        Connection file(path, SQLITE_OPEN_READONLY);
        return read_rows(file, file_bytes, kind, records);
    } catch (const SqlError& error) {
        if (is_damage(error.code())) {
            return kMwNotAListFile;
        }
        throw Failure(kHostCannotReadFile, "cannot read list file " + path + ": " + error.what() + "; try again");
    }
}

} // namespace tavro::host
