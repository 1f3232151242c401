#include "lock_table.h"

#include "common/report.h"
#include "status.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tavro::host {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kDefaultTimeout{3000};
// How often a lock that another process holds is tried again: there is no notification when it is released.
constexpr milliseconds kProcessRetry{2};

constexpr std::uint32_t kLongestTimeout = std::numeric_limits<std::int32_t>::max();

milliseconds lock_timeout() {
    const char* const setting = std::getenv("TAVRO_LOCK_TIMEOUT_MS");
    if (setting == nullptr || *setting == '\0') {
        return kDefaultTimeout;
    }
    const std::string_view text = setting;
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value > kLongestTimeout) {
        report_once("TAVRO_LOCK_TIMEOUT_MS is '" + std::string(text) +
                    "', which is not a number of milliseconds from 0 to " + std::to_string(kLongestTimeout) +
                    "; waiting " + std::to_string(kDefaultTimeout.count()) + " ms instead");
        return kDefaultTimeout;
    }
    return milliseconds{value};
}

pid_t this_thread() {
    static thread_local const pid_t id = ::gettid();
    return id;
}

} // namespace

LockLevel LockTable::level_of(const ListLock& lock) {
    LockLevel level = LockLevel::kNone;
    for (const auto& [thread, holds] : lock.threads) {
        level = std::max(level, holds.writes > 0 ? LockLevel::kWrite : LockLevel::kRead);
    }
    return level;
}

// Whether another thread of this process must be waited for. New readers let waiting writers go first.
bool LockTable::stands_in_the_way(const ListLock& lock, LockLevel level) {
    const bool holds_some = lock.threads.count(this_thread()) != 0;
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
    if (stands_in_the_way(lock, level)) {
        return Obstacle::kThread;
    }
    if (lock.process_level < level) {
        if (!lock.file->set(list, level)) {
            return Obstacle::kProcess;
        }
        lock.process_level = level;
    }
    Holds& holds = lock.threads[this_thread()];
    ++(level == LockLevel::kWrite ? holds.writes : holds.reads);
    return Obstacle::kNone;
}

std::string LockTable::describe_holders(const ListLock& lock, const ListKey& list, Obstacle obstacle) {
    if (obstacle == Obstacle::kProcess) {
        return lock.file->last_holder(list);
    }
    std::string holders;
    for (const auto& [thread, holds] : lock.threads) {
        if (thread != this_thread()) {
            holders += (holders.empty() ? "thread " : ", thread ") + std::to_string(thread);
        }
    }
    return (holders.empty() ? "a thread that waits to write" : holders) + " of this process";
}

LockTable::Obstacle LockTable::wait(std::unique_lock<std::mutex>& guard, ListLock& lock, const ListKey& list,
                                    LockLevel level, Clock::time_point end) {
    // Counts a waiting writer as long as it waits, whatever ends the waiting.
    struct WaitingWriter {
        int& count;
        const int self;
        WaitingWriter(int& writers, bool writes) : count(writers), self(writes ? 1 : 0) { count += self; }
        ~WaitingWriter() { count -= self; }
    };
    const WaitingWriter waiting(lock.waiting_writers, level == LockLevel::kWrite);
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
    const milliseconds timeout = lock_timeout();
    const Clock::time_point end = Clock::now() + timeout;
    std::unique_lock<std::mutex> guard(mutex_);
    ListLock& lock = locks_[list];
    if (lock.threads.empty()) {
        lock.file = file;
    }
    Obstacle obstacle = try_lock(lock, list, level);
    if (obstacle != Obstacle::kNone) {
        obstacle = wait(guard, lock, list, level, end);
    }
    if (obstacle == Obstacle::kNone) {
        return kMwOk;
    }
    const std::string holders = describe_holders(lock, list, obstacle);
    changed_.notify_all(); // readers that let this writer go first
    guard.unlock();
    report(std::string("time-out: thread ") + std::to_string(this_thread()) + " waited " +
           std::to_string(timeout.count()) + " ms for the " + (level == LockLevel::kWrite ? "write" : "read") +
           " lock of " + kind.name + " list " + std::to_string(list.list_id) + ", held by " + holders +
           "; look for a lock that is not given back there, or set TAVRO_LOCK_TIMEOUT_MS higher");
    return kHostLockTimeout;
}

// Brings the process's hold down to what its threads still hold, and wakes those who wait.
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
    const auto mine = lock.threads.find(this_thread());
    if (mine == lock.threads.end()) {
        return kHostNotLockHolder;
    }
    int& holds = level == LockLevel::kWrite ? mine->second.writes : mine->second.reads;
    if (holds == 0) {
        return kHostNotLockHolder;
    }
    --holds;
    if (mine->second.reads == 0 && mine->second.writes == 0) {
        lock.threads.erase(mine);
    }
    lower(list, lock);
    return kMwOk;
}

void LockTable::release(const ListKey& list) {
    std::lock_guard<std::mutex> guard(mutex_);
    ListLock& lock = locks_[list];
    if (lock.threads.erase(this_thread()) != 0) {
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
