// Platforms with defects of opening, creating, cleaning, copying and deleting lists.
#include "past.h"

#include <cstdio>
#include <cstdlib>

namespace tavro::broken {

namespace {

constexpr MwStatus kFailure = -1;
constexpr MwdbHandle kFalseHandle = 0x7FFF0001;
constexpr std::uint16_t kHighestList = 65535;

// True in the first process that asks this. Later processes find a file.
template <class Kind>
bool is_first_process() {
    static const bool first = [] {
        const std::string path = std::string(std::getenv("TAVRO_HOME")) + "/first-" + Kind::kName;
        if (std::FILE* const file = std::fopen(path.c_str(), "r")) {
            std::fclose(file);
            return false;
        }
        std::FILE* const file = std::fopen(path.c_str(), "w");
        std::fclose(file);
        return true;
    }();
    return first;
}

// Calls `then` after an open of a list, with its status; the result is the status.
template <class Kind, class Then>
void after_open(Then then) {
    Kind::hooks.open = [then](std::uint16_t list, std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        return then(list, Kind::next.open(list, tag, notify, handle), handle);
    };
}

// Calls `change` after a list was created.
template <class Kind, class Change>
void after_create(Change change) {
    Kind::hooks.create = [change](const char* name, std::uint16_t list, std::uint32_t mode, std::uint32_t growth,
                                  std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        const MwStatus status = Kind::next.create(name, list, mode, growth, tag, notify, handle);
        return status == kMwOk ? change(list, handle) : status;
    };
}

// Opens a list that does not exist, except for the program itself and when it looks for what checks left.
template <class Kind>
void open_missing() {
    after_open<Kind>([](std::uint16_t list, MwStatus status, MwdbHandle* handle) {
        if (status == kMwOk || list == 0 || is_first_process<Kind>() || !Past<Kind>::created.empty() ||
            Past<Kind>::has_deleted) {
            return status;
        }
        *handle = kFalseHandle;
        return kMwOk;
    });
}

// Empties a list that exists when it is created.
template <class Kind>
void create_empties() {
    Kind::hooks.create = [](const char* name, std::uint16_t list, std::uint32_t mode, std::uint32_t growth,
                            std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        MwdbHandle existing = 0;
        if (Kind::next.open(list, 0, 0, &existing) == kMwOk) {
            Kind::next.clean(existing);
        }
        return Kind::next.create(name, list, mode, growth, tag, notify, handle);
    };
}

// Adds record 1 also to the other list that has a record 1.
template <class Kind>
void share_record_1() {
    Kind::hooks.add_rec = [](MwdbHandle handle, auto* record) {
        const auto lists = Past<Kind>::lists;
        for (const auto& [other, list] : lists) {
            typename Kind::Record found;
            if (Kind::id(*record) == 1 && list != lists.at(handle) && find<Kind>(other, 1, found)) {
                Kind::next.update_rec(other, record, kMwUpdatePlain);
            }
        }
        return Kind::next.add_rec(handle, record);
    };
}

// Brings the records of a deleted list back when it is created again.
template <class Kind>
void bring_back() {
    static std::map<std::uint16_t, std::vector<typename Kind::Record>> deleted;
    Kind::hooks.remove = [](MwdbHandle handle) {
        deleted[Past<Kind>::lists[handle]] = contents<Kind>(handle);
        return Kind::next.remove(handle);
    };
    after_create<Kind>([](std::uint16_t list, const MwdbHandle* handle) {
        for (auto& record : deleted[list]) {
            Kind::next.add_rec(*handle, &record);
        }
        return kMwOk;
    });
}

// Creates a list again when it is opened after it was deleted.
template <class Kind>
void recreate_deleted() {
    after_open<Kind>([](std::uint16_t list, MwStatus status, MwdbHandle* handle) {
        const bool again = status != kMwOk && Past<Kind>::has_deleted && Past<Kind>::created.count(list) != 0;
        return again ? Kind::next.create("again", list, kMwCreateMode, kMwCreateGrowth, 0, 0, handle) : status;
    });
}

template <class Kind>
void delete_empties_others() {
    Kind::hooks.remove = [](MwdbHandle handle) {
        for (const auto& [other, list] : Past<Kind>::lists) {
            if (list != Past<Kind>::lists[handle]) {
                Kind::next.clean(other);
            }
        }
        return Kind::next.remove(handle);
    };
}

// Calls `change` after a copy, with both handles.
template <class Kind, class Change>
void after_copy(Change change) {
    Kind::hooks.copy_date = [change](MwdbHandle from, MwdbHandle to) {
        const MwStatus status = Kind::next.copy_date(from, to);
        change(from, to);
        return status;
    };
}

// Moves record 5 to the end of a copy with a record 9.
template <class Kind>
void copy_in_other_order() {
    after_copy<Kind>([](MwdbHandle from, MwdbHandle to) {
        typename Kind::Record record;
        if (from != to && find<Kind>(to, 9, record) && find<Kind>(to, 5, record)) {
            Kind::next.del_rec(to, 5);
            Kind::next.add_rec(to, &record);
        }
    });
}

// Counts one record less in the source of a copy, until a list is cleaned.
template <class Kind>
void copy_hides_source() {
    static MwdbHandle source = 0;
    after_copy<Kind>([](MwdbHandle from, MwdbHandle to) { source = from == to ? 0 : from; });
    Kind::hook_count([](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        const MwStatus status = Kind::count(handle, count, version);
        *count = static_cast<std::uint16_t>(*count - (handle == source && Past<Kind>::cleaned.empty() ? 1 : 0));
        return status;
    });
}

template <class Kind>
void clean_reaches_source() {
    static std::map<MwdbHandle, MwdbHandle> sources;
    after_copy<Kind>([](MwdbHandle from, MwdbHandle to) { sources[to] = from; });
    Kind::hooks.clean = [](MwdbHandle handle) {
        const auto source = sources.find(handle);
        if (source != sources.end()) {
            Kind::next.clean(source->second);
        }
        return Kind::next.clean(handle);
    };
}

template <class Kind>
void clean_keeps_record_7() {
    Kind::hooks.clean = [](MwdbHandle handle) {
        typename Kind::Record record;
        const bool found = find<Kind>(handle, 7, record);
        const MwStatus status = Kind::next.clean(handle);
        if (found) {
            Kind::next.add_rec(handle, &record);
        }
        return status;
    };
}

template <class Kind>
void add_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("open.missing", open_missing<Kind>);
    add("open.missing-handle", [] {
        after_open<Kind>([](std::uint16_t list, MwStatus status, MwdbHandle* handle) {
            *handle = status != kMwOk && list != 0 ? kFalseHandle : *handle;
            return status;
        });
    });
    add("open.list-0", [] {
        after_open<Kind>([](std::uint16_t list, MwStatus status, MwdbHandle* handle) {
            *handle = list == 0 ? kFalseHandle : *handle;
            return list == 0 ? kMwOk : status;
        });
    });
    add("create.handle", [] {
        after_create<Kind>([](std::uint16_t list, MwdbHandle* handle) {
            const bool is_alone = list % 10 == 4 && Past<Kind>::created.size() == 1; // as only in this check
            *handle = is_alone ? 0 : *handle;
            return kMwOk;
        });
    });
    add("create.empty", [] {
        Kind::hook_count([](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
            const MwStatus status = Kind::count(handle, count, version);
            *count = Past<Kind>::used.empty() && !Past<Kind>::created.empty() ? 1 : *count;
            return status;
        });
    });
    add("create.open", [] {
        after_open<Kind>([](std::uint16_t list, MwStatus status, const MwdbHandle*) {
            return list % 10 == 3 && Past<Kind>::created.count(list) != 0 ? kFailure : status;
        });
    });
    add("create.existing", create_empties<Kind>);
    add("create.list-65535", [] {
        after_create<Kind>(
            [](std::uint16_t list, const MwdbHandle*) { return list == kHighestList ? kFailure : kMwOk; });
    });
    add("create.apart", share_record_1<Kind>);
    add("create.other-process", [] {
        Kind::hook_count([](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
            const MwStatus status = Kind::count(handle, count, version);
            *count = Past<Kind>::created.empty() ? 0 : *count;
            return status;
        });
    });
    add("close.keeps-records", [] {
        Kind::hooks.close = [](MwdbHandle handle) {
            if (Past<Kind>::lists.count(handle) != 0 && Past<Kind>::handles_of(handle) == 1) {
                Kind::next.clean(handle);
            }
            return Kind::next.close(handle);
        };
    });
    add("delete.list", recreate_deleted<Kind>);
    add("delete.records", bring_back<Kind>);
    add("delete.others", delete_empties_others<Kind>);
    add("clean.records", clean_keeps_record_7<Kind>);
    add("clean.handle", [] {
        Kind::hooks.add_rec = [](MwdbHandle handle, auto* record) {
            return Past<Kind>::cleaned.count(handle) != 0 ? kFailure : Kind::next.add_rec(handle, record);
        };
    });
    add("copy.records", copy_in_other_order<Kind>);
    add("copy.source", copy_hides_source<Kind>);
    add("copy.apart", clean_reaches_source<Kind>);
    add("copy.empty", [] {
        Kind::hooks.copy_date = [](MwdbHandle from, MwdbHandle to) {
            return count<Kind>(from) == 0 ? kMwOk : Kind::next.copy_date(from, to);
        };
    });
    add("copy.itself", [] {
        Kind::hooks.copy_date = [](MwdbHandle from, MwdbHandle to) {
            return from == to ? Kind::next.clean(to) : Kind::next.copy_date(from, to);
        };
    });
}

} // namespace

void add_list_variants(Variants& variants) {
    add_variants<Svl>(variants);
    add_variants<Tsl>(variants);
    add_variants<Nwl>(variants);
    add_variants<Satl>(variants);
}

} // namespace tavro::broken
