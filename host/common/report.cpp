#include "report.h"

#include <android/log.h>

#include <cerrno>
#include <mutex>
#include <new>
#include <set>

namespace tavro::host {
namespace {

constexpr int kErrorPriority = 6;
constexpr char kTag[] = "TavroHost";

// Returns 0 or a negative errno value.
int write_line(const std::string& message) noexcept {
    const int result = __android_log_print(kErrorPriority, kTag, "%s", message.c_str());
    return result < 0 ? result : 0;
}

} // namespace

void report(const std::string& message) noexcept { write_line(message); }

void report_once(const std::string& message) noexcept {
    try {
        // Never destroyed, because errors may be reported during process exit.
        static std::mutex& mutex = *new std::mutex;
        static std::set<std::string>& seen = *new std::set<std::string>;
        {
            // Counts as seen before it is written: the log reports in this way that it cannot write its file.
            std::lock_guard<std::mutex> lock(mutex);
            if (!seen.insert(message).second) {
                return;
            }
        }
        if (write_line(message) == -ENOMEM) {
            std::lock_guard<std::mutex> lock(mutex);
            seen.erase(message);
        }
    } catch (const std::bad_alloc&) {
        // The next call writes the message.
    }
}

} // namespace tavro::host
