// How long locks are waited for, and by whom.
#pragma once

#include <chrono>
#include <sys/types.h>

namespace tavro::host {

// TAVRO_LOCK_TIMEOUT_MS, or 3000 milliseconds without it. An invalid setting is reported once and counts as not set.
std::chrono::milliseconds lock_timeout();

// How often a lock that another process holds is tried again: there is no notification when it is released.
inline constexpr std::chrono::milliseconds kProcessRetry{2};

// The calling thread's id in the system.
pid_t this_thread();

} // namespace tavro::host
