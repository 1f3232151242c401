// Functions of the workstation's middleware for tests and tools; a TV does not have them.
#pragma once

#include <cstdint>

extern "C" {
// Releases every handle and lock of this process and closes the storage, like process exit. The next call reopens the
// storage, in the directory that TAVRO_HOME names at that time.
void tavro_host_reset(void);

// Number of SQLite virtual machine instructions that the open storage has run: a measure of work that, unlike time, is
// repeatable.
std::uint64_t tavro_host_work(void);
}
