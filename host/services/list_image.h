// The records of a list in memory, so that reads need no database.
#pragma once

#include "filter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace tavro::host {

// Records of a list as of one version of it: single ones that were read, or, once it is loaded, all of them and their
// order. Others may change the list: whoever uses an image compares the versions first.
//
// Every function with a version leaves the image at that version. After std::bad_alloc from added(), updated() or
// removed() the image is useless until clear().
class ListImage {
public:
    static constexpr std::int64_t kNoVersion = -1;
    static constexpr std::int32_t kNone = -1;
    static constexpr std::int32_t kUnknown = -2;

    explicit ListImage(std::size_t record_bytes) : record_bytes_(record_bytes) {}

    std::int64_t version() const { return version_; }
    bool is_whole() const { return whole_; }
    // Memory that the records take.
    std::size_t bytes() const { return held_pages_ * kPageRecords * record_bytes_; }

    // A record, null when the image has none of that id. Valid until the image changes.
    const std::byte* find(std::uint16_t id) const { return id < held_.size() && held_[id] != 0 ? place(id) : nullptr; }
    // Ids of the records that a filter chooses, in the list's order. Of a whole image only.
    const std::vector<std::uint16_t>& order(const Filter& filter);
    // The lowest record id from 1 that is free; kMwNoRecordId when there is none. Of a whole image only.
    std::uint16_t lowest_free_id() const;

    // The highest record id: kUnknown, or kNone without records.
    std::int32_t highest_id() const { return highest_id_; }

    // Forgets everything and gives the memory back.
    void clear();
    // The list has no records.
    void empty(std::int64_t version);
    // Takes over a record that was read from the list at `version`. Records of another version are forgotten.
    void keep(std::uint16_t id, const std::byte* record, std::size_t bytes, std::int64_t version);
    // Takes over the highest record id, or kNone, in the same way.
    void keep_highest_id(std::int32_t id, std::int64_t version);
    // Makes the image whole: `ids` are those of all records, which were taken over by keep().
    void complete(std::vector<std::uint16_t> ids, std::int64_t version);

    // Follow a change that this process made and that led to `version`. An image that missed an earlier change is
    // cleared.
    void added(std::uint16_t id, const std::byte* record, std::int64_t version);
    void updated(std::uint16_t id, const std::byte* record, std::int64_t version);
    void removed(std::uint16_t id, std::int64_t version);

private:
    static constexpr std::size_t kPageRecords = 16; // ids of one allocation

    void start_at(std::int64_t version);
    std::int32_t highest_held_below(std::int32_t id) const;
    bool follows(std::int64_t version);
    std::byte* place(std::uint16_t id) const {
        return pages_[id / kPageRecords].get() + id % kPageRecords * record_bytes_;
    }
    void put(std::uint16_t id, const std::byte* record, std::size_t bytes);

    std::size_t record_bytes_;
    std::int64_t version_ = kNoVersion;
    bool whole_ = false;
    std::int32_t highest_id_ = kUnknown;
    std::vector<std::unique_ptr<std::byte[]>> pages_; // by id; null where no record is held
    std::size_t held_pages_ = 0;
    std::vector<unsigned char> held_; // by id: 1 when the record is held
    std::vector<std::uint16_t> ids_;  // of a whole image, in order

    // What the filter used last chooses.
    bool chosen_known_ = false;
    Filter filter_;
    std::vector<std::uint16_t> chosen_;
};

} // namespace tavro::host
