// The log on standard error, or at the end of the file that TAVRO_LOG_FILE names, in logcat's brief
// form: `D/SomeTag ( 4711): text`. The tag fills at least 8 places, the process id at least 5; a null
// tag is an empty one. The file gets every byte; standard error gets dots for control characters.
#include "common/file_error.h"
#include "common/report.h"
#include "format.h"
#include "printable.h"

#include <android/log.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace {

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

// Every line of `text` behind `prefix`. The newline at the end of most texts makes no line of its own.
std::string lines_of(const std::string& prefix, std::string_view text) {
    std::string lines;
    lines.reserve(prefix.size() + text.size() + 1); // of the one line that most texts are
    do {
        const std::size_t end = text.find('\n');
        lines.append(prefix).append(text.substr(0, end)).append("\n");
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    } while (!text.empty());
    return lines;
}

// One write, unless the system takes less, so that lines of several threads and processes do not mix. Returns 0
// or an errno value.
int write_whole(int file, std::string_view lines) {
    while (!lines.empty()) {
        const ssize_t written = ::write(file, lines.data(), lines.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        lines.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return 0;
}

int write_to_file(const char* path, const std::string& lines) {
    const int file = ::open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, kLogFileMode);
    if (file < 0) {
        return errno;
    }
    const int error = write_whole(file, lines);
    ::close(file);
    return error;
}

// Whether the lines went to the file that TAVRO_LOG_FILE names. It is opened for every line, so that it may be
// moved away while the process runs.
bool written_to_file(const std::string& lines) {
    const char* const path = std::getenv("TAVRO_LOG_FILE");
    if (path == nullptr || *path == '\0') {
        return false;
    }
    const int error = write_to_file(path, lines);
    if (error != 0) {
        // Comes back here as a line of its own, and is not reported again.
        tavro::host::report_once(std::string("cannot write the log file ") + path + ": " +
                                 tavro::host::explain(error, "set TAVRO_LOG_FILE to another file") +
                                 "; until then lines go to standard error");
    }
    return error == 0;
}

// A log file that cannot be written is reported when the library is loaded, whether or not anything is logged.
__attribute__((constructor)) void check_log_file() { written_to_file(""); }

} // namespace

// Returns 1, or a negative errno value when the line could be written nowhere.
extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...) {
    const int callers_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    const std::string text = format_text(format, arguments);
    va_end(arguments);
    std::string lines = lines_of(prefix_of(priority, tag), text);
    const int error = written_to_file(lines) ? 0 : write_whole(STDERR_FILENO, printable(std::move(lines)));
    errno = callers_errno;
    return error == 0 ? 1 : -error;
}
