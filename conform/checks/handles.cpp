// Handles of open lists.

#include "conform/lists.h"

#include <thread>

namespace tavro::conform {
namespace {

template <class Kind>
void distinct(Run& run) {
    const MwdbHandle first = create<Kind>(run, 2);
    const MwdbHandle second = create<Kind>(run, 3);
    run.expect(first != second, "two open lists have different handles", "both have handle " + std::to_string(first));
}

template <class Kind>
void second_handle(Run& run) {
    const MwdbHandle first = create<Kind>(run);
    const MwdbHandle second = open<Kind>(run, run.list());
    const auto record = add<Kind>(run, first, 1);
    expect_contents<Kind>(run, second, {record});
}

template <class Kind>
void close_one_of_two(Run& run) {
    const MwdbHandle first = create<Kind>(run);
    const auto record = add<Kind>(run, first, 1);
    run.done(Kind::close(open<Kind>(run, run.list())));
    expect_contents<Kind>(run, first, {record});
}

template <class Kind>
void other_thread(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    std::thread([&] { add<Kind>(run, handle, 1); }).join();
    expect_contents<Kind>(run, handle, {make_record<Kind>(1)});
}

template <class Kind>
void ended_thread(Run& run) {
    MwdbHandle handle = 0;
    std::thread([&] { handle = create<Kind>(run); }).join();
    const auto record = add<Kind>(run, handle, 1);
    expect_contents<Kind>(run, handle, {record});
}

// Whether the handle can be used: a middleware may count, read or refuse in its own way.
template <class Kind>
void expect_invalid(Run& run, MwdbHandle handle) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    run.fails(Kind::count(handle, &number, &version));
}

template <class Kind>
void closed_handle(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 1);
    run.done(Kind::close(handle));
    expect_invalid<Kind>(run, handle);
}

template <class Kind>
void close_twice(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(Kind::close(handle));
    run.fails(Kind::close(handle));
}

template <class Kind>
void deleted_handle(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    run.done(Kind::remove(handle));
    expect_invalid<Kind>(run, handle);
}

template <class Kind>
void open_again(Run& run) {
    const MwdbHandle kept = create<Kind>(run);
    const auto record = add<Kind>(run, kept, 1);
    for (int i = 0; i < 300; ++i) {
        run.done(Kind::close(open<Kind>(run, run.list())));
    }
    expect_contents<Kind>(run, kept, {record});
}

template <class Kind>
void zero(Run& run) {
    // The statuses are ignored; the calls only have to return.
    Kind::read_lock(0);
    Kind::read_unlock(0);
    Kind::close(0);
    create<Kind>(run);
}

template <class Kind>
void use_list(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    std::vector<typename Kind::Record> records;
    for (std::uint16_t id = 1; id <= 20; ++id) {
        records.push_back(add<Kind>(run, handle, id));
    }
    expect_contents<Kind>(run, handle, records);
}

void four_kinds_at_once(Run& run) {
    std::thread streams([&] { use_list<Tsl>(run); });
    std::thread networks([&] { use_list<Nwl>(run); });
    std::thread satellites([&] { use_list<Satl>(run); });
    use_list<Svl>(run);
    streams.join();
    networks.join();
    satellites.join();
}

constexpr auto kLoss = Severity::kDataLoss;
constexpr auto kWrong = Severity::kWrongResult;

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    const auto row = [&](Check check) { add_of_kind<Kind>(checks, std::move(check)); };
    const char* const second_reason = Kind::kIsCompanion
                                          ? "needed by natives of {lists} on two threads: both may open a list at its "
                                            "first use, and one handle is kept"
                                          : "needed by the natives that read all services, on a handle of their own";
    row({"handle.distinct",
         {"create"},
         "Two open lists have different handles.",
         "needed by all natives of {lists}: they keep one handle per list",
         kLoss,
         distinct<Kind>,
         4});
    row({"handle.second",
         {"open", "add_rec", "get_at"},
         "A list that is open can be opened again, and both handles lead to the same records.",
         second_reason,
         kWrong,
         second_handle<Kind>,
         1});
    row({"handle.first-stays",
         {"open", "close"},
         "Closing one handle of a list leaves its other handle valid.",
         second_reason,
         kWrong,
         close_one_of_two<Kind>,
         1});
    row({"handle.other-thread",
         {"add_rec"},
         "A handle is valid on other threads.",
         "needed by all natives of {lists}: Java calls them on any thread",
         kWrong,
         other_thread<Kind>,
         1});
    row({"handle.ended-thread",
         {"create"},
         "A handle stays valid when the thread that got it has ended.",
         "needed by all natives of {lists}: Java calls them on any thread",
         kWrong,
         ended_thread<Kind>,
         1});
    row({"handle.closed",
         {"close", "count"},
         "A handle that was closed is refused.",
         "needed by natives of {lists} on several threads: a list may be closed while another thread uses it",
         kWrong,
         closed_handle<Kind>,
         1});
    row({"handle.closed-twice",
         {"close"},
         "Closing a handle a second time fails.",
         "needed by the close native of {lists}: its status is what Java gets",
         kWrong,
         close_twice<Kind>,
         1});
    row({"handle.deleted",
         {"delete", "count"},
         "The handle of a deleted list is refused.",
         "needed by natives of {lists} on several threads: a list may be deleted while another thread uses it",
         kWrong,
         deleted_handle<Kind>,
         1});
    row({"handle.many",
         {"open", "close"},
         "A list can be opened and closed any number of times.",
         Kind::kIsCompanion ? "needed by the open and close natives of {lists}"
                            : "needed by the natives that read all services, on a handle of their own",
         kWrong,
         open_again<Kind>,
         1});
}

} // namespace

void add_handle_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_of_kind<Svl>(checks, {"handle.zero",
                              {"read_lock", "read_unlock", "close"},
                              "Handle 0 can be locked for reading, unlocked and closed; the statuses do not matter.",
                              "needed by the natives that read all services: they do so when the list cannot be opened",
                              Severity::kDataLoss,
                              zero<Svl>,
                              1});
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
    checks.push_back({"lists.four-threads",
                      {"x_svl_add_rec", "x_tsl_add_rec", "x_nwl_add_rec", "x_satl_add_rec"},
                      "Lists of different kinds can be used at the same time, each on its own thread.",
                      "needed by the list classes in Java: each kind has a lock of its own",
                      Severity::kDataLoss,
                      four_kinds_at_once,
                      1});
}

} // namespace tavro::conform
