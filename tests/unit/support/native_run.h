// One run of a native while calls of the middleware fail, and what it left behind.
#pragma once

#include "native_cases.h"
#include "platform_tap.h"

#include <functional>
#include <string>
#include <vector>

namespace tavro::test {

// The calls that fail in a run: number `first` (from 1) to `last` return `status`.
struct Failures {
    int first = 0;
    int last = 0;
    tavro::MwStatus status = 0;
};

struct NativeRun {
    std::string result;
    std::vector<TappedCall> calls;  // of the middleware
    std::vector<std::string> lines; // of the log
    // Locks that were not released and handles that were neither recorded nor closed; empty if there are none. A handle
    // whose close failed counts as closed.
    std::string left;
};

// Runs a case once. The caller has set up its situation.
NativeRun run_native(const NativeCase& native, FakeJni& jni, const Failures& failures = {});
// The same while memory allocation number `failing_allocation` of the library fails; 0 for none. Throws what leaves the
// native.
NativeRun run_native(const NativeCase& native, FakeJni& jni, int failing_allocation);

} // namespace tavro::test
