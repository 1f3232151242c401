// What the managers of the companion lists (transport streams, networks, satellites) share beyond ListManager.
//
// New records get the highest record id plus one and are added under the write lock. Records are read and counted by
// list id. The kind's traits type has these members in addition to those that ListManager needs:
//
//   mw_get_by_index, mw_count     the middleware's calls by position
//   Index                         the width to which positions are cut
//   record_id(record)             the record's id field
//   stamp_list(record, list_id)   writes the list's id into the record's list-id fields
//   kOpenListTakesEmptyPath       whether opening an open list from an empty path succeeds
//   trace_count                   logs a count
//   trace_added, trace_add_failed log the result of an add
#pragma once

#include "channellist/ListManager.h"
#include "middleware/files.h"

#include <string>

namespace tavro {

template <class Kind>
class CompanionListManager : public ListManager<Kind> {
    using Base = ListManager<Kind>;

public:
    using typename Base::Record;

    // Opens a list, creating it when there is none. Returns 0 even when the list can be neither opened nor created; it
    // is not recorded then.
    int open(int list_id) {
        Base::trace_list("open", list_id);
        MwdbHandle handle = 0;
        if (Base::find_handle(list_id, handle)) {
            return kDone;
        }
        MwStatus status = kMwOk;
        if (!Base::open_or_create(list_id, handle, status)) {
            return kFailed;
        }
        return status != kMwOk || Base::record_handle(list_id, handle, true) ? kDone : kFailed;
    }

    // Opens a list and loads it from the file at `path`. A list that is open already is left alone. Returns -22 only
    // when the path is empty or the list cannot be recorded.
    int open(int list_id, const std::string& path) {
        Base::trace_open_path(list_id, path);
        if (!Kind::kOpenListTakesEmptyPath && path.empty()) {
            return kFailed;
        }
        MwdbHandle handle = 0;
        if (Base::find_handle(list_id, handle)) {
            return kDone;
        }
        return path.empty() ? kFailed : open_from(list_id, path);
    }

    // Adds a record under the highest record id plus one, which is written into it.
    int addInfo(int list_id, Record* record) {
        Base::trace_list("", "addInfo", list_id);
        MwdbHandle handle = 0;
        if (!Base::resolve(list_id, handle)) {
            return kFailed;
        }
        if (record != nullptr && handle != 0) {
            std::uint16_t highest = 0;
            const MwStatus asked = Kind::mw_query_record_id(handle, kMwQueryHighestRecordId, &highest);
            const bool usable = asked == kMwOk ? highest < kMwNoRecordId : asked == kMwEmpty && highest == 0;
            if (!usable) {
                return kFailed;
            }
            Kind::record_id(*record) = low16(highest + 1);
            const MwStatus added = Base::under_write_lock(handle, [&] { return Kind::mw_add(handle, record); });
            if (added == kMwOk) {
                Kind::trace_added("addInfo", *record);
                return kDone;
            }
        }
        Kind::trace_add_failed();
        return kFailed;
    }

    // Adds a record under the id that it carries, or replaces the record with that id. Writes this list's id into the
    // record's list-id fields.
    int copyInfo(int list_id, Record* record) {
        Base::trace_list("", "copyInfo", list_id);
        MwdbHandle handle = 0;
        if (!Base::resolve(list_id, handle)) {
            return kFailed;
        }
        if (record != nullptr && handle != 0) {
            Kind::stamp_list(*record, list_id);
            const MwStatus written = Base::under_write_lock(handle, [&] {
                const MwStatus added = Kind::mw_add(handle, record);
                return added == kMwRecordExists ? Kind::mw_update(handle, record, kMwUpdateReplace) : added;
            });
            if (written == kMwOk) {
                Kind::trace_added("copyInfo", *record);
                return kDone;
            }
        }
        TAVRO_LOG_DEBUG(Kind::kTag, "[%s]: fail \n", "copyInfo");
        return kFailed;
    }

    // Reads the record at a position, counted from 0.
    int getInfoByIdx(int list_id, int index, int* version, Record* record) {
        return read_at("getInfoByIdx", list_id, index, record, [&](MwdbHandle handle) {
            return Kind::mw_get_by_index(handle, static_cast<typename Kind::Index>(index), record, version);
        });
    }

    // Counts the records: 0 when the count fails, -22 when the list cannot be opened.
    int getInfoListNum(int list_id) {
        return count("getInfoListNum", list_id, [](MwdbHandle handle, std::uint16_t* number, std::int32_t* version) {
            return Kind::mw_count(handle, number, version);
        });
    }

protected:
    // Opens a list and loads it from `path`. The caller has checked that it is not open.
    int open_from(int list_id, const std::string& path) {
        MwdbHandle handle = 0;
        MwStatus status = kMwOk;
        if (!Base::open_or_create(list_id, handle, status)) {
            return kFailed;
        }
        if (status == kMwOk && handle != 0) {
            status = Kind::mw_sync(handle, kMwRootDrive, path.c_str(), HandleMap::key(list_id));
            if (!Base::record_handle(list_id, handle, true)) {
                return kFailed;
            }
        }
        if (status == kMwNotAListFile) {
            fs_raw_init(kMwRootDrive, path.c_str());
        }
        return kDone;
    }

    // Reads by position, with its two log lines.
    template <class Read>
    static int read_at(const char* operation, int list_id, int index, Record* record, Read read) {
        TAVRO_LOG_DEBUG(Kind::kTag, "%s[%s]: %s = %d idx = %d\n", Kind::kClass, operation, Kind::kListWord, list_id,
                        index);
        MwdbHandle handle = 0;
        if (!Base::resolve(list_id, handle) || handle == 0) {
            return kFailed;
        }
        const MwStatus status = read(handle);
        Kind::trace_record(operation, *record);
        return Base::result_of(status);
    }

    // Counts, with its log lines.
    template <class Count>
    static int count(const char* operation, int list_id, Count call) {
        Base::trace_list(operation, list_id);
        MwdbHandle handle = 0;
        if (!Base::resolve(list_id, handle)) {
            return kFailed;
        }
        std::uint16_t number = 0;
        std::int32_t version = 0;
        if (handle == 0 || call(handle, &number, &version) != kMwOk) {
            number = 0;
        }
        Kind::trace_count(operation, number);
        return number;
    }
};

} // namespace tavro
