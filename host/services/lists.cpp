#include "lists.h"

#include "failure.h"
#include "snapshot.h"
#include "status.h"

#include <cstring>
#include <new>
#include <utility>

namespace tavro::host {
namespace {

// Limit for all records in memory. A full service list takes 35 MiB; the list in use is kept even if it is larger.
constexpr std::size_t kMostImageBytes = std::size_t{128} << 20;

const std::byte* bytes_of(const void* record) { return static_cast<const std::byte*>(record); }

} // namespace

Lists::Lists(const std::string& directory, Access access) : directory_(directory) {
    if (access == Access::kReadOnly) {
        source_ = std::make_unique<Snapshot>(directory);
        return;
    }
    auto storage = std::make_unique<Storage>(directory);
    storage_ = storage.get();
    source_ = std::move(storage);
}

// The storage, for a change.
Storage& Lists::storage() const {
    if (storage_ == nullptr) {
        throw Failure(kHostReadOnly, "cannot change the lists in " + directory_ +
                                         ": this process only reads them; unset TAVRO_READ_ONLY, or call "
                                         "tavro_host_set_read_only(0)");
    }
    return *storage_;
}

Lists::Known& Lists::known(const Kind& kind, const ListKey& list) {
    auto found = known_.find(list);
    if (found == known_.end()) {
        found = known_.emplace(list, Known{{}, ListImage(kind.record_bytes)}).first;
    }
    found->second.last_use = ++uses_;
    return found->second;
}

// Applies a committed change to the image. The change is already stored, so if memory runs out the image is cleared.
template <class Change>
void Lists::apply(Known& list, Change change) noexcept {
    try {
        change(list.image, list.state.version);
        limit_memory(list);
    } catch (const std::bad_alloc&) {
        list.image.clear();
    }
}

// Clears the least recently used images.
void Lists::limit_memory(const Known& in_use) {
    std::size_t bytes = 0;
    for (const auto& [key, known] : known_) {
        bytes += known.image.bytes();
    }
    while (bytes > kMostImageBytes) {
        Known* oldest = nullptr;
        for (auto& [key, known] : known_) {
            const bool candidate = &known != &in_use && known.image.bytes() != 0;
            if (candidate && (oldest == nullptr || known.last_use < oldest->last_use)) {
                oldest = &known;
            }
        }
        if (oldest == nullptr) {
            return;
        }
        bytes -= oldest->image.bytes();
        oldest->image.clear();
    }
}

MwStatus Lists::check_exists(const ListKey& list) {
    const auto found = known_.find(list);
    ListState unknown;
    return source_->refresh(list, found == known_.end() ? unknown : found->second.state);
}

MwStatus Lists::create(const Kind& kind, const ListKey& list, const std::string& name) {
    Known& known = this->known(kind, list);
    const MwStatus status = storage().create(list, name, known.state);
    if (status == kMwOk) {
        apply(known, [](ListImage& image, std::int64_t version) { image.empty(version); });
    }
    return status;
}

MwStatus Lists::remove(const ListKey& list) {
    ListState unknown;
    const MwStatus status = storage().remove(list, unknown);
    if (status == kMwOk) {
        known_.erase(list);
    }
    return status;
}

MwStatus Lists::clean(const Kind& kind, const ListKey& list) {
    Known& known = this->known(kind, list);
    const MwStatus status = storage().clean(list, known.state);
    if (status == kMwOk) {
        apply(known, [](ListImage& image, std::int64_t version) { image.empty(version); });
    }
    return status;
}

MwStatus Lists::copy(const Kind& kind, const ListKey& from, const ListKey& to) {
    return storage().copy(kind, from, to, known(kind, to).state);
}

MwStatus Lists::replace(const Kind& kind, const ListKey& list, const StoredRecords& records) {
    return storage().replace(list, kind, records, known(kind, list).state);
}

MwStatus Lists::load(const Kind& kind, const ListKey& list, std::string& name, StoredRecords& records) {
    return source_->load(list, kind, name, records);
}

MwStatus Lists::add(const Kind& kind, const ListKey& list, const void* record) {
    Known& known = this->known(kind, list);
    const MwStatus status = storage().add(list, kind, record, known.state);
    if (status == kMwOk) {
        apply(known, [&](ListImage& image, std::int64_t version) {
            image.added(record_id_of(kind, record), bytes_of(record), version);
        });
    }
    return status;
}

MwStatus Lists::update(const Kind& kind, const ListKey& list, const void* record) {
    Known& known = this->known(kind, list);
    const MwStatus status = storage().update(list, kind, record, known.state);
    if (status == kMwOk) {
        apply(known, [&](ListImage& image, std::int64_t version) {
            image.updated(record_id_of(kind, record), bytes_of(record), version);
        });
    }
    return status;
}

MwStatus Lists::remove_record(const Kind& kind, const ListKey& list, std::uint16_t record_id) {
    Known& known = this->known(kind, list);
    const MwStatus status = storage().remove_record(list, record_id, known.state);
    if (status == kMwOk) {
        apply(known, [&](ListImage& image, std::int64_t version) { image.removed(record_id, version); });
    }
    return status;
}

MwStatus Lists::get(const Kind& kind, const ListKey& list, std::uint16_t record_id, void* record,
                    std::int32_t* version) {
    Known& known = this->known(kind, list);
    const bool current = is_current(known);
    if (!current || (known.image.find(record_id) == nullptr && !known.image.is_whole())) {
        const MwStatus status = source_->read(list, kind, record_id, known.state, known.image);
        if (status != kMwOk) {
            return status;
        }
        limit_memory(known);
    }
    const std::byte* const found = known.image.find(record_id);
    if (found == nullptr) {
        return kHostNoSuchRecord;
    }
    std::memcpy(record, found, kind.record_bytes);
    *version = static_cast<std::int32_t>(known.state.version);
    return kMwOk;
}

// Loads all records of the list's current version into the image.
MwStatus Lists::make_whole(const ListKey& list, const Kind& kind, Known& known) {
    const MwStatus status = source_->refresh(list, known.state);
    if (status != kMwOk || (known.image.is_whole() && known.image.version() == known.state.version)) {
        return status;
    }
    const MwStatus read = source_->read_all(list, kind, known.state, known.image);
    limit_memory(known);
    return read;
}

MwStatus Lists::get_at(const Kind& kind, const ListKey& list, const Filter& filter, std::int64_t index, void* record,
                       std::int32_t* version) {
    Known& known = this->known(kind, list);
    const MwStatus status = make_whole(list, kind, known);
    if (status != kMwOk) {
        return status;
    }
    const std::vector<std::uint16_t>& order = known.image.order(filter);
    if (index < 0 || static_cast<std::uint64_t>(index) >= order.size()) {
        return kHostIndexOutOfRange;
    }
    std::memcpy(record, known.image.find(order[static_cast<std::size_t>(index)]), kind.record_bytes);
    *version = static_cast<std::int32_t>(known.state.version);
    return kMwOk;
}

MwStatus Lists::count(const Kind& kind, const ListKey& list, const Filter& filter, std::uint16_t* count,
                      std::int32_t* version) {
    Known& known = this->known(kind, list);
    const MwStatus status = make_whole(list, kind, known);
    if (status == kMwOk) {
        *count = static_cast<std::uint16_t>(known.image.order(filter).size());
        *version = static_cast<std::int32_t>(known.state.version);
    }
    return status;
}

MwStatus Lists::highest_record_id(const Kind& kind, const ListKey& list, std::uint16_t* record_id) {
    Known& known = this->known(kind, list);
    if (!is_current(known) || known.image.highest_id() == ListImage::kUnknown) {
        const MwStatus status = source_->read_highest_id(list, known.state, known.image);
        if (status != kMwOk) {
            return status;
        }
    }
    const std::int32_t highest = known.image.highest_id();
    *record_id = static_cast<std::uint16_t>(highest == ListImage::kNone ? 0 : highest);
    return highest == ListImage::kNone ? kMwEmpty : kMwOk;
}

MwStatus Lists::next_record_id(const Kind& kind, const ListKey& list, std::uint16_t* record_id) {
    std::uint16_t highest = 0;
    MwStatus status = highest_record_id(kind, list, &highest);
    if (status != kMwOk && status != kMwEmpty) {
        return status;
    }
    if (highest < kMwNoRecordId - 1) {
        *record_id = static_cast<std::uint16_t>(highest + 1);
        return kMwOk;
    }
    Known& known = this->known(kind, list);
    status = make_whole(list, kind, known);
    if (status == kMwOk) {
        *record_id = known.image.lowest_free_id();
    }
    return status;
}

} // namespace tavro::host
