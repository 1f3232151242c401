#include "lock_wait.h"

#include "common/report.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tavro::host {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kDefaultTimeout{3000};
constexpr std::uint32_t kLongestTimeout = std::numeric_limits<std::int32_t>::max();

} // namespace

milliseconds lock_timeout() {
    const char* const setting = std::getenv("TAVRO_LOCK_TIMEOUT_MS");
    if (setting == nullptr || *setting == '\0') {
        return kDefaultTimeout;
    }
    const std::string_view text = setting;
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value > kLongestTimeout) {
        report_once("TAVRO_LOCK_TIMEOUT_MS is '" + std::string(text) +
                    "', which is not a number of milliseconds from 0 to " + std::to_string(kLongestTimeout) +
                    "; using " + std::to_string(kDefaultTimeout.count()) + " ms instead");
        return kDefaultTimeout;
    }
    return milliseconds{value};
}

pid_t this_thread() {
    static thread_local const pid_t id = ::gettid();
    return id;
}

} // namespace tavro::host
