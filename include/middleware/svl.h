// Service lists (SVL): the record structure and the middleware calls.
//
// Terms are those of ETSI EN 300 468 (service, transport stream, original network, running status,
// free_CA_mode, linkage) where the field carries a value of that standard.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

// Values of e_brdcst_type that the library treats specially.
inline constexpr std::uint8_t kBroadcastDvb = 2;
inline constexpr std::uint8_t kBroadcastType3 = 3; // channel numbers through x_sb_gen_channel_id
inline constexpr std::uint8_t kBroadcastType5 = 5; // SDT service type in the first specific byte
inline constexpr std::uint8_t kBroadcastDtmb = 7;

// What every service has, whatever its broadcast system: 148 bytes.
struct _SVL_REC_HEADER_T {
    std::uint32_t ui4_channel_id;
    std::uint32_t ui4_nw_mask;      // service flags
    std::uint32_t ui4_option_mask;  // option flags
    std::uint32_t ui4_option_mask2; // more option flags
    std::uint8_t aui1_reserved_16[4];
    std::uint16_t ui2_svc_id;     // service_id
    std::uint16_t ui2_tsl_id;     // list and record of the transport stream that carries the service
    std::uint16_t ui2_tsl_rec_id; //
    std::uint16_t ui2_nwl_id;     // list and record of its network
    std::uint16_t ui2_nwl_rec_id; //
    std::uint16_t ui2_satl_id;    // list and record of its satellite
    std::uint16_t ui2_satl_rec_id;
    std::uint8_t e_brdcst_type; // kBroadcast...
    std::uint8_t e_serv_type;
    char ac_name[65]; // at most 64 bytes of modified UTF-8 and a NUL
    std::uint8_t aui1_reserved_101[47];
};

TAVRO_SIZE(_SVL_REC_HEADER_T, 148);
TAVRO_AT(_SVL_REC_HEADER_T, ui4_channel_id, 0);
TAVRO_AT(_SVL_REC_HEADER_T, ui4_nw_mask, 4);
TAVRO_AT(_SVL_REC_HEADER_T, ui4_option_mask, 8);
TAVRO_AT(_SVL_REC_HEADER_T, ui4_option_mask2, 12);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_svc_id, 20);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_tsl_id, 22);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_tsl_rec_id, 24);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_nwl_id, 26);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_nwl_rec_id, 28);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_satl_id, 30);
TAVRO_AT(_SVL_REC_HEADER_T, ui2_satl_rec_id, 32);
TAVRO_AT(_SVL_REC_HEADER_T, e_brdcst_type, 34);
TAVRO_AT(_SVL_REC_HEADER_T, e_serv_type, 35);
TAVRO_AT(_SVL_REC_HEADER_T, ac_name, 36);

// An original_network_id, transport_stream_id, service_id triplet of EN 300 468.
struct _SVL_TRIPLET_T {
    std::uint16_t ui2_on_id;
    std::uint16_t ui2_ts_id;
    std::uint16_t ui2_svc_id;
};

TAVRO_SIZE(_SVL_TRIPLET_T, 6);
TAVRO_AT(_SVL_TRIPLET_T, ui2_on_id, 0);
TAVRO_AT(_SVL_TRIPLET_T, ui2_ts_id, 2);
TAVRO_AT(_SVL_TRIPLET_T, ui2_svc_id, 4);

// The first 56 bytes of the specific part, alike for DVB and DTMB.
struct _SVL_DVB_COMMON_T {
    std::uint8_t aui1_reserved_0[4];
    char s_svc_name[17]; // service short name: at most 16 bytes and a NUL
    std::uint8_t aui1_reserved_21[1];
    std::uint16_t ui2_ca_system_id;
    std::uint32_t e_running_status;
    std::uint32_t ui4_linkage_descr_mask;
    _SVL_TRIPLET_T t_ca_replacement;
    _SVL_TRIPLET_T t_svc_replacement;
    _SVL_TRIPLET_T t_complete_eit_sch;
    _SVL_TRIPLET_T t_hd_simulcast;
};

TAVRO_SIZE(_SVL_DVB_COMMON_T, 56);
TAVRO_AT(_SVL_DVB_COMMON_T, s_svc_name, 4);
TAVRO_AT(_SVL_DVB_COMMON_T, ui2_ca_system_id, 22);
TAVRO_AT(_SVL_DVB_COMMON_T, e_running_status, 24);
TAVRO_AT(_SVL_DVB_COMMON_T, ui4_linkage_descr_mask, 28);
TAVRO_AT(_SVL_DVB_COMMON_T, t_ca_replacement, 32);
TAVRO_AT(_SVL_DVB_COMMON_T, t_svc_replacement, 38);
TAVRO_AT(_SVL_DVB_COMMON_T, t_complete_eit_sch, 44);
TAVRO_AT(_SVL_DVB_COMMON_T, t_hd_simulcast, 50);

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
    std::uint16_t ui2_lcn; // logical channel number
    std::uint16_t ui2_original_lcn;
    std::uint16_t ui2_lcn_idx;
    std::uint8_t aui1_reserved_114[5];
    std::uint8_t ui1_displaying_id_flag;
    std::uint16_t ui2_displaying_ts_id;
    std::uint16_t ui2_displaying_svc_id;
    std::uint8_t aui1_reserved_124[4];
    std::uint32_t ui4_comp_descr_info;
    std::uint8_t ui1_sdt_service_type; // service_type of the service descriptor
    std::uint8_t aui1_reserved_133[1];
    char s_dad_info[33]; // at most 32 bytes and a NUL
    std::uint8_t aui1_reserved_167[5];
    std::uint32_t ui4_category_mask;
    char s_service_profile_name[33]; // at most 32 bytes and a NUL
    std::uint8_t ui1_target_region_level;
    std::uint16_t aui2_code[3]; // target region codes
    std::uint8_t ui1_sdt_stream_content;
    std::uint8_t ui1_sdt_stream_content_ext;
    std::uint8_t ui1_sdt_stream_component_type;
    std::uint8_t aui1_reserved_219[181];
};

TAVRO_SIZE(_SVL_DVB_T, 400);
TAVRO_AT(_SVL_DVB_T, t_common, 0);
TAVRO_AT(_SVL_DVB_T, ui1_free_ca_mode, 64);
TAVRO_AT(_SVL_DVB_T, ui1_ci_host_shunning_mode, 65);
TAVRO_AT(_SVL_DVB_T, ui1_ci_tune_service, 72);
TAVRO_AT(_SVL_DVB_T, ui1_eit_pf_flag, 107);
TAVRO_AT(_SVL_DVB_T, ui2_lcn, 108);
TAVRO_AT(_SVL_DVB_T, ui2_original_lcn, 110);
TAVRO_AT(_SVL_DVB_T, ui2_lcn_idx, 112);
TAVRO_AT(_SVL_DVB_T, ui1_displaying_id_flag, 119);
TAVRO_AT(_SVL_DVB_T, ui2_displaying_ts_id, 120);
TAVRO_AT(_SVL_DVB_T, ui2_displaying_svc_id, 122);
TAVRO_AT(_SVL_DVB_T, ui4_comp_descr_info, 128);
TAVRO_AT(_SVL_DVB_T, ui1_sdt_service_type, 132);
TAVRO_AT(_SVL_DVB_T, s_dad_info, 134);
TAVRO_AT(_SVL_DVB_T, ui4_category_mask, 172);
TAVRO_AT(_SVL_DVB_T, s_service_profile_name, 176);
TAVRO_AT(_SVL_DVB_T, ui1_target_region_level, 209);
TAVRO_AT(_SVL_DVB_T, aui2_code, 210);
TAVRO_AT(_SVL_DVB_T, ui1_sdt_stream_content, 216);
TAVRO_AT(_SVL_DVB_T, ui1_sdt_stream_content_ext, 217);
TAVRO_AT(_SVL_DVB_T, ui1_sdt_stream_component_type, 218);

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

TAVRO_SIZE(_SVL_DTMB_T, 400);
TAVRO_AT(_SVL_DTMB_T, t_common, 0);
TAVRO_AT(_SVL_DTMB_T, ui1_free_ca_mode, 62);
TAVRO_AT(_SVL_DTMB_T, ui1_sdt_service_type, 65);

// Specific part of a service of broadcast type 5, as far as the library knows it.
struct _SVL_TYPE5_T {
    std::uint8_t ui1_sdt_service_type;
    std::uint8_t aui1_reserved_1[399];
};

TAVRO_SIZE(_SVL_TYPE5_T, 400);
TAVRO_AT(_SVL_TYPE5_T, ui1_sdt_service_type, 0);

// One service: 552 bytes, little-endian. Bytes without a name belong to the middleware.
struct _SVL_REC_T {
    std::uint16_t ui2_svl_rec_id; // unique within its list; given by the middleware on an add
    std::uint8_t aui1_reserved_2[2];
    _SVL_REC_HEADER_T t_header;
    union {
        _SVL_DVB_T t_dvb;     // e_brdcst_type 2
        _SVL_TYPE5_T t_type5; // e_brdcst_type 5
        _SVL_DTMB_T t_dtmb;   // e_brdcst_type 7
    } u_specific;
};

TAVRO_SIZE(_SVL_REC_T, 552);
static_assert(sizeof(_SVL_REC_T::u_specific) == sizeof(_SVL_DVB_T), "zeroing a record zeroes its first alternative");
TAVRO_AT(_SVL_REC_T, ui2_svl_rec_id, 0);
TAVRO_AT(_SVL_REC_T, t_header, 4);
TAVRO_AT(_SVL_REC_T, u_specific, 152);

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_svl, _SVL_REC_T);

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
