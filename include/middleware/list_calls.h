// The middleware calls that all four list kinds have.
#pragma once

#include "middleware/types.h"

// The 17 common calls of one list kind, as rows CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS): CALL is a macro that
// declares, defines or wraps one call. METHOD is the name without PREFIX, except `remove` for delete, so that it can
// name a member function. PREFIX is x_svl, x_tsl, x_nwl or x_satl and RECORD the kind's record structure. Every call
// returns 0 or a negative status.
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
#define TAVRO_LIST_CALLS_OF(CALL, PREFIX, RECORD)                                                                      \
    CALL(tavro::MwStatus, PREFIX##_open, open,                                                                         \
         (std::uint16_t list_id, std::uint32_t tag, std::uint32_t notify, tavro::MwdbHandle * handle),                 \
         (list_id, tag, notify, handle))                                                                               \
    CALL(tavro::MwStatus, PREFIX##_create, create,                                                                     \
         (const char* name, std::uint16_t list_id, std::uint32_t mode, std::uint32_t growth, std::uint32_t tag,        \
          std::uint32_t notify, tavro::MwdbHandle* handle),                                                            \
         (name, list_id, mode, growth, tag, notify, handle))                                                           \
    CALL(tavro::MwStatus, PREFIX##_close, close, (tavro::MwdbHandle handle), (handle))                                 \
    CALL(tavro::MwStatus, PREFIX##_delete, remove, (tavro::MwdbHandle handle), (handle))                               \
    CALL(tavro::MwStatus, PREFIX##_clean, clean, (tavro::MwdbHandle handle), (handle))                                 \
    CALL(tavro::MwStatus, PREFIX##_copy_date, copy_date, (tavro::MwdbHandle from, tavro::MwdbHandle to), (from, to))   \
    CALL(tavro::MwStatus, PREFIX##_fs_sync, fs_sync,                                                                   \
         (tavro::MwdbHandle handle, std::uint32_t drive, const char* path, std::uint16_t list_id),                     \
         (handle, drive, path, list_id))                                                                               \
    CALL(tavro::MwStatus, PREFIX##_fs_store, fs_store,                                                                 \
         (tavro::MwdbHandle handle, const char* path, std::uint16_t list_id), (handle, path, list_id))                 \
    CALL(tavro::MwStatus, PREFIX##_lock, lock, (tavro::MwdbHandle handle), (handle))                                   \
    CALL(tavro::MwStatus, PREFIX##_unlock, unlock, (tavro::MwdbHandle handle), (handle))                               \
    CALL(tavro::MwStatus, PREFIX##_read_lock, read_lock, (tavro::MwdbHandle handle), (handle))                         \
    CALL(tavro::MwStatus, PREFIX##_read_unlock, read_unlock, (tavro::MwdbHandle handle), (handle))                     \
    CALL(tavro::MwStatus, PREFIX##_qry_rec_id, qry_rec_id,                                                             \
         (tavro::MwdbHandle handle, std::uint32_t query, std::uint16_t * record_id), (handle, query, record_id))       \
    CALL(tavro::MwStatus, PREFIX##_add_rec, add_rec, (tavro::MwdbHandle handle, RECORD * record), (handle, record))    \
    CALL(tavro::MwStatus, PREFIX##_update_rec, update_rec,                                                             \
         (tavro::MwdbHandle handle, RECORD * record, std::uint32_t flag), (handle, record, flag))                      \
    CALL(tavro::MwStatus, PREFIX##_del_rec, del_rec, (tavro::MwdbHandle handle, std::uint16_t record_id),              \
         (handle, record_id))                                                                                          \
    CALL(tavro::MwStatus, PREFIX##_get_rec, get_rec,                                                                   \
         (tavro::MwdbHandle handle, std::uint16_t record_id, RECORD * record, std::int32_t * version),                 \
         (handle, record_id, record, version))

#define TAVRO_DECLARE_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) RESULT NAME PARAMETERS;

// Declares the 17 calls of one list kind.
#define TAVRO_DECLARE_LIST_CALLS(PREFIX, RECORD) TAVRO_LIST_CALLS_OF(TAVRO_DECLARE_CALL, PREFIX, RECORD)
