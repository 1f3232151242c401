// RAII wrappers for SQLite connections, statements and transactions. Every failure throws SqlError.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

namespace tavro::host {

// A SQLite error: the primary result code and SQLite's message.
class SqlError : public std::runtime_error {
public:
    SqlError(const std::string& path, int code, int system_error, const std::string& message)
        : std::runtime_error(message), path_(path), code_(code), system_error_(system_error) {}
    // The database file.
    const std::string& path() const { return path_; }
    int code() const { return code_; }
    // The errno value that SQLite recorded, or 0. It may be from the cleanup after the failure.
    int system_error() const { return system_error_; }

private:
    std::string path_;
    int code_;
    int system_error_;
};

class Connection;

// One use of a prepared statement. Binds parameters in order; the destructor resets the statement for the next use.
class Statement {
public:
    Statement(Connection& connection, sqlite3_stmt* statement) : connection_(connection), statement_(statement) {}
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Binds the next parameter. Blobs and texts are not copied and must outlive this object.
    Statement& bind(std::int64_t value);
    Statement& bind(const std::string& text);
    Statement& bind(const void* blob, std::size_t bytes);

    // Moves to the next row. Returns false if there is none.
    bool step();
    // Steps to the end, ignoring rows.
    void run();
    // Takes one step and ignores errors.
    void try_step() noexcept { sqlite3_step(statement_); }

    std::int64_t number(int column) const { return sqlite3_column_int64(statement_, column); }
    // Values of a database whose rows may be damaged. Throw SqlError(SQLITE_CORRUPT), with a message that starts with
    // `what`, if the value has another type, another size, or is not from `least` to `most`. A blob is valid until the
    // next step.
    std::int64_t number(int column, const char* what, std::int64_t least, std::int64_t most) const;
    const std::byte* blob(int column, const char* what, std::size_t bytes) const;
    std::string text(int column, const char* what) const;
    bool is_null(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

private:
    void check(int code);
    const std::byte* blob(int column) const {
        return static_cast<const std::byte*>(sqlite3_column_blob(statement_, column));
    }
    std::size_t blob_bytes(int column) const {
        return static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    }

    Connection& connection_;
    sqlite3_stmt* statement_;
    int bound_ = 0;
};

// An open database. Not thread-safe.
class Connection {
public:
    // `flags` are the flags of sqlite3_open_v2.
    Connection(const std::string& path, int flags) : Connection(path, path, flags, nullptr) {}
    // Opens a database only for reading, through the file system (VFS) of that name, and its shared memory as well.
    static Connection to_read(const std::string& path, const char* file_system);

    // Prepares `sql` on first use and caches it by pointer. `sql` must be a literal or outlive the connection.
    Statement prepare(const char* sql);
    // Runs statements without parameters, ignoring rows.
    void execute(const std::string& sql);
    // Returns the single value of a query such as "PRAGMA application_id", or 0 without a row.
    std::int64_t number(const char* sql);

    // Sets how long a step waits for another process before it fails with SQLITE_BUSY.
    void set_busy_timeout(int milliseconds) { sqlite3_busy_timeout(database_.get(), milliseconds); }

    // Throws SqlError(SQLITE_CORRUPT).
    [[noreturn]] void damaged(const std::string& what) const;

    // Makes the file at least this long, so that pages that are written later find space. Throws SqlError(SQLITE_FULL)
    // if it cannot. Takes one system call if it is already.
    void need_space(std::int64_t bytes);

    // True if the path leads to another file than this one, or to none. Takes one system call.
    bool has_moved() const;

    // Number of rows changed by the last INSERT, UPDATE or DELETE.
    int changes() const { return sqlite3_changes(database_.get()); }
    // For SQLite functions that are not wrapped here.
    sqlite3* handle() const { return database_.get(); }
    // Number of SQLite virtual machine instructions that this connection has run.
    std::uint64_t work() const { return work_; }

private:
    friend class Statement;
    struct Close {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    Connection(const std::string& path, const std::string& file_name, int flags, const char* file_system);
    [[noreturn]] void fail(int code) const;

    std::string path_;
    std::unique_ptr<sqlite3, Close> database_;
    std::unordered_map<const char*, std::unique_ptr<sqlite3_stmt, Close>> statements_;
    std::uint64_t work_ = 0;
};

// A transaction. The destructor rolls it back unless it was committed; that cannot fail for lack of memory.
class Transaction {
public:
    enum class Kind { kRead, kWrite };
    Transaction(Connection& connection, Kind kind);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    void commit();

private:
    Connection& connection_;
    Statement rollback_; // prepared before the transaction begins
};

} // namespace tavro::host
