// Hooks between a program and the platform: one for each function, which may do something else than the platform's.
#pragma once

#include "middleware/calls.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tavro::broken {

// Functions of one group, as members named METHOD. In `hooks`, an empty member means that calls go to the platform.
#define TAVRO_HOOK(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) std::function<RESULT PARAMETERS> METHOD;
struct SvlCalls {
    TAVRO_SVL_CALLS(TAVRO_HOOK)
};
struct TslCalls {
    TAVRO_TSL_CALLS(TAVRO_HOOK)
};
struct NwlCalls {
    TAVRO_NWL_CALLS(TAVRO_HOOK)
};
struct SatlCalls {
    TAVRO_SATL_CALLS(TAVRO_HOOK)
};
struct BuilderCalls {
    TAVRO_SVL_BUILDER_CALLS(TAVRO_HOOK)
};
struct BasicCalls {
    TAVRO_BASIC_CALLS(TAVRO_HOOK)
};
#undef TAVRO_HOOK

// A group: its hooks, and the platform's functions.
template <class Calls>
struct Group {
    inline static Calls hooks;
    inline static Calls next;
};

// The kinds of list. Variants that all kinds have are templates over these.
struct Svl : Group<SvlCalls> {
    using Record = _SVL_REC_T;
    static constexpr char kName[] = "svl";
    // The platform's calls for the whole list.
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return next.get_num_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return next.get_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, index, record, version);
    }
    static std::uint16_t& id(Record& record) { return record.ui2_svl_rec_id; }
    // Hooks of these calls. Those that select some records go to the platform.
    static void hook_count(std::function<MwStatus(MwdbHandle, std::uint16_t*, std::int32_t*)> hook) {
        hooks.get_num_rec_by_brdcst_type = [hook = std::move(hook)](MwdbHandle handle, std::uint32_t type,
                                                                    std::uint32_t mask, std::uint16_t* count,
                                                                    std::int32_t* version) {
            const bool is_whole = type == kMwEveryBroadcastType && mask == kMwEveryNetworkMask;
            return is_whole ? hook(handle, count, version)
                            : next.get_num_rec_by_brdcst_type(handle, type, mask, count, version);
        };
    }
    static void hook_get_at(std::function<MwStatus(MwdbHandle, std::uint16_t, Record*, std::int32_t*)> hook) {
        hooks.get_rec_by_brdcst_type = [hook = std::move(hook)](MwdbHandle handle, std::uint32_t type,
                                                                std::uint32_t mask, std::uint16_t index, Record* record,
                                                                std::int32_t* version) {
            const bool is_whole = type == kMwEveryBroadcastType && mask == kMwEveryNetworkMask;
            return is_whole ? hook(handle, index, record, version)
                            : next.get_rec_by_brdcst_type(handle, type, mask, index, record, version);
        };
    }
};
struct Tsl : Group<TslCalls> {
    using Record = _TSL_REC_T;
    static constexpr char kName[] = "tsl";
    // The platform's calls for the whole list.
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return next.get_num_recs(handle, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return next.get_rec_by_rec_idx(handle, index, record, version);
    }
    static std::uint16_t& id(Record& record) { return record.ui2_tsl_rec_id; }
    static void hook_count(std::function<MwStatus(MwdbHandle, std::uint16_t*, std::int32_t*)> hook) {
        hooks.get_num_recs = std::move(hook);
    }
    template <class Hook>
    static void hook_get_at(Hook hook) {
        hooks.get_rec_by_rec_idx = std::move(hook);
    }
};
struct Nwl : Group<NwlCalls> {
    using Record = _NWL_REC_T;
    static constexpr char kName[] = "nwl";
    // The platform's calls for the whole list.
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return next.get_num_rec(handle, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return next.get_rec_by_rec_idx(handle, index, record, version);
    }
    static std::uint16_t& id(Record& record) { return record.ui2_nwl_rec_id; }
    static void hook_count(std::function<MwStatus(MwdbHandle, std::uint16_t*, std::int32_t*)> hook) {
        hooks.get_num_rec = std::move(hook);
    }
    template <class Hook>
    static void hook_get_at(Hook hook) {
        hooks.get_rec_by_rec_idx = std::move(hook);
    }
};
struct Satl : Group<SatlCalls> {
    using Record = _SATL_REC_T;
    static constexpr char kName[] = "satl";
    // The platform's calls for the whole list.
    static MwStatus count(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
        return next.get_num_recs(handle, count, version);
    }
    static MwStatus get_at(MwdbHandle handle, std::uint16_t index, Record* record, std::int32_t* version) {
        return next.get_rec_by_rec_idx(handle, index, record, version);
    }
    static std::uint16_t& id(Record& record) { return record.ui2_satl_rec_id; }
    static void hook_count(std::function<MwStatus(MwdbHandle, std::uint16_t*, std::int32_t*)> hook) {
        hooks.get_num_recs = std::move(hook);
    }
    template <class Hook>
    static void hook_get_at(Hook hook) {
        hooks.get_rec_by_rec_idx = std::move(hook);
    }
};
using Builder = Group<BuilderCalls>;
using Basic = Group<BasicCalls>;

// The log, with the formatted text, and the properties.
struct SystemCalls {
    std::function<int(int priority, const char* tag, const char* text)> log;
    std::function<int(const char* key, char* value, const char* default_value)> property_get;
};
using System = Group<SystemCalls>;

// What a program finds with dlopen and dlsym: returns whether to hide a library or a function.
struct Loader {
    inline static std::function<bool(const char* library)> hides_library;
    inline static std::function<bool(const char* function)> hides_function;
};

// A defect, by the name of the check that must find it. `break_it` sets hooks.
struct Variant {
    std::string check;
    std::function<void()> break_it;
};
using Variants = std::vector<Variant>;

// Number of records of a list, according to the platform.
template <class Kind>
std::uint16_t count(MwdbHandle handle) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    Kind::count(handle, &number, &version);
    return number;
}

// The records of a list, according to the platform.
template <class Kind>
std::vector<typename Kind::Record> contents(MwdbHandle handle) {
    std::vector<typename Kind::Record> records(count<Kind>(handle));
    std::int32_t version = 0;
    for (std::uint16_t index = 0; index < records.size(); ++index) {
        Kind::get_at(handle, index, &records[index], &version);
    }
    return records;
}

// The record with an id, according to the platform. Returns false if there is none.
template <class Kind>
bool find(MwdbHandle handle, std::uint16_t id, typename Kind::Record& record) {
    std::int32_t version = 0;
    return Kind::next.get_rec(handle, id, &record, &version) == kMwOk;
}

// Writes the byte after a value, which stays as it is: a page that cannot be written ends the process.
template <class Value>
void touch_byte_after(Value* value) {
    volatile unsigned char* const byte = reinterpret_cast<unsigned char*>(value) + sizeof(Value);
    *byte = *byte;
}

// Adds a variant of one kind, under the name without the kind.
template <class Kind>
void add(Variants& variants, const char* check, std::function<void()> break_it) {
    variants.push_back({std::string(Kind::kName) + "." + check, std::move(break_it)});
}

// Adds the variants of one file.
void add_library_variants(Variants& variants);
void add_list_variants(Variants& variants);
void add_handle_variants(Variants& variants);
void add_record_variants(Variants& variants);
void add_query_variants(Variants& variants);
void add_filter_variants(Variants& variants);
void add_lock_variants(Variants& variants);
void add_file_variants(Variants& variants);
void add_helper_variants(Variants& variants);
// Adds platforms that no check may refuse.
void add_correct_variants(Variants& variants);

} // namespace tavro::broken
