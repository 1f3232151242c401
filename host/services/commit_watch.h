// Detects commits to the database by any process, without a query.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <sqlite3.h>

namespace tavro::host {

// In WAL mode every commit writes a new header into the WAL index, which is shared memory. SQLite itself compares the
// header to check whether its page cache is current. SQLite's "WAL-mode File Format" documents the layout: two copies
// of 48 bytes at the start of the index. The second copy is written first, so the copies differ while a commit is in
// progress and after a writer was killed.
//
// The epoch is a number that changes whenever another connection has committed. Like the connection, not thread-safe.
class CommitWatch {
public:
    // `database` must have been read from and must stay open. Pass null if it is not in WAL mode: then every call
    // returns a new epoch.
    explicit CommitWatch(sqlite3* database);

    // Data read from the database after this call is at least as new as the returned epoch.
    std::uint64_t epoch();

    // Call after committing a write transaction in which epoch() was called; `frames` is the value from SQLite's WAL
    // hook. The epoch stays the same unless another connection has committed since.
    void committed(std::uint32_t frames);

private:
    static constexpr std::size_t kWords = 12;
    static constexpr std::size_t kChangeCounter = 2; // word indices in the header
    static constexpr std::size_t kFlags = 3;
    static constexpr std::size_t kFrames = 4;
    using Header = std::array<std::uint32_t, kWords>;

    bool read(Header& header) const;

    const std::uint32_t* shared_ = nullptr; // both copies
    Header seen_{};
    std::uint64_t epoch_ = 1;
};

} // namespace tavro::host
