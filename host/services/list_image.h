// The records of a list in memory, so that reads do not need the database.
#pragma once

#include "filter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tavro::host {

// Records of one version of a list: those that were read so far or, once complete() was called, all of them and their
// order. Other processes may change the list, so callers compare versions before using the image.
//
// Functions with a `version` parameter leave the image at that version. If added(), updated() or removed() throws
// std::bad_alloc, call clear() before using the image again.
class ListImage {
public:
    static constexpr std::int64_t kNoVersion = -1;
    static constexpr std::int32_t kNone = -1;
    static constexpr std::int32_t kUnknown = -2;

    explicit ListImage(std::size_t record_bytes) : record_bytes_(record_bytes) {}

    std::int64_t version() const { return version_; }
    bool is_whole() const { return whole_; }
    // Memory used by the records.
    std::size_t bytes() const { return held_pages_ * kPageRecords * record_bytes_; }

    // Returns a record, or null if it is not in the image. Valid until the image changes.
    const std::byte* find(std::uint16_t id) const { return id < held_.size() && held_[id] != 0 ? place(id) : nullptr; }
    // Ids of the records that match the filter, in list order. The image must be whole.
    const std::vector<std::uint16_t>& order(const Filter& filter);
    // The lowest free record id from 1, or kMwNoRecordId if there is none. The image must be whole.
    std::uint16_t lowest_free_id() const;

    // The highest record id, kNone if the list is empty, or kUnknown.
    std::int32_t highest_id() const { return highest_id_; }

    // Drops everything and frees the memory.
    void clear();
    // Makes this the whole image of an empty list.
    void empty(std::int64_t version);
    // Stores a record that was read at `version`. Drops the records of any other version.
    void keep(std::uint16_t id, const std::byte* record, std::int64_t version);
    // Stores the highest record id, or kNone, in the same way.
    void keep_highest_id(std::int32_t id, std::int64_t version);
    // Marks the image as whole. `ids` are the ids of all records in list order; each was stored by keep().
    void complete(std::vector<std::uint16_t> ids, std::int64_t version);

    // Apply a change by this process, which produced `version`. An image that missed an earlier change is cleared.
    void added(std::uint16_t id, const std::byte* record, std::int64_t version);
    void updated(std::uint16_t id, const std::byte* record, std::int64_t version);
    void removed(std::uint16_t id, std::int64_t version);

private:
    static constexpr std::size_t kPageRecords = 16; // records per allocation

    void start_at(std::int64_t version);
    std::int32_t highest_held_below(std::int32_t id) const;
    bool advance_to(std::int64_t version);
    std::byte* place(std::uint16_t id) const {
        return pages_[id / kPageRecords].get() + id % kPageRecords * record_bytes_;
    }
    void put(std::uint16_t id, const std::byte* record);

    std::size_t record_bytes_;
    std::int64_t version_ = kNoVersion;
    bool whole_ = false;
    std::int32_t highest_id_ = kUnknown;
    std::vector<std::unique_ptr<std::byte[]>> pages_; // by id; null if the page holds no record
    std::size_t held_pages_ = 0;
    std::vector<unsigned char> held_; // by id: 1 if the record is held
    std::vector<std::uint16_t> ids_;  // in list order; only for a whole image

    // Result of the last filter.
    bool filtered_known_ = false;
    Filter filter_;
    std::vector<std::uint16_t> filtered_ids_;
};

} // namespace tavro::host
