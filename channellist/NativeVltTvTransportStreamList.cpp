#include "channellist/NativeVltTvTransportStreamList.h"

namespace tavro {

HandleMap& TslKind::handles() {
    static HandleMap m_tslHandleMap;
    return m_tslHandleMap;
}

namespace {

// The network that the by-satellite calls ask for. The name is this project's.
constexpr std::uint16_t kEveryNetwork = 65535;

} // namespace

void TslKind::stamp_list(_TSL_REC_T& record, int list_id) {
    record.ui2_satl_id = low16(list_id);
    record.ui2_tsl_id = low16(list_id);
    record.ui1_nwl_id = static_cast<std::uint8_t>(list_id);
}

void TslKind::trace_record(const char* operation, const _TSL_REC_T& record) {
    TAVRO_LOG_DEBUG(kTag, "%s[%s]:rec_id:%d ts_id:%d s_nw_name:%.*s\n", kClass, operation, record.ui2_tsl_rec_id,
                    record.ui2_ts_id, TAVRO_BOUNDED(record.ac_nw_name));
}

void TslKind::trace_added(const char* operation, const _TSL_REC_T& record) {
    TAVRO_LOG_DEBUG(kTag, "[%s]: x_tsl_add_rec OK , tsl_rec_id=%d  \n", operation, record.ui2_tsl_rec_id);
}

void TslKind::trace_add_failed() { TAVRO_LOG_DEBUG(kTag, "[%s]: x_tsl_add_rec fail \n", "addInfo"); }

} // namespace tavro

using namespace tavro;

int NativeVltTvTransportStreamList::getInfoByIdxBySatellite(int mwdbId, int satlId, int satKey, int idx, int* version,
                                                            _TSL_REC_T* rec) {
    return read_at("getInfoByIdxBySatellite", mwdbId, idx, rec, [&](MwdbHandle handle) {
        return x_tsl_get_rec_by_sat(handle, kEveryNetwork, low16(satlId), low16(satKey), low16(idx), rec, version);
    });
}

int NativeVltTvTransportStreamList::getInfoListNumBySatellite(int mwdbId, int satlId, int satKey) {
    return count(
        "getInfoListNumBySatellite", mwdbId, [&](MwdbHandle handle, std::uint16_t* number, std::int32_t* version) {
            return x_tsl_get_num_rec_by_sat(handle, kEveryNetwork, low16(satlId), low16(satKey), number, version);
        });
}

int NativeVltTvTransportStreamList::updateInfoList(int mwdbId) {
    trace_list("updateInfoList", mwdbId);
    return kFailed;
}
