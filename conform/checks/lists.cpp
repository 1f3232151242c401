// Opening, creating, closing and deleting lists.

#include "conform/lists.h"

#include "conform/peer.h"

namespace tavro::conform {
namespace {

// Ends the check as failed if the list exists.
template <class Kind>
void expect_missing(Run& run, std::uint16_t list_id) {
    MwdbHandle handle = 0;
    const MwStatus status = Kind::open(list_id, 0, 0, &handle);
    run.expect(status != kMwOk || handle == 0, last_call() + " fails: the list does not exist",
               "status " + std::to_string(status) + ", handle " + std::to_string(handle));
}

template <class Kind>
void open_missing(Run& run) {
    expect_missing<Kind>(run, run.list());
}

template <class Kind>
void open_missing_handle(Run& run) {
    MwdbHandle handle = 0;
    if (Kind::open(run.list(), 0, 0, &handle) == kMwOk) {
        run.skip("opening a missing list does not fail");
    }
    run.equal("handle after a failed open", 0, handle);
}

template <class Kind>
void open_zero(Run& run) {
    MwdbHandle handle = 0;
    const MwStatus status = Kind::open(0, 0, 0, &handle);
    run.expect(status != kMwOk || handle == 0, last_call() + " fails: there is no list 0",
               "status " + std::to_string(status) + ", handle " + std::to_string(handle));
}

// Uses a list that no other check uses.
template <class Kind>
void create_handle(Run& run) {
    const std::uint16_t id = run.list(3);
    MwdbHandle handle = 0;
    char name[32];
    std::snprintf(name, sizeof name, Kind::kStorageName, id - 1);
    run.done(Kind::create(name, id, kMwCreateMode, kMwCreateGrowth, 0, 0, &handle));
    run.expect(handle != 0, last_call() + " gives a handle other than 0", "handle 0");
}

template <class Kind>
void create_empty(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    std::uint16_t number = 0;
    std::int32_t version = 0;
    const MwStatus status = Kind::count(handle, &number, &version);
    run.equal("records in a new list", 0, status == kMwOk ? number : 0);
}

// Uses a list that no other check opens, so that a middleware can fail this check alone.
template <class Kind>
void create_then_open(Run& run) {
    create<Kind>(run, 2);
    open<Kind>(run, run.list(2));
}

template <class Kind>
void create_existing(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto record = add<Kind>(run, handle, 1);
    MwdbHandle second = 0;
    char name[32];
    std::snprintf(name, sizeof name, Kind::kStorageName, run.list() - 1);
    Kind::create(name, run.list(), kMwCreateMode, kMwCreateGrowth, 0, 0, &second);
    expect_contents<Kind>(run, open<Kind>(run, run.list()), {record});
}

template <class Kind>
void create_highest_id(Run& run) {
    const MwdbHandle handle = create<Kind>(run, kHighestList);
    const auto record = add<Kind>(run, handle, 1);
    expect_contents<Kind>(run, open<Kind>(run, run.list(kHighestList)), {record});
}

template <class Kind>
void create_apart(Run& run) {
    const MwdbHandle first = create<Kind>(run, 0);
    const MwdbHandle second = create<Kind>(run, 1);
    const auto record = add<Kind>(run, first, 1, 1);
    const auto other = add<Kind>(run, second, 1, 2);
    expect_contents<Kind>(run, first, {record});
    expect_contents<Kind>(run, second, {other});
}

template <class Kind>
void create_in_another_process(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto record = add<Kind>(run, handle, 1);
    expect_contents<Kind>(run, handle, {record});
    run.peer().call([](Run& other, std::int64_t) -> std::int64_t {
        expect_contents<Kind>(other, open<Kind>(other, other.list()), {make_record<Kind>(1)});
        return 0;
    });
}

template <class Kind>
void close_keeps_records(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const auto record = add<Kind>(run, handle, 1);
    run.done(Kind::close(handle));
    expect_contents<Kind>(run, open<Kind>(run, run.list()), {record});
}

template <class Kind>
void delete_removes(Run& run) {
    run.done(Kind::remove(create<Kind>(run)));
    expect_missing<Kind>(run, run.list());
}

template <class Kind>
void delete_records(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 1);
    run.done(Kind::remove(handle));
    expect_contents<Kind>(run, create<Kind>(run), {});
}

template <class Kind>
void delete_others(Run& run) {
    const MwdbHandle kept = create<Kind>(run, 0);
    const auto record = add<Kind>(run, kept, 1);
    run.done(Kind::remove(create<Kind>(run, 1)));
    expect_contents<Kind>(run, kept, {record});
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    row({"open.missing",
         {"open"},
         "Opening a list that does not exist fails, or gives handle 0.",
         "needed by the open natives of {lists}: they create the list then",
         kWrong,
         open_missing<Kind>,
         1});
    row({"open.missing-handle",
         {"open"},
         "A failed open writes no handle.",
         "needed by the open natives of {lists}: if the list cannot be created either, they go on with handle 0",
         kWrong,
         open_missing_handle<Kind>,
         1});
    row({"open.list-0",
         {"open"},
         "Opening list 0 fails, or gives handle 0.",
         "needed by all natives of {lists} that get list id 0: they try to open it, and never close it",
         kWrong,
         open_zero<Kind>});
    row({"create.handle",
         {"create"},
         "Creating a list gives a handle other than 0.",
         "needed by the open natives of {lists}",
         kWrong,
         create_handle<Kind>,
         4});
    row({"create.empty",
         {"create", "count"},
         "A new list has no records.",
         "needed by the open natives of {lists}",
         kWrong,
         create_empty<Kind>,
         1});
    row({"create.open",
         {"create", "open"},
         "A list that was created can be opened.",
         "needed by all natives of {lists}: they open lists at their first use",
         kLoss,
         create_then_open<Kind>,
         3});
    row({"create.existing",
         {"create", "open"},
         "Creating a list that exists leaves its records alone.",
         "needed by the open natives of {lists}: they create a list after any failed open",
         kLoss,
         create_existing<Kind>,
         1});
    row({"create.list-65535",
         {"create", "open"},
         "A list can have the highest id, 65535.",
         "needed by the open natives of {lists}: Java may use ids from 1 to 65535",
         kWrong,
         create_highest_id<Kind>,
         0,
         0,
         false,
         "",
         true});
    row({"create.apart",
         {"create", "add_rec"},
         "Two lists keep their records apart.",
         "needed by all natives of {lists}: they keep one handle per list",
         kLoss,
         create_apart<Kind>,
         2});
    row({"create.other-process",
         {"create", "open"},
         "A list and its records can be read in another process.",
         "needed by all natives of {lists}: the middleware uses the lists in processes of its own",
         kLoss,
         create_in_another_process<Kind>,
         1,
         1});
    row({"close.keeps-records",
         {"close", "open"},
         "Closing a list keeps its records.",
         "needed by the close native of {lists}, and by the filters of services, which close lists",
         kLoss,
         close_keeps_records<Kind>,
         1});
    row({"delete.list",
         {"delete", "open"},
         "A list that was deleted cannot be opened.",
         "needed by the delete native of {lists}",
         kWrong,
         delete_removes<Kind>,
         1});
    row({"delete.records",
         {"delete", "create"},
         "A list that is created again after a delete has no records.",
         "needed by the delete native of {lists}",
         kWrong,
         delete_records<Kind>,
         1});
    row({"delete.others",
         {"delete"},
         "Deleting a list leaves other lists alone.",
         "needed by the delete native of {lists}",
         kLoss,
         delete_others<Kind>,
         2});
}

} // namespace

void add_list_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
