#include "jni/records/network_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/network_rows.h"

using namespace tavro;
using namespace tavro::network_rows;

namespace {

int record_id_of(const std::byte* record) { return reinterpret_cast<const _NWL_REC_T*>(record)->ui2_nwl_rec_id; }

} // namespace

namespace tavro::network_rows {

void trace_version(const std::byte* record) {
    TAVRO_LOG_DEBUG(kNoTag, "[KEY_NETWORK_VERSION] %s  pt_nwl_rec.ui2_nwl_rec_id:%d ", "_get_nwl_info",
                    record_id_of(record));
}

void trace_name(const std::byte* record) {
    TAVRO_LOG_DEBUG(kNoTag, "[KEY_NETWORK_NAME] %s  pt_nwl_rec.ui2_nwl_rec_id:%d", "_get_nwl_info",
                    record_id_of(record));
}

} // namespace tavro::network_rows

namespace tavro {

void set_network_info(RecordObject& object, _NWL_REC_T& record) { put_all(kToRecord, object, record); }

} // namespace tavro

void _get_networklist_data(Jni& jni, jclass base_class, jobject base, const _NWL_REC_T& record) {
    pass_all(kToJava, jni, base_class, base, record);
}

void _get_nwl_info(Jni& jni, jclass base_class, jobject base, const char* key, const _NWL_REC_T& record) {
    pass_one(kToJava, jni, base_class, base, key, record);
}
