// The native methods of the Java class VltTvNetworkList. The rules of channel_list_bridge.h apply; this header states
// the differences.
#pragma once

#include <jni.h>

jint com_velotra_tv_tavro_nw_list_native_setup(JNIEnv* env, jobject self);

// The list natives; see forwarding.h.
jint com_velotra_tv_tavro_networklist_open(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_networklist_open_path(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_networklist_close(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_networklist_clean(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_networklist_delete(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_networklist_store(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_networklist_copy(JNIEnv* env, jobject self, jint sourceId, jint destinationId);
jint com_velotra_tv_tavro_networklist_remove_info(JNIEnv* env, jobject self, jstring identifier);
jint com_velotra_tv_tavro_networklist_remove_info_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);

// One network as a VltTvNetworkInfo; null when it cannot be read. `keys` is a java.util.List of the wanted keys, or
// null for all.
jobject com_velotra_tv_tavro_networklist_getInfo(JNIEnv* env, jobject self, jstring identifier, jobject keys);

// The networks of a list as a java.util.ArrayList of VltTvNetworkInfo, read under the list's read lock. Empty when
// there are none, null when one cannot be read.
jobject com_velotra_tv_tavro_networklist_getInfoList(JNIEnv* env, jobject self, jint mwdbId, jobject keys);

jint com_velotra_tv_tavro_networklist_updateInfo(JNIEnv* env, jobject self, jint mwdbId, jobject network);
jint com_velotra_tv_tavro_networklist_updateInfo_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);
jint com_velotra_tv_tavro_networklist_updateInfoList(JNIEnv* env, jobject self, jint mwdbId, jobject networks);

jstring com_velotra_tv_tavro_networklist_add_Info(JNIEnv* env, jobject self, jint mwdbId, jobject network);
jstring com_velotra_tv_tavro_networklist_add_Info_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);
