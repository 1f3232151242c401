// Which lists of one kind are open, and under which middleware handle.
#pragma once

#include "middleware/types.h"

#include <cstdint>
#include <map>

namespace tavro {

// Ordered map from 16-bit list id to handle. The process has one per list kind, shared by all managers of the kind. It
// is created on first use, so that no code runs when the library is loaded. It is destroyed when the process exits;
// that closes no handle. It is not guarded: the bridge serializes the natives that open and delete service lists, and
// callers must serialize the rest. Entries never move, since another thread may look one up while a handle is being
// closed.
class HandleMap {
public:
    using Key = std::uint16_t;

    // Only the low 16 bits of a list id count; 0 means no list.
    static Key key(int list_id) { return static_cast<Key>(list_id); }

    // Returns the handle of the list, or null when it is not open or `list_id` means no list.
    const MwdbHandle* find(int list_id) const {
        const auto entry = handles_.find(key(list_id));
        return key(list_id) == 0 || entry == handles_.end() ? nullptr : &entry->second;
    }

    // Records a handle unless the list has one. Returns whether it was recorded.
    bool insert(int list_id, MwdbHandle handle) { return handles_.emplace(key(list_id), handle).second; }

    void erase(int list_id) { handles_.erase(key(list_id)); }
    void clear() { handles_.clear(); }

    // Entries in ascending order of list ids.
    auto begin() const { return handles_.begin(); }
    auto end() const { return handles_.end(); }

private:
    std::map<Key, MwdbHandle> handles_;
};

} // namespace tavro
