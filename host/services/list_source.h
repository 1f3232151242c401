// Where the records of lists come from: the storage of a process that may change it, or a read-only view.
#pragma once

#include "kinds.h"
#include "list_file.h"
#include "list_image.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tavro::host {

// A list's row in the database, as read in an epoch of the source.
struct ListState {
    std::uint64_t epoch = 0;
    std::int64_t version = ListImage::kNoVersion;
    std::int64_t next_position = 0;
};

// What the database has about a list.
struct ListEntry {
    ListKey list;
    std::string name;
    std::int64_t records;
    std::int64_t version;
    std::optional<std::int64_t> changed; // in milliseconds since 1970, UTC; unknown before the first change
};

// Functions with a list return kHostNoSuchList if it does not exist. Functions with a state update it. They throw
// Failure if the directory cannot be used and SqlError if the database fails. Every value read is checked first: a row
// that no change can have written throws SqlError(SQLITE_CORRUPT). Not thread-safe.
class ListSource {
public:
    ListSource() = default;
    virtual ~ListSource() = default;
    ListSource(const ListSource&) = delete;
    ListSource& operator=(const ListSource&) = delete;

    // A state of this epoch is current.
    virtual std::uint64_t epoch() = 0;
    // Number of SQLite virtual machine instructions that were run.
    virtual std::uint64_t work() const = 0;

    // Updates the state.
    virtual tavro::MwStatus refresh(const ListKey& list, ListState& state) = 0;
    // Read into `image`: one record, the highest record id, or all records and their order. `read` returns
    // kHostNoSuchRecord if the record does not exist.
    virtual tavro::MwStatus read(const ListKey& list, const Kind& kind, std::uint16_t record_id, ListState& state,
                                 ListImage& image) = 0;
    virtual tavro::MwStatus read_highest_id(const ListKey& list, ListState& state, ListImage& image) = 0;
    virtual tavro::MwStatus read_all(const ListKey& list, const Kind& kind, ListState& state, ListImage& image) = 0;
    virtual tavro::MwStatus load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records) = 0;
};

} // namespace tavro::host
