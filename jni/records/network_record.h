// Conversion of network records into Java network objects (VltTvNetworkInfoBase) and back.
#pragma once

#include "jni/records/record_object.h"
#include "middleware/nwl.h"

namespace tavro {

inline constexpr char kNetworkInfo[] = "com/velotra/tv/tavro/services/channellist/VltTvNetworkInfo";
inline constexpr char kNetworkInfoBase[] = "com/velotra/tv/tavro/services/channellist/VltTvNetworkInfoBase";

// Signature of isContainsKey of Java network objects.
inline constexpr char kNetworkContainsKey[] =
    "(Lcom/velotra/tv/tavro/services/channellist/VltTvNetworkInfoBase;Ljava/lang/String;)Z";

// Key of the record identifier.
inline constexpr char kNetworkIdKey[] = "NwlIdNwlRecId";

// Java to record: the values whose key is set. The object's isContainsKey must have been looked up.
void set_network_info(RecordObject& object, _NWL_REC_T& record);

} // namespace tavro

// Record to Java: all values, or the value of `key`. Setters are looked up on `base_class`.
void _get_networklist_data(tavro::Jni& jni, jclass base_class, jobject base, const _NWL_REC_T& record);
void _get_nwl_info(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _NWL_REC_T& record);
