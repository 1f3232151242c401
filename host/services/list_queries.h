// Queries of the list database, the same for a connection that may write and for one that may not.
#pragma once

#include "list_source.h"
#include "sqlite.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::host {

inline constexpr std::int32_t kListDatabaseApplication = 0x5476'4442; // "TvDB"
inline constexpr std::int32_t kListDatabaseVersion = 2;
inline constexpr std::int32_t kOldListDatabaseVersion =
    1; // without the times of changes; read, and upgraded by writers

// How long a step waits for another process. The largest copy takes far less.
inline constexpr int kBusyMilliseconds = 10'000;

// Keys of the first and after the last record of a list.
inline std::int64_t first_record(const ListKey& list) { return list.record(0); }
inline std::int64_t last_record(const ListKey& list) { return list.record(kMwNoRecordId); }

// Throws SqlError(SQLITE_CORRUPT) if pages or rows of the database are damaged. Large databases are not checked.
void check_database(Connection& database);

// The state in a row that begins with version and next_position.
ListState state_of(const Statement& row, std::uint64_t epoch);

// The functions of ListSource with the same names. `epoch` becomes the epoch of the state: data that is read is at
// least as new. If they make several queries, a transaction must be open.
tavro::MwStatus query_state(Connection& database, const ListKey& list, std::uint64_t epoch, ListState& state);
tavro::MwStatus query_record(Connection& database, const ListKey& list, const Kind& kind, std::uint16_t record_id,
                             std::uint64_t epoch, ListState& state, ListImage& image);
tavro::MwStatus query_highest_id(Connection& database, const ListKey& list, std::uint64_t epoch, ListState& state,
                                 ListImage& image);
tavro::MwStatus query_all(Connection& database, const ListKey& list, const Kind& kind, std::uint64_t epoch,
                          ListState& state, ListImage& image); // several queries
tavro::MwStatus query_records(Connection& database, const ListKey& list, const Kind& kind, std::string& name,
                              StoredRecords& records); // several queries

// The lists whose keys (ListKey::number) are from `first` to `last`, by kind and id.
std::vector<ListEntry> query_lists(Connection& database, std::int64_t first, std::int64_t last);

// Throws SqlError if a record of the list is damaged.
void check_records(Connection& database, const ListKey& list, const Kind& kind);

} // namespace tavro::host
