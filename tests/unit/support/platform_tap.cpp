#include "platform_tap.h"

#include "in_platform.h"
#include "log/format.h"
#include "middleware/channel_id.h"
#include "middleware/files.h"
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"
#include "services/define_list_calls.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace tavro::test {

namespace {

thread_local PlatformTap* current = nullptr;

// The platform's own function.
template <class Function>
Function* real(const char* name) {
    void* const found = dlsym(RTLD_NEXT, name);
    if (found == nullptr) {
        std::fprintf(stderr, "no platform function %s\n", name);
        std::abort();
    }
    return reinterpret_cast<Function*>(found);
}

MwdbHandle given(MwdbHandle handle) { return handle; }
MwdbHandle given(const MwdbHandle* handle) { return *handle; }

// The last path among the arguments of a call.
template <class Argument>
void note_path(TappedCall&, Argument) {}
void note_path(TappedCall& call, const char* path) {
    call.path = path;
    call.path_text = path;
}

// The name of a call, put together in the platform.
struct Name {
    Name(const char* whole) : Name("", whole) {}
    Name(const char* first, const char* second) : start(first), end(second) {}

    const char* start;
    const char* end;
};

// Makes a call; `handle` is the handle passed, or where the call puts one.
template <class Handle, class... Arguments>
MwStatus tapped(const Name& call_name, Handle handle, Arguments... arguments) {
    const InPlatform here;
    const std::string name = std::string(call_name.start) + call_name.end;
    MwStatus status = 0;
    const bool failed = current != nullptr && current->takes(status);
    if (!failed) {
        status = real<MwStatus(Arguments...)>(name.c_str())(arguments...);
    }
    if (current != nullptr) {
        TappedCall& call = current->calls.emplace_back(TappedCall{name, status, given(handle)});
        (note_path(call, arguments), ...);
    }
    return status;
}

// A call whose first argument is a handle.
template <class... Arguments>
MwStatus on_handle(const Name& name, MwdbHandle handle, Arguments... arguments) {
    return tapped(name, handle, handle, arguments...);
}

// The calls that each kind of list has.
template <class Kind>
struct ListCalls {
    template <class... Arguments>
    static MwStatus call(const char* operation, MwdbHandle handle, Arguments... arguments) {
        return on_handle({Kind::kPrefix, operation}, handle, arguments...);
    }

    static MwStatus open(std::uint16_t list_id, std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        return tapped(Name(Kind::kPrefix, "_open"), handle, list_id, tag, notify, handle);
    }
    static MwStatus create(const char* name, std::uint16_t list_id, std::uint32_t mode, std::uint32_t growth,
                           std::uint32_t tag, std::uint32_t notify, MwdbHandle* handle) {
        return tapped(Name(Kind::kPrefix, "_create"), handle, name, list_id, mode, growth, tag, notify, handle);
    }
    static MwStatus close(MwdbHandle handle) { return call("_close", handle); }
    static MwStatus remove(MwdbHandle handle) { return call("_delete", handle); }
    static MwStatus clean(MwdbHandle handle) { return call("_clean", handle); }
    static MwStatus copy_date(MwdbHandle from, MwdbHandle to) { return call("_copy_date", from, to); }
    static MwStatus fs_sync(MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t list_id) {
        return call("_fs_sync", handle, drive, path, list_id);
    }
    static MwStatus fs_store(MwdbHandle handle, const char* path, std::uint16_t list_id) {
        return call("_fs_store", handle, path, list_id);
    }
    static MwStatus lock(MwdbHandle handle) { return call("_lock", handle); }
    static MwStatus unlock(MwdbHandle handle) { return call("_unlock", handle); }
    static MwStatus read_lock(MwdbHandle handle) { return call("_read_lock", handle); }
    static MwStatus read_unlock(MwdbHandle handle) { return call("_read_unlock", handle); }
    static MwStatus qry_rec_id(MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {
        return call("_qry_rec_id", handle, query, record_id);
    }
    template <class Record>
    static MwStatus add_rec(MwdbHandle handle, Record* record) {
        return call("_add_rec", handle, record);
    }
    template <class Record>
    static MwStatus update_rec(MwdbHandle handle, Record* record, std::uint32_t flag) {
        return call("_update_rec", handle, record, flag);
    }
    static MwStatus del_rec(MwdbHandle handle, std::uint16_t record_id) { return call("_del_rec", handle, record_id); }
    template <class Record>
    static MwStatus get_rec(MwdbHandle handle, std::uint16_t record_id, Record* record, std::int32_t* version) {
        return call("_get_rec", handle, record_id, record, version);
    }
};

struct Svl : ListCalls<Svl> {
    static constexpr char kPrefix[] = "x_svl";
};
struct Tsl : ListCalls<Tsl> {
    static constexpr char kPrefix[] = "x_tsl";
};
struct Nwl : ListCalls<Nwl> {
    static constexpr char kPrefix[] = "x_nwl";
};
struct Satl : ListCalls<Satl> {
    static constexpr char kPrefix[] = "x_satl";
};

} // namespace

PlatformTap::PlatformTap() { current = this; }
PlatformTap::~PlatformTap() { current = nullptr; }

void PlatformTap::fail(int first, int last, MwStatus status) {
    first_ = first;
    last_ = last;
    status_ = status;
}

bool PlatformTap::takes(MwStatus& status) {
    const int number = static_cast<int>(calls.size()) + 1;
    if (number < first_ || number > last_) {
        return false;
    }
    status = status_;
    return true;
}

} // namespace tavro::test

using namespace tavro;
using namespace tavro::test;

extern "C" {

TAVRO_DEFINE_LIST_CALLS(x_svl, _SVL_REC_T, Svl)
TAVRO_DEFINE_LIST_CALLS(x_tsl, _TSL_REC_T, Tsl)
TAVRO_DEFINE_LIST_CALLS(x_nwl, _NWL_REC_T, Nwl)
TAVRO_DEFINE_LIST_CALLS(x_satl, _SATL_REC_T, Satl)

MwStatus x_svl_get_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask,
                                      std::uint16_t index, _SVL_REC_T* record, std::int32_t* version) {
    return on_handle(__func__, handle, broadcast_type, network_mask, index, record, version);
}
MwStatus x_svl_get_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                             std::uint32_t network_mask, std::uint16_t index, _SVL_REC_T* record,
                             std::int32_t* version) {
    return on_handle(__func__, handle, tsl_id, tsl_rec_id, network_mask, index, record, version);
}
MwStatus x_svl_get_num_rec_by_brdcst_type(MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask,
                                          std::uint16_t* count, std::int32_t* version) {
    return on_handle(__func__, handle, broadcast_type, network_mask, count, version);
}
MwStatus x_svl_get_num_rec_by_ts(MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id,
                                 std::uint32_t network_mask, std::uint16_t* count, std::int32_t* version) {
    return on_handle(__func__, handle, tsl_id, tsl_rec_id, network_mask, count, version);
}

MwStatus x_tsl_get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _TSL_REC_T* record, std::int32_t* version) {
    return on_handle(__func__, handle, index, record, version);
}
MwStatus x_tsl_get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return on_handle(__func__, handle, count, version);
}
MwStatus x_tsl_get_rec_by_sat(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                              std::uint16_t satl_rec_id, std::uint16_t index, _TSL_REC_T* record,
                              std::int32_t* version) {
    return on_handle(__func__, handle, network, satl_id, satl_rec_id, index, record, version);
}
MwStatus x_tsl_get_num_rec_by_sat(MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id,
                                  std::uint16_t satl_rec_id, std::uint16_t* count, std::int32_t* version) {
    return on_handle(__func__, handle, network, satl_id, satl_rec_id, count, version);
}

MwStatus x_nwl_get_rec_by_rec_idx(MwdbHandle handle, std::uint16_t index, _NWL_REC_T* record, std::int32_t* version) {
    return on_handle(__func__, handle, index, record, version);
}
MwStatus x_nwl_get_num_rec(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return on_handle(__func__, handle, count, version);
}

MwStatus x_satl_get_rec_by_rec_idx(MwdbHandle handle, std::int32_t index, _SATL_REC_T* record, std::int32_t* version) {
    return on_handle(__func__, handle, index, record, version);
}
MwStatus x_satl_get_num_recs(MwdbHandle handle, std::uint16_t* count, std::int32_t* version) {
    return on_handle(__func__, handle, count, version);
}

MwStatus fs_raw_init(std::uint32_t drive, const char* path) { return tapped(Name(__func__), 0U, drive, path); }
MwStatus fs_raw_qry_fpath(std::uint32_t drive, const char* path, std::uint32_t* word1, std::uint32_t* word2,
                          std::uint32_t* word3) {
    return tapped(Name(__func__), 0U, drive, path, word1, word2, word3);
}
MwStatus fs_raw_copy(std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to) {
    return tapped(Name(__func__), 0U, from_drive, from, to_drive, to);
}
MwStatus x_fm_delete_file(std::uint32_t drive, const char* path) { return tapped(Name(__func__), 0U, drive, path); }

std::uint32_t x_sb_gen_channel_id(std::int32_t major, std::int32_t minor, std::int32_t index) {
    const InPlatform here;
    return real<decltype(x_sb_gen_channel_id)>(__func__)(major, minor, index);
}
std::int32_t x_sb_get_channel_index(std::uint32_t channel_id) {
    const InPlatform here;
    return real<decltype(x_sb_get_channel_index)>(__func__)(channel_id);
}

int property_get(const char* key, char* value, const char* default_value) {
    const InPlatform here;
    return real<decltype(property_get)>(__func__)(key, value, default_value);
}

int __android_log_print(int priority, const char* tag, const char* format, ...) {
    const InPlatform here;
    va_list arguments;
    va_start(arguments, format);
    const std::string text = format_text(format, arguments);
    va_end(arguments);
    return real<decltype(__android_log_print)>(__func__)(priority, tag, "%s", text.c_str());
}
}
