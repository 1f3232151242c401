// The manager of the transport stream lists (TSL).
#pragma once

#include "channellist/CompanionListManager.h"
#include "middleware/tsl.h"

#include <string>

namespace tavro {

// The traits of transport stream lists.
struct TslKind : MwdbWords {
    using Record = _TSL_REC_T;
    using TracedRecordId = std::uint16_t;
    using Index = std::uint16_t;
    TAVRO_LIST_CALLS(x_tsl);
    static constexpr auto mw_get_by_index = x_tsl_get_rec_by_rec_idx;
    static constexpr auto mw_count = x_tsl_get_num_recs;

    static HandleMap& handles();

    static constexpr char kTag[] = "NativeVltTvTransportStreamList_Cpp";
    static constexpr char kClass[] = "[NativeVltTvTransportStreamList]";
    static constexpr auto& kOperationPrefix = kClass;
    static constexpr auto& kCleanPrefix = kClass;
    static constexpr bool kTracesLookups = false;
    static constexpr TraceWords kRemoveWords = {"tslId", "tslRecId"};
    static constexpr TraceWords kRemoveByRecIdWords = {"mwdbId", "tslRecId"};
    static constexpr bool kOpenListTakesEmptyPath = false;
    static constexpr bool kRemovesFromOpenListsOnly = true;
    static void trace_removed(MwStatus status) { TAVRO_LOG_ERROR(kTag, "i4_ret: %d", status); }

    static constexpr int kNameBytes = 32;
    static int format_name(char* name, std::size_t size, int number) {
        return std::snprintf(name, size, "fs_Tsl_%d", number);
    }

    static std::uint16_t& record_id(_TSL_REC_T& record) { return record.ui2_tsl_rec_id; }
    static void stamp_list(_TSL_REC_T& record, int list_id);
    static void trace_record(const char* operation, const _TSL_REC_T& record);
    static void trace_count(const char*, std::uint16_t) {}
    static void trace_added(const char* operation, const _TSL_REC_T& record);
    static void trace_add_failed();
};

} // namespace tavro

// Manager of the transport stream lists; see NativeVltTvChannelList for the rules that all managers
// keep.
class NativeVltTvTransportStreamList : public tavro::WithMwdbHandles<tavro::CompanionListManager<tavro::TslKind>> {
public:
    int lockTsl(int mwdbId) { return call_on_list(mwdbId, tavro::TslKind::mw_lock); }
    int unLockTsl(int mwdbId) { return call_on_list(mwdbId, tavro::TslKind::mw_unlock); }
    int readLockTsl(int mwdbId) { return call_on_list(mwdbId, tavro::TslKind::mw_read_lock); }
    int readUnLockTsl(int mwdbId) { return call_on_list(mwdbId, tavro::TslKind::mw_read_unlock); }

    int getInfo(int mwdbId, int recId, _TSL_REC_T* rec) { return read_record(mwdbId, recId, rec); }

    // As getInfoByIdx and getInfoListNum, among the records of one satellite record.
    int getInfoByIdxBySatellite(int mwdbId, int satlId, int satKey, int idx, int* version, _TSL_REC_T* rec);
    int getInfoListNumBySatellite(int mwdbId, int satlId, int satKey);

    // Placeholders of the interface.
    int getInfoList(int /*mwdbId*/) { return tavro::kDone; }
    int updateInfoList(int mwdbId);
};
