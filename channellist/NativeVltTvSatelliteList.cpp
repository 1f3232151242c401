#include "channellist/NativeVltTvSatelliteList.h"

namespace tavro {

HandleMap& SatlKind::handles() {
    static HandleMap m_satIdHandleMap;
    return m_satIdHandleMap;
}

void SatlKind::trace_count(const char* operation, std::uint16_t number) {
    TAVRO_LOG_DEBUG(kTag, "[%s]:i2_num_rec:%d \n", operation, number);
}

void SatlKind::trace_added(const char* operation, const _SATL_REC_T& record) {
    TAVRO_LOG_DEBUG(kTag, "[%s]: x_satl_add_rec OK , satl_rec_id=%d  \n", operation, record.ui2_satl_rec_id);
}

void SatlKind::trace_add_failed() { TAVRO_LOG_DEBUG(kTag, "[%s]: x_satl_add_rec fail \n", "addInfo"); }

} // namespace tavro

using namespace tavro;

int NativeVltTvSatelliteList::getInfo(const std::string& recId, _SATL_REC_T* rec) {
    int list_id = 0;
    int record_id = 0;
    if (!split_identifier("getInfo", recId, &list_id, record_id)) {
        return kNoSuchRecordIdentifier;
    }
    trace_record_id("getInfo", SatlKind::kRemoveWords, list_id, record_id);
    return read_record(list_id, record_id, rec);
}
