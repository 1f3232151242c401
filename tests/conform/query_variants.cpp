// Platforms with defects of record id queries, counts and reads by index.
#include "past.h"

namespace tavro::broken {

namespace {

constexpr MwStatus kFailure = -1;
constexpr std::uint16_t kHighestId = kMwNoRecordId - 1;

template <class Kind>
bool has(MwdbHandle handle, std::uint16_t id) {
    typename Kind::Record record;
    return find<Kind>(handle, id, record);
}

// Calls `then` after a record id query, with its status; the result is the status.
template <class Kind, class Then>
void after_query(Then then) {
    Kind::hooks.qry_rec_id = [then](MwdbHandle handle, std::uint32_t query, std::uint16_t* id) {
        return then(handle, id, Kind::next.qry_rec_id(handle, query, id));
    };
}

// Gives `id` instead of the platform's id in lists for which `decide` holds.
template <class Kind, class Decide>
void offer(std::uint16_t id, Decide decide) {
    after_query<Kind>([id, decide](MwdbHandle handle, std::uint16_t* found, MwStatus status) {
        if (decide(handle)) {
            *found = id;
            return kMwOk;
        }
        return status;
    });
}

void add_next_id_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Svl>(variants, check, std::move(break_it));
    };
    add("next-id.empty", [] { offer<Svl>(kMwNoRecordId, [](MwdbHandle handle) { return count<Svl>(handle) == 0; }); });
    add("next-id.free", [] { offer<Svl>(7, [](MwdbHandle handle) { return has<Svl>(handle, 7); }); });
    add("next-id.removed", [] {
        offer<Svl>(1, [](MwdbHandle handle) {
            return has<Svl>(handle, 1) && !Past<Svl>::removed.empty() && !has<Svl>(handle, 2);
        });
    });
    add("next-id.highest", [] {
        offer<Svl>(kHighestId,
                   [](MwdbHandle handle) { return has<Svl>(handle, kHighestId) && count<Svl>(handle) == 1; });
    });
    add("next-id.full", [] { offer<Svl>(5, [](MwdbHandle handle) { return count<Svl>(handle) == kHighestId; }); });
}

template <class Kind>
void add_highest_id_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("highest-id.empty", [] {
        after_query<Kind>([](MwdbHandle, const std::uint16_t*, MwStatus status) {
            return status == kMwEmpty && Past<Kind>::cleaned.empty() ? kFailure : status;
        });
    });
    add("highest-id.adds",
        [] { offer<Kind>(8, [](MwdbHandle handle) { return has<Kind>(handle, 5) && has<Kind>(handle, 9); }); });
    add("highest-id.removed", [] { offer<Kind>(8, [](MwdbHandle) { return Past<Kind>::removed.count(5) != 0; }); });
    add("highest-id.clean",
        [] { offer<Kind>(kMwNoRecordId, [](MwdbHandle handle) { return Past<Kind>::cleaned.count(handle) != 0; }); });
    add("highest-id.limit",
        [] { offer<Kind>(kHighestId - 1, [](MwdbHandle handle) { return has<Kind>(handle, kHighestId); }); });
}

template <class Kind>
void add_read_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("query.writes-within", [] {
        after_query<Kind>([](MwdbHandle, std::uint16_t* id, MwStatus status) {
            touch_byte_after(id);
            return status;
        });
    });
    add("count.changes", [] {
        Kind::hook_count([](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
            const MwStatus status = Kind::count(handle, count, version);
            *count = static_cast<std::uint16_t>(*count + Past<Kind>::removed.count(4));
            return status;
        });
    });
    add("count.writes-within", [] {
        Kind::hook_count([](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
            const MwStatus status = Kind::count(handle, count, version);
            touch_byte_after(count);
            return status;
        });
    });
    add("index.each", [] {
        Kind::hook_get_at([](MwdbHandle handle, auto index, auto* record, std::int32_t* version) {
            const bool is_fifth_of_5 = index == 4 && count<Kind>(handle) == 5;
            return Kind::get_at(handle, is_fifth_of_5 ? 3 : static_cast<std::uint16_t>(index), record, version);
        });
    });
    add("index.writes-within", [] {
        Kind::hook_get_at([](MwdbHandle handle, auto index, auto* record, std::int32_t* version) {
            const MwStatus status = Kind::get_at(handle, static_cast<std::uint16_t>(index), record, version);
            if (record != nullptr) {
                touch_byte_after(record);
            }
            return status;
        });
    });
}

} // namespace

void add_query_variants(Variants& variants) {
    add_next_id_variants(variants);
    add_highest_id_variants<Tsl>(variants);
    add_highest_id_variants<Nwl>(variants);
    add_highest_id_variants<Satl>(variants);
    add_read_variants<Svl>(variants);
    add_read_variants<Tsl>(variants);
    add_read_variants<Nwl>(variants);
    add_read_variants<Satl>(variants);
}

} // namespace tavro::broken
