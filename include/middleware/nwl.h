// Network lists (NWL): the record structure and the middleware calls.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

// One network: 304 bytes, little-endian. Bytes without a name belong to the middleware.
struct _NWL_REC_T {
    std::uint32_t ui4_nwl_flags; // 0x2: candidate for the favourite network, 0x4: favourite network
    std::uint16_t ui2_nwl_rec_id;
    std::uint16_t ui2_nwl_id; // list that holds the record
    std::uint8_t aui1_reserved_8[2];
    std::uint16_t ui2_nw_id;     // network_id
    std::uint8_t ui1_nw_version; // version_number of the NIT
    char ac_nw_name[32];         // at most 31 bytes of modified UTF-8 and a NUL
    std::uint8_t aui1_reserved_45[259];
};

TAVRO_SIZE(_NWL_REC_T, 304);
TAVRO_AT(_NWL_REC_T, ui4_nwl_flags, 0);
TAVRO_AT(_NWL_REC_T, ui2_nwl_rec_id, 4);
TAVRO_AT(_NWL_REC_T, ui2_nwl_id, 6);
TAVRO_AT(_NWL_REC_T, ui2_nw_id, 10);
TAVRO_AT(_NWL_REC_T, ui1_nw_version, 12);
TAVRO_AT(_NWL_REC_T, ac_nw_name, 13);

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_nwl, _NWL_REC_T);

// The record at position `index` (from 0) of the list, and how many there are.
tavro::MwStatus x_nwl_get_rec_by_rec_idx(tavro::MwdbHandle handle, std::uint16_t index, _NWL_REC_T* record,
                                         std::int32_t* version);
tavro::MwStatus x_nwl_get_num_rec(tavro::MwdbHandle handle, std::uint16_t* count, std::int32_t* version);
}
