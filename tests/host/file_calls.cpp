#include "file_calls.h"

#include <atomic>
#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

struct Calls {
    std::atomic<int> made{0};
    std::atomic<int> until_failure{0}; // 0: none
    std::atomic<int> error{0};

    // Counts a call. Returns false, with errno set, if it is to fail.
    bool pass() {
        ++made;
        if (until_failure == 0 || --until_failure != 0) {
            return true;
        }
        errno = error;
        return false;
    }
    void fail(int call, int with) {
        error = with;
        until_failure = call;
    }
};

Calls syncs_made;
Calls reads_made;

void reset() {
    for (Calls* const calls : {&syncs_made, &reads_made}) {
        calls->made = 0;
        calls->until_failure = 0;
    }
}

} // namespace

FileCalls::FileCalls() { reset(); }
FileCalls::~FileCalls() { reset(); }

void FileCalls::fail_sync(int call, int error) { syncs_made.fail(call, error); }
void FileCalls::fail_read(int call, int error) { reads_made.fail(call, error); }
int FileCalls::syncs() { return syncs_made.made; }

extern "C" {

int fsync(int file) { return syncs_made.pass() ? static_cast<int>(::syscall(SYS_fsync, file)) : -1; }
int fdatasync(int file) { return syncs_made.pass() ? static_cast<int>(::syscall(SYS_fdatasync, file)) : -1; }
ssize_t read(int file, void* bytes, std::size_t count) {
    return reads_made.pass() ? ::syscall(SYS_read, file, bytes, count) : -1;
}
}
