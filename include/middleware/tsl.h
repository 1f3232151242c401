// Transport stream lists (TSL): the record structure and the middleware calls. Numbers in parentheses are clauses of
// ETSI EN 300 468.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

namespace tavro {

// Values of e_bcst_medium: which view of the tuner parameters applies.
inline constexpr std::uint8_t kMediumTerrestrial = 1;
inline constexpr std::uint8_t kMediumCable = 2;
inline constexpr std::uint8_t kMediumSatellite = 3;

} // namespace tavro

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
    std::uint32_t e_mode;
    std::uint8_t ui1_plp_id;
    std::uint8_t aui1_reserved_77[7];
    std::uint32_t e_code_rate;
    std::uint8_t aui1_reserved_88[8];
    std::uint32_t e_guard_interval;
    std::uint32_t e_guard_interval_t2;
    std::uint8_t aui1_reserved_104[12];
    std::uint8_t ui1_plp_group_id;
    std::uint8_t ui1_sig_level;
    std::uint8_t aui1_reserved_118[2];
    std::uint32_t ui4_sig_quality;
    std::uint8_t aui1_reserved_124[4];
};

template <>
struct tavro::Layout<_TSL_TER_T> : LayoutOf<_TSL_TER_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, e_bandwidth, "TER_BANDWIDTH", "bandwidth code", ""),
        TAVRO_FIELD(4, e_fec_outer, "TER_FEC_OUTER", "outer FEC code", ""),
        TAVRO_FIELD(8, e_fec_inner, "TER_FEC_INNER", "inner FEC code", ""),
        TAVRO_FIELD(12, e_mod, "TER_MODULATION", "modulation", "1 to 28, the tuner's own"),
        TAVRO_FIELD(16, e_hierarchy, "TER_HIERARCHY", "hierarchy code", ""),
        TAVRO_RESERVED(20, aui1_reserved_20),
        TAVRO_FIELD(28, e_trans_mode, "TER_TRANSMISSION_MODE", "transmission mode code", ""),
        TAVRO_RESERVED(32, aui1_reserved_32),
        TAVRO_FIELD(72, e_mode, "TER_MODE", "mode", ""),
        TAVRO_FIELD(76, ui1_plp_id, "TER_PLP_ID", "PLP id", "plp_id of DVB-T2 (6.4.6.3)"),
        TAVRO_RESERVED(77, aui1_reserved_77),
        TAVRO_FIELD(84, e_code_rate, "TER_CODE_RATE", "code rate code", ""),
        TAVRO_RESERVED(88, aui1_reserved_88),
        TAVRO_FIELD(96, e_guard_interval, "TER_GUARD_INTERVAL", "guard interval code (T)", "while the mode is DVB-T"),
        TAVRO_FIELD(100, e_guard_interval_t2, "TER_GUARD_INTERVAL_T2", "guard interval code (T2)",
                    "while the mode is DVB-T2"),
        TAVRO_RESERVED(104, aui1_reserved_104),
        TAVRO_FIELD(116, ui1_plp_group_id, "TER_PLP_GROUP_ID", "PLP group id", ""),
        TAVRO_FIELD(117, ui1_sig_level, "TER_SIGNAL_LEVEL", "signal level", ""),
        TAVRO_RESERVED(118, aui1_reserved_118),
        TAVRO_FIELD(120, ui4_sig_quality, "TER_SIGNAL_QUALITY", "signal quality", ""),
        TAVRO_RESERVED(124, aui1_reserved_124),
    };
};
TAVRO_COMPLETE(_TSL_TER_T, 128);

// Tuner parameters of a cable transport stream, from record byte 48: 128 bytes.
struct _TSL_CAB_T {
    std::uint32_t ui4_sym_rate;
    std::uint32_t e_fec_outer;
    std::uint32_t e_fec_inner;
    std::uint32_t e_mod;
    std::uint8_t aui1_reserved_16[16];
    std::uint32_t e_mode;
    std::uint8_t aui1_reserved_36[8];
    std::uint8_t ui1_sig_level;
    std::uint8_t aui1_reserved_45[3];
    std::uint32_t ui4_sig_quality;
    std::uint8_t aui1_reserved_52[76];
};

template <>
struct tavro::Layout<_TSL_CAB_T> : LayoutOf<_TSL_CAB_T> {
    static constexpr Field fields[] = {
        TAVRO_AMOUNT(0, ui4_sym_rate, "CAB_SYMBOL_RATE", "symbol rate", "Bd", ""),
        TAVRO_FIELD(4, e_fec_outer, "CAB_FEC_OUTER", "outer FEC code", ""),
        TAVRO_FIELD(8, e_fec_inner, "CAB_FEC_INNER", "inner FEC code", ""),
        TAVRO_FIELD(12, e_mod, "CAB_MODULATION", "modulation", "1 to 28, the tuner's own"),
        TAVRO_RESERVED(16, aui1_reserved_16),
        TAVRO_FIELD(32, e_mode, "CAB_MODE", "mode", ""),
        TAVRO_RESERVED(36, aui1_reserved_36),
        TAVRO_FIELD(44, ui1_sig_level, "CAB_SIGNAL_LEVEL", "signal level", ""),
        TAVRO_RESERVED(45, aui1_reserved_45),
        TAVRO_FIELD(48, ui4_sig_quality, "CAB_SIGNAL_QUALITY", "signal quality", ""),
        TAVRO_RESERVED(52, aui1_reserved_52),
    };
};
TAVRO_COMPLETE(_TSL_CAB_T, 128);

// Tuner parameters of a satellite transport stream, from record byte 48: 128 bytes.
struct _TSL_SAT_T {
    std::uint8_t aui1_reserved_0[8];
    std::uint32_t ui4_sym_rate;
    std::uint32_t e_mod_copy;
    std::uint8_t aui1_reserved_16[4];
    std::uint32_t e_fec_inner;
    std::uint32_t e_mod;
    std::uint32_t e_pol;
    std::uint8_t aui1_reserved_32[12];
    std::uint32_t e_mode;
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

template <>
struct tavro::Layout<_TSL_SAT_T> : LayoutOf<_TSL_SAT_T> {
    static constexpr Field fields[] = {
        TAVRO_RESERVED(0, aui1_reserved_0),
        TAVRO_AMOUNT(8, ui4_sym_rate, "SAT_SYMBOL_RATE", "symbol rate", "Bd", ""),
        TAVRO_FIELD(12, e_mod_copy, "SAT_MODULATION_COPY", "modulation copy", "receives the modulation too"),
        TAVRO_RESERVED(16, aui1_reserved_16),
        TAVRO_FIELD(20, e_fec_inner, "SAT_FEC_INNER", "inner FEC code", ""),
        TAVRO_FIELD(24, e_mod, "SAT_MODULATION", "modulation", "1 to 28, the tuner's own"),
        TAVRO_FIELD(28, e_pol, "SAT_POLARIZATION", "polarization", ""),
        TAVRO_RESERVED(32, aui1_reserved_32),
        TAVRO_FIELD(44, e_mode, "SAT_MODE", "mode", ""),
        TAVRO_RESERVED(48, aui1_reserved_48),
        TAVRO_FIELD(52, e_roll_off, "SAT_ROLL_OFF", "roll-off code", ""),
        TAVRO_RESERVED(56, aui1_reserved_56),
        TAVRO_FIELD(60, e_code_rate, "SAT_CODE_RATE", "code rate code", ""),
        TAVRO_FIELD(64, ui1_pilot_insert, "SAT_PILOT", "pilots", ""),
        TAVRO_RESERVED(65, aui1_reserved_65),
        TAVRO_FIELD(73, ui1_sig_level, "SAT_SIGNAL_LEVEL", "signal level", ""),
        TAVRO_RESERVED(74, aui1_reserved_74),
        TAVRO_FIELD(76, ui4_sig_quality, "SAT_SIGNAL_QUALITY", "signal quality", ""),
        TAVRO_RESERVED(80, aui1_reserved_80),
    };
};
TAVRO_COMPLETE(_TSL_SAT_T, 128);

// An alternate frequency and its bandwidth code.
struct _TSL_ALT_FREQ_T {
    std::uint32_t ui4_freq;
    std::uint32_t e_bandwidth;
};

template <>
struct tavro::Layout<_TSL_ALT_FREQ_T> : LayoutOf<_TSL_ALT_FREQ_T> {
    static constexpr Field fields[] = {
        TAVRO_AMOUNT(0, ui4_freq, "FREQUENCY", "frequency", "kHz",
                     "in the unit of the frequency of the stream (6.2.17)"),
        TAVRO_FIELD(4, e_bandwidth, "BANDWIDTH", "bandwidth code", ""),
    };
};
TAVRO_COMPLETE(_TSL_ALT_FREQ_T, 8);

// One transport stream: 724 bytes, little-endian. Bytes without a name belong to the middleware.
struct _TSL_REC_T {
    std::uint16_t ui2_tsl_rec_id;
    std::uint8_t aui1_reserved_2[2];
    std::uint8_t e_bcst_type;
    std::uint8_t e_bcst_medium;
    std::uint8_t aui1_reserved_6[2];
    std::uint32_t ui4_flags;
    std::uint16_t ui2_nw_id;
    std::uint16_t ui2_on_id;
    std::uint16_t ui2_ts_id;
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
    std::uint32_t ui4_flags_ex;
    std::uint16_t ui2_tsl_id;
    std::uint8_t aui1_reserved_710[2];
    std::uint16_t ui2_satl_id;
    std::uint16_t ui2_satl_rec_id;
    std::uint8_t aui1_reserved_716[8];
};

template <>
struct tavro::Layout<_TSL_REC_T> : LayoutOf<_TSL_REC_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, ui2_tsl_rec_id, "RECORD_ID", "record id", "unique within its list"),
        TAVRO_RESERVED(2, aui1_reserved_2),
        TAVRO_FIELD(4, e_bcst_type, "BROADCAST_TYPE", "broadcast type", "as in service records"),
        TAVRO_FIELD(5, e_bcst_medium, "MEDIUM", "medium",
                    "selects the tuner parameters: 1 terrestrial, 2 cable, 3 satellite"),
        TAVRO_RESERVED(6, aui1_reserved_6),
        TAVRO_FLAGS(8, ui4_flags, "FLAGS", "flags", "barker channel"),
        TAVRO_FIELD(12, ui2_nw_id, "NETWORK_ID", "network id", "network_id (5.2.1)"),
        TAVRO_FIELD(14, ui2_on_id, "ORIGINAL_NETWORK_ID", "original network id", "original_network_id (5.2.1)"),
        TAVRO_FIELD(16, ui2_ts_id, "TRANSPORT_STREAM_ID", "transport stream id", "transport_stream_id (5.2.1)"),
        TAVRO_FIELD(18, ui2_nwl_rec_id, "NWL_RECORD_ID", "network record", "record id of the network of the stream"),
        TAVRO_FIELD(20, ui1_nwl_id, "NWL_ID", "network list", "list of that network, cut to 8 bits"),
        TAVRO_RESERVED(21, aui1_reserved_21),
        TAVRO_AMOUNT(44, ui4_freq, "FREQUENCY", "frequency", "kHz", ""),
        TAVRO_VIEW(48, u_tuner.t_ter, "terrestrial", kMediumTerrestrial),
        TAVRO_VIEW(48, u_tuner.t_cab, "cable", kMediumCable),
        TAVRO_VIEW(48, u_tuner.t_sat, "satellite", kMediumSatellite),
        TAVRO_FIELD(176, ui1_rc_key_id, "RC_KEY_ID", "remote-control key id", ""),
        TAVRO_RESERVED(177, aui1_reserved_177),
        TAVRO_FIELD(212, ac_ts_name, "NAME", "name", "at most 40 bytes of modified UTF-8 and a NUL"),
        TAVRO_RESERVED(253, aui1_reserved_253),
        TAVRO_FIELD(544, ac_nw_name, "NETWORK_NAME", "network name", "at most 31 bytes of modified UTF-8 and a NUL"),
        TAVRO_PART(576, at_alt_freq, "ALT", "alternate"),
        TAVRO_RESERVED(616, aui1_reserved_616),
        TAVRO_FLAGS(704, ui4_flags_ex, "FLAGS_EX", "more flags", "home transponder"),
        TAVRO_FIELD(708, ui2_tsl_id, "TSL_ID", "list", "the list that holds the record"),
        TAVRO_RESERVED(710, aui1_reserved_710),
        TAVRO_FIELD(712, ui2_satl_id, "SATL_ID", "satellite list",
                    "list of the satellite that the stream is received from"),
        TAVRO_FIELD(714, ui2_satl_rec_id, "SATL_RECORD_ID", "satellite record", "record id of that satellite"),
        TAVRO_RESERVED(716, aui1_reserved_716),
    };
};
TAVRO_COMPLETE(_TSL_REC_T, 724);
static_assert(sizeof(_TSL_REC_T::u_tuner) == sizeof(_TSL_TER_T), "zeroing a record zeroes its first alternative");

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_tsl, _TSL_REC_T)

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
