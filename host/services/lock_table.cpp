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

// True if this thread has to wait for another thread of this process.
bool LockTable::is_blocked(const ListLock& lock, LockLevel level, bool holds_some, Ticket ticket) {
    const bool writes = level == LockLevel::kWrite;
    if (holds_some) {
        return writes && lock.threads.size() > 1;
    }
    if (writes ? !lock.threads.empty() : level_of(lock) == LockLevel::kWrite) {
        return true;
    }
    return std::any_of(lock.waiters.begin(), lock.waiters.end(), [&](const Waiter& waiter) {
        return waiter.ticket < ticket && (writes || waiter.level == LockLevel::kWrite);
    });
}

LockTable::Obstacle LockTable::try_lock(ListLock& lock, const Request& request, Ticket ticket) {
    lock.threads.reserve(lock.threads.size() + 1); // nothing below may run out of memory
    auto holds = mine(lock);
    const bool holds_some = holds != lock.threads.end();
    if (is_blocked(lock, request.level, holds_some, ticket)) {
        return Obstacle::kThread;
    }
    if (!holds_some && request.file->is_preceded(request.list, request.level, ticket)) {
        return Obstacle::kProcess;
    }
    if (lock.process_level < request.level) {
        if (!request.file->set(request.list, request.level)) {
            return Obstacle::kProcess;
        }
        lock.process_level = request.level;
    }
    if (!holds_some) {
        holds = lock.threads.insert(lock.threads.end(), Holds{this_thread()});
    }
    ++(request.level == LockLevel::kWrite ? holds->writes : holds->reads);
    return Obstacle::kNone;
}

std::string LockTable::describe_holders(const ListLock& lock, const Request& request, Obstacle obstacle) {
    if (obstacle == Obstacle::kProcess) {
        return request.file->describe_obstacle(request.list, request.level);
    }
    std::string holders;
    for (const Holds& holds : lock.threads) {
        if (holds.thread != this_thread()) {
            holders += (holders.empty() ? "thread " : ", thread ") + std::to_string(holds.thread);
        }
    }
    return (holders.empty() ? "a waiting thread" : holders) + " of this process";
}

// Announces the first waiting writer and reader of this process to the others. Returns false if it has no slot yet.
bool LockTable::announce(const ListLock& lock, const ListKey& list) {
    Ticket writer = LockFile::kNoTicket;
    Ticket reader = LockFile::kNoTicket;
    for (const Waiter& waiter : lock.waiters) {
        Ticket& first = waiter.level == LockLevel::kWrite ? writer : reader;
        first = std::min(first, waiter.ticket);
    }
    return lock.file->announce(list, writer, reader);
}

// The place of the calling thread in the queue.
class LockTable::Waiting {
public:
    Waiting(const LockTable& table, ListLock& lock, const Request& request)
        : table_(table), lock_(lock), request_(request), ticket_(request.file->draw_ticket()) {
        lock_.waiters.push_back({ticket_, request_.level});
        announce_once();
    }
    ~Waiting() {
        if (table_.round_ != request_.round) {
            return; // `clear` has emptied the queue
        }
        lock_.waiters.erase(std::find_if(lock_.waiters.begin(), lock_.waiters.end(),
                                         [&](const Waiter& waiter) { return waiter.ticket == ticket_; }));
        announce(lock_, request_.list);
        request_.file->wake(request_.list); // threads after this one may be next
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    Ticket ticket() const { return ticket_; }
    // Announces this thread unless that is done.
    void announce_once() { announced_ = announced_ || announce(lock_, request_.list); }

private:
    const LockTable& table_;
    ListLock& lock_;
    const Request& request_;
    const Ticket ticket_;
    bool announced_ = false;
};

LockTable::Obstacle LockTable::wait(std::unique_lock<std::mutex>& guard, ListLock& lock, const Request& request) const {
    Waiting waiting(*this, lock, request);
    for (;;) {
        const LockFile::Signal signal = request.file->signal(request.list);
        const Obstacle obstacle = try_lock(lock, request, waiting.ticket());
        const auto left = std::chrono::ceil<milliseconds>(request.end - Clock::now());
        if (obstacle == Obstacle::kNone || left <= milliseconds::zero()) {
            return obstacle;
        }
        waiting.announce_once(); // this process may have a slot now
        request.file->show_life();
        guard.unlock();
        LockFile::await(signal, std::min(left, kLockRetry));
        guard.lock();
        if (round_ != request.round) {
            return Obstacle::kCleared;
        }
    }
}

MwStatus LockTable::lock(const std::shared_ptr<LockFile>& file, const Kind& kind, const ListKey& list, LockLevel level,
                         std::uint64_t round) {
    const milliseconds timeout = lock_timeout(); // reports an invalid setting even if nobody waits
    std::unique_lock<std::mutex> guard(mutex_);
    if (round_ != round) {
        return kHostBadHandle;
    }
    ListLock& lock = locks_[list];
    if (lock.threads.empty() && lock.waiters.empty()) {
        lock.file = file;
    }
    const Request request{file, list, level, round, Clock::now() + timeout};
    Obstacle obstacle = try_lock(lock, request, LockFile::kNoTicket);
    if (obstacle != Obstacle::kNone) {
        obstacle = wait(guard, lock, request);
    }
    if (obstacle == Obstacle::kNone) {
        return kMwOk;
    }
    if (obstacle == Obstacle::kCleared) {
        return kHostBadHandle;
    }
    const std::string holders = describe_holders(lock, request, obstacle);
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
    lock.file->wake(list);
}

MwStatus LockTable::unlock(const ListKey& list, LockLevel level) {
    std::lock_guard<std::mutex> guard(mutex_);
    const auto found = locks_.find(list);
    if (found == locks_.end()) {
        return kHostNotLockHolder;
    }
    ListLock& lock = found->second;
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
    const auto found = locks_.find(list);
    if (found == locks_.end()) {
        return;
    }
    const auto holds = mine(found->second);
    if (holds != found->second.threads.end()) {
        found->second.threads.erase(holds);
        lower(list, found->second);
    }
}

void LockTable::clear() {
    std::lock_guard<std::mutex> guard(mutex_);
    ++round_;
    for (auto& [list, lock] : locks_) {
        lock.threads.clear();
        lock.waiters.clear();
        if (lock.file != nullptr) {
            lower(list, lock); // wakes the waiting threads, which are still announced
            announce(lock, list);
        }
    }
}

} // namespace tavro::host
