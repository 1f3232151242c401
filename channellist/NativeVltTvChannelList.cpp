#include "channellist/NativeVltTvChannelList.h"

#include "middleware/files.h"

namespace tavro {

HandleMap& SvlKind::handles() {
    static HandleMap m_mwdbIdHandleMap;
    return m_mwdbIdHandleMap;
}

namespace {

constexpr auto& kTag = SvlKind::kTag;
constexpr auto& kClass = SvlKind::kClass;

constexpr char kCableCache[] = "/cache/scan_cable.bin";
constexpr char kTerrestrialCache[] = "/cache/scan_terrestrial.bin";

void trace_handle_set(const char* operation, int number) {
    TAVRO_LOG_DEBUG(kTag, "%s[%s]: mwdbId = %d set handle ok \n", kClass, operation, number);
}

} // namespace

void SvlKind::trace_record(const char* operation, const _SVL_REC_T& record) {
    TAVRO_LOG_DEBUG(kTag, "%s[%s]:rec_id:%d ui2_prog_id:%d ac_name:%.*s\n", kClass, operation, record.ui2_svl_rec_id,
                    record.t_header.ui2_svc_id, TAVRO_BOUNDED(record.t_header.ac_name));
}

} // namespace tavro

using namespace tavro;

int NativeVltTvChannelList::open(int mwdbId) {
    trace_list("open", mwdbId);
    MwdbHandle handle = 0;
    if (find_handle(mwdbId, handle)) {
        return kDone;
    }
    MwStatus status = kMwOk;
    if (!open_or_create(mwdbId, handle, status) || status != kMwOk || !record_handle(mwdbId, handle, true)) {
        return kFailed;
    }
    trace_handle_set("open", mwdbId);
    return kDone;
}

int NativeVltTvChannelList::open(int mwdbId, const std::string& listPath) {
    trace_open_path(mwdbId, listPath);
    if (listPath.empty()) {
        return kFailed;
    }
    path = listPath;

    MwdbHandle handle = 0;
    if (find_handle(mwdbId, handle)) {
        if (getInfoListNum(handle) == 0 &&
            x_svl_fs_sync(handle, kMwRootDrive, listPath.c_str(), HandleMap::key(mwdbId)) == kMwNotAListFile) {
            fs_raw_init(kMwRootDrive, listPath.c_str());
        }
        return kDone;
    }

    MwStatus status = kMwOk;
    if (!open_or_create(mwdbId, handle, status)) {
        return kFailed;
    }
    if (status == kMwOk && handle != 0) {
        status = x_svl_fs_sync(handle, kMwRootDrive, listPath.c_str(), HandleMap::key(mwdbId));
        if (!record_handle(mwdbId, handle, true)) {
            return kFailed;
        }
    }
    if (status == kMwNotAListFile && fs_raw_init(kMwRootDrive, listPath.c_str()) == kMwOk) {
        TAVRO_LOG_ERROR(kTag, "%s[%s]: init current path  ps_svl_path %s \n", kClass, "open", listPath.c_str());
    }
    if (status == kMwNoFile || status == kMwNotAListFile) {
        seed_from_cache(mwdbId, handle, listPath);
    }
    return kDone;
}

// Loads a scan list from the scan cache after its own file could not be loaded, then deletes the cache.
void NativeVltTvChannelList::seed_from_cache(int mwdbId, MwdbHandle handle, const std::string& listPath) {
    if (listPath.find("scan_") == std::string::npos) {
        return;
    }
    const char* cache = listPath.find("cable") != std::string::npos ? kCableCache : kTerrestrialCache;
    std::uint32_t words[3] = {};
    const MwStatus found = fs_raw_qry_fpath(kMwRootDrive, cache, &words[0], &words[1], &words[2]);
    TAVRO_LOG_ERROR(kTag, "%s[%s]: find cache path, i4_ret %d\n", kClass, "open", found);
    if (found != kMwOk) {
        return;
    }
    TAVRO_LOG_ERROR(kTag, "%s[%s]: Try to copy cache! \n", kClass, "open");
    fs_raw_init(kMwRootDrive, cache);
    // Deliberate: the middleware gets a fresh copy of the path.
    fs_raw_copy(kMwRootDrive, cache, kMwRootDrive, std::string(listPath).c_str());
    const MwStatus loaded = x_svl_fs_sync(handle, kMwRootDrive, cache, HandleMap::key(mwdbId));
    TAVRO_LOG_ERROR(kTag, "%s[%s]:copy ps_svl_path2 %s\n", kClass, "open", listPath.c_str());
    if (loaded == kMwOk) {
        const MwStatus deleted = x_fm_delete_file(kMwRootDrive, cache);
        TAVRO_LOG_ERROR(kTag, "%s[%s]: cache file deleted! i4_ret%d \n", kClass, "open", deleted);
    }
}

unsigned int NativeVltTvChannelList::openTmp(int mwdbId) {
    trace_list("openTmp", mwdbId);
    MwdbHandle handle = 0;
    if (x_svl_open(HandleMap::key(mwdbId), 0, 0, &handle) != kMwOk) {
        return 0;
    }
    trace_handle_set("openTmp", mwdbId);
    return handle;
}

int NativeVltTvChannelList::closeTmp(unsigned int mwdbHandle) {
    TAVRO_LOG_DEBUG(kTag, "%s[%s]:\n", kClass, "closeTmp");
    if (x_svl_close(mwdbHandle) != kMwOk) {
        return kFailed;
    }
    trace_handle_set("closeTmp", static_cast<int>(mwdbHandle));
    return kDone;
}

int NativeVltTvChannelList::addInfo(int mwdbId, _SVL_REC_T* rec) {
    trace_list("addInfo", mwdbId);
    MwdbHandle handle = 0;
    if (!resolve(mwdbId, handle)) {
        return kFailed;
    }
    std::uint16_t newId = 0;
    if (x_svl_qry_rec_id(handle, kMwQueryNextRecordId, &newId) != kMwOk || newId >= kMwNoRecordId) {
        return kFailed;
    }
    rec->ui2_svl_rec_id = newId;
    SvlKind::trace_record("addInfo", *rec);
    if (handle == 0) {
        return kDone; // deliberate: returns success although nothing is added
    }
    return result_of(x_svl_add_rec(handle, rec));
}

int NativeVltTvChannelList::copyInfo(int mwdbId, _SVL_REC_T* rec) {
    trace_list("copyInfo", mwdbId);
    MwdbHandle handle = 0;
    if (!resolve(mwdbId, handle)) {
        return kFailed;
    }
    if (rec != nullptr && handle != 0 && x_svl_add_rec(handle, rec) == kMwOk) {
        TAVRO_LOG_DEBUG(kTag, "[%s]: x_svl_add_rec OK , svl_rec_id=%d  \n", "copyInfo", rec->ui2_svl_rec_id);
        return kDone;
    }
    TAVRO_LOG_DEBUG(kTag, "[%s]: fail \n", "copyInfo");
    return kFailed;
}

int NativeVltTvChannelList::getInfoListNum(unsigned int mwdbHandle) {
    trace_list("getInfoListNum", static_cast<int>(mwdbHandle));
    if (mwdbHandle == 0) {
        return 0;
    }
    std::uint16_t count = 0;
    std::int32_t version = 0;
    const MwStatus status =
        x_svl_get_num_rec_by_brdcst_type(mwdbHandle, kMwEveryBroadcastType, kMwEveryNetworkMask, &count, &version);
    return status == kMwOk ? count : 0;
}

int NativeVltTvChannelList::getInfoListNum(unsigned int mwdbHandle, int tsKey1, int tsKey2) {
    trace_list("getInfoListNum", static_cast<int>(mwdbHandle));
    if (mwdbHandle == 0) {
        return 0;
    }
    std::uint16_t count = 0;
    std::int32_t version = 0;
    const MwStatus status =
        x_svl_get_num_rec_by_ts(mwdbHandle, low16(tsKey1), low16(tsKey2), kMwEveryNetworkMask, &count, &version);
    return status == kMwOk ? count : 0;
}
