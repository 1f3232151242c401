// Statuses of the workstation's middleware beyond those of middleware/types.h. The library treats them all as failure;
// they show an engineer what went wrong.
#pragma once

#include "middleware/types.h"

inline constexpr MwStatus kHostNoSuchList = -101;         // no list with that id and kind
inline constexpr MwStatus kHostListExists = -102;         // the list to create exists
inline constexpr MwStatus kHostBadHandle = -103;          // closed, never given, or of another kind
inline constexpr MwStatus kHostNoSuchRecord = -104;       // no record with that id in the list
inline constexpr MwStatus kHostIndexOutOfRange = -105;    // fewer matching records than the index
inline constexpr MwStatus kHostStorageUnavailable = -106; // storage directory or database: see the log
inline constexpr MwStatus kHostLockTimeout = -107;        // another holder of the list's lock: see the log
inline constexpr MwStatus kHostNotLockHolder = -108;      // unlock by a thread that does not hold the lock
inline constexpr MwStatus kHostBadArgument = -109;        // null pointer, unknown query or drive, list id 0
inline constexpr MwStatus kHostNoRecordIdLeft = -110;     // add with id 65535, which qry_rec_id returns for a full list
inline constexpr MwStatus kHostCannotReadFile = -111;     // the file exists but cannot be read: see the log
inline constexpr MwStatus kHostCannotWriteFile = -112;    // the file cannot be written: see the log
inline constexpr MwStatus kHostStorageFull = -113;        // no space left on the file system: see the log
inline constexpr MwStatus kHostOutOfMemory = -114;
