// All lists of a storage directory, in its SQLite database `lists.db`.
#pragma once

#include "filter.h"
#include "kinds.h"
#include "list_file.h"
#include "lock_file.h"
#include "order.h"
#include "sqlite.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tavro::host {

// Every function that changes something is one transaction: after it has returned, a killed process
// loses nothing of it. Several processes may use one directory. Used by one thread at a time.
//
// Functions with a list return kHostNoSuchList when there is none. Throws Failure when the directory
// cannot be used, SqlError when the database fails.
class Storage {
public:
    explicit Storage(const std::string& directory);

    // What a message on an SqlError calls the database.
    const std::string& path() const { return path_; }
    const std::shared_ptr<LockFile>& lock_file() const { return lock_file_; }
    std::uint64_t work() const { return database_.work(); }

    // kHostListExists when the list is there. Versions go on where an earlier list of that id ended.
    MwStatus create(const ListKey& list, const std::string& name);
    MwStatus remove(const ListKey& list);
    MwStatus clean(const ListKey& list);
    // Replaces the records of `to` by those of `from`, another list of the same kind.
    MwStatus copy(const ListKey& from, const ListKey& to);
    MwStatus replace(const ListKey& list, const Kind& kind, const StoredRecords& records);

    // `*version` is the list's version after the change. Record ids are below kMwNoRecordId.
    MwStatus add(const ListKey& list, const Kind& kind, const void* record, std::int64_t* version);
    MwStatus update(const ListKey& list, const Kind& kind, const void* record, std::int64_t* version);
    MwStatus remove_record(const ListKey& list, std::uint16_t record_id, std::int64_t* version);

    MwStatus version(const ListKey& list, std::int64_t* version);
    // Reads a record. `*version` is set whether or not there is one; `record` when there is.
    MwStatus get(const ListKey& list, const Kind& kind, std::uint16_t record_id, void* record, std::int64_t* version);
    // kMwEmpty, and 0, when the list has no records.
    MwStatus highest_record_id(const ListKey& list, std::uint16_t* record_id);
    MwStatus load_order(const ListKey& list, Order& order);
    MwStatus load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records);

private:
    class Change;

    std::string path_;
    std::shared_ptr<LockFile> lock_file_;
    Connection database_;
};

} // namespace tavro::host
