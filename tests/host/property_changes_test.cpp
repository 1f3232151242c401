// Property changes take effect at once, however they are made.
#include "child_process.h"
#include "common/path_watch.h"
#include "sandbox.h"
#include "workspace.h"

#include <cutils/properties.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr char kName[] = "vendor.vlt.broadcast.log.level";
constexpr char kVariable[] = "TAVRO_PROP_vendor_vlt_broadcast_log_level";

std::string line(const std::string& value) { return std::string(kName) + "=" + value + "\n"; }

std::string get() {
    char value[PROPERTY_VALUE_MAX];
    property_get(kName, value, "default");
    return value;
}

class PropertyChanges : public Workspace {
protected:
    PropertyChanges() {
        environment.unset(kVariable);
        fs::create_directory(home());
    }
    std::string file() const { return home() + "/properties"; }
    void expect(const std::string& value) const {
        EXPECT_EQ(get(), value);
        EXPECT_EQ(get(), value);
    }
    void set(const std::string& value) const { write_file(file(), line(value)); }
};

} // namespace

TEST_F(PropertyChanges, InTheSameThreadMicrosecondsAgo) {
    for (int round = 0; round < 200; ++round) {
        const std::string value = round % 2 == 0 ? "D" : "E";
        set(value);
        ASSERT_EQ(get(), value) << round;
    }
}

TEST_F(PropertyChanges, ByAShellThatAppends) {
    set("D");
    expect("D");
    const std::string command = "echo '" + std::string(kName) + "=E' >> '" + file() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    expect("E");
}

TEST_F(PropertyChanges, ThroughADescriptorThatStaysOpen) {
    set("D");
    const int writer = ::open(file().c_str(), O_WRONLY);
    ASSERT_GE(writer, 0);
    expect("D");
    const std::string text = line("W");
    ASSERT_EQ(::pwrite(writer, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    expect("W");
    ASSERT_EQ(::ftruncate(writer, 0), 0);
    expect("default");
    ::close(writer);
}

TEST_F(PropertyChanges, ThroughAnotherNameOfTheFile) {
    set("D");
    fs::create_hard_link(file(), path("other"));
    expect("D");
    write_file(path("other"), line("E"));
    expect("E");
}

TEST_F(PropertyChanges, ByARenameOverTheFile) {
    set("D");
    for (const char* value : {"E", "W", "I"}) {
        expect(get());
        write_file(path("new"), line(value));
        fs::rename(path("new"), file());
        expect(value);
    }
    set("V"); // the new file is watched too
    expect("V");
}

TEST_F(PropertyChanges, ByDeletingAndMakingTheFile) {
    expect("default");
    for (const char* value : {"D", "E"}) {
        set(value);
        expect(value);
        fs::remove(file());
        expect("default");
    }
    write_file(path("linked"), line("W"));
    fs::create_hard_link(path("linked"), file());
    expect("W");
}

TEST_F(PropertyChanges, ByMakingAndRemovingDirectories) {
    fs::remove(home());
    expect("default");
    fs::create_directory(home());
    expect("default");
    set("D");
    expect("D");
    fs::remove_all(home());
    expect("default");
    fs::create_directory(home());
    set("E");
    expect("E");
}

TEST_F(PropertyChanges, ByMakingADirectoryAnewThatSomebodyStillUses) {
    const int user = ::open(home().c_str(), O_RDONLY | O_DIRECTORY);
    expect("default");
    fs::remove(home());
    expect("default");
    fs::create_directory(home());
    set("D");
    expect("D");
    ::close(user);
}

TEST_F(PropertyChanges, ByRenamingADirectoryAbove) {
    environment.set("TAVRO_HOME", path("one/two/home"));
    fs::create_directories(path("one/two/home"));
    fs::create_directories(path("other/two/home"));
    write_file(path("one/two/home/properties"), line("D"));
    write_file(path("other/two/home/properties"), line("E"));
    expect("D");
    fs::rename(path("one"), path("away"));
    expect("default");
    fs::rename(path("other"), path("one"));
    expect("E");
    write_file(path("away/two/home/properties"), line("W"));
    expect("E");
}

TEST_F(PropertyChanges, BehindSymbolicLinks) {
    write_file(path("target"), line("D"));
    fs::create_symlink(path("target"), file());
    expect("D");
    write_file(path("target"), line("E"));
    expect("E");
    write_file(path("target2"), line("W"));
    fs::create_symlink(path("target2"), path("link"));
    fs::rename(path("link"), file());
    expect("W");
    fs::create_directories(path("outer/real/below"));
    write_file(path("outer/real/below/properties"), line("I"));
    fs::create_directory_symlink(path("outer/real"), path("alias"));
    environment.set("TAVRO_HOME", path("alias/below"));
    expect("I");
    fs::rename(path("outer"), path("gone"));
    expect("default");
    fs::remove(file());
    environment.set("TAVRO_HOME", home());
    set("V"); // a regular file replaces the link
    expect("V");
    set("D");
    expect("D");
}

// `cp -p` and `touch -d` keep or set an old time stamp.
TEST_F(PropertyChanges, BehindASymbolicLinkThatKeepTheTimeStamp) {
    fs::create_symlink(path("target"), file());
    const fs::file_time_type long_ago = fs::file_time_type::clock::now() - std::chrono::hours(1);
    for (const char* value : {"D", "E", "W"}) {
        write_file(path("target"), line(value));
        fs::last_write_time(path("target"), long_ago);
        expect(value);
    }
}

TEST_F(PropertyChanges, OfARelativePathByChangingTheDirectory) {
    const fs::path before = fs::current_path();
    fs::create_directories(path("a/home"));
    fs::create_directories(path("b/home"));
    write_file(path("a/home/properties"), line("D"));
    write_file(path("b/home/properties"), line("E"));
    for (const auto& [name, value] : {std::pair("TAVRO_HOME", "home"), {"TAVRO_PROPERTIES", "home/properties"}}) {
        environment.set(name, value);
        fs::current_path(path("a"));
        expect("D");
        fs::current_path(path("b"));
        expect("E");
    }
    fs::current_path(before);
}

TEST_F(PropertyChanges, ByTheEnvironment) {
    set("D");
    write_file(path("named"), line("W"));
    fs::create_directory(path("home2"));
    write_file(path("home2/properties"), line("I"));
    expect("D");
    environment.set("TAVRO_HOME", path("home2"));
    expect("I");
    environment.set("TAVRO_PROPERTIES", path("named"));
    expect("W");
    environment.set(kVariable, "E");
    expect("E");
    environment.set(kVariable, "");
    expect("default");
    environment.unset(kVariable);
    expect("W");
    environment.unset("TAVRO_PROPERTIES");
    environment.set("TAVRO_HOME", home());
    expect("D");
    environment.unset("TAVRO_HOME");
    environment.set("XDG_STATE_HOME", path("state"));
    fs::create_directories(path("state/tavro"));
    write_file(path("state/tavro/properties"), line("V"));
    expect("V");
    environment.unset("XDG_STATE_HOME");
    environment.set("HOME", path("user"));
    expect("default");
    fs::create_directories(path("user/.local/state/tavro"));
    write_file(path("user/.local/state/tavro/properties"), line("E"));
    expect("E");
}

TEST_F(PropertyChanges, ByAMountOverADirectory) {
    TAVRO_NEEDS_SANDBOX();
    set("D");
    fs::create_directories(path("over"));
    write_file(path("over/properties"), line("E"));
    ChildProcess reader({"property_after_mount", kName, path("over"), home()}, sandboxed("mount --make-rprivate /"));
    EXPECT_EQ(reader.read_lines(), (std::vector<std::string>{"D", "E"}));
    EXPECT_EQ(reader.wait(), 0);
}

TEST_F(PropertyChanges, AfterMoreChangesNearbyThanTheKernelQueues) {
    int queued = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> queued;
    set("D");
    expect("D");
    for (int i = 0; i <= std::min(queued, 20'000); ++i) {
        ::close(::open(path("home/other" + std::to_string(i % 2)).c_str(), O_WRONLY | O_CREAT, 0600));
        ::unlink(path("home/other" + std::to_string(i % 2)).c_str());
    }
    set("E");
    expect("E");
}

TEST_F(PropertyChanges, AreSeenByAParentAndItsChild) {
    set("D");
    expect("D");
    const pid_t child = ::fork();
    if (child == 0) {
        set("E");
        ::_exit(get() == "E" && get() == "E" ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    expect("E");
    set("W");
    expect("W");
}

TEST_F(PropertyChanges, AreLookedForWithoutExaminingTheFile) {
    if (!tavro::host::PathWatch().watch(file())) {
        GTEST_SKIP() << "the kernel cannot report every change of " << file();
    }
    set("D");
    ChildProcess reader({"property_calls", kName});
    ASSERT_EQ(reader.read_line(), "ready");
    const std::string result = reader.read_line(); // under an emulator all calls are allowed
    EXPECT_TRUE(result == "done" || result == "done, with all calls") << result;
    EXPECT_EQ(reader.wait(), 0);
}
