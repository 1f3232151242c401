// The lists of a storage directory as they are at one moment, for processes that only read.
#pragma once

#include "list_source.h"
#include "sqlite.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tavro::host {

// Opens no file for writing and creates none. A directory without a list database has no lists.
//
// The first read opens the database and begins a transaction that ends with the object, so that all reads see the same
// state. While processes write, SQLite's locks on the write-ahead log keep that state. Otherwise there may be no log
// that could be locked without creating files. Then the first process that begins to write ends the state: the read
// that notices it starts over with a later one. The epoch stays the same, so lists that are in memory stay as they are.
//
// The lock that SQLite holds on the database keeps a writer from removing its files again. So a writer that has come
// since the transaction began can be seen from the files that exist.
class Snapshot : public ListSource {
public:
    explicit Snapshot(const std::string& directory) : path_(directory + "/lists.db") {}

    // Begins the transaction, if there is a database.
    void begin();
    // The lists whose keys (ListKey::number) are from `first` to `last`, by kind and id.
    std::vector<ListEntry> lists(std::int64_t first, std::int64_t last);

    std::uint64_t epoch() override { return 1; }
    std::uint64_t work() const override { return database_ == nullptr ? 0 : database_->work(); }
    tavro::MwStatus refresh(const ListKey& list, ListState& state) override;
    tavro::MwStatus read(const ListKey& list, const Kind& kind, std::uint16_t record_id, ListState& state,
                         ListImage& image) override;
    tavro::MwStatus read_highest_id(const ListKey& list, ListState& state, ListImage& image) override;
    tavro::MwStatus read_all(const ListKey& list, const Kind& kind, ListState& state, ListImage& image) override;
    tavro::MwStatus load(const ListKey& list, const Kind& kind, std::string& name, StoredRecords& records) override;

private:
    // Which of the files exist that writers create next to the database.
    struct Files {
        bool log;
        bool index;
        bool operator==(const Files& other) const { return log == other.log && index == other.index; }
    };

    bool has_database() const;
    Files files() const;
    std::unique_ptr<Connection> open(const Files& files) const;
    bool open();
    bool is_intact() const { return (files_.log && files_.index) || files() == files_; }
    template <class Body, class Discard>
    tavro::MwStatus reading(Body body, Discard discard);

    std::string path_;
    std::unique_ptr<Connection> database_;
    Files files_{}; // when the transaction began
};

} // namespace tavro::host
