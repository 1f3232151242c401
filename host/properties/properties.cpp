// System properties from the environment and from a file, which may change while the process runs.
#include "common/file_error.h"
#include "common/open_file.h"
#include "common/path_watch.h"
#include "common/paths.h"
#include "common/report.h"

#include <cutils/properties.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <exception>
#include <functional>
#include <map>
#include <mutex>
#include <pthread.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

using Properties = std::map<std::string, std::string, std::less<>>;

// Two changes within one tick of the file system's clock get the same time stamp. So a file that was read less than
// this long after its last change is read again next time. In nanoseconds; the coarsest clock is vfat's, 2 seconds.
constexpr std::int64_t kSettled = 3'000'000'000;

// Limits of the file, so that a wrong path costs little time and memory.
constexpr std::size_t kMostBytes = 1'048'576;
constexpr std::size_t kMostLineBytes = 4096;

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

// Identifies one state of the file.
struct FileState {
    std::string path;
    int error = 0; // an errno value when there is nothing to read
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0; // ctime, which programs cannot set back

    bool operator==(const FileState& other) const {
        return path == other.path && error == other.error && device == other.device && inode == other.inode &&
               size == other.size && modified == other.modified && changed == other.changed;
    }
};

FileState state_of(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        return {path, errno};
    }
    return {path, 0, found.st_dev, found.st_ino, found.st_size, nanoseconds(found.st_mtim), nanoseconds(found.st_ctim)};
}

std::string_view trimmed(std::string_view text) {
    const char* const blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Reads a file, at most up to its first byte beyond kMostBytes. Returns 0, or an errno value or kNotRegular; then
// nothing is read.
int read_file(const std::string& path, std::string& content) {
    int error = 0;
    const tavro::host::File file = tavro::host::open_regular_file(path, error);
    std::array<char, 4096> buffer;
    for (std::size_t bytes = buffer.size(); error == 0 && bytes == buffer.size() && content.size() <= kMostBytes;) {
        error = tavro::host::read_all(file, buffer.data(), bytes);
        content.append(buffer.data(), bytes);
    }
    if (error != 0) {
        content.clear();
    }
    return error;
}

void report_unread(const std::string& path, const std::string& cause) {
    tavro::host::report_once("cannot read the properties file " + path + ": " + cause);
}

// Takes the property from a `name=value` line. Blank lines and lines that begin with # are ignored.
void take_line(std::string_view line, Properties& properties) {
    const std::size_t sign = line.find('=');
    const std::string_view name = trimmed(line.substr(0, sign));
    if (sign != std::string_view::npos && !name.empty() && name[0] != '#') {
        properties[std::string(name)] = trimmed(line.substr(sign + 1)).substr(0, PROPERTY_VALUE_MAX - 1);
    }
}

// Reads the properties file. Reports a missing file only if TAVRO_PROPERTIES names it.
Properties read_properties(const std::string& path, bool named) {
    Properties properties;
    std::string content;
    const std::string other_file = "set TAVRO_PROPERTIES to another file";
    if (tavro::host::is_storage_file(path)) {
        report_unread(path, "it belongs to the storage; " + other_file);
        return properties;
    }
    const int error = read_file(path, content);
    if (error == tavro::host::kNotRegular) {
        report_unread(path, "not a regular file; " + other_file);
    } else if (error != 0 && (named || error != ENOENT)) {
        report_unread(path, tavro::host::explain(error, other_file));
    } else if (content.size() > kMostBytes) {
        report_unread(path, "larger than " + std::to_string(kMostBytes) + " bytes; remove lines, or " + other_file);
        return properties;
    }
    std::string_view rest = content;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        if (line.size() <= kMostLineBytes) {
            take_line(line, properties);
        } else {
            report_unread(path, "line " + std::to_string(number) + " is longer than " + std::to_string(kMostLineBytes) +
                                    " bytes; shorten it");
        }
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return properties;
}

// The environment variables that matter here, collected in one pass. Null if not set.
struct Environment {
    const char* value = nullptr; // of the requested property
    const char* properties = nullptr;
    const char* tavro_home = nullptr;
    const char* state_home = nullptr;
    const char* home = nullptr;
};

bool is_letter_or_digit(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
}

// Returns the text after the prefix `start`, or null if `text` does not start with it.
const char* after(const char* text, std::string_view start) {
    return std::strncmp(text, start.data(), start.size()) == 0 ? text + start.size() : nullptr;
}

// Returns the text after "NAME=", or null if `text` does not start with it. In `text`, each character of the name that
// is not a letter or digit is "_".
const char* after_property(const char* text, const char* name) {
    for (; *name != '\0'; ++name, ++text) {
        if (*text != (is_letter_or_digit(*name) ? *name : '_')) {
            return nullptr;
        }
    }
    return after(text, "=");
}

void take_first(const char*& place, const char* value) {
    if (place == nullptr) {
        place = value;
    }
}

void take_tavro_variable(Environment& found, const char* variable, const char* property) {
    if (const char* const named = after(variable, "TAVRO_PROP_")) {
        take_first(found.value, after_property(named, property));
    } else {
        take_first(found.properties, after(variable, "TAVRO_PROPERTIES="));
        take_first(found.tavro_home, after(variable, "TAVRO_HOME="));
    }
}

Environment read_environment(const char* property) {
    Environment found;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        switch (**entry) {
        case 'T':
            take_tavro_variable(found, *entry, property);
            break;
        case 'X':
            take_first(found.state_home, after(*entry, "XDG_STATE_HOME="));
            break;
        case 'H':
            take_first(found.home, after(*entry, "HOME="));
            break;
        default:
            break;
        }
    }
    return found;
}

bool is_set(const char* value) { return value != nullptr && *value != '\0'; }

// Path of the properties file, recomputed when the variables that determine it change.
class FilePath {
public:
    // Updates the path. Returns true if it was recomputed.
    bool update(const Environment& environment) {
        const bool named = is_set(environment.properties);
        const std::array<const char*, 4> sources = {environment.properties, environment.tavro_home,
                                                    environment.state_home, environment.home};
        const bool same = std::equal(sources.begin(), sources.end(), sources_.begin(),
                                     [](const char* now, const std::string& before) {
                                         return std::strcmp(before.c_str(), now == nullptr ? "" : now) == 0;
                                     });
        if (same && settled_) {
            return false;
        }
        settled_ = false; // until all members are set: memory may run out
        path_ = named ? environment.properties : tavro::host::home_directory() + "/properties";
        std::transform(sources.begin(), sources.end(), sources_.begin(),
                       [](const char* source) { return source == nullptr ? "" : source; });
        named_ = named;
        const auto deciding = std::find_if(sources.begin(), sources.end(), is_set);
        settled_ = named ||
                   (deciding != sources.end() && **deciding == '/'); // a relative path depends on the current directory
        return true;
    }

    const std::string& path() const { return path_; }
    // True if TAVRO_PROPERTIES names the file.
    bool named() const { return named_; }

private:
    std::array<std::string, 4> sources_;
    std::string path_;
    bool named_ = false;
    bool settled_ = false;
};

// The properties as last read from the file.
class PropertiesFile {
public:
    PropertiesFile() { ::pthread_atfork(before_fork, after_fork, in_child); }

    // Copies a property's value, truncated if necessary. Returns its length, or 0 if it is not set.
    std::size_t find(const Environment& environment, const char* name, char* value) {
        std::lock_guard<std::mutex> lock(mutex_);
        try {
            refresh(environment);
        } catch (...) {
            start_over();
            throw;
        }
        const auto found = properties_.find(std::string_view(name));
        return found == properties_.end() ? 0 : copy(found->second, value);
    }

    static std::size_t copy(std::string_view text, char* value) {
        const std::size_t length = std::min<std::size_t>(text.size(), PROPERTY_VALUE_MAX - 1);
        std::memcpy(value, text.data(), length);
        value[length] = '\0';
        return length;
    }

    static PropertiesFile& instance() {
        static PropertiesFile& file = *new PropertiesFile; // never destroyed: logging reads properties until exit
        return file;
    }

private:
    // A forked child must not share the watch: each event would reach only one of the two processes.
    static void before_fork() { instance().mutex_.lock(); }
    static void after_fork() { instance().mutex_.unlock(); }
    static void in_child() {
        instance().start_over();
        instance().mutex_.unlock();
    }

    void start_over() {
        watch_.stop();
        watch_again_ = true;
        settled_ = false;
    }

    void refresh(const Environment& environment) {
        const bool moved = path_.update(environment);
        if (!moved && watch_.works() && !watch_.changed()) {
            return;
        }
        if (moved || watch_.works() || watch_again_) {
            settled_ = false;
            watch_.watch(path_.path()); // before examining the file, so that no change is missed
        }
        FileState state = state_of(path_.path());
        watch_again_ = !watch_.works() && !(state == state_); // the new file may be watchable
        if (settled_ && state == state_) {
            return;
        }
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        properties_ = read_properties(path_.path(), path_.named());
        settled_ = nanoseconds(now) - std::max(state.modified, state.changed) > kSettled;
        state_ = std::move(state);
    }

    std::mutex mutex_;
    FilePath path_;
    tavro::host::PathWatch watch_;
    FileState state_; // detects changes if the watch does not work
    bool settled_ = false;
    bool watch_again_ = false;
    Properties properties_;
};

} // namespace

extern "C" int property_get(const char* key, char* value, const char* default_value) {
    const Environment environment = read_environment(key);
    std::size_t length = 0;
    try {
        length = environment.value != nullptr ? PropertiesFile::copy(environment.value, value)
                                              : PropertiesFile::instance().find(environment, key, value);
    } catch (const std::exception&) {
        // Out of memory. The property counts as not set.
    }
    // As on the TV, an empty property counts as not set.
    return static_cast<int>(length != 0 ? length
                                        : PropertiesFile::copy(default_value == nullptr ? "" : default_value, value));
}
