// Checks of the file functions, with which the service list manager loads a list from the scan cache.
#include "conform/checks/content.h"
#include "conform/lists.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace tavro::conform {

namespace {

constexpr char kStored[] = "stored.list";
constexpr char kOther[] = "other.list";
constexpr char kReason[] = "needed by native_open of service lists, which loads scan lists from a cache file";

MwStatus load(Run& run, MwdbHandle handle, const std::string& path) {
    return Svl::fs_sync(handle, kMwRootDrive, path.c_str(), run.list());
}

// What the service list manager does with a scan cache, step by step.
void scan_cache(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    const std::string list = run.file(kStored);
    const std::string cache = run.file(kOther);
    const std::vector<_SVL_REC_T> scanned = {add<Svl>(run, handle, 1), add<Svl>(run, handle, 2)};
    run.done(Svl::fs_store(handle, cache.c_str(), run.list()));
    run.done(Svl::clean(handle));
    run.fails(load(run, handle, list));
    std::uint32_t words[3] = {};
    run.done(mw::fs_raw_qry_fpath(kMwRootDrive, cache.c_str(), &words[0], &words[1], &words[2]));
    mw::fs_raw_init(kMwRootDrive, cache.c_str());
    mw::fs_raw_copy(kMwRootDrive, cache.c_str(), kMwRootDrive, list.c_str());
    run.done(load(run, handle, cache));
    mw::x_fm_delete_file(kMwRootDrive, cache.c_str());
    expect_contents<Svl>(run, handle, scanned);
    run.done(Svl::clean(handle)); // the next start loads the copy
    run.done(load(run, handle, list));
    expect_contents<Svl>(run, handle, scanned);
}

// A file of the size of a small list, with all byte values.
std::string all_bytes(std::size_t size) {
    std::string bytes;
    while (bytes.size() < size) {
        bytes.push_back(static_cast<char>(bytes.size() * 7 + bytes.size() / 256));
    }
    return bytes;
}

void has_content(Run& run, const char* what, const std::string& path, const std::string& expected) {
    const std::string found = content_of(path);
    run.equal((std::string("bytes in ") + what).c_str(), expected.size(), found.size());
    run.equal_bytes(what, expected.data(), found.data(), expected.size());
}

void init_keeps_content(Run& run) {
    const MwdbHandle handle = create<Svl>(run);
    const std::vector<_SVL_REC_T> stored = {add<Svl>(run, handle, 1), add<Svl>(run, handle, 2)};
    run.done(Svl::fs_store(handle, run.file(kStored).c_str(), run.list()));
    run.done(Svl::clean(handle));
    mw::fs_raw_init(kMwRootDrive, run.file(kStored).c_str());
    run.done(load(run, handle, run.file(kStored)));
    expect_contents<Svl>(run, handle, stored);
}

void init_succeeds(Run& run) {
    write_file(run, run.file(kOther), "This file is not a list file.\n");
    run.done(mw::fs_raw_init(kMwRootDrive, run.file(kOther).c_str()));
}

MwStatus query(const std::string& path) {
    std::uint32_t words[3] = {};
    return mw::fs_raw_qry_fpath(kMwRootDrive, path.c_str(), &words[0], &words[1], &words[2]);
}

void query_finds(Run& run) {
    write_file(run, run.file(kOther), all_bytes(100));
    run.done(query(run.file(kOther)));
}

void query_misses(Run& run) {
    const MwStatus status = query(run.file(kOther));
    run.expect(status != kMwOk, "a status other than 0", "0");
}

void query_writes_words(Run& run) {
    constexpr std::uint32_t kUntouched = 0xA5C3F00D;
    std::uint32_t words[7];
    for (const bool found : {true, false}) {
        if (found) {
            write_file(run, run.file(kOther), all_bytes(100));
        }
        std::fill(std::begin(words), std::end(words), kUntouched);
        const std::string path = run.file(found ? kOther : kStored);
        mw::fs_raw_qry_fpath(kMwRootDrive, path.c_str(), &words[1], &words[3], &words[5]);
        for (const std::size_t index : {0, 2, 4, 6}) {
            run.equal("the bytes beside the three words", kUntouched, words[index]);
        }
    }
}

void copies(Run& run, std::size_t size, std::size_t old_size) {
    const std::string bytes = all_bytes(size);
    write_file(run, run.file(kStored), bytes);
    if (old_size > 0) {
        write_file(run, run.file(kOther), std::string(old_size, 'x'));
    }
    mw::fs_raw_copy(kMwRootDrive, run.file(kStored).c_str(), kMwRootDrive, run.file(kOther).c_str());
    has_content(run, "the copy", run.file(kOther), bytes);
    has_content(run, "the copied file", run.file(kStored), bytes);
}

void copy_is_equal(Run& run) { copies(run, 70000, 0); }
void copy_replaces(Run& run) { copies(run, 500, 600); }

void delete_removes(Run& run) {
    write_file(run, run.file(kOther), all_bytes(100));
    mw::x_fm_delete_file(kMwRootDrive, run.file(kOther).c_str());
    run.expect(!exists(run.file(kOther)), "no file after its deletion", "it is still there");
}

// A row of a check of the file functions.
void add_file_check(std::vector<Check>& checks, const char* function, const char* behavior, const char* expects,
                    Severity severity, void (*run)(Run&), std::vector<std::string> files) {
    Check check;
    check.name = std::string(function) + "." + behavior;
    check.functions = {function};
    check.expects = expects;
    check.reason = kReason;
    check.severity = severity;
    check.run = run;
    check.files = std::move(files);
    checks.push_back(std::move(check));
}

} // namespace

void add_raw_file_checks(std::vector<Check>& checks) {
    add_file_check(checks, "fs_raw_init", "keeps-content", "fs_raw_init keeps the records in a list file.",
                   Severity::kDataLoss, init_keeps_content, {kStored});
    checks.back().lists = 1;
    add_file_check(checks, "fs_raw_init", "returns-0", "fs_raw_init of a file that exists returns 0.",
                   Severity::kLogLine, init_succeeds, {kOther});
    add_file_check(checks, "fs_raw_qry_fpath", "file", "fs_raw_qry_fpath returns 0 for a file that exists.",
                   Severity::kWrongResult, query_finds, {kOther});
    add_file_check(checks, "fs_raw_qry_fpath", "missing-file",
                   "fs_raw_qry_fpath returns another status than 0 for a file that does not exist.",
                   Severity::kWrongResult, query_misses, {kOther});
    add_file_check(checks, "fs_raw_qry_fpath", "three-words",
                   "fs_raw_qry_fpath writes nothing but its three 32-bit words.", Severity::kDataLoss,
                   query_writes_words, {kStored, kOther});
    add_file_check(checks, "fs_raw_copy", "equal", "fs_raw_copy makes an equal file and keeps the copied one.",
                   Severity::kDataLoss, copy_is_equal, {kStored, kOther});
    add_file_check(checks, "fs_raw_copy", "replaces", "fs_raw_copy replaces a longer file.", Severity::kDataLoss,
                   copy_replaces, {kStored, kOther});
    add_file_check(checks, "x_fm_delete_file", "removes", "x_fm_delete_file removes the file.", Severity::kWrongResult,
                   delete_removes, {kOther});
    Check cache = {"fs_sync.scan-cache",
                   {"fs_sync", "fs_store"},
                   "A list is loaded from a cache file, keeps its records when the cache is deleted, and can be loaded "
                   "from a copy of the cache.",
                   kReason,
                   Severity::kDataLoss,
                   scan_cache,
                   1};
    cache.files = {kStored, kOther};
    add_of_kind<Svl>(checks, std::move(cache));
    for (const char* const function : {"fs_raw_init", "fs_raw_qry_fpath", "fs_raw_copy", "x_fm_delete_file"}) {
        checks.back().functions.emplace_back(function);
    }
}

} // namespace tavro::conform
