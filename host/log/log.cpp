// Writes the log to standard error, or appends it to the file named by TAVRO_LOG_FILE, in logcat's brief format:
// `D/SomeTag ( 4711): text`. The tag is padded to 8 characters and the process id to 5; a null tag is empty. The file
// gets the exact bytes; on standard error, control characters are shown as dots.
#include "common/file_error.h"
#include "common/open_file.h"
#include "common/paths.h"
#include "common/report.h"
#include "format.h"
#include "printable.h"

#include <android/log.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

using tavro::host::File;

constexpr std::string_view kPriorityLetters = "??VDIWEFS"; // by priority, from 0
constexpr std::size_t kTagPlaces = 8;
constexpr std::size_t kProcessPlaces = 5;
constexpr mode_t kLogFileMode = 0644;

std::string prefix_of(int priority, const char* tag) {
    const bool known = priority >= 0 && static_cast<std::size_t>(priority) < kPriorityLetters.size();
    const std::string_view name = tag == nullptr ? "" : tag;
    const std::string process = std::to_string(::getpid());
    std::string prefix(1, known ? kPriorityLetters[static_cast<std::size_t>(priority)] : '?');
    prefix.append("/").append(name).append(name.size() < kTagPlaces ? kTagPlaces - name.size() : 0, ' ').append("(");
    prefix.append(process.size() < kProcessPlaces ? kProcessPlaces - process.size() : 0, ' ').append(process);
    return prefix.append("): ");
}

// Puts `prefix` before every line of `text`. A newline at the end does not add an empty line.
std::string lines_of(const std::string& prefix, std::string_view text) {
    std::string lines;
    lines.reserve(prefix.size() + text.size() + 1); // most texts are a single line
    do {
        const std::size_t end = text.find('\n');
        lines.append(prefix).append(text.substr(0, end)).append("\n");
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    } while (!text.empty());
    return lines;
}

// Usually in one call, so that lines of other threads and processes do not mix in. Returns 0 or an errno value.
int write(int descriptor, const std::string& lines) {
    return tavro::host::write_all(descriptor, lines.data(), lines.size());
}

// While it exists, a write to a FIFO whose reader has gone fails, and does not end the process.
class BlockedPipeSignal {
public:
    BlockedPipeSignal() {
        sigset_t pending;
        ::sigpending(&pending);
        was_pending_ = ::sigismember(&pending, SIGPIPE) == 1;
        ::sigemptyset(&signal_);
        ::sigaddset(&signal_, SIGPIPE);
        ::pthread_sigmask(SIG_BLOCK, &signal_, &before_);
    }
    ~BlockedPipeSignal() {
        const timespec no_time{};
        if (!was_pending_) {
            ::sigtimedwait(&signal_, nullptr, &no_time); // discards the signal of the write
        }
        ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    BlockedPipeSignal(const BlockedPipeSignal&) = delete;
    BlockedPipeSignal& operator=(const BlockedPipeSignal&) = delete;

private:
    sigset_t signal_{};
    sigset_t before_{};
    bool was_pending_ = false;
};

// Does not wait until a FIFO has a reader. A full FIFO does wait for its reader, so that no line is cut.
int write_to_file(const char* path, const std::string& lines) {
    const File file(tavro::host::open_file(path, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY, kLogFileMode));
    if (!file.is_open()) {
        return errno;
    }
    struct stat found {};
    if (::fstat(file.descriptor(), &found) == 0 && S_ISREG(found.st_mode)) {
        return write(file.descriptor(), lines);
    }
    ::fcntl(file.descriptor(), F_SETFL, O_APPEND); // no longer O_NONBLOCK
    const BlockedPipeSignal blocked;
    return write(file.descriptor(), lines);
}

// True if the path leads to a file of the storage. Remembers the last file that is none, because finding out takes
// seven system calls.
bool is_refused(const char* path) {
    static std::mutex& mutex = *new std::mutex; // never destroyed, because lines may be logged during process exit
    static std::string& known_path = *new std::string;
    static struct stat known {};
    const std::unique_lock<std::mutex> lock(mutex, std::try_to_lock); // never waits: a fork may leave it locked
    struct stat found {};
    const bool exists = ::stat(path, &found) == 0;
    if (lock && exists && known_path == path && known.st_dev == found.st_dev && known.st_ino == found.st_ino) {
        return false;
    }
    if (tavro::host::is_storage_file(path)) {
        return true;
    }
    if (lock && exists) {
        known_path = path;
        known = found;
    }
    return false;
}

// Appends the lines to the file named by TAVRO_LOG_FILE. Returns false if the variable is not set or the write failed.
// Opens the file for every line, so that it can be moved away while the process runs.
bool written_to_file(const std::string& lines) {
    const char* const path = std::getenv("TAVRO_LOG_FILE");
    if (path == nullptr || *path == '\0') {
        return false;
    }
    const std::string other_file = "set TAVRO_LOG_FILE to another file";
    std::string cause = "it belongs to the storage; " + other_file;
    if (!is_refused(path)) {
        const int error = write_to_file(path, lines);
        if (error == 0) {
            return true;
        }
        cause = tavro::host::explain(error, other_file);
    }
    // The report itself is logged through this function; report_once ends the recursion.
    tavro::host::report_once(std::string("cannot write the log file ") + path + ": " + cause +
                             "; until then, log lines go to standard error");
    return false;
}

// Every stand-in loads this library, so this is done before any of them opens a file. Reports an unwritable log file
// even if nothing is logged.
__attribute__((constructor)) void prepare_process() {
    tavro::host::fill_standard_descriptors();
    try {
        written_to_file("");
    } catch (const std::exception&) {
        // Out of memory. The first line reports the file.
    }
}

// Writes the text to the log file or to standard error. Returns 0 or an errno value.
int write_text(int priority, const char* tag, const char* format, va_list arguments) {
    std::string lines = lines_of(prefix_of(priority, tag), format_text(format, arguments));
    return written_to_file(lines) ? 0 : write(STDERR_FILENO, printable(std::move(lines)));
}

// The same. Without memory, the text is lost.
int try_to_write(int priority, const char* tag, const char* format, va_list arguments) noexcept {
    try {
        return write_text(priority, tag, format, arguments);
    } catch (const std::exception&) {
        return ENOMEM;
    }
}

} // namespace

// Returns 1, or a negative errno value if the line could not be written at all.
extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...) {
    const int callers_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    const int error = try_to_write(priority, tag, format, arguments);
    va_end(arguments);
    errno = callers_errno;
    return error == 0 ? 1 : -error;
}
