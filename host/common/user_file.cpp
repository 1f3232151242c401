#include "user_file.h"

#include "file_error.h"
#include "open_file.h"
#include "paths.h"
#include "services/status.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

namespace fs = std::filesystem;

namespace tavro::host {
namespace {

constexpr char kAlternative[] = "choose another path";

// Files of the storage directory that its processes have open and locked. SQLite makes three of them when needed.
constexpr const char* kStorageFiles[] = {"lists.db",         "lists.db-wal", "lists.db-shm",
                                         "lists.db-journal", "locks",        "import.lock"};

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

Failure refused(MwStatus status, const std::string& action, const std::string& path, const std::string& cause) {
    return {status, "cannot " + action + " " + path + ": " + cause + "; " + kAlternative};
}

// Throws Failure unless `error`, of find_regular_file, is 0.
void check_regular(int error, MwStatus status, const std::string& action, const std::string& path) {
    if (error == kNotRegular) {
        throw refused(status, action, path, "it is not a regular file");
    }
    if (error != 0) {
        throw file_failure(status, action, path, error);
    }
}

} // namespace

Failure file_failure(MwStatus status, const std::string& action, const std::string& path, int error) {
    return {is_disk_full(error) ? kHostStorageFull : status,
            "cannot " + action + " " + path + ": " + explain(error, kAlternative)};
}

void refuse_storage_file(MwStatus status, const std::string& action, const std::string& path) {
    if (is_storage_file(path)) {
        throw refused(status, action, path, "it belongs to the storage");
    }
}

void refuse_special_file(MwStatus status, const std::string& action, const std::string& path) {
    refuse_storage_file(status, action, path);
    const int error = find_regular_file(path);
    if (error == EISDIR || error == kNotRegular) {
        check_regular(error, status, action, path);
    }
}

File open_to_read(const std::string& action, const std::string& path, std::uint64_t& size) {
    refuse_storage_file(kHostCannotReadFile, action, path);
    int error = 0;
    File file = open_regular_file(path, error);
    if (error == ENOENT) {
        return file;
    }
    struct stat found {};
    if (error == 0 && ::fstat(file.descriptor(), &found) != 0) {
        error = errno;
    }
    check_regular(error, kHostCannotReadFile, action, path);
    size = static_cast<std::uint64_t>(found.st_size);
    return file;
}

} // namespace tavro::host
