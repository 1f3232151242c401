// The lists' reader-writer locks, between the threads of this process and between processes.
#pragma once

#include "lock_file.h"

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavro::host {

// Thread-safe. Locks belong to the calling thread and are recursive: it may lock again what it holds, also for reading
// while it holds the write lock, and must unlock as often. A thread that is the only reader may take the write lock.
class LockTable {
public:
    // Waits at most TAVRO_LOCK_TIMEOUT_MS milliseconds (default 3000), then logs who waited for whom and returns
    // kHostLockTimeout.
    tavro::MwStatus lock(const std::shared_ptr<LockFile>& file, const Kind& kind, const ListKey& list, LockLevel level);

    // Releases one lock of that level. Returns kHostNotLockHolder if the thread holds none.
    tavro::MwStatus unlock(const ListKey& list, LockLevel level);

    // Releases all locks of the calling thread on the list.
    void release(const ListKey& list);

    // Releases all locks of all threads.
    void clear();

private:
    struct Holds {
        pid_t thread;
        int reads = 0;
        int writes = 0;
    };
    struct ListLock {
        std::shared_ptr<LockFile> file;
        std::vector<Holds> threads; // threads that hold the lock
        int waiting_writers = 0;
        LockLevel process_level = LockLevel::kNone;
    };
    using Clock = std::chrono::steady_clock;
    enum class Obstacle { kNone, kThread, kProcess };

    static LockLevel level_of(const ListLock& lock);
    static std::vector<Holds>::iterator mine(ListLock& lock);
    static bool is_blocked(const ListLock& lock, LockLevel level, bool holds_some);
    static Obstacle try_lock(ListLock& lock, const ListKey& list, LockLevel level);
    static std::string describe_holders(const ListLock& lock, const ListKey& list, LockLevel level, Obstacle obstacle);
    Obstacle wait(std::unique_lock<std::mutex>& guard, ListLock& lock, const ListKey& list, LockLevel level,
                  Clock::time_point end);
    void lower(const ListKey& list, ListLock& lock);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::map<ListKey, ListLock> locks_;
};

} // namespace tavro::host
