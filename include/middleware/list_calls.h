// The middleware calls that all four list kinds have.
#pragma once

#include "middleware/types.h"

// Declares the 17 common calls of one list kind. PREFIX is x_svl, x_tsl, x_nwl or x_satl and
// RECORD the kind's record structure. Every call returns 0 or a negative status.
//
//   open         opens list `list_id`; fails when there is none. `*handle` receives the handle.
//   create       makes and opens list `list_id` under the storage name `name`.
//   close        releases the handle; the list and its records stay.
//   delete       removes the list with its records and releases the handle.
//   clean        removes all records.
//   copy_date    replaces the records of `to` with the records of `from`.
//   fs_sync      loads the list from the file at `path`; kMwNoFile when there is none, kMwNotAListFile when it is not a
//                list file.
//   fs_store     writes the list to the file at `path`.
//   lock/unlock, read_lock/read_unlock
//                the list's lock: one writer or many readers.
//   qry_rec_id   queries a record id: kMwQuery...
//   add_rec      adds a record under the id that it carries; kMwRecordExists when it is taken.
//   update_rec   replaces the record that carries the same id.
//   del_rec      removes a record.
//   get_rec      reads a record; `*version` receives the list's version.
//
// Paths and names are NUL-terminated. They belong to the caller, as do records and out values. The library passes
// constants for the parameters that are not described here; their names are this project's.
#define TAVRO_DECLARE_LIST_CALLS(PREFIX, RECORD)                                                                       \
    tavro::MwStatus PREFIX##_open(std::uint16_t list_id, std::uint32_t tag, std::uint32_t notify,                      \
                                  tavro::MwdbHandle* handle);                                                          \
    tavro::MwStatus PREFIX##_create(const char* name, std::uint16_t list_id, std::uint32_t mode, std::uint32_t growth, \
                                    std::uint32_t tag, std::uint32_t notify, tavro::MwdbHandle* handle);               \
    tavro::MwStatus PREFIX##_close(tavro::MwdbHandle handle);                                                          \
    tavro::MwStatus PREFIX##_delete(tavro::MwdbHandle handle);                                                         \
    tavro::MwStatus PREFIX##_clean(tavro::MwdbHandle handle);                                                          \
    tavro::MwStatus PREFIX##_copy_date(tavro::MwdbHandle from, tavro::MwdbHandle to);                                  \
    tavro::MwStatus PREFIX##_fs_sync(tavro::MwdbHandle handle, std::uint32_t drive, const char* path,                  \
                                     std::uint16_t list_id);                                                           \
    tavro::MwStatus PREFIX##_fs_store(tavro::MwdbHandle handle, const char* path, std::uint16_t list_id);              \
    tavro::MwStatus PREFIX##_lock(tavro::MwdbHandle handle);                                                           \
    tavro::MwStatus PREFIX##_unlock(tavro::MwdbHandle handle);                                                         \
    tavro::MwStatus PREFIX##_read_lock(tavro::MwdbHandle handle);                                                      \
    tavro::MwStatus PREFIX##_read_unlock(tavro::MwdbHandle handle);                                                    \
    tavro::MwStatus PREFIX##_qry_rec_id(tavro::MwdbHandle handle, std::uint32_t query, std::uint16_t* record_id);      \
    tavro::MwStatus PREFIX##_add_rec(tavro::MwdbHandle handle, RECORD* record);                                        \
    tavro::MwStatus PREFIX##_update_rec(tavro::MwdbHandle handle, RECORD* record, std::uint32_t flag);                 \
    tavro::MwStatus PREFIX##_del_rec(tavro::MwdbHandle handle, std::uint16_t record_id);                               \
    tavro::MwStatus PREFIX##_get_rec(tavro::MwdbHandle handle, std::uint16_t record_id, RECORD* record,                \
                                     std::int32_t* version)
