// The keys of satellites with their dish-control block, in both directions.
//
// Places count from the start of the satellite record, or of its dish-control block (the tables named Diseqc and
// Polarization).
#pragma once

#include "jni/records/satellite_antenna.h"
#include "jni/records/to_java_rows.h"
#include "jni/records/to_record_rows.h"
#include "middleware/satl.h"

namespace tavro::satellite_rows {

// Debug lines, and values with rules of their own.
void trace_number(const ToRecordRow& row, const std::byte* structure, jint value);
void trace_flag(const ToRecordRow& row, const std::byte* record, jint value);
void trace_orbit(const ToRecordRow& row, const std::byte* record, jint value);
void put_name(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_antenna_type(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_diseqc_position(const ToRecordRow& row, RecordObject& object, std::byte* diseqc);
std::optional<jint> orbit_value(const ToJavaRow& row, const std::byte* record);
std::optional<jint> antenna_value(const ToJavaRow& row, const std::byte* record);
std::optional<jint> position_value(const ToJavaRow& row, const std::byte* diseqc);

#define SATL(MEMBER) TAVRO_PLACE(_SATL_REC_T, MEMBER)
#define DISEQC(MEMBER) TAVRO_PLACE(_TUNER_DISEQC_INFO_T, MEMBER)

// A number; the Java field is named like the key, and `name` is the value's name in the debug line.
constexpr ToRecordRow number(const char* key, Place to, const char* name) {
    ToRecordRow row = integer(key, key, to, trace_number);
    row.name = name;
    return row;
}

constexpr ToRecordRow mask_bit(const char* key, const char* field, std::uint32_t bit) {
    return flag(key, field, SATL(ui4_mask), bit, trace_flag);
}
constexpr ToRecordRow mask_bit(const char* key, std::uint32_t bit) { return mask_bit(key, key, bit); }

// The name and the terminator's byte after it.
inline constexpr Place kNameAndEnd = {offsetof(_SATL_REC_T, ac_sat_name), sizeof(_SATL_REC_T::ac_sat_name) + 1};
static_assert(offsetof(_SATL_REC_T, c_sat_name_end) == kNameAndEnd.offset + kNameAndEnd.width - 1);

inline constexpr ToRecordRow kMainToRecord[] = {
    mask_bit("MaskStatusOn", kSatelliteEnabled),
    mask_bit("MaskLnbUniver", kLnbUniversal),
    mask_bit("MaskLnbSingcab", kLnbSingleCable),
    mask_bit("MaskLnbSingcabJess", kLnbSingleCableJess),
    mask_bit("LnbSignalDetected", "lnbSignalDetected", kLnbSignalDetected),
    integer("OrbitPosition", "OrbitPosition", SATL(i2_orb_pos), trace_orbit),
    special("Name", "Name", put_name, kNameAndEnd),
    special("AntennaType", "AntennaType", put_antenna_type, SATL(ui4_mask)),
};

inline constexpr ToRecordRow kDiseqcToRecord[] = {
    number("LnbPower", DISEQC(e_lnb_power), "e_lnb_power"),
    number("ToneBurst", DISEQC(ui1_tone_burst), "ui1_tone_burst"),
    number("DiseqcType", DISEQC(e_diseqc_type), "e_diseqc_type"),
    number("Tone22k", DISEQC(ui1_22k), "ui1_22k"),
    number("SingleCableUserBandMain", DISEQC(e_user_band), "e_user_band"),
    number("UnicablePosition", DISEQC(e_position), "e_position"),
    special("DiseqcPosition", "DiseqcPosition", put_diseqc_position, DISEQC(ui1_port)),
    number("SingleCableBandFreqMain", DISEQC(ui2_band_freq), "ui2_band_freq"),
    number("MduType", DISEQC(e_mdu_type), "e_mdu_type"),
    number("DiseqcTypeEx", DISEQC(e_diseqc_type_ex), "e_diseqc_type_ex"),
    number("DiseqcPositionEx", DISEQC(ui1_port_ex), "ui1_port_ex"),
};

inline constexpr ToRecordRow kPolarizationToRecord[] = {
    number("DiseqcPolar", DISEQC(e_polar), "e_polar"),
};

inline constexpr ToRecordRow kLnbToRecord[] = {
    number("SingleCableUserBandSub", SATL(e_sub_user_band), "e_user_band"),
    number("SingleCableBandFreqSub", SATL(ui2_sub_band_freq), "ui2_band_freq"),
    number("LnbType", SATL(e_lnb_type), "e_lnb_type"),
    number("LnbLowFreq", SATL(ui2_lnb_low_freq), "ui2_lnb_low_freq"),
    number("LnbHighFreq", SATL(ui2_lnb_high_freq), "ui2_lnb_high_freq"),
    number("LnbSwitchFreq", SATL(ui2_lnb_switch_freq), "ui2_lnb_switch_freq"),
};

constexpr ToJavaRow mask_to_java(const char* key, const char* setter, std::uint32_t bit) {
    return flag_to_java(key, setter, SATL(ui4_mask), bit);
}

inline constexpr ToJavaRow kMainToJava[] = {
    mask_to_java("MaskStatusOn", "setMaskStatusOn", kSatelliteEnabled),
    mask_to_java("MaskLnbUniver", "setMaskLnbUniver", kLnbUniversal),
    mask_to_java("MaskLnbSingcab", "setMaskLnbSingcab", kLnbSingleCable),
    mask_to_java("LnbSignalDetected", "setLnbSignalDetected", kLnbSignalDetected),
    mask_to_java("MaskLnbSingcabJess", "setMaskLnbSingcabJess", kLnbSingleCableJess),
    special_to_java("OrbitPosition", "setOrbitPosition", orbit_value, SATL(i2_orb_pos)),
    text_to_java("Name", "setName", SATL(ac_sat_name)),
};

inline constexpr ToJavaRow kSubMainToJava[] = {
    number_to_java("SingleCableUserBandSub", "setSingleCableUserBandSub", SATL(e_sub_user_band)),
    number_to_java("SingleCableBandFreqSub", "setSingleCableBandFreqSub", SATL(ui2_sub_band_freq)),
    number_to_java("LnbType", "setLnbType", SATL(e_lnb_type)),
    number_to_java("LnbLowFreq", "setLnbLowFreq", SATL(ui2_lnb_low_freq)),
    number_to_java("LnbHighFreq", "setLnbHighFreq", SATL(ui2_lnb_high_freq)),
    number_to_java("LnbSwitchFreq", "setLnbSwitchFreq", SATL(ui2_lnb_switch_freq)),
};

inline constexpr ToJavaRow kSub2MainToJava[] = {
    special_to_java("AntennaType", "setAntennaType", antenna_value, SATL(ui4_mask)),
};

inline constexpr ToJavaRow kDiseqcToJava[] = {
    number_to_java("LnbPower", "setLnbPower", DISEQC(e_lnb_power)),
    number_to_java("ToneBurst", "setToneBurst", DISEQC(ui1_tone_burst)),
    number_to_java("DiseqcType", "setDiseqcType", DISEQC(e_diseqc_type)),
    number_to_java("Tone22k", "setTone22k", DISEQC(ui1_22k)),
    number_to_java("SingleCableUserBandMain", "setSingleCableUserBandMain", DISEQC(e_user_band)),
    number_to_java("UnicablePosition", "setUnicablePosition", DISEQC(e_position)),
    special_to_java("DiseqcPosition", "setDiseqcPosition", position_value, DISEQC(ui1_port)),
    number_to_java("SingleCableBandFreqMain", "setSingleCableBandFreqMain", DISEQC(ui2_band_freq)),
    number_to_java("MduType", "setMduType", DISEQC(e_mdu_type)),
};

inline constexpr ToJavaRow kSubDiseqcToJava[] = {
    number_to_java("DiseqcTypeEx", "setDiseqcTypeEx", DISEQC(e_diseqc_type_ex)),
    number_to_java("DiseqcPositionEx", "setDiseqcPositionEx", DISEQC(ui1_port_ex)),
    number_to_java("DiseqcPolar", "setDiseqcPolar", DISEQC(e_polar)),
};

#undef SATL
#undef DISEQC

} // namespace tavro::satellite_rows
