// Restricts the system calls of a thread, to prove that a function makes no others.
#pragma once

#include <vector>

// From now on, any other system call of this thread kills the process with SIGSYS. Returns false and changes nothing if
// the kernel or an emulator does not support this.
bool allow_only(const std::vector<int>& calls);
