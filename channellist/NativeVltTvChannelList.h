// The manager of the service lists (SVL).
#pragma once

#include "channellist/ListManager.h"
#include "middleware/svl.h"

#include <cstdint>
#include <string>
#include <utility>

namespace tavro {

// The traits of service lists.
struct SvlKind : MwdbWords {
    using Record = _SVL_REC_T;
    using TracedRecordId = unsigned int;
    TAVRO_LIST_CALLS(x_svl);

    static HandleMap& handles();

    static constexpr char kTag[] = "NativeVltTvChannelList_Cpp";
    static constexpr char kClass[] = "[NativeVltTvChannelList]";
    static constexpr auto& kOperationPrefix = kClass;
    static constexpr char kCleanPrefix[] = "[NativeVltChannelList]"; // deliberate: without "Tv"
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

} // namespace tavro

// Manager of the service lists. Only the low 16 bits of a list id count, and 0 means no list. Unless stated otherwise,
// an operation opens a list that is not open and returns 0, or -22 for every failure. Not thread-safe: see HandleMap.
class NativeVltTvChannelList : public tavro::WithMwdbHandles<tavro::ListManager<tavro::SvlKind>> {
public:
    NativeVltTvChannelList() = default;
    // Closes the handles before the path is released.
    ~NativeVltTvChannelList() { clearMwdbHandle(); }

    // Opens a list, creating it when there is none.
    int open(int mwdbId);
    // The same, then loads the list from the file at `listPath` and keeps the path. An open list that has records is
    // left alone. If the file cannot be loaded and the path names a scan list, the list is loaded from the scan cache.
    // Returns -22 only when the path is empty or the list cannot be recorded.
    int open(int mwdbId, const std::string& listPath);
    // Opens a list without recording it, for reading under its read lock. Returns the handle, to be closed with
    // closeTmp, or 0 on failure.
    unsigned int openTmp(int mwdbId);
    int closeTmp(unsigned int mwdbHandle);

    int lockSvl(int mwdbId) { return call_on_list(mwdbId, tavro::SvlKind::mw_lock); }
    int unLockSvl(int mwdbId) { return call_on_list(mwdbId, tavro::SvlKind::mw_unlock); }
    int readLockSvl(unsigned int mwdbHandle) { return result_of(tavro::SvlKind::mw_read_lock(mwdbHandle)); }
    int unReadLockSvl(unsigned int mwdbHandle) { return result_of(tavro::SvlKind::mw_read_unlock(mwdbHandle)); }

    // Adds a record under the next free record id and writes the id into it.
    int addInfo(int mwdbId, _SVL_REC_T* rec);
    // Adds a record under the id that it carries.
    int copyInfo(int mwdbId, _SVL_REC_T* rec);
    // Reads a record into `rec`, which the caller zeroes.
    int getInfo(int mwdbId, int recId, _SVL_REC_T* rec) { return read_record_traced(mwdbId, recId, rec); }

    // Read by position, and count, on a handle that the caller holds. `tsKey1` and `tsKey2` are the list id and record
    // id of a transport stream. A count is 0 on failure.
    int getInfoByIdx(int idx, unsigned int mwdbHandle, int* version, _SVL_REC_T* rec) {
        return mwdbHandle == 0 ? tavro::kFailed
                               : result_of(x_svl_get_rec_by_brdcst_type(mwdbHandle, tavro::kMwEveryBroadcastType,
                                                                        tavro::kMwEveryNetworkMask, tavro::low16(idx),
                                                                        rec, version));
    }
    int getInfoByIdx(int tsKey1, int tsKey2, int idx, unsigned int mwdbHandle, int* version, _SVL_REC_T* rec) {
        return mwdbHandle == 0
                   ? tavro::kFailed
                   : result_of(x_svl_get_rec_by_ts(mwdbHandle, tavro::low16(tsKey1), tavro::low16(tsKey2),
                                                   tavro::kMwEveryNetworkMask, tavro::low16(idx), rec, version));
    }
    int getInfoListNum(unsigned int mwdbHandle);
    int getInfoListNum(unsigned int mwdbHandle, int tsKey1, int tsKey2);

    // Placeholders of the interface.
    int getInfoList(int /*mwdbId*/) { return tavro::kDone; }
    int updateInfoList(int /*mwdbId*/) { return tavro::kFailed; }

    // The path of the last open or setPath; empty before.
    std::string getPath() const { return path; }
    void setPath(std::string newPath) { path = std::move(newPath); }

private:
    void seed_from_cache(int mwdbId, tavro::MwdbHandle handle, const std::string& listPath);

    std::string path;
};
