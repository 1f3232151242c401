#include "jni/jni_VltTvList_Init.h"

#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"
#include "jni/env/jni_log.h"
#include "jni/env/native_method.h"

#include <iterator>

using namespace tavro;

namespace {

constexpr char kLoadTag[] = "Tavro_onLoad_channellist";
constexpr jint kJniVersion = JNI_VERSION_1_4;

#define LIST_PACKAGE "com/velotra/tv/tavro/services/channellist/"

// Overloads share a Java name. The Java classes name their methods in different styles.
const JNINativeMethod kChannelListMethods[] = {
    TAVRO_NATIVE("nativeSetup", "()I", com_velotra_tv_tavro_ch_list_native_setup),
    TAVRO_NATIVE("native_clean", "(I)I", com_velotra_tv_tavro_channellist_clean),
    TAVRO_NATIVE("native_close", "(I)I", com_velotra_tv_tavro_channellist_close),
    TAVRO_NATIVE("native_delete", "(I)I", com_velotra_tv_tavro_channellist_delete),
    TAVRO_NATIVE("native_copy", "(II)I", com_velotra_tv_tavro_channellist_copy),
    TAVRO_NATIVE("native_getSvlInfo", "(Ljava/lang/String;)[B", com_velotra_tv_tavro_channellist_getSVLInfo),
    TAVRO_NATIVE("native_getSvlInfoList", "(I)[B", com_velotra_tv_tavro_channellist_getSVLInfoList),
    TAVRO_NATIVE("native_getInfoListByTransportStream", "(II)[B",
                 com_velotra_tv_tavro_channellist_getInfoListByTransportStream),
    TAVRO_NATIVE("native_getInfoListByTransportStreamRecord", "(II)[B",
                 com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord),
    TAVRO_NATIVE("native_getInfoListByNetwork", "(II)[B", com_velotra_tv_tavro_channellist_getInfoListByNetwork),
    TAVRO_NATIVE("native_open", "(I)I", com_velotra_tv_tavro_channellist_open),
    TAVRO_NATIVE("native_open", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_open_path),
    TAVRO_NATIVE("native_store", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_store),
    TAVRO_NATIVE("native_updateInfo", "(IL" LIST_PACKAGE "VltTvChannelInfoBase;)I",
                 com_velotra_tv_tavro_channellist_updateInfo),
    TAVRO_NATIVE("native_updateInfo", "(ILjava/lang/String;)I", com_velotra_tv_tavro_channellist_updateInfo_by_recId),
    TAVRO_NATIVE("native_updateInfoList", "(ILjava/util/List;)I", com_velotra_tv_tavro_channellist_updateInfoList),
    TAVRO_NATIVE("nativeAdd", "(IL" LIST_PACKAGE "VltTvChannelInfoBase;)Ljava/lang/String;",
                 com_velotra_tv_tavro_channellist_add_Info),
    TAVRO_NATIVE("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                 com_velotra_tv_tavro_channellist_add_Info_by_recId),
    TAVRO_NATIVE("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_channellist_remove_info),
    TAVRO_NATIVE("nativeRemoveByRecId", "(ILjava/lang/String;)I",
                 com_velotra_tv_tavro_channellist_remove_Info_by_recId),
};

const JNINativeMethod kTransportStreamListMethods[] = {
    TAVRO_NATIVE("nativeSetup", "()I", com_velotra_tv_tavro_ts_list_native_setup),
    TAVRO_NATIVE("native_clean", "(I)I", com_velotra_tv_tavro_transportstreamlist_clean),
    TAVRO_NATIVE("native_close", "(I)I", com_velotra_tv_tavro_transportstreamlist_close),
    TAVRO_NATIVE("native_delete", "(I)I", com_velotra_tv_tavro_transportstreamlist_delete),
    TAVRO_NATIVE("native_copy", "(II)I", com_velotra_tv_tavro_transportstreamlist_copy),
    TAVRO_NATIVE("native_getInfo", "(Ljava/lang/String;)[B", com_velotra_tv_tavro_transportstreamlist_getInfo),
    TAVRO_NATIVE("native_getInfoList", "(I)[B", com_velotra_tv_tavro_transportstreamlist_getInfoList),
    TAVRO_NATIVE("native_getInfoListBySatellite", "(II)[B",
                 com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite),
    TAVRO_NATIVE("native_open", "(I)I", com_velotra_tv_tavro_transportstreamlist_open),
    TAVRO_NATIVE("native_open", "(ILjava/lang/String;)I", com_velotra_tv_tavro_transportstreamlist_open_path),
    TAVRO_NATIVE("native_store", "(ILjava/lang/String;)I", com_velotra_tv_tavro_transportstreamlist_store),
    TAVRO_NATIVE("native_updateInfo", "(IL" LIST_PACKAGE "VltTvTransportStreamInfoBase;)I",
                 com_velotra_tv_tavro_transportstreamlist_updateInfo),
    TAVRO_NATIVE("native_updateInfo", "(ILjava/lang/String;)I",
                 com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId),
    TAVRO_NATIVE("native_updateInfoList", "(ILjava/util/List;)I",
                 com_velotra_tv_tavro_transportstreamlist_updateInfoList),
    TAVRO_NATIVE("nativeAdd", "(IL" LIST_PACKAGE "VltTvTransportStreamInfoBase;)Ljava/lang/String;",
                 com_velotra_tv_tavro_transportstreamlist_add_Info),
    TAVRO_NATIVE("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                 com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId),
    TAVRO_NATIVE("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_transportstreamlist_remove_info),
    TAVRO_NATIVE("nativeRemoveByRecId", "(ILjava/lang/String;)I",
                 com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId),
};

const JNINativeMethod kNetworkListMethods[] = {
    TAVRO_NATIVE("nativeSetup", "()I", com_velotra_tv_tavro_nw_list_native_setup),
    TAVRO_NATIVE("native_clean", "(I)I", com_velotra_tv_tavro_networklist_clean),
    TAVRO_NATIVE("native_close", "(I)I", com_velotra_tv_tavro_networklist_close),
    TAVRO_NATIVE("native_delete", "(I)I", com_velotra_tv_tavro_networklist_delete),
    TAVRO_NATIVE("native_copy", "(II)I", com_velotra_tv_tavro_networklist_copy),
    TAVRO_NATIVE("native_getInfo", "(Ljava/lang/String;Ljava/util/List;)L" LIST_PACKAGE "VltTvNetworkInfo;",
                 com_velotra_tv_tavro_networklist_getInfo),
    TAVRO_NATIVE("native_getInfoList", "(ILjava/util/List;)Ljava/util/List;",
                 com_velotra_tv_tavro_networklist_getInfoList),
    TAVRO_NATIVE("native_open", "(I)I", com_velotra_tv_tavro_networklist_open),
    TAVRO_NATIVE("native_open", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_open_path),
    TAVRO_NATIVE("native_store", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_store),
    TAVRO_NATIVE("native_updateInfo", "(IL" LIST_PACKAGE "VltTvNetworkInfoBase;)I",
                 com_velotra_tv_tavro_networklist_updateInfo),
    TAVRO_NATIVE("native_updateInfo", "(ILjava/lang/String;)I", com_velotra_tv_tavro_networklist_updateInfo_by_recId),
    TAVRO_NATIVE("native_updateInfoList", "(ILjava/util/List;)I", com_velotra_tv_tavro_networklist_updateInfoList),
    TAVRO_NATIVE("nativeAdd", "(IL" LIST_PACKAGE "VltTvNetworkInfoBase;)Ljava/lang/String;",
                 com_velotra_tv_tavro_networklist_add_Info),
    TAVRO_NATIVE("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                 com_velotra_tv_tavro_networklist_add_Info_by_recId),
    TAVRO_NATIVE("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_networklist_remove_info),
    TAVRO_NATIVE("nativeRemoveByRecId", "(ILjava/lang/String;)I",
                 com_velotra_tv_tavro_networklist_remove_info_by_recId),
};

const JNINativeMethod kSatelliteListMethods[] = {
    TAVRO_NATIVE("nativeSetup", "()I", com_velotra_tv_tavro_satellitelist_native_setup),
    TAVRO_NATIVE("nativeOpen", "(I)I", com_velotra_tv_tavro_satellitelist_open),
    TAVRO_NATIVE("nativeOpen", "(ILjava/lang/String;)I", com_velotra_tv_tavro_satellitelist_open_path),
    TAVRO_NATIVE("nativeClean", "(I)I", com_velotra_tv_tavro_satellitelist_clean),
    TAVRO_NATIVE("nativeClose", "(I)I", com_velotra_tv_tavro_satellitelist_close),
    TAVRO_NATIVE("nativeDelete", "(I)I", com_velotra_tv_tavro_satellitelist_delete),
    TAVRO_NATIVE("nativeCopy", "(II)I", com_velotra_tv_tavro_satellitelist_copy),
    TAVRO_NATIVE("nativeStore", "(ILjava/lang/String;)I", com_velotra_tv_tavro_satellitelist_store),
    TAVRO_NATIVE("nativeGetInfo", "(Ljava/lang/String;Ljava/util/List;)L" LIST_PACKAGE "VltTvSatelliteInfo;",
                 com_velotra_tv_tavro_satellitelist_getInfo),
    TAVRO_NATIVE("nativeGetInfoList", "(ILjava/util/List;)Ljava/util/List;",
                 com_velotra_tv_tavro_satellitelist_getInfoList),
    TAVRO_NATIVE("nativeUpdateInfo", "(L" LIST_PACKAGE "VltTvSatelliteInfoBase;)I",
                 com_velotra_tv_tavro_satellitelist_updateInfo),
    TAVRO_NATIVE("nativeUpdateInfo", "(ILjava/lang/String;)I", com_velotra_tv_tavro_satellitelist_updateInfo_by_recId),
    TAVRO_NATIVE("nativeUpdateInfoList", "(Ljava/util/List;)I", com_velotra_tv_tavro_satellitelist_updateInfoList),
    TAVRO_NATIVE("nativeAdd", "(IL" LIST_PACKAGE "VltTvSatelliteInfoBase;)Ljava/lang/String;",
                 com_velotra_tv_tavro_satellitelist_add_Info),
    TAVRO_NATIVE("nativeAdd", "(ILjava/lang/String;)Ljava/lang/String;",
                 com_velotra_tv_tavro_satellitelist_add_Info_by_recId),
    TAVRO_NATIVE("nativeRemove", "(Ljava/lang/String;)I", com_velotra_tv_tavro_satellitelist_remove_info),
    TAVRO_NATIVE("nativeRemoveByRecId", "(ILjava/lang/String;)I",
                 com_velotra_tv_tavro_satellitelist_remove_info_by_recId),
};

// A class, its methods, and the error line when they cannot be registered.
struct NativeTable {
    const char* path;
    const JNINativeMethod* methods;
    int count;
    const char* failure;
};

// In registration order.
const NativeTable kTables[] = {
    {LIST_PACKAGE "VltTvChannelList", kChannelListMethods, static_cast<int>(std::size(kChannelListMethods)),
     "Failed to register Channel List native methods"},
    {LIST_PACKAGE "VltTvTransportStreamList", kTransportStreamListMethods,
     static_cast<int>(std::size(kTransportStreamListMethods)), "Failed to register TS List native methods"},
    {LIST_PACKAGE "VltTvNetworkList", kNetworkListMethods, static_cast<int>(std::size(kNetworkListMethods)),
     "Failed to register Network List native methods"},
    {LIST_PACKAGE "VltTvSatelliteList", kSatelliteListMethods, static_cast<int>(std::size(kSatelliteListMethods)),
     "Failed to register Satellite List native methods"},
};

} // namespace

int registerNativeMethods(JNIEnv* env, const char* path, const JNINativeMethod* methods, int count) {
    jclass cls = env->FindClass(path);
    if (cls == nullptr) {
        TAVRO_LOG_ERROR(kLoadTag, "registerNativeMethods cannot find class return false");
        return -1;
    }
    if (env->RegisterNatives(cls, methods, count) < 0) {
        TAVRO_LOG_ERROR(kLoadTag, "registerNativeMethods cannot register methods return false");
        return -1;
    }
    return 0;
}

int register_com_velotra_tv_tavro_channellist_VltTvList(JNIEnv* env) {
    for (const NativeTable& table : kTables) {
        if (registerNativeMethods(env, table.path, table.methods, table.count) != 0) {
            TAVRO_LOG_ERROR(kNoTag, "%s", table.failure);
            return 0;
        }
    }
    return 1;
}

jint JNI_OnLoad(JavaVM* vm, void* /*reserved*/) {
    void* env = nullptr;
    const bool attached = vm->GetEnv(&env, kJniVersion) == JNI_OK;
    // The gate is asked once for both branches. The second line precedes registration, so it is also written when that
    // fails.
    const bool loggable = is_loggable(kErrorLevel);
    if (!attached) {
        if (loggable) {
            __android_log_print(kErrorPriority, kLoadTag, "ERROR: GetEnv failed\n");
        }
        return -1;
    }
    if (loggable) {
        __android_log_print(kErrorPriority, kLoadTag, "channellist JNI_OnLoad OK.");
    }
    if (register_com_velotra_tv_tavro_channellist_VltTvList(static_cast<JNIEnv*>(env)) == 0) {
        TAVRO_LOG_ERROR(kLoadTag, "ERROR: VltTvList native registration failed");
        return -1;
    }
    javaVM = vm;
    return kJniVersion;
}
