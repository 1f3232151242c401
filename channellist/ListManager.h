// The scheme that the four list managers share.
//
// A manager maps list ids to open middleware handles. It opens a list on first use, creates it when there is none, and
// forwards every operation to the middleware's calls of its kind. Each status becomes 0 or -22. Each kind is described
// by a traits type (see SvlKind for an example):
//
//   Record                        the record structure
//   the calls                     TAVRO_LIST_CALLS of the middleware's prefix
//   handles()                     the process-wide handle map
//   kTag, kClass                  log tag; class name in square brackets that starts manager lines
//   kOperationPrefix              start of the operations' log lines: kClass or nothing
//   kCleanPrefix                  start of clean's log line
//   kListWord, kHandleWord        names of list id and handle in log lines
//   kCopyWords                    names of source and destination in copy's log line
//   kGet, kSet, kDelete, kClear   names of the handle operations in log lines
//   kTracesLookups                whether a successful look-up writes a line
//   format_name, kNameBytes       storage name of a new list: its format and the longest length accepted
//   kRemoveWords, kRemoveByRecIdWords
//                                 names of list id and record id in the log lines of the two removals
//   TracedRecordId                the width to which those lines cut the record id
//   trace_record(operation, record)
//                                 logs a record that was read or is updated
//   kRemovesFromOpenListsOnly     whether a removal fails for a list that is not open
//   trace_removed(status)         logs the result of a removal, still under the lock
#pragma once

#include "channellist/HandleMap.h"
#include "jni/log/log_gate.h"
#include "middleware/list_calls.h"
#include "text/identifier.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace tavro {

// What the operations return.
inline constexpr int kDone = 0;
inline constexpr int kFailed = -22;
inline constexpr int kNoSuchRecordIdentifier = -1; // from removals, for text without a comma

// List ids, record ids and positions are 32-bit numbers to Java and 16-bit ones to the middleware.
constexpr std::uint16_t low16(int number) { return static_cast<std::uint16_t>(number); }

// Names of the two numbers in a log line.
struct TraceWords {
    const char* first;
    const char* second;
};

// The words that service, transport stream and network lists use in log lines.
struct MwdbWords {
    static constexpr char kListWord[] = "mwdbId";
    static constexpr char kHandleWord[] = "mwdbHandle";
    static constexpr TraceWords kCopyWords = {"srcMwdbId", "destMwdbId"};
    static constexpr char kGet[] = "getMwdbHandle";
    static constexpr char kSet[] = "setMwdbHandle";
    static constexpr char kDelete[] = "deleteMwdbHandle";
    static constexpr char kClear[] = "clearMwdbHandle";
};

// The 17 calls that every list kind has, as members of its traits type.
#define TAVRO_LIST_CALLS(PREFIX)                                                                                       \
    static constexpr auto mw_open = PREFIX##_open;                                                                     \
    static constexpr auto mw_create = PREFIX##_create;                                                                 \
    static constexpr auto mw_close = PREFIX##_close;                                                                   \
    static constexpr auto mw_delete = PREFIX##_delete;                                                                 \
    static constexpr auto mw_clean = PREFIX##_clean;                                                                   \
    static constexpr auto mw_copy = PREFIX##_copy_date;                                                                \
    static constexpr auto mw_sync = PREFIX##_fs_sync;                                                                  \
    static constexpr auto mw_store = PREFIX##_fs_store;                                                                \
    static constexpr auto mw_lock = PREFIX##_lock;                                                                     \
    static constexpr auto mw_unlock = PREFIX##_unlock;                                                                 \
    static constexpr auto mw_read_lock = PREFIX##_read_lock;                                                           \
    static constexpr auto mw_read_unlock = PREFIX##_read_unlock;                                                       \
    static constexpr auto mw_query_record_id = PREFIX##_qry_rec_id;                                                    \
    static constexpr auto mw_add = PREFIX##_add_rec;                                                                   \
    static constexpr auto mw_update = PREFIX##_update_rec;                                                             \
    static constexpr auto mw_remove = PREFIX##_del_rec;                                                                \
    static constexpr auto mw_get = PREFIX##_get_rec

template <class Kind>
class ListManager {
public:
    using Record = typename Kind::Record;

    ListManager() = default;
    ListManager(const ListManager&) = delete;
    ListManager& operator=(const ListManager&) = delete;

    // close releases the handle of a list and keeps the list; _delete removes the list with its records. A list that is
    // not open is opened first. After a failure the list stays open and the call can be repeated.
    int close(int list_id) { return give_back("close", list_id, Kind::mw_close); }
    int _delete(int list_id) { return give_back("_delete", list_id, Kind::mw_delete); }

    // Removes all records, under the list's write lock.
    int clean(int list_id) {
        trace_list(Kind::kCleanPrefix, "clean", list_id);
        MwdbHandle handle = 0;
        if (!resolve(list_id, handle) || handle == 0) {
            return kFailed;
        }
        return result_of(under_write_lock(handle, [&] { return Kind::mw_clean(handle); }));
    }

    // Replaces the destination's records with the source's. Takes no lock; the bridge holds the destination's.
    int copy(int source_id, int destination_id) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d %s = %d\n", Kind::kOperationPrefix, "copy", Kind::kCopyWords.first,
                        source_id, Kind::kCopyWords.second, destination_id);
        MwdbHandle source = 0;
        MwdbHandle destination = 0;
        if (!resolve(source_id, source) || !resolve(destination_id, destination) || source == 0 || destination == 0) {
            return kFailed;
        }
        return result_of(Kind::mw_copy(source, destination));
    }

    // Writes the list to the file at `path`, under its write lock. An empty path fails.
    int store(int list_id, const std::string& path) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d path = %s\n", Kind::kOperationPrefix, "store", Kind::kListWord,
                        list_id, path.c_str());
        MwdbHandle handle = 0;
        if (path.empty() || !resolve(list_id, handle) || handle == 0) {
            return kFailed;
        }
        return result_of(
            under_write_lock(handle, [&] { return Kind::mw_store(handle, path.c_str(), HandleMap::key(list_id)); }));
    }

    // Replaces the record that carries the same id.
    int updateInfo(int list_id, Record* record) {
        trace_list("updateInfo", list_id);
        MwdbHandle handle = 0;
        if (!resolve(list_id, handle)) {
            return kFailed;
        }
        Kind::trace_record("updateInfo", *record);
        return handle == 0 ? kFailed : result_of(Kind::mw_update(handle, record, kMwUpdatePlain));
    }

    // Removes one record under the list's write lock. `identifier` is "list id, comma, record id". Returns -1 for text
    // without a comma; a part that is not a number throws std::stoi's exception.
    int removeInfo(const std::string& identifier) {
        int list_id = 0;
        int record_id = 0;
        if (!split_identifier("removeInfo", identifier, &list_id, record_id)) {
            return kNoSuchRecordIdentifier;
        }
        trace_record_id("removeInfo", Kind::kRemoveWords, list_id, record_id);
        return remove_record(list_id, record_id);
    }

    // The same in the list `list_id`; the list id in the text is ignored.
    int removeInfoByRecId(int list_id, const std::string& identifier) {
        int record_id = 0;
        if (!split_identifier("removeInfoByRecId", identifier, nullptr, record_id)) {
            return kNoSuchRecordIdentifier;
        }
        trace_record_id("removeInfoByRecId", Kind::kRemoveByRecIdWords, list_id, record_id);
        return remove_record(list_id, record_id);
    }

protected:
    // Closes every handle of the kind. The handle map belongs to the process, so this also closes lists that other
    // managers opened; they are opened again on next use. A manager with members that must outlive the handles closes
    // them in its own destructor.
    ~ListManager() { clear_handles(); }

    static int result_of(MwStatus status) { return status == kMwOk ? kDone : kFailed; }

    // Log line of a handle operation: "mwdbId = 3 mwdbHandle:0x1f".
    static void trace_handle(const char* operation, HandleMap::Key key, MwdbHandle handle) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d %s:0x%x\n", Kind::kClass, operation, Kind::kListWord, key,
                        Kind::kHandleWord, handle);
    }

    // First log line of most operations: "mwdbId = 3 ".
    static void trace_list(const char* prefix, const char* operation, int list_id) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d \n", prefix, operation, Kind::kListWord, list_id);
    }
    static void trace_list(const char* operation, int list_id) {
        trace_list(Kind::kOperationPrefix, operation, list_id);
    }

    static void trace_open_path(int list_id, const std::string& path) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d path = %s \n", Kind::kOperationPrefix, "open", Kind::kListWord,
                        list_id, path.c_str());
    }

    // Finds the handle of an open list. Leaves `handle` alone and returns false when it is not open.
    static bool find_handle(int list_id, MwdbHandle& handle) {
        const MwdbHandle* found = Kind::handles().find(list_id);
        if (found == nullptr) {
            return false;
        }
        handle = *found;
        if constexpr (Kind::kTracesLookups) {
            trace_handle(Kind::kGet, HandleMap::key(list_id), handle);
        }
        return true;
    }

    // Records the handle of a list, opening the list first unless `opened`. Returns false when opening fails, when list
    // id or handle is 0, and when the list has a handle already; a recorded handle is never replaced.
    static bool record_handle(int list_id, MwdbHandle& handle, bool opened) {
        if (!opened && Kind::mw_open(HandleMap::key(list_id), 0, 0, &handle) != kMwOk) {
            return false;
        }
        if (HandleMap::key(list_id) == 0 || handle == 0) {
            return false;
        }
        const bool inserted = Kind::handles().insert(list_id, handle);
        trace_handle(Kind::kSet, HandleMap::key(list_id), *Kind::handles().find(list_id));
        return inserted;
    }

    // Forgets the handle of a list. `handle` must not be 0 and is otherwise ignored.
    static bool forget_handle(int list_id, MwdbHandle handle) {
        const MwdbHandle* found = Kind::handles().find(list_id);
        if (found != nullptr && handle != 0) {
            trace_handle(Kind::kDelete, HandleMap::key(list_id), *found);
            Kind::handles().erase(list_id);
        }
        return true;
    }

    static void clear_handles() {
        for (const auto& [key, handle] : Kind::handles()) {
            trace_handle(Kind::kClear, key, handle);
            Kind::mw_close(handle);
        }
        Kind::handles().clear();
    }

    // Turns a list id into a handle, opening the list when it is not open.
    static bool resolve(int list_id, MwdbHandle& handle) {
        return find_handle(list_id, handle) || record_handle(list_id, handle, false);
    }

    // Makes one middleware call under the list's write lock. Lock errors are ignored; the call is made regardless.
    template <class Call>
    static MwStatus under_write_lock(MwdbHandle handle, Call call) {
        Kind::mw_lock(handle);
        const MwStatus status = call();
        Kind::mw_unlock(handle);
        return status;
    }

    using HandleCall = MwStatus (*)(MwdbHandle);

    // Makes one of the four lock calls on a list named by its id.
    static int call_on_list(int list_id, HandleCall call) {
        MwdbHandle handle = 0;
        return resolve(list_id, handle) ? result_of(call(handle)) : kFailed;
    }

    // Reads a record by its id, then calls `after`, also when the read failed.
    template <class After>
    static int read_record(int list_id, int record_id, Record* record, After after) {
        MwdbHandle handle = 0;
        if (!resolve(list_id, handle) || handle == 0) {
            return kFailed;
        }
        std::int32_t version = 0;
        const MwStatus status = Kind::mw_get(handle, low16(record_id), record, &version);
        after();
        return result_of(status);
    }
    static int read_record(int list_id, int record_id, Record* record) {
        return read_record(list_id, record_id, record, [] {});
    }

    // The same with log lines of the ids and of the record, also when the read failed.
    static int read_record_traced(int list_id, int record_id, Record* record) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d recId = %d\n", Kind::kClass, "getInfo", Kind::kListWord, list_id,
                        record_id);
        return read_record(list_id, record_id, record, [&] { Kind::trace_record("getInfo", *record); });
    }

    // Opens a list, or creates it when that fails. Returns false when the storage name does not fit; otherwise `status`
    // is the status of the last call.
    static bool open_or_create(int list_id, MwdbHandle& handle, MwStatus& status) {
        const HandleMap::Key key = HandleMap::key(list_id);
        status = Kind::mw_open(key, 0, 0, &handle);
        if (status == kMwOk) {
            return true;
        }
        // The middleware stores lists under these names. Names count from 0, ids from 1.
        char name[Kind::kNameBytes] = {};
        const int length = Kind::format_name(name, sizeof(name), key == 0 ? 0 : key - 1);
        if (length <= 0 || length > Kind::kNameBytes) {
            return false;
        }
        status = Kind::mw_create(name, key, kMwCreateMode, kMwCreateGrowth, 0, 0, &handle);
        return true;
    }

    // Splits a record identifier. Returns false and logs an error when it has no comma. A part that is not a number
    // throws std::stoi's exception. `list_id` may be null.
    static bool split_identifier(const char* operation, const std::string& identifier, int* list_id, int& record_id) {
        TAVRO_LOG_DEBUG(Kind::kTag, "[%s]: string recId = %s \n", operation, identifier.c_str());
        int list = 0;
        if (take_apart(identifier, list, record_id)) {
            if (list_id != nullptr) {
                *list_id = list;
            }
            return true;
        }
        const std::size_t comma = identifier.find(',');
        if (comma == std::string::npos) {
            TAVRO_LOG_ERROR(Kind::kTag, "Unknown recId info.\n");
            return false;
        }
        if (list_id != nullptr) {
            *list_id = decimal(std::string_view(identifier).substr(0, comma));
        }
        record_id = decimal(std::string_view(identifier).substr(comma + 1));
        return true;
    }

    // Log line of the record that an identifier names: "svlId = 3, svlRecId = 17 ".
    static void trace_record_id(const char* operation, TraceWords words, int list_id, int record_id) {
        TAVRO_LOG_DEBUG(Kind::kTag, "[%s]: %s = %d, %s = %u \n", operation, words.first, list_id, words.second,
                        static_cast<unsigned int>(static_cast<typename Kind::TracedRecordId>(record_id)));
    }

private:
    int give_back(const char* operation, int list_id, HandleCall call) {
        trace_list(operation, list_id);
        MwdbHandle handle = 0;
        if (!resolve(list_id, handle) || handle == 0 || call(handle) != kMwOk) {
            return kFailed;
        }
        forget_handle(list_id, handle);
        return kDone;
    }

    static int remove_record(int list_id, int record_id) {
        MwdbHandle handle = 0;
        const bool found = Kind::kRemovesFromOpenListsOnly ? find_handle(list_id, handle) : resolve(list_id, handle);
        if (!found || handle == 0) {
            return kFailed;
        }
        return result_of(under_write_lock(handle, [&] {
            const MwStatus status = Kind::mw_remove(handle, low16(record_id));
            Kind::trace_removed(status);
            return status;
        }));
    }
};

// The handle operations of the service, transport stream and network list managers.
template <class Manager>
class WithMwdbHandles : public Manager {
public:
    // Gets the handle of an open list. Returns false and leaves `mwdbHandle` alone when the list is not open.
    bool getMwdbHandle(int mwdbId, unsigned int& mwdbHandle) { return Manager::find_handle(mwdbId, mwdbHandle); }
    // Records a handle, opening the list first unless `opened`. Returns whether a new entry was made.
    bool setMwdbHandle(int mwdbId, unsigned int& mwdbHandle, bool opened) {
        return Manager::record_handle(mwdbId, mwdbHandle, opened);
    }
    // Forgets the handle of a list; always true.
    bool deleteMwdbHandle(int mwdbId, unsigned int mwdbHandle) { return Manager::forget_handle(mwdbId, mwdbHandle); }
    // Closes every open list of the kind.
    void clearMwdbHandle() { Manager::clear_handles(); }
};

} // namespace tavro
