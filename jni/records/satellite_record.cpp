#include "jni/records/satellite_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/satellite_rows.h"

#include <cstring>

using namespace tavro;
using namespace tavro::satellite_rows;

namespace {

// The rows' structures by their types.
const _SATL_REC_T& satellite(const std::byte* structure) { return *reinterpret_cast<const _SATL_REC_T*>(structure); }
_SATL_REC_T& satellite(std::byte* structure) { return *reinterpret_cast<_SATL_REC_T*>(structure); }
const _TUNER_DISEQC_INFO_T& diseqc_info(const std::byte* structure) {
    return *reinterpret_cast<const _TUNER_DISEQC_INFO_T*>(structure);
}
_TUNER_DISEQC_INFO_T& diseqc_info(std::byte* structure) { return *reinterpret_cast<_TUNER_DISEQC_INFO_T*>(structure); }

} // namespace

namespace tavro::satellite_rows {

void trace_number(const ToRecordRow& row, const std::byte* structure, jint) {
    std::uint32_t stored = 0; // little-endian: the low bytes come first
    std::memcpy(&stored, structure + row.to.offset, row.to.width);
    TAVRO_LOG_JNI("%s = %d \n", row.name, static_cast<int>(stored));
}

void trace_flag(const ToRecordRow& row, const std::byte* structure, jint value) {
    TAVRO_LOG_JNI("ui4_mask = 0x%04X (%d, 0x%04X) \n", satellite(structure).ui4_mask, value, row.mask);
}

void trace_orbit(const ToRecordRow&, const std::byte* structure, jint) {
    TAVRO_LOG_JNI("i2_orb_pos = %d \n", satellite(structure).i2_orb_pos);
}

// A null name leaves the record's name; the line is written in any case. Deliberate: neither the string's reference
// nor its characters are released.
void put_name(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jstring> name = object.string_field(row.field);
    const char* chars = object.jni().keep_utf_chars(name.value_or(nullptr));
    if (object.jni().failed()) {
        return;
    }
    if (chars != nullptr) {
        put_text(structure, row.to, chars);
    }
    TAVRO_LOG_JNI("ac_sat_name = %.*s \n", TAVRO_BOUNDED(satellite(structure).ac_sat_name));
}

void put_antenna_type(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> type = object.int_field(row.field);
    if (type) {
        _SATL_REC_T& record = satellite(structure);
        set_antenna_type(record, *type);
        TAVRO_LOG_JNI("pt_satl_rec.ui4_mask = %d \n", static_cast<int>(record.ui4_mask));
    }
}

void put_diseqc_position(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> position = object.int_field(row.field);
    if (position) {
        _TUNER_DISEQC_INFO_T& diseqc = diseqc_info(structure);
        set_diseqc_position(diseqc, *position);
        TAVRO_LOG_JNI("ui1_port = %d ui1_tone_burst = %d\n", diseqc.ui1_port, diseqc.ui1_tone_burst);
    }
}

std::optional<jint> orbit_value(const ToJavaRow&, const std::byte* structure) {
    return satellite(structure).i2_orb_pos;
}

std::optional<jint> antenna_value(const ToJavaRow&, const std::byte* structure) {
    const std::optional<jint> type = antenna_type(satellite(structure));
    if (!type) {
        // Deliberate: names the read by key, also when all values are read.
        TAVRO_LOG_DEBUG(kNoTag, "[get_sub2_main_data] error handling \n");
    }
    return type;
}

std::optional<jint> position_value(const ToJavaRow&, const std::byte* structure) {
    return diseqc_position(diseqc_info(structure));
}

} // namespace tavro::satellite_rows

void set_main_data(RecordObject& object, _SATL_REC_T& record) {
    object.look_up_contains_key();
    put_all(kMainToRecord, object, record);
}

void set_diseqc_data(RecordObject& object, _TUNER_DISEQC_INFO_T& diseqc) {
    object.look_up_contains_key();
    put_all(kDiseqcToRecord, object, diseqc);
}

void set_sub_diseqc_data(RecordObject& object, _TUNER_DISEQC_INFO_T& diseqc) {
    object.look_up_contains_key();
    put_all(kPolarizationToRecord, object, diseqc);
}

void set_lnb_data(RecordObject& object, _SATL_REC_T& record) { put_all(kLnbToRecord, object, record); }

void get_satellite_data(Jni& jni, jclass base_class, jobject base, const _SATL_REC_T& record) {
    pass_all(kMainToJava, jni, base_class, base, record);
    pass_all(kSubMainToJava, jni, base_class, base, record);
    get_satellite_sub_data(jni, base_class, base, record);
}

void get_satellite_sub_data(Jni& jni, jclass base_class, jobject base, const _SATL_REC_T& record) {
    pass_all(kSub2MainToJava, jni, base_class, base, record);
}

void get_all_diseqc_data(Jni& jni, jclass base_class, jobject base, const _TUNER_DISEQC_INFO_T& diseqc) {
    pass_all(kDiseqcToJava, jni, base_class, base, diseqc);
    pass_all(kSubDiseqcToJava, jni, base_class, base, diseqc);
}

void get_main_data(Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record) {
    if (!pass_one(kMainToJava, jni, base_class, base, key, record)) {
        get_sub_main_data(jni, base_class, base, key, record);
    }
}

void get_sub_main_data(Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record) {
    if (!pass_one(kSubMainToJava, jni, base_class, base, key, record)) {
        get_sub2_main_data(jni, base_class, base, key, record);
    }
}

void get_sub2_main_data(Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record) {
    pass_one(kSub2MainToJava, jni, base_class, base, key, record);
}

void get_diseqc_data(Jni& jni, jclass base_class, jobject base, const char* key, const _TUNER_DISEQC_INFO_T& diseqc) {
    if (!pass_one(kDiseqcToJava, jni, base_class, base, key, diseqc)) {
        get_sub_diseqc_data(jni, base_class, base, key, diseqc);
    }
}

void get_sub_diseqc_data(Jni& jni, jclass base_class, jobject base, const char* key,
                         const _TUNER_DISEQC_INFO_T& diseqc) {
    pass_one(kSubDiseqcToJava, jni, base_class, base, key, diseqc);
}
