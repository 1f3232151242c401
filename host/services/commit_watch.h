// Notices that the database was changed, by whichever process, without a query.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <sqlite3.h>

namespace tavro::host {

// In WAL mode every commit of every process writes a new header into the WAL index, which all connections share in
// memory. SQLite compares the header in the same way to find out whether its own page cache is current. The layout is
// documented in SQLite's "WAL-mode File Format": two copies of 48 bytes at the start of the index. A writer writes the
// second copy first, so copies that differ belong to a commit under way or to a writer that was killed.
//
// The epoch is a number that stays the same as long as nobody else has committed. Used by one thread at a time, like
// its connection.
class CommitWatch {
public:
    // `database` was read before and stays open. Null when it is not in WAL mode: every call gives a new epoch then.
    explicit CommitWatch(sqlite3* database);

    // What was read from the database after a call belongs to the epoch that the call returned, or to a later one.
    std::uint64_t epoch();

    // The connection has committed a write transaction in which epoch() was called. `frames` is what SQLite's WAL hook
    // reported. Keeps the epoch unless somebody else committed after that.
    void committed(std::uint32_t frames);

private:
    static constexpr std::size_t kWords = 12;
    static constexpr std::size_t kChangeCounter = 2; // words of a header
    static constexpr std::size_t kFlags = 3;
    static constexpr std::size_t kFrames = 4;
    using Header = std::array<std::uint32_t, kWords>;

    bool read(Header& header) const;

    const std::uint32_t* shared_ = nullptr; // both copies
    Header seen_{};
    std::uint64_t epoch_ = 1;
};

} // namespace tavro::host
