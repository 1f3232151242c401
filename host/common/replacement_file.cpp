#include "replacement_file.h"

#include "file_error.h"
#include "report.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <new>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace tavro::host {
namespace {

constexpr mode_t kFileMode = 0644;
constexpr char kInfix[] = ".tavro-tmp."; // users give their files no such name
constexpr char kDigits[] = "0123456789";
constexpr int kMostNames = 1000; // tried for a temporary file

std::string directory_of(const std::string& path) {
    const fs::path parent = fs::path(path).parent_path();
    return parent.empty() ? "." : parent.string();
}

// Returns 0 or an errno value.
int sync_directory(const std::string& directory) {
    const File file(open_file(directory.c_str(), O_RDONLY | O_DIRECTORY));
    if (!file.is_open()) {
        return errno;
    }
    return ::fsync(file.descriptor()) == 0 || errno == EINVAL ? 0 : errno; // EINVAL: such directories need no sync
}

void report_unsynced(const std::string& path, int error) noexcept {
    try {
        report_once("replaced " + path + ", but cannot sync its directory: " + explain(error, "choose another path") +
                    ". A power failure may bring the old file back.");
    } catch (const std::bad_alloc&) {
        // The line is lost. The file has been replaced all the same.
    }
}

// True for "PID.N".
bool is_number_pair(const std::string& text) {
    const std::size_t dot = text.find('.');
    return dot != std::string::npos && dot != 0 && dot + 1 != text.size() && text.find_first_not_of(kDigits) == dot &&
           text.find_first_not_of(kDigits, dot + 1) == std::string::npos;
}

// Removes the file unless a replacement is using it.
void remove_if_abandoned(const std::string& path) {
    struct stat found {};
    // A file with a second name is not one of ours, and to open and close it may drop somebody's locks.
    if (::lstat(path.c_str(), &found) != 0 || !S_ISREG(found.st_mode) || found.st_nlink != 1) {
        return;
    }
    const File file(open_file(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW));
    struct stat opened {};
    if (file.is_open() && ::flock(file.descriptor(), LOCK_EX | LOCK_NB) == 0 &&
        ::fstat(file.descriptor(), &opened) == 0 && opened.st_nlink == 1 && ::lstat(path.c_str(), &found) == 0 &&
        found.st_dev == opened.st_dev && found.st_ino == opened.st_ino) { // not another file that took the name
        ::unlink(path.c_str());
    }
}

} // namespace

ReplacementFile::ReplacementFile(const std::string& path) : path_(path) {
    remove_leftovers();
    create_temporary();
}

ReplacementFile::~ReplacementFile() {
    if (!temporary_.empty()) {
        ::unlink(temporary_.c_str());
    }
}

// Creates and locks a file with a new name. A name can be taken by a killed process that had this process's id.
void ReplacementFile::create_temporary() {
    static std::atomic<unsigned> number{0};
    for (int tried = 0; tried < kMostNames; ++tried) {
        std::string name = path_ + kInfix + std::to_string(::getpid()) + "." + std::to_string(number++);
        File file(open_file(name.c_str(), O_WRONLY | O_CREAT | O_EXCL, kFileMode));
        if (!file.is_open() && errno == EEXIST) {
            continue;
        }
        if (!file.is_open()) {
            error_ = errno;
            return;
        }
        // Another process may take the new file for a leftover before it is locked.
        struct stat found {};
        const bool lost = ::flock(file.descriptor(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (!lost && ::fstat(file.descriptor(), &found) == 0 && found.st_nlink != 0) {
            temporary_ = std::move(name);
            file_ = std::move(file);
            return;
        }
    }
    error_ = EEXIST;
}

void ReplacementFile::remove_leftovers() const {
    const std::string prefix = fs::path(path_).filename().string() + kInfix;
    // std::filesystem's iterator ends the process if memory runs out.
    const std::string directory = directory_of(path_);
    fill_standard_descriptors();
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(directory.c_str()), ::closedir);
    while (const dirent* const entry = entries == nullptr ? nullptr : ::readdir(entries.get())) {
        const std::string name = entry->d_name;
        if (name.compare(0, prefix.size(), prefix) == 0 && is_number_pair(name.substr(prefix.size()))) {
            remove_if_abandoned(std::string(directory).append("/").append(name));
        }
    }
}

int ReplacementFile::write(const void* bytes, std::size_t count) {
    if (error_ == 0) {
        error_ = write_all(file_.descriptor(), bytes, count);
    }
    return error_;
}

int ReplacementFile::commit() {
    if (error_ != 0) {
        return error_;
    }
    const std::string directory = directory_of(path_); // memory may run out, but not after the rename
    if (::fsync(file_.descriptor()) != 0 || std::rename(temporary_.c_str(), path_.c_str()) != 0) {
        return error_ = errno;
    }
    temporary_.clear();
    const int error = sync_directory(directory);
    if (error != 0) {
        report_unsynced(path_, error);
    }
    return 0;
}

} // namespace tavro::host
