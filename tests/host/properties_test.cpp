// System properties from the environment and from a file.
#include "child_process.h"
#include "file_calls.h"
#include "sandbox.h"
#include "workspace.h"

#include <cutils/properties.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

constexpr char kName[] = "vendor.vlt.broadcast.log.level";
constexpr char kVariable[] = "TAVRO_PROP_vendor_vlt_broadcast_log_level";

class SystemProperties : public Workspace {
protected:
    SystemProperties() {
        environment.unset(kVariable);
        environment.set("TAVRO_PROPERTIES", file());
    }
    std::string file() const { return path("properties"); }

    using Lines = std::vector<std::string>;
    static std::string warning(const std::string& path, const std::string& text) {
        return "E/TavroHost" + process_mark() + ": cannot read the properties file " + path + ": " + text;
    }
    // Checks that every property has its default and that the log has a single line.
    void expect_one_warning(const std::string& text) const {
        EXPECT_EQ(get(kName), "default");
        EXPECT_EQ(get("other"), "default");
        EXPECT_EQ(get(kName), "default");
        EXPECT_EQ(log(), Lines{warning(file(), text)});
    }

    // Returns the value. Checks that the returned length is right.
    static std::string get(const char* name, const char* default_value = "default") {
        char value[PROPERTY_VALUE_MAX + 1];
        std::fill(std::begin(value), std::end(value), '#');
        const int length = property_get(name, value, default_value);
        EXPECT_EQ(value[PROPERTY_VALUE_MAX], '#');
        EXPECT_EQ(static_cast<int>(std::char_traits<char>::length(value)), length);
        return value;
    }
};

} // namespace

TEST_F(SystemProperties, AreReadFromNameValueLines) {
    write_file(file(),
               "# vendor.comment=no\n\n" + std::string(kName) + "=D\n  other = two words \r\nno sign\nlast=x=y");
    EXPECT_EQ(get(kName), "D");
    EXPECT_EQ(get("other"), "two words");
    EXPECT_EQ(get("last"), "x=y");
    EXPECT_EQ(get("no sign"), "default");
    EXPECT_EQ(get("# vendor.comment"), "default");
    EXPECT_EQ(get("missing", nullptr), "");
}

TEST_F(SystemProperties, WithoutAFileHaveTheirDefaults) {
    environment.unset("TAVRO_PROPERTIES");
    EXPECT_EQ(get(kName), "default");
    EXPECT_EQ(get(kName, ""), "");
    EXPECT_EQ(log(), Lines{});
}

TEST_F(SystemProperties, OfAMissingFileThatTheEngineerNamedWarnOnce) {
    expect_one_warning("No such file or directory; check the path, or set TAVRO_PROPERTIES to another file");
    write_file(file(), std::string(kName) + "=D");
    EXPECT_EQ(get(kName), "D");
    EXPECT_EQ(log().size(), 1u);
}

TEST_F(SystemProperties, OfADirectoryWarnOnce) {
    fs::create_directory(file());
    expect_one_warning("Is a directory; move it away, or set TAVRO_PROPERTIES to another file");
}

TEST_F(SystemProperties, OfAFileThatIsNotRegularWarnOnceAndNeverWait) {
    const std::string fifo = path("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    Lines warnings;
    for (const std::string& other : {fifo, std::string("/dev/zero"), std::string("/dev/tty")}) {
        fs::remove(file());
        fs::create_symlink(other, file());
        environment.set("TAVRO_PROPERTIES", other);
        EXPECT_EQ(get(kName), "default");
        EXPECT_EQ(get(kName), "default");
        warnings.push_back(warning(other, "not a regular file; set TAVRO_PROPERTIES to another file"));
        environment.set("TAVRO_PROPERTIES", file());
        EXPECT_EQ(get(kName), "default");
    }
    warnings.insert(warnings.begin() + 1, warning(file(), "not a regular file; set TAVRO_PROPERTIES to another file"));
    EXPECT_EQ(log(), warnings);
    fs::remove(file());
    write_file(file(), std::string(kName) + "=D");
    EXPECT_EQ(get(kName), "D");
}

TEST_F(SystemProperties, OfALineThatIsTooLongWarnOnce) {
    const std::string start = std::string(kName) + "=D\nlong=";
    write_file(file(), start + std::string(4091, 'x') + "\nlast=E\n");
    EXPECT_EQ(get("long"), std::string(91, 'x'));
    EXPECT_EQ(log(), Lines{});
    write_file(file(), start + std::string(4092, 'x') + "\nlast=E\n");
    EXPECT_EQ(get("long"), "default");
    EXPECT_EQ(get(kName), "D");
    EXPECT_EQ(get("last"), "E");
    EXPECT_EQ(log(), Lines{warning(file(), "line 2 is longer than 4096 bytes; shorten it")});
}

TEST_F(SystemProperties, OfAFileThatIsTooLargeWarnOnce) {
    const std::string line = std::string(kName) + "=D\n";
    write_file(file(), line + std::string(1'048'576 - line.size(), '\n'));
    EXPECT_EQ(get(kName), "D");
    EXPECT_EQ(log(), Lines{});
    write_file(file(), line + std::string(1'048'577 - line.size(), '\n'));
    expect_one_warning("larger than 1048576 bytes; remove lines, or set TAVRO_PROPERTIES to another file");
}

TEST_F(SystemProperties, BelowAFileWarnOnce) {
    write_file(path("file"), "");
    environment.set("TAVRO_PROPERTIES", path("file") + "/properties");
    EXPECT_EQ(get(kName), "default");
    EXPECT_EQ(log(), Lines{warning(path("file") + "/properties",
                                   "Not a directory; check the path, or set TAVRO_PROPERTIES to another file")});
}

TEST_F(SystemProperties, OfAnUnreadableFileWarnOnce) {
    write_file(file(), std::string(kName) + "=D");
    fs::permissions(file(), fs::perms::none);
    ChildProcess reader({"property", kName}, without_privileges());
    EXPECT_EQ(reader.read_lines(), Lines(2, "default"));
    EXPECT_EQ(reader.wait(), 0);
    ASSERT_EQ(log().size(), 1u);
    EXPECT_NE(log()[0].find("cannot read the properties file " + file() +
                            ": Permission denied; change its owner or "
                            "permissions, or set TAVRO_PROPERTIES to another file"),
              std::string::npos)
        << log()[0];
}

// To open and close a database would release the locks that SQLite holds on it.
TEST_F(SystemProperties, OfAFileOfTheStorageWarnOnce) {
    fs::create_directory(home());
    write_file(home() + "/lists.db", std::string(kName) + "=D");
    fs::create_symlink(home() + "/lists.db", file());
    expect_one_warning("it belongs to the storage; set TAVRO_PROPERTIES to another file");
}

// Some of the counted reads are reads of inotify events.
TEST_F(SystemProperties, OfAFileThatFailsInTheMiddleAreNotUsed) {
    std::set<std::string> found;
    for (int failing = 1; failing <= 6; ++failing) {
        write_file(file(), "first=1\n" + std::string(8000 + failing, '\n') + "last=1\n");
        const FileCalls calls;
        calls.fail_read(failing, EIO);
        const std::string first = get("first");
        found.insert(first + " " + get("last"));
    }
    EXPECT_EQ(found, (std::set<std::string>{"1 1", "default default"}));
    EXPECT_EQ(log(), Lines{warning(file(), "Input/output error; check the disk, or set TAVRO_PROPERTIES to another "
                                           "file")});
}

TEST_F(SystemProperties, StandBelowTheStorageDirectoryByDefault) {
    environment.unset("TAVRO_PROPERTIES");
    fs::create_directory(home());
    write_file(home() + "/properties", std::string(kName) + "=W\n");
    EXPECT_EQ(get(kName), "W");
}

TEST_F(SystemProperties, ChangeWhileTheProcessRuns) {
    EXPECT_EQ(get(kName), "default");
    for (const char* value : {"D", "E", "V", "W"}) { // same size, and almost the same time
        write_file(file(), std::string(kName) + "=" + value);
        EXPECT_EQ(get(kName), value);
        EXPECT_EQ(get(kName), value);
    }
    write_file(path("new"), std::string(kName) + "=I");
    fs::rename(path("new"), file());
    EXPECT_EQ(get(kName), "I");
    fs::remove(file());
    EXPECT_EQ(get(kName), "default");
}

TEST_F(SystemProperties, ChangeAfterTheFileHasLainStill) {
    const auto long_ago = fs::file_time_type::clock::now() - std::chrono::hours(1);
    write_file(file(), std::string(kName) + "=D");
    fs::last_write_time(file(), long_ago);
    EXPECT_EQ(get(kName), "D");
    write_file(file(), std::string(kName) + "=E");
    EXPECT_EQ(get(kName), "E");
}

TEST_F(SystemProperties, OfTheEnvironmentWin) {
    write_file(file(), std::string(kName) + "=D");
    environment.set(kVariable, "E");
    EXPECT_EQ(get(kName), "E");
    environment.unset(kVariable);
    EXPECT_EQ(get(kName), "D");
}

TEST_F(SystemProperties, SetToNothingHaveTheirDefaults) {
    write_file(file(), std::string(kName) + "=\n");
    EXPECT_EQ(get(kName), "default");
}

TEST_F(SystemProperties, AreCutTo91Bytes) {
    write_file(file(), std::string(kName) + "=" + std::string(91, 'a') + "b");
    EXPECT_EQ(get(kName), std::string(91, 'a'));
    EXPECT_EQ(get("missing", std::string(200, 'c').c_str()), std::string(91, 'c'));
}
