// List files: one list in a SQLite database of its own, for x_..._fs_store and x_..._fs_sync.
//
// application_id is kListFileApplication and user_version kListFileForm. Table `list` has one row: the
// number of the kind, its name, the list's id and its storage name. Table `records` has the record
// id, the position that orders the records, and the record's bytes as the kind's structure has them.
#pragma once

#include "kinds.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::host {

inline constexpr std::int32_t kListFileApplication = 0x5476'4C46; // "TvLF"
inline constexpr std::int32_t kListFileForm = 1;

// The records of one list in their order: ids, and Kind::record_bytes bytes for each, back to back.
struct StoredRecords {
    std::vector<std::uint16_t> ids;
    std::vector<std::byte> bytes;
};

// Writes the file at `path` anew. It is the old or the new one at any time, whole. Throws
// Failure(kHostCannotWriteFile).
void write_list_file(const std::string& path, const Kind& kind, std::uint16_t list_id, const std::string& name,
                     const StoredRecords& records);

// Reads the whole file into `records`, in their order. Returns 0, kMwNoFile, or kMwNotAListFile for
// anything but an undamaged list file of that kind. Throws Failure(kHostCannotReadFile).
MwStatus read_list_file(const std::string& path, const Kind& kind, StoredRecords& records);

} // namespace tavro::host
