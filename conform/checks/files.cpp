// Checks of storing lists to files and loading them.
#include "conform/checks/content.h"
#include "conform/lists.h"

#include <string>
#include <utility>
#include <vector>

namespace tavro::conform {

namespace {

constexpr char kStored[] = "stored.list";
constexpr char kOther[] = "other.list";

template <class Kind>
MwStatus load(Run& run, MwdbHandle handle, const std::string& path) {
    return Kind::fs_sync(handle, kMwRootDrive, path.c_str(), run.list());
}

template <class Kind>
void store(Run& run, MwdbHandle handle, const std::string& path) {
    run.done(Kind::fs_store(handle, path.c_str(), run.list()));
}

template <class Kind>
void round_trip(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    for (const std::uint16_t id : {40, 7, 300, 1}) {
        add<Kind>(run, handle, id);
    }
    run.done(Kind::del_rec(handle, 7));
    add<Kind>(run, handle, 2);
    const auto stored = contents<Kind>(run, handle);
    store<Kind>(run, handle, run.file(kStored));
    run.done(Kind::clean(handle));
    run.done(load<Kind>(run, handle, run.file(kStored)));
    expect_order<Kind>(run, handle, stored);
}

template <class Kind>
void empty_round_trip(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    store<Kind>(run, handle, run.file(kStored));
    run.done(load<Kind>(run, handle, run.file(kStored)));
    expect_contents<Kind>(run, handle, {});
}

template <class Kind>
void into_new_list(Run& run) {
    MwdbHandle handle = create<Kind>(run);
    const std::vector<typename Kind::Record> stored = {add<Kind>(run, handle, 1), add<Kind>(run, handle, 2)};
    store<Kind>(run, handle, run.file(kStored));
    run.done(Kind::remove(handle));
    handle = create<Kind>(run);
    run.done(load<Kind>(run, handle, run.file(kStored)));
    expect_contents<Kind>(run, handle, stored);
}

template <class Kind>
void replaces_records(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    const std::vector<typename Kind::Record> stored = {add<Kind>(run, handle, 1), add<Kind>(run, handle, 2)};
    store<Kind>(run, handle, run.file(kStored));
    auto changed = make_record<Kind>(1, 9);
    run.done(Kind::update_rec(handle, &changed, kMwUpdatePlain));
    run.done(Kind::del_rec(handle, 2));
    add<Kind>(run, handle, 3);
    run.done(load<Kind>(run, handle, run.file(kStored)));
    expect_contents<Kind>(run, handle, stored);
}

template <class Kind>
void replaces_file(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    for (const std::uint16_t id : {1, 2, 3}) {
        add<Kind>(run, handle, id);
    }
    store<Kind>(run, handle, run.file(kStored));
    run.done(Kind::del_rec(handle, 1));
    run.done(Kind::del_rec(handle, 3));
    const auto stored = contents<Kind>(run, handle);
    store<Kind>(run, handle, run.file(kStored));
    run.done(Kind::clean(handle));
    run.done(load<Kind>(run, handle, run.file(kStored)));
    expect_order<Kind>(run, handle, stored);
}

template <class Kind>
void missing_file(Run& run) {
    run.returns(kMwNoFile, load<Kind>(run, create<Kind>(run), run.file(kStored)));
}

constexpr char kForeign[] = "This file is not a list file.\n";

template <class Kind>
void foreign_file(Run& run) {
    write_file(run, run.file(kOther), kForeign);
    run.returns(kMwNotAListFile, load<Kind>(run, create<Kind>(run), run.file(kOther)));
}

template <class Kind>
void empty_file(Run& run) {
    write_file(run, run.file(kOther), "");
    run.returns(kMwNotAListFile, load<Kind>(run, create<Kind>(run), run.file(kOther)));
}

// Writes the first half of a stored list's file.
template <class Kind>
void write_half(Run& run, MwdbHandle handle, const std::string& path) {
    for (const std::uint16_t id : {1, 2, 3, 4}) {
        add<Kind>(run, handle, id);
    }
    store<Kind>(run, handle, run.file(kStored));
    const std::string whole = content_of(run.file(kStored));
    write_file(run, path, whole.substr(0, whole.size() / 2));
}

template <class Kind>
void half_a_file(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    write_half<Kind>(run, handle, run.file(kOther));
    run.returns(kMwNotAListFile, load<Kind>(run, handle, run.file(kOther)));
}

template <class Kind>
void failed_load_keeps_records(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    write_half<Kind>(run, handle, run.file(kOther));
    add<Kind>(run, handle, 5);
    const auto kept = contents<Kind>(run, handle);
    run.fails(load<Kind>(run, handle, run.file("missing.list")));
    expect_order<Kind>(run, handle, kept);
    run.fails(load<Kind>(run, handle, run.file(kOther)));
    expect_order<Kind>(run, handle, kept);
    for (const char* const content : {kForeign, ""}) {
        write_file(run, run.file(kOther), content);
        run.fails(load<Kind>(run, handle, run.file(kOther)));
        expect_order<Kind>(run, handle, kept);
    }
}

// Stores over a damaged file like the library, which has called fs_raw_init for it after the load.
template <class Kind>
void store_after_init(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    write_half<Kind>(run, handle, run.file(kOther));
    run.fails(load<Kind>(run, handle, run.file(kOther)));
    add<Kind>(run, handle, 5);
    const auto stored = contents<Kind>(run, handle);
    mw::fs_raw_init(kMwRootDrive, run.file(kOther).c_str());
    store<Kind>(run, handle, run.file(kOther));
    run.done(Kind::clean(handle));
    run.done(load<Kind>(run, handle, run.file(kOther)));
    expect_order<Kind>(run, handle, stored);
}

// What the service list manager does with the scan cache if the list can neither be opened nor created.
void load_without_list(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    add<Svl>(run, handle, 1);
    store<Svl>(run, handle, run.file(kStored));
    run.fails(load<Svl>(run, 0, run.file(kStored)));
}

template <class Kind>
void store_nowhere(Run& run) {
    const std::string path = run.file(kStored) + "/" + kOther; // the directory does not exist
    run.fails(Kind::fs_store(create<Kind>(run), path.c_str(), run.list()));
}

template <class Kind>
void store_keeps_list(Run& run) {
    const MwdbHandle handle = create<Kind>(run);
    add<Kind>(run, handle, 2);
    add<Kind>(run, handle, 1);
    const auto kept = contents<Kind>(run, handle);
    store<Kind>(run, handle, run.file(kStored));
    expect_order<Kind>(run, handle, kept);
}

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    constexpr char kOpens[] = "needed by the native that opens {lists} with a path";
    constexpr char kInits[] = "needed by the native that opens {lists} with a path, which then calls fs_raw_init";
    constexpr char kStores[] = "needed by the native that stores {lists}";
    constexpr Severity kLoss = Severity::kDataLoss;
    constexpr Severity kWrong = Severity::kWrongResult;
    const auto add_row = [&checks](const char* name, std::vector<std::string> functions, const char* expects,
                                   const char* reason, Severity severity, void (*run)(Run&),
                                   std::vector<std::string> files) {
        add_of_kind<Kind>(checks, {name, std::move(functions), expects, reason, severity, run, 1});
        checks.back().files = std::move(files);
    };

    add_row("fs_store.round-trip", {"fs_store", "fs_sync", "count", "get_at"},
            "A list that was stored and loaded again has the same records, byte for byte and in the same order.",
            kOpens, kLoss, round_trip<Kind>, {kStored});
    add_row("fs_store.empty-list", {"fs_store", "fs_sync", "count"}, "An empty list can be stored and loaded.", kStores,
            kWrong, empty_round_trip<Kind>, {kStored});
    add_row("fs_store.keeps-list", {"fs_store", "count", "get_at"}, "Storing a list does not change it.", kStores,
            kLoss, store_keeps_list<Kind>, {kStored});
    add_row("fs_store.replaces-file", {"fs_store", "fs_sync", "count", "get_at"},
            "Storing a list to a file that exists replaces the file.", kStores, kLoss, replaces_file<Kind>, {kStored});
    add_row("fs_store.damaged-file", {"fs_store", "fs_sync", "count", "get_at"},
            "After fs_raw_init of a damaged file, a list can be stored there and loaded again.", kStores, kLoss,
            store_after_init<Kind>, {kStored, kOther});
    checks.back().functions.emplace_back("fs_raw_init");
    add_row("fs_store.no-directory", {"fs_store"}, "Storing a list in a directory that does not exist fails.", kStores,
            kLoss, store_nowhere<Kind>, {kStored});
    add_row("fs_sync.new-list", {"fs_sync", "create", "count", "get_at"},
            "A file can be loaded into a list that has just been created.", kOpens, kLoss, into_new_list<Kind>,
            {kStored});
    add_row("fs_sync.replaces-records", {"fs_sync", "count", "get_at"},
            "Loading a file replaces all records of the list.", kOpens, kWrong, replaces_records<Kind>, {kStored});
    if (Kind::kIsCompanion) {
        add_row("fs_sync.missing-file", {"fs_sync"}, "Loading a file that does not exist returns -8.", kOpens,
                Severity::kLogLine, missing_file<Kind>, {kStored});
    } else {
        add_row("fs_sync.missing-file", {"fs_sync"}, "Loading a file that does not exist returns -8.",
                "needed by the native that opens {lists} with a path, which then loads the scan cache", kWrong,
                missing_file<Kind>, {kStored});
    }
    add_row("fs_sync.foreign-file", {"fs_sync"}, "Loading a text file returns -12.", kInits, kWrong, foreign_file<Kind>,
            {kOther});
    add_row("fs_sync.empty-file", {"fs_sync"}, "Loading an empty file returns -12.", kInits, kWrong, empty_file<Kind>,
            {kOther});
    add_row("fs_sync.half-a-file", {"fs_sync", "fs_store"}, "Loading the first half of a list file returns -12.",
            kInits, kWrong, half_a_file<Kind>, {kStored, kOther});
    add_row("fs_sync.failure-keeps-records", {"fs_sync", "count", "get_at"},
            "A load that fails keeps the records of the list.", kOpens, kLoss, failed_load_keeps_records<Kind>,
            {kStored, kOther, "missing.list"});
}
} // namespace

void add_file_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_of_kind<Svl>(checks, {"fs_sync.no-list",
                              {"fs_sync"},
                              "Loading a file into handle 0 fails.",
                              "needed by the native that opens {lists} with a path: if the list can neither be opened "
                              "nor created, it loads the scan cache into handle 0, and a status 0 deletes the cache",
                              Severity::kDataLoss,
                              load_without_list,
                              1});
    checks.back().files = {kStored};
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
    add_raw_file_checks(checks);
}

} // namespace tavro::conform
