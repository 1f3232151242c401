#include "user_file.h"

#include "file_error.h"
#include "open_file.h"
#include "paths.h"
#include "services/status.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

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

// Throws Failure unless the file is a regular one.
void check_regular(const struct stat& found, MwStatus status, const std::string& action, const std::string& path) {
    if (S_ISDIR(found.st_mode)) {
        throw file_failure(status, action, path, EISDIR);
    }
    if (!S_ISREG(found.st_mode)) {
        throw refused(status, action, path, "it is not a regular file");
    }
}

} // namespace

File::~File() {
    if (is_open()) {
        ::close(descriptor_);
    }
}

File& File::operator=(File&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

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
    struct stat found {};
    if (::stat(path.c_str(), &found) == 0) {
        check_regular(found, status, action, path);
    }
}

File open_to_read(const std::string& action, const std::string& path, std::uint64_t& size) {
    refuse_special_file(kHostCannotReadFile, action, path);
    // O_NONBLOCK: by now the path may lead to another file, and a FIFO would wait for a writer.
    File file(open_file(path.c_str(), O_RDONLY | O_NONBLOCK));
    struct stat found {};
    if (file.is_open() ? ::fstat(file.descriptor(), &found) != 0 : errno != ENOENT) {
        throw file_failure(kHostCannotReadFile, action, path, errno);
    }
    if (file.is_open()) {
        check_regular(found, kHostCannotReadFile, action, path);
        size = static_cast<std::uint64_t>(found.st_size);
    }
    return file;
}

int read_all(const File& file, void* bytes, std::size_t& count) {
    const std::size_t wanted = std::exchange(count, 0);
    while (count < wanted) {
        const ssize_t got = ::read(file.descriptor(), static_cast<char*>(bytes) + count, wanted - count);
        if (got == 0) {
            break;
        }
        if (got < 0 && errno != EINTR) {
            return errno;
        }
        count += got < 0 ? 0 : static_cast<std::size_t>(got);
    }
    return 0;
}

int write_all(const File& file, const void* bytes, std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        const ssize_t put = ::write(file.descriptor(), static_cast<const char*>(bytes) + done, count - done);
        if (put < 0 && errno != EINTR) {
            return errno;
        }
        done += put < 0 ? 0 : static_cast<std::size_t>(put);
    }
    return 0;
}

} // namespace tavro::host
