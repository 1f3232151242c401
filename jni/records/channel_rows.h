// The keys of services: where the values of a Java channel object go in a service record.
//
// Places count from the start of the structure that the table is named after: the header, the common part of DVB and
// DTMB, or the specific part of a broadcast type.
#pragma once

#include "jni/records/to_record_rows.h"
#include "middleware/svl.h"

namespace tavro::channel_rows {

// Debug lines, and values with rules of their own.
void trace_service_id(const ToRecordRow& row, const std::byte* header, jint value);
void trace_broadcast_type(const ToRecordRow& row, const std::byte* header, jint value);
void trace_active(const ToRecordRow& row, const std::byte* header, jint value);
void trace_dvb_short_name(const ToRecordRow& row, const std::byte* dvb, jint value);
void trace_dtmb_short_name(const ToRecordRow& row, const std::byte* dtmb, jint value);
void put_satellite_record_id(const ToRecordRow& row, RecordObject& object, std::byte* header);
void put_region_codes(const ToRecordRow& row, RecordObject& object, std::byte* dvb);

constexpr ToRecordRow satellite_record_id(const char* key, const char* field, Place list, Place record) {
    ToRecordRow row = record_id(key, field, list, record);
    row.put = put_satellite_record_id;
    return row;
}

#define HEADER(MEMBER) TAVRO_PLACE(_SVL_REC_HEADER_T, MEMBER)

inline constexpr Place kNetworkMask = HEADER(ui4_nw_mask);
inline constexpr Place kOptionMask = HEADER(ui4_option_mask);
inline constexpr Place kOptionMask2 = HEADER(ui4_option_mask2);

// The header's keys. isContainsKey is looked up before each of the three tables.
inline constexpr ToRecordRow kHeaderRows[] = {
    integer("ServiceId", "serviceId", HEADER(ui2_svc_id), trace_service_id),
    record_id("TslRecId", "tslRecId", HEADER(ui2_tsl_id), HEADER(ui2_tsl_rec_id)),
    satellite_record_id("SatlRecId", "satlRecId", HEADER(ui2_satl_id), HEADER(ui2_satl_rec_id)),
    integer("BroadcastType", "broadcastType", HEADER(e_brdcst_type), trace_broadcast_type),
    text("ServiceName", "serviceName", HEADER(ac_name)),
    flag("VnetActive", "vnetActive", kNetworkMask, 0x2, trace_active),
    flag("VnetEpg", "vnetEpg", kNetworkMask, 0x4),
    flag("VnetVisible", "vnetVisible", kNetworkMask, 0x8),
    flag("VnetNumericSelectable", "vnetNumericSelectable", kNetworkMask, 0x200),
    flag("VnetScrambled", "vnetScrambled", kNetworkMask, 0x800),
};

inline constexpr ToRecordRow kMoreHeaderRows[] = {
    integer("ServiceType", "serviceType", HEADER(e_serv_type)),
    flag("VoptUserTmpUnlock", "voptUserTmpUnlock", kOptionMask, 0x4),
    flag("VoptChNameEdited", "voptChNameEdited", kOptionMask, 0x8),
    flag("VoptLcnApplied", "voptLcnApplied", kOptionMask, 0x20),
    flag("VoptHdSimulcast", "voptHdSimulcast", kOptionMask, 0x80),
    flag("VoptSdtAvailable", "voptSdtAvailable", kOptionMask, 0x200),
    flag("VoptChNumEdited", "voptChNumEdited", kOptionMask, 0x400),
    flag("VoptPortugalHdSiMulcast", "voptPortugalHdSiMulcast", kOptionMask, 0x800),
    flag("VoptDeletedByUser", "voptDeletedByUser", kOptionMask, 0x2000),
    flag("Vopt2SdtActualAvailable", "vopt2SdtActualAvailable", kOptionMask2, 0x40),
    flag("Vopt2SvcEitSchedule", "vopt2SvcEitSchedule", kOptionMask2, 0x200),
    flag("VnetBrdcstSvc", "vnetBrdcstSvc", kNetworkMask, 0x100000),
    flag("VoptStreamReqBlock", "voptStreamReqBlock", kOptionMask, 0x400000),
    flag("VoptInteractRestrict", "voptInteractRestrict", kOptionMask, 0x800000),
    flag("VnetInbList", "vnetInbList", kNetworkMask, 0x400),
    flag("VnetBackup1", "vnetBackup1", kNetworkMask, 0x1000),
    flag("ventNewServiceByBGM", "ventNewServiceByBGM", kNetworkMask, 0x40000),
    flag("vopt2NewServiceByMonitor", "vopt2NewServiceByMonitor", kOptionMask2, 0x100),
    flag("vopt2NewServiceBasedOnOPT", "vopt2NewServiceBasedOnOPT", kOptionMask2, 0x400),
    flag("ventChannelBlock", "ventChannelBlock", kNetworkMask, 0x100),
};

// Deliberate: this key is asked a second time, with the same effect.
inline constexpr ToRecordRow kChannelBlockAgain[] = {
    flag("ventChannelBlock", "ventChannelBlock", kNetworkMask, 0x100),
};

#undef HEADER
#define COMMON(MEMBER) TAVRO_PLACE(_SVL_DVB_COMMON_T, MEMBER)

// The keys that DVB and DTMB services share, after the short name.
inline constexpr ToRecordRow kCommonRows[] = {
    integer("CaSystemId", "caSystemId", COMMON(ui2_ca_system_id)),
    integer("ServiceRunningStatus", "serviceRunningStatus", COMMON(e_running_status)),
    integer("CaReplacementOnId", "caReplacementOnId", COMMON(t_ca_replacement.ui2_on_id)),
    integer("CaReplacementTsId", "caReplacementTsId", COMMON(t_ca_replacement.ui2_ts_id)),
    integer("CaRepalacementSvcId", "caRepalacementSvcId", COMMON(t_ca_replacement.ui2_svc_id)),
    integer("SvcReplacementOnId", "svcReplacementOnId", COMMON(t_svc_replacement.ui2_on_id)),
    integer("SvcReplacementTsId", "svcReplacementTsId", COMMON(t_svc_replacement.ui2_ts_id)),
    integer("SvcReplacementSvcId", "svcReplacementSvcId", COMMON(t_svc_replacement.ui2_svc_id)),
    integer("CompleteEitSchOnId", "completeEitSchOnId", COMMON(t_complete_eit_sch.ui2_on_id)),
    integer("CompleteEitSchTsId", "completeEitSchTsId", COMMON(t_complete_eit_sch.ui2_ts_id)),
    integer("CompleteEitSchSvcId", "completeEitSchSvcId", COMMON(t_complete_eit_sch.ui2_svc_id)),
    integer("HdSimulCastOnId", "hdSimulCastOnId", COMMON(t_hd_simulcast.ui2_on_id)),
    integer("HdSimulcastTsId", "hdSimulcastTsId", COMMON(t_hd_simulcast.ui2_ts_id)),
    integer("HdSimulcastSvcId", "hdSimulcastSvcId", COMMON(t_hd_simulcast.ui2_svc_id)),
};

inline constexpr ToRecordRow kLinkageRow =
    integer("LinkageDescrMask", "linkageDescrMask", COMMON(ui4_linkage_descr_mask));

#define DVB(MEMBER) TAVRO_PLACE(_SVL_DVB_T, MEMBER)

// The keys of DVB services: these, the common ones, then the rest.
inline constexpr ToRecordRow kDvbFirstRows[] = {
    integer("LogicalChannelNumber", "logicalChannelNumber", DVB(ui2_lcn)),
    text("ServiceShortName", "serviceShortName", COMMON(s_svc_name), trace_dvb_short_name),
};

inline constexpr ToRecordRow kDvbRows[] = {
    integer("FreeCaMode", "freeCaMode", DVB(ui1_free_ca_mode)),
    integer("CiHostShunningMode", "ciHostShunningMode", DVB(ui1_ci_host_shunning_mode)),
    integer("OriginalLcn", "originalLcn", DVB(ui2_original_lcn)),
    integer("LcnIndex", "lcnIndex", DVB(ui2_lcn_idx)),
    integer("CompDescInfo", "compDescInfo", DVB(ui4_comp_descr_info)),
    integer("SdtServiceType", "sdtServiceType", DVB(ui1_sdt_service_type)),
    text("DadInfo", "dadInfo", DVB(s_dad_info)),
    integer("TargetRegionLevel", "targetRegionLevel", DVB(ui1_target_region_level)),
    special("TargetRegionCode", "targetRegionCode", put_region_codes, DVB(aui2_code)),
    integer("SdtStreamContent", "sdtStreamContent", DVB(ui1_sdt_stream_content)),
    integer("SdtStreamContentExt", "sdtStreamContentExt", DVB(ui1_sdt_stream_content_ext)),
    integer("SdtStreamComponentType", "sdtStreamComponentType", DVB(ui1_sdt_stream_component_type)),
    kLinkageRow,
    integer("CiTuneService", "ciTuneService", DVB(ui1_ci_tune_service)),
    integer("EitPfFlag", "eitPfFlag", DVB(ui1_eit_pf_flag)),
    integer("DisplayingIdFlag", "displayingIdFlag", DVB(ui1_displaying_id_flag)),
    integer("DisplayingTsId", "displayingTsId", DVB(ui2_displaying_ts_id)),
    integer("DisplayingServiceId", "displayingServiceId", DVB(ui2_displaying_svc_id)),
    text("ServiceProfileName", "serviceProfileName", DVB(s_service_profile_name)),
    integer("CategoryMask", "categoryMask", DVB(ui4_category_mask)),
};

#undef DVB
#define DTMB(MEMBER) TAVRO_PLACE(_SVL_DTMB_T, MEMBER)

// The keys of DTMB services, likewise.
inline constexpr ToRecordRow kDtmbFirstRows[] = {
    text("ServiceShortName", "serviceShortName", COMMON(s_svc_name), trace_dtmb_short_name),
};

inline constexpr ToRecordRow kDtmbRows[] = {
    integer("FreeCaMode", "freeCaMode", DTMB(ui1_free_ca_mode)),
    integer("SdtServiceType", "sdtServiceType", DTMB(ui1_sdt_service_type)),
    kLinkageRow,
};

#undef DTMB
#undef COMMON

// Places of common fields count from the common part, with which both specific parts begin.
static_assert(offsetof(_SVL_DVB_T, t_common) == 0 && offsetof(_SVL_DTMB_T, t_common) == 0);

} // namespace tavro::channel_rows
