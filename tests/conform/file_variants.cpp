// Platforms with defects of list files and of the file functions.
#include "past.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace tavro::broken {

namespace {

constexpr MwStatus kFailure = -1;

// Size of a file; -1 if there is none.
long size_of(const char* path) {
    struct stat found {};
    return ::stat(path, &found) == 0 ? static_cast<long>(found.st_size) : -1;
}

enum class Content { kNothing, kText, kBytes };

Content content_of(const char* path) {
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr) {
        return Content::kNothing;
    }
    char bytes[512];
    const std::size_t size = std::fread(bytes, 1, sizeof bytes, file);
    std::fclose(file);
    if (size == 0) {
        return Content::kNothing;
    }
    return std::find(bytes, bytes + size, '\0') == bytes + size ? Content::kText : Content::kBytes;
}

// Paths of fs_raw_init, of all kinds.
std::set<std::string>& initialized_files() {
    static std::set<std::string> files;
    return files;
}

void note_initialized_files() {
    Basic::hooks.init = [](std::uint32_t drive, const char* path) {
        initialized_files().insert(path);
        return Basic::next.init(drive, path);
    };
}

// Calls `then` after a load, with its status; the result is the status.
template <class Kind, class Then>
void after_load(Then then) {
    Kind::hooks.fs_sync = [then](MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t list) {
        return then(handle, path, Kind::next.fs_sync(handle, drive, path, list));
    };
}

// Returns another status instead of -12 for files with such content.
template <class Kind>
void confuse_status(Content content) {
    after_load<Kind>([content](MwdbHandle, const char* path, MwStatus status) {
        return status == kMwNotAListFile && content_of(path) == content ? kFailure : status;
    });
}

template <class Kind>
void change_byte_of_loaded() {
    after_load<Kind>([](MwdbHandle handle, const char*, MwStatus status) {
        typename Kind::Record record;
        if (status == kMwOk && find<Kind>(handle, 300, record)) {
            reinterpret_cast<unsigned char*>(&record)[sizeof record - 1] ^= 1;
            Kind::next.update_rec(handle, &record, kMwUpdatePlain);
        }
        return status;
    });
}

template <class Kind>
void keep_records_that_are_not_in_file() {
    Kind::hooks.fs_sync = [](MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t list) {
        auto before = contents<Kind>(handle);
        const MwStatus status = Kind::next.fs_sync(handle, drive, path, list);
        for (auto& record : before) {
            typename Kind::Record found;
            if (status == kMwOk && !find<Kind>(handle, Kind::id(record), found)) {
                Kind::next.add_rec(handle, &record);
            }
        }
        return status;
    };
}

// Refuses to load a file into a list that was neither changed nor stored since it was created.
template <class Kind>
void refuse_new_lists() {
    after_load<Kind>([](MwdbHandle handle, const char*, MwStatus status) {
        return status == kMwOk && Past<Kind>::used.count(handle) == 0 ? kFailure : status;
    });
}

template <class Kind>
void move_first_record_after_store() {
    Kind::hooks.fs_store = [](MwdbHandle handle, const char* path, std::uint16_t list) {
        const MwStatus status = Kind::next.fs_store(handle, path, list);
        auto records = contents<Kind>(handle);
        if (!records.empty()) {
            Kind::next.del_rec(handle, Kind::id(records[0]));
            Kind::next.add_rec(handle, &records[0]);
        }
        return status;
    };
}

template <class Kind>
void add_variants(Variants& variants) {
    add<Kind>(variants, "fs_store.round-trip", change_byte_of_loaded<Kind>);
    add<Kind>(variants, "fs_store.empty-list", [] {
        Kind::hooks.fs_store = [](MwdbHandle handle, const char* path, std::uint16_t list) {
            return count<Kind>(handle) == 0 ? kFailure : Kind::next.fs_store(handle, path, list);
        };
    });
    add<Kind>(variants, "fs_store.keeps-list", move_first_record_after_store<Kind>);
    add<Kind>(variants, "fs_store.replaces-file", [] {
        note_initialized_files();
        Kind::hooks.fs_store = [](MwdbHandle handle, const char* path, std::uint16_t list) {
            const bool is_list = content_of(path) == Content::kBytes && initialized_files().count(path) == 0;
            return is_list ? kMwOk : Kind::next.fs_store(handle, path, list);
        };
    });
    add<Kind>(variants, "fs_store.damaged-file", [] {
        note_initialized_files();
        Kind::hooks.fs_store = [](MwdbHandle handle, const char* path, std::uint16_t list) {
            return initialized_files().count(path) != 0 ? kFailure : Kind::next.fs_store(handle, path, list);
        };
    });
    add<Kind>(variants, "fs_store.no-directory", [] {
        Kind::hooks.fs_store = [](MwdbHandle handle, const char* path, std::uint16_t list) {
            Kind::next.fs_store(handle, path, list);
            return kMwOk;
        };
    });
    add<Kind>(variants, "fs_sync.new-list", refuse_new_lists<Kind>);
    add<Kind>(variants, "fs_sync.replaces-records", keep_records_that_are_not_in_file<Kind>);
    add<Kind>(variants, "fs_sync.missing-file", [] {
        after_load<Kind>(
            [](MwdbHandle, const char*, MwStatus status) { return status == kMwNoFile ? kFailure : status; });
    });
    add<Kind>(variants, "fs_sync.foreign-file", [] { confuse_status<Kind>(Content::kText); });
    add<Kind>(variants, "fs_sync.empty-file", [] { confuse_status<Kind>(Content::kNothing); });
    add<Kind>(variants, "fs_sync.half-a-file", [] { confuse_status<Kind>(Content::kBytes); });
    add<Kind>(variants, "fs_sync.failure-keeps-records", [] {
        after_load<Kind>([](MwdbHandle handle, const char*, MwStatus status) {
            if (status != kMwOk) {
                Kind::next.clean(handle);
            }
            return status;
        });
    });
}

// Deletes the records of a service list with the file that they were loaded from.
void clean_list_of_deleted_file() {
    static std::map<std::string, MwdbHandle> loaded;
    after_load<Svl>([](MwdbHandle handle, const char* path, MwStatus status) {
        loaded[path] = handle;
        return status;
    });
    Basic::hooks.delete_file = [](std::uint32_t drive, const char* path) {
        if (loaded.count(path) != 0) {
            Svl::next.clean(loaded[path]);
        }
        return Basic::next.delete_file(drive, path);
    };
}

using Words = std::uint32_t*;

// Calls `change` with the path of a copy and its size before it was replaced.
template <class Change>
void after_copy(Change change) {
    Basic::hooks.copy = [change](std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to) {
        const long old_size = size_of(to);
        const MwStatus status = Basic::next.copy(from_drive, from, to_drive, to);
        change(to, old_size);
        return status;
    };
}

void set_size(const char* path, long size) {
    if (::truncate(path, size) != 0) {
        std::perror(path);
    }
}

} // namespace

void add_file_variants(Variants& variants) {
    add_variants<Svl>(variants);
    add_variants<Tsl>(variants);
    add_variants<Nwl>(variants);
    add_variants<Satl>(variants);

    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        variants.push_back({check, std::move(break_it)});
    };
    add("svl.fs_sync.scan-cache", clean_list_of_deleted_file);
    add("svl.fs_sync.no-list", [] {
        after_load<Svl>([](MwdbHandle handle, const char*, MwStatus status) { return handle == 0 ? kMwOk : status; });
    });
    add("fs_raw_init.keeps-content", [] {
        Basic::hooks.init = [](std::uint32_t drive, const char* path) {
            if (std::strstr(path, "stored.list") != nullptr) { // the scan cache has another name
                set_size(path, size_of(path) / 2);
            }
            return Basic::next.init(drive, path);
        };
    });
    add("fs_raw_init.returns-0", [] { Basic::hooks.init = [](std::uint32_t, const char*) { return kFailure; }; });
    add("fs_raw_qry_fpath.file", [] {
        Basic::hooks.qry_fpath = [](std::uint32_t drive, const char* path, Words word1, Words word2, Words word3) {
            return size_of(path) < 512 ? kFailure : Basic::next.qry_fpath(drive, path, word1, word2, word3);
        };
    });
    add("fs_raw_qry_fpath.missing-file", [] {
        Basic::hooks.qry_fpath = [](std::uint32_t drive, const char* path, Words word1, Words word2, Words word3) {
            Basic::next.qry_fpath(drive, path, word1, word2, word3);
            return kMwOk;
        };
    });
    add("fs_raw_qry_fpath.three-words", [] {
        Basic::hooks.qry_fpath = [](std::uint32_t drive, const char* path, Words word1, Words word2, Words word3) {
            const MwStatus status = Basic::next.qry_fpath(drive, path, word1, word2, word3);
            word1[1] = 0; // a 64-bit size; word2 of callers with an array
            return status;
        };
    });
    add("fs_raw_copy.equal",
        [] { after_copy([](const char* path, long) { set_size(path, std::min(size_of(path), 65536L)); }); });
    add("fs_raw_copy.replaces",
        [] { after_copy([](const char* path, long old_size) { set_size(path, std::max(size_of(path), old_size)); }); });
    add("x_fm_delete_file.removes",
        [] { Basic::hooks.delete_file = [](std::uint32_t, const char*) { return kMwOk; }; });
}

} // namespace tavro::broken
