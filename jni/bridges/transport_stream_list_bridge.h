// The native methods of the Java class VltTvTransportStreamList. The rules of channel_list_bridge.h apply; this header
// states the differences.
#pragma once

#include <jni.h>

jint com_velotra_tv_tavro_ts_list_native_setup(JNIEnv* env, jobject self);

// The list natives; see forwarding.h. Removals fail for a list that is not open.
jint com_velotra_tv_tavro_transportstreamlist_open(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_transportstreamlist_open_path(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_transportstreamlist_close(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_transportstreamlist_clean(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_transportstreamlist_delete(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_transportstreamlist_store(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_transportstreamlist_copy(JNIEnv* env, jobject self, jint sourceId, jint destinationId);
jint com_velotra_tv_tavro_transportstreamlist_remove_info(JNIEnv* env, jobject self, jstring identifier);
jint com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId(JNIEnv* env, jobject self, jint mwdbId,
                                                                   jstring identifier);

// One transport stream as the 724 bytes of its record; null when it cannot be read.
jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfo(JNIEnv* env, jobject self, jstring identifier);

// The transport streams of a list, as their records one after the other, read under the list's read lock. Null when
// there are none or one cannot be read. By satellite: those that refer to that record of the satellite list with the
// same id.
jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfoList(JNIEnv* env, jobject self, jint mwdbId);
jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(JNIEnv* env, jobject self, jint mwdbId,
                                                                           jint satelliteRecordId);

jint com_velotra_tv_tavro_transportstreamlist_updateInfo(JNIEnv* env, jobject self, jint mwdbId, jobject stream);
jint com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(JNIEnv* env, jobject self, jint mwdbId,
                                                                  jstring identifier);
// Skips elements whose identifier cannot be parsed.
jint com_velotra_tv_tavro_transportstreamlist_updateInfoList(JNIEnv* env, jobject self, jint mwdbId, jobject streams);

jstring com_velotra_tv_tavro_transportstreamlist_add_Info(JNIEnv* env, jobject self, jint mwdbId, jobject stream);
jstring com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId(JNIEnv* env, jobject self, jint mwdbId,
                                                                   jstring identifier);
