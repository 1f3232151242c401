// What a check is, and what it can use.
//
// A check is one thing that the library relies on. It runs in a process of its own, which loads the platform's
// libraries and ends with the check. So a check may crash, hang or leave handles and locks behind; only that check
// fails. The functions of the platform are in calls.h, the functions of one list kind in kinds.h.
#pragma once

#include "conform/calls.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace tavro::conform {

// What happens on a TV where the check fails.
enum class Severity {
    kDataLoss,    // records are lost or damaged, or the process ends
    kWrongResult, // Java gets a wrong result
    kLogLine,     // only a log line is wrong
};

class Peer;

// Lists of each kind that the checks may use: list(0) to list(3) have consecutive ids, and list(kHighestList) is 65535,
// the highest list id.
inline constexpr std::size_t kOwnLists = 5;
inline constexpr std::size_t kHighestList = 4;

// What a running check uses. The functions that end the check do so on any thread, and end its process.
class Run {
public:
    // For the program itself, in a process of a check.
    explicit Run(std::vector<std::unique_ptr<Peer>> peers);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    // Id of the check's list number `index`. At the start of a check none of these lists exists, of no kind. Lists that
    // still exist when the check has ended are deleted.
    std::uint16_t list(std::size_t index = 0) const;

    // Path of a file that does not exist yet, in a directory for this run. `name` is at most 31 bytes without '/'. The
    // file is removed when the check has ended.
    std::string file(const char* name) const;

    // Another process, which has loaded the platform on its own. The check's row must ask for it with `peers`.
    Peer& peer(std::size_t index = 0);

    // How long a check may take. For waits that end by themselves only when the platform does what it must.
    std::chrono::milliseconds timeout() const;

    // Ends the check as failed unless `status` is 0. The message names the last call of this thread.
    void done(MwStatus status) const;
    // Ends it as failed if `status` is 0: the library takes any other status as a failure.
    void fails(MwStatus status) const;
    // Ends it as failed unless the status is exactly `expected`.
    void returns(MwStatus expected, MwStatus status) const;

    // Ends the check as failed unless `found` equals `expected`. `what` names the value: "records counted".
    template <class Number, class Other>
    void equal(const char* what, Number expected, Other found) const {
        static_assert(std::is_integral_v<Number> && std::is_integral_v<Other>);
        equal_numbers(what, static_cast<long long>(expected), static_cast<long long>(found));
    }
    // The same for text.
    void equal_text(const char* what, const std::string& expected, const std::string& found) const;
    // The same for `size` bytes. The message shows the first byte that differs.
    void equal_bytes(const char* what, const void* expected, const void* found, std::size_t size) const;
    // Ends the check as failed unless `holds`. `expected` and `found` are phrases: "a handle other than 0", "0".
    void expect(bool holds, const std::string& expected, const std::string& found) const;

    // Ends the check as failed.
    [[noreturn]] void fail(const std::string& expected, const std::string& found) const;
    // Ends the check as skipped: the platform is such that nothing can be said. `why` is one phrase.
    [[noreturn]] void skip(const std::string& why) const;

private:
    void equal_numbers(const char* what, long long expected, long long found) const;

    std::vector<std::unique_ptr<Peer>> peers_;
};

struct Check {
    std::string name;                   // kind or library, call, behavior: "svl.add.taken-id"
    std::vector<std::string> functions; // functions of the platform that the expectation is about
    std::string expects;                // one sentence
    std::string reason;                 // "needed by nativeAdd of transport streams"
    Severity severity = Severity::kWrongResult;
    void (*run)(Run& run) = nullptr;
    std::size_t lists = 0;               // own lists of the kind that the check uses: list(0) up to this number
    std::size_t peers = 0;               // other processes that it needs, at most 2
    bool slow = false;                   // only with --slow
    std::string kind = {};               // "svl", "tsl", "nwl", "satl"; empty for a check that is not of one kind
    bool uses_highest = false;           // also uses list(kHighestList)
    std::vector<std::string> files = {}; // names that it passes to Run::file
    std::vector<std::string> roles = {}; // set by add_of_kind: the functions as the row names them
};

// Each file in checks/ adds its rows. The order is the order in which checks run.
void add_library_checks(std::vector<Check>& checks);
void add_list_checks(std::vector<Check>& checks);
void add_content_checks(std::vector<Check>& checks);
void add_handle_checks(std::vector<Check>& checks);
void add_adding_checks(std::vector<Check>& checks);
void add_record_checks(std::vector<Check>& checks);
void add_query_checks(std::vector<Check>& checks);
void add_reading_checks(std::vector<Check>& checks);
void add_filter_checks(std::vector<Check>& checks);
void add_lock_checks(std::vector<Check>& checks);
void add_file_checks(std::vector<Check>& checks);
void add_helper_checks(std::vector<Check>& checks);

// All checks.
std::vector<Check> all_checks();

} // namespace tavro::conform
