// Service lists (SVL): the record structure and the middleware calls.
//
// Terms are those of ETSI EN 300 468 (service, transport stream, original network, running status,
// free_CA_mode, linkage) where the field carries a value of that standard. Numbers in parentheses are its clauses.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

namespace tavro {

// Values of e_brdcst_type that the library treats specially.
inline constexpr std::uint8_t kBroadcastDvb = 2;
inline constexpr std::uint8_t kBroadcastType3 = 3; // channel numbers through x_sb_gen_channel_id
inline constexpr std::uint8_t kBroadcastType5 = 5; // SDT service type in the first specific byte
inline constexpr std::uint8_t kBroadcastDtmb = 7;

} // namespace tavro

// What every service has, whatever its broadcast system: 148 bytes.
struct _SVL_REC_HEADER_T {
    std::uint32_t ui4_channel_id;
    std::uint32_t ui4_nw_mask;
    std::uint32_t ui4_option_mask;
    std::uint32_t ui4_option_mask2;
    std::uint8_t aui1_reserved_16[4];
    std::uint16_t ui2_svc_id;
    std::uint16_t ui2_tsl_id;
    std::uint16_t ui2_tsl_rec_id;
    std::uint16_t ui2_nwl_id;
    std::uint16_t ui2_nwl_rec_id;
    std::uint16_t ui2_satl_id;
    std::uint16_t ui2_satl_rec_id;
    std::uint8_t e_brdcst_type;
    std::uint8_t e_serv_type;
    char ac_name[65];
    std::uint8_t aui1_reserved_101[47];
};

template <>
struct tavro::Layout<_SVL_REC_HEADER_T> : LayoutOf<_SVL_REC_HEADER_T> {
    static constexpr Field fields[] = {
        TAVRO_FLAGS(0, ui4_channel_id, "CHANNEL_ID", "channel id",
                    "holds the channel numbers, in bits that depend on the broadcast type"),
        TAVRO_FLAGS(4, ui4_nw_mask, "NETWORK_MASK", "network flags", ""),
        TAVRO_FLAGS(8, ui4_option_mask, "OPTION_MASK", "option flags", ""),
        TAVRO_FLAGS(12, ui4_option_mask2, "OPTION_MASK_2", "option flags 2", ""),
        TAVRO_RESERVED(16, aui1_reserved_16),
        TAVRO_FIELD(20, ui2_svc_id, "SERVICE_ID", "service id", "service_id (5.2.3)"),
        TAVRO_FIELD(22, ui2_tsl_id, "TSL_ID", "transport stream list",
                    "list of the transport stream that carries the service"),
        TAVRO_FIELD(24, ui2_tsl_rec_id, "TSL_RECORD_ID", "transport stream record",
                    "record id of that transport stream"),
        TAVRO_FIELD(26, ui2_nwl_id, "NWL_ID", "network list", "list of the network of the service"),
        TAVRO_FIELD(28, ui2_nwl_rec_id, "NWL_RECORD_ID", "network record", "record id of that network"),
        TAVRO_FIELD(30, ui2_satl_id, "SATL_ID", "satellite list",
                    "list of the satellite that the service is received from"),
        TAVRO_FIELD(32, ui2_satl_rec_id, "SATL_RECORD_ID", "satellite record", "record id of that satellite"),
        TAVRO_FIELD(34, e_brdcst_type, "BROADCAST_TYPE", "broadcast type",
                    "selects the specific part: 2 DVB, 5 type 5, 7 DTMB; the library knows no other"),
        TAVRO_FIELD(35, e_serv_type, "SERVICE_TYPE", "service type", "1, 4, 7 audio and video; 2, 5, 8 audio"),
        TAVRO_FIELD(36, ac_name, "NAME", "name", "at most 64 bytes of modified UTF-8 and a NUL"),
        TAVRO_RESERVED(101, aui1_reserved_101),
    };
};
TAVRO_COMPLETE(_SVL_REC_HEADER_T, 148);

// An original_network_id, transport_stream_id, service_id triplet of EN 300 468.
struct _SVL_TRIPLET_T {
    std::uint16_t ui2_on_id;
    std::uint16_t ui2_ts_id;
    std::uint16_t ui2_svc_id;
};

template <>
struct tavro::Layout<_SVL_TRIPLET_T> : LayoutOf<_SVL_TRIPLET_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, ui2_on_id, "ON_ID", "network id", "original_network_id (5.2.3)"),
        TAVRO_FIELD(2, ui2_ts_id, "TS_ID", "stream id", "transport_stream_id (5.2.3)"),
        TAVRO_FIELD(4, ui2_svc_id, "SVC_ID", "service id", "service_id (5.2.3)"),
    };
};
TAVRO_COMPLETE(_SVL_TRIPLET_T, 6);

// The first 56 bytes of the specific part, alike for DVB and DTMB.
struct _SVL_DVB_COMMON_T {
    std::uint8_t aui1_reserved_0[4];
    char s_svc_name[17];
    std::uint8_t aui1_reserved_21[1];
    std::uint16_t ui2_ca_system_id;
    std::uint32_t e_running_status;
    std::uint32_t ui4_linkage_descr_mask;
    _SVL_TRIPLET_T t_ca_replacement;
    _SVL_TRIPLET_T t_svc_replacement;
    _SVL_TRIPLET_T t_complete_eit_sch;
    _SVL_TRIPLET_T t_hd_simulcast;
};

template <>
struct tavro::Layout<_SVL_DVB_COMMON_T> : LayoutOf<_SVL_DVB_COMMON_T> {
    static constexpr Field fields[] = {
        TAVRO_RESERVED(0, aui1_reserved_0),
        TAVRO_FIELD(4, s_svc_name, "SHORT_NAME", "short name", "at most 16 bytes of modified UTF-8 and a NUL"),
        TAVRO_RESERVED(21, aui1_reserved_21),
        TAVRO_FLAGS(22, ui2_ca_system_id, "CA_SYSTEM_ID", "CA system id", "CA_system_id, allocated in ETSI TS 101 162"),
        TAVRO_FIELD(24, e_running_status, "RUNNING_STATUS", "running status", "running_status (table 6)"),
        TAVRO_FLAGS(28, ui4_linkage_descr_mask, "LINKAGE_MASK", "linkage descriptors",
                    "one bit per linkage descriptor that is present (6.2.19)"),
        TAVRO_PART(32, t_ca_replacement, "CA_REPLACEMENT", "CA replacement"),
        TAVRO_PART(38, t_svc_replacement, "SVC_REPLACEMENT", "replacement"),
        TAVRO_PART(44, t_complete_eit_sch, "EIT_SCHEDULE", "EIT schedule"),
        TAVRO_PART(50, t_hd_simulcast, "HD_SIMULCAST", "HD simulcast"),
    };
};
TAVRO_COMPLETE(_SVL_DVB_COMMON_T, 56);

// Specific part of a DVB service (broadcast type 2): 400 bytes.
struct _SVL_DVB_T {
    _SVL_DVB_COMMON_T t_common;
    std::uint8_t aui1_reserved_56[8];
    std::uint8_t ui1_free_ca_mode;
    std::uint8_t ui1_ci_host_shunning_mode;
    std::uint8_t aui1_reserved_66[6];
    std::uint8_t ui1_ci_tune_service;
    std::uint8_t aui1_reserved_73[34];
    std::uint8_t ui1_eit_pf_flag;
    std::uint16_t ui2_lcn;
    std::uint16_t ui2_original_lcn;
    std::uint16_t ui2_lcn_idx;
    std::uint8_t aui1_reserved_114[5];
    std::uint8_t ui1_displaying_id_flag;
    std::uint16_t ui2_displaying_ts_id;
    std::uint16_t ui2_displaying_svc_id;
    std::uint8_t aui1_reserved_124[4];
    std::uint32_t ui4_comp_descr_info;
    std::uint8_t ui1_sdt_service_type;
    std::uint8_t aui1_reserved_133[1];
    char s_dad_info[33];
    std::uint8_t aui1_reserved_167[5];
    std::uint32_t ui4_category_mask;
    char s_service_profile_name[33];
    std::uint8_t ui1_target_region_level;
    std::uint16_t aui2_code[3];
    std::uint8_t ui1_sdt_stream_content;
    std::uint8_t ui1_sdt_stream_content_ext;
    std::uint8_t ui1_sdt_stream_component_type;
    std::uint8_t aui1_reserved_219[181];
};

template <>
struct tavro::Layout<_SVL_DVB_T> : LayoutOf<_SVL_DVB_T> {
    static constexpr Field fields[] = {
        TAVRO_PART(0, t_common, "", ""),
        TAVRO_RESERVED(56, aui1_reserved_56),
        TAVRO_FIELD(64, ui1_free_ca_mode, "DVB_FREE_CA_MODE", "free CA mode", "free_CA_mode (5.2.3)"),
        TAVRO_FIELD(65, ui1_ci_host_shunning_mode, "CI_HOST_SHUNNING", "CI host shunning mode", ""),
        TAVRO_RESERVED(66, aui1_reserved_66),
        TAVRO_FIELD(72, ui1_ci_tune_service, "CI_TUNE_SERVICE", "CI tune service", ""),
        TAVRO_RESERVED(73, aui1_reserved_73),
        TAVRO_FIELD(107, ui1_eit_pf_flag, "EIT_PF_FLAG", "EIT present/following", "EIT_present_following_flag (5.2.3)"),
        TAVRO_FIELD(108, ui2_lcn, "LCN", "logical channel number", ""),
        TAVRO_FIELD(110, ui2_original_lcn, "ORIGINAL_LCN", "original LCN", "logical channel number before any edit"),
        TAVRO_FIELD(112, ui2_lcn_idx, "LCN_INDEX", "LCN index", ""),
        TAVRO_RESERVED(114, aui1_reserved_114),
        TAVRO_FIELD(119, ui1_displaying_id_flag, "DISPLAYING_FLAG", "displaying-id flag", ""),
        TAVRO_FIELD(120, ui2_displaying_ts_id, "DISPLAYING_TS_ID", "displaying stream id", ""),
        TAVRO_FIELD(122, ui2_displaying_svc_id, "DISPLAYING_SVC_ID", "displaying service id", ""),
        TAVRO_RESERVED(124, aui1_reserved_124),
        TAVRO_FLAGS(128, ui4_comp_descr_info, "COMPONENT_INFO", "component descriptor",
                    "from the component descriptor (6.2.8)"),
        TAVRO_FIELD(132, ui1_sdt_service_type, "DVB_SDT_SERVICE_TYPE", "SDT service type",
                    "service_type of the service descriptor (6.2.33)"),
        TAVRO_RESERVED(133, aui1_reserved_133),
        TAVRO_FIELD(134, s_dad_info, "DAD_INFO", "DAD information", "at most 32 bytes of modified UTF-8 and a NUL"),
        TAVRO_RESERVED(167, aui1_reserved_167),
        TAVRO_FLAGS(172, ui4_category_mask, "CATEGORY_MASK", "category mask", ""),
        TAVRO_FIELD(176, s_service_profile_name, "PROFILE_NAME", "service profile name",
                    "at most 32 bytes of modified UTF-8 and a NUL"),
        TAVRO_FIELD(209, ui1_target_region_level, "REGION_LEVEL", "target region level", ""),
        TAVRO_FIELD(210, aui2_code, "REGION_CODE", "target region code", ""),
        TAVRO_FIELD(216, ui1_sdt_stream_content, "STREAM_CONTENT", "SDT stream content",
                    "stream_content of the component descriptor (6.2.8)"),
        TAVRO_FIELD(217, ui1_sdt_stream_content_ext, "STREAM_CONTENT_EXT", "SDT stream content extension",
                    "stream_content_ext (6.2.8)"),
        TAVRO_FIELD(218, ui1_sdt_stream_component_type, "STREAM_COMPONENT_TYPE", "SDT stream component type",
                    "component_type (6.2.8)"),
        TAVRO_RESERVED(219, aui1_reserved_219),
    };
};
TAVRO_COMPLETE(_SVL_DVB_T, 400);

// Specific part of a DTMB service (broadcast type 7): 400 bytes. The free-CA mode and the SDT
// service type sit elsewhere than in DVB.
struct _SVL_DTMB_T {
    _SVL_DVB_COMMON_T t_common;
    std::uint8_t aui1_reserved_56[6];
    std::uint8_t ui1_free_ca_mode;
    std::uint8_t aui1_reserved_63[2];
    std::uint8_t ui1_sdt_service_type;
    std::uint8_t aui1_reserved_66[334];
};

template <>
struct tavro::Layout<_SVL_DTMB_T> : LayoutOf<_SVL_DTMB_T> {
    static constexpr Field fields[] = {
        TAVRO_PART(0, t_common, "", ""),
        TAVRO_RESERVED(56, aui1_reserved_56),
        TAVRO_FIELD(62, ui1_free_ca_mode, "DTMB_FREE_CA_MODE", "free CA mode", "free_CA_mode (5.2.3)"),
        TAVRO_RESERVED(63, aui1_reserved_63),
        TAVRO_FIELD(65, ui1_sdt_service_type, "DTMB_SDT_SERVICE_TYPE", "SDT service type",
                    "service_type of the service descriptor (6.2.33)"),
        TAVRO_RESERVED(66, aui1_reserved_66),
    };
};
TAVRO_COMPLETE(_SVL_DTMB_T, 400);

// Specific part of a service of broadcast type 5, as far as the library knows it.
struct _SVL_TYPE5_T {
    std::uint8_t ui1_sdt_service_type;
    std::uint8_t aui1_reserved_1[399];
};

template <>
struct tavro::Layout<_SVL_TYPE5_T> : LayoutOf<_SVL_TYPE5_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, ui1_sdt_service_type, "TYPE_5_SDT_SERVICE_TYPE", "SDT service type",
                    "service_type of the service descriptor (6.2.33)"),
        TAVRO_RESERVED(1, aui1_reserved_1),
    };
};
TAVRO_COMPLETE(_SVL_TYPE5_T, 400);

// One service: 552 bytes, little-endian. Bytes without a name belong to the middleware.
struct _SVL_REC_T {
    std::uint16_t ui2_svl_rec_id;
    std::uint8_t aui1_reserved_2[2];
    _SVL_REC_HEADER_T t_header;
    union {
        _SVL_DVB_T t_dvb;
        _SVL_TYPE5_T t_type5;
        _SVL_DTMB_T t_dtmb;
    } u_specific;
};

template <>
struct tavro::Layout<_SVL_REC_T> : LayoutOf<_SVL_REC_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, ui2_svl_rec_id, "RECORD_ID", "record id",
                    "unique within its list; given by the middleware on an add"),
        TAVRO_RESERVED(2, aui1_reserved_2),
        TAVRO_PART(4, t_header, "", ""),
        TAVRO_VIEW(152, u_specific.t_dvb, "DVB", kBroadcastDvb),
        TAVRO_VIEW(152, u_specific.t_type5, "type 5", kBroadcastType5),
        TAVRO_VIEW(152, u_specific.t_dtmb, "DTMB", kBroadcastDtmb),
    };
};
TAVRO_COMPLETE(_SVL_REC_T, 552);
static_assert(sizeof(_SVL_REC_T::u_specific) == sizeof(_SVL_DVB_T), "zeroing a record zeroes its first alternative");

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_svl, _SVL_REC_T)

// The record at position `index` (from 0) among those of `broadcast_type` and `network_mask`.
tavro::MwStatus x_svl_get_rec_by_brdcst_type(tavro::MwdbHandle handle, std::uint32_t broadcast_type,
                                             std::uint32_t network_mask, std::uint16_t index, _SVL_REC_T* record,
                                             std::int32_t* version);
// The record at position `index` among those of one transport stream record.
tavro::MwStatus x_svl_get_rec_by_ts(tavro::MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                                    std::uint32_t network_mask, std::uint16_t index, _SVL_REC_T* record,
                                    std::int32_t* version);
// How many records the two reads above choose from.
tavro::MwStatus x_svl_get_num_rec_by_brdcst_type(tavro::MwdbHandle handle, std::uint32_t broadcast_type,
                                                 std::uint32_t network_mask, std::uint16_t* count,
                                                 std::int32_t* version);
tavro::MwStatus x_svl_get_num_rec_by_ts(tavro::MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                                        std::uint32_t network_mask, std::uint16_t* count, std::int32_t* version);
}
