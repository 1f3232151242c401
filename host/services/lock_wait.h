// Timing and thread ids for lock waits.
#pragma once

#include <chrono>
#include <sys/types.h>

namespace tavro::host {

// TAVRO_LOCK_TIMEOUT_MS, or 3000 ms if it is not set. An invalid value is reported once and treated as not set.
std::chrono::milliseconds lock_timeout();

// Retry interval for a lock that another process holds: there is no notification when it is released.
inline constexpr std::chrono::milliseconds kProcessRetry{2};

// The calling thread's kernel thread id.
pid_t this_thread();

} // namespace tavro::host
