// Storage without write permission, or with directories in place of files.
#include "child_process.h"
#include "kinds.h"
#include "sandbox.h"
#include "services/status.h"
#include "workspace.h"

#include <filesystem>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

using Lines = std::vector<std::string>;

class Permissions : public Workspace {
protected:
    Permissions() {
        created<Networks>(1);
        EXPECT_EQ(add<Networks>(opened<Networks>(1), 1, 0x11), kMwOk);
    }
    ~Permissions() override {
        std::error_code ignored;
        fs::permissions(home(), fs::perms::owner_all, ignored);
    }

    // Closes the storage in this process; only lists.db and locks remain.
    void leave_it() const { restart(); }

    // Every call of another process, started with `launcher`, is refused. It logs `message` once.
    void expect_refused(const std::vector<std::string>& launcher, const std::string& message, const Lines& statuses) {
        ChildProcess writer({"fill", "20"}, launcher);
        const pid_t id = writer.id();
        EXPECT_EQ(writer.read_lines(), statuses);
        EXPECT_EQ(writer.wait(), 0);
        const std::string process = std::to_string(id);
        const std::string mark = "(" + std::string(process.size() < 5 ? 5 - process.size() : 0, ' ') + process + "): ";
        EXPECT_EQ(log(), Lines{"E/TavroHost" + mark + message});
    }
    void expect_refused(const std::string& message) {
        expect_refused(without_privileges(), message, {std::to_string(kHostStorageUnavailable)});
    }
    // Another process can open the list, but adds fail.
    void expect_read_only(const std::string& message) {
        expect_refused(without_privileges(), message, {"0", std::to_string(kHostStorageUnavailable)});
    }

    std::string database() const { return home() + "/lists.db"; }
    const std::string kOrSetHome = ", or set TAVRO_HOME to another directory";
    const std::string kDenied = ": Permission denied; change its owner or permissions" + kOrSetHome;
};

} // namespace

TEST_F(Permissions, OfAReadOnlyDirectory) {
    leave_it();
    fs::permissions(home(), fs::perms::owner_read | fs::perms::owner_exec);
    expect_refused("cannot use " + home() + kDenied);
}

TEST_F(Permissions, OfAReadOnlyDatabase) {
    leave_it();
    fs::permissions(database(), fs::perms::owner_read);
    expect_read_only("cannot use " + database() + kDenied);
}

TEST_F(Permissions, OfAnUnreadableDatabase) {
    leave_it();
    fs::permissions(database(), fs::perms::none);
    expect_refused("cannot use " + database() + kDenied);
}

TEST_F(Permissions, OfAnUnreadableLogOfTheDatabase) {
    fs::permissions(database() + "-wal", fs::perms::none); // exists because this process has the storage open
    expect_refused("cannot use " + database() + "-wal" + kDenied);
}

TEST_F(Permissions, OfAReadOnlyLockFile) {
    leave_it();
    fs::permissions(home() + "/locks", fs::perms::owner_read);
    expect_refused("cannot use " + home() + "/locks" + kDenied);
}

TEST_F(Permissions, OfADirectoryThatCannotBeMade) {
    leave_it();
    fs::permissions(home(), fs::perms::owner_read | fs::perms::owner_exec);
    environment.set("TAVRO_HOME", home() + "/below");
    expect_refused("cannot create the storage directory " + home() + "/below" + kDenied);
    environment.set("TAVRO_HOME", home());
}

TEST_F(Permissions, OfAReadOnlyMount) {
    TAVRO_NEEDS_SANDBOX();
    leave_it();
    const std::string mount =
        "mount --bind '" + home() + "' '" + home() + "' && mount -o remount,ro,bind '" + home() + "'";
    expect_refused(sandboxed(mount),
                   "cannot use " + home() + "/locks: Read-only file system; mount it read-write" + kOrSetHome,
                   {std::to_string(kHostStorageUnavailable)});
}

TEST_F(Permissions, DirectoriesInThePlaceOfFiles) {
    for (const char* name : {"lists.db", "locks", "lists.db-wal"}) {
        SCOPED_TRACE(name);
        environment.set("TAVRO_HOME", path(name));
        leave_it();
        created<Networks>(1);
        leave_it();
        const std::string place = path(name) + "/" + name;
        fs::remove(place);
        fs::create_directory(place);
        expect_refused({}, "cannot use " + place + ": Is a directory; move it away" + kOrSetHome,
                       {std::to_string(kHostStorageUnavailable)});
        fs::remove(path("log"));
    }
}
