// Locks between processes, in a file that all of them map. Taking or releasing an uncontended lock is one atomic memory
// operation, without a system call.
#pragma once

#include "kinds.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
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
// Threads that wait form one queue per list, across processes. A waiting thread has a ticket, and its process announces
// the lowest tickets that its threads have. The tickets of a process that a signal or a debugger has suspended are
// ignored. A process is examined for that only when it has shown no sign of life for a while.
//
// Not thread-safe, except `begin_opening`, `end_opening` and `await`.
class LockFile {
public:
    using Ticket = std::uint64_t;
    static constexpr Ticket kNoTicket = std::numeric_limits<Ticket>::max(); // later than all others

    // Opens or creates the file. Throws Failure(kHostStorageUnavailable).
    explicit LockFile(const std::string& path);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    // Throws Failure(kHostStorageUnavailable) in a forked child of a process that has opened a lock file: it has no
    // locks, and must not use its parent's database.
    static void check_process();

    // Waits until no other process is opening the storage, and keeps others out until `end_opening`. Throws
    // Failure(kHostLockTimeout) after TAVRO_LOCK_TIMEOUT_MS. Call before all functions below.
    void begin_opening();
    void end_opening();

    // Sets this process's level without waiting. Returns false and changes nothing if another process prevents it.
    // Lowering the level always succeeds. Throws Failure if the file cannot grow.
    bool set(const ListKey& list, LockLevel level);

    // Returns a ticket that is later than all tickets so far.
    Ticket draw_ticket();
    // Announces the first tickets of this process's threads that wait for the write lock and for the read lock. Returns
    // false and does nothing as long as this process cannot get the list's lock, because all slots are taken.
    bool announce(const ListKey& list, Ticket writer, Ticket reader);
    // Shows that this process is not suspended. Waiting threads call it in each round.
    void show_life();
    // True if a thread of another process, which has a lower ticket, must get the lock first. Readers do not wait for
    // each other. Throws Failure if the file cannot grow.
    bool is_preceded(const ListKey& list, LockLevel level, Ticket ticket);

    // What a waiting thread sleeps on.
    struct Signal {
        const std::atomic<std::uint32_t>* word; // null without a prepared block
        std::uint32_t seen;
    };
    // The state of the list's lock, to be read before trying to lock.
    Signal signal(const ListKey& list) const;
    // Returns when a process has called `wake` since the signal was read, or after this time.
    static void await(const Signal& signal, std::chrono::milliseconds time);
    // Wakes the waiting threads of all processes.
    void wake(const ListKey& list);

    // Describes who prevents that level, for messages: "thread 12 of process 34".
    std::string describe_obstacle(const ListKey& list, LockLevel level) const;

private:
    // Same layout in 32-bit and 64-bit processes, which may share the file.
    struct Entry {
        std::atomic<std::uint64_t> holders;
        std::atomic<std::uint64_t> waiting;     // processes with waiting threads
        std::atomic<std::uint64_t> last_holder; // process and thread
        std::atomic<std::uint32_t> wakes;       // counts; waiting threads sleep on it
        std::uint32_t unused;
    };
    struct Header;
    struct Queue;

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
    static void clear_holders(Entry& entry, std::uint64_t slots);
    static void clear_slots(Entry& entry, std::uint64_t slots);
    bool clear_dead_slots(Entry& entry, std::uint64_t slots);
    std::uint64_t own_bit() const;
    bool announces_earlier(int slot, const ListKey& list, LockLevel level, Ticket ticket) const;

    Header& header() const;
    Queue& queue_of(int slot) const;
    Entry* entries() const { return static_cast<Entry*>(memory_); }
    Entry& entry_of(const ListKey& list) const { return entries()[list.number()]; }

    std::string path_;
    std::vector<bool> prepared_; // by block
    void* memory_ = nullptr;     // set together with the file
    int file_;                   // opened last, because the constructor must not fail afterwards
    int slot_ = -1;              // -1 until the first lock
};

} // namespace tavro::host
