// The lists of a storage directory: reads from memory while nobody has changed them, everything else from the storage.
#pragma once

#include "filter.h"
#include "list_image.h"
#include "storage.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace tavro::host {

// Functions return kHostNoSuchList if the list does not exist, and let the storage's exceptions pass. Out values are
// written only on success; highest_record_id also writes 0 with kMwEmpty. Used by one thread at a time.
//
// A read by index or through a filter, a count and the search for a free id load the whole list into memory. A read by
// id keeps the one record. Own changes are applied to what is in memory. A change of another process, or one that was
// missed, is noticed before the next read: the storage's epoch is another one then, and the list's version decides.
class Lists {
public:
    explicit Lists(const std::string& directory) : storage_(directory) {}

    const std::shared_ptr<LockFile>& lock_file() const { return storage_.lock_file(); }
    std::uint64_t work() const { return storage_.work(); }

    MwStatus look_for(const ListKey& list);
    MwStatus create(const Kind& kind, const ListKey& list, const std::string& name);
    MwStatus remove(const ListKey& list);
    MwStatus clean(const Kind& kind, const ListKey& list);
    MwStatus copy(const Kind& kind, const ListKey& from, const ListKey& to);
    MwStatus replace(const Kind& kind, const ListKey& list, const StoredRecords& records);
    MwStatus load(const Kind& kind, const ListKey& list, std::string& name, StoredRecords& records);

    MwStatus add(const Kind& kind, const ListKey& list, const void* record);
    MwStatus update(const Kind& kind, const ListKey& list, const void* record);
    MwStatus remove_record(const Kind& kind, const ListKey& list, std::uint16_t record_id);

    MwStatus get(const Kind& kind, const ListKey& list, std::uint16_t record_id, void* record, std::int32_t* version);
    MwStatus get_at(const Kind& kind, const ListKey& list, const Filter& filter, std::int64_t index, void* record,
                    std::int32_t* version);
    MwStatus count(const Kind& kind, const ListKey& list, const Filter& filter, std::uint16_t* count,
                   std::int32_t* version);
    MwStatus highest_record_id(const Kind& kind, const ListKey& list, std::uint16_t* record_id);
    MwStatus next_record_id(const Kind& kind, const ListKey& list, std::uint16_t* record_id);

private:
    // What is known of a list.
    struct Known {
        ListState state;
        ListImage image;
        std::uint64_t last_use = 0;
    };

    Known& known(const Kind& kind, const ListKey& list);
    bool is_current(const Known& list) {
        return list.state.epoch == storage_.epoch() && list.image.version() == list.state.version;
    }
    MwStatus make_whole(const ListKey& list, Known& known);
    template <class Change>
    void follow(Known& list, Change change) noexcept;
    void limit_memory(const Known& in_use);

    Storage storage_;
    std::map<ListKey, Known> known_;
    std::uint64_t uses_ = 0;
};

} // namespace tavro::host
