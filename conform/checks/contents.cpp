// Cleaning and copying lists.

#include "conform/lists.h"

namespace tavro::conform {
namespace {

template <class Kind>
void clean_removes_all(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 1);
    add<Kind>(run, handle, 7);
    run.done(Kind::clean(handle));
    expect_contents<Kind>(run, handle, {});
}

template <class Kind>
void clean_keeps_list(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 1, 1);
    run.done(Kind::clean(handle));
    const auto record = add<Kind>(run, handle, 1, 2);
    const auto found = get<Kind>(run, handle, 1);
    run.equal_bytes("record added after the clean", &record, &found, sizeof record);
}

// Two lists: 3 records, and 2 with ids of which one is the same.
template <class Kind>
struct Pair {
    explicit Pair(Run& run) : from(create<Kind>(run, 0)), to(create<Kind>(run, 1)) {
        for (const std::uint16_t id : {5, 2, 9}) {
            add<Kind>(run, from, id, 1);
        }
        source = contents<Kind>(run, from);
        add<Kind>(run, to, 2, 2);
        add<Kind>(run, to, 30, 2);
    }
    MwdbHandle from;
    MwdbHandle to;
    std::vector<typename Kind::Record> source;
};

template <class Kind>
void copy_replaces(Run& run) {
    const Pair<Kind> lists(run);
    run.done(Kind::copy_date(lists.from, lists.to));
    expect_order<Kind>(run, lists.to, lists.source);
}

template <class Kind>
void copy_keeps_source(Run& run) {
    const Pair<Kind> lists(run);
    run.done(Kind::copy_date(lists.from, lists.to));
    expect_order<Kind>(run, lists.from, lists.source);
}

template <class Kind>
void copy_is_independent(Run& run) {
    const Pair<Kind> lists(run);
    run.done(Kind::copy_date(lists.from, lists.to));
    run.done(Kind::clean(lists.to));
    expect_order<Kind>(run, lists.from, lists.source);
}

template <class Kind>
void copy_empty(Run& run) {
    const MwdbHandle from = create<Kind>(run, 0);
    const MwdbHandle to = create<Kind>(run, 1);
    add<Kind>(run, to, 2);
    run.done(Kind::copy_date(from, to));
    expect_contents<Kind>(run, to, {});
}

template <class Kind>
void copy_onto_itself(Run& run) {
    const Pair<Kind> lists(run);
    Kind::copy_date(lists.from, lists.from);
    expect_order<Kind>(run, lists.from, lists.source);
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"clean.records",
         {"clean", "count"},
         "Cleaning a list removes all records.",
         "needed by the clean native of {lists}",
         kWrong,
         clean_removes_all<Kind>,
         1});
    row({"clean.handle",
         {"clean", "add_rec"},
         "After a clean, the handle is valid and records can be added.",
         "needed by the clean native of {lists}: the list stays open",
         kWrong,
         clean_keeps_list<Kind>,
         1});
    row({"copy.records",
         {"copy_date", "get_at"},
         "A copy replaces all records of the destination by the records of the source, in their order.",
         "needed by the copy native of {lists}",
         kLoss,
         copy_replaces<Kind>,
         2});
    row({"copy.source",
         {"copy_date"},
         "A copy leaves its source alone.",
         "needed by the copy native of {lists}",
         kLoss,
         copy_keeps_source<Kind>,
         2});
    row({"copy.apart",
         {"copy_date", "clean"},
         "Changes of the copy do not reach its source.",
         "needed by the copy native of {lists}",
         kLoss,
         copy_is_independent<Kind>,
         2});
    row({"copy.empty",
         {"copy_date"},
         "A copy of an empty list empties the destination.",
         "needed by the copy native of {lists}",
         kWrong,
         copy_empty<Kind>,
         2});
    row({"copy.itself",
         {"copy_date"},
         "Copying a list onto itself keeps its records, whatever the status.",
         "needed by the copy native of {lists}: it does not compare the list ids",
         kLoss,
         copy_onto_itself<Kind>,
         2});
}

} // namespace

void add_content_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
