// Takes system calls away from a thread, to prove that a function makes none but some.
#pragma once

#include <vector>

// From now on any other system call of this thread ends the process with SIGSYS. Returns false, and changes nothing,
// where the kernel or an emulator does not offer it.
bool allow_only(const std::vector<int>& calls);
