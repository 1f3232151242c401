// Locks between processes, in a file that all of them map. Taking or releasing an uncontended lock is one atomic memory
// operation, without a system call.
#pragma once

#include "kinds.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavro::host {

// How a process or a thread holds a list's lock.
enum class LockLevel { kNone, kRead, kWrite };

// Each list has a word with one bit per process that holds its lock, plus one bit that marks the holder as the writer.
// A process's bit number is its slot. It owns the slot through an open-file-description lock on one byte of the file,
// which the kernel releases when the process ends in any way. So the bits of a slot whose byte is unlocked belong to a
// dead process; the next process that finds them clears them. Words change only atomically, so a process may be killed
// at any point.
//
// Not thread-safe, except `begin_opening` and `end_opening`.
class LockFile {
public:
    // Opens or creates the file. Throws Failure(kHostStorageUnavailable).
    explicit LockFile(const std::string& path);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    // Waits until no other process is opening the storage, and keeps others out until `end_opening`. Throws
    // Failure(kHostLockTimeout) after TAVRO_LOCK_TIMEOUT_MS. Call before all functions below.
    void begin_opening();
    void end_opening();

    // Sets this process's level without waiting. Returns false and changes nothing if another process prevents it.
    // Lowering the level always succeeds. Throws Failure if the file cannot grow.
    bool set(const ListKey& list, LockLevel level);

    // Sets whether new readers in other processes have to wait for a writer of this one.
    void set_writer_waits(const ListKey& list, bool waits);
    // True if a writer in another living process is waiting.
    bool writer_waits_elsewhere(const ListKey& list);

    // Describes who prevents that level, for messages: "thread 12 of process 34".
    std::string describe_obstacle(const ListKey& list, LockLevel level) const;

private:
    // Same layout in 32-bit and 64-bit processes, which may share the file.
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
    static void clear_slots(Entry& entry, std::uint64_t slots);
    bool clear_dead_slots(Entry& entry, std::uint64_t slots);
    std::uint64_t own_bit() const;

    Header& header() const;
    Entry* entries() const { return static_cast<Entry*>(memory_); }
    Entry& entry_of(const ListKey& list) const { return entries()[list.number()]; }

    std::string path_;
    int file_;
    void* memory_ = nullptr;
    int slot_ = -1;              // -1 until the first lock
    std::vector<bool> prepared_; // by block
};

} // namespace tavro::host
