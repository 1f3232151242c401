// List files of x_..._fs_store and x_..._fs_sync: SQLite databases that contain one list each.
//
// application_id is kListFileApplication, user_version is kListFileVersion. Table `list` has one row: the kind's number
// and name, the list's id and storage name, and the number of records and the checksum of their bytes in list order.
// Table `records` has the record id, the position in the list (from 1), and the bytes of the record structure. Files of
// version 1 have neither the number of records nor the checksum.
#pragma once

#include "kinds.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::host {

inline constexpr std::int32_t kListFileApplication = 0x5476'4C46; // "TvLF"
inline constexpr std::int32_t kListFileVersion = 2;
inline constexpr std::int32_t kOldListFileVersion = 1; // read, no longer written

// The records of a list, in order: their ids, and their bytes one after another (Kind::record_bytes each).
struct StoredRecords {
    std::vector<std::uint16_t> ids;
    std::vector<std::byte> bytes;
};

// What a list file has about its list.
struct ListFile {
    const Kind* kind = nullptr;
    std::uint16_t list_id = 0;
    std::string name;
    StoredRecords records;
};

enum class ListFileState { kSound, kNoFile, kNotAListFile, kOtherVersion, kDamaged };

// Replaces the file at `path` atomically. Throws Failure(kHostCannotWriteFile).
void write_list_file(const std::string& path, const Kind& kind, std::uint16_t list_id, const std::string& name,
                     const StoredRecords& records);

// Reads all records of a list file, in order. Returns 0, kMwNoFile, or kMwNotAListFile if the file is damaged or not a
// list file of that kind. Throws Failure(kHostCannotReadFile). `records` is written only on success.
tavro::MwStatus read_list_file(const std::string& path, const Kind& kind, StoredRecords& records);

// Does the same for a file's content. Time and memory are bounded, whatever the content.
tavro::MwStatus parse_list_file(const void* content, std::size_t bytes, const Kind& kind, StoredRecords& records);

// Read a list file of any kind. `list` is written only if the file is sound. Throw as the functions above.
ListFileState read_list_file(const std::string& path, ListFile& list);
ListFileState parse_list_file(const void* content, std::size_t bytes, ListFile& list);

} // namespace tavro::host
