#include "sqlite.h"

#include <cctype>
#include <cerrno>
#include <new>

namespace tavro::host {
namespace {

// The path as SQLite reads it with SQLITE_OPEN_URI.
std::string uri_of(const std::string& path) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri = "file:";
    for (const char letter : path) {
        if (std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '/') {
            uri += letter;
        } else {
            const auto byte = static_cast<unsigned char>(letter);
            uri += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return uri;
}

} // namespace

Statement::~Statement() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
    connection_.work_ +=
        static_cast<std::uint64_t>(sqlite3_stmt_status(statement_, SQLITE_STMTSTATUS_VM_STEP, /*reset*/ 1));
}

void Statement::check(int code) {
    if (code != SQLITE_OK) {
        connection_.fail(code);
    }
}

Statement& Statement::bind(std::int64_t value) {
    check(sqlite3_bind_int64(statement_, ++bound_, value));
    return *this;
}

Statement& Statement::bind(const std::string& text) {
    check(sqlite3_bind_text(statement_, ++bound_, text.data(), static_cast<int>(text.size()), SQLITE_STATIC));
    return *this;
}

Statement& Statement::bind(const void* blob, std::size_t bytes) {
    check(sqlite3_bind_blob(statement_, ++bound_, blob, static_cast<int>(bytes), SQLITE_STATIC));
    return *this;
}

bool Statement::step() {
    const int code = sqlite3_step(statement_);
    if (code == SQLITE_ROW) {
        return true;
    }
    if (code != SQLITE_DONE) {
        connection_.fail(code);
    }
    return false;
}

std::int64_t Statement::number(int column, const char* what, std::int64_t least, std::int64_t most) const {
    const std::int64_t value = number(column);
    if (sqlite3_column_type(statement_, column) != SQLITE_INTEGER || value < least || value > most) {
        connection_.damaged(std::string(what) + " is invalid");
    }
    return value;
}

const std::byte* Statement::blob(int column, const char* what, std::size_t bytes) const {
    const bool is_blob = sqlite3_column_type(statement_, column) == SQLITE_BLOB;
    if (!is_blob || blob_bytes(column) != bytes) {
        connection_.damaged(std::string(what) + " has the wrong size");
    }
    const std::byte* const found = blob(column);
    if (found == nullptr) {
        throw std::bad_alloc();
    }
    return found;
}

std::string Statement::text(int column, const char* what) const {
    if (sqlite3_column_type(statement_, column) != SQLITE_TEXT) {
        connection_.damaged(std::string(what) + " is not a text");
    }
    const auto* const found = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    if (found == nullptr) {
        throw std::bad_alloc();
    }
    return {found, blob_bytes(column)};
}

void Statement::run() {
    while (step()) {
    }
}

Connection::Connection(const std::string& path, const std::string& file_name, int flags, const char* file_system)
    : path_(path) {
    sqlite3* database = nullptr;
    const int code = sqlite3_open_v2(file_name.c_str(), &database, flags | SQLITE_OPEN_NOMUTEX, file_system);
    database_.reset(database); // even a failed open returns a connection, which has the error message
    if (code != SQLITE_OK) {
        fail(code);
    }
    sqlite3_extended_result_codes(database, 0);
}

Connection Connection::to_read(const std::string& path, const char* file_system) {
    return {path, uri_of(path) + "?readonly_shm=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, file_system};
}

void Connection::fail(int code) const {
    const int primary = code & 0xFF;
    if (database_ == nullptr || primary == SQLITE_NOMEM ||
        sqlite3_extended_errcode(database_.get()) == SQLITE_IOERR_NOMEM) {
        throw std::bad_alloc();
    }
    const bool of_the_system = primary == SQLITE_IOERR || primary == SQLITE_CANTOPEN;
    throw SqlError(path_, primary, of_the_system ? sqlite3_system_errno(database_.get()) : 0,
                   sqlite3_errmsg(database_.get()));
}

void Connection::need_space(std::int64_t bytes) {
    sqlite3_int64 wanted = bytes;
    if (sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_SIZE_HINT, &wanted) != SQLITE_OK) {
        throw SqlError(path_, SQLITE_FULL, ENOSPC, sqlite3_errstr(SQLITE_FULL));
    }
}

bool Connection::has_moved() const {
    int moved = 0;
    return sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

void Connection::damaged(const std::string& what) const { throw SqlError(path_, SQLITE_CORRUPT, 0, what); }

Statement Connection::prepare(const char* sql) {
    std::unique_ptr<sqlite3_stmt, Close>& statement = statements_[sql];
    if (statement == nullptr) {
        sqlite3_stmt* prepared = nullptr;
        const int code = sqlite3_prepare_v3(database_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
        if (code != SQLITE_OK) {
            fail(code);
        }
        statement.reset(prepared);
    }
    return {*this, statement.get()};
}

void Connection::execute(const std::string& sql) {
    const int code = sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        fail(code);
    }
}

std::int64_t Connection::number(const char* sql) {
    Statement query = prepare(sql);
    return query.step() ? query.number(0) : 0;
}

Transaction::Transaction(Connection& connection, Kind kind)
    : connection_(connection), rollback_(connection.prepare("ROLLBACK")) {
    connection_.prepare(kind == Kind::kWrite ? "BEGIN IMMEDIATE" : "BEGIN").run();
}

Transaction::~Transaction() {
    // Committed transactions are closed, and after some errors SQLite has already rolled back.
    const bool open = sqlite3_get_autocommit(connection_.handle()) == 0;
    if (open) {
        rollback_.try_step();
    }
}

void Transaction::commit() { connection_.prepare("COMMIT").run(); }

} // namespace tavro::host
