// A platform whose calls do almost nothing. Every list has kRecords records, which are all zero except the id.
#include "platform.h"

#include "middleware/channel_id.h"
#include "middleware/files.h"
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"
#include "services/define_list_calls.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <cstring>

using namespace tavro;

namespace {

using tavro::counts::kRecords;

MwStatus done() { return kMwOk; }

template <class Out, class Value>
MwStatus give(Out* out, Value value) {
    *out = static_cast<Out>(value);
    return kMwOk;
}

template <class Record>
MwStatus read(Record* record, int record_id) {
    std::memset(record, 0, sizeof(*record));
    const auto id = static_cast<std::uint16_t>(record_id);
    std::memcpy(record, &id, sizeof(id));
    return kMwOk;
}

template <class Record>
struct ListCalls {
    static MwStatus open(std::uint16_t list_id, std::uint32_t, std::uint32_t, MwdbHandle* handle) {
        return give(handle, 0x10000U + list_id);
    }
    static MwStatus create(const char*, std::uint16_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                           MwdbHandle*) {
        return done();
    }
    static MwStatus close(MwdbHandle) { return done(); }
    static MwStatus remove(MwdbHandle) { return done(); }
    static MwStatus clean(MwdbHandle) { return done(); }
    static MwStatus copy_date(MwdbHandle, MwdbHandle) { return done(); }
    static MwStatus fs_sync(MwdbHandle, std::uint32_t, const char*, std::uint16_t) { return done(); }
    static MwStatus fs_store(MwdbHandle, const char*, std::uint16_t) { return done(); }
    static MwStatus lock(MwdbHandle) { return done(); }
    static MwStatus unlock(MwdbHandle) { return done(); }
    static MwStatus read_lock(MwdbHandle) { return done(); }
    static MwStatus read_unlock(MwdbHandle) { return done(); }
    static MwStatus qry_rec_id(MwdbHandle, std::uint32_t, std::uint16_t* record_id) { return give(record_id, 1); }
    static MwStatus add_rec(MwdbHandle, Record*) { return done(); }
    static MwStatus update_rec(MwdbHandle, Record*, std::uint32_t) { return done(); }
    static MwStatus del_rec(MwdbHandle, std::uint16_t) { return done(); }
    static MwStatus get_rec(MwdbHandle, std::uint16_t record_id, Record* record, std::int32_t*) {
        return read(record, record_id);
    }
};

} // namespace

extern "C" {

TAVRO_DEFINE_LIST_CALLS(x_svl, _SVL_REC_T, ListCalls<_SVL_REC_T>)
TAVRO_DEFINE_LIST_CALLS(x_tsl, _TSL_REC_T, ListCalls<_TSL_REC_T>)
TAVRO_DEFINE_LIST_CALLS(x_nwl, _NWL_REC_T, ListCalls<_NWL_REC_T>)
TAVRO_DEFINE_LIST_CALLS(x_satl, _SATL_REC_T, ListCalls<_SATL_REC_T>)

MwStatus x_svl_get_rec_by_brdcst_type(MwdbHandle, std::uint32_t, std::uint32_t, std::uint16_t index, _SVL_REC_T* record,
                                      std::int32_t*) {
    return read(record, index);
}
MwStatus x_svl_get_rec_by_ts(MwdbHandle, std::uint16_t, std::uint16_t, std::uint32_t, std::uint16_t index,
                             _SVL_REC_T* record, std::int32_t*) {
    return read(record, index);
}
MwStatus x_svl_get_num_rec_by_brdcst_type(MwdbHandle, std::uint32_t, std::uint32_t, std::uint16_t* count,
                                          std::int32_t*) {
    return give(count, kRecords);
}
MwStatus x_svl_get_num_rec_by_ts(MwdbHandle, std::uint16_t, std::uint16_t, std::uint32_t, std::uint16_t* count,
                                 std::int32_t*) {
    return give(count, kRecords);
}

MwStatus x_tsl_get_rec_by_rec_idx(MwdbHandle, std::uint16_t index, _TSL_REC_T* record, std::int32_t*) {
    return read(record, index);
}
MwStatus x_tsl_get_num_recs(MwdbHandle, std::uint16_t* count, std::int32_t*) { return give(count, kRecords); }
MwStatus x_tsl_get_rec_by_sat(MwdbHandle, std::uint16_t, std::uint16_t, std::uint16_t, std::uint16_t index,
                              _TSL_REC_T* record, std::int32_t*) {
    return read(record, index);
}
MwStatus x_tsl_get_num_rec_by_sat(MwdbHandle, std::uint16_t, std::uint16_t, std::uint16_t, std::uint16_t* count,
                                  std::int32_t*) {
    return give(count, kRecords);
}

MwStatus x_nwl_get_rec_by_rec_idx(MwdbHandle, std::uint16_t index, _NWL_REC_T* record, std::int32_t*) {
    return read(record, index);
}
MwStatus x_nwl_get_num_rec(MwdbHandle, std::uint16_t* count, std::int32_t*) { return give(count, kRecords); }

MwStatus x_satl_get_rec_by_rec_idx(MwdbHandle, std::int32_t index, _SATL_REC_T* record, std::int32_t*) {
    return read(record, index);
}
MwStatus x_satl_get_num_recs(MwdbHandle, std::uint16_t* count, std::int32_t*) { return give(count, kRecords); }

MwStatus fs_raw_init(std::uint32_t, const char*) { return done(); }
MwStatus fs_raw_qry_fpath(std::uint32_t, const char*, std::uint32_t*, std::uint32_t*, std::uint32_t*) { return done(); }
MwStatus fs_raw_copy(std::uint32_t, const char*, std::uint32_t, const char*) { return done(); }
MwStatus x_fm_delete_file(std::uint32_t, const char*) { return done(); }

std::uint32_t x_sb_gen_channel_id(std::int32_t, std::int32_t, std::int32_t) {
    return static_cast<std::uint32_t>(done());
}
std::int32_t x_sb_get_channel_index(std::uint32_t) { return done(); }

int __android_log_print(int, const char*, const char*, ...) { return done(); }

// No property is set: the log gate is closed.
int property_get(const char*, char* value, const char*) {
    give(value, '\0');
    return 0;
}
}
