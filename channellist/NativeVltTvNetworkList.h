// The manager of the network lists (NWL).
#pragma once

#include "channellist/CompanionListManager.h"
#include "middleware/nwl.h"

#include <string>

namespace tavro {

// The traits of network lists.
struct NwlKind : MwdbWords {
    using Record = _NWL_REC_T;
    using TracedRecordId = unsigned int;
    using Index = std::uint16_t;
    TAVRO_LIST_CALLS(x_nwl);
    static constexpr auto mw_get_by_index = x_nwl_get_rec_by_rec_idx;
    static constexpr auto mw_count = x_nwl_get_num_rec;

    static HandleMap& handles();

    static constexpr char kTag[] = "NativeVltTvNetworkList_Cpp";
    static constexpr char kClass[] = "[NativeVltTvNetworkList]";
    static constexpr auto& kOperationPrefix = kClass;
    static constexpr auto& kCleanPrefix = kClass;
    static constexpr bool kTracesLookups = true;
    static constexpr TraceWords kRemoveWords = {"nwlId", "nwlRecId"};
    static constexpr TraceWords kRemoveByRecIdWords = {"mwdbId", "nwlRecId"};
    static constexpr bool kOpenListTakesEmptyPath = false;
    static constexpr bool kRemovesFromOpenListsOnly = false;
    static void trace_removed(MwStatus) {}

    static constexpr int kNameBytes = 32;
    static int format_name(char* name, std::size_t size, int number) {
        return std::snprintf(name, size, "fs_Nwl_%d", number);
    }

    static std::uint16_t& record_id(_NWL_REC_T& record) { return record.ui2_nwl_rec_id; }
    static void stamp_list(_NWL_REC_T& record, int list_id) { record.ui2_nwl_id = low16(list_id); }
    static void trace_record(const char* operation, const _NWL_REC_T& record);
    static void trace_count(const char* operation, std::uint16_t number);
    static void trace_added(const char* operation, const _NWL_REC_T& record);
    static void trace_add_failed();
};

} // namespace tavro

// Manager of the network lists; see NativeVltTvChannelList for the rules that all managers keep.
class NativeVltTvNetworkList : public tavro::WithMwdbHandles<tavro::CompanionListManager<tavro::NwlKind>> {
public:
    int lockNwl(int mwdbId) { return call_on_list(mwdbId, tavro::NwlKind::mw_lock); }
    int unLockNwl(int mwdbId) { return call_on_list(mwdbId, tavro::NwlKind::mw_unlock); }
    int readLockNwl(int mwdbId) { return call_on_list(mwdbId, tavro::NwlKind::mw_read_lock); }
    int readUnLockNwl(int mwdbId) { return call_on_list(mwdbId, tavro::NwlKind::mw_read_unlock); }

    int getInfo(int mwdbId, int recId, _NWL_REC_T* rec) { return read_record_traced(mwdbId, recId, rec); }

    // Placeholders of the interface.
    int getInfoList(int mwdbId);
    int updateInfoList(int mwdbId);
};
