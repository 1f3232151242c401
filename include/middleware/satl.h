// Satellite lists (SATL): the record structure with its dish-control block and the middleware calls.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

// How one tuner drives the dish: DiSEqC switch, tone, LNB power, single-cable parameters. 56 bytes.
struct _TUNER_DISEQC_INFO_T {
    std::uint32_t e_diseqc_type; // 0 tone burst only, 2 committed switch
    std::uint8_t ui1_port;       // committed switch port 0..3, 0xFF none
    std::uint8_t aui1_reserved_5[2];
    std::uint8_t ui1_22k;        // 22 kHz tone
    std::uint8_t ui1_tone_burst; // 0 burst A, 1 burst B, 0xFF none
    std::uint8_t aui1_reserved_9[3];
    std::uint32_t e_polar;
    std::uint32_t e_lnb_power;
    std::uint8_t aui1_reserved_20[4];
    std::uint32_t e_position; // single-cable position
    std::uint8_t aui1_reserved_28[4];
    std::uint32_t e_user_band;   // single-cable user band
    std::uint16_t ui2_band_freq; // single-cable band frequency
    std::uint8_t aui1_reserved_38[2];
    std::uint32_t e_mdu_type;
    std::uint32_t e_diseqc_type_ex;
    std::uint8_t ui1_port_ex;
    std::uint8_t aui1_reserved_49[3];
    std::uint32_t e_diseqc_type_ex2;
};

TAVRO_SIZE(_TUNER_DISEQC_INFO_T, 56);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_diseqc_type, 0);
TAVRO_AT(_TUNER_DISEQC_INFO_T, ui1_port, 4);
TAVRO_AT(_TUNER_DISEQC_INFO_T, ui1_22k, 7);
TAVRO_AT(_TUNER_DISEQC_INFO_T, ui1_tone_burst, 8);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_polar, 12);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_lnb_power, 16);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_position, 24);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_user_band, 32);
TAVRO_AT(_TUNER_DISEQC_INFO_T, ui2_band_freq, 36);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_mdu_type, 40);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_diseqc_type_ex, 44);
TAVRO_AT(_TUNER_DISEQC_INFO_T, ui1_port_ex, 48);
TAVRO_AT(_TUNER_DISEQC_INFO_T, e_diseqc_type_ex2, 52);

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
    _TUNER_DISEQC_INFO_T t_diseqc_info; // main tuner
    std::uint8_t aui1_reserved_96[96];
    std::uint32_t e_sub_user_band;   // single-cable user band of the sub tuner
    std::uint16_t ui2_sub_band_freq; // single-cable band frequency of the sub tuner
    std::uint8_t aui1_reserved_198[82];
    std::int16_t i2_orb_pos; // orbital position, signed
    char ac_sat_name[64];    // modified UTF-8, filled up with NULs
    char c_sat_name_end;     // 0 wherever the library writes a name
    std::uint8_t aui1_reserved_347[65];
};

TAVRO_SIZE(_SATL_REC_T, 412);
TAVRO_AT(_SATL_REC_T, ui2_satl_rec_id, 0);
TAVRO_AT(_SATL_REC_T, ui4_mask, 4);
TAVRO_AT(_SATL_REC_T, e_lnb_type, 8);
TAVRO_AT(_SATL_REC_T, ui2_lnb_low_freq, 12);
TAVRO_AT(_SATL_REC_T, ui2_lnb_high_freq, 14);
TAVRO_AT(_SATL_REC_T, ui2_lnb_switch_freq, 16);
TAVRO_AT(_SATL_REC_T, t_diseqc_info, 40);
TAVRO_AT(_SATL_REC_T, e_sub_user_band, 192);
TAVRO_AT(_SATL_REC_T, ui2_sub_band_freq, 196);
TAVRO_AT(_SATL_REC_T, i2_orb_pos, 280);
TAVRO_AT(_SATL_REC_T, ac_sat_name, 282);
TAVRO_AT(_SATL_REC_T, c_sat_name_end, 346);

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_satl, _SATL_REC_T);

// The record at position `index` (from 0) of the list, and how many there are.
tavro::MwStatus x_satl_get_rec_by_rec_idx(tavro::MwdbHandle handle, std::int32_t index, _SATL_REC_T* record,
                                          std::int32_t* version);
tavro::MwStatus x_satl_get_num_recs(tavro::MwdbHandle handle, std::uint16_t* count, std::int32_t* version);
}
