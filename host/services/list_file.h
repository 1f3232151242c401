// List files of x_..._fs_store and x_..._fs_sync: SQLite databases that contain one list each.
//
// application_id is kListFileApplication, user_version is kListFileVersion. Table `list` has one row: the kind's number
// and name, the list's id and storage name. Table `records` has the record id, the position in the list, and the bytes
// of the record structure.
#pragma once

#include "kinds.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::host {

inline constexpr std::int32_t kListFileApplication = 0x5476'4C46; // "TvLF"
inline constexpr std::int32_t kListFileVersion = 1;

// The records of a list, in order: their ids, and their bytes one after another (Kind::record_bytes each).
struct StoredRecords {
    std::vector<std::uint16_t> ids;
    std::vector<std::byte> bytes;
};

// Replaces the file at `path` atomically. Throws Failure(kHostCannotWriteFile).
void write_list_file(const std::string& path, const Kind& kind, std::uint16_t list_id, const std::string& name,
                     const StoredRecords& records);

// Reads all records of a list file, in order. Returns 0, kMwNoFile, or kMwNotAListFile if the file is
// damaged or not a list file of that kind. Throws Failure(kHostCannotReadFile).
tavro::MwStatus read_list_file(const std::string& path, const Kind& kind, StoredRecords& records);

} // namespace tavro::host
