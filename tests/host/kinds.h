// The four list kinds as types, for typed tests.
#pragma once

#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#define TAVRO_TEST_KIND(PREFIX, RECORD, ID, GET_AT, COUNT)                                                             \
    using Record = RECORD;                                                                                             \
    static constexpr auto open = PREFIX##_open;                                                                        \
    static constexpr auto create = PREFIX##_create;                                                                    \
    static constexpr auto close = PREFIX##_close;                                                                      \
    static constexpr auto remove = PREFIX##_delete;                                                                    \
    static constexpr auto clean = PREFIX##_clean;                                                                      \
    static constexpr auto copy = PREFIX##_copy_date;                                                                   \
    static constexpr auto sync = PREFIX##_fs_sync;                                                                     \
    static constexpr auto store = PREFIX##_fs_store;                                                                   \
    static constexpr auto lock = PREFIX##_lock;                                                                        \
    static constexpr auto unlock = PREFIX##_unlock;                                                                    \
    static constexpr auto read_lock = PREFIX##_read_lock;                                                              \
    static constexpr auto read_unlock = PREFIX##_read_unlock;                                                          \
    static constexpr auto query = PREFIX##_qry_rec_id;                                                                 \
    static constexpr auto add = PREFIX##_add_rec;                                                                      \
    static constexpr auto update = PREFIX##_update_rec;                                                                \
    static constexpr auto remove_record = PREFIX##_del_rec;                                                            \
    static constexpr auto get = PREFIX##_get_rec;                                                                      \
    static std::uint16_t& id_of(RECORD& record) { return record.ID; }                                                  \
    static tavro::MwStatus get_at(tavro::MwdbHandle handle, std::uint16_t index, RECORD* record,                       \
                                  std::int32_t* version) {                                                             \
        return GET_AT;                                                                                                 \
    }                                                                                                                  \
    static tavro::MwStatus count(tavro::MwdbHandle handle, std::uint16_t* number, std::int32_t* version) {             \
        return COUNT;                                                                                                  \
    }

struct Services {
    static constexpr char kName[] = "svl";
    TAVRO_TEST_KIND(x_svl, _SVL_REC_T, ui2_svl_rec_id,
                    x_svl_get_rec_by_brdcst_type(handle, 0, 0xFFFFFFFF, index, record, version),
                    x_svl_get_num_rec_by_brdcst_type(handle, 0, 0xFFFFFFFF, number, version))
};
struct TransportStreams {
    static constexpr char kName[] = "tsl";
    TAVRO_TEST_KIND(x_tsl, _TSL_REC_T, ui2_tsl_rec_id, x_tsl_get_rec_by_rec_idx(handle, index, record, version),
                    x_tsl_get_num_recs(handle, number, version))
};
struct Networks {
    static constexpr char kName[] = "nwl";
    TAVRO_TEST_KIND(x_nwl, _NWL_REC_T, ui2_nwl_rec_id, x_nwl_get_rec_by_rec_idx(handle, index, record, version),
                    x_nwl_get_num_rec(handle, number, version))
};
struct Satellites {
    static constexpr char kName[] = "satl";
    TAVRO_TEST_KIND(x_satl, _SATL_REC_T, ui2_satl_rec_id, x_satl_get_rec_by_rec_idx(handle, index, record, version),
                    x_satl_get_num_recs(handle, number, version))
};

using EveryKind = ::testing::Types<Services, TransportStreams, Networks, Satellites>;

struct KindNames {
    template <class Kind>
    static std::string GetName(int) {
        return Kind::kName;
    }
};

// A record with every byte except the id set to `fill`.
template <class Kind>
typename Kind::Record record_of(std::uint16_t id, unsigned char fill) {
    typename Kind::Record record;
    std::memset(&record, fill, sizeof record);
    Kind::id_of(record) = id;
    return record;
}

template <class Record>
std::string bytes_of(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

template <class Kind>
tavro::MwdbHandle created(std::uint16_t list_id) {
    tavro::MwdbHandle handle = 0;
    EXPECT_EQ(Kind::create("list", list_id, tavro::kMwCreateMode, tavro::kMwCreateGrowth, 0, 0, &handle), tavro::kMwOk);
    return handle;
}

template <class Kind>
tavro::MwdbHandle opened(std::uint16_t list_id) {
    tavro::MwdbHandle handle = 0;
    EXPECT_EQ(Kind::open(list_id, 0, 0, &handle), tavro::kMwOk);
    return handle;
}

template <class Kind>
tavro::MwStatus add(tavro::MwdbHandle handle, std::uint16_t id, unsigned char fill) {
    typename Kind::Record record = record_of<Kind>(id, fill);
    return Kind::add(handle, &record);
}

// Reads the whole list by index: id and fill of every record. The id is -1 if the record cannot be read, with the
// status instead of the fill, or if its bytes are not all equal.
template <class Kind>
std::vector<std::pair<int, int>> contents(tavro::MwdbHandle handle) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    const tavro::MwStatus counted = Kind::count(handle, &number, &version);
    if (counted != tavro::kMwOk) {
        return {{-1, counted}};
    }
    std::vector<std::pair<int, int>> all;
    for (std::uint16_t index = 0; index < number; ++index) {
        typename Kind::Record record{};
        const tavro::MwStatus status = Kind::get_at(handle, index, &record, &version);
        const std::uint16_t id = Kind::id_of(record);
        const unsigned char fill = reinterpret_cast<const unsigned char*>(&record)[sizeof record - 1];
        const bool whole = bytes_of(record) == bytes_of(record_of<Kind>(id, fill));
        all.emplace_back(status == tavro::kMwOk && whole ? id : -1, status == tavro::kMwOk ? fill : status);
    }
    return all;
}

using Contents = std::vector<std::pair<int, int>>;
