// SQLite file systems (VFS) that open nothing for writing. SQLite's own opens the write-ahead log for writing, and
// creates it, even for a connection that only reads.
#pragma once

namespace tavro::host {

// Names for sqlite3_open_v2 with SQLITE_OPEN_READONLY. They are registered on first use.
//
// With the first one, the connection uses the write-ahead log and its index (-wal and -shm), which must exist, together
// with the processes that write. With the second one, it has an index of its own in memory, and a missing log is an
// empty one. That is correct as long as no process writes: a process that begins to creates the missing files.
const char* shared_read_only_files();
const char* unshared_read_only_files();

} // namespace tavro::host
