// Functions of the workstation's middleware for tests and tools; a TV does not have them.
#pragma once

#include <cstdint>

extern "C" {
// Releases every handle and lock of this process and closes the storage, like process exit. The next call reopens the
// storage, in the directory that TAVRO_HOME names at that time.
void tavro_host_reset(void);

// Lets this process only read the storage, from the next call on; with 0, TAVRO_READ_ONLY decides again. Handles stay
// valid. A process that only reads sees the lists as they were at its first read; call this again to see their present
// state.
void tavro_host_set_read_only(int read_only);

// Call this before the process opens another SQLite connection to a storage directory, only for reading. If the process
// may write to this directory, its own connection must be the first one: all connections share one mapping of the
// -shm file, and the first one decides whether that can be written.
void tavro_host_open_writable(const char* directory);

// Number of SQLite virtual machine instructions that the open storage has run: a measure of work that, unlike time, is
// repeatable.
std::uint64_t tavro_host_work(void);
}
