// The scripted list calls of all four kinds.
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"
#include "recorder.h"
#include "services/define_list_calls.h"

#include <algorithm>
#include <cstring>

using namespace tavro;

namespace {

using tavro::script::Answer;
using tavro::script::ask;
using tavro::script::Hex;
using tavro::script::RecordArgument;

constexpr std::uint16_t kFirstRecordId = 1; // result of qry_rec_id if it is not scripted

bool gives_values(const Answer& answer) { return answer.status == kMwOk || answer.value.has_value(); }

// Writes the reply's value to `out`, or `unscripted` if it has none.
template <class Value>
void give_value(const Answer& answer, std::uint32_t unscripted, Value* out) {
    if (out != nullptr && gives_values(answer)) {
        *out = static_cast<Value>(answer.value.value_or(unscripted));
    }
}

void give_version(const Answer& answer, std::int32_t* version) {
    if (version != nullptr && gives_values(answer)) {
        *version = answer.version;
    }
}

MwStatus give_count(const std::optional<Answer>& scripted, std::uint16_t* count, std::int32_t* version) {
    const Answer answer = scripted.value_or(Answer{});
    give_value(answer, 0, count);
    give_version(answer, version);
    return answer.status;
}

template <class Record>
MwStatus give_record(const std::optional<Answer>& scripted, Record* record, std::int32_t* version) {
    const Answer answer = scripted.value_or(Answer{});
    if (record != nullptr && !answer.record.empty()) {
        std::memcpy(record, answer.record.data(), std::min(sizeof(Record), answer.record.size()));
    }
    give_version(answer, version);
    return answer.status;
}

MwStatus give_status(const std::optional<Answer>& scripted) { return scripted.value_or(Answer{}).status; }

// The common calls of one kind. `Kind` provides the prefix of their names, and its number in handles.
template <class Kind, class Record>
struct ListCalls {
    static std::string name(const char* operation) { return std::string(Kind::kPrefix) + operation; }

    static MwStatus give_handle(const std::optional<Answer>& scripted, std::uint16_t list_id, MwdbHandle* handle) {
        const Answer answer = scripted.value_or(Answer{});
        give_value(answer, Kind::kNumber << 16 | list_id, handle);
        if (answer.status == kMwOk && handle != nullptr && *handle != 0) {
            script::opened(*handle);
        }
        return answer.status;
    }

    static MwStatus take_handle_back(const std::optional<Answer>& scripted, MwdbHandle handle) {
        const MwStatus status = give_status(scripted);
        if (status == kMwOk) {
            script::closed(handle);
        }
        return status;
    }

    static MwStatus open(std::uint16_t list_id, std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        return give_handle(ask(name("_open"), list_id, tag, notify), list_id, handle);
    }
    static MwStatus create(const char* list_name, std::uint16_t list_id, std::uint32_t mode, std::uint32_t growth,
                           std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        return give_handle(ask(name("_create"), list_name, list_id, mode, growth, tag, notify), list_id, handle);
    }
    static MwStatus close(MwdbHandle handle) { return take_handle_back(ask(name("_close"), Hex{handle}), handle); }
    static MwStatus remove(MwdbHandle handle) { return take_handle_back(ask(name("_delete"), Hex{handle}), handle); }
    static MwStatus clean(MwdbHandle handle) { return give_status(ask(name("_clean"), Hex{handle})); }
    static MwStatus copy_date(MwdbHandle from, MwdbHandle to) {
        return give_status(ask(name("_copy_date"), Hex{from}, Hex{to}));
    }
    static MwStatus fs_sync(MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t list_id) {
        return give_status(ask(name("_fs_sync"), Hex{handle}, drive, path, list_id));
    }
    static MwStatus fs_store(MwdbHandle handle, const char* path, std::uint16_t list_id) {
        return give_status(ask(name("_fs_store"), Hex{handle}, path, list_id));
    }
    static MwStatus lock(MwdbHandle handle) { return give_status(ask(name("_lock"), Hex{handle})); }
    static MwStatus unlock(MwdbHandle handle) { return give_status(ask(name("_unlock"), Hex{handle})); }
    static MwStatus read_lock(MwdbHandle handle) { return give_status(ask(name("_read_lock"), Hex{handle})); }
    static MwStatus read_unlock(MwdbHandle handle) { return give_status(ask(name("_read_unlock"), Hex{handle})); }
    static MwStatus qry_rec_id(MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
        const Answer answer = ask(name("_qry_rec_id"), Hex{handle}, query).value_or(Answer{});
        give_value(answer, kFirstRecordId, record_id);
        return answer.status;
    }
    static MwStatus add_rec(MwdbHandle handle, Record* record) {
        const RecordArgument bytes{record, sizeof(Record)};
        return give_status(play(name("_add_rec"), {text_of(Hex{handle}), text_of(bytes)}, bytes));
    }
    static MwStatus update_rec(MwdbHandle handle, Record* record, std::uint32_t flag) {
        const RecordArgument bytes{record, sizeof(Record)};
        return give_status(
            play(name("_update_rec"), {text_of(Hex{handle}), text_of(bytes), std::to_string(flag)}, bytes));
    }
    static MwStatus del_rec(MwdbHandle handle, std::uint16_t record_id) {
        return give_status(ask(name("_del_rec"), Hex{handle}, record_id));
    }
    static MwStatus get_rec(MwdbHandle handle, std::uint16_t record_id, Record* record, std::int32_t* version) {
        return give_record(ask(name("_get_rec"), Hex{handle}, record_id), record, version);
    }
};

struct Svl : ListCalls<Svl, _SVL_REC_T> {
    static constexpr char kPrefix[] = "x_svl";
    static constexpr std::uint32_t kNumber = 1;
};
struct Tsl : ListCalls<Tsl, _TSL_REC_T> {
    static constexpr char kPrefix[] = "x_tsl";
    static constexpr std::uint32_t kNumber = 2;
};
struct Nwl : ListCalls<Nwl, _NWL_REC_T> {
    static constexpr char kPrefix[] = "x_nwl";
    static constexpr std::uint32_t kNumber = 3;
};
struct Satl : ListCalls<Satl, _SATL_REC_T> {
    static constexpr char kPrefix[] = "x_satl";
    static constexpr std::uint32_t kNumber = 4;
};

} // namespace

extern "C" {

TAVRO_DEFINE_LIST_CALLS(x_svl, _SVL_REC_T, Svl)
TAVRO_DEFINE_LIST_CALLS(x_tsl, _TSL_REC_T, Tsl)
TAVRO_DEFINE_LIST_CALLS(x_nwl, _NWL_REC_T, Nwl)
TAVRO_DEFINE_LIST_CALLS(x_satl, _SATL_REC_T, Satl)

MwStatus x_svl_get_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask,
                                      std::uint16_t index, _SVL_REC_T* record, std::int32_t* version) {
    return give_record(ask(__func__, Hex{handle}, broadcast_type, Hex{network_mask}, index), record, version);
}
MwStatus x_svl_get_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                             std::uint32_t network_mask, std::uint16_t index, _SVL_REC_T* record,
                             std::int32_t* version) {
    return give_record(ask(__func__, Hex{handle}, tsl_id, tsl_rec_id, Hex{network_mask}, index), record, version);
}
MwStatus x_svl_get_num_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask,
                                          std::uint16_t* count, std::int32_t* version) {
    return give_count(ask(__func__, Hex{handle}, broadcast_type, Hex{network_mask}), count, version);
}
MwStatus x_svl_get_num_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                                 std::uint32_t network_mask, std::uint16_t* count, std::int32_t* version) {
    return give_count(ask(__func__, Hex{handle}, tsl_id, tsl_rec_id, Hex{network_mask}), count, version);
}

MwStatus x_tsl_get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _TSL_REC_T* record, std::int32_t* version) {
    return give_record(ask(__func__, Hex{handle}, index), record, version);
}
MwStatus x_tsl_get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return give_count(ask(__func__, Hex{handle}), count, version);
}
MwStatus x_tsl_get_rec_by_sat(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                              std::uint16_t satl_rec_id, std::uint16_t index, _TSL_REC_T* record,
                              std::int32_t* version) {
    return give_record(ask(__func__, Hex{handle}, network, satl_id, satl_rec_id, index), record, version);
}
MwStatus x_tsl_get_num_rec_by_sat(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                  std::uint16_t satl_rec_id, std::uint16_t* count, std::int32_t* version) {
    return give_count(ask(__func__, Hex{handle}, network, satl_id, satl_rec_id), count, version);
}

MwStatus x_nwl_get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _NWL_REC_T* record, std::int32_t* version) {
    return give_record(ask(__func__, Hex{handle}, index), record, version);
}
MwStatus x_nwl_get_num_rec(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return give_count(ask(__func__, Hex{handle}), count, version);
}

MwStatus x_satl_get_rec_by_rec_idx(MwdbHandle handle, std::int32_t index, _SATL_REC_T* record, std::int32_t* version) {
    return give_record(ask(__func__, Hex{handle}, index), record, version);
}
MwStatus x_satl_get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return give_count(ask(__func__, Hex{handle}), count, version);
}
}
