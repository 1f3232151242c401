#include "trace/output.h"

#include "trace/settings.h"
#include "trace/text.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace tavro::trace {
namespace {

constexpr std::string_view kStart = "{\"traceEvents\":[\n";
constexpr std::string_view kEnd = "\n]}\n";
constexpr int kFirstDescriptor = 3; // the first three may be closed, and are not ours
constexpr mode_t kMode = 0644;

void write_all(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return; // nowhere to report it
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
}

// Locks a file against other processes, from byte 0 to its end.
class FileLock {
public:
    explicit FileLock(int descriptor) : descriptor_(descriptor) { set(F_WRLCK); }
    ~FileLock() { set(F_UNLCK); }
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

private:
    void set(short type) const {
        struct flock lock {};
        lock.l_type = type;
        while (::fcntl(descriptor_, F_SETLKW, &lock) != 0 && errno == EINTR) {
        }
    }
    int descriptor_;
};

// Whether a file can take JSON events: it is empty, or ends as a trace does.
bool takes_events(int descriptor, off_t size) {
    std::array<char, kEnd.size()> end{};
    const auto length = static_cast<off_t>(end.size());
    return size == 0 || (size >= length && ::pread(descriptor, end.data(), end.size(), size - length) == length &&
                         std::string_view(end.data(), end.size()) == kEnd);
}

} // namespace

bool Output::open_file(const std::string& path) {
    const int first =
        ::open(path.c_str(), (settings().json ? O_RDWR : O_WRONLY | O_APPEND) | O_CREAT | O_CLOEXEC | O_NOCTTY, kMode);
    if (first < 0) {
        problem_ = std::string("cannot open the file: ") + std::strerror(errno);
        return false;
    }
    const int descriptor = ::fcntl(first, F_DUPFD_CLOEXEC, kFirstDescriptor);
    ::close(first);
    struct stat found {};
    if (descriptor < 0 || ::fstat(descriptor, &found) != 0) {
        problem_ = std::string("cannot open the file: ") + std::strerror(errno);
        return false;
    }
    regular_ = S_ISREG(found.st_mode);
    if (settings().json && regular_ && !takes_events(descriptor, found.st_size)) {
        problem_ = "the file is not empty, and not a trace in JSON";
        ::close(descriptor);
        return false;
    }
    descriptor_ = descriptor;
    return true;
}

void Output::open() {
    if (descriptor_ >= 0) {
        return;
    }
    const std::string& path = settings().file;
    if (path.empty()) {
        descriptor_ = STDERR_FILENO;
    } else if (!open_file(path)) {
        problem_ = "TAVRO_TRACE is " + quoted(path) + ": " + problem_ + "; using standard error";
        descriptor_ = STDERR_FILENO;
        regular_ = false;
    }
}

void Output::line(const std::string& text) {
    open();
    write_all(descriptor_, text + '\n');
}

void Output::replace_end(const std::string& json) {
    const FileLock lock(descriptor_);
    struct stat found {};
    if (::fstat(descriptor_, &found) != 0) {
        return;
    }
    const auto end = static_cast<off_t>(kEnd.size());
    const off_t size = found.st_size >= end ? found.st_size - end : 0;
    const std::string text = (size == 0 ? std::string(kStart) : ",\n") + json + std::string(kEnd);
    if (::pwrite(descriptor_, text.data(), text.size(), size) < 0) {
        return; // nowhere to report it
    }
}

void Output::event(const std::string& json) {
    open();
    if (regular_) {
        replace_end(json);
    } else {
        write_all(descriptor_, (empty_ ? std::string(kStart) : ",\n") + json);
        empty_ = false;
    }
}

void Output::end() {
    if (!regular_ && !empty_) {
        write_all(descriptor_, kEnd);
        empty_ = true;
    }
}

} // namespace tavro::trace
