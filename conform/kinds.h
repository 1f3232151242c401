// The four list kinds as traits types, so that what they have in common is checked by one template.
//
// A kind has the 17 common calls as static functions under the METHOD names of middleware/list_calls.h (open, create,
// close, remove for delete, clean, copy_date, ..., get_rec), and:
//
//   Record, kName       the record structure; "svl", "tsl", "nwl" or "satl"
//   kPlural             "service lists"
//   kStorageName        format of the name that the library creates a list under
//   kQuery              the record id query that the library uses
//   id(record)          the record's id field
//   count, get_at       the calls that the library uses for a whole list
#pragma once

#include "conform/calls.h"

namespace tavro::conform {

#define TAVRO_MEMBER(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                                      \
    static RESULT METHOD PARAMETERS { return mw::NAME ARGUMENTS; }

struct Svl {
    using Record = _SVL_REC_T;
    static constexpr char kName[] = "svl";
    static constexpr char kPlural[] = "service lists";
    static constexpr char kStorageName[] = "fs_Svl_%d";
    static constexpr std::uint32_t kQuery = kMwQueryNextRecordId;
    static constexpr bool kIsCompanion = false;
    TAVRO_SVL_CALLS(TAVRO_MEMBER)
    static std::uint16_t& id(Record& record) { return record.ui2_svl_rec_id; }
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return get_num_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return get_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, index, record, version);
    }
    static constexpr char kCount[] = "get_num_rec_by_brdcst_type";
    static constexpr char kGetAt[] = "get_rec_by_brdcst_type";
};

struct Tsl {
    using Record = _TSL_REC_T;
    static constexpr char kName[] = "tsl";
    static constexpr char kPlural[] = "transport stream lists";
    static constexpr char kStorageName[] = "fs_Tsl_%d";
    static constexpr std::uint32_t kQuery = kMwQueryHighestRecordId;
    static constexpr bool kIsCompanion = true;
    TAVRO_TSL_CALLS(TAVRO_MEMBER)
    static std::uint16_t& id(Record& record) { return record.ui2_tsl_rec_id; }
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return get_num_recs(handle, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return get_rec_by_rec_idx(handle, index, record, version);
    }
    static constexpr char kCount[] = "get_num_recs";
    static constexpr char kGetAt[] = "get_rec_by_rec_idx";
};

struct Nwl {
    using Record = _NWL_REC_T;
    static constexpr char kName[] = "nwl";
    static constexpr char kPlural[] = "network lists";
    static constexpr char kStorageName[] = "fs_Nwl_%d";
    static constexpr std::uint32_t kQuery = kMwQueryHighestRecordId;
    static constexpr bool kIsCompanion = true;
    TAVRO_NWL_CALLS(TAVRO_MEMBER)
    static std::uint16_t& id(Record& record) { return record.ui2_nwl_rec_id; }
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return get_num_rec(handle, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return get_rec_by_rec_idx(handle, index, record, version);
    }
    static constexpr char kCount[] = "get_num_rec";
    static constexpr char kGetAt[] = "get_rec_by_rec_idx";
};

struct Satl {
    using Record = _SATL_REC_T;
    static constexpr char kName[] = "satl";
    static constexpr char kPlural[] = "satellite lists";
    static constexpr char kStorageName[] = "fs_satl_%d";
    static constexpr std::uint32_t kQuery = kMwQueryHighestRecordId;
    static constexpr bool kIsCompanion = true;
    TAVRO_SATL_CALLS(TAVRO_MEMBER)
    static std::uint16_t& id(Record& record) { return record.ui2_satl_rec_id; }
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return get_num_recs(handle, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return get_rec_by_rec_idx(handle, index, record, version);
    }
    static constexpr char kCount[] = "get_num_recs";
    static constexpr char kGetAt[] = "get_rec_by_rec_idx";
};

#undef TAVRO_MEMBER

} // namespace tavro::conform
