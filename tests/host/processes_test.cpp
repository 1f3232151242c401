// Several processes in one storage directory, including killed ones.
#include "child_process.h"
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <algorithm>
#include <filesystem>

using namespace tavro;

namespace {

class Processes : public Workspace {
protected:
    Processes() { environment.set("TAVRO_LOCK_TIMEOUT_MS", "30"); }

    static Contents added_by_helper(int first, int count) {
        Contents all;
        for (int id = first; id < first + count; ++id) {
            all.emplace_back(id, id % 251);
        }
        return all;
    }
};

} // namespace

TEST_F(Processes, SeeEachOthersChanges) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 100, 0x64), kMwOk);
    ASSERT_EQ(contents<Networks>(handle), (Contents{{100, 0x64}}));
    EXPECT_EQ(ChildProcess({"add", "1", "2"}).wait(), 0);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{100, 0x64}, {1, 1}, {2, 2}}));
    EXPECT_EQ(ChildProcess({"remove", "100"}).wait(), 0);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{1, 1}, {2, 2}}));
    std::uint16_t id = 0;
    EXPECT_EQ(x_nwl_qry_rec_id(handle, kMwQueryHighestRecordId, &id), kMwOk);
    EXPECT_EQ(id, 2);
}

TEST_F(Processes, ReadByIndexNoticesAChangeBehindTheCount) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 7, 0x77), kMwOk);
    ASSERT_EQ(add<Networks>(handle, 8, 0x88), kMwOk);
    ASSERT_EQ(contents<Networks>(handle).size(), 2u);
    EXPECT_EQ(ChildProcess({"remove", "7"}).wait(), 0);
    auto record = record_of<Networks>(0, 0);
    std::int32_t version = 0;
    EXPECT_EQ(x_nwl_get_rec_by_rec_idx(handle, 0, &record, &version), kMwOk);
    EXPECT_EQ(bytes_of(record), bytes_of(record_of<Networks>(8, 0x88)));
    EXPECT_EQ(version, 3);
    EXPECT_EQ(x_nwl_get_rec_by_rec_idx(handle, 1, &record, &version), kHostIndexOutOfRange);
}

TEST_F(Processes, SeeAChangeBehindAnAddOfTheirOwn) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(add<Networks>(handle, 100, 0x64), kMwOk);
    ASSERT_EQ(contents<Networks>(handle).size(), 1u);
    EXPECT_EQ(ChildProcess({"add", "1", "1"}).wait(), 0);
    ASSERT_EQ(add<Networks>(handle, 101, 0x65), kMwOk);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{100, 0x64}, {1, 1}, {101, 0x65}}));
    EXPECT_EQ(ChildProcess({"add", "2", "1"}).wait(), 0);
    ASSERT_EQ(x_nwl_del_rec(handle, 100), kMwOk);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{1, 1}, {101, 0x65}, {2, 2}}));
    EXPECT_EQ(ChildProcess({"add", "3", "1"}).wait(), 0);
    auto record = record_of<Networks>(1, 0x99);
    ASSERT_EQ(x_nwl_update_rec(handle, &record, kMwUpdatePlain), kMwOk);
    EXPECT_EQ(contents<Networks>(handle), (Contents{{1, 0x99}, {101, 0x65}, {2, 2}, {3, 3}}));
}

TEST_F(Processes, AddAtTheSameTime) {
    environment.unset("TAVRO_LOCK_TIMEOUT_MS"); // one opens the storage after the other
    const MwdbHandle handle = created<Networks>(1);
    ChildProcess first({"add", "1", "200"});
    ChildProcess second({"add", "1001", "200"});
    EXPECT_EQ(first.wait(), 0);
    EXPECT_EQ(second.wait(), 0);
    Contents all = contents<Networks>(handle);
    std::sort(all.begin(), all.end());
    Contents expected = added_by_helper(1, 200);
    const Contents more = added_by_helper(1001, 200);
    expected.insert(expected.end(), more.begin(), more.end());
    EXPECT_EQ(all, expected);
}

TEST_F(Processes, StartTogetherOnANewDirectory) {
    environment.unset("TAVRO_LOCK_TIMEOUT_MS"); // one opens the storage after the other
    ChildProcess first({"remove", "1"});
    ChildProcess second({"remove", "1"});
    const std::string no_such_list = "open: " + std::to_string(kHostNoSuchList);
    EXPECT_EQ(first.read_line(), no_such_list);
    EXPECT_EQ(second.read_line(), no_such_list);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

TEST_F(Processes, ExcludeEachOtherByWriteLocks) {
    const MwdbHandle handle = created<Networks>(1);
    ChildProcess holder({"lock"});
    ASSERT_EQ(holder.read_line(), "locked");
    EXPECT_EQ(x_nwl_read_lock(handle), kHostLockTimeout);
    EXPECT_EQ(x_nwl_lock(handle), kHostLockTimeout);
    holder.close_input();
    EXPECT_EQ(holder.wait(), 0);
    EXPECT_EQ(x_nwl_lock(handle), kMwOk);
    EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
}

TEST_F(Processes, KeepTheirLocksWhateverTheyDoWithTheLockFile) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    EXPECT_NE(read_file(home() + "/locks"), "");
    EXPECT_EQ(ChildProcess({"lock"}).read_line(), "lock: " + std::to_string(kHostLockTimeout));
}

TEST_F(Processes, LetReadersInWhenAWriterGoesOnReading) {
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    ASSERT_EQ(x_nwl_read_lock(handle), kMwOk);
    ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
    EXPECT_EQ(ChildProcess({"read_lock"}).read_line(), "locked");
    EXPECT_EQ(ChildProcess({"lock"}).read_line(), "lock: " + std::to_string(kHostLockTimeout));
}

TEST_F(Processes, ShareReadLocks) {
    const MwdbHandle handle = created<Networks>(1);
    ChildProcess holder({"read_lock"});
    ASSERT_EQ(holder.read_line(), "locked");
    EXPECT_EQ(x_nwl_read_lock(handle), kMwOk);
    EXPECT_EQ(x_nwl_lock(handle), kHostLockTimeout);
    holder.close_input();
    EXPECT_EQ(holder.wait(), 0);
    EXPECT_EQ(x_nwl_lock(handle), kMwOk); // the only reader becomes the writer
}

TEST_F(Processes, WaitForALockUntilItIsGivenBack) {
    environment.unset("TAVRO_LOCK_TIMEOUT_MS");
    const MwdbHandle handle = created<Networks>(1);
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    ChildProcess waiter({"lock"});
    ASSERT_EQ(x_nwl_unlock(handle), kMwOk);
    EXPECT_EQ(waiter.read_line(), "locked");
}

TEST_F(Processes, ATimeOutNamesTheOtherProcess) {
    const MwdbHandle handle = created<Networks>(1);
    ChildProcess holder({"lock"});
    ASSERT_EQ(holder.read_line(), "locked");
    ASSERT_EQ(x_nwl_lock(handle), kHostLockTimeout);
    ASSERT_EQ(log().size(), 1u);
    const std::string other = "thread " + std::to_string(holder.id()) + " of process " + std::to_string(holder.id());
    EXPECT_NE(log()[0].find("for the write lock of nwl list 1, held by " + other + ";"), std::string::npos) << log()[0];
}

TEST_F(Processes, LoseTheirLocksWhenKilled) {
    const MwdbHandle handle = created<Networks>(1);
    ChildProcess holder({"lock"});
    ASSERT_EQ(holder.read_line(), "locked");
    ASSERT_EQ(x_nwl_lock(handle), kHostLockTimeout);
    holder.kill();
    EXPECT_EQ(x_nwl_lock(handle), kMwOk);
}

TEST_F(Processes, LoseNoAddThatReturnedWhenKilled) {
    const MwdbHandle handle = created<Networks>(1);
    int first = 1;
    for (int round = 0; round < 5; ++round) {
        ChildProcess writer({"add", std::to_string(first), "20000"});
        while (std::atoi(writer.read_line().c_str()) < first + 50) {
        }
        writer.kill();
        int last = 0;
        for (std::string line = writer.read_line(); !line.empty(); line = writer.read_line()) {
            last = std::max(last, std::atoi(line.c_str()));
        }
        last = std::max(last, first + 50);
        Contents all = contents<Networks>(handle);
        // The add in progress when the process was killed may have been committed.
        ASSERT_GE(static_cast<int>(all.size()), last);
        ASSERT_LE(static_cast<int>(all.size()), last + 1);
        ASSERT_EQ(all, added_by_helper(1, static_cast<int>(all.size())));
        first = static_cast<int>(all.size()) + 1;
    }
}

TEST_F(Processes, LeaveTheOldOrTheNewFileWhenKilledWhileStoring) {
    const MwdbHandle ones = created<Networks>(1);
    const MwdbHandle twos = created<Networks>(2);
    for (std::uint16_t id = 1; id <= 500; ++id) {
        ASSERT_EQ(add<Networks>(ones, id, 0x11), kMwOk);
        ASSERT_EQ(add<Networks>(twos, id, 0x22), kMwOk);
    }
    const Contents all_ones = contents<Networks>(ones);
    const Contents all_twos = contents<Networks>(twos);
    std::filesystem::create_directory(path("files"));
    const std::string file = path("files/list");
    const MwdbHandle loaded = created<Networks>(3);
    for (int round = 0; round < 6; ++round) {
        ChildProcess writer({"store", file});
        for (int stores = 0; stores <= round; ++stores) {
            ASSERT_EQ(writer.read_line(), "stored");
        }
        writer.kill();
        ASSERT_EQ(x_nwl_fs_sync(loaded, 0, file.c_str(), 3), kMwOk);
        const Contents all = contents<Networks>(loaded);
        ASSERT_TRUE(all == all_ones || all == all_twos);
    }
    ASSERT_EQ(x_nwl_fs_store(ones, file.c_str(), 1), kMwOk);
    const auto files = std::filesystem::directory_iterator(path("files"));
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}
