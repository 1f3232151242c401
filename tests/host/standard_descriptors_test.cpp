// A process whose standard input, output or error is closed: no file of the stand-ins takes their place.
#include "child_process.h"
#include "common/open_file.h"
#include "file_calls.h"
#include "workspace.h"

#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class StandardDescriptors : public Workspace {
protected:
    // Files below the test's directory whose content has a log line.
    std::vector<std::string> files_with_log_lines() const {
        std::vector<std::string> found;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory())) {
            if (entry.is_regular_file() && read_file(entry.path()).find("LogLine") != std::string::npos) {
                found.push_back(entry.path().filename());
            }
        }
        return found;
    }
};

} // namespace

TEST_F(StandardDescriptors, ThatAreClosedAreNoFilesOfTheStandIns) {
    write_file(path("properties"), "a.property=value\n");
    environment.set("TAVRO_PROPERTIES", path("properties"));
    for (const char* what : {"files", "properties", "lists"}) {
        for (const char* log_file : {"", "log"}) {
            fs::remove_all(home());
            environment.set("TAVRO_LOG_FILE", *log_file == '\0' ? "" : path(log_file));
            ChildProcess user({"use", what, directory()}, {"sh", "-c", "exec \"$@\" 0<&- 2>&-", "closed"});
            EXPECT_EQ(user.read_lines(), (std::vector<std::string>{"/dev/null /dev/null", "done"})) << what;
            EXPECT_EQ(user.wait(), 0);
            EXPECT_EQ(files_with_log_lines(),
                      *log_file == '\0' ? std::vector<std::string>{} : std::vector<std::string>{log_file});
            fs::remove(path("log"));
        }
    }
}

TEST_F(StandardDescriptors, ThatAnotherThreadFillsFirstLeakNothing) {
    const int input = ::dup(STDIN_FILENO);
    const int next = ::dup(STDIN_FILENO);
    ::close(next);
    ::close(STDIN_FILENO);
    const FileCalls calls;
    calls.before_open("/dev/null", [] { EXPECT_EQ(::open("/dev/null", O_RDWR | O_CLOEXEC), STDIN_FILENO); });
    tavro::host::fill_standard_descriptors();
    EXPECT_EQ(::fcntl(next, F_GETFD), -1);
    ::dup2(input, STDIN_FILENO);
    ::close(input);
}
