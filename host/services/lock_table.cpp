#include "lock_table.h"

#include "common/report.h"
#include "lock_wait.h"
#include "status.h"

#include <algorithm>

namespace tavro::host {

using std::chrono::milliseconds;

LockLevel LockTable::level_of(const ListLock& lock) {
    LockLevel level = LockLevel::kNone;
    for (const Holds& holds : lock.threads) {
        level = std::max(level, holds.writes > 0 ? LockLevel::kWrite : LockLevel::kRead);
    }
    return level;
}

std::vector<LockTable::Holds>::iterator LockTable::mine(ListLock& lock) {
    return std::find_if(lock.threads.begin(), lock.threads.end(),
                        [](const Holds& holds) { return holds.thread == this_thread(); });
}

// True if this thread has to wait for another thread of this process. Waiting writers take precedence over new readers.
bool LockTable::is_blocked(const ListLock& lock, LockLevel level, bool holds_some) {
    const std::size_t others = lock.threads.size() - (holds_some ? 1 : 0);
    if (level == LockLevel::kWrite) {
        return others != 0;
    }
    if (holds_some) {
        return false;
    }
    return lock.waiting_writers != 0 || level_of(lock) == LockLevel::kWrite;
}

LockTable::Obstacle LockTable::try_lock(ListLock& lock, const ListKey& list, LockLevel level) {
    auto holds = mine(lock);
    const bool holds_some = holds != lock.threads.end();
    if (is_blocked(lock, level, holds_some)) {
        return Obstacle::kThread;
    }
    if (level == LockLevel::kRead && !holds_some && lock.file->writer_waits_elsewhere(list)) {
        return Obstacle::kProcess;
    }
    if (lock.process_level < level) {
        if (!lock.file->set(list, level)) {
            return Obstacle::kProcess;
        }
        lock.process_level = level;
    }
    if (!holds_some) {
        holds = lock.threads.insert(lock.threads.end(), Holds{this_thread()});
    }
    ++(level == LockLevel::kWrite ? holds->writes : holds->reads);
    return Obstacle::kNone;
}

std::string LockTable::describe_holders(const ListLock& lock, const ListKey& list, LockLevel level, Obstacle obstacle) {
    if (obstacle == Obstacle::kProcess) {
        return lock.file->describe_obstacle(list, level);
    }
    std::string holders;
    for (const Holds& holds : lock.threads) {
        if (holds.thread != this_thread()) {
            holders += (holders.empty() ? "thread " : ", thread ") + std::to_string(holds.thread);
        }
    }
    return (holders.empty() ? "a waiting writer" : holders) + " of this process";
}

LockTable::Obstacle LockTable::wait(std::unique_lock<std::mutex>& guard, ListLock& lock, const ListKey& list,
                                    LockLevel level, Clock::time_point end) {
    // Counts this thread as a waiting writer for its scope. The first one is announced to other processes, the last one
    // withdraws that.
    struct WaitingWriter {
        ListLock& lock;
        const ListKey& list;
        const bool writes;
        WaitingWriter(ListLock& list_lock, const ListKey& key, bool is_writer)
            : lock(list_lock), list(key), writes(is_writer) {
            if (writes && ++lock.waiting_writers == 1) {
                lock.file->set_writer_waits(list, true);
            }
        }
        ~WaitingWriter() {
            if (writes && --lock.waiting_writers == 0) {
                lock.file->set_writer_waits(list, false);
            }
        }
        WaitingWriter(const WaitingWriter&) = delete;
        WaitingWriter& operator=(const WaitingWriter&) = delete;
    };
    const WaitingWriter waiting(lock, list, level == LockLevel::kWrite);
    Obstacle obstacle = Obstacle::kThread;
    do {
        const Clock::time_point retry = Clock::now() + kProcessRetry;
        obstacle = try_lock(lock, list, level);
        if (obstacle != Obstacle::kNone) {
            changed_.wait_until(guard, obstacle == Obstacle::kProcess ? std::min(end, retry) : end);
        }
    } while (obstacle != Obstacle::kNone && Clock::now() < end);
    return obstacle == Obstacle::kNone ? obstacle : try_lock(lock, list, level);
}

MwStatus LockTable::lock(const std::shared_ptr<LockFile>& file, const Kind& kind, const ListKey& list,
                         LockLevel level) {
    const milliseconds timeout = lock_timeout(); // first, so that an invalid setting is reported even if nobody waits
    std::unique_lock<std::mutex> guard(mutex_);
    ListLock& lock = locks_[list];
    if (lock.threads.empty()) {
        lock.file = file;
    }
    Obstacle obstacle = try_lock(lock, list, level);
    if (obstacle != Obstacle::kNone) {
        obstacle = wait(guard, lock, list, level, Clock::now() + timeout);
    }
    if (obstacle == Obstacle::kNone) {
        return kMwOk;
    }
    const std::string holders = describe_holders(lock, list, level, obstacle);
    changed_.notify_all(); // wakes readers that were waiting for this writer
    guard.unlock();
    report(std::string("timeout: thread ") + std::to_string(this_thread()) + " waited " +
           std::to_string(timeout.count()) + " ms for the " + (level == LockLevel::kWrite ? "write" : "read") +
           " lock of " + kind.name + " list " + std::to_string(list.list_id) + ", held by " + holders +
           "; check for a missing unlock there, or raise TAVRO_LOCK_TIMEOUT_MS");
    return kHostLockTimeout;
}

// Lowers the process's level to what its threads still hold, and wakes waiting threads.
void LockTable::lower(const ListKey& list, ListLock& lock) {
    const LockLevel level = level_of(lock);
    if (level != lock.process_level) {
        lock.file->set(list, level);
        lock.process_level = level;
    }
    changed_.notify_all();
}

MwStatus LockTable::unlock(const ListKey& list, LockLevel level) {
    std::lock_guard<std::mutex> guard(mutex_);
    ListLock& lock = locks_[list];
    const auto holds = mine(lock);
    if (holds == lock.threads.end()) {
        return kHostNotLockHolder;
    }
    int& count = level == LockLevel::kWrite ? holds->writes : holds->reads;
    if (count == 0) {
        return kHostNotLockHolder;
    }
    --count;
    if (holds->reads == 0 && holds->writes == 0) {
        lock.threads.erase(holds);
    }
    lower(list, lock);
    return kMwOk;
}

void LockTable::release(const ListKey& list) {
    std::lock_guard<std::mutex> guard(mutex_);
    ListLock& lock = locks_[list];
    const auto holds = mine(lock);
    if (holds != lock.threads.end()) {
        lock.threads.erase(holds);
        lower(list, lock);
    }
}

void LockTable::clear() {
    std::lock_guard<std::mutex> guard(mutex_);
    for (auto& [list, lock] : locks_) {
        lock.threads.clear();
        if (lock.file != nullptr) {
            lower(list, lock);
        }
    }
}

} // namespace tavro::host
