// What the transport stream, network and satellite list stores share beyond the scheme of ListStore.
//
// These lists accompany the service lists. Their records get the highest record id plus one, are added
// under the write lock and are read and counted by list id. A kind adds to what ListStore asks for:
//
//   mw_get_by_index, mw_count     the middleware's calls by position
//   Index                         the width to which positions are cut
//   record_id(record)             the record's id field
//   stamp_list(record, list_id)   writes the list's id into the record's list-id fields
//   trace_count                   what is written of a count
//   trace_added, trace_add_failed what is written after an add
#pragma once

#include "channellist/ListStore.h"
#include "middleware/files.h"

#include <string>

template <class Kind>
class CompanionListStore : public ListStore<Kind> {
    using Base = ListStore<Kind>;

public:
    using typename Base::Record;

    // Opens a list, creating it when there is none. A list that can be neither opened nor created gives 0
    // all the same and is not recorded.
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

    // Adds a record under the id that it carries, or replaces the one that has the id already. The
    // record's list-id fields, where the kind has them, are made to name this list.
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
    // Loads a list from the file at `path` while opening it, which a list that is open already is not.
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

    // Makes a read by position with its two traces.
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

    // Makes a count with its trace.
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
