// Storage on a full file system: the status and the single log line.
#include "child_process.h"
#include "edited_database.h"
#include "sandbox.h"
#include "services/status.h"
#include "workspace.h"

#include <filesystem>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

constexpr char kAdvice[] = ": No space left on device; free some space on its file system";

class FullDisk : public Workspace {
protected:
    FullDisk() { fs::create_directory(home()); }

    // Command that mounts an empty file system with these limits on the storage directory.
    std::string mount(const std::string& limits) const {
        return "mount -t tmpfs -o " + limits + " tavro-test '" + home() + "'";
    }

    // Checks that all calls of the child failed with a full file system, except perhaps the first ones, and that the
    // log has a single line.
    void expect_full(const Lines& statuses) {
        const std::string full = std::to_string(kHostStorageFull);
        EXPECT_TRUE(statuses == Lines{full} || statuses == (Lines{"0", full})) << ::testing::PrintToString(statuses);
        const Lines lines = log();
        ASSERT_EQ(lines.size(), 1u) << ::testing::PrintToString(lines);
        EXPECT_NE(lines[0].find(" " + home()), std::string::npos) << lines[0];
        EXPECT_EQ(lines[0].substr(lines[0].size() - std::min(lines[0].size(), std::string(kAdvice).size())), kAdvice);
        fs::remove(path("log"));
    }
};

} // namespace

// With larger sizes SQLite fails at later steps and with other codes.
TEST_F(FullDisk, IsReportedWhereverSpaceRunsOut) {
    TAVRO_NEEDS_SANDBOX();
    for (int kilobytes = 4; kilobytes <= 120; kilobytes += 4) {
        SCOPED_TRACE(kilobytes);
        ChildProcess writer({"fill", "100"}, sandboxed(mount("size=" + std::to_string(kilobytes) + "k")));
        expect_full(writer.read_lines());
        EXPECT_EQ(writer.wait(), 0);
    }
}

TEST_F(FullDisk, IsReportedWhenNoMoreFilesCanBeMade) {
    TAVRO_NEEDS_SANDBOX();
    // The directory itself uses one inode; locks, lists.db, lists.db-wal and lists.db-shm follow.
    for (int files = 1; files <= 4; ++files) {
        SCOPED_TRACE(files);
        ChildProcess writer({"fill", "100"}, sandboxed(mount("nr_inodes=" + std::to_string(files))));
        EXPECT_EQ(writer.read_line(), std::to_string(kHostStorageFull));
        expect_full({std::to_string(kHostStorageFull)});
        EXPECT_EQ(writer.wait(), 0);
    }
}

TEST_F(FullDisk, IsUsedAgainOnceSpaceIsFree) {
    TAVRO_NEEDS_SANDBOX();
    const std::string ballast = home() + "/ballast";
    ChildProcess writer({"fill", "1000", ballast},
                        sandboxed(mount("size=300k") + " && head -c 150000 /dev/zero > '" + ballast + "'"));
    const Lines lines = writer.read_lines();
    EXPECT_EQ(lines, (Lines{"0", std::to_string(kHostStorageFull), "then 0"}));
    expect_full({"0", std::to_string(kHostStorageFull)});
    EXPECT_EQ(writer.wait(), 0);
}

TEST_F(FullDisk, IsReportedForAListFile) {
    TAVRO_NEEDS_SANDBOX();
    fs::create_directory(path("disk"));
    const std::string file = path("disk/list");
    for (const char* limits : {"size=4k", "nr_inodes=1"}) {
        SCOPED_TRACE(limits);
        ChildProcess writer({"store_once", file}, sandboxed("mount -t tmpfs -o " + std::string(limits) +
                                                            " tavro-test '" + path("disk") + "'"));
        EXPECT_EQ(writer.read_lines(), Lines(2, std::to_string(kHostStorageFull)));
        EXPECT_EQ(writer.wait(), 0);
        EXPECT_EQ(log().size(), 1u);
        EXPECT_NE(log()[0].find(": cannot write list file " + file + kAdvice), std::string::npos) << log()[0];
        fs::remove(path("log"));
        fs::remove_all(home());
    }
}

// With the larger sizes the log was checkpointed before, with the smaller ones not.
TEST_F(FullDisk, LetsGoOfRecordsAndLists) {
    TAVRO_NEEDS_SANDBOX();
    const std::string full = std::to_string(kHostStorageFull);
    for (const char* size : {"size=400k", "size=3m", "size=12m"}) {
        SCOPED_TRACE(size);
        ChildProcess process({"changes", "svl"}, sandboxed(mount(size)));
        ASSERT_EQ(process.ask("create 1"), "0");
        ASSERT_EQ(process.ask("create 2"), "0");
        ASSERT_EQ(process.ask("add 2 9 17"), "0");
        ASSERT_EQ(process.ask("fill 1"), full);
        ASSERT_EQ(process.ask("ballast 0 " + home() + "/ballast"), "0");
        EXPECT_EQ(process.ask("remove 1 1"), "0");
        EXPECT_EQ(process.ask("add 1 1 17"), "0");
        EXPECT_EQ(process.ask("clean 1"), "0");
        EXPECT_EQ(process.ask("add 1 1 17"), "0");
        EXPECT_EQ(process.ask("delete 1"), "0");
        EXPECT_EQ(process.ask("create 1"), "0");
        EXPECT_EQ(process.ask("fill 1"), full);
        EXPECT_EQ(process.ask("delete 1"), "0");
        EXPECT_EQ(process.ask("update 2 9 34"), "0");
        process.close_input();
        EXPECT_EQ(process.wait(), 0);
    }
}

// The records are removed in steps that use the same part of the log again.
TEST_F(FullDisk, LetsGoOfALongListWithAShortLog) {
    TAVRO_NEEDS_SANDBOX();
    created<Services>(1);
    insert_records<Services>(home() + "/lists.db", 1, 1, 101, 3000);
    restart();
    fs::rename(home(), path("prepared"));
    fs::create_directory(home());
    ChildProcess process({"changes", "svl"},
                         sandboxed(mount("size=4m") + " && cp '" + path("prepared/lists.db") + "' '" + home() + "'"));
    for (int id = 1; id <= 30; ++id) {
        ASSERT_EQ(process.ask("add 1 " + std::to_string(id) + " 17"), "0");
    }
    ASSERT_EQ(process.ask("ballast 0 " + home() + "/ballast"), "0");
    EXPECT_EQ(process.ask("clean 1"), "0");
    EXPECT_EQ(process.ask("remove 1 3000"), std::to_string(kHostNoSuchRecord));
    EXPECT_EQ(process.ask("add 1 1 17"), "0");
    process.close_input();
    EXPECT_EQ(process.wait(), 0);
}

// A copy that does not fit leaves the target as it was, and the space to other files.
TEST_F(FullDisk, KeepsNoneOfACopyThatDoesNotFit) {
    TAVRO_NEEDS_SANDBOX();
    ChildProcess process({"changes", "svl"}, sandboxed(mount("size=14m")));
    ASSERT_EQ(process.ask("create 1"), "0");
    ASSERT_EQ(process.ask("create 2"), "0");
    ASSERT_EQ(process.ask("add 2 9 17"), "0");
    for (int id = 1; id <= 8000; ++id) {
        ASSERT_EQ(process.ask("add 1 " + std::to_string(id) + " 17"), "0");
    }
    EXPECT_EQ(process.ask("copy 1 2"), std::to_string(kHostStorageFull));
    EXPECT_EQ(process.ask("add 2 9 17"), std::to_string(kMwRecordExists));
    EXPECT_EQ(process.ask("remove 2 9"), "0");
    // The file system of the other process.
    const std::string log = "/proc/" + std::to_string(process.id()) + "/root" + home() + "/lists.db-wal";
    EXPECT_LE(fs::file_size(log), 4'194'304u);
    EXPECT_EQ(process.ask("remove 2 1"), std::to_string(kHostNoSuchRecord));
    process.close_input();
    EXPECT_EQ(process.wait(), 0);
}

// SQLite's shell leaves a file whose size is not a multiple of the steps in which the middleware takes space.
TEST_F(FullDisk, LetsGoOfARecordInAFileOfAnySize) {
    TAVRO_NEEDS_SANDBOX();
    add<Services>(created<Services>(1), 1, 17);
    restart();
    edit_database(home() + "/lists.db", "VACUUM");
    ASSERT_NE(fs::file_size(home() + "/lists.db") % 65536, 0u);
    fs::rename(home(), path("prepared"));
    fs::create_directory(home());
    ChildProcess process({"changes", "svl"},
                         sandboxed(mount("size=1m") + " && cp '" + path("prepared/lists.db") + "' '" + home() + "'"));
    ASSERT_EQ(process.ask("update 1 2 17"), std::to_string(kHostNoSuchRecord));
    const std::string ballast = home() + "/ballast";
    ASSERT_EQ(process.ask("ballast 0 " + ballast), "0");
    const fs::path seen_here = "/proc/" + std::to_string(process.id()) + "/root" + ballast;
    fs::resize_file(seen_here, fs::file_size(seen_here) - 32768); // enough for the log
    EXPECT_EQ(process.ask("remove 1 1"), "0");
    EXPECT_EQ(process.ask("clean 1"), "0");
    process.close_input();
    EXPECT_EQ(process.wait(), 0);
}

// A finished checkpoint gives the space that was taken ahead back to the file system.
TEST_F(FullDisk, TakesSpaceAgainAfterACheckpoint) {
    TAVRO_NEEDS_SANDBOX();
    ChildProcess process({"changes", "svl"}, sandboxed(mount("size=12m")));
    ASSERT_EQ(process.ask("create 1"), "0");
    ASSERT_EQ(process.ask("create 2"), "0");
    const fs::path log = "/proc/" + std::to_string(process.id()) + "/root" + home() + "/lists.db-wal";
    constexpr std::uintmax_t kLongest = 32 + 1000 * (24 + 4096); // with this length it is checkpointed
    int added = 0;
    for (; fs::file_size(log) < kLongest; ++added) {
        ASSERT_EQ(process.ask("add 1 " + std::to_string(added + 1) + " 17"), "0");
    }
    ASSERT_EQ(process.ask("ballast 0 " + home() + "/ballast"), "0");
    ASSERT_EQ(process.ask("fill 2"), std::to_string(kHostStorageFull));
    // More than the log has space for.
    for (int id = 1; id <= added; ++id) {
        ASSERT_EQ(process.ask("remove 1 " + std::to_string(id)), "0") << id;
    }
    process.close_input();
    EXPECT_EQ(process.wait(), 0);
}
