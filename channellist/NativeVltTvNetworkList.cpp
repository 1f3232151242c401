#include "channellist/NativeVltTvNetworkList.h"

namespace tavro {

HandleMap& NwlKind::handles() {
    static HandleMap m_nwlHandleMap;
    return m_nwlHandleMap;
}

void NwlKind::trace_record(const char* operation, const _NWL_REC_T& record) {
    TAVRO_LOG_DEBUG(kTag, "%s[%s]:rec_id:%d nw_id:%d nit_ver:%d s_nw_name:%.*s\n", kClass, operation,
                    record.ui2_nwl_rec_id, record.ui2_nw_id, record.ui1_nw_version, TAVRO_BOUNDED(record.ac_nw_name));
}

void NwlKind::trace_count(const char* operation, std::uint16_t number) {
    TAVRO_LOG_DEBUG(kTag, "%s[%s]:i2_num_rec:%d \n", kClass, operation, number);
}

void NwlKind::trace_added(const char* operation, const _NWL_REC_T& record) {
    TAVRO_LOG_DEBUG(kTag, "[%s]: x_nwl_add_rec OK , nwl_rec_id=%d  \n", operation, record.ui2_nwl_rec_id);
}

void NwlKind::trace_add_failed() { TAVRO_LOG_DEBUG(kTag, "[%s]: x_nwl_add_rec fail \n", "addInfo"); }

} // namespace tavro

using namespace tavro;

int NativeVltTvNetworkList::getInfoList(int mwdbId) {
    TAVRO_LOG_DEBUG(NwlKind::kTag, "%s[%s]: mwdbId = %d\n", NwlKind::kClass, "getInfoList", mwdbId);
    return kDone;
}

int NativeVltTvNetworkList::updateInfoList(int mwdbId) {
    trace_list("updateInfoList", mwdbId);
    return kFailed;
}
