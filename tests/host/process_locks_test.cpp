// List locks between processes: who waits for whom, and what remains when a process ends.
#include "child_process.h"
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <memory>
#include <sqlite3.h>
#include <thread>
#include <unistd.h>

using namespace tavro;

namespace {

// The bytes of the lock file that processes lock: one per slot, after the first one.
constexpr int kOpeningByte = 0; // while a process opens the storage
constexpr int kFirstSlot = 1;
constexpr int kSlots = 63;
// Offset in the lock file of the process and thread that last opened the storage.
constexpr off_t kOpenerOffset = 8;
// Offset of the number of threads that have queued so far.
constexpr off_t kLastTicketOffset = 520;

class ProcessLocks : public Workspace {
protected:
    ProcessLocks() { handle = created<Networks>(1); }

    static std::unique_ptr<ChildProcess> child(const std::vector<std::string>& arguments) {
        auto process = std::make_unique<ChildProcess>(arguments);
        EXPECT_EQ(process->read_line(), "locked");
        return process;
    }

    // Tries to take a lock, releases it at once, and returns the status.
    MwStatus attempt(MwStatus (*lock)(MwdbHandle), MwStatus (*unlock)(MwdbHandle)) {
        environment.set("TAVRO_LOCK_TIMEOUT_MS", "0");
        const MwStatus status = lock(handle);
        environment.unset("TAVRO_LOCK_TIMEOUT_MS");
        return status == kMwOk ? unlock(handle) : status;
    }
    MwStatus attempt_to_read() { return attempt(x_nwl_read_lock, x_nwl_read_unlock); }
    MwStatus attempt_to_write() { return attempt(x_nwl_lock, x_nwl_unlock); }

    // Polls until `condition` is true; fails after 20 seconds.
    template <class Condition>
    static void await(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::yield();
        }
    }
    // Returns once new readers have to wait for a writer in another process.
    void await_waiting_writer() {
        await([this] { return attempt_to_read() == kHostLockTimeout; });
    }

    // Locks or unlocks bytes of the lock file as another process would. Returns false if they are taken.
    static bool set_bytes(int file, int type, int first, int count) {
        struct flock range {};
        range.l_type = static_cast<short>(type);
        range.l_whence = SEEK_SET;
        range.l_start = first;
        range.l_len = count;
        return ::fcntl(file, F_OFD_SETLK, &range) == 0;
    }
    // The number at an offset in the lock file. 0 if it has none.
    std::uint64_t number_at(off_t offset) const {
        const int file = open_lock_file();
        std::uint64_t number = 0;
        const ssize_t size = ::pread(file, &number, sizeof number, offset);
        ::close(file);
        return size == static_cast<ssize_t>(sizeof number) ? number : 0;
    }
    int open_lock_file() const { return ::open((home() + "/locks").c_str(), O_RDWR | O_CLOEXEC); }

    MwdbHandle handle = 0;
};

} // namespace

TEST_F(ProcessLocks, ThatNobodyElseUsesTakeNoSystemCall) {
    ChildProcess process({"lock_calls"});
    ASSERT_EQ(process.read_line(), "ready");
    const std::string result = process.read_line(); // under an emulator all calls are allowed
    EXPECT_TRUE(result == "done" || result == "done, with all calls") << result;
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(ProcessLocks, LetAWaitingWriterGoBeforeNewReadersOfTwoOtherProcesses) {
    const auto reader = child({"read_lock"});
    ChildProcess writer({"lock"});
    await_waiting_writer();
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "30");
    EXPECT_EQ(ChildProcess({"read_lock"}).read_line(), "lock: " + std::to_string(kHostLockTimeout));
    reader->close_input();
    EXPECT_EQ(writer.read_line(), "locked");
    writer.close_input();
    EXPECT_EQ(writer.wait(), 0);
    EXPECT_EQ(attempt_to_read(), kMwOk);
}

TEST_F(ProcessLocks, LetAWaitingWriterGoBeforeNewReadersOfThreeOtherProcesses) {
    const auto first = child({"read_lock"});
    const auto second = child({"read_lock"});
    ChildProcess writer({"lock"});
    await_waiting_writer();
    first->close_input();
    EXPECT_EQ(first->wait(), 0);
    EXPECT_EQ(attempt_to_read(), kHostLockTimeout);
    EXPECT_EQ(attempt_to_write(), kHostLockTimeout);
    second->close_input();
    EXPECT_EQ(writer.read_line(), "locked");
}

TEST_F(ProcessLocks, LetAWaitingWriterGoBeforeANewThreadOfAReadingProcess) {
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "30");
    const auto reader = child({"read_twice"});
    environment.unset("TAVRO_LOCK_TIMEOUT_MS");
    ChildProcess writer({"lock"});
    await_waiting_writer();
    reader->write_line("go");
    EXPECT_EQ(reader->read_line(), std::to_string(kHostLockTimeout));
    reader->close_input();
    EXPECT_EQ(writer.read_line(), "locked");
}

TEST_F(ProcessLocks, GiveAWriterItsTurnAmongProcessesThatReadAllTheTime) {
    std::vector<std::unique_ptr<ChildProcess>> readers;
    for (int count = 1; count <= 3; ++count) {
        readers.push_back(child({"read_loop"}));
        for (int turn = 0; turn < 5; ++turn) {
            ASSERT_EQ(x_nwl_lock(handle), kMwOk) << count;
            ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
        }
    }
    EXPECT_EQ(log(), std::vector<std::string>{});
    for (const auto& reader : readers) {
        reader->close_input();
        EXPECT_EQ(reader->wait(), 0);
    }
}

TEST_F(ProcessLocks, LetTheHolderReadAgainWhileAWriterWaits) {
    ASSERT_EQ(x_nwl_read_lock(handle), kMwOk);
    ChildProcess writer({"lock"});
    const auto read_elsewhere = [this] {
        MwStatus status = kMwOk;
        std::thread([&] { status = attempt_to_read(); }).join();
        return status;
    };
    await([&] { return read_elsewhere() == kHostLockTimeout; });
    EXPECT_EQ(attempt_to_read(), kMwOk);
    EXPECT_EQ(x_nwl_read_unlock(handle), kMwOk);
    EXPECT_EQ(writer.read_line(), "locked");
}

TEST_F(ProcessLocks, ForgetAWaitingWriterThatIsKilled) {
    const auto reader = child({"read_lock"});
    ChildProcess writer({"lock"});
    await_waiting_writer();
    writer.kill();
    EXPECT_EQ(attempt_to_read(), kMwOk);
}

TEST_F(ProcessLocks, ForgetAWaitingWriterThatGivesUp) {
    const auto reader = child({"read_lock"});
    EXPECT_EQ(attempt_to_write(), kHostLockTimeout);
    EXPECT_EQ(ChildProcess({"read_lock"}).read_line(), "locked");
}

TEST_F(ProcessLocks, NameTheWaitingWriterInATimeOut) {
    const auto reader = child({"read_lock"});
    ChildProcess writer({"lock"});
    await_waiting_writer();
    ASSERT_EQ(log().size(), 1u);
    EXPECT_NE(log()[0].find("for the read lock of nwl list 1, held by a writer waiting in another process;"),
              std::string::npos)
        << log()[0];
}

TEST_F(ProcessLocks, NameAllReadersInATimeOut) {
    const auto first = child({"read_lock"});
    const auto second = child({"read_lock"});
    ASSERT_EQ(attempt_to_write(), kHostLockTimeout);
    ASSERT_EQ(log().size(), 1u);
    const std::string names = "held by process " + std::to_string(first->id()) + ", thread " +
                              std::to_string(second->id()) + " of process " + std::to_string(second->id()) + ";";
    EXPECT_NE(log()[0].find(names), std::string::npos) << log()[0];
}

TEST_F(ProcessLocks, EndWithAKilledReaderOrWriter) {
    for (const char* command : {"read_lock", "lock"}) {
        const auto holder = child({command});
        ASSERT_EQ(attempt_to_write(), kHostLockTimeout);
        holder->kill();
        EXPECT_EQ(attempt_to_write(), kMwOk);
    }
}

TEST_F(ProcessLocks, EndWithAProcessThatIsKilledAtAnyMoment) {
    for (int round = 0; round < 25; ++round) {
        const auto holder = child({"lock_loop"});
        holder->kill();
        ASSERT_EQ(attempt_to_write(), kMwOk);
        ASSERT_EQ(attempt_to_read(), kMwOk);
    }
}

TEST_F(ProcessLocks, AreNotLeftToTheNextProcessInTheSameSlot) {
    created<Networks>(2);
    ASSERT_EQ(attempt_to_write(), kMwOk); // gives this process its slot
    for (const char* command : {"read_lock", "lock"}) {
        child({command, "1"})->kill();
        const auto next = child({command, "2"});
        EXPECT_EQ(attempt_to_write(), kMwOk);
        EXPECT_EQ(ChildProcess({"lock", "2"}, {"env", "TAVRO_LOCK_TIMEOUT_MS=0"}).read_line(),
                  "lock: " + std::to_string(kHostLockTimeout));
    }
}

TEST_F(ProcessLocks, KeepEachOthersChangesApart) {
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "60000");
    write_file(path("number"), "0");
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (int i = 0; i < 4; ++i) {
        processes.push_back(
            std::make_unique<ChildProcess>(std::vector<std::string>{"increment", path("number"), "200"}));
    }
    for (const auto& process : processes) {
        EXPECT_EQ(process->wait(), 0);
    }
    EXPECT_EQ(read_file(path("number")), "800");
}

TEST_F(ProcessLocks, AreRefusedToMoreProcessesThanThereAreSlots) {
    const int others = open_lock_file();
    ASSERT_TRUE(set_bytes(others, F_WRLCK, kFirstSlot, kSlots));
    EXPECT_EQ(attempt_to_read(), kHostLockTimeout);
    ASSERT_EQ(log().size(), 1u);
    EXPECT_NE(log()[0].find("held by 63 other processes, the most that can use locks at once;"), std::string::npos)
        << log()[0];
    ASSERT_TRUE(set_bytes(others, F_UNLCK, kFirstSlot + 40, 1));
    EXPECT_EQ(attempt_to_write(), kMwOk);
    ::close(others);
}

TEST_F(ProcessLocks, LetAWriterThatWaitedForASlotGoBeforeNewReaders) {
    const auto reader = child({"read_lock"});
    const int others = open_lock_file();
    ASSERT_TRUE(set_bytes(others, F_WRLCK, kFirstSlot + 1, kSlots - 1));
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "60000");
    const std::uint64_t before = number_at(kLastTicketOffset);
    std::thread writer([this] {
        EXPECT_EQ(x_nwl_lock(handle), kMwOk);
        EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
    });
    await([&] { return number_at(kLastTicketOffset) != before; });
    EXPECT_TRUE(set_bytes(others, F_UNLCK, kFirstSlot + 1, kSlots - 1));
    await([] {
        return ChildProcess({"read_lock"}, {"env", "TAVRO_LOCK_TIMEOUT_MS=0"}).read_line() ==
               "lock: " + std::to_string(kHostLockTimeout);
    });
    reader->close_input();
    writer.join();
    ::close(others);
}

TEST_F(ProcessLocks, IgnoreWhatAnOlderFormOfTheFileHolds) {
    restart();
    std::string old(0x30001 * 8, '\0');
    old.append("\x01\x02\x03\x04\x05\x06\x07\x08", 8);
    old.resize(old.size() + 0x30001 * 32, '\xFF');
    write_file(home() + "/locks", old);
    handle = opened<Networks>(1);
    EXPECT_LT(std::filesystem::file_size(home() + "/locks"), old.size());
    EXPECT_EQ(attempt_to_write(), kMwOk);
}

// If a process is stopped while opening the storage, others wait until they time out.
TEST_F(ProcessLocks, OfAnOpeningThatStopsAreWaitedForUntilTheTimeOut) {
    restart();
    sqlite3* database = nullptr; // blocks the child while it opens the storage
    ASSERT_EQ(sqlite3_open((home() + "/lists.db").c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; CREATE TABLE t(a); ROLLBACK",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    ChildProcess opener({"lock"});
    const auto process = static_cast<std::uint64_t>(opener.id());
    await([&] { return number_at(kOpenerOffset) == (process << 32 | process); });
    opener.stop();
    sqlite3_close(database);
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "30");
    EXPECT_EQ(x_nwl_open(1, 0, 0, &handle), kHostLockTimeout);
    const std::string thread = std::to_string(::gettid());
    const std::string other = std::to_string(opener.id());
    EXPECT_EQ(log(), std::vector<std::string>{"E/TavroHost" + process_mark() + ": timeout: thread " + thread +
                                              " waited 30 ms to open " + home() + "/locks while thread " + other +
                                              " of process " + other +
                                              " was opening it; check whether that process is stopped, or raise "
                                              "TAVRO_LOCK_TIMEOUT_MS"});
    opener.kill();
    EXPECT_EQ(x_nwl_open(1, 0, 0, &handle), kMwOk);
}

// A thread that waits by itself logs a line with its own id.
TEST_F(ProcessLocks, OfAStoppedOpeningAreWaitedForByAllThreadsAtOnce) {
    constexpr int kThreads = 6;
    restart();
    const int opener = open_lock_file();
    ASSERT_TRUE(set_bytes(opener, F_WRLCK, kOpeningByte, 1));
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "300");
    std::atomic<int> started{0};
    std::vector<std::future<MwStatus>> opens;
    for (int i = 0; i < kThreads; ++i) {
        opens.push_back(std::async(std::launch::async, [&started] {
            MwdbHandle list = 0;
            for (++started; started < kThreads;) {
                std::this_thread::yield();
            }
            return x_nwl_open(1, 0, 0, &list);
        }));
    }
    for (std::future<MwStatus>& open : opens) {
        EXPECT_EQ(open.get(), kHostLockTimeout);
    }
    EXPECT_GE(log().size(), 1u);
    EXPECT_LT(log().size(), static_cast<std::size_t>(kThreads)); // more than one only if a thread comes very late
    const std::size_t lines = log().size();
    EXPECT_EQ(x_nwl_open(1, 0, 0, &handle), kHostLockTimeout); // a later call waits by itself
    EXPECT_EQ(log().size(), lines + 1);
    ASSERT_TRUE(set_bytes(opener, F_UNLCK, kOpeningByte, 1));
    EXPECT_EQ(x_nwl_open(1, 0, 0, &handle), kMwOk);
    ::close(opener);
}

// Wherever a process is stopped while opening the storage, others wait no longer than the timeout.
TEST_F(ProcessLocks, OfAnOpeningThatStopsAnywhereAreWaitedForUntilTheTimeOut) {
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "5");
    std::vector<MwStatus> statuses; // without repetitions
    int timeouts = 0;
    bool stopped = true;
    for (int step = 1; stopped; step += 3) {
        restart();
        std::filesystem::remove_all(home());
        ChildProcess opener({"stopped_open", std::to_string(step)});
        stopped = opener.await_stop();
        const MwStatus status = x_nwl_open(1, 0, 0, &handle);
        timeouts += status == kHostLockTimeout ? 1 : 0;
        if (statuses.empty() || statuses.back() != status) {
            statuses.push_back(status);
        }
        opener.kill();
        EXPECT_EQ(x_nwl_open(1, 0, 0, &handle), kHostNoSuchList) << step;
    }
    EXPECT_GE(timeouts, 10);
    EXPECT_EQ(statuses, (std::vector<MwStatus>{kHostLockTimeout, kHostNoSuchList})); // at the end it has been opened
}

// The child has a copy of its parent's descriptors and mappings.
TEST_F(ProcessLocks, OfAKilledProcessAreNotKeptByAChildThatItForked) {
    created<Networks>(2);
    ChildProcess holder({"fork_lock"});
    EXPECT_EQ(holder.read_line(), "lock -106, read lock -106, add -106, open -106");
    ASSERT_EQ(attempt_to_write(), kHostLockTimeout);
    holder.kill();
    EXPECT_EQ(attempt_to_write(), kMwOk);
    EXPECT_EQ(contents<Networks>(handle), Contents{});
    EXPECT_EQ(log().size(), 2u);
    EXPECT_NE(
        log()[0].find("is a fork of a process that uses lists, and cannot use them; start a program in it (exec)"),
        std::string::npos)
        << log()[0];
}
