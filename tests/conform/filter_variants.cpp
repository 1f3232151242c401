// Platforms with defects of reading some records: services of a transport stream, transport streams of a satellite.
#include "past.h"

namespace tavro::broken {

namespace {

// The calls of one selection: services by transport stream, or transport streams by satellite.
struct ByStream {
    using Record = _SVL_REC_T;
    static void hook_count(std::function<void(MwdbHandle, std::uint16_t record_id, std::uint16_t* count)> then) {
        Svl::hooks.get_num_rec_by_ts = [then](MwdbHandle handle, std::uint16_t list, std::uint16_t record_id,
                                              std::uint32_t mask, std::uint16_t* count, std::int32_t* version) {
            const MwStatus status = Svl::next.get_num_rec_by_ts(handle, list, record_id, mask, count, version);
            then(handle, record_id, count);
            return status;
        };
    }
    static void hook_read(std::function<void(std::uint16_t record_id, std::uint16_t index, Record* record)> then) {
        Svl::hooks.get_rec_by_ts = [then](MwdbHandle handle, std::uint16_t list, std::uint16_t record_id,
                                          std::uint32_t mask, std::uint16_t index, Record* record,
                                          std::int32_t* version) {
            const MwStatus status = Svl::next.get_rec_by_ts(handle, list, record_id, mask, index, record, version);
            then(record_id, index, record);
            return status;
        };
    }
};
struct BySatellite {
    using Record = _TSL_REC_T;
    static void hook_count(std::function<void(MwdbHandle, std::uint16_t record_id, std::uint16_t* count)> then) {
        Tsl::hooks.get_num_rec_by_sat = [then](MwdbHandle handle, std::uint16_t network, std::uint16_t list,
                                               std::uint16_t record_id, std::uint16_t* count, std::int32_t* version) {
            const MwStatus status = Tsl::next.get_num_rec_by_sat(handle, network, list, record_id, count, version);
            then(handle, record_id, count);
            return status;
        };
    }
    static void hook_read(std::function<void(std::uint16_t record_id, std::uint16_t index, Record* record)> then) {
        Tsl::hooks.get_rec_by_sat = [then](MwdbHandle handle, std::uint16_t network, std::uint16_t list,
                                           std::uint16_t record_id, std::uint16_t index, Record* record,
                                           std::int32_t* version) {
            const MwStatus status = Tsl::next.get_rec_by_sat(handle, network, list, record_id, index, record, version);
            then(record_id, index, record);
            return status;
        };
    }
};

template <class Selection>
void add_variants(Variants& variants, const std::string& prefix) {
    using Record = typename Selection::Record;
    const auto add = [&](const char* check, std::function<void()> break_it) {
        variants.push_back({prefix + check, std::move(break_it)});
    };
    add("each", [] {
        Selection::hook_read([](std::uint16_t record_id, std::uint16_t index, Record* record) {
            if (record_id == 7 && index == 1) {
                reinterpret_cast<unsigned char*>(record)[sizeof *record - 1] ^= 1;
            }
        });
    });
    add("none", [] {
        Selection::hook_count(
            [](MwdbHandle, std::uint16_t record_id, std::uint16_t* count) { *count = record_id == 9 ? 1 : *count; });
    });
    add("updated", [] {
        Selection::hook_count([](MwdbHandle, std::uint16_t record_id, std::uint16_t* count) {
            *count = record_id == 8 ? 1 : *count; // as before the update
        });
    });
    add("writes-within",
        [] { Selection::hook_read([](std::uint16_t, std::uint16_t, Record* record) { touch_byte_after(record); }); });
    add("count-writes-within", [] {
        Selection::hook_count([](MwdbHandle, std::uint16_t, std::uint16_t* count) { touch_byte_after(count); });
    });
}

// Leaves the last service out of a whole list for which `decide` holds.
template <class Decide>
void leave_out_last(Decide decide) {
    Svl::hook_count([decide](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        const MwStatus status = Svl::count(handle, count, version);
        *count = static_cast<std::uint16_t>(*count - (decide(handle) ? 1 : 0));
        return status;
    });
}

bool has_broadcast_type_255(MwdbHandle handle) {
    _SVL_REC_T record;
    return find<Svl>(handle, 256, record) && record.t_header.e_brdcst_type == 255;
}

bool has_network_mask_0(MwdbHandle handle) {
    _SVL_REC_T record;
    return find<Svl>(handle, 2, record) && record.t_header.ui4_nw_mask == 0;
}

} // namespace

void add_filter_variants(Variants& variants) {
    add_variants<ByStream>(variants, "svl.stream.");
    add_variants<BySatellite>(variants, "tsl.satellite.");
    add<Svl>(variants, "all.broadcast-types", [] { leave_out_last(has_broadcast_type_255); });
    add<Svl>(variants, "all.network-masks", [] { leave_out_last(has_network_mask_0); });
}

} // namespace tavro::broken
