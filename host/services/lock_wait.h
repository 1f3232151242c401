// Timing and thread ids for lock waits.
#pragma once

#include <chrono>
#include <sys/types.h>

namespace tavro::host {

// TAVRO_LOCK_TIMEOUT_MS, or 3000 ms if it is not set. An invalid value is reported once and treated as not set.
std::chrono::milliseconds lock_timeout();

// Retry interval of an opening: there is no notification when another process has opened the storage.
inline constexpr std::chrono::milliseconds kOpeningRetry{2};

// Retry interval of a thread that waits for a lock. It is woken when the lock is released, unless the holder dies.
inline constexpr std::chrono::milliseconds kLockRetry{20};

// The calling thread's kernel thread id.
pid_t this_thread();

} // namespace tavro::host
