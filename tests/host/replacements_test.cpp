// How list files and copies replace files: temporary files, syncs, and failures on the way.
#include "child_process.h"
#include "file_calls.h"
#include "kinds.h"
#include "middleware/files.h"
#include "sandbox.h"
#include "services/status.h"
#include "workspace.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

// List 1 has one record. `file` is in a directory of its own.
class Replacements : public Workspace {
protected:
    Replacements() {
        fs::create_directory(path("files"));
        EXPECT_EQ(add<Networks>(list, 1, 0x11), kMwOk);
    }

    MwStatus store() const { return x_nwl_fs_store(list, file.c_str(), 1); }
    MwStatus load() const { return x_nwl_fs_sync(list, 0, file.c_str(), 1); }

    Lines files() const {
        Lines names;
        for (const fs::directory_entry& entry : fs::directory_iterator(path("files"))) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    static std::string line(const std::string& text) { return "E/TavroHost" + process_mark() + ": " + text; }

    const std::string file = path("files/list");
    const MwdbHandle list = created<Networks>(1);
};

// Lets no more files be opened.
class NoMoreFiles {
public:
    NoMoreFiles() {
        ::getrlimit(RLIMIT_NOFILE, &before_);
        const int next = ::dup(STDIN_FILENO);
        ::close(next);
        const rlimit none{static_cast<rlim_t>(next), before_.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoMoreFiles() { ::setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

// Closes standard input and standard error.
class ClosedDescriptors {
public:
    ClosedDescriptors() {
        ::close(STDIN_FILENO);
        ::close(STDERR_FILENO);
    }
    ~ClosedDescriptors() {
        ::dup2(input_, STDIN_FILENO);
        ::dup2(error_, STDERR_FILENO);
        ::close(input_);
        ::close(error_);
    }

private:
    const int input_ = ::dup(STDIN_FILENO);
    const int error_ = ::dup(STDERR_FILENO);
};

} // namespace

TEST_F(Replacements, LeaveNothingNextToTheFile) {
    write_file(file, "something old");
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(load(), kMwOk);
    EXPECT_EQ(files(), Lines{"list"});
    EXPECT_EQ(contents<Networks>(list), (Contents{{1, 0x11}}));
}

TEST_F(Replacements, RemoveWhatKilledProcessesLeft) {
    for (const std::string& id : {std::string("999999999"), std::to_string(::getpid()), std::string("1")}) {
        write_file(file + ".tavro-tmp." + id + ".0", "left");
        write_file(file + ".tavro-tmp." + id + ".1234", "left");
    }
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(files(), Lines{"list"});
}

TEST_F(Replacements, KeepTemporaryFilesThatAreInUse) {
    const std::string other = file + ".tavro-tmp." + std::to_string(::getpid()) + ".999999";
    const int used = ::open(other.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_EQ(::flock(used, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(store(), kMwOk);
    EXPECT_TRUE(fs::exists(other));
    ::close(used);
    EXPECT_EQ(store(), kMwOk);
    EXPECT_FALSE(fs::exists(other));
}

TEST_F(Replacements, TakeAnotherNameIfOneIsTaken) {
    const FileCalls calls;
    ASSERT_EQ(store(), kMwOk);
    const std::string used = calls.first_synced();
    const std::string prefix = file + ".tavro-tmp." + std::to_string(::getpid()) + ".";
    ASSERT_EQ(used.compare(0, prefix.size(), prefix), 0) << used;
    const std::string next = prefix + std::to_string(std::stoi(used.substr(prefix.size())) + 1);
    const int taken = ::open(next.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    ASSERT_EQ(::flock(taken, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(store(), kMwOk);
    ::close(taken);
    EXPECT_EQ(files(), (Lines{"list", fs::path(next).filename().string()}));
}

// Another process may lock the new file, to remove it, before this one does.
TEST_F(Replacements, TakeAnotherFileIfOneIsLockedFirst) {
    const FileCalls calls;
    calls.fail_lock(1, EWOULDBLOCK);
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(files().size(), 2u); // the file that was lost, which nobody removes here
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(files(), Lines{"list"});
}

TEST_F(Replacements, WorkWithoutLocks) {
    const FileCalls calls;
    calls.fail_lock(1, ENOLCK);
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(files(), Lines{"list"});
}

TEST_F(Replacements, KeepFilesThatOnlyLookTemporary) {
    write_file(path("list-behind-a-link"), "a user's");
    fs::create_hard_link(path("list-behind-a-link"), file + ".tavro-tmp.999999999.0");
    fs::create_symlink(path("list-behind-a-link"), file + ".tavro-tmp.999999999.1");
    ASSERT_EQ(::mkfifo((file + ".tavro-tmp.999999999.2").c_str(), 0644), 0);
    const Lines users{"list.tavro-tmp.",     "list.tavro-tmp..1",   "list.tavro-tmp.1", "list.tavro-tmp.1.",
                      "list.tavro-tmp.1.2x", "list.tavro-tmp.1x.2", "list.tavro-tmp.x", "list.tmp.2024.11"};
    for (const std::string& name : users) {
        write_file(path("files/" + name), "a user's");
    }
    EXPECT_EQ(store(), kMwOk);
    Lines expected = users;
    expected.insert(expected.end(),
                    {"list", "list.tavro-tmp.999999999.0", "list.tavro-tmp.999999999.1", "list.tavro-tmp.999999999.2"});
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(files(), expected);
}

// By then another process may have removed the leftover and begun a replacement with the same name.
TEST_F(Replacements, KeepAFileThatTookTheNameOfALeftover) {
    const std::string left = file + ".tavro-tmp.999999999.0";
    write_file(left, "left");
    write_file(path("new"), "new");
    const FileCalls calls;
    calls.after_open(left, [&] {
        fs::rename(left, path("elsewhere"));
        fs::rename(path("new"), left);
    });
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(files(), (Lines{"list", fs::path(left).filename().string()}));
    EXPECT_EQ(read_file(left), "new");
}

TEST_F(Replacements, SyncTheFileAndItsDirectoryOnly) {
    {
        const FileCalls calls;
        EXPECT_EQ(store(), kMwOk);
        EXPECT_EQ(calls.syncs(), 2);
    }
    const FileCalls calls;
    EXPECT_EQ(fs_raw_copy(0, file.c_str(), 0, path("files/copy").c_str()), kMwOk);
    EXPECT_EQ(calls.syncs(), 2);
}

TEST_F(Replacements, FailWithoutATraceIfTheFileCannotBeSynced) {
    write_file(file, "something old");
    const FileCalls calls;
    calls.fail_sync(1, EIO);
    EXPECT_EQ(store(), kHostCannotWriteFile);
    EXPECT_EQ(read_file(file), "something old");
    EXPECT_EQ(files(), Lines{"list"});
    EXPECT_EQ(log(), Lines{line("cannot write list file " + file +
                                ": Input/output error; check the disk, or choose another path")});
}

TEST_F(Replacements, SucceedIfOnlyTheDirectoryCannotBeSynced) {
    write_file(file, "something old");
    const FileCalls calls;
    calls.fail_sync(2, EIO);
    EXPECT_EQ(store(), kMwOk);
    EXPECT_EQ(log(), Lines{line("replaced " + file +
                                ", but cannot sync its directory: Input/output error; check the disk, or choose "
                                "another path. A power failure may bring the old file back.")});
    EXPECT_EQ(load(), kMwOk);
    EXPECT_EQ(files(), Lines{"list"});
}

// The line about the second sync would end up in the copy if the copy were standard error.
TEST_F(Replacements, WithClosedStandardDescriptorsTakeNoLogLines) {
    environment.unset("TAVRO_LOG_FILE");
    write_file(file, "content");
    const FileCalls calls;
    calls.fail_sync(2, EIO);
    MwStatus status = -1;
    {
        const ClosedDescriptors closed;
        status = fs_raw_copy(0, file.c_str(), 0, path("files/copy").c_str());
    }
    EXPECT_EQ(status, kMwOk);
    EXPECT_EQ(read_file(path("files/copy")), "content");
    EXPECT_EQ(calls.syncs(), 2);
}

TEST_F(Replacements, OfAFileThatCannotBeReadFail) {
    ASSERT_EQ(store(), kMwOk);
    const FileCalls calls;
    calls.fail_read(1, EIO);
    EXPECT_EQ(load(), kHostCannotReadFile);
    calls.fail_read(1, EIO);
    EXPECT_EQ(fs_raw_copy(0, file.c_str(), 0, path("files/copy").c_str()), kHostCannotReadFile);
    calls.fail_read(1, EINTR);
    EXPECT_EQ(load(), kMwOk);
    EXPECT_EQ(files(), Lines{"list"});
    const std::string cause = ": Input/output error; check the disk, or choose another path";
    EXPECT_EQ(log(), (Lines{line("cannot read list file " + file + cause), line("cannot read " + file + cause)}));
}

TEST_F(Replacements, FailWhenNoMoreFilesCanBeOpened) {
    ASSERT_EQ(store(), kMwOk);
    const std::string good = read_file(file);
    {
        const NoMoreFiles limit;
        EXPECT_EQ(load(), kHostCannotReadFile);
        EXPECT_EQ(store(), kHostCannotWriteFile);
        EXPECT_EQ(fs_raw_init(0, file.c_str()), kHostCannotWriteFile);
        EXPECT_EQ(fs_raw_copy(0, file.c_str(), 0, path("files/copy").c_str()), kHostCannotReadFile);
    }
    EXPECT_EQ(files(), Lines{"list"});
    EXPECT_EQ(read_file(file), good);
    EXPECT_EQ(load(), kMwOk);
    EXPECT_EQ(contents<Networks>(list), (Contents{{1, 0x11}}));
}

TEST_F(Replacements, OfAFileWithoutPermissionFail) {
    ASSERT_EQ(store(), kMwOk);
    fs::permissions(file, fs::perms::none);
    ChildProcess reader({"changes", "nwl"}, without_privileges());
    EXPECT_EQ(reader.ask("load 1 " + file), std::to_string(kHostCannotReadFile));
    fs::permissions(path("files"), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(reader.ask("store 1 " + file), std::to_string(kHostCannotWriteFile));
    fs::permissions(path("files"), fs::perms::none);
    EXPECT_EQ(reader.ask("load 1 " + path("files/nothing")), std::to_string(kHostCannotReadFile));
    fs::permissions(path("files"), fs::perms::owner_all);
    const Lines lines = log();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_NE(lines[0].find(": cannot read list file " + file +
                            ": Permission denied; change its owner or permissions, or choose another path"),
              std::string::npos)
        << lines[0];
}

TEST_F(Replacements, BetweenTheStepsOfALoadDoNotDisturbIt) {
    const MwdbHandle larger = created<Networks>(2);
    for (std::uint16_t id = 1; id <= 100; ++id) {
        ASSERT_EQ(add<Networks>(larger, id, 0x22), kMwOk);
    }
    ASSERT_EQ(x_nwl_fs_store(larger, file.c_str(), 2), kMwOk);
    ASSERT_EQ(x_nwl_fs_store(list, path("smaller").c_str(), 1), kMwOk);
    const MwdbHandle target = created<Networks>(3);
    const FileCalls calls;
    calls.after_open(file, [&] { fs::rename(path("smaller"), file); });
    EXPECT_EQ(x_nwl_fs_sync(target, 0, file.c_str(), 3), kMwOk);
    EXPECT_EQ(contents<Networks>(target).size(), 100u);
    EXPECT_EQ(x_nwl_fs_sync(target, 0, file.c_str(), 3), kMwOk);
    EXPECT_EQ(contents<Networks>(target), (Contents{{1, 0x11}}));
}

TEST_F(Replacements, ByAnotherProcessNeverDisturbALoad) {
    const MwdbHandle other = created<Networks>(2);
    for (std::uint16_t id = 1; id <= 100; ++id) { // a file of another size
        ASSERT_EQ(add<Networks>(other, id, 0x22), kMwOk);
    }
    const MwdbHandle target = created<Networks>(3);
    ChildProcess writer({"store", file});
    ASSERT_EQ(writer.read_line(), "stored");
    for (int i = 0; i < 300; ++i) {
        ASSERT_EQ(x_nwl_fs_sync(target, 0, file.c_str(), 3), kMwOk);
        std::uint16_t count = 0;
        std::int32_t version = 0;
        ASSERT_EQ(x_nwl_get_num_rec(target, &count, &version), kMwOk);
        ASSERT_TRUE(count == 1 || count == 100) << count;
    }
}
