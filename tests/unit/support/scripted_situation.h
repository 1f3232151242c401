// Sets up the situation of a native over the scripted platform.
#pragma once

#include "native_cases.h"
#include "script.h"

#include <string>

namespace tavro::test {

inline void script_situation(const BridgeKind& kind, const Situation& situation) {
    const std::string calls = kind.calls;
    if (situation.open) {
        for (const MwdbHandle list : {1U, 2U}) {
            kind.handles().insert(static_cast<int>(list), kind.number << 16 | list);
        }
    }
    if (situation.missing) {
        script::always(calls + "open", {-101, {}, {}, 0, {}});
    }
    const std::uint32_t number = situation.empty ? 0 : 2;
    for (const char* count : {"x_svl_get_num_rec_by_brdcst_type", "x_svl_get_num_rec_by_ts", "x_tsl_get_num_recs",
                              "x_tsl_get_num_rec_by_sat", "x_nwl_get_num_rec", "x_satl_get_num_recs"}) {
        script::always(count, {0, number, {}, 0, {}});
    }
    for (const char* read :
         {"get_rec", "get_rec_by_rec_idx", "get_rec_by_brdcst_type", "get_rec_by_ts", "get_rec_by_sat"}) {
        script::always(calls + read, {0, {}, kind.sample, 0, {}});
    }
    if (situation.taken) {
        script::always(calls + "add_rec", {kMwRecordExists, {}, {}, 0, {}});
    }
    if (situation.file != kMwOk) {
        script::answer(calls + "fs_sync", {situation.file, {}, {}, 0, {}});
    }
    if (!situation.cached) {
        script::always("fs_raw_qry_fpath", {kMwNoFile, {}, {}, 0, {}});
    }
}

} // namespace tavro::test
