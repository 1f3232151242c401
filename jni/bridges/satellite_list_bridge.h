// The native methods of the Java class VltTvSatelliteList. The rules of channel_list_bridge.h apply; this header states
// the differences.
//
// The manager splits identifiers given as text: one without a comma names no record, and one whose parts are not
// numbers throws std::stoi's exception, which nobody catches. The identifier of a satellite object is parsed with
// trimId.
#pragma once

#include <jni.h>

jint com_velotra_tv_tavro_satellitelist_native_setup(JNIEnv* env, jobject self);

// The list natives; see forwarding.h.
jint com_velotra_tv_tavro_satellitelist_open(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_satellitelist_open_path(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_satellitelist_close(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_satellitelist_clean(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_satellitelist_delete(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_satellitelist_store(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_satellitelist_copy(JNIEnv* env, jobject self, jint sourceId, jint destinationId);
jint com_velotra_tv_tavro_satellitelist_remove_info(JNIEnv* env, jobject self, jstring identifier);
jint com_velotra_tv_tavro_satellitelist_remove_info_by_recId(JNIEnv* env, jobject self, jint mwdbId,
                                                             jstring identifier);

// One satellite as a VltTvSatelliteInfo; null when it cannot be read. `keys` is a java.util.List of the wanted keys, or
// null for all. The result's identifier has the record id that the record carries.
jobject com_velotra_tv_tavro_satellitelist_getInfo(JNIEnv* env, jobject self, jstring identifier, jobject keys);

// The satellites of a list as a java.util.ArrayList of VltTvSatelliteInfo, read under the list's read lock. Empty when
// there are none, null when one cannot be read. Deliberate: all results take their values from one carrier object, so
// that a value which a record lacks (the antenna type, without an LNB) is the previous record's.
jobject com_velotra_tv_tavro_satellitelist_getInfoList(JNIEnv* env, jobject self, jint mwdbId, jobject keys);

// The list id comes from the object's own identifier; without one, record 0 of list 0 is read, which never exists.
// Polarization is not updated.
jint com_velotra_tv_tavro_satellitelist_updateInfo(JNIEnv* env, jobject self, jobject satellite);

// Updates the list with the record that the identifier names, unchanged.
jint com_velotra_tv_tavro_satellitelist_updateInfo_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);

// updateInfo for each element. An identifier that cannot be parsed ends the update; the result is 0, or -22 at the
// first element.
jint com_velotra_tv_tavro_satellitelist_updateInfoList(JNIEnv* env, jobject self, jobject satellites);

// Return the new record's identifier, or "" on failure. The bridge takes no lock.
jstring com_velotra_tv_tavro_satellitelist_add_Info(JNIEnv* env, jobject self, jint mwdbId, jobject satellite);
jstring com_velotra_tv_tavro_satellitelist_add_Info_by_recId(JNIEnv* env, jobject self, jint mwdbId,
                                                             jstring identifier);
