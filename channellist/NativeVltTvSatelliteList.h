// The store of the satellite lists (SATL).
#pragma once

#include "channellist/CompanionListStore.h"
#include "middleware/satl.h"

#include <string>

// What the shared schemes need to know of satellite lists. Their traces have words of their own, name the
// class only where a handle or a position is told, and tell nothing of the records.
struct SatlKind {
    using Record = _SATL_REC_T;
    using TracedRecordId = unsigned int;
    using Index = std::int32_t;
    TAVRO_LIST_CALLS(x_satl);
    static constexpr auto mw_get_by_index = x_satl_get_rec_by_rec_idx;
    static constexpr auto mw_count = x_satl_get_num_recs;

    static HandleMap& handles();

    static constexpr char kTag[] = "[SATELITE] NativeVltTvSatelliteList_Cpp"; // misspelt on purpose
    static constexpr char kClass[] = "[NativeVltTvSatelliteList]";
    static constexpr char kOperationPrefix[] = "";
    static constexpr char kCleanPrefix[] = "";
    static constexpr char kListWord[] = "satId";
    static constexpr char kHandleWord[] = "satHandle";
    static constexpr TraceWords kCopyWords = {"srcSatId", "destSatId"};
    static constexpr char kGet[] = "getSatHandle";
    static constexpr char kSet[] = "setSatHandle";
    static constexpr char kDelete[] = "deleteSatHandle";
    static constexpr char kClear[] = "clearSatHandle";
    static constexpr bool kTracesLookups = true;
    static constexpr TraceWords kRemoveWords = {"satId", "satRecId"};
    static constexpr TraceWords kRemoveByRecIdWords = {"mwdbId", "nwlRecId"}; // the network list's, on purpose
    static constexpr bool kRemovesFromOpenListsOnly = false;
    static void trace_removed(MwStatus) {}

    static constexpr int kNameBytes = 65;
    static int format_name(char* name, std::size_t size, int number) {
        return std::snprintf(name, size, "fs_satl_%d", number);
    }

    static std::uint16_t& record_id(_SATL_REC_T& record) { return record.ui2_satl_rec_id; }
    static void stamp_list(_SATL_REC_T&, int) {} // satellite records do not name their list
    static void trace_record(const char*, const _SATL_REC_T&) {}
    static void trace_count(const char* operation, std::uint16_t number);
    static void trace_added(const char* operation, const _SATL_REC_T& record);
    static void trace_add_failed();
};

// Manager of the satellite lists; see NativeVltTvChannelList for the rules that all managers keep.
class NativeVltTvSatelliteList : public CompanionListStore<SatlKind> {
public:
    // The handle of an open list; false, with `satHandle` as it was, when the list is not open.
    bool getSatHandle(int satId, unsigned int* satHandle) { return find_handle(satId, *satHandle); }
    // Records a handle, opening the list first unless `opened`; true when a new entry was made.
    bool setSatHandle(int satId, unsigned int* satHandle, bool opened) {
        return record_handle(satId, *satHandle, opened);
    }
    // Forgets the handle of a list; always true.
    bool deleteSatHandle(int satId, unsigned int satHandle) { return forget_handle(satId, satHandle); }
    // Closes every open satellite list.
    void clearSatHandle() { clear_handles(); }

    using CompanionListStore::open;
    // The same, loading the list from the file at `path`. A list that is open already gives 0, whatever the
    // path; -22 only when another's path is empty or the list cannot be recorded.
    int open(int satId, const std::string& path);

    int lockSatl(int satId) { return call_on_list(satId, x_satl_lock); }
    int unLockSatl(int satId) { return call_on_list(satId, x_satl_unlock); }
    int readLockSatl(int satId) { return call_on_list(satId, x_satl_read_lock); }
    int readUnLockSatl(int satId) { return call_on_list(satId, x_satl_read_unlock); }

    // Reads the record that `recId` names, "list id, comma, record id"; text without a comma gives -1 and
    // text that is no number raises std::stoi's exception.
    int getInfo(const std::string& recId, _SATL_REC_T* rec);
};
