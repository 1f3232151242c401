// System properties from the environment and from a file that may change while the process runs.
#include "common/file_error.h"
#include "common/paths.h"
#include "common/report.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace {

using Properties = std::map<std::string, std::string>;

// Two changes of a file within one tick of the file system's clock leave the same time stamp. What was
// read this soon after a change (in nanoseconds, well above any such tick) is read again next time.
constexpr std::int64_t kSettled = 50'000'000;

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

// What tells one state of the file from the next.
struct FileState {
    std::string path;
    int error = 0; // an errno value when there is nothing to read
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;

    bool operator==(const FileState& other) const {
        return path == other.path && error == other.error && inode == other.inode && size == other.size &&
               modified == other.modified;
    }
};

FileState state_of(const std::string& path) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        return {path, errno};
    }
    return {path, S_ISDIR(found.st_mode) ? EISDIR : 0, found.st_ino, found.st_size, nanoseconds(found.st_mtim)};
}

std::string trimmed(const std::string& text) {
    const char* const blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The `name=value` lines of the file; blank lines and those that begin with # are left out.
// A file that is not there is reported when the engineer has named it.
Properties read_properties(const FileState& state, bool named) {
    Properties properties;
    std::ifstream file(state.path);
    const int error = state.error != 0 || file ? state.error : errno;
    if (error != 0 && (named || error != ENOENT)) {
        tavro::host::report_once("cannot read the properties file " + state.path + ": " +
                                 tavro::host::explain(error, "name another file in TAVRO_PROPERTIES"));
    }
    for (std::string line; std::getline(file, line);) {
        const std::size_t sign = line.find('=');
        const std::string name = trimmed(line.substr(0, sign));
        if (sign != std::string::npos && !name.empty() && name[0] != '#') {
            properties[name] = trimmed(line.substr(sign + 1));
        }
    }
    return properties;
}

// The file as it was last read.
class PropertiesFile {
public:
    std::optional<std::string> find(const std::string& name) {
        std::lock_guard<std::mutex> lock(mutex_);
        refresh();
        const auto found = properties_.find(name);
        return found == properties_.end() ? std::nullopt : std::optional<std::string>(found->second);
    }

private:
    void refresh() {
        const char* const path = std::getenv("TAVRO_PROPERTIES");
        const bool named = path != nullptr && *path != '\0';
        FileState state = state_of(named ? path : tavro::host::home_directory() + "/properties");
        if (settled_ && state == state_) {
            return;
        }
        timespec now{};
        ::clock_gettime(CLOCK_REALTIME, &now);
        properties_ = read_properties(state, named);
        settled_ = nanoseconds(now) - state.modified > kSettled;
        state_ = std::move(state);
    }

    std::mutex mutex_;
    FileState state_;
    bool settled_ = false;
    Properties properties_;
};

// The environment's word for a property: TAVRO_PROP_ and the name, with _ for what is no letter or digit.
std::optional<std::string> from_environment(const std::string& name) {
    std::string variable = "TAVRO_PROP_" + name;
    for (char& letter : variable) {
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) {
            letter = '_';
        }
    }
    const char* const value = std::getenv(variable.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> from_file(const std::string& name) {
    static PropertiesFile& file = *new PropertiesFile; // never destroyed: log lines ask until the very end
    return file.find(name);
}

} // namespace

extern "C" int property_get(const char* key, char* value, const char* default_value) {
    std::optional<std::string> found = from_environment(key);
    if (!found) {
        found = from_file(key);
    }
    // As on the TV, a property that is set to nothing counts as not set.
    if (!found || found->empty()) {
        found = default_value == nullptr ? "" : default_value;
    }
    const std::size_t length = std::min<std::size_t>(found->size(), PROPERTY_VALUE_MAX - 1);
    std::memcpy(value, found->data(), length);
    value[length] = '\0';
    return static_cast<int>(length);
}
