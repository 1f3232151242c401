#include "paths.h"

#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace fs = std::filesystem;

namespace tavro::host {
namespace {

// TV directories that the broadcast stack uses.
constexpr const char* kPlatformDirectories[] = {"/cache", "/data", "/3rd", "/mnt/vendor"};

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool is_below(const std::string& path, const std::string& directory) {
    return path == directory || path.compare(0, directory.size() + 1, directory + "/") == 0;
}

// Files of the storage directory that its processes have open and locked. SQLite makes three of them when needed.
constexpr const char* kStorageFiles[] = {"lists.db",         "lists.db-wal", "lists.db-shm",
                                         "lists.db-journal", "locks",        "changes.lock"};

constexpr int kMostLinks = 40; // as in the kernel

bool is_same_file(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool is_same_file(const struct stat& one, const std::string& path) {
    struct stat other {};
    return ::stat(path.c_str(), &other) == 0 && is_same_file(one, other);
}

// Follows symbolic links, also to a file that does not exist.
fs::path follow_links(fs::path path) {
    std::error_code error;
    for (int links = 0; links < kMostLinks; ++links) {
        const fs::path target = fs::read_symlink(path, error);
        if (error) {
            break;
        }
        path = path.parent_path() / target;
    }
    return path;
}

} // namespace

std::string home_directory() {
    std::string home = variable("TAVRO_HOME");
    if (home.empty()) {
        const std::string state = variable("XDG_STATE_HOME");
        home = state.empty() ? variable("HOME") + "/.local/state/tavro" : state + "/tavro";
    }
    std::error_code ignored;
    std::string absolute = fs::absolute(home, ignored).lexically_normal().string();
    if (absolute.size() > 1 && absolute.back() == '/') {
        absolute.pop_back();
    }
    return absolute;
}

bool is_platform_path(const char* path) {
    const std::string normal = fs::path(path).lexically_normal().string();
    if (is_below(normal, home_directory())) {
        return false; // a storage directory may itself be below /data
    }
    for (const char* directory : kPlatformDirectories) {
        if (is_below(normal, directory)) {
            return true;
        }
    }
    return false;
}

std::string resolve_path(const char* path) {
    return is_platform_path(path) ? home_directory() + fs::path(path).lexically_normal().string() : path;
}

bool make_parents(const std::string& resolved) {
    std::error_code error;
    fs::create_directories(fs::path(resolved).parent_path(), error);
    return !error;
}

bool is_storage_file(const std::string& path) {
    const std::string home = home_directory();
    struct stat found {};
    const bool exists = ::stat(path.c_str(), &found) == 0;
    const fs::path target = exists ? fs::path() : follow_links(path);
    for (const char* name : kStorageFiles) {
        if (exists && is_same_file(found, home + "/" + name)) {
            return true;
        }
        if (!exists && target.filename() == name) {
            const std::string directory = target.parent_path().string();
            return ::stat(directory.empty() ? "." : directory.c_str(), &found) == 0 && is_same_file(found, home);
        }
    }
    return false;
}

} // namespace tavro::host
