// The order of a list's records, kept in memory so that a read by index need not count rows.
#pragma once

#include "filter.h"

#include <cstdint>
#include <vector>

namespace tavro::host {

// The ids of the records that a filter chooses, in the list's order, as of one version of the list.
// Another process may change the list: whoever uses an order compares the version first.
class Order {
public:
    static constexpr std::int64_t kNeverLoaded = -1;

    explicit Order(const Filter& filter = Filter()) : filter_(filter) {}

    const Filter& filter() const { return filter_; }
    std::int64_t version() const { return version_; }
    std::uint16_t size() const { return static_cast<std::uint16_t>(ids_.size()); }

    // The record id at an index; kMwNoRecordId behind the end.
    std::uint16_t at(std::uint32_t index) const { return index < ids_.size() ? ids_[index] : kMwNoRecordId; }

    // Takes over a whole order.
    void load(std::vector<std::uint16_t> ids, std::int64_t version);

    // Follows a change that this process made and that led to `version`. An order that missed an
    // earlier change, or whose place for the record is not known, stays behind and is loaded anew at
    // its next use.
    void added(std::uint16_t id, const std::byte* record, std::int64_t version);
    void updated(std::uint16_t id, const std::byte* record, std::int64_t version);
    void removed(std::uint16_t id, std::int64_t version);

    // The lowest record id from 1 that is not in the order; kMwNoRecordId when there is none.
    std::uint16_t lowest_free_id() const;

private:
    bool missed_one_before(std::int64_t version) const { return version_ != version - 1; }

    Filter filter_;
    std::int64_t version_ = kNeverLoaded;
    std::vector<std::uint16_t> ids_;
    std::vector<unsigned char> contained_; // by record id: 1 when it is in ids_
};

} // namespace tavro::host
