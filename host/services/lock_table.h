// The lists' locks: many readers or one writer, between the threads of this process and between
// processes.
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

// All functions may be called from any thread. Holds belong to the calling thread, which may take a
// lock that it holds again, for reading within its writing too, and must give each back. A thread that
// is the only reader may become the writer.
class LockTable {
public:
    // Takes the list's lock. Waits at most TAVRO_LOCK_TIMEOUT_MS milliseconds (3000 without it), then
    // logs who waited for whom and returns kHostLockTimeout.
    MwStatus lock(const std::shared_ptr<LockFile>& file, const Kind& kind, const ListKey& list, LockLevel level);

    // Gives one hold of that level back. kHostNotLockHolder when the thread has none.
    MwStatus unlock(const ListKey& list, LockLevel level);

    // Gives back all that the thread holds of the list.
    void release(const ListKey& list);

    // Forgets every hold of every thread.
    void clear();

private:
    struct Holds {
        pid_t thread;
        int reads = 0;
        int writes = 0;
    };
    struct ListLock {
        std::shared_ptr<LockFile> file;
        std::vector<Holds> threads; // only those that hold something
        int waiting_writers = 0;
        LockLevel process_level = LockLevel::kNone;
    };
    using Clock = std::chrono::steady_clock;
    enum class Obstacle { kNone, kThread, kProcess };

    static LockLevel level_of(const ListLock& lock);
    static std::vector<Holds>::iterator mine(ListLock& lock);
    static bool stands_in_the_way(const ListLock& lock, LockLevel level, bool holds_some);
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
