#include "jni/records/network_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/record_getters.h"
#include "jni/records/record_rows.h"

using tavro::flag;
using tavro::flag_getter;
using tavro::Getter;
using tavro::integer;
using tavro::number_getter;
using tavro::Row;
using tavro::short_text;
using tavro::text_getter;

namespace {

constexpr char kVersion[] = "NetworkVersion";
constexpr char kName[] = "NetworkName";
constexpr char kCandidate[] = "NwlFavNetworkCandidate";
constexpr char kFavourite[] = "NwlFavNetwork";
constexpr char kNetworkId[] = "NwlNetworkId";

constexpr std::uint32_t kCandidateBit = 0x2;
constexpr std::uint32_t kFavouriteBit = 0x4;

#define NWL(MEMBER) TAVRO_PLACE(_NWL_REC_T, MEMBER)

// Fields are called as their keys.
constexpr Row kRows[] = {
    integer(kVersion, kVersion, NWL(ui1_nw_version)),
    short_text(kName, kName, NWL(ac_nw_name)),
    flag(kCandidate, kCandidate, NWL(ui4_nwl_flags), kCandidateBit),
    flag(kFavourite, kFavourite, NWL(ui4_nwl_flags), kFavouriteBit),
    integer(kNetworkId, kNetworkId, NWL(ui2_nw_id)),
};

int record_id_of(const std::byte* record) { return reinterpret_cast<const _NWL_REC_T*>(record)->ui2_nwl_rec_id; }

void trace_version(const std::byte* record) {
    TAVRO_LOG_DEBUG(kNoTag, "[KEY_NETWORK_VERSION] %s  pt_nwl_rec.ui2_nwl_rec_id:%d ", "_get_nwl_info",
                    record_id_of(record));
}

void trace_name(const std::byte* record) {
    TAVRO_LOG_DEBUG(kNoTag, "[KEY_NETWORK_NAME] %s  pt_nwl_rec.ui2_nwl_rec_id:%d", "_get_nwl_info",
                    record_id_of(record));
}

constexpr Getter kGetters[] = {
    number_getter(kVersion, "setNetworkVersion", NWL(ui1_nw_version), trace_version),
    text_getter(kName, "setNetworkName", NWL(ac_nw_name), trace_name),
    flag_getter(kCandidate, "setNwlFavNetworkCandidate", NWL(ui4_nwl_flags), kCandidateBit),
    flag_getter(kFavourite, "setNwlFavNetwork", NWL(ui4_nwl_flags), kFavouriteBit),
    number_getter(kNetworkId, "setNwlNetworkId", NWL(ui2_nw_id)),
};

} // namespace

void set_network_info(tavro::RecordObject& object, _NWL_REC_T& record) { walk(kRows, object, record); }

void _get_networklist_data(tavro::Jni& jni, jclass base_class, jobject base, const _NWL_REC_T& record) {
    hand_over_all(kGetters, jni, base_class, base, record);
}

void _get_nwl_info(tavro::Jni& jni, jclass base_class, jobject base, const char* key, const _NWL_REC_T& record) {
    hand_over_one(kGetters, jni, base_class, base, key, record);
}
