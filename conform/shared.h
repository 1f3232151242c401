// Memory that the program shares with the processes of a check, so that it can report how far a check came.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::conform {

enum class Outcome : std::int32_t { kUnfinished, kPassed, kFailed, kSkipped };

inline constexpr std::size_t kNotedCalls = 8; // the last ones are kept
inline constexpr std::size_t kKinds = 4;

// Written by the check's processes, read by the program. Zeroed before each check.
struct Shared {
    // One call of a platform function.
    struct Call {
        char text[208];
        std::atomic<std::int32_t> returned; // 1 when `result` is valid
        std::int64_t result;
    };

    std::atomic<std::int32_t> outcome;  // an Outcome
    std::atomic<std::int32_t> reported; // 1 when a process has begun to write the texts
    char expected[1024];
    char found[2048];

    std::atomic<std::uint32_t> calls; // how many were noted; call n is in noted[n % kNotedCalls]
    Call noted[kNotedCalls];

    std::atomic<std::uint32_t> lists[kKinds]; // bit per own list that a check may have created
};

// What all processes of a run know; set before the first check.
struct Settings {
    std::uint16_t first_list = 65301;
    std::string directory; // of this run
    std::uint32_t timeout_ms = 10000;
};
Settings& settings();

// Id of the own list number `index`: see Run::list.
std::uint16_t own_list_id(std::size_t index);

// The shared memory of this process; null where calls are not noted.
Shared*& shared_memory();

// Notes a call, and its result when it has returned.
class NotedCall {
public:
    explicit NotedCall(const std::string& text);
    void returned(std::int64_t result) const;

private:
    Shared::Call* call_ = nullptr;
};

// The last calls in the order in which they began, each with its result: "x_svl_open(65301, 0, 0, out) = -101". A call
// that has not returned ends with " ...".
std::vector<std::string> noted_calls(const Shared& shared);

// Number of the kind in Shared::lists: svl, tsl, nwl, satl.
std::size_t kind_number(const char* kind);

// Writes the outcome with its texts and ends the process at once. The first process that reports wins.
[[noreturn]] void end_check(Outcome outcome, const std::string& expected, const std::string& found);

} // namespace tavro::conform
