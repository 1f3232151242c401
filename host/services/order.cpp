#include "order.h"

#include <algorithm>
#include <cstring>

namespace tavro::host {

void Order::load(std::vector<std::uint16_t> ids, std::int64_t version) {
    ids_ = std::move(ids);
    version_ = version;
    contained_.assign(kMwNoRecordId, 0);
    for (const std::uint16_t id : ids_) {
        contained_[id] = 1;
    }
}

void Order::added(std::uint16_t id, const std::byte* record, std::int64_t version) {
    if (missed_one_before(version)) {
        return;
    }
    if (filter_.matches(record)) {
        ids_.push_back(id);
        contained_[id] = 1;
    }
    version_ = version;
}

void Order::updated(std::uint16_t id, const std::byte* record, std::int64_t version) {
    const bool was_chosen = !missed_one_before(version) && contained_[id] != 0;
    if (!missed_one_before(version) && was_chosen == filter_.matches(record)) {
        version_ = version;
    }
}

void Order::removed(std::uint16_t id, std::int64_t version) {
    if (missed_one_before(version)) {
        return;
    }
    if (contained_[id] != 0) {
        ids_.erase(std::find(ids_.begin(), ids_.end(), id));
        contained_[id] = 0;
    }
    version_ = version;
}

std::uint16_t Order::lowest_free_id() const {
    // 0 is never offered: it stands for no record in the callers' identifiers.
    const unsigned char* const first = contained_.data() + 1;
    const void* const free = std::memchr(first, 0, contained_.size() - 1);
    return free == nullptr ? kMwNoRecordId
                           : static_cast<std::uint16_t>(static_cast<const unsigned char*>(free) - contained_.data());
}

} // namespace tavro::host
