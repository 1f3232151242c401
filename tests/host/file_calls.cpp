#include "file_calls.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <string>
#include <sys/file.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

struct Calls {
    std::atomic<int> made{0};
    std::atomic<int> until_failure{0}; // 0: none
    std::atomic<int> error{0};
    std::atomic<int> period{0}; // 0: one failure
    std::atomic<bool> failed{false};

    // Counts a call. Returns false, with errno set, if it is to fail.
    bool pass() {
        ++made;
        if (until_failure == 0) {
            return true;
        }
        if (until_failure > 1) {
            --until_failure;
            return true;
        }
        until_failure = period.load();
        failed = true;
        errno = error;
        return false;
    }
    void fail(int call, int with, int every = 0) {
        error = with;
        period = every;
        failed = false;
        until_failure = call;
    }
};

Calls syncs_made;
Calls reads_made;
Calls locks_made;
Calls changes_made;
std::atomic<bool> recording{false}; // whether first_path may be set; only one thread works meanwhile
std::string first_path;
std::vector<std::string> paths_to_write;

void note_opening(const char* path, int flags) {
    if (recording && ((flags & O_ACCMODE) != O_RDONLY || (flags & O_CREAT) != 0)) {
        paths_to_write.emplace_back(path);
    }
}

// What to do when a file is opened.
struct Action {
    std::string path;
    std::function<void()> run; // empty: nothing

    void hit(const char* opened) {
        if (recording && run && path == opened) {
            std::exchange(run, nullptr)();
        }
    }
};

Action before_opening;
Action after_opening;

// The function that a replacement below stands for.
template <class Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void reset() {
    for (Calls* const calls : {&syncs_made, &reads_made, &locks_made, &changes_made}) {
        calls->made = 0;
        calls->until_failure = 0;
    }
    first_path.clear();
    paths_to_write.clear();
    before_opening = {};
    after_opening = {};
}

bool pass_sync(int file) {
    if (recording && first_path.empty()) {
        std::error_code ignored;
        first_path = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), ignored).string();
    }
    return syncs_made.pass() && changes_made.pass();
}

} // namespace

FileCalls::FileCalls() {
    reset();
    recording = true;
}
FileCalls::~FileCalls() {
    recording = false;
    reset();
}

void FileCalls::fail_sync(int call, int error) { syncs_made.fail(call, error); }
void FileCalls::fail_read(int call, int error) { reads_made.fail(call, error); }
void FileCalls::fail_change(int call, int error, int period) { changes_made.fail(call, error, period); }
bool FileCalls::end_failures() {
    changes_made.until_failure = 0;
    return changes_made.failed;
}
void FileCalls::fail_lock(int call, int error) { locks_made.fail(call, error); }
void FileCalls::before_open(const std::string& path, const std::function<void()>& action) {
    before_opening = {path, action};
}
void FileCalls::after_open(const std::string& path, const std::function<void()>& action) {
    after_opening = {path, action};
}
std::vector<std::string> FileCalls::opened_to_write(const std::string& directory) {
    std::vector<std::string> below;
    std::copy_if(paths_to_write.begin(), paths_to_write.end(), std::back_inserter(below),
                 [&](const std::string& path) { return path.rfind(directory, 0) == 0; });
    return below;
}
std::string FileCalls::first_synced() { return first_path; }
int FileCalls::syncs() { return syncs_made.made; }

extern "C" {

int fsync(int file) { return pass_sync(file) ? static_cast<int>(::syscall(SYS_fsync, file)) : -1; }
int fdatasync(int file) { return pass_sync(file) ? static_cast<int>(::syscall(SYS_fdatasync, file)) : -1; }
int flock(int file, int operation) noexcept {
    return locks_made.pass() ? static_cast<int>(::syscall(SYS_flock, file, operation)) : -1;
}
ssize_t read(int file, void* bytes, std::size_t count) {
    return reads_made.pass() ? ::syscall(SYS_read, file, bytes, count) : -1;
}

#define TAVRO_REPLACE(NAME, PARAMETERS, ...)                                                                           \
    NAME PARAMETERS {                                                                                                  \
        static const auto usual = next<decltype(&(NAME))>(#NAME);                                                      \
        return changes_made.pass() ? usual(__VA_ARGS__) : -1;                                                          \
    }
ssize_t TAVRO_REPLACE(write, (int file, const void* bytes, std::size_t count), file, bytes, count);
ssize_t TAVRO_REPLACE(pwrite, (int file, const void* bytes, std::size_t count, off_t start), file, bytes, count, start);
ssize_t TAVRO_REPLACE(pwrite64, (int file, const void* bytes, std::size_t count, off64_t start), file, bytes, count,
                      start);
int TAVRO_REPLACE(ftruncate, (int file, off_t bytes) noexcept, file, bytes);
int TAVRO_REPLACE(ftruncate64, (int file, off64_t bytes) noexcept, file, bytes);
int TAVRO_REPLACE(unlink, (const char* path) noexcept, path);
int TAVRO_REPLACE(rename, (const char* from, const char* to) noexcept, from, to);

// The mode is an int in the caller's arguments.
#define TAVRO_REPLACE_OPEN(NAME)                                                                                       \
    int NAME(const char* path, int flags, ...) {                                                                       \
        static const auto usual = next<decltype(&(NAME))>(#NAME);                                                      \
        va_list more;                                                                                                  \
        va_start(more, flags);                                                                                         \
        const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;                                               \
        va_end(more);                                                                                                  \
        before_opening.hit(path);                                                                                      \
        note_opening(path, flags);                                                                                     \
        const int file = changes_made.pass() ? usual(path, flags, mode) : -1;                                          \
        after_opening.hit(path);                                                                                       \
        return file;                                                                                                   \
    }
TAVRO_REPLACE_OPEN(open)
TAVRO_REPLACE_OPEN(open64)
}
