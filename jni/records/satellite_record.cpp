#include "jni/records/satellite_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/record_getters.h"
#include "jni/records/record_rows.h"
#include "jni/records/satellite_antenna.h"

#include <cstring>

using tavro::flag_getter;
using tavro::Getter;
using tavro::number_getter;
using tavro::Place;
using tavro::RecordObject;
using tavro::Row;
using tavro::special;
using tavro::special_getter;
using tavro::text_getter;

namespace {

#define SATL(MEMBER) TAVRO_PLACE(_SATL_REC_T, MEMBER)
#define DISEQC(MEMBER) TAVRO_PLACE(_TUNER_DISEQC_INFO_T, MEMBER)

// The rows' structures by their types.
const _SATL_REC_T& satellite(const std::byte* structure) { return *reinterpret_cast<const _SATL_REC_T*>(structure); }
_SATL_REC_T& satellite(std::byte* structure) { return *reinterpret_cast<_SATL_REC_T*>(structure); }
const _TUNER_DISEQC_INFO_T& diseqc_info(const std::byte* structure) {
    return *reinterpret_cast<const _TUNER_DISEQC_INFO_T*>(structure);
}
_TUNER_DISEQC_INFO_T& diseqc_info(std::byte* structure) { return *reinterpret_cast<_TUNER_DISEQC_INFO_T*>(structure); }

void trace_number(const Row& row, const std::byte* structure, jint) {
    std::uint32_t stored = 0; // little-endian: the low bytes come first
    std::memcpy(&stored, structure + row.to.offset, row.to.width);
    TAVRO_LOG_JNI("%s = %d \n", row.name, static_cast<int>(stored));
}

void trace_flag(const Row& row, const std::byte* structure, jint value) {
    TAVRO_LOG_JNI("ui4_mask = 0x%04X (%d, 0x%04X) \n", satellite(structure).ui4_mask, value, row.mask);
}

void trace_orbit(const Row&, const std::byte* structure, jint) {
    TAVRO_LOG_JNI("i2_orb_pos = %d \n", satellite(structure).i2_orb_pos);
}

// A number, cut to the width of its field; the Java field is called as the key, and `name` is the record's.
constexpr Row number(const char* key, Place to, const char* name) {
    Row row = tavro::integer(key, key, to, trace_number);
    row.name = name;
    return row;
}

constexpr Row mask_bit(const char* key, const char* field, std::uint32_t bit) {
    return tavro::flag(key, field, SATL(ui4_mask), bit, trace_flag);
}
constexpr Row mask_bit(const char* key, std::uint32_t bit) { return mask_bit(key, key, bit); }

// The name and the terminator's byte after it.
constexpr Place kNameAndEnd = {offsetof(_SATL_REC_T, ac_sat_name), sizeof(_SATL_REC_T::ac_sat_name) + 1};
static_assert(offsetof(_SATL_REC_T, c_sat_name_end) == kNameAndEnd.offset + kNameAndEnd.width - 1);

// A name that is null leaves the record's; the line is written all the same. Deliberate: neither the string's
// reference nor its characters are given back.
void store_name(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jstring> name = object.string_field(row.field);
    const char* chars = object.jni().keep_utf_chars(name.value_or(nullptr));
    if (object.jni().failed()) {
        return;
    }
    if (chars != nullptr) {
        tavro::put_text(structure, row.to, chars);
    }
    TAVRO_LOG_JNI("ac_sat_name = %.*s \n", TAVRO_BOUNDED(satellite(structure).ac_sat_name));
}

void store_antenna_type(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> type = object.int_field(row.field);
    if (type) {
        _SATL_REC_T& record = satellite(structure);
        tavro::set_antenna_type(record, *type);
        TAVRO_LOG_JNI("pt_satl_rec.ui4_mask = %d \n", static_cast<int>(record.ui4_mask));
    }
}

void store_diseqc_position(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> position = object.int_field(row.field);
    if (position) {
        _TUNER_DISEQC_INFO_T& diseqc = diseqc_info(structure);
        tavro::set_diseqc_position(diseqc, *position);
        TAVRO_LOG_JNI("ui1_port = %d ui1_tone_burst = %d\n", diseqc.ui1_port, diseqc.ui1_tone_burst);
    }
}

constexpr Row kMainRows[] = {
    mask_bit("MaskStatusOn", tavro::kSatelliteEnabled),
    mask_bit("MaskLnbUniver", tavro::kLnbUniversal),
    mask_bit("MaskLnbSingcab", tavro::kLnbSingleCable),
    mask_bit("MaskLnbSingcabJess", tavro::kLnbSingleCableJess),
    mask_bit("LnbSignalDetected", "lnbSignalDetected", tavro::kLnbSignalDetected),
    tavro::integer("OrbitPosition", "OrbitPosition", SATL(i2_orb_pos), trace_orbit),
    special("Name", "Name", store_name, kNameAndEnd),
    special("AntennaType", "AntennaType", store_antenna_type),
};

constexpr Row kDiseqcRows[] = {
    number("LnbPower", DISEQC(e_lnb_power), "e_lnb_power"),
    number("ToneBurst", DISEQC(ui1_tone_burst), "ui1_tone_burst"),
    number("DiseqcType", DISEQC(e_diseqc_type), "e_diseqc_type"),
    number("Tone22k", DISEQC(ui1_22k), "ui1_22k"),
    number("SingleCableUserBandMain", DISEQC(e_user_band), "e_user_band"),
    number("UnicablePosition", DISEQC(e_position), "e_position"),
    special("DiseqcPosition", "DiseqcPosition", store_diseqc_position),
    number("SingleCableBandFreqMain", DISEQC(ui2_band_freq), "ui2_band_freq"),
    number("MduType", DISEQC(e_mdu_type), "e_mdu_type"),
    number("DiseqcTypeEx", DISEQC(e_diseqc_type_ex), "e_diseqc_type_ex"),
    number("DiseqcPositionEx", DISEQC(ui1_port_ex), "ui1_port_ex"),
};

constexpr Row kPolarisationRows[] = {
    number("DiseqcPolar", DISEQC(e_polar), "e_polar"),
};

constexpr Row kLnbRows[] = {
    number("SingleCableUserBandSub", SATL(e_sub_user_band), "e_user_band"),
    number("SingleCableBandFreqSub", SATL(ui2_sub_band_freq), "ui2_band_freq"),
    number("LnbType", SATL(e_lnb_type), "e_lnb_type"),
    number("LnbLowFreq", SATL(ui2_lnb_low_freq), "ui2_lnb_low_freq"),
    number("LnbHighFreq", SATL(ui2_lnb_high_freq), "ui2_lnb_high_freq"),
    number("LnbSwitchFreq", SATL(ui2_lnb_switch_freq), "ui2_lnb_switch_freq"),
};

std::optional<jint> orbit_value(const Getter&, const std::byte* structure) { return satellite(structure).i2_orb_pos; }

std::optional<jint> antenna_value(const Getter&, const std::byte* structure) {
    const std::optional<jint> type = tavro::antenna_type(satellite(structure));
    if (!type) {
        // The name is that of the read by key, also when all values are read.
        TAVRO_LOG_DEBUG(kNoTag, "[get_sub2_main_data] error handling \n");
    }
    return type;
}

std::optional<jint> position_value(const Getter&, const std::byte* structure) {
    return tavro::diseqc_position(diseqc_info(structure));
}

constexpr Getter mask_getter(const char* key, const char* setter, std::uint32_t bit) {
    return flag_getter(key, setter, SATL(ui4_mask), bit);
}

constexpr Getter kMainGetters[] = {
    mask_getter("MaskStatusOn", "setMaskStatusOn", tavro::kSatelliteEnabled),
    mask_getter("MaskLnbUniver", "setMaskLnbUniver", tavro::kLnbUniversal),
    mask_getter("MaskLnbSingcab", "setMaskLnbSingcab", tavro::kLnbSingleCable),
    mask_getter("LnbSignalDetected", "setLnbSignalDetected", tavro::kLnbSignalDetected),
    mask_getter("MaskLnbSingcabJess", "setMaskLnbSingcabJess", tavro::kLnbSingleCableJess),
    special_getter("OrbitPosition", "setOrbitPosition", orbit_value),
    text_getter("Name", "setName", SATL(ac_sat_name)),
};

constexpr Getter kSubMainGetters[] = {
    number_getter("SingleCableUserBandSub", "setSingleCableUserBandSub", SATL(e_sub_user_band)),
    number_getter("SingleCableBandFreqSub", "setSingleCableBandFreqSub", SATL(ui2_sub_band_freq)),
    number_getter("LnbType", "setLnbType", SATL(e_lnb_type)),
    number_getter("LnbLowFreq", "setLnbLowFreq", SATL(ui2_lnb_low_freq)),
    number_getter("LnbHighFreq", "setLnbHighFreq", SATL(ui2_lnb_high_freq)),
    number_getter("LnbSwitchFreq", "setLnbSwitchFreq", SATL(ui2_lnb_switch_freq)),
};

constexpr Getter kSub2MainGetters[] = {
    special_getter("AntennaType", "setAntennaType", antenna_value),
};

constexpr Getter kDiseqcGetters[] = {
    number_getter("LnbPower", "setLnbPower", DISEQC(e_lnb_power)),
    number_getter("ToneBurst", "setToneBurst", DISEQC(ui1_tone_burst)),
    number_getter("DiseqcType", "setDiseqcType", DISEQC(e_diseqc_type)),
    number_getter("Tone22k", "setTone22k", DISEQC(ui1_22k)),
    number_getter("SingleCableUserBandMain", "setSingleCableUserBandMain", DISEQC(e_user_band)),
    number_getter("UnicablePosition", "setUnicablePosition", DISEQC(e_position)),
    special_getter("DiseqcPosition", "setDiseqcPosition", position_value),
    number_getter("SingleCableBandFreqMain", "setSingleCableBandFreqMain", DISEQC(ui2_band_freq)),
    number_getter("MduType", "setMduType", DISEQC(e_mdu_type)),
};

constexpr Getter kSubDiseqcGetters[] = {
    number_getter("DiseqcTypeEx", "setDiseqcTypeEx", DISEQC(e_diseqc_type_ex)),
    number_getter("DiseqcPositionEx", "setDiseqcPositionEx", DISEQC(ui1_port_ex)),
    number_getter("DiseqcPolar", "setDiseqcPolar", DISEQC(e_polar)),
};

} // namespace

void set_main_data(RecordObject& object, _SATL_REC_T& record) {
    object.look_up_contains_key();
    walk(kMainRows, object, record);
}

void set_diseqc_data(RecordObject& object, _TUNER_DISEQC_INFO_T& diseqc) {
    object.look_up_contains_key();
    walk(kDiseqcRows, object, diseqc);
}

void set_sub_diseqc_data(RecordObject& object, _TUNER_DISEQC_INFO_T& diseqc) {
    object.look_up_contains_key();
    walk(kPolarisationRows, object, diseqc);
}

void set_lnb_data(RecordObject& object, _SATL_REC_T& record) { walk(kLnbRows, object, record); }

void get_satellite_data(tavro::Jni& jni, jclass base_class, jobject base, const _SATL_REC_T& record) {
    hand_over_all(kMainGetters, jni, base_class, base, record);
    hand_over_all(kSubMainGetters, jni, base_class, base, record);
    get_satellite_sub_data(jni, base_class, base, record);
}

void get_satellite_sub_data(tavro::Jni& jni, jclass base_class, jobject base, const _SATL_REC_T& record) {
    hand_over_all(kSub2MainGetters, jni, base_class, base, record);
}

void get_all_diseqc_data(tavro::Jni& jni, jclass base_class, jobject base, const _TUNER_DISEQC_INFO_T& diseqc) {
    hand_over_all(kDiseqcGetters, jni, base_class, base, diseqc);
    hand_over_all(kSubDiseqcGetters, jni, base_class, base, diseqc);
}

void get_main_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record) {
    if (!hand_over_one(kMainGetters, jni, base_class, base, key, record)) {
        get_sub_main_data(jni, base_class, base, key, record);
    }
}

void get_sub_main_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record) {
    if (!hand_over_one(kSubMainGetters, jni, base_class, base, key, record)) {
        get_sub2_main_data(jni, base_class, base, key, record);
    }
}

void get_sub2_main_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record) {
    hand_over_one(kSub2MainGetters, jni, base_class, base, key, record);
}

void get_diseqc_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key,
                     const _TUNER_DISEQC_INFO_T& diseqc) {
    if (!hand_over_one(kDiseqcGetters, jni, base_class, base, key, diseqc)) {
        get_sub_diseqc_data(jni, base_class, base, key, diseqc);
    }
}

void get_sub_diseqc_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key,
                         const _TUNER_DISEQC_INFO_T& diseqc) {
    hand_over_one(kSubDiseqcGetters, jni, base_class, base, key, diseqc);
}
