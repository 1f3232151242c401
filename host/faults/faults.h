// Faults for the stand-ins of the middleware: calls that fail, wait, or kill the process. docs/failure-injection.md
// describes the setting. The state is in a library of its own, libtavro_faults.so, so that a process has one set of
// counters for all functions. Thread-safe; nothing here throws.
#pragma once

#include "functions.h"

namespace tavro::host {

// What happens to a call besides a delay, which is over when this is known.
struct Fault {
    bool returns = false;     // the call is not made and returns `value`
    bool kills_after = false; // SIGKILL when the call is done
    std::int64_t value = 0;
};

} // namespace tavro::host

extern "C" {

// Replaces the setting at once, and counting begins anew. A null `text` returns to the variable TAVRO_FAULTS and the
// property, which are read at once and may change later; any other text holds until the next call. The text is copied.
// Without memory, nothing changes.
void tavro_host_set_faults(const char* text) noexcept;

// True if any fault is set. Reads the variable and the property if the last time was at least 10 ms ago.
bool tavro_host_has_faults() noexcept;

// Counts a call and finds its faults, and logs each. Waits for the sum of the delays, and kills the process if a fault
// says so.
void tavro_host_begin_call(tavro::host::Function function, tavro::host::Fault* fault) noexcept;

// Kills the process with SIGKILL.
[[noreturn]] void tavro_host_kill() noexcept;
}

namespace tavro::host {

// Makes a call, `body`, unless a fault replaces it. `Result` is the call's integer type.
template <class Result, class Body>
Result with_faults(Function function, Body body) {
    if (!tavro_host_has_faults()) {
        return body();
    }
    Fault fault;
    tavro_host_begin_call(function, &fault);
    const Result result = fault.returns ? static_cast<Result>(fault.value) : body();
    if (fault.kills_after) {
        tavro_host_kill();
    }
    return result;
}

} // namespace tavro::host

// Defines a function of the middleware that forwards to the static function METHOD of CLASS.
#define TAVRO_DEFINE_CALL(CLASS, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                          \
    RESULT NAME PARAMETERS {                                                                                           \
        return tavro::host::with_faults<RESULT>(tavro::host::Function::NAME, [&] { return CLASS::METHOD ARGUMENTS; }); \
    }
