// Conversion of satellite records, with their dish-control block, into Java satellite objects
// (VltTvSatelliteInfoBase) and back.
#pragma once

#include "jni/records/record_object.h"
#include "middleware/satl.h"

namespace tavro {

inline constexpr char kSatelliteInfo[] = "com/velotra/tv/tavro/services/channellist/VltTvSatelliteInfo";
inline constexpr char kSatelliteInfoBase[] = "com/velotra/tv/tavro/services/channellist/VltTvSatelliteInfoBase";

// Signature of isContainsKey of Java satellite objects.
inline constexpr char kSatelliteContainsKey[] =
    "(Lcom/velotra/tv/tavro/services/channellist/VltTvSatelliteInfoBase;Ljava/lang/String;)Z";

// Key and field of the record identifier.
inline constexpr char kSatelliteIdKey[] = "RecId";

} // namespace tavro

// Java to record: the values whose key is set; all other bytes stay. All but the last look up the object's
// isContainsKey. Fields belong to VltTvSatelliteInfoBase.

// Flags, position, name and antenna type. The antenna type comes last and overrides the LNB flags.
void set_main_data(tavro::RecordObject& object, _SATL_REC_T& record);

// The dish-control block without the polarization. The switch position overrides the tone burst.
void set_diseqc_data(tavro::RecordObject& object, _TUNER_DISEQC_INFO_T& diseqc);

// The polarization. Only new records take it.
void set_sub_diseqc_data(tavro::RecordObject& object, _TUNER_DISEQC_INFO_T& diseqc);

// Single-cable values of the sub tuner and the LNB. isContainsKey must have been looked up.
void set_lnb_data(tavro::RecordObject& object, _SATL_REC_T& record);

// Record to Java: all values. Setters are looked up on `base_class`. get_satellite_sub_data passes the antenna type,
// which comes last.
void get_satellite_data(tavro::Jni& jni, jclass base_class, jobject base, const _SATL_REC_T& record);
void get_satellite_sub_data(tavro::Jni& jni, jclass base_class, jobject base, const _SATL_REC_T& record);
void get_all_diseqc_data(tavro::Jni& jni, jclass base_class, jobject base, const _TUNER_DISEQC_INFO_T& diseqc);

// Record to Java: the value of `key`. A function that does not know the key calls the next one: main values, sub tuner
// and LNB, antenna type; dish control, then its remaining values. An unknown key does nothing.
void get_main_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record);
void get_sub_main_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record);
void get_sub2_main_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _SATL_REC_T& record);
void get_diseqc_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key,
                     const _TUNER_DISEQC_INFO_T& diseqc);
void get_sub_diseqc_data(tavro::Jni& jni, jclass base_class, jobject base, const char* key,
                         const _TUNER_DISEQC_INFO_T& diseqc);
