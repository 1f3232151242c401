// The store of the service lists (SVL).
#pragma once

#include "channellist/ListStore.h"
#include "middleware/svl.h"

#include <cstdint>
#include <string>
#include <utility>

// What the shared scheme needs to know of service lists.
struct SvlKind : MwdbWords {
    using Record = _SVL_REC_T;
    using TracedRecordId = unsigned int;
    TAVRO_LIST_CALLS(x_svl);

    static HandleMap& handles();

    static constexpr char kTag[] = "NativeVltTvChannelList_Cpp";
    static constexpr char kClass[] = "[NativeVltTvChannelList]";
    static constexpr auto& kOperationPrefix = kClass;
    static constexpr char kCleanPrefix[] = "[NativeVltChannelList]"; // without "Tv", deliberately
    static constexpr bool kTracesLookups = true;
    static constexpr TraceWords kRemoveWords = {"svlId", "svlRecId"};
    static constexpr TraceWords kRemoveByRecIdWords = {"mwdbId", "svlRecId"};
    static constexpr bool kRemovesFromOpenListsOnly = false;
    static void trace_removed(MwStatus) {}
    static void trace_record(const char* operation, const _SVL_REC_T& record);

    static constexpr int kNameBytes = 32;
    static int format_name(char* name, std::size_t size, int number) {
        return std::snprintf(name, size, "fs_Svl_%d", number);
    }
};

// Manager of the service lists. List ids count by their low 16 bits, 0 standing for no list. Unless
// told otherwise an operation opens the list when it is not open, and returns 0 or, for every failure,
// -22. Takes no lock of its own: see HandleMap.
class NativeVltTvChannelList : public WithMwdbHandles<ListStore<SvlKind>> {
public:
    NativeVltTvChannelList() = default;
    // Closes the handles, and releases the path when that is done.
    ~NativeVltTvChannelList() { clearMwdbHandle(); }

    // Opens a list, creating it when there is none.
    int open(int mwdbId);
    // The same, loading the list from the file at `listPath`, which becomes the manager's. A list that is open and has
    // records is left as it is. A list whose file cannot be loaded is seeded from the scan cache when the path names a
    // scan list. -22 only when the path is empty or the list cannot be recorded.
    int open(int mwdbId, const std::string& listPath);
    // Opens a list without recording it, for a walk under its read lock. Returns the handle, which the
    // caller gives back with closeTmp, or 0.
    unsigned int openTmp(int mwdbId);
    int closeTmp(unsigned int mwdbHandle);

    int lockSvl(int mwdbId) { return call_on_list(mwdbId, x_svl_lock); }
    int unLockSvl(int mwdbId) { return call_on_list(mwdbId, x_svl_unlock); }
    int readLockSvl(unsigned int mwdbHandle) { return result_of(x_svl_read_lock(mwdbHandle)); }
    int unReadLockSvl(unsigned int mwdbHandle) { return result_of(x_svl_read_unlock(mwdbHandle)); }

    // Adds a record under the next free record id, which is written into it.
    int addInfo(int mwdbId, _SVL_REC_T* rec);
    // Adds a record under the id that it carries.
    int copyInfo(int mwdbId, _SVL_REC_T* rec);
    // Reads a record into `rec`, which the caller zeroes.
    int getInfo(int mwdbId, int recId, _SVL_REC_T* rec) { return read_record_traced(mwdbId, recId, rec); }

    // Reads by position and counts, on a handle that the caller holds. `tsKey1` and `tsKey2` are the list
    // id and record id of a transport stream. Counts are 0 on failure.
    int getInfoByIdx(int idx, unsigned int mwdbHandle, int* version, _SVL_REC_T* rec) {
        return mwdbHandle == 0 ? kFailed
                               : result_of(x_svl_get_rec_by_brdcst_type(mwdbHandle, kMwEveryBroadcastType,
                                                                        kMwEveryNetworkMask, low16(idx), rec, version));
    }
    int getInfoByIdx(int tsKey1, int tsKey2, int idx, unsigned int mwdbHandle, int* version, _SVL_REC_T* rec) {
        return mwdbHandle == 0 ? kFailed
                               : result_of(x_svl_get_rec_by_ts(mwdbHandle, low16(tsKey1), low16(tsKey2),
                                                               kMwEveryNetworkMask, low16(idx), rec, version));
    }
    int getInfoListNum(unsigned int mwdbHandle);
    int getInfoListNum(unsigned int mwdbHandle, int tsKey1, int tsKey2);

    // Placeholders of the interface.
    int getInfoList(int /*mwdbId*/) { return kDone; }
    int updateInfoList(int /*mwdbId*/) { return kFailed; }

    // The path last given to open or setPath; empty at first.
    std::string getPath() const { return path; }
    void setPath(std::string newPath) { path = std::move(newPath); }

private:
    void seed_from_cache(int mwdbId, MwdbHandle handle, const std::string& listPath);

    std::string path;
};
