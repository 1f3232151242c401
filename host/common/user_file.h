// Files that callers name by path: list files, and the files of the middleware's file functions.
#pragma once

#include "services/failure.h"

#include <cstddef>
#include <cstdint>
#include <string>
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

// The functions below throw Failure with this status and "cannot ACTION PATH: CAUSE; REMEDY". The status is
// kHostStorageFull instead if `error`, an errno value, says that the file system is full.
Failure file_failure(tavro::MwStatus status, const std::string& action, const std::string& path, int error);

// Throws Failure if the path leads to a file of the storage, such as lists.db, or would create one. Does not open the
// file: opening and closing a database releases the locks that SQLite holds on it in this process.
void refuse_storage_file(tavro::MwStatus status, const std::string& action, const std::string& path);

// Throws Failure if the file at `path` belongs to the storage, or if it exists and is not a regular file. Does not open
// it: opening a device can have effects.
void refuse_special_file(tavro::MwStatus status, const std::string& action, const std::string& path);

// Opens a file for reading, without waiting, after refuse_special_file. Sets `size` to its size. Returns a closed File
// if there is none. Throws Failure(kHostCannotReadFile).
File open_to_read(const std::string& action, const std::string& path, std::uint64_t& size);

// Like read and write, but continue after interruptions and partial transfers. `read_all` reads up to `count` bytes and
// sets `count` to their number; it is less at the end of the file only. Both return 0 or an errno value.
int read_all(const File& file, void* bytes, std::size_t& count);
int write_all(const File& file, const void* bytes, std::size_t count);

} // namespace tavro::host
