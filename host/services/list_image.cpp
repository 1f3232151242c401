#include "list_image.h"

#include <algorithm>
#include <cstring>

namespace tavro::host {

const std::vector<std::uint16_t>& ListImage::order(const Filter& filter) {
    if (filter.is_everything()) {
        return ids_;
    }
    if (!filtered_known_ || !(filter == filter_)) {
        filtered_known_ = false;
        filtered_ids_.clear();
        filter_ = filter;
        std::copy_if(ids_.begin(), ids_.end(), std::back_inserter(filtered_ids_),
                     [&](std::uint16_t id) { return filter_.matches(place(id)); });
        filtered_known_ = true;
    }
    return filtered_ids_;
}

std::uint16_t ListImage::lowest_free_id() const {
    // Never 0, which means "no record" in identifiers.
    for (std::size_t id = 1; id < kMwNoRecordId; ++id) {
        if (id >= held_.size() || held_[id] == 0) {
            return static_cast<std::uint16_t>(id);
        }
    }
    return kMwNoRecordId;
}

void ListImage::clear() { *this = ListImage(record_bytes_); }

void ListImage::empty(std::int64_t version) {
    clear();
    version_ = version;
    whole_ = true;
    highest_id_ = kNone;
}

void ListImage::keep(std::uint16_t id, const std::byte* record, std::int64_t version) {
    start_at(version);
    put(id, record);
}

void ListImage::keep_highest_id(std::int32_t id, std::int64_t version) {
    start_at(version);
    highest_id_ = id;
}

void ListImage::complete(std::vector<std::uint16_t> ids, std::int64_t version) {
    start_at(version);
    const auto highest = std::max_element(ids.begin(), ids.end());
    highest_id_ = highest == ids.end() ? kNone : *highest;
    ids_ = std::move(ids);
    whole_ = true;
}

void ListImage::added(std::uint16_t id, const std::byte* record, std::int64_t version) {
    if (!advance_to(version)) {
        return;
    }
    if (highest_id_ != kUnknown) {
        highest_id_ = std::max(highest_id_, std::int32_t{id});
    }
    if (!whole_) {
        return;
    }
    put(id, record);
    ids_.push_back(id);
    if (filtered_known_ && filter_.matches(record)) {
        filtered_ids_.push_back(id);
    }
}

void ListImage::updated(std::uint16_t id, const std::byte* record, std::int64_t version) {
    if (!advance_to(version) || find(id) == nullptr) {
        return;
    }
    filtered_known_ = filtered_known_ && filter_.matches(place(id)) == filter_.matches(record);
    put(id, record);
}

void ListImage::removed(std::uint16_t id, std::int64_t version) {
    if (!advance_to(version)) {
        return;
    }
    if (id < held_.size()) {
        held_[id] = 0;
    }
    if (highest_id_ == id) {
        highest_id_ = whole_ ? highest_held_below(id) : kUnknown;
    }
    const auto erase = [id](std::vector<std::uint16_t>& ids) {
        const auto found = std::find(ids.begin(), ids.end(), id);
        if (found != ids.end()) {
            ids.erase(found);
        }
    };
    erase(ids_);
    erase(filtered_ids_);
}

std::int32_t ListImage::highest_held_below(std::int32_t id) const {
    do {
        --id;
    } while (id >= 0 && held_[static_cast<std::size_t>(id)] == 0);
    return id >= 0 ? id : kNone;
}

// Starts an image of `version`, reusing the memory of an older one.
void ListImage::start_at(std::int64_t version) {
    if (version == version_) {
        return;
    }
    version_ = version;
    whole_ = false;
    highest_id_ = kUnknown;
    std::fill(held_.begin(), held_.end(), static_cast<unsigned char>(0));
    ids_.clear();
    filtered_known_ = false;
}

// Advances the image if `version` is the next one. Otherwise clears it and returns false.
bool ListImage::advance_to(std::int64_t version) {
    if (version_ == kNoVersion || version != version_ + 1) {
        clear();
        return false;
    }
    version_ = version;
    return true;
}

void ListImage::put(std::uint16_t id, const std::byte* record) {
    const std::size_t page = id / kPageRecords;
    if (page >= pages_.size()) {
        held_.resize((page + 1) * kPageRecords, 0);
        pages_.resize(page + 1); // last, so that a page that could not be allocated counts as missing
    }
    if (pages_[page] == nullptr) {
        pages_[page] = std::make_unique<std::byte[]>(kPageRecords * record_bytes_);
        ++held_pages_;
    }
    std::memcpy(place(id), record, record_bytes_);
    held_[id] = 1;
}

} // namespace tavro::host
