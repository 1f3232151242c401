// Reading, updating and removing records.

#include "conform/guarded.h"
#include "conform/lists.h"

namespace tavro::conform {
namespace {

template <class Kind>
void get_missing(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 7);
    typename Kind::Record record = {};
    std::int32_t version = 0;
    run.fails(Kind::get_rec(handle, 8, &record, &version));
}

template <class Kind>
void get_missing_record(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 7);
    Guarded<typename Kind::Record> record(run);
    std::int32_t version = 0;
    if (Kind::get_rec(handle, 8, record.get(), &version) != kMwOk) {
        record.expect_unwritten(run, last_call());
    }
}

template <class Kind>
void get_within(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto expected = add<Kind>(run, handle, 7);
    Guarded<typename Kind::Record> record(run);
    Guarded<std::int32_t> version(run);
    run.done(Kind::get_rec(handle, 7, record.get(), version.get()));
    record.expect_nothing_before(run, last_call());
    version.expect_nothing_before(run, last_call() + ", of the version,");
    run.equal_bytes("record read by its id", &expected, record.get(), sizeof expected);
}

// Three records; the second is the one that a check changes.
template <class Kind>
struct Three {
    explicit Three(Run& run) : handle(create<Kind>(run)) {
        for (const std::uint16_t id : {5, 2, 9}) {
            records.push_back(add<Kind>(run, handle, id, 1));
        }
    }
    MwdbHandle handle;
    std::vector<typename Kind::Record> records;
};

template <class Kind, std::uint32_t kFlag>
void update_replaces(Run& run) {
    Three<Kind> list(run);
    const auto changed = make_record<Kind>(2, 2);
    auto passed = changed;
    run.done(Kind::update_rec(list.handle, &passed, kFlag));
    const auto found = get<Kind>(run, list.handle, 2);
    run.equal_bytes("updated record", &changed, &found, sizeof changed);
}

template <class Kind>
void update_keeps_order(Run& run) {
    Three<Kind> list(run);
    const auto before = contents<Kind>(run, list.handle);
    auto changed = make_record<Kind>(2, 2);
    run.done(Kind::update_rec(list.handle, &changed, kMwUpdatePlain));
    const auto found = contents<Kind>(run, list.handle);
    run.equal("records after an update", before.size(), found.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        auto expected = before[i];
        auto record = found[i];
        const std::string what = "id of the record at index " + std::to_string(i);
        run.equal(what.c_str(), Kind::id(expected), Kind::id(record));
    }
}

template <class Kind>
void update_keeps_others(Run& run) {
    Three<Kind> list(run);
    auto changed = make_record<Kind>(2, 2);
    run.done(Kind::update_rec(list.handle, &changed, kMwUpdatePlain));
    for (const std::size_t i : {0U, 2U}) {
        auto record = list.records[i];
        const auto found = get<Kind>(run, list.handle, Kind::id(record));
        run.equal_bytes("record that was not updated", &record, &found, sizeof record);
    }
}

template <class Kind>
void update_missing(Run& run) {
    Three<Kind> list(run);
    auto record = make_record<Kind>(3, 2);
    run.fails(Kind::update_rec(list.handle, &record, kMwUpdatePlain));
}

template <class Kind>
void update_reads_within(Run& run) {
    Three<Kind> list(run);
    Guarded<typename Kind::Record> record(run);
    *record.get() = make_record<Kind>(2, 2);
    run.done(Kind::update_rec(list.handle, record.get(), kMwUpdatePlain));
    record.expect_nothing_before(run, last_call());
}

template <class Kind>
void remove_record(Run& run) {
    Three<Kind> list(run);
    run.done(Kind::del_rec(list.handle, 2));
    typename Kind::Record record = {};
    std::int32_t version = 0;
    run.fails(Kind::get_rec(list.handle, 2, &record, &version));
}

template <class Kind>
void remove_keeps_others(Run& run) {
    Three<Kind> list(run);
    std::vector<typename Kind::Record> others;
    for (auto record : contents<Kind>(run, list.handle)) {
        if (Kind::id(record) != 2) {
            others.push_back(record);
        }
    }
    run.done(Kind::del_rec(list.handle, 2));
    expect_order<Kind>(run, list.handle, others);
}

template <class Kind>
void remove_missing(Run& run) {
    Three<Kind> list(run);
    run.fails(Kind::del_rec(list.handle, 3));
}

template <class Kind>
void remove_then_add(Run& run) {
    Three<Kind> list(run);
    run.done(Kind::del_rec(list.handle, 2));
    const auto record = add<Kind>(run, list.handle, 2, 3);
    const auto found = get<Kind>(run, list.handle, 2);
    run.equal_bytes("record added under the id of a removed one", &record, &found, sizeof record);
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

template <class Kind>
void add_get_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"get.missing",
         {"get_rec"},
         "Reading a record that does not exist fails.",
         "needed by the natives that read or update one record of {lists}",
         kWrong,
         get_missing<Kind>,
         1});
    row({"get.missing-record",
         {"get_rec"},
         "A read that fails leaves the caller's record alone.",
         "needed by the natives that read one record of {lists}: they log it after a failed read, too",
         Severity::kLogLine,
         get_missing_record<Kind>,
         1});
    row({"get.writes-within",
         {"get_rec"},
         "A read writes the whole record and the version, and no byte outside.",
         "needed by the natives that read one record of {lists}: both are on the stack",
         kLoss,
         get_within<Kind>,
         1});
}

template <class Kind>
void add_change_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"update.record",
         {"update_rec", "get_rec"},
         "An update with flag 0 replaces the record with the same id.",
         "needed by the natives that update records of {lists}",
         kLoss,
         update_replaces<Kind, kMwUpdatePlain>,
         1});
    if (Kind::kIsCompanion) {
        row({"update.flag-1",
             {"update_rec", "get_rec"},
             "An update with flag 1 replaces the record with the same id.",
             "needed by nativeAdd with an identifier of {lists}: it updates a record whose id is taken",
             kLoss,
             update_replaces<Kind, kMwUpdateReplace>,
             1});
    }
    row({"update.order",
         {"update_rec", "get_at"},
         "An update keeps the number and the order of the records.",
         "needed by the natives that read all records of {lists}: Java shows them in this order",
         kWrong,
         update_keeps_order<Kind>,
         1});
    row({"update.others",
         {"update_rec", "get_rec"},
         "An update leaves other records alone.",
         "needed by the natives that update records of {lists}",
         kLoss,
         update_keeps_others<Kind>,
         1});
    row({"update.missing",
         {"update_rec"},
         "Updating a record that does not exist fails.",
         "needed by the natives that update records of {lists}: another thread may have removed the record",
         kWrong,
         update_missing<Kind>,
         1});
    row({"update.reads-within",
         {"update_rec"},
         "An update uses no byte outside the caller's record.",
         "needed by the natives that update records of {lists}: the record is on the stack",
         kLoss,
         update_reads_within<Kind>,
         1});
    row({"remove.record",
         {"del_rec", "get_rec"},
         "A record that was removed cannot be read.",
         "needed by nativeRemove and nativeRemoveByRecId of {lists}",
         kWrong,
         remove_record<Kind>,
         1});
    row({"remove.others",
         {"del_rec", "get_at"},
         "A removal leaves the other records alone, in their order.",
         "needed by nativeRemove and nativeRemoveByRecId of {lists}",
         kLoss,
         remove_keeps_others<Kind>,
         1});
    row({"remove.missing",
         {"del_rec"},
         "Removing a record that does not exist fails.",
         "needed by nativeRemove and nativeRemoveByRecId of {lists}: their status is what Java gets",
         kWrong,
         remove_missing<Kind>,
         1});
    row({"remove.id",
         {"del_rec", "add_rec"},
         "The id of a removed record can be used again.",
         "needed by nativeAdd of {lists}: after a removal it may offer the same id",
         kWrong,
         remove_then_add<Kind>,
         1});
}

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    add_get_rows<Kind>(checks);
    add_change_rows<Kind>(checks);
}

} // namespace

void add_record_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
