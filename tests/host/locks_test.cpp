// List locks between the threads of one process.
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>
#include <unistd.h>

using namespace tavro;

namespace {

// Returns once the thread sleeps, as it does while waiting for a lock.
void await_sleep(pid_t thread) {
    const std::string file = "/proc/self/task/" + std::to_string(thread) + "/stat";
    for (std::string stat; stat.find(") S ") == std::string::npos; std::this_thread::yield()) {
        std::getline(std::ifstream(file), stat);
    }
}

} // namespace

template <class Kind>
class Locks : public Workspace {
protected:
    Locks() {
        environment.set("TAVRO_LOCK_TIMEOUT_MS", "30");
        handle = created<Kind>(1);
    }

    // Returns the result of a call made on another thread.
    template <class Call>
    static MwStatus elsewhere(Call call) {
        return std::async(std::launch::async, call).get();
    }
    MwStatus write_elsewhere() const {
        return elsewhere([this] { return taken(Kind::lock(handle), Kind::unlock); });
    }
    MwStatus read_elsewhere() const {
        return elsewhere([this] { return taken(Kind::read_lock(handle), Kind::read_unlock); });
    }

    MwdbHandle handle = 0;

private:
    // Releases the lock if `status` says that it was taken. Returns `status`, or -1 if the release failed.
    MwStatus taken(MwStatus status, MwStatus (*release)(MwdbHandle)) const {
        return status == kMwOk && release(handle) != kMwOk ? -1 : status;
    }
};
TYPED_TEST_SUITE(Locks, EveryKind, KindNames);

TYPED_TEST(Locks, ManyThreadsMayRead) {
    ASSERT_EQ(TypeParam::read_lock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kMwOk);
    EXPECT_EQ(this->write_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
    EXPECT_EQ(this->write_elsewhere(), kMwOk);
}

TYPED_TEST(Locks, AWriterIsAlone) {
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(this->write_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kMwOk);
}

TYPED_TEST(Locks, EveryListHasItsOwn) {
    const MwdbHandle other = created<TypeParam>(2);
    ASSERT_EQ(TypeParam::lock(other), kMwOk);
    EXPECT_EQ(this->write_elsewhere(), kMwOk);
    EXPECT_EQ(TypeParam::unlock(other), kMwOk);
}

TYPED_TEST(Locks, BelongToTheListWhateverTheHandle) {
    const MwdbHandle again = opened<TypeParam>(1);
    ASSERT_EQ(TypeParam::lock(again), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kMwOk);
}

TYPED_TEST(Locks, TheHolderMayLockAgainAndGivesEachBack) {
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    ASSERT_EQ(TypeParam::read_lock(this->handle), kMwOk);
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kMwOk); // the read lock is still held
    EXPECT_EQ(this->write_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
    EXPECT_EQ(this->write_elsewhere(), kMwOk);
}

TYPED_TEST(Locks, TheOnlyReaderMayBecomeTheWriter) {
    ASSERT_EQ(TypeParam::read_lock(this->handle), kMwOk);
    EXPECT_EQ(TypeParam::lock(this->handle), kMwOk);
    EXPECT_EQ(this->read_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
}

TYPED_TEST(Locks, OneOfTwoReadersMayNotBecomeTheWriter) {
    ASSERT_EQ(TypeParam::read_lock(this->handle), kMwOk);
    EXPECT_EQ(this->elsewhere([this] {
        EXPECT_EQ(TypeParam::read_lock(this->handle), kMwOk);
        const MwStatus status = TypeParam::lock(this->handle);
        EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
        return status;
    }),
              kHostLockTimeout);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
}

TYPED_TEST(Locks, OnlyTheHolderGivesThemBack) {
    EXPECT_EQ(TypeParam::unlock(this->handle), kHostNotLockHolder);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kHostNotLockHolder);
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kHostNotLockHolder);
    EXPECT_EQ(this->elsewhere([this] { return TypeParam::unlock(this->handle); }), kHostNotLockHolder);
    EXPECT_EQ(this->read_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
}

TYPED_TEST(Locks, EndWithTheHandleThatTheThreadClosesOrDeletes) {
    const MwdbHandle again = opened<TypeParam>(1);
    ASSERT_EQ(TypeParam::lock(again), kMwOk);
    ASSERT_EQ(TypeParam::close(again), kMwOk);
    EXPECT_EQ(this->write_elsewhere(), kMwOk);
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    ASSERT_EQ(TypeParam::remove(this->handle), kMwOk);
    this->handle = created<TypeParam>(1);
    EXPECT_EQ(this->write_elsewhere(), kMwOk);
}

TYPED_TEST(Locks, OfClosedHandlesAreRefused) {
    ASSERT_EQ(TypeParam::close(this->handle), kMwOk);
    EXPECT_EQ(TypeParam::lock(this->handle), kHostBadHandle);
    EXPECT_EQ(TypeParam::read_lock(this->handle), kHostBadHandle);
    EXPECT_EQ(TypeParam::unlock(this->handle), kHostBadHandle);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kHostBadHandle);
}

TYPED_TEST(Locks, AWaitEndsWhenTheHolderGivesTheLockBack) {
    this->environment.unset("TAVRO_LOCK_TIMEOUT_MS");
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    std::atomic<bool> released{false};
    std::promise<pid_t> waiting;
    std::thread waiter([&] {
        waiting.set_value(::gettid());
        EXPECT_EQ(TypeParam::lock(this->handle), kMwOk);
        EXPECT_TRUE(released);
        EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    });
    await_sleep(waiting.get_future().get());
    released = true;
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    waiter.join();
}

TYPED_TEST(Locks, ReadersThatComeLaterLetAWaitingWriterGoFirst) {
    this->environment.unset("TAVRO_LOCK_TIMEOUT_MS");
    ASSERT_EQ(TypeParam::read_lock(this->handle), kMwOk);
    std::promise<pid_t> waiting;
    std::thread writer([&] {
        waiting.set_value(::gettid());
        EXPECT_EQ(TypeParam::lock(this->handle), kMwOk);
        EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
    });
    await_sleep(waiting.get_future().get());
    this->environment.set("TAVRO_LOCK_TIMEOUT_MS", "30");
    EXPECT_EQ(this->read_elsewhere(), kHostLockTimeout);
    EXPECT_EQ(TypeParam::read_lock(this->handle), kMwOk); // a thread that already reads is not blocked
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
    EXPECT_EQ(TypeParam::read_unlock(this->handle), kMwOk);
    writer.join();
    EXPECT_EQ(this->read_elsewhere(), kMwOk);
}

TYPED_TEST(Locks, ATimeOutNamesTheListTheThreadsAndTheRemedy) {
    ASSERT_EQ(TypeParam::lock(this->handle), kMwOk);
    pid_t waiter = 0;
    EXPECT_EQ(this->elsewhere([&] {
        waiter = ::gettid();
        return TypeParam::read_lock(this->handle);
    }),
              kHostLockTimeout);
    EXPECT_EQ(this->log(),
              std::vector<std::string>{"E/TavroHost" + Workspace::process_mark() + ": timeout: thread " +
                                       std::to_string(waiter) + " waited 30 ms for the read lock of " +
                                       TypeParam::kName + " list 1, held by thread " + std::to_string(::gettid()) +
                                       " of this process; check for a missing unlock there, or raise "
                                       "TAVRO_LOCK_TIMEOUT_MS"});
    EXPECT_EQ(TypeParam::unlock(this->handle), kMwOk);
}

// A value that is not a number of milliseconds from 0 to 2147483647 is treated as not set and reported once.
class LockTimeout : public Workspace {
protected:
    // The length of a wait that timed out, as logged.
    std::string waited(MwdbHandle handle) const {
        EXPECT_EQ(std::async(std::launch::async, [&] { return x_nwl_lock(handle); }).get(), kHostLockTimeout);
        const std::string line = log().back();
        const std::size_t start = line.find("waited ");
        return line.substr(start, line.find(" for the") - start);
    }

    // Another thread waits for the lock until it is released.
    static void expect_a_wait(MwdbHandle handle) {
        ASSERT_EQ(x_nwl_lock(handle), kMwOk);
        std::promise<pid_t> waiting;
        std::thread waiter([&] {
            waiting.set_value(::gettid());
            EXPECT_EQ(x_nwl_lock(handle), kMwOk);
        });
        await_sleep(waiting.get_future().get());
        EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
        waiter.join();
    }
};

TEST_F(LockTimeout, OfAnInvalidSettingIsTheDefaultWithOneWarning) {
    const MwdbHandle handle = created<Networks>(1);
    for (const char* value : {"abc", "-1", "30x", " 30", "+30", "2147483648", "99999999999999999999", "1e3"}) {
        SCOPED_TRACE(value);
        environment.set("TAVRO_LOCK_TIMEOUT_MS", value);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(x_nwl_lock(handle), kMwOk);
            EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
        }
        EXPECT_EQ(log(),
                  std::vector<std::string>{"E/TavroHost" + process_mark() + ": TAVRO_LOCK_TIMEOUT_MS is '" + value +
                                           "', which is not a number of milliseconds from 0 to 2147483647; "
                                           "using 3000 ms instead"});
        std::filesystem::remove(path("log"));
    }
}

TEST_F(LockTimeout, OfAnEmptySettingIsTheDefaultWithoutAWarning) {
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "");
    expect_a_wait(created<Networks>(1));
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(LockTimeout, OfAnInvalidSettingIsWaitedFor) {
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "-5");
    expect_a_wait(created<Networks>(1));
    EXPECT_EQ(log().size(), 1u);
}

TEST_F(LockTimeout, MayBeAnyNumberInRange) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "0");
    EXPECT_EQ(waited(handle), "waited 0 ms");
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "0007");
    EXPECT_EQ(waited(handle), "waited 7 ms");
    EXPECT_EQ(log().size(), 2u);
    EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "2147483647");
    expect_a_wait(handle);
    EXPECT_EQ(log().size(), 2u);
}

class LockedWork : public Workspace {};

TEST_F(LockedWork, OfManyThreadsLosesNothing) {
    constexpr int kThreads = 8;
    constexpr int kAdds = 40;
    const MwdbHandle handle = created<Services>(1);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < kAdds; ++n) {
                ASSERT_EQ(x_svl_lock(handle), kMwOk);
                _SVL_REC_T record{};
                ASSERT_EQ(x_svl_qry_rec_id(handle, kMwQueryNextRecordId, &record.ui2_svl_rec_id), kMwOk);
                ASSERT_EQ(x_svl_add_rec(handle, &record), kMwOk);
                ASSERT_EQ(x_svl_unlock(handle), kMwOk);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    Contents expected;
    for (int id = 1; id <= kThreads * kAdds; ++id) {
        expected.emplace_back(id, 0);
    }
    EXPECT_EQ(contents<Services>(handle), expected);
}

TEST_F(LockedWork, CallsWithoutLocksFromManyThreadsAllSucceed) {
    constexpr int kThreads = 4;
    constexpr int kRecords = 50;
    std::vector<std::thread> threads;
    for (std::uint16_t list = 1; list <= kThreads; ++list) {
        threads.emplace_back([list] {
            const MwdbHandle handle = created<Networks>(list);
            for (std::uint16_t id = 1; id <= kRecords; ++id) {
                ASSERT_EQ(add<Networks>(handle, id, static_cast<unsigned char>(list)), kMwOk);
                ASSERT_EQ(contents<Networks>(handle).size(), id);
            }
            ASSERT_EQ(x_nwl_close(handle), kMwOk);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (std::uint16_t list = 1; list <= kThreads; ++list) {
        const Contents all = contents<Networks>(opened<Networks>(list));
        EXPECT_EQ(all.size(), static_cast<std::size_t>(kRecords));
        EXPECT_EQ(all.back(), (std::pair<int, int>{kRecords, list}));
    }
}
