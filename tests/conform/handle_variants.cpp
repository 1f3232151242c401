// Platforms with defects of handles.
#include "past.h"

#include <cstdlib>
#include <optional>

namespace tavro::broken {

namespace {

constexpr MwStatus kFailure = -1;
constexpr int kMostOpens = 255;

// Counts through handles for which `decide` returns a status.
template <class Kind>
void count_through(std::function<std::optional<MwStatus>(MwdbHandle)> decide) {
    Kind::hook_count([decide = std::move(decide)](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        const std::optional<MwStatus> decided = decide(handle);
        if (decided) {
            *count = 0;
        }
        return decided.value_or(Kind::count(handle, count, version));
    });
}

// Gives the second of two lists, which only one check uses, the handle of the first.
template <class Kind>
void share_handle() {
    Kind::hooks.create = [](const char* name, std::uint16_t list, std::uint32_t mode, std::uint32_t growth,
                            std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        static MwdbHandle first = 0;
        const MwStatus status = Kind::next.create(name, list, mode, growth, tag, notify, handle);
        if (list % 10 == 4 && first != 0) {
            *handle = first;
        }
        first = *handle;
        return status;
    };
}

// Shows no records through a handle from open, if the list was empty then.
template <class Kind>
void freeze_second_handle() {
    static std::set<MwdbHandle> frozen;
    Kind::hooks.open = [](std::uint16_t list, std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        const MwStatus status = Kind::next.open(list, tag, notify, handle);
        if (status == kMwOk && Past<Kind>::created.count(list) != 0 && count<Kind>(*handle) == 0) {
            frozen.insert(*handle);
        }
        return status;
    };
    Kind::hook_count([](MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        const MwStatus status = Kind::count(handle, count, version);
        *count = frozen.count(handle) != 0 ? 0 : *count;
        return status;
    });
}

// After the first close of a handle, other handles are refused, unless the closed one was locked for reading.
template <class Kind>
void close_all_handles() {
    static int closes = 0;
    static bool has_read_lock = false;
    Kind::hooks.read_lock = [](MwdbHandle handle) {
        has_read_lock = true;
        return Kind::next.read_lock(handle);
    };
    Kind::hooks.close = [](MwdbHandle handle) {
        closes += Past<Kind>::handles_of(handle) > 1 ? 1 : 0;
        return Kind::next.close(handle);
    };
    count_through<Kind>(
        [](MwdbHandle) { return closes == 1 && !has_read_lock ? std::optional<MwStatus>(kFailure) : std::nullopt; });
}

// Refuses an add on another thread than the one that created the list; `by_first` says which of them is the first.
template <class Kind>
void add_on_own_thread(bool by_first) {
    Kind::hooks.add_rec = [by_first](MwdbHandle handle, auto* record) {
        const pid_t creator = Past<Kind>::threads[handle];
        const bool refused = creator != ::gettid() && (creator == ::getpid()) != by_first;
        return refused ? kFailure : Kind::next.add_rec(handle, record);
    };
}

template <class Kind>
void add_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        broken::add<Kind>(variants, check, std::move(break_it));
    };
    add("handle.distinct", share_handle<Kind>);
    add("handle.second", freeze_second_handle<Kind>);
    add("handle.first-stays", close_all_handles<Kind>);
    add("handle.other-thread", [] { add_on_own_thread<Kind>(false); });
    add("handle.ended-thread", [] { add_on_own_thread<Kind>(true); });
    add("handle.closed", [] {
        static std::set<MwdbHandle> closed;
        Kind::hooks.close = [](MwdbHandle handle) {
            closed.insert(handle);
            return Kind::next.close(handle);
        };
        count_through<Kind>([](MwdbHandle handle) {
            return closed.count(handle) != 0 ? std::optional<MwStatus>(kMwOk) : std::nullopt;
        });
    });
    add("handle.closed-twice", [] {
        Kind::hooks.close = [](MwdbHandle handle) {
            Kind::next.close(handle);
            return kMwOk;
        };
    });
    add("handle.deleted", [] {
        static std::set<MwdbHandle> deleted;
        Kind::hooks.remove = [](MwdbHandle handle) {
            deleted.insert(handle);
            return Kind::next.remove(handle);
        };
        count_through<Kind>([](MwdbHandle handle) {
            return deleted.count(handle) != 0 ? std::optional<MwStatus>(kMwOk) : std::nullopt;
        });
    });
    add("handle.many", [] {
        Kind::hooks.open = [](std::uint16_t list, std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
            static int opens = 0;
            return ++opens > kMostOpens ? kFailure : Kind::next.open(list, tag, notify, handle);
        };
    });
}

// Refuses records of a kind while the process also uses another kind.
template <class Kind>
void one_kind_only() {
    Kind::hooks.add_rec = [](MwdbHandle handle, auto* record) {
        const std::size_t kinds = (Past<Svl>::created.empty() ? 0U : 1U) + (Past<Tsl>::created.empty() ? 0U : 1U) +
                                  (Past<Nwl>::created.empty() ? 0U : 1U) + (Past<Satl>::created.empty() ? 0U : 1U);
        return kinds > 1 ? kFailure : Kind::next.add_rec(handle, record);
    };
}

} // namespace

void add_handle_variants(Variants& variants) {
    add_variants<Svl>(variants);
    add_variants<Tsl>(variants);
    add_variants<Nwl>(variants);
    add_variants<Satl>(variants);
    add<Svl>(variants, "handle.zero", [] {
        Svl::hooks.read_lock = [](MwdbHandle handle) {
            if (handle == 0) {
                std::abort();
            }
            return Svl::next.read_lock(handle);
        };
    });
    variants.push_back({"lists.four-threads", [] {
                            one_kind_only<Svl>();
                            one_kind_only<Tsl>();
                            one_kind_only<Nwl>();
                            one_kind_only<Satl>();
                        }});
}

} // namespace tavro::broken
