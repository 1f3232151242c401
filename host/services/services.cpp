// The list calls of all four kinds, forwarded to the engine.
#include "control.h"
#include "engine.h"
#include "faults/faults.h"
#include "status.h"

using namespace tavro;

namespace {

using tavro::host::Engine;
using tavro::host::Filter;
using tavro::host::Kind;
using tavro::host::LockLevel;

Engine& engine() { return Engine::instance(); }

// The common calls of one kind. Mode, growth, tag and notify are ignored. So is the list id of fs_sync and fs_store: a
// file may be loaded into any list of its kind.
template <const Kind& kKind, class Record>
struct ListCalls {
    static MwStatus open(std::uint16_t list_id, std::uint32_t, std::uint32_t, MwdbHandle* handle) {
        return engine().open(kKind, list_id, handle);
    }
    static MwStatus create(const char* name, std::uint16_t list_id, std::uint32_t, std::uint32_t, std::uint32_t,
                           std::uint32_t, MwdbHandle* handle) {
        return engine().create(kKind, name, list_id, handle);
    }
    static MwStatus close(MwdbHandle handle) { return engine().close(kKind, handle); }
    static MwStatus remove(MwdbHandle handle) { return engine().remove(kKind, handle); }
    static MwStatus clean(MwdbHandle handle) { return engine().clean(kKind, handle); }
    static MwStatus copy_date(MwdbHandle from, MwdbHandle to) { return engine().copy(kKind, from, to); }
    static MwStatus fs_sync(MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t) {
        return drive == kMwRootDrive ? engine().load_file(kKind, handle, path) : kHostBadArgument;
    }
    static MwStatus fs_store(MwdbHandle handle, const char* path, std::uint16_t) {
        return engine().store_file(kKind, handle, path);
    }
    static MwStatus lock(MwdbHandle handle) { return engine().lock(kKind, handle, LockLevel::kWrite); }
    static MwStatus unlock(MwdbHandle handle) { return engine().unlock(kKind, handle, LockLevel::kWrite); }
    static MwStatus read_lock(MwdbHandle handle) { return engine().lock(kKind, handle, LockLevel::kRead); }
    static MwStatus read_unlock(MwdbHandle handle) { return engine().unlock(kKind, handle, LockLevel::kRead); }
    static MwStatus qry_rec_id(MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
        return engine().query_record_id(kKind, handle, query, record_id);
    }
    static MwStatus add_rec(MwdbHandle handle, Record* record) { return engine().add(kKind, handle, record); }
    static MwStatus update_rec(MwdbHandle handle, Record* record, std::uint32_t) {
        return engine().update(kKind, handle, record);
    }
    static MwStatus del_rec(MwdbHandle handle, std::uint16_t record_id) {
        return engine().remove_record(kKind, handle, record_id);
    }
    static MwStatus get_rec(MwdbHandle handle, std::uint16_t record_id, Record* record, std::int32_t* version) {
        return engine().get(kKind, handle, record_id, record, version);
    }
};

const Filter kEverything;

// The calls that only one kind has.
struct Svl : ListCalls<tavro::host::kSvl, _SVL_REC_T> {
    static MwStatus get_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask,
                                           std::uint16_t index, _SVL_REC_T* record, std::int32_t* version) {
        return engine().get_at(tavro::host::kSvl, handle, Filter::by_broadcast_type(broadcast_type, network_mask),
                               index, record, version);
    }
    static MwStatus get_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                                  std::uint32_t network_mask, std::uint16_t index, _SVL_REC_T* record,
                                  std::int32_t* version) {
        return engine().get_at(tavro::host::kSvl, handle, Filter::by_transport_stream(tsl_id, tsl_rec_id, network_mask),
                               index, record, version);
    }
    static MwStatus get_num_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t broadcast_type,
                                               std::uint32_t network_mask, std::uint16_t* count,
                                               std::int32_t* version) {
        return engine().count(tavro::host::kSvl, handle, Filter::by_broadcast_type(broadcast_type, network_mask), count,
                              version);
    }
    static MwStatus get_num_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                                      std::uint32_t network_mask, std::uint16_t* count, std::int32_t* version) {
        return engine().count(tavro::host::kSvl, handle, Filter::by_transport_stream(tsl_id, tsl_rec_id, network_mask),
                              count, version);
    }
};

struct Tsl : ListCalls<tavro::host::kTsl, _TSL_REC_T> {
    static MwStatus get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _TSL_REC_T* record,
                                       std::int32_t* version) {
        return engine().get_at(tavro::host::kTsl, handle, kEverything, index, record, version);
    }
    static MwStatus get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return engine().count(tavro::host::kTsl, handle, kEverything, count, version);
    }
    static MwStatus get_rec_by_sat(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                   std::uint16_t satl_rec_id, std::uint16_t index, _TSL_REC_T* record,
                                   std::int32_t* version) {
        return engine().get_at(tavro::host::kTsl, handle, Filter::by_satellite(network, satl_id, satl_rec_id), index,
                               record, version);
    }
    static MwStatus get_num_rec_by_sat(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                       std::uint16_t satl_rec_id, std::uint16_t* count, std::int32_t* version) {
        return engine().count(tavro::host::kTsl, handle, Filter::by_satellite(network, satl_id, satl_rec_id), count,
                              version);
    }
};

struct Nwl : ListCalls<tavro::host::kNwl, _NWL_REC_T> {
    static MwStatus get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _NWL_REC_T* record,
                                       std::int32_t* version) {
        return engine().get_at(tavro::host::kNwl, handle, kEverything, index, record, version);
    }
    static MwStatus get_num_rec(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return engine().count(tavro::host::kNwl, handle, kEverything, count, version);
    }
};

struct Satl : ListCalls<tavro::host::kSatl, _SATL_REC_T> {
    static MwStatus get_rec_by_rec_idx(MwdbHandle handle, std::int32_t index, _SATL_REC_T* record,
                                       std::int32_t* version) {
        return engine().get_at(tavro::host::kSatl, handle, kEverything, index, record, version);
    }
    static MwStatus get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return engine().count(tavro::host::kSatl, handle, kEverything, count, version);
    }
};

} // namespace

extern "C" {

#define TAVRO_DEFINE_SVL_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                             \
    TAVRO_DEFINE_CALL(Svl, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)
TAVRO_SVL_CALLS(TAVRO_DEFINE_SVL_CALL)
#define TAVRO_DEFINE_TSL_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                             \
    TAVRO_DEFINE_CALL(Tsl, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)
TAVRO_TSL_CALLS(TAVRO_DEFINE_TSL_CALL)
#define TAVRO_DEFINE_NWL_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                             \
    TAVRO_DEFINE_CALL(Nwl, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)
TAVRO_NWL_CALLS(TAVRO_DEFINE_NWL_CALL)
#define TAVRO_DEFINE_SATL_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                            \
    TAVRO_DEFINE_CALL(Satl, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)
TAVRO_SATL_CALLS(TAVRO_DEFINE_SATL_CALL)

void tavro_host_reset(void) { engine().reset(); }

void tavro_host_set_read_only(int read_only) { engine().set_read_only(read_only != 0); }

void tavro_host_open_writable(const char* directory) { engine().open_writable(directory); }

std::uint64_t tavro_host_work(void) { return engine().work(); }
}
