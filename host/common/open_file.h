// Opening, reading and writing files, also in a process whose standard descriptors are closed.
#pragma once

#include <cstddef>
#include <string>
#include <sys/types.h>
#include <utility>

namespace tavro::host {

// Owns a file descriptor.
class File {
public:
    explicit File(int descriptor = -1) : descriptor_(descriptor) {}
    ~File();
    File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    File& operator=(File&& other) noexcept;
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool is_open() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// Opens /dev/null on each of the descriptors 0, 1 and 2 that is closed. Call before opening any file: the file would
// get the free number, and whatever the process writes to its standard error would end up in it.
void fill_standard_descriptors();

// open() with O_CLOEXEC, never on a standard descriptor. Returns the descriptor, or -1 with errno set.
int open_file(const char* path, int flags, mode_t mode = 0);

// Examines a file without opening it, because opening a device can have effects. Returns 0 for a regular file,
// otherwise an errno value: EISDIR for a directory, kNotRegular for a FIFO, a socket or a device.
int find_regular_file(const std::string& path);
inline constexpr int kNotRegular = -1; // no errno value says this

// Opens a regular file for reading. Never waits, whatever the path names. Returns a closed File on failure. Sets
// `error` as find_regular_file does.
File open_regular_file(const std::string& path, int& error);

// Like read and write, but continue after interruptions and partial transfers. `read_all` reads up to `count` bytes and
// sets `count` to their number; it is less at the end of the file or after an error. Both return 0 or an errno value.
// `write_all` takes a descriptor, because standard error has no File.
int read_all(const File& file, void* bytes, std::size_t& count);
int write_all(int descriptor, const void* bytes, std::size_t count);

} // namespace tavro::host
