#include "replacement_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace tavro::host {
namespace {

std::string directory_of(const std::string& path) {
    const fs::path parent = fs::path(path).parent_path();
    return parent.empty() ? "." : parent.string();
}

// Calls fsync on a file or directory. Returns 0 or an errno value.
int sync_to_disk(const std::string& path, int flags) {
    const int file = ::open(path.c_str(), flags | O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    const int error = ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    return error;
}

} // namespace

ReplacementFile::ReplacementFile(const std::string& path) : path_(path) {
    static std::atomic<unsigned> number{0};
    temporary_ = path + ".tmp." + std::to_string(::getpid()) + "." + std::to_string(number++);
    remove_leftovers();
}

ReplacementFile::~ReplacementFile() {
    if (!committed_) {
        ::unlink(temporary_.c_str());
    }
}

int ReplacementFile::commit() {
    int error = sync_to_disk(temporary_, O_RDONLY);
    if (error == 0 && std::rename(temporary_.c_str(), path_.c_str()) != 0) {
        error = errno;
    }
    if (error != 0) {
        return error;
    }
    committed_ = true;
    return sync_to_disk(directory_of(path_), O_RDONLY | O_DIRECTORY);
}

void ReplacementFile::remove_leftovers() const {
    const std::string prefix = fs::path(path_).filename().string() + ".tmp.";
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory_of(path_), ignored)) {
        const std::string name = entry.path().filename().string();
        if (name.compare(0, prefix.size(), prefix) != 0) {
            continue;
        }
        const long writer = std::strtol(name.c_str() + prefix.size(), nullptr, 10);
        if (writer > 0 && ::kill(static_cast<pid_t>(writer), 0) != 0 && errno == ESRCH) {
            fs::remove(entry.path(), ignored);
        }
    }
}

} // namespace tavro::host
