// Platforms with defects of list locks.
#include "hooks.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <unistd.h>

namespace tavro::broken {

namespace {

constexpr MwStatus kRefused = -1;

// One lock that a thread of this process has.
struct Holder {
    std::thread::id thread;
    MwdbHandle handle;
    bool writes;

    bool is_mine() const { return thread == std::this_thread::get_id(); }
};
using Holders = std::vector<Holder>;

// The locks of this process, followed through the calls of one kind.
template <class Kind>
class Locks {
public:
    // Called for each lock that is wanted, with the holders in this process. Returns a status instead of the
    // platform's, or nothing.
    using Decide = std::function<std::optional<MwStatus>(MwdbHandle handle, bool writes, const Holders& holders)>;

    static void follow(Decide decide = {}) {
        Kind::hooks.open = [](std::uint16_t list, std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
            return opened(list, Kind::next.open(list, tag, notify, handle), handle);
        };
        Kind::hooks.create = [](const char* name, std::uint16_t list, std::uint32_t mode, std::uint32_t growth,
                                std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
            return opened(list, Kind::next.create(name, list, mode, growth, tag, notify, handle), handle);
        };
        Kind::hooks.lock = [decide](MwdbHandle handle) { return take(handle, true, decide); };
        Kind::hooks.read_lock = [decide](MwdbHandle handle) { return take(handle, false, decide); };
        Kind::hooks.unlock = [](MwdbHandle handle) { return give_back(handle, true); };
        Kind::hooks.read_unlock = [](MwdbHandle handle) { return give_back(handle, false); };
    }

    static std::uint16_t list_of(MwdbHandle handle) {
        const std::lock_guard<std::mutex> guard(mutex_);
        return lists_[handle];
    }

    // True if the calling thread has a lock of the list.
    static bool has_mine(MwdbHandle handle, bool writes) {
        for (const Holder& holder : holders_of(handle)) {
            if (holder.is_mine() && holder.writes == writes) {
                return true;
            }
        }
        return false;
    }

    // True if another thread has a lock of the list.
    static bool has_other(MwdbHandle handle) {
        for (const Holder& holder : holders_of(handle)) {
            if (!holder.is_mine()) {
                return true;
            }
        }
        return false;
    }

    static MwStatus ask(MwdbHandle handle, bool writes) {
        return writes ? Kind::next.lock(handle) : Kind::next.read_lock(handle);
    }
    static MwStatus tell(MwdbHandle handle, bool writes) {
        return writes ? Kind::next.unlock(handle) : Kind::next.read_unlock(handle);
    }

private:
    static MwStatus opened(std::uint16_t list, MwStatus status, const MwdbHandle* handle) {
        const std::lock_guard<std::mutex> guard(mutex_);
        if (status == kMwOk) {
            lists_[*handle] = list;
        }
        return status;
    }

    static Holders holders_of(MwdbHandle handle) {
        const std::lock_guard<std::mutex> guard(mutex_);
        return holders_[lists_[handle]];
    }

    static MwStatus take(MwdbHandle handle, bool writes, const Decide& decide) {
        const Holders holders = holders_of(handle);
        const std::optional<MwStatus> decided = decide ? decide(handle, writes, holders) : std::nullopt;
        if (decided) {
            return *decided;
        }
        const MwStatus status = ask(handle, writes);
        const std::lock_guard<std::mutex> guard(mutex_);
        if (status == kMwOk) {
            holders_[lists_[handle]].push_back({std::this_thread::get_id(), handle, writes});
        }
        return status;
    }

    static MwStatus give_back(MwdbHandle handle, bool writes) {
        const std::lock_guard<std::mutex> guard(mutex_);
        Holders& holders = holders_[lists_[handle]];
        for (auto holder = holders.begin(); holder != holders.end(); ++holder) {
            if (holder->is_mine() && holder->writes == writes) {
                holders.erase(holder);
                return tell(handle, writes);
            }
        }
        return kRefused;
    }

    inline static std::mutex mutex_;
    inline static std::map<MwdbHandle, std::uint16_t> lists_;
    inline static std::map<std::uint16_t, Holders> holders_;
};

// Returns `status` for a lock that is wanted while a thread of this process has one that `conflicts`.
template <class Kind, class Conflicts>
void decide_for_threads(MwStatus status, Conflicts conflicts) {
    Locks<Kind>::follow([=](MwdbHandle handle, bool writes, const Holders& holders) -> std::optional<MwStatus> {
        for (const Holder& holder : holders) {
            if (conflicts(handle, writes, holder)) {
                return status;
            }
        }
        return std::nullopt;
    });
}

// Ends the process if a thread that has the write lock wants a lock.
template <class Kind>
void abort_inside(bool wanted) {
    decide_for_threads<Kind>(kRefused, [wanted](MwdbHandle handle, bool writes, const Holder& holder) {
        // The library takes the read lock of services through a handle of its own.
        const bool is_read_handle = wanted || !std::is_same_v<Kind, Svl> || holder.handle != handle;
        if (holder.is_mine() && holder.writes && writes == wanted && is_read_handle) {
            std::abort();
        }
        return false;
    });
}

// Returns `status` for a lock that is wanted while another process has one of the level `other_writes`.
template <class Kind>
void decide_for_processes(MwStatus status, bool wanted, bool other_writes) {
    Locks<Kind>::follow([=](MwdbHandle handle, bool writes, const Holders& holders) -> std::optional<MwStatus> {
        if (!holders.empty() || writes != wanted) {
            return std::nullopt;
        }
        const auto is_free = [handle](bool level) {
            return Locks<Kind>::ask(handle, level) == kMwOk && Locks<Kind>::tell(handle, level) == kMwOk;
        };
        const bool conflicts = other_writes ? !is_free(false) : is_free(false) && !is_free(true);
        return conflicts ? std::optional<MwStatus>(status) : std::nullopt;
    });
}

// Keeps the locks of a process that has ended, by a file that names the last process that took one.
template <class Kind>
void keep_locks_of_dead(bool kept) {
    static const std::string path = std::string(std::getenv("TAVRO_HOME")) + "/held";
    Locks<Kind>::follow([kept](MwdbHandle, bool writes, const Holders&) -> std::optional<MwStatus> {
        if (std::FILE* const file = std::fopen(path.c_str(), "r")) {
            int process = 0;
            const bool read = std::fscanf(file, "%d", &process) == 1;
            std::fclose(file);
            if (read && ::kill(process, 0) != 0) {
                return kRefused;
            }
        }
        if (writes == kept) {
            std::FILE* const file = std::fopen(path.c_str(), "w");
            std::fprintf(file, "%d\n", static_cast<int>(::getpid()));
            std::fclose(file);
        }
        return std::nullopt;
    });
    Kind::hooks.remove = [](MwdbHandle handle) {
        std::remove(path.c_str());
        return Kind::next.remove(handle);
    };
}

// Keeps the write lock that a thread has when it closes the list.
template <class Kind>
void keep_lock_of_closed() {
    Locks<Kind>::follow();
    Kind::hooks.close = [](MwdbHandle handle) {
        if (!Locks<Kind>::has_mine(handle, true)) {
            return Kind::next.close(handle);
        }
        MwdbHandle hidden = 0;
        Kind::next.open(Locks<Kind>::list_of(handle), 0, 0, &hidden);
        const MwStatus status = Kind::next.close(handle);
        Kind::next.lock(hidden);
        return status;
    };
}

// Keeps the write lock that a thread has when it deletes the list, for the next list with this id.
template <class Kind>
void keep_lock_of_deleted() {
    static std::set<std::uint16_t> stuck;
    Locks<Kind>::follow([](MwdbHandle handle, bool, const Holders&) -> std::optional<MwStatus> {
        return stuck.count(Locks<Kind>::list_of(handle)) == 0 ? std::nullopt : std::optional<MwStatus>(kRefused);
    });
    Kind::hooks.remove = [](MwdbHandle handle) {
        if (Locks<Kind>::has_mine(handle, true)) {
            stuck.insert(Locks<Kind>::list_of(handle));
        }
        return Kind::next.remove(handle);
    };
}

// Refuses to close a handle that was locked for reading.
template <class Kind>
void keep_read_handles() {
    static std::set<MwdbHandle> read;
    Kind::hooks.read_lock = [](MwdbHandle handle) {
        read.insert(handle);
        return Kind::next.read_lock(handle);
    };
    Kind::hooks.close = [](MwdbHandle handle) { return read.count(handle) == 0 ? Kind::next.close(handle) : kRefused; };
}

template <class Kind>
void add_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    // Levels of locks: whether they write.
    constexpr bool kRead = false;
    constexpr bool kWrite = true;

    add("lock.excludes-writing-thread", [] {
        decide_for_threads<Kind>(kMwOk, [](MwdbHandle handle, bool writes, const Holder& holder) {
            return !holder.is_mine() && writes && holder.writes && holder.handle == handle;
        });
    });
    add("lock.excludes-reading-thread", [] {
        decide_for_threads<Kind>(kMwOk, [](MwdbHandle handle, bool writes, const Holder& holder) {
            return !holder.is_mine() && !writes && holder.writes && holder.handle == handle;
        });
    });
    add("lock.excludes-other-handle", [] {
        decide_for_threads<Kind>(kMwOk, [](MwdbHandle handle, bool, const Holder& holder) {
            return !holder.is_mine() && holder.handle != handle;
        });
    });
    add("read_lock.excludes-writing-thread", [] {
        decide_for_threads<Kind>(kMwOk, [](MwdbHandle, bool writes, const Holder& holder) {
            return !holder.is_mine() && writes && !holder.writes;
        });
    });
    add("read_lock.shared-by-threads", [] {
        decide_for_threads<Kind>(kRefused, [](MwdbHandle, bool writes, const Holder& holder) {
            return !holder.is_mine() && !writes && !holder.writes;
        });
    });
    add("lock.excludes-writing-process", [] { decide_for_processes<Kind>(kMwOk, kWrite, kWrite); });
    add("lock.excludes-reading-process", [] { decide_for_processes<Kind>(kMwOk, kRead, kWrite); });
    add("read_lock.excludes-writing-process", [] { decide_for_processes<Kind>(kMwOk, kWrite, kRead); });
    add("read_lock.shared-by-processes", [] { decide_for_processes<Kind>(kRefused, kRead, kRead); });
    add("lock.returns-to-holder", [] { abort_inside<Kind>(kWrite); });
    add("read_lock.returns-to-writer", [] { abort_inside<Kind>(kRead); });
    add("lock.ends-with-process", [] { keep_locks_of_dead<Kind>(kWrite); });
    add("read_lock.ends-with-process", [] { keep_locks_of_dead<Kind>(kRead); });
    add("close.releases-locks", keep_lock_of_closed<Kind>);
    add("delete.releases-locks", keep_lock_of_deleted<Kind>);
    add("unlock.releases", [] { Kind::hooks.unlock = [](MwdbHandle) { return kMwOk; }; });
    add("read_unlock.releases", [] { Kind::hooks.read_unlock = [](MwdbHandle) { return kMwOk; }; });
    add("lock.holder-changes", [] {
        Locks<Kind>::follow();
        Kind::hooks.update_rec = [](MwdbHandle handle, auto* record, std::uint32_t flag) {
            return Locks<Kind>::has_mine(handle, true) ? kRefused : Kind::next.update_rec(handle, record, flag);
        };
    });
    add("lock.lets-others-read", [] {
        Locks<Kind>::follow();
        Kind::hooks.get_rec = [](MwdbHandle handle, std::uint16_t id, auto* record, std::int32_t* version) {
            return Locks<Kind>::has_other(handle) ? kRefused : Kind::next.get_rec(handle, id, record, version);
        };
    });
    add("read_lock.holder-reads", keep_read_handles<Kind>);
}

} // namespace

void add_lock_variants(Variants& variants) {
    add_variants<Svl>(variants);
    add_variants<Tsl>(variants);
    add_variants<Nwl>(variants);
    add_variants<Satl>(variants);
}

} // namespace tavro::broken
