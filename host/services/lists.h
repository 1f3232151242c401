// The lists of a storage directory. Reads come from memory while no other process has changed the list; everything else
// goes to the storage.
#pragma once

#include "filter.h"
#include "list_image.h"
#include "storage.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace tavro::host {

enum class Access { kReadWrite, kReadOnly };

// Functions return kHostNoSuchList if the list does not exist, and pass on the storage's exceptions. Output parameters
// are written only on success; highest_record_id also writes 0 with kMwEmpty. Not thread-safe.
//
// A read by index or with a filter, a count, and the search for a free id load the whole list into memory. A read by id
// keeps only that record. Changes by this process are applied to memory. Every read compares the storage's epoch to
// detect commits by other processes; then the list's version shows whether the list itself has changed.
class Lists {
public:
    Lists(const std::string& directory, Access access);

    // If true, changes and the next two functions throw Failure(kHostReadOnly).
    bool is_read_only() const { return storage_ == nullptr; }
    void need_write_access() const { storage(); }
    std::shared_ptr<LockFile> lock_file() const { return storage().lock_file(); }
    std::uint64_t work() const { return source_->work(); }

    tavro::MwStatus check_exists(const ListKey& list);
    tavro::MwStatus load(const Kind& kind, const ListKey& list, std::string& name, StoredRecords& records);

    tavro::MwStatus create(const Kind& kind, const ListKey& list, const std::string& name);
    tavro::MwStatus remove(const ListKey& list);
    tavro::MwStatus clean(const Kind& kind, const ListKey& list);
    tavro::MwStatus copy(const Kind& kind, const ListKey& from, const ListKey& to);
    tavro::MwStatus replace(const Kind& kind, const ListKey& list, const StoredRecords& records);
    tavro::MwStatus add(const Kind& kind, const ListKey& list, const void* record);
    tavro::MwStatus update(const Kind& kind, const ListKey& list, const void* record);
    tavro::MwStatus remove_record(const Kind& kind, const ListKey& list, std::uint16_t record_id);

    tavro::MwStatus get(const Kind& kind, const ListKey& list, std::uint16_t record_id, void* record,
                        std::int32_t* version);
    tavro::MwStatus get_at(const Kind& kind, const ListKey& list, const Filter& filter, std::int64_t index,
                           void* record, std::int32_t* version);
    tavro::MwStatus count(const Kind& kind, const ListKey& list, const Filter& filter, std::uint16_t* count,
                          std::int32_t* version);
    tavro::MwStatus highest_record_id(const Kind& kind, const ListKey& list, std::uint16_t* record_id);
    tavro::MwStatus next_record_id(const Kind& kind, const ListKey& list, std::uint16_t* record_id);

private:
    // What this process knows about a list.
    struct Known {
        ListState state;
        ListImage image;
        std::uint64_t last_use = 0;
    };

    Known& known(const Kind& kind, const ListKey& list);
    bool is_current(const Known& list) {
        return list.state.epoch == source_->epoch() && list.image.version() == list.state.version;
    }
    tavro::MwStatus make_whole(const ListKey& list, const Kind& kind, Known& known);
    template <class Change>
    void apply(Known& list, Change change) noexcept;
    void limit_memory(const Known& in_use);

    Storage& storage() const;

    std::string directory_;
    std::unique_ptr<ListSource> source_;
    Storage* storage_ = nullptr; // the source, unless the access is read-only
    std::map<ListKey, Known> known_;
    std::uint64_t uses_ = 0;
};

} // namespace tavro::host
