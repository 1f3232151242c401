// The manager of the satellite lists (SATL).
#pragma once

#include "channellist/CompanionListManager.h"
#include "middleware/satl.h"

#include <string>

namespace tavro {

// The traits of satellite lists. Their log lines use their own wording, carry the class name only for handle and
// by-index operations, and never print a record.
struct SatlKind {
    using Record = _SATL_REC_T;
    using TracedRecordId = unsigned int;
    using Index = std::int32_t;
    TAVRO_LIST_CALLS(x_satl);
    static constexpr auto mw_get_by_index = x_satl_get_rec_by_rec_idx;
    static constexpr auto mw_count = x_satl_get_num_recs;

    static HandleMap& handles();

    static constexpr char kTag[] = "[SATELITE] NativeVltTvSatelliteList_Cpp"; // deliberate: misspelled
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
    static constexpr TraceWords kRemoveByRecIdWords = {"mwdbId", "nwlRecId"}; // deliberate: the network list's words
    static constexpr bool kOpenListTakesEmptyPath = true;
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

} // namespace tavro

// Manager of the satellite lists; see NativeVltTvChannelList for the rules that all managers keep.
class NativeVltTvSatelliteList : public tavro::CompanionListManager<tavro::SatlKind> {
public:
    // Gets the handle of an open list. Returns false and leaves `satHandle` alone when the list is not open.
    bool getSatHandle(int satId, unsigned int* satHandle) { return find_handle(satId, *satHandle); }
    // Records a handle, opening the list first unless `opened`. Returns whether a new entry was made.
    bool setSatHandle(int satId, unsigned int* satHandle, bool opened) {
        return record_handle(satId, *satHandle, opened);
    }
    // Forgets the handle of a list; always true.
    bool deleteSatHandle(int satId, unsigned int satHandle) { return forget_handle(satId, satHandle); }
    // Closes every open satellite list.
    void clearSatHandle() { clear_handles(); }

    int lockSatl(int satId) { return call_on_list(satId, tavro::SatlKind::mw_lock); }
    int unLockSatl(int satId) { return call_on_list(satId, tavro::SatlKind::mw_unlock); }
    int readLockSatl(int satId) { return call_on_list(satId, tavro::SatlKind::mw_read_lock); }
    int readUnLockSatl(int satId) { return call_on_list(satId, tavro::SatlKind::mw_read_unlock); }

    // Reads the record that `recId` names: "list id, comma, record id". Returns -1 for text without a comma; a part
    // that is not a number throws std::stoi's exception.
    int getInfo(const std::string& recId, _SATL_REC_T* rec);
};
