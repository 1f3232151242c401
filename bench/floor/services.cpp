#include "common.h"
#include "floor.h"
#include "middleware/nwl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"

#include <pthread.h>

#define TAG "NativeVltTvChannelList_Cpp"
#define CLASS "[NativeVltTvChannelList]"
#define STREAM_TAG "NativeVltTvTransportStreamList_Cpp"
#define STREAM_CLASS "[NativeVltTvTransportStreamList]"
#define NETWORK_TAG "NativeVltTvNetworkList_Cpp"
#define NETWORK_CLASS "[NativeVltTvNetworkList]"
#define CONTAINS "(L" FLOOR_PACKAGE "VltTvChannelInfoBase;Ljava/lang/String;)Z"
#define NATIVE "com_velotra_tv_tavro_channellist_"

namespace tavro::bench::floor {
namespace {

FLOOR_HANDLES(svl, TAG, CLASS, "mwdbId", "mwdbHandle", "getMwdbHandle", "setMwdbHandle", true)

void trace_record(const char* operation, const _SVL_REC_T& record) {
    FLOOR_DEBUG(TAG, CLASS "[%s]:rec_id:%d ui2_prog_id:%d ac_name:%.*s\n", operation, record.ui2_svl_rec_id,
                record.t_header.ui2_svc_id, static_cast<int>(sizeof record.t_header.ac_name), record.t_header.ac_name);
}

MwStatus get(int list, int id, _SVL_REC_T* record) {
    FLOOR_DEBUG(TAG, CLASS "[getInfo]: mwdbId = %d recId = %d\n", list, id);
    const MwdbHandle handle = svl_handle(list);
    std::int32_t version;
    const MwStatus status = x_svl_get_rec(handle, static_cast<std::uint16_t>(id), record, &version);
    trace_record("getInfo", *record);
    return status;
}

MwStatus update(int list, _SVL_REC_T* record) {
    FLOOR_DEBUG(TAG, CLASS "[updateInfo]: mwdbId = %d \n", list);
    const MwdbHandle handle = svl_handle(list);
    trace_record("updateInfo", *record);
    return x_svl_update_rec(handle, record, kMwUpdatePlain);
}

void lock(int list) { x_svl_lock(svl_handle(list)); }
void unlock(int list) { x_svl_unlock(svl_handle(list)); }

MwdbHandle begin_walk(int list) {
    FLOOR_DEBUG(TAG, CLASS "[openTmp]: mwdbId = %d \n", list);
    MwdbHandle handle;
    x_svl_open(static_cast<std::uint16_t>(list), 0, 0, &handle);
    FLOOR_DEBUG(TAG, CLASS "[openTmp]: mwdbId = %d set handle ok \n", list);
    x_svl_read_lock(handle);
    FLOOR_DEBUG(TAG, CLASS "[getInfoListNum]: mwdbId = %d \n", handle);
    return handle;
}

void end_walk(MwdbHandle handle) {
    x_svl_read_unlock(handle);
    FLOOR_DEBUG(TAG, CLASS "[closeTmp]:\n");
    x_svl_close(handle);
    FLOOR_DEBUG(TAG, CLASS "[closeTmp]: mwdbId = %d set handle ok \n", handle);
}

// Reads the service's transport stream through a temporary handle and compares its id.
bool stream_has_id(const _SVL_REC_HEADER_T& service, jint stream_id) {
    const std::uint16_t list = service.ui2_tsl_id;
    MwdbHandle handle;
    FLOOR_DEBUG(STREAM_TAG, STREAM_CLASS "[open]: mwdbId = %d \n", list);
    x_tsl_open(list, 0, 0, &handle);
    FLOOR_DEBUG(STREAM_TAG, STREAM_CLASS "[setMwdbHandle]: mwdbId = %d mwdbHandle:0x%x\n", list, handle);
    _TSL_REC_T record = {};
    std::int32_t version;
    const MwStatus status = x_tsl_get_rec(handle, service.ui2_tsl_rec_id, &record, &version);
    FLOOR_DEBUG(STREAM_TAG, STREAM_CLASS "[clearMwdbHandle]: mwdbId = %d mwdbHandle:0x%x\n", list, handle);
    x_tsl_close(handle);
    return status == kMwOk && record.ui2_ts_id == stream_id;
}

bool network_has_id(const _SVL_REC_HEADER_T& service, jint network_id) {
    const std::uint16_t list = service.ui2_nwl_id;
    MwdbHandle handle;
    FLOOR_DEBUG(NETWORK_TAG, NETWORK_CLASS "[open]: mwdbId = %d \n", list);
    x_nwl_open(list, 0, 0, &handle);
    FLOOR_DEBUG(NETWORK_TAG, NETWORK_CLASS "[setMwdbHandle]: mwdbId = %d mwdbHandle:0x%x\n", list, handle);
    FLOOR_DEBUG(NETWORK_TAG, NETWORK_CLASS "[getInfo]: mwdbId = %d recId = %d\n", list, service.ui2_nwl_rec_id);
    FLOOR_DEBUG(NETWORK_TAG, NETWORK_CLASS "[getMwdbHandle]: mwdbId = %d mwdbHandle:0x%x\n", list, handle);
    _NWL_REC_T record = {};
    std::int32_t version;
    const MwStatus status = x_nwl_get_rec(handle, service.ui2_nwl_rec_id, &record, &version);
    FLOOR_DEBUG(NETWORK_TAG, NETWORK_CLASS "[getInfo]:rec_id:%d nw_id:%d nit_ver:%d s_nw_name:%.*s\n",
                record.ui2_nwl_rec_id, record.ui2_nw_id, record.ui1_nw_version,
                static_cast<int>(sizeof record.ac_nw_name), record.ac_nw_name);
    FLOOR_DEBUG(NETWORK_TAG, NETWORK_CLASS "[clearMwdbHandle]: mwdbId = %d mwdbHandle:0x%x\n", list, handle);
    x_nwl_close(handle);
    return status == kMwOk && record.ui2_nw_id == network_id;
}

using Matches = bool (*)(const _SVL_REC_HEADER_T& service, jint id);

inline jbyteArray walk(JNIEnv* env, jint list, Matches matches, jint id) {
    const MwdbHandle handle = begin_walk(list);
    std::uint16_t count;
    std::int32_t version;
    x_svl_get_num_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, &count, &version);
    auto* records = static_cast<_SVL_REC_T*>(std::malloc(count * sizeof(_SVL_REC_T)));
    std::size_t kept = 0;
    for (std::uint16_t i = 0; i < count; ++i) {
        std::memset(&records[kept], 0, sizeof(_SVL_REC_T));
        x_svl_get_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, i, &records[kept], &version);
        kept += matches == nullptr || matches(records[kept].t_header, id) ? 1 : 0;
    }
    end_walk(handle);
    jbyteArray array = bytes(env, records, kept * sizeof(_SVL_REC_T));
    std::free(records);
    return array;
}

void set_header(Object& o, _SVL_REC_HEADER_T& h) {
    look_up(o, CONTAINS);
    FLOOR_KEY(o, "ServiceId", const jint id = int_field(o, "serviceId"); h.ui2_svc_id = static_cast<std::uint16_t>(id);
              FLOOR_DEBUG(nullptr, "ivalue==%d _set_header_info,", id));
    FLOOR_KEY(o, "TslRecId", const Ids ids = ids_field(o, "tslRecId");
              h.ui2_tsl_id = static_cast<std::uint16_t>(ids.list);
              h.ui2_tsl_rec_id = static_cast<std::uint16_t>(ids.record));
    FLOOR_KEY(o, "SatlRecId", FLOOR_BRIDGE("_set_header_info"); const Ids ids = ids_field(o, "satlRecId");
              h.ui2_satl_id = static_cast<std::uint16_t>(ids.list);
              h.ui2_satl_rec_id = static_cast<std::uint16_t>(ids.record));
    FLOOR_KEY(o, "BroadcastType", const jint type = int_field(o, "broadcastType");
              h.e_brdcst_type = static_cast<std::uint8_t>(type);
              FLOOR_DEBUG(nullptr, "ibrdcst==%d _set_header_info,", type));
    FLOOR_TEXT(o, "ServiceName", "serviceName", h.ac_name);
    FLOOR_KEY(o, "VnetActive", const jint active = int_field(o, "vnetActive");
              set_bits(h.ui4_nw_mask, active == 1, 0x2); FLOOR_DEBUG(nullptr, "iactive==%d _set_header_info,", active));
    FLOOR_FLAG(o, "VnetEpg", "vnetEpg", h.ui4_nw_mask, 0x4);
    FLOOR_FLAG(o, "VnetVisible", "vnetVisible", h.ui4_nw_mask, 0x8);
    FLOOR_FLAG(o, "VnetNumericSelectable", "vnetNumericSelectable", h.ui4_nw_mask, 0x200);
    FLOOR_FLAG(o, "VnetScrambled", "vnetScrambled", h.ui4_nw_mask, 0x800);

    look_up(o, CONTAINS);
    FLOOR_INT(o, "ServiceType", "serviceType", h.e_serv_type);
    FLOOR_FLAG(o, "VoptUserTmpUnlock", "voptUserTmpUnlock", h.ui4_option_mask, 0x4);
    FLOOR_FLAG(o, "VoptChNameEdited", "voptChNameEdited", h.ui4_option_mask, 0x8);
    FLOOR_FLAG(o, "VoptLcnApplied", "voptLcnApplied", h.ui4_option_mask, 0x20);
    FLOOR_FLAG(o, "VoptHdSimulcast", "voptHdSimulcast", h.ui4_option_mask, 0x80);
    FLOOR_FLAG(o, "VoptSdtAvailable", "voptSdtAvailable", h.ui4_option_mask, 0x200);
    FLOOR_FLAG(o, "VoptChNumEdited", "voptChNumEdited", h.ui4_option_mask, 0x400);
    FLOOR_FLAG(o, "VoptPortugalHdSiMulcast", "voptPortugalHdSiMulcast", h.ui4_option_mask, 0x800);
    FLOOR_FLAG(o, "VoptDeletedByUser", "voptDeletedByUser", h.ui4_option_mask, 0x2000);
    FLOOR_FLAG(o, "Vopt2SdtActualAvailable", "vopt2SdtActualAvailable", h.ui4_option_mask2, 0x40);
    FLOOR_FLAG(o, "Vopt2SvcEitSchedule", "vopt2SvcEitSchedule", h.ui4_option_mask2, 0x200);
    FLOOR_FLAG(o, "VnetBrdcstSvc", "vnetBrdcstSvc", h.ui4_nw_mask, 0x100000);
    FLOOR_FLAG(o, "VoptStreamReqBlock", "voptStreamReqBlock", h.ui4_option_mask, 0x400000);
    FLOOR_FLAG(o, "VoptInteractRestrict", "voptInteractRestrict", h.ui4_option_mask, 0x800000);
    FLOOR_FLAG(o, "VnetInbList", "vnetInbList", h.ui4_nw_mask, 0x400);
    FLOOR_FLAG(o, "VnetBackup1", "vnetBackup1", h.ui4_nw_mask, 0x1000);
    FLOOR_FLAG(o, "ventNewServiceByBGM", "ventNewServiceByBGM", h.ui4_nw_mask, 0x40000);
    FLOOR_FLAG(o, "vopt2NewServiceByMonitor", "vopt2NewServiceByMonitor", h.ui4_option_mask2, 0x100);
    FLOOR_FLAG(o, "vopt2NewServiceBasedOnOPT", "vopt2NewServiceBasedOnOPT", h.ui4_option_mask2, 0x400);
    FLOOR_FLAG(o, "ventChannelBlock", "ventChannelBlock", h.ui4_nw_mask, 0x100);

    look_up(o, CONTAINS);
    FLOOR_FLAG(o, "ventChannelBlock", "ventChannelBlock", h.ui4_nw_mask, 0x100);
}

// `seed` provides the low bits of the channel id.
void set_number(const Object& o, _SVL_REC_HEADER_T& h, std::uint32_t seed) {
    std::uint32_t major_number = 0;
    std::uint32_t minor_number = 0;
    FLOOR_INT(o, "MajorChannelNumber", "majorChannelNumber", major_number);
    FLOOR_INT(o, "MinorChannelNumber", "minorChannelNumber", minor_number);
    if (major_number == 0 && minor_number == 0) {
        return;
    }
    if (h.e_brdcst_type == kBroadcastDvb) {
        h.ui4_channel_id = ((seed & 0xF) | (major_number << 18)) + 0x80;
    }
}

void set_region_codes(const Object& o, _SVL_DVB_T& d) {
    jfieldID field = o.env->GetFieldID(o.field_class, "targetRegionCode", "[I");
    auto* array = static_cast<jintArray>(o.env->GetObjectField(o.object, field));
    const jsize length = o.env->GetArrayLength(array);
    if (length > 3) {
        return;
    }
    const jint* codes = o.env->GetIntArrayElements(array, nullptr);
    std::memset(d.aui2_code, 0, sizeof d.aui2_code);
    for (jsize i = 0; i < length; ++i) {
        d.aui2_code[i] = static_cast<std::uint16_t>(codes[i]);
        FLOOR_DEBUG(nullptr, "stdvb.aui2_code[%d]==%d _set_sub_dvb_info,", i, d.aui2_code[i]);
    }
    o.env->DeleteLocalRef(array);
}

void set_dvb(Object& o, _SVL_DVB_T& d) {
    _SVL_DVB_COMMON_T& c = d.t_common;
    look_up(o, CONTAINS);
    FLOOR_INT(o, "LogicalChannelNumber", "logicalChannelNumber", d.ui2_lcn);
    FLOOR_KEY(o, "ServiceShortName",
              jstring text = text_field(o, "serviceShortName", c.s_svc_name, sizeof c.s_svc_name);
              FLOOR_DEBUG(nullptr, "stdvb.s_svc_name==%s _set_dvb_info", c.s_svc_name); o.env->DeleteLocalRef(text));
    FLOOR_INT(o, "CaSystemId", "caSystemId", c.ui2_ca_system_id);
    FLOOR_INT(o, "ServiceRunningStatus", "serviceRunningStatus", c.e_running_status);
    FLOOR_INT(o, "CaReplacementOnId", "caReplacementOnId", c.t_ca_replacement.ui2_on_id);
    FLOOR_INT(o, "CaReplacementTsId", "caReplacementTsId", c.t_ca_replacement.ui2_ts_id);
    FLOOR_INT(o, "CaRepalacementSvcId", "caRepalacementSvcId", c.t_ca_replacement.ui2_svc_id);
    FLOOR_INT(o, "SvcReplacementOnId", "svcReplacementOnId", c.t_svc_replacement.ui2_on_id);
    FLOOR_INT(o, "SvcReplacementTsId", "svcReplacementTsId", c.t_svc_replacement.ui2_ts_id);
    FLOOR_INT(o, "SvcReplacementSvcId", "svcReplacementSvcId", c.t_svc_replacement.ui2_svc_id);
    FLOOR_INT(o, "CompleteEitSchOnId", "completeEitSchOnId", c.t_complete_eit_sch.ui2_on_id);
    FLOOR_INT(o, "CompleteEitSchTsId", "completeEitSchTsId", c.t_complete_eit_sch.ui2_ts_id);
    FLOOR_INT(o, "CompleteEitSchSvcId", "completeEitSchSvcId", c.t_complete_eit_sch.ui2_svc_id);
    FLOOR_INT(o, "HdSimulCastOnId", "hdSimulCastOnId", c.t_hd_simulcast.ui2_on_id);
    FLOOR_INT(o, "HdSimulcastTsId", "hdSimulcastTsId", c.t_hd_simulcast.ui2_ts_id);
    FLOOR_INT(o, "HdSimulcastSvcId", "hdSimulcastSvcId", c.t_hd_simulcast.ui2_svc_id);
    FLOOR_INT(o, "FreeCaMode", "freeCaMode", d.ui1_free_ca_mode);
    FLOOR_INT(o, "CiHostShunningMode", "ciHostShunningMode", d.ui1_ci_host_shunning_mode);
    FLOOR_INT(o, "OriginalLcn", "originalLcn", d.ui2_original_lcn);
    FLOOR_INT(o, "LcnIndex", "lcnIndex", d.ui2_lcn_idx);
    FLOOR_INT(o, "CompDescInfo", "compDescInfo", d.ui4_comp_descr_info);
    FLOOR_INT(o, "SdtServiceType", "sdtServiceType", d.ui1_sdt_service_type);
    FLOOR_TEXT(o, "DadInfo", "dadInfo", d.s_dad_info);
    FLOOR_INT(o, "TargetRegionLevel", "targetRegionLevel", d.ui1_target_region_level);
    FLOOR_KEY(o, "TargetRegionCode", set_region_codes(o, d));
    FLOOR_INT(o, "SdtStreamContent", "sdtStreamContent", d.ui1_sdt_stream_content);
    FLOOR_INT(o, "SdtStreamContentExt", "sdtStreamContentExt", d.ui1_sdt_stream_content_ext);
    FLOOR_INT(o, "SdtStreamComponentType", "sdtStreamComponentType", d.ui1_sdt_stream_component_type);
    FLOOR_INT(o, "LinkageDescrMask", "linkageDescrMask", c.ui4_linkage_descr_mask);
    FLOOR_INT(o, "CiTuneService", "ciTuneService", d.ui1_ci_tune_service);
    FLOOR_INT(o, "EitPfFlag", "eitPfFlag", d.ui1_eit_pf_flag);
    FLOOR_INT(o, "DisplayingIdFlag", "displayingIdFlag", d.ui1_displaying_id_flag);
    FLOOR_INT(o, "DisplayingTsId", "displayingTsId", d.ui2_displaying_ts_id);
    FLOOR_INT(o, "DisplayingServiceId", "displayingServiceId", d.ui2_displaying_svc_id);
    FLOOR_TEXT(o, "ServiceProfileName", "serviceProfileName", d.s_service_profile_name);
    FLOOR_INT(o, "CategoryMask", "categoryMask", d.ui4_category_mask);
}

void overlay(Object& o, _SVL_REC_T& record) {
    set_header(o, record.t_header);
    set_number(o, record.t_header, record.t_header.ui4_channel_id);
    if (record.t_header.e_brdcst_type == kBroadcastDvb) {
        set_dvb(o, record.u_specific.t_dvb);
    }
}

pthread_mutex_t open_mutex = PTHREAD_MUTEX_INITIALIZER;

} // namespace

jbyteArray service_get(JNIEnv* env, jobject, jstring identifier) {
    const Ids ids = parse(env, identifier);
    _SVL_REC_T record = {};
    if (get(ids.list, ids.record, &record) != kMwOk) {
        return nullptr;
    }
    return bytes(env, &record, sizeof record);
}

jbyteArray service_get_list(JNIEnv* env, jobject, jint list) { return walk(env, list, nullptr, 0); }
jbyteArray service_get_by_stream(JNIEnv* env, jobject, jint list, jint stream_id) {
    return walk(env, list, stream_has_id, stream_id);
}
jbyteArray service_get_by_network(JNIEnv* env, jobject, jint list, jint network_id) {
    return walk(env, list, network_has_id, network_id);
}

jbyteArray service_get_by_stream_record(JNIEnv* env, jobject, jint list, jint record) {
    const MwdbHandle handle = begin_walk(list);
    const auto tsl_id = static_cast<std::uint16_t>(list);
    const auto tsl_rec_id = static_cast<std::uint16_t>(record);
    std::uint16_t count;
    std::int32_t version;
    x_svl_get_num_rec_by_ts(handle, tsl_id, tsl_rec_id, kMwEveryNetworkMask, &count, &version);
    auto* records = static_cast<_SVL_REC_T*>(std::malloc(count * sizeof(_SVL_REC_T)));
    for (std::uint16_t i = 0; i < count; ++i) {
        std::memset(&records[i], 0, sizeof(_SVL_REC_T));
        x_svl_get_rec_by_ts(handle, tsl_id, tsl_rec_id, kMwEveryNetworkMask, i, &records[i], &version);
    }
    end_walk(handle);
    jbyteArray array = bytes(env, records, count * sizeof(_SVL_REC_T));
    std::free(records);
    return array;
}

jbyteArray service_copy(JNIEnv* env, jobject, jint list) {
    MwdbHandle handle;
    std::uint16_t count;
    std::int32_t version;
    x_svl_open(static_cast<std::uint16_t>(list), 0, 0, &handle);
    x_svl_get_num_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, &count, &version);
    auto* records = static_cast<_SVL_REC_T*>(std::malloc(count * sizeof(_SVL_REC_T)));
    for (std::uint16_t i = 0; i < count; ++i) {
        std::memset(&records[i], 0, sizeof(_SVL_REC_T));
        x_svl_get_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, i, &records[i], &version);
    }
    x_svl_close(handle);
    jbyteArray array = bytes(env, records, count * sizeof(_SVL_REC_T));
    std::free(records);
    return array;
}

jint service_open(JNIEnv*, jobject, jint list) {
    pthread_mutex_lock(&open_mutex);
    FLOOR_DEBUG(TAG, CLASS "[open]: mwdbId = %d \n", list);
    svl_handle(list);
    pthread_mutex_unlock(&open_mutex);
    return kDone;
}

jint service_clean(JNIEnv*, jobject, jint list) {
    FLOOR_DEBUG(TAG, "[NativeVltChannelList][clean]: mwdbId = %d \n", list);
    const MwdbHandle handle = svl_handle(list);
    x_svl_lock(handle);
    const MwStatus status = x_svl_clean(handle);
    x_svl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

jint service_update(JNIEnv* env, jobject, jint list, jobject channel) {
    FLOOR_BRIDGE(NATIVE "updateInfo");
    jclass cls = env->GetObjectClass(channel);
    Object o = {env, channel, cls, cls, nullptr};
    look_up(o, CONTAINS);
    int id = 0;
    FLOOR_KEY(o, "SvlIdSvlRecId", id = ids_field(o, "svlIdSvlRecId").record);
    _SVL_REC_T record = {};
    if (get(list, id, &record) != kMwOk) {
        return kFailed;
    }
    overlay(o, record);
    lock(list);
    const MwStatus status = update(list, &record);
    unlock(list);
    return status == kMwOk ? kDone : kFailed;
}

jint service_update_list(JNIEnv* env, jobject, jint list, jobject channels) {
    FLOOR_BRIDGE(NATIVE "updateInfoList");
    const JavaList elements = java_list(env, channels);
    lock(list);
    for (jint i = 0; i < elements.size; ++i) {
        jobject channel = env->CallObjectMethod(channels, elements.get, i);
        jclass cls = env->GetObjectClass(channel);
        Object o = {env, channel, cls, cls, nullptr};
        const int id = ids_field(o, "svlIdSvlRecId").record;
        _SVL_REC_T record = {};
        get(list, id, &record);
        overlay(o, record);
        update(list, &record);
        env->DeleteLocalRef(cls);
        env->DeleteLocalRef(channel);
    }
    unlock(list);
    return kDone;
}

jstring service_add(JNIEnv* env, jobject, jint list, jobject channel) {
    FLOOR_BRIDGE("[" NATIVE "add_Info][%d] ", __LINE__);
    env->NewStringUTF("");
    _SVL_REC_T record = {};
    record.t_header.ui4_nw_mask = 1;
    jclass cls = env->GetObjectClass(channel);
    Object o = {env, channel, cls, cls, nullptr};
    set_header(o, record.t_header);
    FLOOR_BRIDGE("[" NATIVE "add_Info][%d] ", __LINE__);
    set_number(o, record.t_header, record.t_header.e_serv_type);
    if (record.t_header.e_brdcst_type == kBroadcastDvb) {
        set_dvb(o, record.u_specific.t_dvb);
    }
    lock(list);
    FLOOR_DEBUG(TAG, CLASS "[addInfo]: mwdbId = %d \n", list);
    const MwdbHandle handle = svl_handle(list);
    x_svl_qry_rec_id(handle, kMwQueryNextRecordId, &record.ui2_svl_rec_id);
    trace_record("addInfo", record);
    x_svl_add_rec(handle, &record);
    unlock(list);
    FLOOR_BRIDGE("[chList->addInfo][%d] mwdbId = %d, rec_id = %d", kDone, list, record.ui2_svl_rec_id);
    return identifier(env, list, record.ui2_svl_rec_id);
}

jint service_remove(JNIEnv* env, jobject, jstring identifier) {
    FLOOR_BRIDGE("[" NATIVE "remove_info][%d] ", __LINE__);
    const IdText text = text_of(env, identifier);
    FLOOR_DEBUG(TAG, "[removeInfo]: string recId = %s \n", text.chars);
    const Ids ids = ids_in(text.chars);
    FLOOR_DEBUG(TAG, "[removeInfo]: svlId = %d, svlRecId = %u \n", ids.list, static_cast<unsigned int>(ids.record));
    const MwdbHandle handle = svl_handle(ids.list);
    x_svl_lock(handle);
    const MwStatus status = x_svl_del_rec(handle, static_cast<std::uint16_t>(ids.record));
    x_svl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

} // namespace tavro::bench::floor
