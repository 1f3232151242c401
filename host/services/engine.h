// The workstation's middleware: handles, list operations and locks, the same for all four kinds.
#pragma once

#include "filter.h"
#include "kinds.h"
#include "lists.h"
#include "lock_table.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace tavro::host {

// Thread-safe. Functions return kMwOk or a status from middleware/types.h or status.h, and do not throw. Failures that
// an engineer has to fix are also logged.
//
// The first call opens the storage in home_directory(). Output parameters are written only on success, except the
// record id of qry_rec_id.
class Engine {
public:
    static Engine& instance();

    MwStatus open(const Kind& kind, std::uint16_t list_id, MwdbHandle* handle);
    MwStatus create(const Kind& kind, const char* name, std::uint16_t list_id, MwdbHandle* handle);
    MwStatus close(const Kind& kind, MwdbHandle handle);
    MwStatus remove(const Kind& kind, MwdbHandle handle);
    MwStatus clean(const Kind& kind, MwdbHandle handle);
    MwStatus copy(const Kind& kind, MwdbHandle from, MwdbHandle to);
    MwStatus load_file(const Kind& kind, MwdbHandle handle, const char* path);
    MwStatus store_file(const Kind& kind, MwdbHandle handle, const char* path);

    MwStatus lock(const Kind& kind, MwdbHandle handle, LockLevel level);
    MwStatus unlock(const Kind& kind, MwdbHandle handle, LockLevel level);

    MwStatus query_record_id(const Kind& kind, MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id);
    MwStatus add(const Kind& kind, MwdbHandle handle, const void* record);
    MwStatus update(const Kind& kind, MwdbHandle handle, const void* record);
    MwStatus remove_record(const Kind& kind, MwdbHandle handle, std::uint16_t record_id);
    MwStatus get(const Kind& kind, MwdbHandle handle, std::uint16_t record_id, void* record, std::int32_t* version);
    MwStatus get_at(const Kind& kind, MwdbHandle handle, const Filter& filter, std::int64_t index, void* record,
                    std::int32_t* version);
    MwStatus count(const Kind& kind, MwdbHandle handle, const Filter& filter, std::uint16_t* count,
                   std::int32_t* version);

    // Releases every handle and lock and closes the storage; the next call reopens it.
    void reset();
    // Number of SQLite virtual machine instructions that the open storage has run: a measure of work.
    std::uint64_t work();

private:
    struct OpenList {
        const Kind* kind;
        ListKey list;
    };

    template <class Body>
    MwStatus guarded(Body body) noexcept;
    template <class Body>
    MwStatus on_list(const Kind& kind, MwdbHandle handle, Body body) noexcept;
    template <class Body>
    MwStatus on_list_lock(const Kind& kind, MwdbHandle handle, Body body) noexcept;

    Lists& lists();
    MwStatus new_handle(const Kind& kind, const ListKey& list, MwdbHandle* handle);
    const OpenList* find(const Kind& kind, MwdbHandle handle) const;
    void drop_handle(MwdbHandle handle);

    std::mutex mutex_; // guards the next three members; never held while waiting for a list's lock
    std::unique_ptr<Lists> lists_;
    std::map<MwdbHandle, OpenList> open_lists_;
    MwdbHandle last_handle_ = 0;

    LockTable locks_;
};

} // namespace tavro::host
