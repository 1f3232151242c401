// Runs checks, each in a process of its own, and removes what they leave.
#pragma once

#include "conform/check.h"
#include "conform/shared.h"

#include <functional>
#include <string>
#include <vector>

namespace tavro::conform {

// What became of a check.
struct Result {
    const Check* check;
    Outcome outcome;                // never kUnfinished
    std::string expected;           // of a failed check
    std::string found;              // of a failed check; of a skipped one, why
    std::vector<std::string> calls; // of a failed check: its last calls
    double seconds;
};

// How a run ended.
struct Verdict {
    enum class How {
        kComplete,    // every check ran
        kRefused,     // nothing was run
        kStopped,     // lists of a check could not be deleted
        kInterrupted, // by a signal
    };
    How how = How::kComplete;
    std::string why; // of kRefused and kStopped
    int signal = 0;  // of kInterrupted
};

// The lists of one kind that the checks use, by their numbers for Run::list.
struct OwnLists {
    const char* kind;
    std::vector<std::size_t> numbers;
};
std::vector<OwnLists> own_lists(const std::vector<const Check*>& checks);

// Runs the checks in their order and calls `report` after each. Uses settings() and sets its directory, a new one below
// `directory` that is removed at the end. Runs nothing if one of the lists exists.
Verdict run_checks(const std::vector<const Check*>& checks, const std::string& directory,
                   const std::function<void(const Result&)>& report);

} // namespace tavro::conform
