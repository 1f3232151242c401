#include "jni/records/channel_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/channel_rows.h"

#include <cstring>

using namespace tavro;
using namespace tavro::channel_rows;

namespace tavro::channel_rows {

// Name of the header's conversion in log lines.
static constexpr char kHeaderInfo[] = "_set_header_info";

void trace_service_id(const ToRecordRow&, const std::byte*, jint value) {
    TAVRO_LOG_DEBUG(kNoTag, "ivalue==%d %s,", value, kHeaderInfo);
}

void trace_broadcast_type(const ToRecordRow&, const std::byte*, jint value) {
    TAVRO_LOG_DEBUG(kNoTag, "ibrdcst==%d %s,", value, kHeaderInfo);
}

void trace_active(const ToRecordRow&, const std::byte*, jint value) {
    TAVRO_LOG_DEBUG(kNoTag, "iactive==%d %s,", value, kHeaderInfo);
}

void trace_dvb_short_name(const ToRecordRow& row, const std::byte* dvb, jint) {
    TAVRO_LOG_DEBUG(kNoTag, "stdvb.s_svc_name==%s %s", reinterpret_cast<const char*>(dvb + row.to.offset),
                    "_set_dvb_info");
}

void trace_dtmb_short_name(const ToRecordRow& row, const std::byte* dtmb, jint) {
    TAVRO_LOG_DEBUG(kNoTag, "stdtmb.s_svc_name==%s %s", reinterpret_cast<const char*>(dtmb + row.to.offset),
                    "_set_dtmb_info");
}

void put_satellite_record_id(const ToRecordRow& row, RecordObject& object, std::byte* header) {
    TAVRO_LOG_JNI("%s", kHeaderInfo);
    put_record_id(row, object, header);
}

// Up to three codes; the rest becomes zero. More than three put nothing.
void put_region_codes(const ToRecordRow& row, RecordObject& object, std::byte* dvb) {
    const LocalRef field(object.jni(), object.object_field(row.field, "[I").value_or(nullptr));
    if (field.get() == nullptr) {
        return;
    }
    auto* array = static_cast<jintArray>(field.get());
    const jsize length = object.jni().env()->GetArrayLength(array);
    if (length > static_cast<jsize>(row.to.width / sizeof(std::uint16_t))) {
        return;
    }
    const jint* codes = object.jni().keep_int_elements(array);
    if (codes == nullptr) {
        return;
    }
    std::memset(dvb + row.to.offset, 0, row.to.width);
    for (jsize i = 0; i < length; ++i) {
        const auto code = static_cast<std::uint16_t>(codes[i]);
        std::memcpy(dvb + row.to.offset + static_cast<std::size_t>(i) * sizeof(code), &code, sizeof(code));
        TAVRO_LOG_DEBUG(kNoTag, "stdvb.aui2_code[%d]==%d %s,", i, code, "_set_sub_dvb_info");
    }
}

} // namespace tavro::channel_rows

void _set_header_info(RecordObject& object, _SVL_REC_HEADER_T& header) {
    object.look_up_contains_key();
    put_all(kHeaderRows, object, header);
    object.look_up_contains_key();
    put_all(kMoreHeaderRows, object, header);
    object.look_up_contains_key();
    put_all(kChannelBlockAgain, object, header);
}

void _set_dvb_info(RecordObject& object, _SVL_DVB_T& dvb) {
    object.look_up_contains_key();
    put_all(kDvbFirstRows, object, dvb);
    put_all(kCommonRows, object, dvb);
    put_all(kDvbRows, object, dvb);
}

void _set_dtmb_info(RecordObject& object, _SVL_DTMB_T& dtmb) {
    object.look_up_contains_key();
    put_all(kDtmbFirstRows, object, dtmb);
    put_all(kCommonRows, object, dtmb);
    put_all(kDtmbRows, object, dtmb);
}
