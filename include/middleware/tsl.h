// Transport stream lists (TSL): the record structure and the middleware calls.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

// Values of e_bcst_medium: which view of the tuner parameters applies.
inline constexpr std::uint8_t kMediumTerrestrial = 1;
inline constexpr std::uint8_t kMediumCable = 2;
inline constexpr std::uint8_t kMediumSatellite = 3;

// Codes of the middleware's tuner. Only their numbers are fixed; what they mean is the tuner's own.
using TUNER_FEC_INNER_T = std::uint32_t;
using TUNER_MODULATION_T = std::uint32_t;
using TUNER_TRANSMISSION_MODE_T = std::uint32_t;

// Tuner parameters of a terrestrial transport stream, from record byte 48: 128 bytes.
struct _TSL_TER_T {
    std::uint32_t e_bandwidth;
    std::uint32_t e_fec_outer;
    std::uint32_t e_fec_inner;
    std::uint32_t e_mod;
    std::uint32_t e_hierarchy;
    std::uint8_t aui1_reserved_20[8];
    std::uint32_t e_trans_mode;
    std::uint8_t aui1_reserved_32[40];
    std::uint32_t e_mode; // 1 DVB-T, 2 DVB-T2
    std::uint8_t ui1_plp_id;
    std::uint8_t aui1_reserved_77[7];
    std::uint32_t e_code_rate;
    std::uint8_t aui1_reserved_88[8];
    std::uint32_t e_guard_interval;    // DVB-T
    std::uint32_t e_guard_interval_t2; // DVB-T2
    std::uint8_t aui1_reserved_104[12];
    std::uint8_t ui1_plp_group_id;
    std::uint8_t ui1_sig_level;
    std::uint8_t aui1_reserved_118[2];
    std::uint32_t ui4_sig_quality;
    std::uint8_t aui1_reserved_124[4];
};

TAVRO_SIZE(_TSL_TER_T, 128);
TAVRO_AT(_TSL_TER_T, e_bandwidth, 48 - 48);
TAVRO_AT(_TSL_TER_T, e_fec_outer, 52 - 48);
TAVRO_AT(_TSL_TER_T, e_fec_inner, 56 - 48);
TAVRO_AT(_TSL_TER_T, e_mod, 60 - 48);
TAVRO_AT(_TSL_TER_T, e_hierarchy, 64 - 48);
TAVRO_AT(_TSL_TER_T, e_trans_mode, 76 - 48);
TAVRO_AT(_TSL_TER_T, e_mode, 120 - 48);
TAVRO_AT(_TSL_TER_T, ui1_plp_id, 124 - 48);
TAVRO_AT(_TSL_TER_T, e_code_rate, 132 - 48);
TAVRO_AT(_TSL_TER_T, e_guard_interval, 144 - 48);
TAVRO_AT(_TSL_TER_T, e_guard_interval_t2, 148 - 48);
TAVRO_AT(_TSL_TER_T, ui1_plp_group_id, 164 - 48);
TAVRO_AT(_TSL_TER_T, ui1_sig_level, 165 - 48);
TAVRO_AT(_TSL_TER_T, ui4_sig_quality, 168 - 48);

// Tuner parameters of a cable transport stream, from record byte 48: 128 bytes.
struct _TSL_CAB_T {
    std::uint32_t ui4_sym_rate;
    std::uint32_t e_fec_outer;
    std::uint32_t e_fec_inner;
    std::uint32_t e_mod;
    std::uint8_t aui1_reserved_16[16];
    std::uint32_t e_mode; // 1 DVB-C, 2 DVB-C2
    std::uint8_t aui1_reserved_36[8];
    std::uint8_t ui1_sig_level;
    std::uint8_t aui1_reserved_45[3];
    std::uint32_t ui4_sig_quality;
    std::uint8_t aui1_reserved_52[76];
};

TAVRO_SIZE(_TSL_CAB_T, 128);
TAVRO_AT(_TSL_CAB_T, ui4_sym_rate, 48 - 48);
TAVRO_AT(_TSL_CAB_T, e_fec_outer, 52 - 48);
TAVRO_AT(_TSL_CAB_T, e_fec_inner, 56 - 48);
TAVRO_AT(_TSL_CAB_T, e_mod, 60 - 48);
TAVRO_AT(_TSL_CAB_T, e_mode, 80 - 48);
TAVRO_AT(_TSL_CAB_T, ui1_sig_level, 92 - 48);
TAVRO_AT(_TSL_CAB_T, ui4_sig_quality, 96 - 48);

// Tuner parameters of a satellite transport stream, from record byte 48: 128 bytes.
struct _TSL_SAT_T {
    std::uint8_t aui1_reserved_0[8];
    std::uint32_t ui4_sym_rate;
    std::uint32_t e_mod_copy; // receives the modulation too
    std::uint8_t aui1_reserved_16[4];
    std::uint32_t e_fec_inner;
    std::uint32_t e_mod;
    std::uint32_t e_pol;
    std::uint8_t aui1_reserved_32[12];
    std::uint32_t e_mode; // 1 DVB-S, 2 DVB-S2
    std::uint8_t aui1_reserved_48[4];
    std::uint32_t e_roll_off;
    std::uint8_t aui1_reserved_56[4];
    std::uint32_t e_code_rate;
    std::uint8_t ui1_pilot_insert;
    std::uint8_t aui1_reserved_65[8];
    std::uint8_t ui1_sig_level;
    std::uint8_t aui1_reserved_74[2];
    std::uint32_t ui4_sig_quality;
    std::uint8_t aui1_reserved_80[48];
};

TAVRO_SIZE(_TSL_SAT_T, 128);
TAVRO_AT(_TSL_SAT_T, ui4_sym_rate, 56 - 48);
TAVRO_AT(_TSL_SAT_T, e_mod_copy, 60 - 48);
TAVRO_AT(_TSL_SAT_T, e_fec_inner, 68 - 48);
TAVRO_AT(_TSL_SAT_T, e_mod, 72 - 48);
TAVRO_AT(_TSL_SAT_T, e_pol, 76 - 48);
TAVRO_AT(_TSL_SAT_T, e_mode, 92 - 48);
TAVRO_AT(_TSL_SAT_T, e_roll_off, 100 - 48);
TAVRO_AT(_TSL_SAT_T, e_code_rate, 108 - 48);
TAVRO_AT(_TSL_SAT_T, ui1_pilot_insert, 112 - 48);
TAVRO_AT(_TSL_SAT_T, ui1_sig_level, 121 - 48);
TAVRO_AT(_TSL_SAT_T, ui4_sig_quality, 124 - 48);

// An alternate frequency and its bandwidth code.
struct _TSL_ALT_FREQ_T {
    std::uint32_t ui4_freq;
    std::uint32_t e_bandwidth;
};

TAVRO_SIZE(_TSL_ALT_FREQ_T, 8);
TAVRO_AT(_TSL_ALT_FREQ_T, ui4_freq, 0);
TAVRO_AT(_TSL_ALT_FREQ_T, e_bandwidth, 4);

// One transport stream: 724 bytes, little-endian. Bytes without a name belong to the middleware.
struct _TSL_REC_T {
    std::uint16_t ui2_tsl_rec_id;
    std::uint8_t aui1_reserved_2[2];
    std::uint8_t e_bcst_type;
    std::uint8_t e_bcst_medium; // kMedium...
    std::uint8_t aui1_reserved_6[2];
    std::uint32_t ui4_flags; // 0x2: barker channel
    std::uint16_t ui2_nw_id; // network_id
    std::uint16_t ui2_on_id; // original_network_id
    std::uint16_t ui2_ts_id; // transport_stream_id
    std::uint16_t ui2_nwl_rec_id;
    std::uint8_t ui1_nwl_id;
    std::uint8_t aui1_reserved_21[23];
    std::uint32_t ui4_freq;
    union {
        _TSL_TER_T t_ter;
        _TSL_CAB_T t_cab;
        _TSL_SAT_T t_sat;
    } u_tuner;
    std::uint8_t ui1_rc_key_id;
    std::uint8_t aui1_reserved_177[35];
    char ac_ts_name[41];
    std::uint8_t aui1_reserved_253[291];
    char ac_nw_name[32];
    _TSL_ALT_FREQ_T at_alt_freq[5];
    std::uint8_t aui1_reserved_616[88];
    std::uint32_t ui4_flags_ex; // 0x800: home transponder
    std::uint16_t ui2_tsl_id;
    std::uint8_t aui1_reserved_710[2];
    std::uint16_t ui2_satl_id;
    std::uint16_t ui2_satl_rec_id;
    std::uint8_t aui1_reserved_716[8];
};

TAVRO_SIZE(_TSL_REC_T, 724);
static_assert(sizeof(_TSL_REC_T::u_tuner) == sizeof(_TSL_TER_T), "zeroing a record zeroes its first alternative");
TAVRO_AT(_TSL_REC_T, ui2_tsl_rec_id, 0);
TAVRO_AT(_TSL_REC_T, e_bcst_type, 4);
TAVRO_AT(_TSL_REC_T, e_bcst_medium, 5);
TAVRO_AT(_TSL_REC_T, ui4_flags, 8);
TAVRO_AT(_TSL_REC_T, ui2_nw_id, 12);
TAVRO_AT(_TSL_REC_T, ui2_on_id, 14);
TAVRO_AT(_TSL_REC_T, ui2_ts_id, 16);
TAVRO_AT(_TSL_REC_T, ui2_nwl_rec_id, 18);
TAVRO_AT(_TSL_REC_T, ui1_nwl_id, 20);
TAVRO_AT(_TSL_REC_T, ui4_freq, 44);
TAVRO_AT(_TSL_REC_T, u_tuner, 48);
TAVRO_AT(_TSL_REC_T, ui1_rc_key_id, 176);
TAVRO_AT(_TSL_REC_T, ac_ts_name, 212);
TAVRO_AT(_TSL_REC_T, ac_nw_name, 544);
TAVRO_AT(_TSL_REC_T, at_alt_freq, 576);
TAVRO_AT(_TSL_REC_T, ui4_flags_ex, 704);
TAVRO_AT(_TSL_REC_T, ui2_tsl_id, 708);
TAVRO_AT(_TSL_REC_T, ui2_satl_id, 712);
TAVRO_AT(_TSL_REC_T, ui2_satl_rec_id, 714);

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_tsl, _TSL_REC_T);

// The record at position `index` (from 0) of the list, and how many there are.
tavro::MwStatus x_tsl_get_rec_by_rec_idx(tavro::MwdbHandle handle, std::uint16_t index, _TSL_REC_T* record,
                                         std::int32_t* version);
tavro::MwStatus x_tsl_get_num_recs(tavro::MwdbHandle handle, std::uint16_t* count, std::int32_t* version);
// The same among the records of one satellite record. The stand-in takes `network`
// 65535 for every network.
tavro::MwStatus x_tsl_get_rec_by_sat(tavro::MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                     std::uint16_t satl_rec_id, std::uint16_t index, _TSL_REC_T* record,
                                     std::int32_t* version);
tavro::MwStatus x_tsl_get_num_rec_by_sat(tavro::MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                         std::uint16_t satl_rec_id, std::uint16_t* count, std::int32_t* version);
}
