// The setting of faults, as text and as entries.
#pragma once

#include "functions.h"

#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavro::host {

// One entry: which calls of which functions, and what happens to them.
struct FaultEntry {
    enum class Action { kReturn, kDelay, kKill, kKillAfter };

    // The calls that it concerns, counted over all its functions from 1.
    struct Calls {
        std::uint64_t first = 1;
        std::uint64_t last = UINT64_MAX;
        std::uint32_t hundredths = 10'000; // of a percent
    };

    std::string pattern;
    std::bitset<kFunctionCount> functions;
    Calls calls;
    Action action = Action::kReturn;
    std::int64_t value = 0; // result of the call, or delay in milliseconds
};

struct FaultSetting {
    std::vector<FaultEntry> entries;
    std::vector<std::string> errors; // one message per invalid entry
    std::uint64_t seed = 1;

    // True if the entry concerns its call `number`. The same seed gives the same calls.
    bool is_hit(std::size_t entry, std::uint64_t number) const;
};

// Reads entries that are separated by blanks, line ends or commas. Never fails as a whole.
FaultSetting read_fault_setting(std::string_view text);

} // namespace tavro::host
