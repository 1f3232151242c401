// All lists of a storage directory, in its SQLite database `lists.db`.
#pragma once

#include "commit_watch.h"
#include "kinds.h"
#include "list_file.h"
#include "list_image.h"
#include "lock_file.h"
#include "sqlite.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tavro::host {

// A list's row in the storage, as it was in an epoch of the storage.
struct ListState {
    std::uint64_t epoch = 0;
    std::int64_t version = ListImage::kNoVersion;
    std::int64_t next_position = 0;
};

// Every function that changes something is one transaction: after it has returned, a killed process
// loses nothing of it. Several processes may use one directory. Used by one thread at a time.
//
// Functions with a list return kHostNoSuchList when there is none. Those with a state take what the caller knows of the
// list and bring it up to date: after a change it has the list's new version. Throws Failure when the directory cannot
// be used, SqlError when the database fails.
class Storage {
public:
    explicit Storage(const std::string& directory);
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    const std::shared_ptr<LockFile>& lock_file() const { return lock_file_; }
    std::uint64_t work() const { return database_.work(); }

    // A state of this epoch is up to date.
    std::uint64_t epoch() { return watch_.epoch(); }

    // kHostListExists when the list is there. Versions go on where an earlier list of that id ended.
    MwStatus create(const ListKey& list, const std::string& name, ListState& state);
    MwStatus remove(const ListKey& list, ListState& state);
    MwStatus clean(const ListKey& list, ListState& state);
    // Replaces the records of `to` by those of `from`, another list of the same kind. `state` is that of `to`.
    MwStatus copy(const ListKey& from, const ListKey& to, ListState& state);
    MwStatus replace(const ListKey& list, const Kind& kind, const StoredRecords& records, ListState& state);

    // Record ids are below kMwNoRecordId.
    MwStatus add(const ListKey& list, const Kind& kind, const void* record, ListState& state);
    MwStatus update(const ListKey& list, const Kind& kind, const void* record, ListState& state);
    MwStatus remove_record(const ListKey& list, std::uint16_t record_id, ListState& state);

    // Brings the state up to date.
    MwStatus look_at(const ListKey& list, ListState& state);
    // These take over into `image` what is in the list: one record, the highest record id, all records and their order.
    // kHostNoSuchRecord if the record does not exist.
    MwStatus read(const ListKey& list, std::uint16_t record_id, ListState& state, ListImage& image);
    MwStatus read_highest_id(const ListKey& list, ListState& state, ListImage& image);
    MwStatus read_all(const ListKey& list, ListState& state, ListImage& image);
    MwStatus load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records);

private:
    class Change;

    static int on_commit(void* storage, sqlite3* database, const char* name, int frames);
    void commit(Transaction& transaction);

    std::string path_;
    std::shared_ptr<LockFile> lock_file_;
    Connection database_;
    CommitWatch watch_;
    std::uint32_t frames_in_log_ = 0; // after the last commit
};

} // namespace tavro::host
