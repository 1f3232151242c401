// Errors logged when the storage directory cannot be used.
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <algorithm>
#include <filesystem>
#include <sqlite3.h>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

class StorageTrouble : public Workspace {
protected:
    static std::string line(const std::string& text) { return "E/TavroHost" + process_mark() + ": " + text; }
    static MwStatus open_list() {
        MwdbHandle handle = 0;
        return x_svl_open(1, 0, 0, &handle);
    }
};

// SQLite's default VFS without sleeping, so that waiting for another connection's lock takes no time.
class SleeplessFileSystem {
public:
    SleeplessFileSystem() : usual_(sqlite3_vfs_find(nullptr)), sleepless_(*usual_) {
        sleepless_.zName = "sleepless";
        sleepless_.xSleep = [](sqlite3_vfs*, int microseconds) { return microseconds; };
        sqlite3_vfs_register(&sleepless_, /*makeDflt*/ 1);
    }
    ~SleeplessFileSystem() {
        sqlite3_vfs_unregister(&sleepless_);
        sqlite3_vfs_register(usual_, /*makeDflt*/ 1);
    }
    SleeplessFileSystem(const SleeplessFileSystem&) = delete;
    SleeplessFileSystem& operator=(const SleeplessFileSystem&) = delete;

private:
    sqlite3_vfs* usual_;
    sqlite3_vfs sleepless_;
};

} // namespace

TEST_F(StorageTrouble, AFileInThePlaceOfTheDirectory) {
    write_file(home(), "not a directory");
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("cannot create the storage directory " + home() +
                                                   ": Not a directory; check the path, or set TAVRO_HOME to another "
                                                   "directory")});
}

TEST_F(StorageTrouble, ADatabaseThatIsNone) {
    fs::create_directory(home());
    write_file(home() + "/lists.db", std::string(4096, 'x'));
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("cannot use the list database " + home() +
                                                   "/lists.db: file is not a database; move the file away to "
                                                   "start without lists, or set TAVRO_HOME to another directory")});
}

TEST_F(StorageTrouble, ADamagedDatabase) {
    const MwdbHandle handle = created<Services>(1);
    for (std::uint16_t id = 1; id <= 100; ++id) {
        ASSERT_EQ(add<Services>(handle, id, 0x11), kMwOk);
    }
    restart();
    std::string bytes = read_file(home() + "/lists.db"); // the lists table is on page 2, followed by records
    std::fill(bytes.begin() + 2 * 4096, bytes.end(), '\xFF');
    write_file(home() + "/lists.db", bytes);
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("cannot use the list database " + home() +
                                                   "/lists.db: the file is damaged (database disk image is "
                                                   "malformed); move the file away to start without lists, or set "
                                                   "TAVRO_HOME to another directory")});
}

TEST_F(StorageTrouble, ALockedDatabase) {
    const SleeplessFileSystem nobody_waits;
    const MwdbHandle handle = created<Services>(1);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open((home() + "/lists.db").c_str(), &other), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(add<Services>(handle, 1, 0x11), kHostStorageUnavailable);
    EXPECT_EQ(add<Services>(handle, 2, 0x22), kHostStorageUnavailable);
    EXPECT_EQ(sqlite3_close(other), SQLITE_OK);
    EXPECT_EQ(add<Services>(handle, 3, 0x33), kMwOk);
    restart();
    EXPECT_EQ(log(), std::vector<std::string>{line("cannot use the list database " + home() +
                                                   "/lists.db: database is locked; another process has been "
                                                   "writing to it for too long; end that process")});
}

TEST_F(StorageTrouble, SomebodyElsesDatabase) {
    const MwdbHandle handle = created<Services>(1);
    ASSERT_EQ(x_svl_fs_store(handle, path("list").c_str(), 1), kMwOk);
    restart();
    fs::remove_all(home());
    fs::create_directory(home());
    fs::copy(path("list"), home() + "/lists.db");
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line(home() + "/lists.db is not a list database of this version; move "
                                                            "it away to start without lists, or set TAVRO_HOME to "
                                                            "another directory")});
}

// A change is not acknowledged if later reads would not find it.
TEST_F(StorageTrouble, AStorageThatIsMovedOrRemovedWhileInUse) {
    const MwdbHandle handle = created<Services>(1);
    ASSERT_EQ(add<Services>(handle, 1, 0x11), kMwOk);
    fs::rename(home(), path("elsewhere"));
    EXPECT_EQ(add<Services>(handle, 2, 0x22), kHostStorageUnavailable);
    fs::create_directory(home());
    write_file(home() + "/lists.db", "");
    EXPECT_EQ(x_svl_clean(handle), kHostStorageUnavailable);
    fs::remove_all(home());
    fs::rename(path("elsewhere"), home());
    EXPECT_EQ(add<Services>(handle, 3, 0x33), kMwOk);
    EXPECT_EQ(contents<Services>(handle), (Contents{{1, 0x11}, {3, 0x33}}));
    fs::remove_all(home());
    EXPECT_EQ(add<Services>(handle, 4, 0x44), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("cannot use the list database " + home() +
                                                   "/lists.db: it was moved or removed while this process used it; "
                                                   "put it back, or restart the process")});
}

TEST_F(StorageTrouble, EndsWhenTheEngineerHasMendedIt) {
    write_file(home(), "not a directory");
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    fs::remove(home());
    EXPECT_EQ(open_list(), kHostNoSuchList);
    created<Services>(1);
    EXPECT_EQ(open_list(), kMwOk);
}

TEST_F(StorageTrouble, TheDirectoryDefaultsToThePerUserStateDirectory) {
    environment.unset("TAVRO_HOME");
    environment.set("XDG_STATE_HOME", path("state"));
    created<Services>(1);
    restart();
    EXPECT_TRUE(fs::is_regular_file(path("state/tavro/lists.db")));
    environment.unset("XDG_STATE_HOME");
    environment.set("HOME", path("user"));
    created<Services>(1);
    restart();
    EXPECT_TRUE(fs::is_regular_file(path("user/.local/state/tavro/lists.db")));
}
