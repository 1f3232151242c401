// Checks of list locks: between threads, between processes, and within the thread that holds one.
#include "conform/lists.h"
#include "conform/peer.h"

#include <future>
#include <thread>
#include <utility>

namespace tavro::conform {

namespace {

using std::chrono::milliseconds;

// How long a check waits for a lock that must not be granted. A correct platform never grants it, however long the
// wait.
constexpr milliseconds kGrace{50};

enum class Level { kRead, kWrite };

const char* name_of(Level level) { return level == Level::kWrite ? "write lock" : "read lock"; }

template <class Kind, Level kLevel>
MwStatus take(MwdbHandle handle) {
    return kLevel == Level::kWrite ? Kind::lock(handle) : Kind::read_lock(handle);
}
template <class Kind, Level kLevel>
MwStatus release(MwdbHandle handle) {
    return kLevel == Level::kWrite ? Kind::unlock(handle) : Kind::read_unlock(handle);
}

// Takes a lock and releases it. Returns the status of the first call.
template <class Kind, Level kLevel>
MwStatus take_once(MwdbHandle handle) {
    const MwStatus status = take<Kind, kLevel>(handle);
    if (status == kMwOk) {
        release<Kind, kLevel>(handle);
    }
    return status;
}

// Another thread, which takes a lock once.
template <class Kind, Level kLevel>
class OtherThread {
public:
    explicit OtherThread(MwdbHandle handle) : handle_(handle) {}
    void start() {
        std::promise<void> begun;
        std::future<void> has_begun = begun.get_future();
        std::promise<MwStatus> status;
        status_ = status.get_future();
        std::thread([handle = handle_, begun = std::move(begun), status = std::move(status)]() mutable {
            begun.set_value();
            status.set_value(take_once<Kind, kLevel>(handle));
        }).detach();
        has_begun.wait();
    }
    std::optional<std::int64_t> result(milliseconds wait) {
        if (status_.wait_for(wait) != std::future_status::ready) {
            return std::nullopt;
        }
        return status_.get();
    }

private:
    MwdbHandle handle_;
    std::future<MwStatus> status_;
};

// Another process, which takes a lock once.
template <class Kind, Level kLevel>
class OtherProcess {
public:
    explicit OtherProcess(Peer& peer) : peer_(peer) {
        peer_.call([](Run& run, std::int64_t) { return std::int64_t{handle(run)}; });
    }
    void start() {
        peer_.start([](Run& run, std::int64_t) { return std::int64_t{take_once<Kind, kLevel>(handle(run))}; });
    }
    std::optional<std::int64_t> result(milliseconds wait) { return peer_.result(wait); }
    // Takes the lock and keeps it.
    void hold() {
        peer_.call([](Run& run, std::int64_t) {
            run.done(take<Kind, kLevel>(handle(run)));
            return std::int64_t{0};
        });
    }

private:
    static MwdbHandle handle(Run& run) {
        static const MwdbHandle opened = open<Kind>(run, run.list());
        return opened;
    }
    Peer& peer_;
};

// Fails the check if `other` gets its lock while this thread holds one. It may wait, or be refused.
template <class Kind, Level kHeld, Level kWanted, class Other>
void excludes(Run& run, MwdbHandle handle, Other other, const char* whose) {
    run.done(take<Kind, kHeld>(handle));
    other.start();
    const auto early = other.result(kGrace);
    run.expect(early != kMwOk,
               std::string("no ") + name_of(kWanted) + " for " + whose + " while this thread has the " + name_of(kHeld),
               "both have their locks at once");
    release<Kind, kHeld>(handle);
    run.expect(early || other.result(run.timeout() / 2),
               std::string(whose) + " to go on after the " + name_of(kHeld) + " is released", "it still waits");
}

template <class Kind, Level kHeld, Level kWanted>
void excludes_thread(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    excludes<Kind, kHeld, kWanted>(run, handle, OtherThread<Kind, kWanted>(handle), "another thread");
}

template <class Kind>
void excludes_other_handle(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const MwdbHandle other = open<Kind>(run, run.list());
    excludes<Kind, Level::kWrite, Level::kRead>(run, handle, OtherThread<Kind, Level::kRead>(other),
                                                "a thread with another handle");
}

template <class Kind, Level kHeld, Level kWanted>
void excludes_process(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    excludes<Kind, kHeld, kWanted>(run, handle, OtherProcess<Kind, kWanted>(run.peer()), "another process");
}

// Fails the check unless `other` gets its lock now.
template <class Other>
void gets_lock(Run& run, Other other, const char* expected) {
    other.start();
    const auto status = other.result(run.timeout() / 2);
    run.expect(status == kMwOk, expected, status ? "status " + std::to_string(*status) : "it waits");
}

template <class Kind>
void shared_by_threads(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(Kind::read_lock(handle));
    gets_lock(run, OtherThread<Kind, Level::kRead>(handle), "a read lock for a second thread");
}

template <class Kind>
void shared_by_processes(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(Kind::read_lock(handle));
    gets_lock(run, OtherProcess<Kind, Level::kRead>(run.peer()), "a read lock for a second process");
}

template <class Kind, Level kHeld>
void released(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(take<Kind, kHeld>(handle));
    release<Kind, kHeld>(handle);
    gets_lock(run, OtherThread<Kind, Level::kWrite>(handle), "the write lock for another thread after the release");
}

template <class Kind>
void released_by_close(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const MwdbHandle other = open<Kind>(run, run.list());
    run.done(Kind::lock(handle));
    run.done(Kind::close(handle));
    gets_lock(run, OtherThread<Kind, Level::kWrite>(other), "the write lock for another thread after the close");
}

template <class Kind>
void released_by_delete(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(Kind::lock(handle));
    run.done(Kind::remove(handle));
    gets_lock(run, OtherThread<Kind, Level::kWrite>(create<Kind>(run)),
              "the write lock for another thread after the list was deleted and created again");
}

template <class Kind, Level kHeld>
void released_by_end(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    OtherProcess<Kind, kHeld>(run.peer()).hold();
    run.peer().kill();
    gets_lock(run, OtherThread<Kind, Level::kWrite>(handle),
              "the write lock after the process that had a lock was killed");
}

template <class Kind>
void taken_inside(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(Kind::lock(handle));
    Kind::lock(handle); // must return; the library ignores the status
}

// Takes the read lock inside like the natives that read all records: those of services through a second handle.
template <class Kind>
void read_inside(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const MwdbHandle reading = Kind::kIsCompanion ? handle : open<Kind>(run, run.list());
    run.done(Kind::lock(handle));
    std::uint16_t number = 0;
    std::int32_t version = 0;
    Kind::read_lock(reading);
    Kind::count(reading, &number, &version);
    Kind::read_unlock(reading);
    if (reading != handle) {
        Kind::close(reading);
    }
}

// Reads a record on another thread, while this one has the write lock or afterwards.
template <class Kind>
void read_beside(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 1);
    run.done(Kind::lock(handle));
    std::promise<void> read;
    std::thread reader([&] {
        get<Kind>(run, handle, 1);
        read.set_value();
    });
    read.get_future().wait_for(kGrace);
    Kind::unlock(handle);
    reader.join();
}

template <class Kind>
void holder_changes(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const MwdbHandle source = create<Kind>(run, 1);
    const std::vector<typename Kind::Record> copied = {add<Kind>(run, source, 5), add<Kind>(run, source, 6)};
    add<Kind>(run, handle, 1);
    add<Kind>(run, handle, 2);
    run.done(Kind::lock(handle));
    std::uint16_t id = 0;
    run.done(Kind::qry_rec_id(handle, Kind::kQuery, &id));
    const auto added = add<Kind>(run, handle, 3);
    get<Kind>(run, handle, 2);
    const auto updated = make_record<Kind>(2, 9);
    auto passed = updated;
    run.done(Kind::update_rec(handle, &passed, kMwUpdatePlain));
    run.done(Kind::del_rec(handle, 1));
    expect_contents<Kind>(run, handle, {updated, added});
    run.done(Kind::fs_store(handle, run.file("held.list").c_str(), run.list()));
    run.done(Kind::clean(handle));
    run.done(Kind::copy_date(source, handle));
    expect_contents<Kind>(run, handle, copied);
}

template <class Kind>
void holder_reads(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const std::vector<typename Kind::Record> added = {add<Kind>(run, handle, 1), add<Kind>(run, handle, 2)};
    const MwdbHandle temporary = open<Kind>(run, run.list());
    run.done(Kind::read_lock(temporary));
    expect_contents<Kind>(run, temporary, added);
    Kind::read_unlock(temporary);
    run.done(Kind::close(temporary));
    expect_contents<Kind>(run, handle, added);
}

constexpr char kChanges[] = "needed by all natives that change {lists}";
constexpr char kReads[] = "needed by the natives that read all records of {lists}";
constexpr char kStays[] = "needed after list updates, which leave a list locked at a refused identifier";

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    constexpr Level kRead = Level::kRead;
    constexpr Level kWrite = Level::kWrite;
    constexpr Severity kLoss = Severity::kDataLoss;
    constexpr Severity kWrong = Severity::kWrongResult;
    const auto add_row = [&checks](const char* name, std::vector<std::string> functions, const char* expects,
                                   const char* reason, Severity severity, void (*run)(Run&), std::size_t peers = 0) {
        add_of_kind<Kind>(checks, {name, std::move(functions), expects, reason, severity, run, 1, peers});
    };

    add_row("lock.excludes-writing-thread", {"lock"}, "While a thread has the write lock, no other thread gets it.",
            kChanges, kLoss, excludes_thread<Kind, kWrite, kWrite>);
    add_row("lock.excludes-reading-thread", {"lock", "read_lock"},
            "While a thread has the write lock, no other thread gets the read lock.", kReads, kWrong,
            excludes_thread<Kind, kWrite, kRead>);
    add_row("lock.excludes-other-handle", {"lock", "read_lock"},
            "A lock is the list's: it also excludes threads that have another handle of the list.",
            "needed by the natives that read all of a service list, which lock it through another handle", kWrong,
            excludes_other_handle<Kind>);
    add_row("lock.excludes-writing-process", {"lock"}, "While a process has the write lock, no other process gets it.",
            kChanges, kLoss, excludes_process<Kind, kWrite, kWrite>, 1);
    add_row("lock.excludes-reading-process", {"lock", "read_lock"},
            "While a process has the write lock, no other process gets the read lock.", kReads, kWrong,
            excludes_process<Kind, kWrite, kRead>, 1);
    add_row("lock.returns-to-holder", {"lock"},
            "lock returns, with any status, when the thread has the write lock already.", kStays, kWrong,
            taken_inside<Kind>);
    add_row("lock.holder-changes",
            {"lock", "qry_rec_id", "add_rec", "get_rec", "update_rec", "del_rec", "clean", "copy_date", "fs_store",
             "count", "get_at"},
            "The thread that has the write lock reads, changes, stores and cleans the list, and copies to it.",
            kChanges, kLoss, holder_changes<Kind>);
    checks.back().lists = 2;
    checks.back().files = {"held.list"};
    add_row("lock.lets-others-read", {"lock", "get_rec"},
            "While a thread has the write lock, another thread reads a record, at once or after the unlock.",
            "needed by the natives that read one record of {lists}: they take no lock", kWrong, read_beside<Kind>);
    add_row("lock.ends-with-process", {"lock"}, "The write lock of a process ends when the process is killed.",
            kChanges, kWrong, released_by_end<Kind, kWrite>, 1);
    add_row("unlock.releases", {"lock", "unlock"}, "After unlock, another thread gets the write lock.", kChanges,
            kWrong, released<Kind, kWrite>);
    add_row("read_lock.excludes-writing-thread", {"lock", "read_lock"},
            "While a thread has the read lock, no other thread gets the write lock.", kReads, kWrong,
            excludes_thread<Kind, kRead, kWrite>);
    add_row("read_lock.excludes-writing-process", {"lock", "read_lock"},
            "While a process has the read lock, no other process gets the write lock.", kReads, kWrong,
            excludes_process<Kind, kRead, kWrite>, 1);
    add_row("read_lock.shared-by-threads", {"read_lock"},
            "While a thread has the read lock, other threads get it, too.", kReads, kWrong, shared_by_threads<Kind>);
    add_row("read_lock.shared-by-processes", {"read_lock"},
            "While a process has the read lock, other processes get it, too.", kReads, kWrong,
            shared_by_processes<Kind>, 1);
    add_row("read_lock.returns-to-writer", {"lock", "read_lock"},
            Kind::kIsCompanion ? "read_lock returns, with any status, when the thread has the write lock."
                               : "read_lock returns, with any status, when the thread has the write lock through "
                                 "another handle.",
            kStays, kWrong, read_inside<Kind>);
    add_row(
        "read_lock.holder-reads", {"read_lock", "read_unlock", "close", "count", "get_at"},
        "The thread that has the read lock through a second handle reads through it and closes it; the first handle "
        "stays valid.",
        kReads, kWrong, holder_reads<Kind>);
    add_row("read_lock.ends-with-process", {"read_lock"}, "The read lock of a process ends when the process is killed.",
            kReads, kWrong, released_by_end<Kind, kRead>, 1);
    add_row("read_unlock.releases", {"read_lock", "read_unlock"},
            "After read_unlock, another thread gets the write lock.", kReads, kWrong, released<Kind, kRead>);
    add_row("close.releases-locks", {"lock", "close"},
            "close releases the write lock that the thread has through the handle.", kStays, kWrong,
            released_by_close<Kind>);
    add_row("delete.releases-locks", {"lock", "delete"},
            "A list that was deleted while it was locked is not locked when it is created again.", kStays, kWrong,
            released_by_delete<Kind>);
}

} // namespace

void add_lock_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
