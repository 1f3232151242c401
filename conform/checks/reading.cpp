// Counts, and reads by index of whole lists.

#include "conform/guarded.h"
#include "conform/lists.h"

#include <algorithm>

namespace tavro::conform {
namespace {

template <class Kind>
void count_changes(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 4);
    add<Kind>(run, handle, 2);
    run.equal("records counted after two adds", 2, count<Kind>(run, handle));
    run.done(Kind::del_rec(handle, 4));
    run.equal("records counted after a removal", 1, count<Kind>(run, handle));
}

template <class Kind>
void count_within(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 4);
    Guarded<std::uint16_t> number(run);
    Guarded<std::int32_t> version(run);
    run.done(Kind::count(handle, number.get(), version.get()));
    number.expect_nothing_before(run, last_call());
    version.expect_nothing_before(run, last_call() + ", of the version,");
    run.equal("records counted", 1, *number.get());
}

template <class Kind>
void index_finds_each(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    std::vector<std::uint16_t> expected;
    for (const std::uint16_t id : {40, 7, 300, 1, 65534}) {
        add<Kind>(run, handle, id);
        expected.push_back(id);
    }
    std::vector<std::uint16_t> found;
    for (auto record : contents<Kind>(run, handle)) {
        found.push_back(Kind::id(record));
        const auto added = make_record<Kind>(Kind::id(record));
        run.equal_bytes("record read by its index", &added, &record, sizeof record);
    }
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    run.expect(found == expected, "reads by index give each of the 5 records once", "they do not");
}

template <class Kind>
void index_within(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto expected = add<Kind>(run, handle, 7);
    Guarded<typename Kind::Record> record(run);
    Guarded<std::int32_t> version(run);
    run.done(Kind::get_at(handle, 0, record.get(), version.get()));
    record.expect_nothing_before(run, last_call());
    version.expect_nothing_before(run, last_call() + ", of the version,");
    run.equal_bytes("record read by its index", &expected, record.get(), sizeof expected);
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"count.changes",
         {"count", "add_rec", "del_rec"},
         "The count follows adds and removals.",
         "needed by the natives that read all records of {lists}",
         kWrong,
         count_changes<Kind>,
         1});
    row({"count.writes-within",
         {"count"},
         "A count writes 2 bytes and the version, and no byte outside.",
         "needed by the natives that read all records of {lists}: both are on the stack",
         kLoss,
         count_within<Kind>,
         1});
    row({"index.each",
         {"get_at", "count"},
         "The indexes from 0 to the count minus 1 give each record once.",
         "needed by the natives that read all records of {lists}: a failed read ends them without a result",
         kWrong,
         index_finds_each<Kind>,
         1});
    row({"index.writes-within",
         {"get_at"},
         "A read by index writes the whole record and the version, and no byte outside.",
         "needed by the natives that read all records of {lists}",
         kLoss,
         index_within<Kind>,
         1});
}

} // namespace

void add_reading_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
