// Which lists of one kind are open, and under which middleware handle.
#pragma once

#include "middleware/types.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

// Ordered map from 16-bit list id to handle. There is one a list kind for the whole process, shared
// by every manager of that kind. It is made at its first use, so that no code runs when the library is
// loaded, and destroyed when the process exits, which does not close handles. It is not guarded: the natives
// that open and delete channel lists are serialised by their bridge, and callers answer for the rest.
class HandleMap {
public:
    using Key = std::uint16_t;
    using Entry = std::pair<Key, MwdbHandle>;

    // List ids count by their low 16 bits; an id whose low 16 bits are 0 stands for no list.
    static Key key(int list_id) { return static_cast<Key>(list_id); }

    // Returns the handle of the list, or null when it is not open or `list_id` stands for no list. The pointer
    // is good until the map changes.
    const MwdbHandle* find(int list_id) const {
        const auto at = std::lower_bound(entries_.begin(), entries_.end(), key(list_id), before);
        return key(list_id) == 0 || at == entries_.end() || at->first != key(list_id) ? nullptr : &at->second;
    }

    // Records a handle unless the list has one. Returns whether it was recorded.
    bool insert(int list_id, MwdbHandle handle) {
        const auto at = std::lower_bound(entries_.begin(), entries_.end(), key(list_id), before);
        const bool missing = at == entries_.end() || at->first != key(list_id);
        if (missing) {
            entries_.insert(at, {key(list_id), handle});
        }
        return missing;
    }

    void erase(int list_id) {
        const auto at = std::lower_bound(entries_.begin(), entries_.end(), key(list_id), before);
        if (at != entries_.end() && at->first == key(list_id)) {
            entries_.erase(at);
        }
    }
    void clear() { entries_.clear(); }

    // Entries in ascending order of list ids.
    auto begin() const { return entries_.begin(); }
    auto end() const { return entries_.end(); }

private:
    static bool before(const Entry& entry, Key key) { return entry.first < key; }

    // Few lists are open at a time: a sorted vector is found in and filled faster than a tree.
    std::vector<Entry> entries_;
};
