#include "report.h"

#include <android/log.h>

#include <mutex>
#include <new>
#include <set>

namespace tavro::host {
namespace {

constexpr int kErrorPriority = 6;
constexpr char kTag[] = "TavroHost";

} // namespace

void report(const std::string& message) noexcept { __android_log_print(kErrorPriority, kTag, "%s", message.c_str()); }

void report_once(const std::string& message) noexcept {
    try {
        // Never destroyed, because errors may be reported during process exit.
        static std::mutex& mutex = *new std::mutex;
        static std::set<std::string>& seen = *new std::set<std::string>;
        std::lock_guard<std::mutex> lock(mutex);
        if (!seen.insert(message).second) {
            return;
        }
    } catch (const std::bad_alloc&) {
        return; // an endless recursion would follow if the log could not be written, either
    }
    report(message);
}

} // namespace tavro::host
