// Conversion of Java channel objects (VltTvChannelInfoBase) into service records. Only values whose key is set are put;
// all other bytes stay. A missing class, method or field ends the conversion with an exception pending (Jni::failed).
#pragma once

#include "jni/records/record_object.h"
#include "middleware/svl.h"

namespace tavro {

// Signature of isContainsKey of Java channel objects.
inline constexpr char kChannelContainsKey[] =
    "(Lcom/velotra/tv/tavro/services/channellist/VltTvChannelInfoBase;Ljava/lang/String;)Z";

} // namespace tavro

// The common header.
void _set_header_info(tavro::RecordObject& object, _SVL_REC_HEADER_T& header);

// The specific parts of DVB and DTMB services.
void _set_dvb_info(tavro::RecordObject& object, _SVL_DVB_T& dvb);
void _set_dtmb_info(tavro::RecordObject& object, _SVL_DTMB_T& dtmb);
