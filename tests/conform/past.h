// What the variants know of earlier calls.
#pragma once

#include "hooks.h"

#include <map>
#include <set>
#include <sys/types.h>
#include <unistd.h>

namespace tavro::broken {

// What this process did with lists of a kind, for variants that depend on it. The calls of one kind must come from one
// thread at a time.
template <class Kind>
struct Past {
    inline static std::map<MwdbHandle, std::uint16_t> lists; // of handles that are open
    inline static std::map<MwdbHandle, pid_t> threads;       // that got them
    inline static std::set<std::uint16_t> created;           // lists
    inline static std::set<MwdbHandle> opened;               // handles from open, not from create
    inline static std::set<MwdbHandle> used;                 // handles through which records were added or stored
    inline static std::set<MwdbHandle> cleaned;              // handles
    inline static std::set<std::uint16_t> added;             // record ids
    inline static std::set<std::uint16_t> removed;           // record ids
    inline static bool has_deleted = false;                  // a list

    // Number of open handles of the list that `handle` leads to.
    static std::size_t handles_of(MwdbHandle handle) {
        std::size_t number = 0;
        for (const auto& [other, list] : lists) {
            number += list == lists[handle] ? 1U : 0U;
        }
        return number;
    }
};

// Notes the calls that reach the platform from now on. Call it once, when Kind::next is complete.
template <class Kind>
void follow() {
    using Known = Past<Kind>;
    Kind::next.open = [open = Kind::next.open](std::uint16_t list, std::uint32_t tag, std::uint32_t notify,
                                               MwdbHandle* handle) {
        const MwStatus status = open(list, tag, notify, handle);
        if (status == kMwOk) {
            Known::lists[*handle] = list;
            Known::opened.insert(*handle);
        }
        return status;
    };
    Kind::next.create = [create = Kind::next.create](const char* name, std::uint16_t list, std::uint32_t mode,
                                                     std::uint32_t growth, std::uint32_t tag, std::uint32_t notify,
                                                     MwdbHandle* handle) {
        const MwStatus status = create(name, list, mode, growth, tag, notify, handle);
        if (status == kMwOk) {
            Known::lists[*handle] = list;
            Known::threads[*handle] = ::gettid();
            Known::created.insert(list);
        }
        return status;
    };
    Kind::next.close = [close = Kind::next.close](MwdbHandle handle) {
        Known::lists.erase(handle);
        return close(handle);
    };
    Kind::next.remove = [remove = Kind::next.remove](MwdbHandle handle) {
        Known::lists.erase(handle);
        Known::has_deleted = true;
        return remove(handle);
    };
    Kind::next.add_rec = [add = Kind::next.add_rec](MwdbHandle handle, auto* record) {
        const MwStatus status = add(handle, record);
        if (status == kMwOk) {
            Known::used.insert(handle);
            Known::added.insert(Kind::id(*record));
        }
        return status;
    };
    Kind::next.del_rec = [remove = Kind::next.del_rec](MwdbHandle handle, std::uint16_t record_id) {
        const MwStatus status = remove(handle, record_id);
        if (status == kMwOk) {
            Known::removed.insert(record_id);
        }
        return status;
    };
    Kind::next.clean = [clean = Kind::next.clean](MwdbHandle handle) {
        Known::cleaned.insert(handle);
        return clean(handle);
    };
    Kind::next.fs_store = [store = Kind::next.fs_store](MwdbHandle handle, const char* path, std::uint16_t list) {
        Known::used.insert(handle);
        return store(handle, path, list);
    };
}

} // namespace tavro::broken
