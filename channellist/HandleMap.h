// Which lists of one kind are open, and under which middleware handle.
#pragma once

#include "middleware/types.h"

#include <cstdint>
#include <map>

// Ordered map from 16-bit list id to handle. There is one a list kind for the whole process, shared
// by every manager of that kind. It is made at its first use, so that no code runs when the library is
// loaded, and destroyed when the process exits, which does not close handles. It is not guarded: the natives
// that open and delete channel lists are serialised by their bridge, and callers answer for the rest.
// Entries must stay where they are: closing a handle may lead to a look-up from another thread.
class HandleMap {
public:
    using Key = std::uint16_t;

    // List ids count by their low 16 bits; an id whose low 16 bits are 0 stands for no list.
    static Key key(int list_id) { return static_cast<Key>(list_id); }

    // Returns the handle of the list, or null when it is not open or `list_id` stands for no list.
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
