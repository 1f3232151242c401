// Locks between processes, in a file that all of them map. Taking or giving back a lock that nobody else uses is one
// atomic step in memory and no system call.
#pragma once

#include "kinds.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavro::host {

// What a process, or a thread of it, has of a list's lock.
enum class LockLevel { kNone, kRead, kWrite };

// Each list has a word with a bit for each process that holds its lock, and one that says that the holder writes. A
// process owns its bit, its slot, through an open-file-description lock on one byte of the file. The kernel ends that
// lock with the process however it ends: the bits of a slot whose byte is free are those of a dead process, and who
// meets them clears them. A word changes in one step alone, so a process may die between any two.
//
// Used by one thread at a time, but for `begin_opening` and `end_opening`.
class LockFile {
public:
    // Opens or makes the file. Throws Failure(kHostStorageUnavailable).
    explicit LockFile(const std::string& path);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    // Waits until no other process opens the storage, and keeps it so until `end_opening`. Throws
    // Failure(kHostLockTimeout) after TAVRO_LOCK_TIMEOUT_MS. Comes before all functions below.
    void begin_opening();
    void end_opening();

    // Changes this process's hold of a list without waiting. Returns false when another process is in
    // the way; the hold is then what it was. Giving up or lowering a hold always succeeds. Throws Failure when the
    // file cannot grow.
    bool set(const ListKey& list, LockLevel level);

    // Asks new readers in other processes to wait, or no longer.
    void set_writer_waits(const ListKey& list, bool waits);
    // Whether a living process other than this one asked for that.
    bool writer_waits_elsewhere(const ListKey& list);

    // Who is in the way of that level, for messages: "thread 12 of process 34".
    std::string describe_obstacle(const ListKey& list, LockLevel level) const;

private:
    // The same for 32-bit and 64-bit processes, which may share the file.
    struct Entry {
        std::atomic<std::uint64_t> holders;
        std::atomic<std::uint64_t> waiting_writers;
        std::atomic<std::uint64_t> last_holder; // process and thread
        std::uint64_t unused;
    };
    struct Header;

    bool try_byte(std::int64_t offset);
    void free_byte(std::int64_t offset);
    void write(const void* bytes, std::size_t count, std::size_t start);
    void prepare_header();
    std::string opener() const;

    static std::size_t block_of(const ListKey& list);
    bool is_prepared(const ListKey& list) const { return prepared_[block_of(list)]; }
    void prepare_block(const ListKey& list);

    bool take_slot();
    void clean_slot(int slot);
    static void take_out(Entry& entry, std::uint64_t slots);
    bool take_out_dead(Entry& entry, std::uint64_t slots);
    std::uint64_t own_bit() const;

    Header& header() const;
    Entry* entries() const { return static_cast<Entry*>(memory_); }
    Entry& entry_of(const ListKey& list) const { return entries()[list.number()]; }

    std::string path_;
    int file_;
    void* memory_ = nullptr;
    int slot_ = -1;              // none until the first lock
    std::vector<bool> prepared_; // blocks
};

} // namespace tavro::host
