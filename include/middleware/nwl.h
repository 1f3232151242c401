// Network lists (NWL): the record structure and the middleware calls. Numbers in parentheses are clauses of ETSI EN
// 300 468.
#pragma once

#include "middleware/layout.h"
#include "middleware/list_calls.h"

#include <cstddef>
#include <cstdint>

// One network: 304 bytes, little-endian. Bytes without a name belong to the middleware.
struct _NWL_REC_T {
    std::uint32_t ui4_nwl_flags;
    std::uint16_t ui2_nwl_rec_id;
    std::uint16_t ui2_nwl_id;
    std::uint8_t aui1_reserved_8[2];
    std::uint16_t ui2_nw_id;
    std::uint8_t ui1_nw_version;
    char ac_nw_name[32];
    std::uint8_t aui1_reserved_45[259];
};

template <>
struct tavro::Layout<_NWL_REC_T> : LayoutOf<_NWL_REC_T> {
    static constexpr Field fields[] = {
        TAVRO_FLAGS(0, ui4_nwl_flags, "FLAGS", "flags", "favorite network, and candidate for it"),
        TAVRO_FIELD(4, ui2_nwl_rec_id, "RECORD_ID", "record id", "unique within its list"),
        TAVRO_FIELD(6, ui2_nwl_id, "NWL_ID", "list", "the list that holds the record"),
        TAVRO_RESERVED(8, aui1_reserved_8),
        TAVRO_FIELD(10, ui2_nw_id, "NETWORK_ID", "network id", "network_id (5.2.1)"),
        TAVRO_FIELD(12, ui1_nw_version, "VERSION", "version", "version_number of the NIT (5.2.1)"),
        TAVRO_FIELD(13, ac_nw_name, "NAME", "name", "at most 31 bytes of modified UTF-8 and a NUL"),
        TAVRO_RESERVED(45, aui1_reserved_45),
    };
};
TAVRO_COMPLETE(_NWL_REC_T, 304);

extern "C" {
TAVRO_DECLARE_LIST_CALLS(x_nwl, _NWL_REC_T)

// The record at position `index` (from 0) of the list, and how many there are.
tavro::MwStatus x_nwl_get_rec_by_rec_idx(tavro::MwdbHandle handle, std::uint16_t index, _NWL_REC_T* record,
                                         std::int32_t* version);
tavro::MwStatus x_nwl_get_num_rec(tavro::MwdbHandle handle, std::uint16_t* count, std::int32_t* version);
}
