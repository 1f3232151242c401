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

File::~File() {
    if (is_open()) {
        ::close(descriptor_);
    }
}

File& File::operator=(File&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

void fill_standard_descriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            // Gets the lowest free number. Without O_CLOEXEC, because started programs need these descriptors too.
            const int filled = ::open("/dev/null", O_RDWR); // NOLINT(android-cloexec-open)
            if (filled > STDERR_FILENO) {
                ::close(filled); // another thread was faster
            }
        }
    }
}

int open_file(const char* path, int flags, mode_t mode) {
    fill_standard_descriptors();
    return ::open(path, flags | O_CLOEXEC, mode);
}

int find_regular_file(const std::string& path) {
    struct stat found {};
    return ::stat(path.c_str(), &found) == 0 ? refusal(found) : errno;
}

File open_regular_file(const std::string& path, int& error) {
    error = find_regular_file(path);
    if (error != 0) {
        return File();
    }
    File file(open_file(path.c_str(), O_RDONLY | O_NONBLOCK));
    struct stat found {};
    error = file.is_open() && ::fstat(file.descriptor(), &found) == 0 ? refusal(found) : errno; // may be another file
    return error == 0 ? std::move(file) : File();
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

int write_all(int descriptor, const void* bytes, std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        const ssize_t put = ::write(descriptor, static_cast<const char*>(bytes) + done, count - done);
        if (put < 0 && errno != EINTR) {
            return errno;
        }
        done += put < 0 ? 0 : static_cast<std::size_t>(put);
    }
    return 0;
}

} // namespace tavro::host
