// File helpers of the TV middleware. All paths are NUL-terminated; `drive` is always kMwRootDrive.
#pragma once

#include "middleware/types.h"

#include <cstdint>

extern "C" {
// Prepares the file at `path` for raw access; its content stays.
tavro::MwStatus fs_raw_init(std::uint32_t drive, const char* path);
// Returns 0 when there is a file at `path`; the three words describe it.
tavro::MwStatus fs_raw_qry_fpath(std::uint32_t drive, const char* path, std::uint32_t* word1, std::uint32_t* word2,
                                 std::uint32_t* word3);
// Copies the file at `from` to `to`, replacing it.
tavro::MwStatus fs_raw_copy(std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to);
// Removes the file at `path`.
tavro::MwStatus x_fm_delete_file(std::uint32_t drive, const char* path);
}
