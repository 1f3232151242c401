// The storage's own files, and files that are not regular, as paths of list files and of the file functions.
#include "kinds.h"
#include "middleware/files.h"
#include "services/status.h"
#include "workspace.h"

#include <fcntl.h>
#include <filesystem>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

std::string line(const std::string& text, const std::string& process_mark) {
    return "E/TavroHost" + process_mark + ": cannot " + text;
}

} // namespace

// An open storage with one list, and a list file.
class StoragePaths : public Workspace {
protected:
    StoragePaths() { EXPECT_EQ(x_nwl_fs_store(list, good.c_str(), 1), kMwOk); }

    // Checks that every call with this path is refused with `cause`, and that the file stays as it was.
    void expect_refused(const std::string& file, const std::string& cause) {
        SCOPED_TRACE(file);
        const Lines before = log();
        const bool existed = fs::exists(file);
        EXPECT_EQ(x_nwl_fs_sync(list, 0, file.c_str(), 1), kHostCannotReadFile);
        EXPECT_EQ(x_nwl_fs_store(list, file.c_str(), 1), kHostCannotWriteFile);
        EXPECT_EQ(fs_raw_init(0, file.c_str()), kHostCannotWriteFile);
        EXPECT_EQ(fs_raw_copy(0, file.c_str(), 0, path("copy").c_str()), kHostCannotReadFile);
        EXPECT_EQ(fs_raw_copy(0, good.c_str(), 0, file.c_str()), kHostCannotWriteFile);
        EXPECT_EQ(fs::exists(file), existed);
        EXPECT_FALSE(fs::exists(path("copy")));
        Lines expected = before;
        for (const char* action : {"read list file ", "write list file ", "open ", "read ", "write "}) {
            expected.push_back(line(action + file + cause, process_mark()));
        }
        EXPECT_EQ(log(), expected);
    }

    void expect_refused_and_kept(const std::string& file) {
        const std::string cause = ": it belongs to the storage; choose another path";
        expect_refused(file, cause);
        EXPECT_EQ(x_fm_delete_file(0, file.c_str()), kHostCannotWriteFile);
        EXPECT_EQ(log().back(), line("delete " + file + cause, process_mark()));
    }

    const MwdbHandle list = created<Networks>(1);
    const std::string good = path("good");
};

// True if this process has locked any byte of an open file.
bool is_locked(int file) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

TEST_F(StoragePaths, OfItsFilesAreRefused) {
    for (const char* name : {"lists.db", "lists.db-wal", "lists.db-shm", "locks"}) {
        ASSERT_TRUE(fs::exists(home() + "/" + name)) << name;
        expect_refused_and_kept(home() + "/" + name);
    }
    EXPECT_EQ(add<Networks>(list, 1, 0x11), kMwOk);
    restart();
    EXPECT_EQ(contents<Networks>(opened<Networks>(1)), (Contents{{1, 0x11}}));
}

TEST_F(StoragePaths, OfItsFilesAreRefusedByWhateverName) {
    fs::create_hard_link(home() + "/lists.db", path("hard"));
    fs::create_symlink(home() + "/lists.db", path("soft"));
    fs::create_directory_symlink(home(), path("elsewhere"));
    for (const char* name : {"hard", "soft", "elsewhere/lists.db", "./home/../home/lists.db"}) {
        expect_refused_and_kept(path(name));
    }
}

TEST_F(StoragePaths, OfFilesThatItHasYetToMakeAreRefused) {
    const std::string cause = ": it belongs to the storage; choose another path";
    fs::create_directory_symlink(home(), path("elsewhere"));
    fs::create_symlink("home/lists.db-journal", path("soft"));
    fs::create_symlink("soft", path("softer"));
    for (const std::string& file :
         {home() + "/lists.db-journal", home() + "/changes.lock", path("elsewhere/lists.db-journal"), path("softer")}) {
        SCOPED_TRACE(file);
        EXPECT_EQ(x_nwl_fs_store(list, file.c_str(), 1), kHostCannotWriteFile);
        EXPECT_EQ(fs_raw_init(0, file.c_str()), kHostCannotWriteFile);
        EXPECT_EQ(fs_raw_copy(0, good.c_str(), 0, file.c_str()), kHostCannotWriteFile);
        EXPECT_FALSE(fs::exists(file));
        EXPECT_EQ(log().back(), line("write " + file + cause, process_mark()));
    }
}

TEST_F(StoragePaths, OfTheSameNamesElsewhereAreTheUsers) {
    for (const std::string& file : {path("lists.db"), path("locks"), home() + "/lists", home() + "/data/lists.db"}) {
        SCOPED_TRACE(file);
        fs::create_directories(fs::path(file).parent_path());
        EXPECT_EQ(x_nwl_fs_store(list, file.c_str(), 1), kMwOk);
        EXPECT_EQ(fs_raw_init(0, file.c_str()), kMwOk);
        EXPECT_EQ(x_nwl_fs_sync(list, 0, file.c_str(), 1), kMwOk);
        EXPECT_EQ(x_fm_delete_file(0, file.c_str()), kMwOk);
    }
    EXPECT_EQ(log(), Lines{});
}

TEST_F(StoragePaths, AreRefusedWithoutDroppingTheLocksOfSqlite) {
    const int database = ::open((home() + "/lists.db").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_TRUE(is_locked(database));
    expect_refused_and_kept(home() + "/lists.db");
    EXPECT_TRUE(is_locked(database));
    ::close(database);
}

TEST_F(StoragePaths, OfFilesThatAreNotRegularAreRefused) {
    const std::string cause = ": it is not a regular file; choose another path";
    ASSERT_EQ(::mkfifo(path("fifo").c_str(), 0644), 0);
    expect_refused(path("fifo"), cause);
    fs::create_symlink("/dev/null", path("device")); // never the device's own path: a broken check would replace it
    expect_refused(path("device"), cause);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    expect_refused(path("socket"), cause);
    ::close(socket);
    fs::create_directory(path("directory"));
    expect_refused(path("directory"), ": Is a directory; move it away, or choose another path");
    EXPECT_TRUE(fs::is_fifo(path("fifo")));
    EXPECT_TRUE(fs::is_symlink(path("device")));
}
