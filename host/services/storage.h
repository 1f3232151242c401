// The lists of a storage directory, in its SQLite database `lists.db`.
#pragma once

#include "commit_watch.h"
#include "kinds.h"
#include "list_source.h"
#include "lock_file.h"
#include "sqlite.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tavro::host {

// Every change is one transaction: once the function has returned, killing the process loses nothing. Only a file
// system without space makes remove() and clean() take several; if they then fail, some of the records may be gone.
// Several processes may use one directory. Not thread-safe.
//
// After a change, the state has the list's new version.
class Storage : public ListSource {
public:
    explicit Storage(const std::string& directory);

    const std::shared_ptr<LockFile>& lock_file() const { return lock_file_; }
    std::uint64_t work() const override { return database_.work(); }
    std::uint64_t epoch() override { return watch_.epoch(); }

    // Returns kHostListExists if the list exists. Versions continue after those of a deleted list with the same id.
    tavro::MwStatus create(const ListKey& list, const std::string& name, ListState& state);
    tavro::MwStatus remove(const ListKey& list, ListState& state);
    tavro::MwStatus clean(const ListKey& list, ListState& state);
    // Replaces the records of `to` with those of `from`, another list of the same kind. `state` belongs to `to`.
    tavro::MwStatus copy(const Kind& kind, const ListKey& from, const ListKey& to, ListState& state);
    tavro::MwStatus replace(const ListKey& list, const Kind& kind, const StoredRecords& records, ListState& state);

    // Record ids must be below kMwNoRecordId.
    tavro::MwStatus add(const ListKey& list, const Kind& kind, const void* record, ListState& state);
    tavro::MwStatus update(const ListKey& list, const Kind& kind, const void* record, ListState& state);
    tavro::MwStatus remove_record(const ListKey& list, std::uint16_t record_id, ListState& state);

    tavro::MwStatus refresh(const ListKey& list, ListState& state) override;
    tavro::MwStatus read(const ListKey& list, const Kind& kind, std::uint16_t record_id, ListState& state,
                         ListImage& image) override;
    tavro::MwStatus read_highest_id(const ListKey& list, ListState& state, ListImage& image) override;
    tavro::MwStatus read_all(const ListKey& list, const Kind& kind, ListState& state, ListImage& image) override;
    tavro::MwStatus load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records) override;

private:
    class Change;

    static int on_commit(void* storage, sqlite3* database, const char* name, int frames);
    template <class Body>
    tavro::MwStatus with_space(Body body);
    void reuse_log();
    template <class Also>
    tavro::MwStatus delete_all(const ListKey& list, ListState& state, Also also);
    void delete_in_steps(const ListKey& list, ListState& state);
    void take_space();
    void commit(Transaction& transaction);

    std::string path_;
    std::shared_ptr<LockFile> lock_file_;
    Connection database_;
    CommitWatch watch_;
    std::uint32_t frames_in_log_ = 0; // after the last commit
};

} // namespace tavro::host
