// The queue of the threads that wait for a list lock, in one process and in several.
#include "child_process.h"
#include "kinds.h"
#include "services/control.h"
#include "services/status.h"
#include "workspace.h"

#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <future>
#include <memory>
#include <thread>
#include <unistd.h>

using namespace tavro;

namespace {

// Offset in the lock file of the number of threads that have queued so far.
constexpr off_t kLastTicket = 520;

class LockQueue : public Workspace {
protected:
    LockQueue() : handle(created<Networks>(1)) {
        EXPECT_EQ(add<Networks>(handle, 1, 1), kMwOk);
        // These tests check the order only. No wait may time out, even on a slow machine.
        environment.set("TAVRO_LOCK_TIMEOUT_MS", "60000");
    }

    // Number of threads that have queued so far.
    std::uint64_t queued() const {
        std::uint64_t number = 0;
        const int file = ::open((home() + "/locks").c_str(), O_RDONLY | O_CLOEXEC);
        EXPECT_EQ(::pread(file, &number, sizeof number, kLastTicket), static_cast<ssize_t>(sizeof number));
        ::close(file);
        return number;
    }
    // Makes a call that starts a waiting thread, and returns its result when the thread has queued.
    template <class Start>
    auto in_queue(Start start) const {
        const std::uint64_t before = queued();
        auto waiter = start();
        for (const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20); queued() == before;) {
            if (std::chrono::steady_clock::now() >= end) {
                ADD_FAILURE() << "nobody queues";
                break;
            }
            std::this_thread::yield();
        }
        return waiter;
    }

    // A process that takes the lock and keeps it until its input is closed.
    std::unique_ptr<ChildProcess> process(const char* command) const {
        return in_queue([&] { return std::make_unique<ChildProcess>(std::vector<std::string>{command}); });
    }

    // A thread of this process that takes the lock and keeps it until the test ends its turn.
    struct Thread {
        std::promise<void> end;
        std::future<MwStatus> locked;
        std::future<MwStatus> unlocked;
    };
    std::unique_ptr<Thread> thread(MwStatus (*lock)(MwdbHandle), MwStatus (*unlock)(MwdbHandle)) const {
        return in_queue([&] {
            auto made = std::make_unique<Thread>();
            auto locked = std::make_shared<std::promise<MwStatus>>();
            made->locked = locked->get_future();
            made->unlocked = std::async(std::launch::async, [=, list = handle, end = made->end.get_future().share()] {
                locked->set_value(lock(list));
                end.wait();
                return unlock(list);
            });
            return made;
        });
    }
    static void expect_turn(Thread& thread) { EXPECT_EQ(thread.locked.get(), kMwOk); }
    static void end_turn(Thread& thread) {
        thread.end.set_value();
        EXPECT_EQ(thread.unlocked.get(), kMwOk);
    }
    static void expect_turn(ChildProcess& process) { EXPECT_EQ(process.read_line(), "locked"); }
    static void end_turn(ChildProcess& process) {
        process.close_input();
        EXPECT_EQ(process.wait(), 0);
    }
    template <class Waiter>
    static void take_turn(Waiter& waiter) {
        expect_turn(waiter);
        end_turn(waiter);
    }

    MwdbHandle handle;
};

} // namespace

// Each waiter keeps the lock until the test ends its turn, so a wrong order makes the test fail with a timeout.
TEST_F(LockQueue, ServesProcessesAndThreadsInTheOrderInWhichTheyCame) {
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    const auto first = process("lock");
    const auto second = thread(x_nwl_lock, x_nwl_unlock);
    const auto third = process("lock");
    const auto fourth = process("lock");
    const auto fifth = thread(x_nwl_lock, x_nwl_unlock);
    ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
    take_turn(*first);
    take_turn(*second);
    take_turn(*third);
    take_turn(*fourth);
    take_turn(*fifth);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(LockQueue, LetsReadersThatCameBeforeAWriterReadTogether) {
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    const auto reader_here = thread(x_nwl_read_lock, x_nwl_read_unlock);
    const auto reader_there = process("read_lock");
    const auto writer_there = process("lock");
    const auto late_reader_here = thread(x_nwl_read_lock, x_nwl_read_unlock);
    const auto writer_here = thread(x_nwl_lock, x_nwl_unlock);
    const auto last_reader_there = process("read_lock");
    ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
    expect_turn(*reader_here);
    take_turn(*reader_there);
    end_turn(*reader_here);
    take_turn(*writer_there);
    take_turn(*late_reader_here);
    take_turn(*writer_here);
    take_turn(*last_reader_there);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(LockQueue, KeepsAThreadWhoseProcessStopsReading) {
    ASSERT_EQ(x_nwl_read_lock(handle), kMwOk);
    ChildProcess reader({"read_lock"});
    expect_turn(reader);
    const auto writer = thread(x_nwl_lock, x_nwl_unlock);
    ASSERT_EQ(x_nwl_read_unlock(handle), kMwOk);
    const auto late_reader = process("read_lock");
    end_turn(reader);
    take_turn(*writer);
    take_turn(*late_reader);
}

TEST_F(LockQueue, GivesEveryoneTurnsAmongBusyProcesses) {
    std::vector<std::unique_ptr<ChildProcess>> others;
    for (const char* command : {"write_loop", "read_loop", "write_loop", "read_loop"}) {
        others.push_back(std::make_unique<ChildProcess>(std::vector<std::string>{command}));
        EXPECT_EQ(others.back()->read_line(), "locked");
        for (int turn = 0; turn < 5; ++turn) {
            ASSERT_EQ(x_nwl_lock(handle), kMwOk) << command;
            ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
            ASSERT_EQ(x_nwl_read_lock(handle), kMwOk) << command;
            ASSERT_EQ(x_nwl_read_unlock(handle), kMwOk);
        }
    }
    for (const auto& other : others) {
        end_turn(*other);
    }
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(LockQueue, GivesEveryThreadOfAProcessItsTurns) {
    constexpr int kTurns = 200;
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back([this, writes = i % 2 == 0] {
            for (int turn = 0; turn < kTurns; ++turn) {
                ASSERT_EQ(writes ? x_nwl_lock(handle) : x_nwl_read_lock(handle), kMwOk);
                std::this_thread::yield();
                ASSERT_EQ(writes ? x_nwl_unlock(handle) : x_nwl_read_unlock(handle), kMwOk);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(LockQueue, LetsAReaderThatBecomesTheWriterPass) {
    ASSERT_EQ(x_nwl_read_lock(handle), kMwOk);
    const auto there = process("lock");
    const auto here = thread(x_nwl_lock, x_nwl_unlock);
    EXPECT_EQ(x_nwl_lock(handle), kMwOk);
    EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
    EXPECT_EQ(x_nwl_read_unlock(handle), kMwOk);
    take_turn(*there);
    take_turn(*here);
}

TEST_F(LockQueue, GoesOnWithoutAKilledProcess) {
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    const auto killed = process("lock");
    const auto next = process("read_lock");
    killed->kill();
    ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
    take_turn(*next);
}

TEST_F(LockQueue, GoesOnWithoutASuspendedProcess) {
    ASSERT_EQ(x_nwl_read_lock(handle), kMwOk);
    const auto suspended = process("lock");
    suspended->stop();
    ChildProcess reader({"read_lock"}); // may come so late that it need not queue
    take_turn(reader);
    const auto writer = process("lock");
    ASSERT_EQ(x_nwl_read_unlock(handle), kMwOk);
    take_turn(*writer);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(LockQueue, EndsWhenTheStorageIsReset) {
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    const auto reader = thread(x_nwl_read_lock, x_nwl_read_unlock);
    const auto writer = thread(x_nwl_lock, x_nwl_unlock);
    tavro_host_reset();
    EXPECT_EQ(reader->locked.get(), kHostBadHandle);
    EXPECT_EQ(writer->locked.get(), kHostBadHandle);
    reader->end.set_value();
    writer->end.set_value();
    EXPECT_EQ(reader->unlocked.get(), kHostBadHandle);
    EXPECT_EQ(writer->unlocked.get(), kHostBadHandle);
    handle = opened<Networks>(1);
    ChildProcess other({"lock"});
    take_turn(other);
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
}
