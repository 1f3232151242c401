// All 86 functions of the TV middleware as rows, for programs that wrap, forward or check them.
//
// A row is CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS), as in list_calls.h. The log and the properties are the
// platform's other two functions; they have no rows, because __android_log_print takes any number of arguments.
#pragma once

#include "middleware/channel_id.h"
#include "middleware/files.h"
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"

// The calls of one kind: the common ones, and those that only this kind has.
#define TAVRO_SVL_CALLS(CALL)                                                                                          \
    TAVRO_LIST_CALLS_OF(CALL, x_svl, _SVL_REC_T)                                                                       \
    CALL(tavro::MwStatus, x_svl_get_rec_by_brdcst_type, get_rec_by_brdcst_type,                                        \
         (tavro::MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask, std::uint16_t index,     \
          _SVL_REC_T * record, std::int32_t * version),                                                                \
         (handle, broadcast_type, network_mask, index, record, version))                                               \
    CALL(tavro::MwStatus, x_svl_get_rec_by_ts, get_rec_by_ts,                                                          \
         (tavro::MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id, std::uint32_t network_mask,        \
          std::uint16_t index, _SVL_REC_T * record, std::int32_t * version),                                           \
         (handle, tsl_id, tsl_rec_id, network_mask, index, record, version))                                           \
    CALL(tavro::MwStatus, x_svl_get_num_rec_by_brdcst_type, get_num_rec_by_brdcst_type,                                \
         (tavro::MwdbHandle handle, std::uint32_t broadcast_type, std::uint32_t network_mask, std::uint16_t * count,   \
          std::int32_t * version),                                                                                     \
         (handle, broadcast_type, network_mask, count, version))                                                       \
    CALL(tavro::MwStatus, x_svl_get_num_rec_by_ts, get_num_rec_by_ts,                                                  \
         (tavro::MwdbHandle handle, std::uint16_t tsl_id, std::uint16_t tsl_rec_id, std::uint32_t network_mask,        \
          std::uint16_t * count, std::int32_t * version),                                                              \
         (handle, tsl_id, tsl_rec_id, network_mask, count, version))

#define TAVRO_TSL_CALLS(CALL)                                                                                          \
    TAVRO_LIST_CALLS_OF(CALL, x_tsl, _TSL_REC_T)                                                                       \
    CALL(tavro::MwStatus, x_tsl_get_rec_by_rec_idx, get_rec_by_rec_idx,                                                \
         (tavro::MwdbHandle handle, std::uint16_t index, _TSL_REC_T * record, std::int32_t * version),                 \
         (handle, index, record, version))                                                                             \
    CALL(tavro::MwStatus, x_tsl_get_num_recs, get_num_recs,                                                            \
         (tavro::MwdbHandle handle, std::uint16_t * count, std::int32_t * version), (handle, count, version))          \
    CALL(tavro::MwStatus, x_tsl_get_rec_by_sat, get_rec_by_sat,                                                        \
         (tavro::MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id, std::uint16_t satl_rec_id,           \
          std::uint16_t index, _TSL_REC_T * record, std::int32_t * version),                                           \
         (handle, network, satl_id, satl_rec_id, index, record, version))                                              \
    CALL(tavro::MwStatus, x_tsl_get_num_rec_by_sat, get_num_rec_by_sat,                                                \
         (tavro::MwdbHandle handle, std::uint16_t network, std::uint16_t satl_id, std::uint16_t satl_rec_id,           \
          std::uint16_t * count, std::int32_t * version),                                                              \
         (handle, network, satl_id, satl_rec_id, count, version))

#define TAVRO_NWL_CALLS(CALL)                                                                                          \
    TAVRO_LIST_CALLS_OF(CALL, x_nwl, _NWL_REC_T)                                                                       \
    CALL(tavro::MwStatus, x_nwl_get_rec_by_rec_idx, get_rec_by_rec_idx,                                                \
         (tavro::MwdbHandle handle, std::uint16_t index, _NWL_REC_T * record, std::int32_t * version),                 \
         (handle, index, record, version))                                                                             \
    CALL(tavro::MwStatus, x_nwl_get_num_rec, get_num_rec,                                                              \
         (tavro::MwdbHandle handle, std::uint16_t * count, std::int32_t * version), (handle, count, version))

#define TAVRO_SATL_CALLS(CALL)                                                                                         \
    TAVRO_LIST_CALLS_OF(CALL, x_satl, _SATL_REC_T)                                                                     \
    CALL(tavro::MwStatus, x_satl_get_rec_by_rec_idx, get_rec_by_rec_idx,                                               \
         (tavro::MwdbHandle handle, std::int32_t index, _SATL_REC_T * record, std::int32_t * version),                 \
         (handle, index, record, version))                                                                             \
    CALL(tavro::MwStatus, x_satl_get_num_recs, get_num_recs,                                                           \
         (tavro::MwdbHandle handle, std::uint16_t * count, std::int32_t * version), (handle, count, version))

// Library libvelotra_tv_services.
#define TAVRO_SERVICES_CALLS(CALL)                                                                                     \
    TAVRO_SVL_CALLS(CALL) TAVRO_TSL_CALLS(CALL) TAVRO_NWL_CALLS(CALL) TAVRO_SATL_CALLS(CALL)

// Library libvelotra_tv_svl_builder.
#define TAVRO_SVL_BUILDER_CALLS(CALL)                                                                                  \
    CALL(std::uint32_t, x_sb_gen_channel_id, gen_channel_id,                                                           \
         (std::int32_t major, std::int32_t minor, std::int32_t index), (major, minor, index))                          \
    CALL(std::int32_t, x_sb_get_channel_index, get_channel_index, (std::uint32_t channel_id), (channel_id))

// Library libvelotra_tv_basic.
#define TAVRO_BASIC_CALLS(CALL)                                                                                        \
    CALL(tavro::MwStatus, fs_raw_init, init, (std::uint32_t drive, const char* path), (drive, path))                   \
    CALL(tavro::MwStatus, fs_raw_qry_fpath, qry_fpath,                                                                 \
         (std::uint32_t drive, const char* path, std::uint32_t* word1, std::uint32_t* word2, std::uint32_t* word3),    \
         (drive, path, word1, word2, word3))                                                                           \
    CALL(tavro::MwStatus, fs_raw_copy, copy,                                                                           \
         (std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to),                         \
         (from_drive, from, to_drive, to))                                                                             \
    CALL(tavro::MwStatus, x_fm_delete_file, delete_file, (std::uint32_t drive, const char* path), (drive, path))

#define TAVRO_MIDDLEWARE_CALLS(CALL) TAVRO_SERVICES_CALLS(CALL) TAVRO_SVL_BUILDER_CALLS(CALL) TAVRO_BASIC_CALLS(CALL)
