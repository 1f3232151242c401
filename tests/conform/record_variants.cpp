// Platforms with defects of adding, reading, updating and removing records.
#include "past.h"

#include <algorithm>
#include <cstring>

namespace tavro::broken {

namespace {

constexpr MwStatus kFailure = -1;
constexpr std::uint16_t kHighestId = kMwNoRecordId - 1;

// Uses the byte after the record, without writing it.
template <class Record>
void read_byte_after(const Record* record) {
    const volatile unsigned char* const byte = reinterpret_cast<const unsigned char*>(record) + sizeof(Record);
    static_cast<void>(*byte);
}

// Calls `then` after a read by id, with its status; the result is the status.
template <class Kind, class Then>
void after_get(Then then) {
    Kind::hooks.get_rec = [then](MwdbHandle handle, std::uint16_t id, auto* record, std::int32_t* version) {
        return then(handle, id, record, version, Kind::next.get_rec(handle, id, record, version));
    };
}

// Calls `then` after an add, with its status; the result is the status.
template <class Kind, class Then>
void after_add(Then then) {
    Kind::hooks.add_rec = [then](MwdbHandle handle, auto* record) {
        return then(handle, record, Kind::next.add_rec(handle, record));
    };
}

template <class Record>
void flip_last_byte(Record& record) {
    reinterpret_cast<unsigned char*>(&record)[sizeof record - 1] ^= 1;
}

// Ends names with a NUL: changes the last byte of a record in which all are 0xFF.
template <class Kind>
void end_names() {
    Kind::hooks.add_rec = [](MwdbHandle handle, auto* record) {
        auto changed = *record;
        auto* const last = reinterpret_cast<unsigned char*>(&changed) + sizeof changed - 16;
        if (std::all_of(last, last + 16, [](unsigned char byte) { return byte == 0xFF; })) {
            last[15] = 0;
        }
        return Kind::next.add_rec(handle, &changed);
    };
}

// Keeps a pointer to the record that was added last, and reads from there if its memory was zeroed.
template <class Kind>
void keep_pointer() {
    using Record = typename Kind::Record;
    static const Record* last = nullptr;
    after_add<Kind>([](MwdbHandle, const Record* record, MwStatus status) {
        last = record;
        return status;
    });
    after_get<Kind>([](MwdbHandle, std::uint16_t, Record* record, std::int32_t*, MwStatus status) {
        const auto* const bytes = reinterpret_cast<const volatile unsigned char*>(last);
        if (last != nullptr && std::all_of(bytes, bytes + sizeof(Record), [](unsigned char b) { return b == 0; })) {
            std::memset(record, 0, sizeof(Record));
        }
        return status;
    });
}

template <class Kind>
void add_add_variants(Variants& variants) {
    using Record = typename Kind::Record;
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("add.bytes", [] {
        after_get<Kind>([](MwdbHandle, std::uint16_t id, Record* record, std::int32_t*, MwStatus status) {
            if (id == 4) {
                flip_last_byte(*record);
            }
            return status;
        });
    });
    add("add.names", end_names<Kind>);
    add("add.argument", [] {
        after_add<Kind>([](MwdbHandle, Record* record, MwStatus status) {
            flip_last_byte(*record);
            return status;
        });
    });
    add("add.reads-within", [] {
        after_add<Kind>([](MwdbHandle, const Record* record, MwStatus status) {
            read_byte_after(record);
            return status;
        });
    });
    add("add.copies", keep_pointer<Kind>);
    add("add.taken-id", [] {
        after_add<Kind>([](MwdbHandle, const Record*, MwStatus status) {
            const bool must_be_distinct = !std::is_same_v<Kind, Svl>;
            return status != kMwRecordExists ? status : must_be_distinct ? kFailure : kMwOk;
        });
    });
    add("add.taken-keeps", [] {
        after_add<Kind>([](MwdbHandle handle, Record* record, MwStatus status) {
            if (status == kMwRecordExists) {
                Kind::next.update_rec(handle, record, kMwUpdateReplace);
            }
            return status;
        });
    });
    add("add.limits", [] {
        after_get<Kind>([](MwdbHandle, std::uint16_t id, Record*, std::int32_t*, MwStatus status) {
            return id == kHighestId ? kFailure : status;
        });
    });
    if (!std::is_same_v<Kind, Svl>) {
        add("add.id-65535", [] {
            after_add<Kind>([](MwdbHandle, Record* record, MwStatus status) {
                return Kind::id(*record) == kMwNoRecordId ? kMwOk : status;
            });
        });
    }
}

template <class Kind>
void add_get_variants(Variants& variants) {
    using Record = typename Kind::Record;
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("get.missing", [] {
        after_get<Kind>([](MwdbHandle, std::uint16_t id, Record*, std::int32_t*, MwStatus status) {
            return Past<Kind>::added.count(id) == 0 ? kMwOk : status;
        });
    });
    add("get.missing-record", [] {
        after_get<Kind>([](MwdbHandle, std::uint16_t, Record* record, std::int32_t*, MwStatus status) {
            if (status != kMwOk) {
                std::memset(record, 0, sizeof(Record));
            }
            return status;
        });
    });
    add("get.writes-within", [] {
        after_get<Kind>([](MwdbHandle, std::uint16_t, Record* record, std::int32_t*, MwStatus status) {
            if (status == kMwOk) {
                touch_byte_after(record);
            }
            return status;
        });
    });
}

// Updates a record by `change` instead of the platform's update. Lists with a record 3 are updated as they should be:
// they belong to checks of other things.
template <class Kind, class Change>
void update_by(Change change) {
    Kind::hooks.update_rec = [change](MwdbHandle handle, auto* record, std::uint32_t flag) {
        typename Kind::Record found;
        return find<Kind>(handle, 3, found) ? Kind::next.update_rec(handle, record, flag)
                                            : change(handle, record, flag);
    };
}

template <class Kind>
void add_change_variants(Variants& variants) {
    using Record = typename Kind::Record;
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("update.record", [] {
        update_by<Kind>([](MwdbHandle handle, Record* record, std::uint32_t flag) {
            Record changed = *record;
            if (flag == kMwUpdatePlain && Past<Kind>::added.count(9) != 0) {
                flip_last_byte(changed);
            }
            return Kind::next.update_rec(handle, &changed, flag);
        });
    });
    if (!std::is_same_v<Kind, Svl>) {
        add("update.flag-1", [] {
            update_by<Kind>([](MwdbHandle handle, Record* record, std::uint32_t flag) {
                return flag == kMwUpdateReplace ? kMwOk : Kind::next.update_rec(handle, record, flag);
            });
        });
    }
    add("update.order", [] {
        update_by<Kind>([](MwdbHandle handle, Record* record, std::uint32_t flag) {
            if (Kind::next.del_rec(handle, Kind::id(*record)) != kMwOk) {
                return Kind::next.update_rec(handle, record, flag);
            }
            return Kind::next.add_rec(handle, record);
        });
    });
    add("update.others", [] {
        update_by<Kind>([](MwdbHandle handle, Record* record, std::uint32_t flag) {
            Record other;
            if (find<Kind>(handle, 9, other)) {
                flip_last_byte(other);
                Kind::next.update_rec(handle, &other, flag);
            }
            return Kind::next.update_rec(handle, record, flag);
        });
    });
    add("update.missing", [] {
        update_by<Kind>([](MwdbHandle handle, Record* record, std::uint32_t flag) {
            Kind::next.update_rec(handle, record, flag);
            return kMwOk;
        });
    });
    add("update.reads-within", [] {
        update_by<Kind>([](MwdbHandle handle, Record* record, std::uint32_t flag) {
            read_byte_after(record);
            return Kind::next.update_rec(handle, record, flag);
        });
    });
    add("remove.record", [] {
        after_get<Kind>([](MwdbHandle, std::uint16_t id, Record*, std::int32_t*, MwStatus status) {
            return Past<Kind>::removed.count(id) != 0 ? kMwOk : status;
        });
    });
    add("remove.others", [] {
        Kind::hooks.del_rec = [](MwdbHandle handle, std::uint16_t id) {
            if (id == 2) {
                Kind::next.del_rec(handle, 9);
            }
            return Kind::next.del_rec(handle, id);
        };
    });
    add("remove.missing", [] {
        Kind::hooks.del_rec = [](MwdbHandle handle, std::uint16_t id) {
            Kind::next.del_rec(handle, id);
            return kMwOk;
        };
    });
    add("remove.id", [] {
        Kind::hooks.add_rec = [](MwdbHandle handle, auto* record) {
            return Past<Kind>::removed.count(Kind::id(*record)) != 0 ? kFailure : Kind::next.add_rec(handle, record);
        };
    });
}

template <class Kind>
void add_variants(Variants& variants) {
    add_add_variants<Kind>(variants);
    add_get_variants<Kind>(variants);
    add_change_variants<Kind>(variants);
}

} // namespace

void add_record_variants(Variants& variants) {
    add_variants<Svl>(variants);
    add_variants<Tsl>(variants);
    add_variants<Nwl>(variants);
    add_variants<Satl>(variants);
}

} // namespace tavro::broken
