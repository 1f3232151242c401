// Conversion of Java transport stream objects (VltTvTransportStreamInfoBase) into transport stream records. Only values
// whose key is set are put; all other bytes stay. A missing class, method or field ends the conversion with an
// exception pending (Jni::failed).
#pragma once

#include "jni/records/record_object.h"
#include "middleware/tsl.h"

namespace tavro {

// Class of Java transport stream objects, and the signature of its isContainsKey.
inline constexpr char kTransportStreamInfo[] = "com/velotra/tv/tavro/services/channellist/VltTvTransportStreamInfoBase";
inline constexpr char kTransportStreamContainsKey[] =
    "(Lcom/velotra/tv/tavro/services/channellist/VltTvTransportStreamInfoBase;Ljava/lang/String;)Z";

} // namespace tavro

// The whole record. Deliberate: the class is found by its name, not from the object.
void _set_ts_info(tavro::Jni& jni, jobject object, _TSL_REC_T& record);

// The stages after the first; each calls the next.
void _set_sub_ts_info(tavro::RecordObject& object, _TSL_REC_T& record);
void _set_sub2_ts_info(tavro::RecordObject& object, _TSL_REC_T& record);
void _set_sub3_ts_info(tavro::RecordObject& object, _TSL_REC_T& record);
void _set_sub4_ts_info(tavro::RecordObject& object, _TSL_REC_T& record);

// Convert one Java value and write a debug line. A value without a code leaves `code` alone.
void _get_fecInner_by_switch(int value, TUNER_FEC_INNER_T& code);
void _get_mod_by_switch(int value, TUNER_MODULATION_T& code);
void _get_transmission_mode_by_switch(int value, TUNER_TRANSMISSION_MODE_T& code);

// Puts the frequency if the record's medium is known. Writes a debug line in any case.
void _set_freq_by_medium(_TSL_REC_T& record, int frequency);

// The mode word of the record's medium (1 or 2: DVB-T or T2, C or C2, S or S2). Unknown media use the terrestrial word.
std::uint32_t get_mode(const _TSL_REC_T* record);
void set_mode(_TSL_REC_T* record, int mode);
