// Conversion of Java channel objects (VltTvChannelInfoBase) into service records. Only values whose
// key the object carries are copied; every other byte stays. A class, method or field that the object
// lacks ends the conversion there, with the platform's exception pending (see Jni::failed).
#pragma once

#include "jni/records/record_object.h"
#include "middleware/svl.h"

// Signature of isContainsKey of Java channel objects.
inline constexpr char kChannelContainsKey[] =
    "(Lcom/velotra/tv/tavro/services/channellist/VltTvChannelInfoBase;Ljava/lang/String;)Z";

// The common header.
void _set_header_info(tavro::RecordObject& object, _SVL_REC_HEADER_T& header);

// The specific part of a DVB service and of a DTMB service.
void _set_dvb_info(tavro::RecordObject& object, _SVL_DVB_T& dvb);
void _set_dtmb_info(tavro::RecordObject& object, _SVL_DTMB_T& dtmb);
