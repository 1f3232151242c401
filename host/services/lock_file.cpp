#include "lock_file.h"

#include "status.h"
#include "storage_error.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace tavro::host {
namespace {

constexpr mode_t kFileMode = 0644;

// Behind the lock byte of each list stands who took it last, for messages: the file has one such entry
// for each list number. No list has number 0, whose byte guards the opening of the storage.
struct Holder {
    std::int32_t process;
    std::int32_t thread;
};

std::int64_t offset_of(const ListKey& list) { return list.number() * std::int64_t{sizeof(Holder)}; }

} // namespace

LockFile::LockFile(const std::string& path)
    : path_(path), file_(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kFileMode)) {
    if (file_ < 0) {
        throw storage_failure("use", path, errno);
    }
}

LockFile::~LockFile() { ::close(file_); }

bool LockFile::set_byte(std::int64_t offset, LockLevel level, bool wait) {
    struct flock range {};
    const int type = level == LockLevel::kNone ? F_UNLCK : level == LockLevel::kRead ? F_RDLCK : F_WRLCK;
    range.l_type = static_cast<short>(type);
    range.l_whence = SEEK_SET;
    range.l_start = offset;
    range.l_len = 1;
    for (;;) {
        if (::fcntl(file_, wait ? F_OFD_SETLKW : F_OFD_SETLK, &range) == 0) {
            return true;
        }
        if (errno == EAGAIN || errno == EACCES) {
            return false;
        }
        if (errno != EINTR) {
            throw Failure(kHostStorageUnavailable, "cannot lock " + path_ + ": " + std::strerror(errno) +
                                                       "; set TAVRO_HOME to a directory on a local file system");
        }
    }
}

bool LockFile::set(const ListKey& list, LockLevel level) {
    if (!set_byte(offset_of(list), level, /*wait*/ false)) {
        return false;
    }
    if (level != LockLevel::kNone) {
        const Holder self{::getpid(), ::gettid()};
        // Only a message needs it, so a failed write does no harm.
        [[maybe_unused]] const ssize_t written = ::pwrite(file_, &self, sizeof self, offset_of(list));
    }
    return true;
}

void LockFile::begin_opening() { set_byte(0, LockLevel::kWrite, /*wait*/ true); }

void LockFile::end_opening() { set_byte(0, LockLevel::kNone, /*wait*/ false); }

std::string LockFile::last_holder(const ListKey& list) const {
    Holder holder{};
    if (::pread(file_, &holder, sizeof holder, offset_of(list)) != sizeof holder) {
        return "another process";
    }
    return "thread " + std::to_string(holder.thread) + " of process " + std::to_string(holder.process);
}

} // namespace tavro::host
