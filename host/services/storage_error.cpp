#include "storage_error.h"

#include "common/file_error.h"
#include "status.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace tavro::host {
namespace {

constexpr char kOtherDirectory[] = "use another storage directory";
constexpr char kOtherHome[] = "set TAVRO_HOME to another directory";

// SQLite lets its files grow by up to this much at once.
constexpr std::uint64_t kGrowth = std::uint64_t{64} * 1024;

// The path that makes SQLite fail, and an errno value: 0 if no cause was found.
struct Obstacle {
    std::string path;
    int error = 0;
};

// Checks that the file can be used in that way (R_OK, W_OK). Returns an errno value, or 0 if it can or does not exist.
int file_error(const std::string& path, int use) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0) {
        return 0;
    }
    if (S_ISDIR(found.st_mode)) {
        return EISDIR;
    }
    return ::access(path.c_str(), use) == 0 ? 0 : errno;
}

bool has_space(const std::string& directory) {
    struct statvfs found {};
    if (::statvfs(directory.c_str(), &found) != 0) {
        return true;
    }
    const bool counts_files = found.f_files != 0;
    return std::uint64_t{found.f_bavail} * found.f_frsize >= kGrowth && !(counts_files && found.f_favail == 0);
}

// The first file of the database that exists but cannot be used in that way.
Obstacle find_refused_file(const std::string& database, int use) {
    for (const char* suffix : {"", "-wal", "-shm"}) {
        const std::string file = database + suffix;
        const int refused = file_error(file, use);
        if (refused != 0) {
            return {file, refused};
        }
    }
    return {};
}

// Examines the files, because SQLite's codes do not show the cause: it opens unwritable files read-only and fails
// later, and the errno that it records may be from its cleanup.
Obstacle find_obstacle(const SqlError& error) {
    if (error.code() == SQLITE_FULL || is_disk_full(error.system_error())) {
        return {error.path(), ENOSPC};
    }
    Obstacle refused = find_refused_file(error.path(), R_OK | W_OK);
    if (refused.error != 0) {
        return refused;
    }
    const std::string directory = std::filesystem::path(error.path()).parent_path();
    const std::string place = directory.empty() ? "." : directory;
    if (::access(place.c_str(), W_OK | X_OK) != 0) {
        return {place, errno};
    }
    return {error.path(), has_space(place) ? 0 : ENOSPC};
}

// True if the cause may be the file system rather than the content of the database.
bool concerns_files(int code) {
    switch (code) {
    case SQLITE_FULL:
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return true;
    default:
        return false;
    }
}

Obstacle obstacle_of(const SqlError& error) {
    const Obstacle found = concerns_files(error.code()) ? find_obstacle(error) : Obstacle{error.path(), 0};
    // Some space may be free again, or too little for the change.
    return found.error == 0 && error.code() == SQLITE_FULL ? Obstacle{error.path(), ENOSPC} : found;
}

const char* remedy(int sqlite_code) {
    switch (sqlite_code) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
    case SQLITE_ERROR: // a table or column is missing
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
        return "move the file away to start without lists, or set TAVRO_HOME to another directory";
    case SQLITE_BUSY:
        return "another process has been writing to it for too long; end that process";
    default:
        return "check the owner and permissions of the directory and its files, or set TAVRO_HOME to another directory";
    }
}

// SQLite's message, followed by the system's if there is one.
std::string cause(const SqlError& error) {
    if (error.code() == SQLITE_CORRUPT) {
        return std::string("the file is damaged (") + error.what() + ")";
    }
    const int system_error = error.system_error();
    return error.what() + (system_error == 0 ? "" : std::string(" (") + std::strerror(system_error) + ")");
}

const char* read_remedy(int sqlite_code) {
    switch (sqlite_code) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
    case SQLITE_ERROR: // a table or column is missing
        return "move the file away to start without lists, or use another storage directory";
    case SQLITE_BUSY:
        return "another process has been writing to it for too long; end that process";
    case SQLITE_READONLY:
        return "a process ended while it changed lists; run a command that changes lists";
    default:
        return "check the owner and permissions of the directory and its files, or use another storage directory";
    }
}

MwStatus status_of(int error, MwStatus otherwise) { return is_disk_full(error) ? kHostStorageFull : otherwise; }

} // namespace

Failure storage_failure(const std::string& action, const std::string& path, int error) {
    return {status_of(error, kHostStorageUnavailable),
            "cannot " + action + " " + path + ": " + explain(error, kOtherHome)};
}

Failure storage_failure(const SqlError& error) {
    const Obstacle obstacle = obstacle_of(error);
    if (obstacle.error != 0) {
        return storage_failure("use", obstacle.path, obstacle.error);
    }
    return {kHostStorageUnavailable,
            "cannot use the list database " + error.path() + ": " + cause(error) + "; " + remedy(error.code())};
}

Failure read_failure(const std::string& path, int error) {
    return {kHostStorageUnavailable, "cannot read the list database " + path + ": " + explain(error, kOtherDirectory)};
}

Failure read_failure(const SqlError& error) {
    const Obstacle obstacle = concerns_files(error.code()) ? find_refused_file(error.path(), R_OK) : Obstacle{};
    if (obstacle.error != 0) {
        return read_failure(obstacle.path, obstacle.error);
    }
    return {kHostStorageUnavailable,
            "cannot read the list database " + error.path() + ": " + cause(error) + "; " + read_remedy(error.code())};
}

} // namespace tavro::host
