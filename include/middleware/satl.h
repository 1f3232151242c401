// Satellite lists (SATL): the record structure with its dish-control block and the middleware calls.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

// How one tuner drives the dish: DiSEqC switch, tone, LNB power, single-cable parameters. 56 bytes.
struct _TUNER_DISEQC_INFO_T {
    std::uint32_t e_diseqc_type;
    std::uint8_t ui1_port;
    std::uint8_t aui1_reserved_5[2];
    std::uint8_t ui1_22k;
    std::uint8_t ui1_tone_burst;
    std::uint8_t aui1_reserved_9[3];
    std::uint32_t e_polar;
    std::uint32_t e_lnb_power;
    std::uint8_t aui1_reserved_20[4];
    std::uint32_t e_position;
    std::uint8_t aui1_reserved_28[4];
    std::uint32_t e_user_band;
    std::uint16_t ui2_band_freq;
    std::uint8_t aui1_reserved_38[2];
    std::uint32_t e_mdu_type;
    std::uint32_t e_diseqc_type_ex;
    std::uint8_t ui1_port_ex;
    std::uint8_t aui1_reserved_49[3];
    std::uint32_t e_diseqc_type_ex2;
};

template <>
struct tavro::Layout<_TUNER_DISEQC_INFO_T> : LayoutOf<_TUNER_DISEQC_INFO_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, e_diseqc_type, "DISEQC_TYPE", "DiSEqC type", "0 tone burst only, 2 committed switch"),
        TAVRO_FIELD(4, ui1_port, "DISEQC_PORT", "DiSEqC port", "port of the committed switch, 0 to 3; 255 none"),
        TAVRO_RESERVED(5, aui1_reserved_5),
        TAVRO_FIELD(7, ui1_22k, "TONE_22K", "22 kHz tone", ""),
        TAVRO_FIELD(8, ui1_tone_burst, "TONE_BURST", "tone burst", "0 burst A, 1 burst B, 255 none"),
        TAVRO_RESERVED(9, aui1_reserved_9),
        TAVRO_FIELD(12, e_polar, "POLARIZATION", "polarization", ""),
        TAVRO_FIELD(16, e_lnb_power, "LNB_POWER", "LNB power", ""),
        TAVRO_RESERVED(20, aui1_reserved_20),
        TAVRO_FIELD(24, e_position, "SINGLE_CABLE_POSITION", "single-cable position", ""),
        TAVRO_RESERVED(28, aui1_reserved_28),
        TAVRO_FIELD(32, e_user_band, "USER_BAND", "user band", "single cable, main tuner"),
        TAVRO_AMOUNT(36, ui2_band_freq, "BAND_FREQUENCY", "band frequency", "MHz", "single cable, main tuner"),
        TAVRO_RESERVED(38, aui1_reserved_38),
        TAVRO_FIELD(40, e_mdu_type, "MDU_TYPE", "MDU type", ""),
        TAVRO_FIELD(44, e_diseqc_type_ex, "DISEQC_TYPE_EX", "extended DiSEqC type", "4 extended switch"),
        TAVRO_FIELD(48, ui1_port_ex, "DISEQC_PORT_EX", "extended DiSEqC port", ""),
        TAVRO_RESERVED(49, aui1_reserved_49),
        TAVRO_FIELD(52, e_diseqc_type_ex2, "DISEQC_TYPE_EX_2", "second extended DiSEqC type",
                    "5 second extended switch"),
    };
};
TAVRO_COMPLETE(_TUNER_DISEQC_INFO_T, 56);

// One satellite: 412 bytes, little-endian. Bytes without a name belong to the middleware.
struct _SATL_REC_T {
    std::uint16_t ui2_satl_rec_id;
    std::uint8_t aui1_reserved_2[2];
    std::uint32_t ui4_mask;
    std::uint32_t e_lnb_type;
    std::uint16_t ui2_lnb_low_freq;
    std::uint16_t ui2_lnb_high_freq;
    std::uint16_t ui2_lnb_switch_freq;
    std::uint8_t aui1_reserved_18[22];
    _TUNER_DISEQC_INFO_T t_diseqc_info;
    std::uint8_t aui1_reserved_96[96];
    std::uint32_t e_sub_user_band;
    std::uint16_t ui2_sub_band_freq;
    std::uint8_t aui1_reserved_198[82];
    std::int16_t i2_orb_pos;
    char ac_sat_name[64];
    char c_sat_name_end;
    std::uint8_t aui1_reserved_347[65];
};

template <>
struct tavro::Layout<_SATL_REC_T> : LayoutOf<_SATL_REC_T> {
    static constexpr Field fields[] = {
        TAVRO_FIELD(0, ui2_satl_rec_id, "RECORD_ID", "record id", "unique within its list"),
        TAVRO_RESERVED(2, aui1_reserved_2),
        TAVRO_FLAGS(4, ui4_mask, "MASK", "flags", "satellite in use, kind of LNB, LNB signal detected"),
        TAVRO_FIELD(8, e_lnb_type, "LNB_TYPE", "LNB type", ""),
        TAVRO_AMOUNT(12, ui2_lnb_low_freq, "LNB_LOW_FREQUENCY", "low band oscillator", "MHz", ""),
        TAVRO_AMOUNT(14, ui2_lnb_high_freq, "LNB_HIGH_FREQUENCY", "high band oscillator", "MHz", ""),
        TAVRO_AMOUNT(16, ui2_lnb_switch_freq, "LNB_SWITCH_FREQUENCY", "band switch frequency", "MHz",
                     "where the high band begins"),
        TAVRO_RESERVED(18, aui1_reserved_18),
        TAVRO_PART(40, t_diseqc_info, "", ""),
        TAVRO_RESERVED(96, aui1_reserved_96),
        TAVRO_FIELD(192, e_sub_user_band, "SUB_USER_BAND", "sub user band", "single cable, sub tuner"),
        TAVRO_AMOUNT(196, ui2_sub_band_freq, "SUB_BAND_FREQUENCY", "sub band frequency", "MHz",
                     "single cable, sub tuner"),
        TAVRO_RESERVED(198, aui1_reserved_198),
        TAVRO_AMOUNT(280, i2_orb_pos, "ORBITAL_POSITION", "orbital position", "0.1 degrees",
                     "signed; east of Greenwich is positive"),
        TAVRO_FIELD(282, ac_sat_name, "NAME", "name", "at most 64 bytes of modified UTF-8, filled up with NULs"),
        TAVRO_FIELD(346, c_sat_name_end, "NAME_END", "name terminator", "0 wherever the library writes a name"),
        TAVRO_RESERVED(347, aui1_reserved_347),
    };
};
TAVRO_COMPLETE(_SATL_REC_T, 412);

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_satl, _SATL_REC_T)

// The record at position `index` (from 0) of the list, and how many there are.
tavro::MwStatus x_satl_get_rec_by_rec_idx(tavro::MwdbHandle handle, std::int32_t index, _SATL_REC_T* record,
                                          std::int32_t* version);
tavro::MwStatus x_satl_get_num_recs(tavro::MwdbHandle handle, std::uint16_t* count, std::int32_t* version);
}
