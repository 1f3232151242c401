// Statuses of the workstation's middleware beyond those of middleware/types.h. The library treats them all as failure;
// they show an engineer what went wrong.
#pragma once

#include "middleware/types.h"

inline constexpr tavro::MwStatus kHostNoSuchList = -101;         // no list with that id and kind
inline constexpr tavro::MwStatus kHostListExists = -102;         // the list to create exists
inline constexpr tavro::MwStatus kHostBadHandle = -103;          // closed, never given, or of another kind
inline constexpr tavro::MwStatus kHostNoSuchRecord = -104;       // no record with that id in the list
inline constexpr tavro::MwStatus kHostIndexOutOfRange = -105;    // fewer matching records than the index
inline constexpr tavro::MwStatus kHostStorageUnavailable = -106; // storage directory or database: see the log
inline constexpr tavro::MwStatus kHostLockTimeout = -107;        // another holder of the list's lock: see the log
inline constexpr tavro::MwStatus kHostNotLockHolder = -108;      // unlock by a thread that does not hold the lock
inline constexpr tavro::MwStatus kHostBadArgument = -109;        // null pointer, unknown query or drive, list id 0
inline constexpr tavro::MwStatus kHostNoRecordIdLeft =
    -110; // add with id 65535, which qry_rec_id returns for a full list
inline constexpr tavro::MwStatus kHostCannotReadFile = -111;  // the file exists but cannot be read: see the log
inline constexpr tavro::MwStatus kHostCannotWriteFile = -112; // the file cannot be written: see the log
inline constexpr tavro::MwStatus kHostStorageFull = -113;     // no space left on the file system: see the log
inline constexpr tavro::MwStatus kHostOutOfMemory = -114;
inline constexpr tavro::MwStatus kHostReadOnly = -115; // a change by a process that only reads
