// The workstation's middleware: handles, list operations and locks, the same for all four kinds.
#pragma once

#include "failure.h"
#include "filter.h"
#include "kinds.h"
#include "lists.h"
#include "lock_table.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace tavro::host {

// Thread-safe. Functions return kMwOk or a status from middleware/types.h or status.h, and do not throw.
// Failures that an engineer has to fix are also logged.
//
// The first call opens the storage in home_directory(). Output parameters are written only on success, except the
// record id of qry_rec_id.
class Engine {
public:
    static Engine& instance();

    tavro::MwStatus open(const Kind& kind, std::uint16_t list_id, tavro::MwdbHandle* handle);
    tavro::MwStatus create(const Kind& kind, const char* name, std::uint16_t list_id, tavro::MwdbHandle* handle);
    tavro::MwStatus close(const Kind& kind, tavro::MwdbHandle handle);
    tavro::MwStatus remove(const Kind& kind, tavro::MwdbHandle handle);
    tavro::MwStatus clean(const Kind& kind, tavro::MwdbHandle handle);
    tavro::MwStatus copy(const Kind& kind, tavro::MwdbHandle from, tavro::MwdbHandle to);
    tavro::MwStatus load_file(const Kind& kind, tavro::MwdbHandle handle, const char* path);
    tavro::MwStatus store_file(const Kind& kind, tavro::MwdbHandle handle, const char* path);

    tavro::MwStatus lock(const Kind& kind, tavro::MwdbHandle handle, LockLevel level);
    tavro::MwStatus unlock(const Kind& kind, tavro::MwdbHandle handle, LockLevel level);

    tavro::MwStatus query_record_id(const Kind& kind, tavro::MwdbHandle handle, std::uint32_t query,
                                    std::uint16_t* record_id);
    tavro::MwStatus add(const Kind& kind, tavro::MwdbHandle handle, const void* record);
    tavro::MwStatus update(const Kind& kind, tavro::MwdbHandle handle, const void* record);
    tavro::MwStatus remove_record(const Kind& kind, tavro::MwdbHandle handle, std::uint16_t record_id);
    tavro::MwStatus get(const Kind& kind, tavro::MwdbHandle handle, std::uint16_t record_id, void* record,
                        std::int32_t* version);
    tavro::MwStatus get_at(const Kind& kind, tavro::MwdbHandle handle, const Filter& filter, std::int64_t index,
                           void* record, std::int32_t* version);
    tavro::MwStatus count(const Kind& kind, tavro::MwdbHandle handle, const Filter& filter, std::uint16_t* count,
                          std::int32_t* version);

    // Releases every handle and lock and closes the storage; the next call reopens it.
    void reset();
    // Only reads from the next call on, or does again what TAVRO_READ_ONLY says. Handles stay valid; the locks of this
    // process end if it no longer writes. A call with true also ends the state that this process has read so far.
    void set_read_only(bool read_only);
    // Opens the storage if this process may write to it and it is in this directory.
    void open_writable(const std::string& directory);
    // Number of SQLite virtual machine instructions that the open storage has run: a measure of work.
    std::uint64_t work();

private:
    using Clock = std::chrono::steady_clock;
    struct FailedOpening {
        Failure failure;
        Clock::time_point end;
    };
    struct OpenList {
        const Kind* kind;
        ListKey list;
    };

    Access access() const;
    template <class Body>
    tavro::MwStatus guarded(Body body) noexcept;
    template <class Body>
    tavro::MwStatus on_list(const Kind& kind, tavro::MwdbHandle handle, Body body) noexcept;
    template <class Body>
    tavro::MwStatus on_list_lock(const Kind& kind, tavro::MwdbHandle handle, LockLevel level, Body body) noexcept;

    Lists& lists(Clock::time_point began = Clock::time_point::max());
    template <class Prepare>
    tavro::MwStatus new_handle(const Kind& kind, const ListKey& list, tavro::MwdbHandle* handle, Prepare prepare);
    const OpenList* find(const Kind& kind, tavro::MwdbHandle handle) const;
    void drop_handle(tavro::MwdbHandle handle);

    std::mutex mutex_;       // guards the next five members; never held while waiting for a list's lock
    bool read_only_ = false; // otherwise TAVRO_READ_ONLY decides
    std::unique_ptr<Lists> lists_;
    std::optional<FailedOpening> failed_opening_; // the last one
    std::map<tavro::MwdbHandle, OpenList> open_lists_;
    tavro::MwdbHandle last_handle_ = 0;

    LockTable locks_;
};

} // namespace tavro::host
