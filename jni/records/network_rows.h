// The keys of networks, in both directions.
#pragma once

#include "jni/records/to_java_rows.h"
#include "jni/records/to_record_rows.h"
#include "middleware/nwl.h"

namespace tavro::network_rows {

// Debug lines of values that are asked for by their keys.
void trace_version(const std::byte* record);
void trace_name(const std::byte* record);

// Keys; the Java fields have the same names.
inline constexpr char kVersion[] = "NetworkVersion";
inline constexpr char kName[] = "NetworkName";
inline constexpr char kCandidate[] = "NwlFavNetworkCandidate";
inline constexpr char kFavorite[] = "NwlFavNetwork";
inline constexpr char kNetworkId[] = "NwlNetworkId";

inline constexpr std::uint32_t kCandidateBit = 0x2;
inline constexpr std::uint32_t kFavoriteBit = 0x4;

#define NWL(MEMBER) TAVRO_PLACE(_NWL_REC_T, MEMBER)

inline constexpr ToRecordRow kToRecord[] = {
    integer(kVersion, kVersion, NWL(ui1_nw_version)),
    short_text(kName, kName, NWL(ac_nw_name)),
    flag(kCandidate, kCandidate, NWL(ui4_nwl_flags), kCandidateBit),
    flag(kFavorite, kFavorite, NWL(ui4_nwl_flags), kFavoriteBit),
    integer(kNetworkId, kNetworkId, NWL(ui2_nw_id)),
};

inline constexpr ToJavaRow kToJava[] = {
    number_to_java(kVersion, "setNetworkVersion", NWL(ui1_nw_version), trace_version),
    text_to_java(kName, "setNetworkName", NWL(ac_nw_name), trace_name),
    flag_to_java(kCandidate, "setNwlFavNetworkCandidate", NWL(ui4_nwl_flags), kCandidateBit),
    flag_to_java(kFavorite, "setNwlFavNetwork", NWL(ui4_nwl_flags), kFavoriteBit),
    number_to_java(kNetworkId, "setNwlNetworkId", NWL(ui2_nw_id)),
};

#undef NWL

} // namespace tavro::network_rows
