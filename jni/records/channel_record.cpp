#include "jni/records/channel_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/record_rows.h"

#include <cstring>

using tavro::flag;
using tavro::integer;
using tavro::Place;
using tavro::record_id;
using tavro::RecordObject;
using tavro::Row;
using tavro::special;
using tavro::text;

namespace {

constexpr char kHeaderInfo[] = "_set_header_info";

void trace_service_id(const Row&, const std::byte*, jint value) {
    TAVRO_LOG_DEBUG(kNoTag, "ivalue==%d %s,", value, kHeaderInfo);
}

void trace_broadcast_type(const Row&, const std::byte*, jint value) {
    TAVRO_LOG_DEBUG(kNoTag, "ibrdcst==%d %s,", value, kHeaderInfo);
}

void trace_active(const Row&, const std::byte*, jint value) {
    TAVRO_LOG_DEBUG(kNoTag, "iactive==%d %s,", value, kHeaderInfo);
}

void trace_dvb_short_name(const Row& row, const std::byte* dvb, jint) {
    TAVRO_LOG_DEBUG(kNoTag, "stdvb.s_svc_name==%s %s", reinterpret_cast<const char*>(dvb + row.to.offset),
                    "_set_dvb_info");
}

void trace_dtmb_short_name(const Row& row, const std::byte* dtmb, jint) {
    TAVRO_LOG_DEBUG(kNoTag, "stdtmb.s_svc_name==%s %s", reinterpret_cast<const char*>(dtmb + row.to.offset),
                    "_set_dtmb_info");
}

void store_satellite_record_id(const Row& row, RecordObject& object, std::byte* header) {
    TAVRO_LOG_JNI("%s", kHeaderInfo);
    tavro::store_record_id(row, object, header);
}

constexpr Row satellite_record_id(const char* key, const char* field, Place list, Place record) {
    Row row = record_id(key, field, list, record);
    row.store = store_satellite_record_id;
    return row;
}

// Up to three codes; fewer zero the rest, more store nothing.
void store_region_codes(const Row& row, RecordObject& object, std::byte* dvb) {
    const tavro::LocalRef field(object.jni(), object.object_field(row.field, "[I").value_or(nullptr));
    if (field.get() == nullptr) {
        return;
    }
    auto* array = static_cast<jintArray>(field.get());
    const jsize length = object.jni().env()->GetArrayLength(array);
    if (length > static_cast<jsize>(row.to.width / sizeof(std::uint16_t))) {
        return;
    }
    const jint* codes = object.jni().keep_int_elements(array);
    if (codes == nullptr) {
        return;
    }
    std::memset(dvb + row.to.offset, 0, row.to.width);
    for (jsize i = 0; i < length; ++i) {
        const auto code = static_cast<std::uint16_t>(codes[i]);
        std::memcpy(dvb + row.to.offset + static_cast<std::size_t>(i) * sizeof(code), &code, sizeof(code));
        TAVRO_LOG_DEBUG(kNoTag, "stdvb.aui2_code[%d]==%d %s,", i, code, "_set_sub_dvb_info");
    }
}

#define HEADER(MEMBER) TAVRO_PLACE(_SVL_REC_HEADER_T, MEMBER)

constexpr Place kNetworkMask = HEADER(ui4_nw_mask);
constexpr Place kOptionMask = HEADER(ui4_option_mask);
constexpr Place kOptionMask2 = HEADER(ui4_option_mask2);

// isContainsKey is looked up before each of the three tables.
constexpr Row kHeaderRows[] = {
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

constexpr Row kMoreHeaderRows[] = {
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

// Asked a second time, deliberately; harmless.
constexpr Row kChannelBlockAgain[] = {
    flag("ventChannelBlock", "ventChannelBlock", kNetworkMask, 0x100),
};

#undef HEADER
#define COMMON(MEMBER) TAVRO_PLACE(_SVL_DVB_COMMON_T, MEMBER)

// What DVB and DTMB have alike, behind the short name.
constexpr Row kCommonRows[] = {
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

constexpr Row kLinkageRow = integer("LinkageDescrMask", "linkageDescrMask", COMMON(ui4_linkage_descr_mask));

#define DVB(MEMBER) TAVRO_PLACE(_SVL_DVB_T, MEMBER)

constexpr Row kDvbFirstRows[] = {
    integer("LogicalChannelNumber", "logicalChannelNumber", DVB(ui2_lcn)),
    text("ServiceShortName", "serviceShortName", COMMON(s_svc_name), trace_dvb_short_name),
};

constexpr Row kDvbRows[] = {
    integer("FreeCaMode", "freeCaMode", DVB(ui1_free_ca_mode)),
    integer("CiHostShunningMode", "ciHostShunningMode", DVB(ui1_ci_host_shunning_mode)),
    integer("OriginalLcn", "originalLcn", DVB(ui2_original_lcn)),
    integer("LcnIndex", "lcnIndex", DVB(ui2_lcn_idx)),
    integer("CompDescInfo", "compDescInfo", DVB(ui4_comp_descr_info)),
    integer("SdtServiceType", "sdtServiceType", DVB(ui1_sdt_service_type)),
    text("DadInfo", "dadInfo", DVB(s_dad_info)),
    integer("TargetRegionLevel", "targetRegionLevel", DVB(ui1_target_region_level)),
    special("TargetRegionCode", "targetRegionCode", store_region_codes, DVB(aui2_code)),
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

constexpr Row kDtmbFirstRow[] = {
    text("ServiceShortName", "serviceShortName", COMMON(s_svc_name), trace_dtmb_short_name),
};

constexpr Row kDtmbRows[] = {
    integer("FreeCaMode", "freeCaMode", DTMB(ui1_free_ca_mode)),
    integer("SdtServiceType", "sdtServiceType", DTMB(ui1_sdt_service_type)),
    kLinkageRow,
};

#undef DTMB
#undef COMMON

// The tables above place common fields by their offset in the common part.
static_assert(offsetof(_SVL_DVB_T, t_common) == 0 && offsetof(_SVL_DTMB_T, t_common) == 0);

} // namespace

void _set_header_info(RecordObject& object, _SVL_REC_HEADER_T& header) {
    object.look_up_contains_key();
    walk(kHeaderRows, object, header);
    object.look_up_contains_key();
    walk(kMoreHeaderRows, object, header);
    object.look_up_contains_key();
    walk(kChannelBlockAgain, object, header);
}

void _set_dvb_info(RecordObject& object, _SVL_DVB_T& dvb) {
    object.look_up_contains_key();
    walk(kDvbFirstRows, object, dvb);
    walk(kCommonRows, object, dvb);
    walk(kDvbRows, object, dvb);
}

void _set_dtmb_info(RecordObject& object, _SVL_DTMB_T& dtmb) {
    object.look_up_contains_key();
    walk(kDtmbFirstRow, object, dtmb);
    walk(kCommonRows, object, dtmb);
    walk(kDtmbRows, object, dtmb);
}
