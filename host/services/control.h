// What the workstation's middleware offers to tests and tools beyond the TV's interface.
#pragma once

#include <cstdint>

extern "C" {
// Gives up every handle and lock of this process and closes the storage, as the end of the process
// would. The next call opens the storage anew, in the directory that TAVRO_HOME names then.
void tavro_host_reset(void);

// Instructions of SQLite's virtual machine that the open storage has run so far: work that can be
// counted instead of timed.
std::uint64_t tavro_host_work(void);
}
