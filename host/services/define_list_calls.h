// Defines the 17 calls that every list kind has; each forwards to a class.
#pragma once

#include "middleware/list_calls.h"

// Defines the calls that TAVRO_DECLARE_LIST_CALLS declares. CLASS must have a static function for each, with the same
// parameters and the name without the prefix (`remove` for delete).
#define TAVRO_DEFINE_LIST_CALLS(PREFIX, RECORD, CLASS)                                                                 \
    tavro::MwStatus PREFIX##_open(std::uint16_t list_id, std::uint32_t tag, std::uint32_t notify,                      \
                                  tavro::MwdbHandle* handle) {                                                         \
        return CLASS::open(list_id, tag, notify, handle);                                                              \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_create(const char* name, std::uint16_t list_id, std::uint32_t mode, std::uint32_t growth, \
                                    std::uint32_t tag, std::uint32_t notify, tavro::MwdbHandle* handle) {              \
        return CLASS::create(name, list_id, mode, growth, tag, notify, handle);                                        \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_close(tavro::MwdbHandle handle) { return CLASS::close(handle); }                          \
    tavro::MwStatus PREFIX##_delete(tavro::MwdbHandle handle) { return CLASS::remove(handle); }                        \
    tavro::MwStatus PREFIX##_clean(tavro::MwdbHandle handle) { return CLASS::clean(handle); }                          \
    tavro::MwStatus PREFIX##_copy_date(tavro::MwdbHandle from, tavro::MwdbHandle to) {                                 \
        return CLASS::copy_date(from, to);                                                                             \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_fs_sync(tavro::MwdbHandle handle, std::uint32_t drive, const char* path,                  \
                                     std::uint16_t list_id) {                                                          \
        return CLASS::fs_sync(handle, drive, path, list_id);                                                           \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_fs_store(tavro::MwdbHandle handle, const char* path, std::uint16_t list_id) {             \
        return CLASS::fs_store(handle, path, list_id);                                                                 \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_lock(tavro::MwdbHandle handle) { return CLASS::lock(handle); }                            \
    tavro::MwStatus PREFIX##_unlock(tavro::MwdbHandle handle) { return CLASS::unlock(handle); }                        \
    tavro::MwStatus PREFIX##_read_lock(tavro::MwdbHandle handle) { return CLASS::read_lock(handle); }                  \
    tavro::MwStatus PREFIX##_read_unlock(tavro::MwdbHandle handle) { return CLASS::read_unlock(handle); }              \
    tavro::MwStatus PREFIX##_qry_rec_id(tavro::MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id) {     \
        return CLASS::qry_rec_id(handle, query, record_id);                                                            \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_add_rec(tavro::MwdbHandle handle, RECORD* record) {                                       \
        return CLASS::add_rec(handle, record);                                                                         \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_update_rec(tavro::MwdbHandle handle, RECORD* record, std::uint32_t flag) {                \
        return CLASS::update_rec(handle, record, flag);                                                                \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_del_rec(tavro::MwdbHandle handle, std::uint16_t record_id) {                              \
        return CLASS::del_rec(handle, record_id);                                                                      \
    }                                                                                                                  \
    tavro::MwStatus PREFIX##_get_rec(tavro::MwdbHandle handle, std::uint16_t record_id, RECORD* record,                \
                                     std::int32_t* version) {                                                          \
        return CLASS::get_rec(handle, record_id, record, version);                                                     \
    }
