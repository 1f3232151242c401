// The list calls of all four kinds over arrays in memory: the records in order, and the position of each record id.
#include "journal.h"
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"
#include "services/define_list_calls.h"

#include <cstring>
#include <memory>
#include <vector>

using namespace tavro;

namespace {

using tavro::memory::journal;

constexpr MwStatus kNoList = -101;
constexpr MwStatus kListExists = -102;
constexpr MwStatus kNoRecord = -104;
constexpr int kLists = 256;
constexpr int kNowhere = -1;

template <class Record>
struct List {
    std::vector<Record> records;
    std::vector<int> positions = std::vector<int>(65536, kNowhere); // by record id
    std::int32_t version = 0;

    // The positions of the records that match the last filter.
    std::vector<int> filtered;
    std::uint64_t filter = 0;
    std::int32_t filter_version = -1;
};

// The common calls of one kind. `Kind` provides its prefix, its number and the record id.
template <class Kind, class Record>
struct Lists {
    static inline std::unique_ptr<List<Record>> lists[kLists];

    static List<Record>* find(MwdbHandle handle) { return lists[handle & (kLists - 1)].get(); }
    static MwdbHandle handle_of(int list_id) { return Kind::kNumber << 16 | static_cast<MwdbHandle>(list_id); }
    static void say(const char* call, long a = 0, long b = 0, long c = 0, long d = 0, const Record* record = nullptr) {
        if (tavro_memory_journal != nullptr) {
            tavro::memory::journal_call((std::string(Kind::kPrefix) + call).c_str(), a, b, c, d, record,
                                        record == nullptr ? 0 : sizeof(Record));
        }
    }

    static MwStatus open(std::uint16_t list_id, std::uint32_t, std::uint32_t, MwdbHandle* handle) {
        say("_open", list_id);
        if (list_id >= kLists || lists[list_id] == nullptr) {
            return kNoList;
        }
        *handle = handle_of(list_id);
        return kMwOk;
    }
    static MwStatus create(const char*, std::uint16_t list_id, std::uint32_t, std::uint32_t, std::uint32_t,
                           std::uint32_t, MwdbHandle* handle) {
        say("_create", list_id);
        if (list_id >= kLists || lists[list_id] != nullptr) {
            return kListExists;
        }
        lists[list_id] = std::make_unique<List<Record>>();
        *handle = handle_of(list_id);
        return kMwOk;
    }
    static MwStatus close(MwdbHandle handle) {
        say("_close", handle);
        return kMwOk;
    }
    static MwStatus remove(MwdbHandle handle) {
        say("_delete", handle);
        lists[handle & (kLists - 1)].reset();
        return kMwOk;
    }
    static MwStatus clean(MwdbHandle handle) {
        say("_clean", handle);
        truncate(*find(handle), 0);
        return kMwOk;
    }
    static MwStatus copy_date(MwdbHandle from, MwdbHandle to) {
        say("_copy_date", from, to);
        *find(to) = *find(from);
        return kMwOk;
    }
    static MwStatus fs_sync(MwdbHandle handle, std::uint32_t, const char*, std::uint16_t list_id) {
        say("_fs_sync", handle, list_id);
        return kMwNoFile;
    }
    static MwStatus fs_store(MwdbHandle handle, const char*, std::uint16_t list_id) {
        say("_fs_store", handle, list_id);
        return kMwOk;
    }
    static MwStatus lock(MwdbHandle handle) { return nothing("_lock", handle); }
    static MwStatus unlock(MwdbHandle handle) { return nothing("_unlock", handle); }
    static MwStatus read_lock(MwdbHandle handle) { return nothing("_read_lock", handle); }
    static MwStatus read_unlock(MwdbHandle handle) { return nothing("_read_unlock", handle); }
    static MwStatus nothing(const char* call, MwdbHandle handle) {
        say(call, handle);
        return kMwOk;
    }

    // Records are added in ascending id order, so the last one has the highest id.
    static MwStatus qry_rec_id(MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
        say("_qry_rec_id", handle, query);
        const List<Record>& list = *find(handle);
        const int highest = list.records.empty() ? 0 : Kind::record_id(list.records.back());
        *record_id = static_cast<std::uint16_t>(query == kMwQueryNextRecordId ? highest + 1 : highest);
        return list.records.empty() && query == kMwQueryHighestRecordId ? kMwEmpty : kMwOk;
    }
    static MwStatus add_rec(MwdbHandle handle, Record* record) {
        say("_add_rec", handle, 0, 0, 0, record);
        List<Record>& list = *find(handle);
        int& position = list.positions[Kind::record_id(*record)];
        if (position != kNowhere) {
            return kMwRecordExists;
        }
        position = static_cast<int>(list.records.size());
        list.records.push_back(*record);
        ++list.version;
        return kMwOk;
    }
    static MwStatus update_rec(MwdbHandle handle, Record* record, std::uint32_t flag) {
        say("_update_rec", handle, flag, 0, 0, record);
        List<Record>& list = *find(handle);
        const int position = list.positions[Kind::record_id(*record)];
        if (position == kNowhere) {
            return kNoRecord;
        }
        list.records[static_cast<std::size_t>(position)] = *record;
        ++list.version;
        return kMwOk;
    }
    static MwStatus del_rec(MwdbHandle handle, std::uint16_t record_id) {
        say("_del_rec", handle, record_id);
        List<Record>& list = *find(handle);
        const int position = list.positions[record_id];
        if (position == kNowhere) {
            return kNoRecord;
        }
        list.positions[record_id] = kNowhere;
        list.records.erase(list.records.begin() + position);
        for (std::size_t i = static_cast<std::size_t>(position); i < list.records.size(); ++i) {
            list.positions[Kind::record_id(list.records[i])] = static_cast<int>(i);
        }
        ++list.version;
        return kMwOk;
    }
    static MwStatus get_rec(MwdbHandle handle, std::uint16_t record_id, Record* record, std::int32_t* version) {
        say("_get_rec", handle, record_id, 0, 0, record);
        const List<Record>& list = *find(handle);
        return give(list, list.positions[record_id], record, version);
    }

    static MwStatus get_at(const char* call, MwdbHandle handle, int index, Record* record, std::int32_t* version) {
        say(call, handle, index, 0, 0, record);
        const List<Record>& list = *find(handle);
        return give(list, index < static_cast<int>(list.records.size()) ? index : kNowhere, record, version);
    }
    static MwStatus count(const char* call, MwdbHandle handle, std::uint16_t* number, std::int32_t* version) {
        say(call, handle);
        *number = static_cast<std::uint16_t>(find(handle)->records.size());
        *version = find(handle)->version;
        return kMwOk;
    }

    // Positions of the records for which `matches` returns true, cached until the list or the filter changes.
    template <class Matches>
    static const std::vector<int>& filtered(List<Record>& list, std::uint64_t filter, Matches matches) {
        if (list.filter != filter || list.filter_version != list.version) {
            list.filtered.clear();
            for (std::size_t i = 0; i < list.records.size(); ++i) {
                if (matches(list.records[i])) {
                    list.filtered.push_back(static_cast<int>(i));
                }
            }
            list.filter = filter;
            list.filter_version = list.version;
        }
        return list.filtered;
    }
    static MwStatus give(const List<Record>& list, int position, Record* record, std::int32_t* version) {
        if (position == kNowhere) {
            return kNoRecord;
        }
        *record = list.records[static_cast<std::size_t>(position)];
        *version = list.version;
        return kMwOk;
    }
    static MwStatus give_filtered(const List<Record>& list, const std::vector<int>& positions, std::uint16_t index,
                                  Record* record, std::int32_t* version) {
        return give(list, index < positions.size() ? positions[index] : kNowhere, record, version);
    }

    static void truncate(List<Record>& list, int count) {
        while (static_cast<int>(list.records.size()) > count) {
            list.positions[Kind::record_id(list.records.back())] = kNowhere;
            list.records.pop_back();
        }
        ++list.version;
    }
    static void fill(int list_id, int count, const void* record) {
        if (lists[list_id] == nullptr) {
            lists[list_id] = std::make_unique<List<Record>>();
        }
        List<Record>& list = *lists[list_id];
        truncate(list, 0);
        Record copy;
        std::memcpy(&copy, record, sizeof copy);
        for (int id = 1; id <= count; ++id) {
            Kind::record_id(copy) = static_cast<std::uint16_t>(id);
            list.positions[static_cast<std::size_t>(id)] = id - 1;
            list.records.push_back(copy);
        }
    }
};

#define TAVRO_MEMORY_KIND(NAME, PREFIX, NUMBER, RECORD, ID)                                                            \
    struct NAME : Lists<NAME, RECORD> {                                                                                \
        static constexpr char kPrefix[] = PREFIX;                                                                      \
        static constexpr MwdbHandle kNumber = NUMBER;                                                                  \
        static std::uint16_t record_id(const RECORD& record) { return record.ID; }                                     \
        static std::uint16_t& record_id(RECORD& record) { return record.ID; }                                          \
    }
TAVRO_MEMORY_KIND(Svl, "x_svl", 1, _SVL_REC_T, ui2_svl_rec_id);
TAVRO_MEMORY_KIND(Tsl, "x_tsl", 2, _TSL_REC_T, ui2_tsl_rec_id);
TAVRO_MEMORY_KIND(Nwl, "x_nwl", 3, _NWL_REC_T, ui2_nwl_rec_id);
TAVRO_MEMORY_KIND(Satl, "x_satl", 4, _SATL_REC_T, ui2_satl_rec_id);

const std::vector<int>& of_stream(List<_SVL_REC_T>& list, std::uint16_t tsl_id, std::uint16_t tsl_rec_id) {
    return Svl::filtered(list, std::uint64_t{tsl_id} << 16 | tsl_rec_id, [&](const _SVL_REC_T& record) {
        return record.t_header.ui2_tsl_id == tsl_id && record.t_header.ui2_tsl_rec_id == tsl_rec_id;
    });
}

const std::vector<int>& of_satellite(List<_TSL_REC_T>& list, std::uint16_t satl_id, std::uint16_t satl_rec_id) {
    return Tsl::filtered(list, std::uint64_t{satl_id} << 16 | satl_rec_id, [&](const _TSL_REC_T& record) {
        return record.ui2_satl_id == satl_id && record.ui2_satl_rec_id == satl_rec_id;
    });
}

template <class Kind>
void* record_at(int list_id, int position) {
    return &Kind::lists[list_id]->records[static_cast<std::size_t>(position)];
}

} // namespace

extern "C" {

TAVRO_DEFINE_LIST_CALLS(x_svl, _SVL_REC_T, Svl)
TAVRO_DEFINE_LIST_CALLS(x_tsl, _TSL_REC_T, Tsl)
TAVRO_DEFINE_LIST_CALLS(x_nwl, _NWL_REC_T, Nwl)
TAVRO_DEFINE_LIST_CALLS(x_satl, _SATL_REC_T, Satl)

MwStatus x_svl_get_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t, std::uint32_t, std::uint16_t index,
                                      _SVL_REC_T* record, std::int32_t* version) {
    return Svl::get_at("_get_rec_by_brdcst_type", handle, index, record, version);
}
MwStatus x_svl_get_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id, std::uint32_t,
                             std::uint16_t index, _SVL_REC_T* record, std::int32_t* version) {
    journal(__func__, handle, tsl_id, tsl_rec_id, index);
    List<_SVL_REC_T>& list = *Svl::find(handle);
    return Svl::give_filtered(list, of_stream(list, tsl_id, tsl_rec_id), index, record, version);
}
MwStatus x_svl_get_num_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t, std::uint32_t, std::uint16_t* count,
                                          std::int32_t* version) {
    return Svl::count("_get_num_rec_by_brdcst_type", handle, count, version);
}
MwStatus x_svl_get_num_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id, std::uint32_t,
                                 std::uint16_t* count, std::int32_t* version) {
    journal(__func__, handle, tsl_id, tsl_rec_id);
    List<_SVL_REC_T>& list = *Svl::find(handle);
    *count = static_cast<std::uint16_t>(of_stream(list, tsl_id, tsl_rec_id).size());
    *version = list.version;
    return kMwOk;
}

MwStatus x_tsl_get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _TSL_REC_T* record, std::int32_t* version) {
    return Tsl::get_at("_get_rec_by_rec_idx", handle, index, record, version);
}
MwStatus x_tsl_get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return Tsl::count("_get_num_recs", handle, count, version);
}
MwStatus x_tsl_get_rec_by_sat(MwdbHandle handle, std::uint16_t, std::uint16_t satl_id, std::uint16_t satl_rec_id,
                              std::uint16_t index, _TSL_REC_T* record, std::int32_t* version) {
    journal(__func__, handle, satl_id, satl_rec_id, index);
    List<_TSL_REC_T>& list = *Tsl::find(handle);
    return Tsl::give_filtered(list, of_satellite(list, satl_id, satl_rec_id), index, record, version);
}
MwStatus x_tsl_get_num_rec_by_sat(MwdbHandle handle, std::uint16_t, std::uint16_t satl_id, std::uint16_t satl_rec_id,
                                  std::uint16_t* count, std::int32_t* version) {
    journal(__func__, handle, satl_id, satl_rec_id);
    List<_TSL_REC_T>& list = *Tsl::find(handle);
    *count = static_cast<std::uint16_t>(of_satellite(list, satl_id, satl_rec_id).size());
    *version = list.version;
    return kMwOk;
}

MwStatus x_nwl_get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _NWL_REC_T* record, std::int32_t* version) {
    return Nwl::get_at("_get_rec_by_rec_idx", handle, index, record, version);
}
MwStatus x_nwl_get_num_rec(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return Nwl::count("_get_num_rec", handle, count, version);
}

MwStatus x_satl_get_rec_by_rec_idx(MwdbHandle handle, std::int32_t index, _SATL_REC_T* record, std::int32_t* version) {
    return Satl::get_at("_get_rec_by_rec_idx", handle, index, record, version);
}
MwStatus x_satl_get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return Satl::count("_get_num_recs", handle, count, version);
}

#define TAVRO_MEMORY_BY_KIND(CALL)                                                                                     \
    switch (kind) {                                                                                                    \
    case Svl::kNumber:                                                                                                 \
        CALL(Svl);                                                                                                     \
    case Tsl::kNumber:                                                                                                 \
        CALL(Tsl);                                                                                                     \
    case Nwl::kNumber:                                                                                                 \
        CALL(Nwl);                                                                                                     \
    default:                                                                                                           \
        CALL(Satl);                                                                                                    \
    }

void tavro_memory_fill(int kind, int list_id, int count, const void* record) {
#define CALL(KIND) return KIND::fill(list_id, count, record)
    TAVRO_MEMORY_BY_KIND(CALL)
#undef CALL
}
void* tavro_memory_record(int kind, int list_id, int position) {
#define CALL(KIND) return record_at<KIND>(list_id, position)
    TAVRO_MEMORY_BY_KIND(CALL)
#undef CALL
}
void tavro_memory_truncate(int kind, int list_id, int count) {
#define CALL(KIND) return KIND::truncate(*KIND::lists[list_id], count)
    TAVRO_MEMORY_BY_KIND(CALL)
#undef CALL
}
int tavro_memory_count(int kind, int list_id) {
#define CALL(KIND) return static_cast<int>(KIND::lists[list_id]->records.size())
    TAVRO_MEMORY_BY_KIND(CALL)
#undef CALL
}
}
