#include "commit_watch.h"

namespace tavro::host {
namespace {

constexpr int kRegionBytes = 32 * 1024; // size of SQLite's mappings of the index

} // namespace

CommitWatch::CommitWatch(sqlite3* database) {
    sqlite3_file* file = nullptr;
    if (database == nullptr || sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK) {
        return;
    }
    // SQLite has already mapped the region and keeps it mapped until the connection is closed.
    void volatile* region = nullptr;
    if (file->pMethods->xShmMap(file, 0, kRegionBytes, /*extend*/ 0, &region) == SQLITE_OK) {
        shared_ = static_cast<const std::uint32_t*>(const_cast<void*>(region));
    }
}

// Reads the header. Returns false if the copies differ or the index is not in use.
bool CommitWatch::read(Header& header) const {
    if (shared_ == nullptr) {
        return false;
    }
    // Acquire loads keep their order, so the first copy is read before the second.
    for (std::size_t i = 0; i < kWords; ++i) {
        header[i] = __atomic_load_n(shared_ + i, __ATOMIC_ACQUIRE);
    }
    bool same = true;
    for (std::size_t i = 0; i < kWords; ++i) {
        same &= header[i] == __atomic_load_n(shared_ + kWords + i, __ATOMIC_ACQUIRE);
    }
    const unsigned char* const flags = reinterpret_cast<const unsigned char*>(&header[kFlags]);
    const bool initialized = flags[0] != 0;
    return same && initialized;
}

std::uint64_t CommitWatch::epoch() {
    Header header;
    if (!read(header)) {
        seen_ = Header{}; // differs from every header in use
        return ++epoch_;
    }
    if (header != seen_) {
        seen_ = header;
        ++epoch_;
    }
    return epoch_;
}

void CommitWatch::committed(std::uint32_t frames) {
    Header header;
    const bool readable = read(header);
    // Exactly one commit since seen_, and the log ends where this connection's commit ended. In any other case seen_ is
    // kept, so the next epoch() finds a new header.
    if (readable && header[kChangeCounter] == seen_[kChangeCounter] + 1 && header[kFrames] == frames) {
        seen_ = header;
    }
}

} // namespace tavro::host
