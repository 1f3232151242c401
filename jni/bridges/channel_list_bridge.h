// The native methods of the Java class VltTvChannelList.
//
// Unless stated otherwise, int results are the manager's: 0, or -22 for a failure. A null record object or list returns
// the failure result. So does a class, method or field that the platform does not find; its exception stays pending.
// Records are written under the target list's write lock. native_open and native_delete are serialized in the process.
#pragma once

#include <jni.h>

// Creates the manager. The result is no status; see tavro::set_up.
jint com_velotra_tv_tavro_ch_list_native_setup(JNIEnv* env, jobject self);

jint com_velotra_tv_tavro_channellist_clean(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_channellist_close(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_channellist_delete(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_channellist_copy(JNIEnv* env, jobject self, jint sourceId, jint destinationId);
jint com_velotra_tv_tavro_channellist_open(JNIEnv* env, jobject self, jint mwdbId);
jint com_velotra_tv_tavro_channellist_open_path(JNIEnv* env, jobject self, jint mwdbId, jstring path);
jint com_velotra_tv_tavro_channellist_store(JNIEnv* env, jobject self, jint mwdbId, jstring path);

// Removals return -1 when the identifier has no comma.
jint com_velotra_tv_tavro_channellist_remove_info(JNIEnv* env, jobject self, jstring identifier);
jint com_velotra_tv_tavro_channellist_remove_Info_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);

// One service as the 552 bytes of its record; null when it cannot be read.
jbyteArray com_velotra_tv_tavro_channellist_getSVLInfo(JNIEnv* env, jobject self, jstring identifier);

// The services of a list in list order, as their records one after the other, read under the list's read lock. Null
// when the list is empty or a record cannot be read; an empty array when no service matches. The filters select by
// transport stream id, by record id of the transport stream, and by network id.
jbyteArray com_velotra_tv_tavro_channellist_getSVLInfoList(JNIEnv* env, jobject self, jint mwdbId);
jbyteArray com_velotra_tv_tavro_channellist_getInfoListByTransportStream(JNIEnv* env, jobject self, jint mwdbId,
                                                                         jint transportStreamId);
jbyteArray com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord(JNIEnv* env, jobject self, jint mwdbId,
                                                                               jint transportStreamRecordId);
jbyteArray com_velotra_tv_tavro_channellist_getInfoListByNetwork(JNIEnv* env, jobject self, jint mwdbId,
                                                                 jint networkId);

// Updates a stored service with the values that are set in a Java channel object.
jint com_velotra_tv_tavro_channellist_updateInfo(JNIEnv* env, jobject self, jint mwdbId, jobject channel);
// Updates, in list `mwdbId`, the service that the identifier names: it then refers to the companion lists with that id.
jint com_velotra_tv_tavro_channellist_updateInfo_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);
// Updates many services under one lock. Stops at the first failure; services before it stay updated. An identifier that
// cannot be parsed ends the update with the list still locked; the result is then 0, or -22 at the first element.
jint com_velotra_tv_tavro_channellist_updateInfoList(JNIEnv* env, jobject self, jint mwdbId, jobject channels);

// Add a service, from a Java channel object or as a copy of a stored one. Return the new record's identifier, or "" on
// failure.
jstring com_velotra_tv_tavro_channellist_add_Info(JNIEnv* env, jobject self, jint mwdbId, jobject channel);
jstring com_velotra_tv_tavro_channellist_add_Info_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier);
