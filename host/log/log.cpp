// The log on standard error, or at the end of the file that TAVRO_LOG_FILE names, in logcat's brief
// form: `D/SomeTag ( 4711): text`. The tag fills at least 8 places, the process id at least 5; a null
// tag is an empty one.
#include "format.h"

#include <android/log.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::string_view kPriorityLetters = "??VDIWEFS"; // by priority, from 0
constexpr mode_t kLogFileMode = 0644;

std::string prefix_of(int priority, const char* tag) {
    const bool known = priority >= 0 && static_cast<std::size_t>(priority) < kPriorityLetters.size();
    const char letter = known ? kPriorityLetters[static_cast<std::size_t>(priority)] : '?';
    std::string padded_tag = tag == nullptr ? "" : tag;
    padded_tag.resize(padded_tag.size() < 8 ? 8 : padded_tag.size(), ' ');
    std::string process = std::to_string(::getpid());
    process.insert(0, process.size() < 5 ? 5 - process.size() : 0, ' ');
    return std::string(1, letter) + "/" + padded_tag + "(" + process + "): ";
}

// Every line of `text` behind `prefix`. The newline at the end of most texts makes no line of its own.
std::string lines_of(const std::string& prefix, std::string_view text) {
    std::string lines;
    do {
        const std::size_t end = text.find('\n');
        lines.append(prefix).append(text.substr(0, end)).append("\n");
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    } while (!text.empty());
    return lines;
}

// One write, so that lines of several threads and processes do not mix. Returns 0 or an errno value.
int write_whole(int file, const std::string& lines) {
    const ssize_t written = ::write(file, lines.data(), lines.size());
    return written < 0 ? errno : 0;
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

} // namespace

// Returns 1, or a negative errno value when the line could be written nowhere.
extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...) {
    const int callers_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    const std::string text = format_text(format, arguments);
    va_end(arguments);
    const std::string lines = lines_of(prefix_of(priority, tag), text);
    const char* const path = std::getenv("TAVRO_LOG_FILE");
    int error = 0;
    // The file is opened for every line, so that it may be moved away while the process runs.
    if (path == nullptr || *path == '\0' || write_to_file(path, lines) != 0) {
        error = write_whole(STDERR_FILENO, lines);
    }
    errno = callers_errno;
    return error == 0 ? 1 : -error;
}
