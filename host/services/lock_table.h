// The lists' reader-writer locks, between the threads of this process and between processes.
#pragma once

#include "lock_file.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavro::host {

// Thread-safe. Locks belong to the calling thread and are recursive: it may lock again what it holds, also for reading
// while it holds the write lock, and must unlock as often. A thread that is the only reader may take the write lock.
//
// Threads that wait, here and in other processes, get the lock in the order in which they came; readers that came
// before the next writer get it together. A thread that holds the lock already does not queue.
//
// If memory runs out, std::bad_alloc is thrown and nothing is changed.
class LockTable {
public:
    // Waits at most TAVRO_LOCK_TIMEOUT_MS milliseconds (default 3000), then logs who waited for whom and returns
    // kHostLockTimeout. `round` is the value that `round` returned when the list's handle was valid: after a `clear`,
    // or if there is one while the thread waits, returns kHostBadHandle.
    tavro::MwStatus lock(const std::shared_ptr<LockFile>& file, const Kind& kind, const ListKey& list, LockLevel level,
                         std::uint64_t round);

    // Releases one lock of that level. Returns kHostNotLockHolder if the thread holds none.
    tavro::MwStatus unlock(const ListKey& list, LockLevel level);

    // Releases all locks of the calling thread on the list.
    void release(const ListKey& list);

    // Releases all locks of all threads, and ends their waits.
    void clear();
    // Number of calls of `clear`.
    std::uint64_t round() const { return round_; }

private:
    using Clock = std::chrono::steady_clock;
    using Ticket = LockFile::Ticket;
    struct Holds {
        pid_t thread;
        int reads = 0;
        int writes = 0;
    };
    struct Waiter {
        Ticket ticket;
        LockLevel level;
    };
    struct ListLock {
        std::shared_ptr<LockFile> file;
        std::vector<Holds> threads;  // threads that hold the lock
        std::vector<Waiter> waiters; // threads that wait for it
        LockLevel process_level = LockLevel::kNone;
    };
    enum class Obstacle { kNone, kThread, kProcess, kCleared };
    // A call of `lock`.
    struct Request {
        const std::shared_ptr<LockFile>& file;
        const ListKey& list;
        LockLevel level;
        std::uint64_t round;
        Clock::time_point end;
    };
    class Waiting;

    static LockLevel level_of(const ListLock& lock);
    static std::vector<Holds>::iterator mine(ListLock& lock);
    static bool is_blocked(const ListLock& lock, LockLevel level, bool holds_some, Ticket ticket);
    static Obstacle try_lock(ListLock& lock, const Request& request, Ticket ticket);
    static std::string describe_holders(const ListLock& lock, const Request& request, Obstacle obstacle);
    static bool announce(const ListLock& lock, const ListKey& list);
    static void lower(const ListKey& list, ListLock& lock);
    Obstacle wait(std::unique_lock<std::mutex>& guard, ListLock& lock, const Request& request) const;

    std::mutex mutex_;
    std::map<ListKey, ListLock> locks_; // entries are never removed
    std::atomic<std::uint64_t> round_{0};
};

} // namespace tavro::host
