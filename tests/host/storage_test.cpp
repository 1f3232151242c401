// What an engineer is told when the storage directory cannot be used.
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <filesystem>

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

} // namespace

TEST_F(StorageTrouble, AFileInThePlaceOfTheDirectory) {
    write_file(home(), "not a directory");
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("cannot use the storage directory " + home() +
                                                   ": Not a directory; set TAVRO_HOME to a directory that you may "
                                                   "write")});
}

TEST_F(StorageTrouble, ADatabaseThatIsNone) {
    fs::create_directory(home());
    write_file(home() + "/lists.db", std::string(4096, 'x'));
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(open_list(), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("the list database " + home() +
                                                   "/lists.db fails: file is not a database; move the file away to "
                                                   "start without lists, or set TAVRO_HOME to another directory")});
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
