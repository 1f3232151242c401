// Record ids for new records.

#include "conform/guarded.h"
#include "conform/lists.h"

namespace tavro::conform {
namespace {

constexpr std::uint16_t kHighestId = kMwNoRecordId - 1;

// Queries the record id like the library, which passes 0.
template <class Kind>
MwStatus query(MwdbHandle handle, std::uint16_t& id) {
    id = 0;
    return Kind::qry_rec_id(handle, Kind::kQuery, &id);
}

// Services: the id to give a new record.

// Ends the check as failed unless a record can be added under the id that the list offers.
void expect_usable(Run& run, MwdbHandle handle) {
    std::uint16_t id = 0;
    run.done(query<Svl>(handle, id));
    run.expect(id < kMwNoRecordId, last_call() + " gives an id below 65535", std::to_string(id));
    auto record = make_record<Svl>(id, 9);
    run.done(Svl::add_rec(handle, &record));
}

void next_on_empty(Run& run) { expect_usable(run, create<Svl>(run)); }

void next_is_free(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    for (const std::uint16_t id : {1, 2, 7}) {
        add<Svl>(run, handle, id);
    }
    expect_usable(run, handle);
    expect_usable(run, handle);
}

void next_after_removal(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    for (const std::uint16_t id : {1, 2, 3}) {
        add<Svl>(run, handle, id);
    }
    run.done(Svl::del_rec(handle, 2));
    expect_usable(run, handle);
}

void next_after_highest(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    add<Svl>(run, handle, kHighestId);
    std::uint16_t id = 0;
    if (query<Svl>(handle, id) != kMwOk || id == kMwNoRecordId) {
        return; // refuses further services: Java gets ""
    }
    auto record = make_record<Svl>(id, 9);
    run.done(Svl::add_rec(handle, &record));
}

// Fills a list with all 65534 records.
template <class Kind>
MwdbHandle fill(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    for (std::uint16_t id = 1; id != kMwNoRecordId; ++id) {
        auto record = make_record<Kind>(id);
        run.done(Kind::add_rec(handle, &record));
    }
    return handle;
}

void next_in_full_list(Run& run) {
    const MwdbHandle handle = fill<Svl>(run);
    run.equal("records in the list", kHighestId, count<Svl>(run, handle));
    std::uint16_t id = 0;
    const MwStatus status = query<Svl>(handle, id);
    // Record id 0 is not one that the library offers, but a middleware may.
    run.expect(status != kMwOk || id == kMwNoRecordId || id == 0, last_call() + " of a full list fails or gives 65535",
               std::to_string(id));
}

// Transport streams, networks, satellites: an id after which the next one is free.

// Ends the check as failed unless a record can be added under the id after the one that the query gives.
template <class Kind>
void expect_next_usable(Run& run, MwdbHandle handle) {
    std::uint16_t id = 0;
    run.done(query<Kind>(handle, id));
    run.expect(id < kMwNoRecordId, last_call() + " gives an id below 65535", std::to_string(id));
    auto record = make_record<Kind>(static_cast<std::uint16_t>(id + 1), 9);
    run.done(Kind::add_rec(handle, &record));
}

// Ends it as failed unless the query gives what the library accepts for a list without records.
template <class Kind>
void expect_empty(Run& run, MwdbHandle handle) {
    std::uint16_t id = 0;
    const MwStatus status = query<Kind>(handle, id);
    run.expect(status == kMwOk ? id < kMwNoRecordId : status == kMwEmpty && id == 0,
               last_call() + " returns -6 with id 0, or 0 with an id below 65535",
               "status " + std::to_string(status) + ", id " + std::to_string(id));
}

template <class Kind>
void highest_on_empty(Run& run) {
    expect_empty<Kind>(run, create<Kind>(run));
}

template <class Kind>
void highest_after_adds(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    for (const std::uint16_t id : {3, 9, 5}) {
        add<Kind>(run, handle, id);
    }
    expect_next_usable<Kind>(run, handle);
    expect_next_usable<Kind>(run, handle);
}

template <class Kind>
void highest_after_removal(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    for (const std::uint16_t id : {3, 9, 5}) {
        add<Kind>(run, handle, id);
    }
    run.done(Kind::del_rec(handle, 5));
    expect_next_usable<Kind>(run, handle);
}

template <class Kind>
void highest_after_clean(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 3);
    run.done(Kind::clean(handle));
    expect_empty<Kind>(run, handle);
}

template <class Kind>
void highest_at_limit(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, kHighestId);
    std::uint16_t id = 0;
    if (query<Kind>(handle, id) != kMwOk || id >= kHighestId) {
        return; // refuses further records, or leads to id 65535, which is refused: Java gets ""
    }
    auto record = make_record<Kind>(static_cast<std::uint16_t>(id + 1), 9);
    run.done(Kind::add_rec(handle, &record));
}

template <class Kind>
void query_within(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 1);
    Guarded<std::uint16_t> id(run);
    run.done(Kind::qry_rec_id(handle, Kind::kQuery, id.get()));
    id.expect_nothing_before(run, last_call());
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

void add_service_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Svl>(checks, std::move(check)); };
    row({"next-id.empty",
         {"qry_rec_id", "add_rec"},
         "Query 3 offers an id below 65535 for an empty list.",
         "needed by nativeAdd of {lists}",
         kWrong,
         next_on_empty,
         1});
    row({"next-id.free",
         {"qry_rec_id", "add_rec"},
         "Query 3 offers an id that no record has.",
         "needed by nativeAdd of {lists}",
         kWrong,
         next_is_free,
         1});
    row({"next-id.removed",
         {"qry_rec_id", "del_rec"},
         "After a removal, query 3 offers an id that no record has.",
         "needed by nativeAdd of {lists}",
         kWrong,
         next_after_removal,
         1});
    row({"next-id.highest",
         {"qry_rec_id", "add_rec"},
         "When id 65534 is taken, query 3 offers an id that no record has, or 65535, or fails.",
         "needed by nativeAdd of {lists}: 65535 and a failure give an empty identifier",
         kWrong,
         next_after_highest,
         1});
    row({"next-id.full",
         {"qry_rec_id", "add_rec", "count"},
         "In a full list, query 3 offers 65535 or fails.",
         "needed by nativeAdd of {lists}: 65535 and a failure give an empty identifier",
         kWrong,
         next_in_full_list,
         1,
         0,
         true});
}

template <class Kind>
void add_companion_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"highest-id.empty",
         {"qry_rec_id"},
         "Query 2 of an empty list returns -6 with id 0, or 0 with an id below 65535.",
         "needed by nativeAdd of {lists}: the first record gets the next id, and any other status is a failure",
         kWrong,
         highest_on_empty<Kind>,
         1});
    row({"highest-id.adds",
         {"qry_rec_id", "add_rec"},
         "Query 2 gives an id whose next one is free, such as the highest record id.",
         "needed by nativeAdd of {lists}: a new record gets the next id",
         kWrong,
         highest_after_adds<Kind>,
         1});
    row({"highest-id.removed",
         {"qry_rec_id", "del_rec"},
         "After a removal, query 2 gives an id whose next one is free.",
         "needed by nativeAdd of {lists}: a new record gets the next id",
         kWrong,
         highest_after_removal<Kind>,
         1});
    row({"highest-id.clean",
         {"qry_rec_id", "clean"},
         "After a clean, query 2 returns -6 with id 0, or 0 with an id below 65535.",
         "needed by nativeAdd of {lists}",
         kWrong,
         highest_after_clean<Kind>,
         1});
    row({"highest-id.limit",
         {"qry_rec_id", "add_rec"},
         "When id 65534 is taken, query 2 gives an id whose next one is free, or 65534 or 65535, or fails.",
         "needed by nativeAdd of {lists}: 65534 leads to the id 65535, which is refused",
         kWrong,
         highest_at_limit<Kind>,
         1});
}

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    if constexpr (Kind::kIsCompanion) {
        add_companion_rows<Kind>(checks);
    } else {
        add_service_rows(checks);
    }
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"query.writes-within",
         {"qry_rec_id"},
         "A record id query writes 2 bytes and no byte outside.",
         "needed by nativeAdd of {lists}: the id is on the stack",
         kLoss,
         query_within<Kind>,
         1});
}

} // namespace

void add_query_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
