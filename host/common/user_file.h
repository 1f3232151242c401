// Files that callers name by path: list files, and the files of the middleware's file functions.
#pragma once

#include "open_file.h"
#include "services/failure.h"

#include <cstdint>
#include <string>

namespace tavro::host {

// The functions below throw Failure with this status and "cannot ACTION PATH: CAUSE; REMEDY". The status is
// kHostStorageFull instead if `error`, an errno value, says that the file system is full.
Failure file_failure(tavro::MwStatus status, const std::string& action, const std::string& path, int error);

// Throws Failure if the path leads to a file of the storage (is_storage_file).
void refuse_storage_file(tavro::MwStatus status, const std::string& action, const std::string& path);

// Throws Failure if the file at `path` belongs to the storage, or if it exists and is not a regular file. Does not open
// it: opening a device can have effects.
void refuse_special_file(tavro::MwStatus status, const std::string& action, const std::string& path);

// Opens a regular file for reading, without waiting, after refuse_storage_file. Sets `size` to its size. Returns a
// closed File if there is none. Throws Failure(kHostCannotReadFile).
File open_to_read(const std::string& action, const std::string& path, std::uint64_t& size);

} // namespace tavro::host
