#include "open_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavro::host {
namespace {

// Why a file is not read: an errno value, kNotRegular, or 0.
int refusal(const struct stat& found) {
    if (S_ISREG(found.st_mode)) {
        return 0;
    }
    return S_ISDIR(found.st_mode) ? EISDIR : kNotRegular;
}

} // namespace

void fill_standard_descriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            // Gets the lowest free number. Without O_CLOEXEC, because started programs need these descriptors too.
            ::open("/dev/null", O_RDWR); // NOLINT(android-cloexec-open)
        }
    }
}

int open_file(const char* path, int flags, mode_t mode) {
    fill_standard_descriptors();
    return ::open(path, flags | O_CLOEXEC, mode);
}

int open_regular_file(const char* path, int& error) {
    struct stat found {};
    // Examined before it is opened, because opening a device may have an effect.
    error = ::stat(path, &found) == 0 ? refusal(found) : errno;
    if (error != 0) {
        return -1;
    }
    const int file = open_file(path, O_RDONLY | O_NONBLOCK);
    error = file >= 0 && ::fstat(file, &found) == 0 ? refusal(found) : errno; // the path may name another file now
    if (file >= 0 && error != 0) {
        ::close(file);
        return -1;
    }
    return file;
}

} // namespace tavro::host
