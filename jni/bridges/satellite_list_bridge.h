// The native methods of the Java class VltTvSatelliteList. The rules are those of the channel list's
// natives (channel_list_bridge.h); what differs is said here.
//
// Identifiers given as text are taken apart by the manager: one that has no comma finds no record, and one
// whose parts are no numbers raises std::stoi's exception, which nobody catches. That of a satellite object
// is parsed as everywhere (trimId).
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

// One satellite as a VltTvSatelliteInfo; null when it cannot be read. `keys` is a java.util.List of the
// keys to fill in, or null for all. The identifier in the result names the record by the id that it
// carries.
jobject com_velotra_tv_tavro_satellitelist_getInfo(JNIEnv* env, jobject self, jstring identifier, jobject keys);

// The satellites of a list as a java.util.ArrayList of VltTvSatelliteInfo, read under the list's read lock;
// empty when there are none, null when one cannot be read. All results take their values over from one
// carrier object: a value that a record lacks, the antenna type of one without an LNB, is as the record
// before left it.
jobject com_velotra_tv_tavro_satellitelist_getInfoList(JNIEnv* env, jobject self, jint mwdbId, jobject keys);

// The satellite names its list itself. Without an identifier the record asked for is 0 of list 0, which
// there is not. The polarisation is not taken.
jint com_velotra_tv_tavro_satellitelist_updateInfo(JNIEnv* env, jobject self, jobject satellite);

// Writes the record that the identifier names into the list unchanged.
jint com_velotra_tv_tavro_satellitelist_updateInfo_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);

// Like updateInfo, one element after the other. An identifier that cannot be parsed ends it with the
// status of the element before: 0, or -22 for the first.
jint com_velotra_tv_tavro_satellitelist_updateInfoList(JNIEnv* env, jobject self, jobject satellites);

// The new record's identifier, or "". The bridge takes no lock.
jstring com_velotra_tv_tavro_satellitelist_add_Info(JNIEnv* env, jobject self, jint mwdbId, jobject satellite);
jstring com_velotra_tv_tavro_satellitelist_add_Info_by_recId(JNIEnv* env, jobject self, jint mwdbId,
                                                             jstring identifier);
