// Platforms that are right, but differ from the stand-in: no check may refuse them.
#include "past.h"

#include <algorithm>

namespace tavro::broken {

namespace {

// Lists are read by index in the order of falling record ids, not in that of the adds.
template <class Kind>
void sort_by_id() {
    Kind::hook_get_at([](MwdbHandle handle, std::uint16_t index, auto* record, std::int32_t* version) {
        auto records = contents<Kind>(handle);
        if (index >= records.size()) {
            return Kind::get_at(handle, index, record, version);
        }
        std::sort(records.begin(), records.end(), [](auto& a, auto& b) { return Kind::id(a) > Kind::id(b); });
        return Kind::next.get_rec(handle, Kind::id(records[index]), record, version);
    });
}

// Failures that the library does not tell apart have positive statuses.
template <class Kind>
void fail_with_positive_status() {
    const auto positive = [](auto& hook, const auto& next) {
        hook = [&next](auto... arguments) {
            const MwStatus status = next(arguments...);
            return status < 0 && status != kMwRecordExists ? -status : status;
        };
    };
    positive(Kind::hooks.open, Kind::next.open);
    positive(Kind::hooks.close, Kind::next.close);
    positive(Kind::hooks.add_rec, Kind::next.add_rec);
    positive(Kind::hooks.get_rec, Kind::next.get_rec);
    positive(Kind::hooks.update_rec, Kind::next.update_rec);
    positive(Kind::hooks.del_rec, Kind::next.del_rec);
    positive(Kind::hooks.fs_store, Kind::next.fs_store);
}

// The lowest id whose next one is free, not the highest.
template <class Kind>
void fill_gaps() {
    Kind::hooks.qry_rec_id = [](MwdbHandle handle, std::uint32_t query, std::uint16_t* id) {
        const MwStatus status = Kind::next.qry_rec_id(handle, query, id);
        typename Kind::Record record;
        if (status == kMwOk) {
            for (*id = 0; find<Kind>(handle, static_cast<std::uint16_t>(*id + 1), record);) {
                ++*id;
            }
        }
        return status;
    };
}

} // namespace

void add_correct_variants(Variants& variants) {
    variants.push_back({"correct.order", sort_by_id<Svl>});
    variants.push_back({"correct.ids", fill_gaps<Nwl>});
    variants.push_back({"correct.statuses", fail_with_positive_status<Tsl>});
}

} // namespace tavro::broken
