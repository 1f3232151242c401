// Finds the faults of each call. The setting is text, from a program, the environment or the properties, and is read
// into entries whenever the text changes.
#include "faults.h"

#include "common/report.h"
#include "setting.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using tavro::host::Fault;
using tavro::host::FaultEntry;
using tavro::host::FaultSetting;
using tavro::host::Function;

constexpr int kWarningPriority = 5;
constexpr std::int64_t kCheckNanoseconds = 10'000'000;

// The coarse clock takes no system call. It advances every few milliseconds.
std::int64_t coarse_now() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

// Joins the values of tavro.faults, tavro.faults.2, tavro.faults.3, … up to the first that is not set, or the 64th: a
// property_get that gives every property a value must not keep the loop running.
std::string property_text() {
    constexpr int kMostProperties = 64;
    std::string text;
    std::string name = "tavro.faults";
    std::array<char, PROPERTY_VALUE_MAX> value{};
    for (int number = 2; number <= kMostProperties + 1 && property_get(name.c_str(), value.data(), "") > 0; ++number) {
        if (std::strlen(value.data()) == value.size() - 1) {
            tavro::host::report_once("the property " + name + " is ignored: it has more than 90 bytes; continue in " +
                                     "tavro.faults." + std::to_string(number));
        } else {
            text.append(value.data()).append(" ");
        }
        name = "tavro.faults." + std::to_string(number);
    }
    return text;
}

std::string text_of_environment() {
    const char* const variable = std::getenv("TAVRO_FAULTS");
    return variable == nullptr || *variable == '\0' ? property_text() : variable;
}

class Faults {
public:
    static Faults& instance() {
        static Faults& faults = *new Faults; // never destroyed: calls may be made during process exit
        return faults;
    }

    void set(const char* text) {
        std::lock_guard<std::mutex> lock(reading_);
        std::optional<std::string> fixed = text == nullptr ? std::nullopt : std::optional<std::string>(text);
        use(fixed ? *fixed : text_of_environment());
        fixed_ = std::move(fixed);
        next_check_ = fixed_ ? INT64_MAX : coarse_now() + kCheckNanoseconds;
    }

    bool any() {
        const std::int64_t now = coarse_now();
        if (now >= next_check_.load(std::memory_order_relaxed)) {
            const int callers_errno = errno;
            check(now);
            errno = callers_errno;
        }
        return any_.load(std::memory_order_relaxed);
    }

    void begin_call(Function function, Fault& fault) {
        std::int64_t delay = 0;
        bool kills = false;
        std::vector<std::string> lines;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            for (std::size_t i = 0; i < setting_.entries.size(); ++i) {
                const FaultEntry& entry = setting_.entries[i];
                if (!entry.functions[static_cast<std::size_t>(function)] || !setting_.is_hit(i, ++counts_[i])) {
                    continue;
                }
                const std::string what = apply(entry, fault, delay, kills);
                if (!what.empty()) {
                    lines.push_back(subject(function, entry, counts_[i]) + what);
                }
            }
        }
        for (const std::string& line : lines) {
            __android_log_print(kWarningPriority, "TavroHost", "%s", line.c_str());
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
        if (kills) {
            tavro_host_kill();
        }
    }

private:
    // Takes an entry into account. Returns what it does, or "" if an entry before it has decided the result.
    static std::string apply(const FaultEntry& entry, Fault& fault, std::int64_t& delay, bool& kills) {
        switch (entry.action) {
        case FaultEntry::Action::kDelay:
            delay += entry.value;
            return " waits " + std::to_string(entry.value) + " ms";
        case FaultEntry::Action::kKill:
            kills = true;
            return " kills the process";
        case FaultEntry::Action::kKillAfter:
            fault.kills_after = true;
            return " kills the process when it is done";
        case FaultEntry::Action::kReturn:
            break;
        }
        if (fault.returns) {
            return "";
        }
        fault.returns = true;
        fault.value = entry.value;
        return " returns " + std::to_string(entry.value);
    }

    static std::string subject(Function function, const FaultEntry& entry, std::uint64_t number) {
        const bool is_pattern = entry.pattern.find('*') != std::string::npos;
        return "fault: " + std::string(tavro::host::kFunctions[static_cast<std::size_t>(function)].name) + " call " +
               std::to_string(number) + (is_pattern ? " of " + entry.pattern : "");
    }

    void check(std::int64_t now) {
        std::unique_lock<std::mutex> lock(reading_, std::defer_lock);
        if (next_check_ == 0) {
            lock.lock(); // no call is made before the setting is known
        } else if (!lock.try_lock()) {
            return; // another thread checks
        }
        if (now < next_check_) {
            return; // another thread has checked
        }
        std::string text = text_of_environment();
        if (text != text_) {
            use(std::move(text));
        }
        next_check_ = now + kCheckNanoseconds;
    }

    // The caller holds reading_.
    void use(std::string text) {
        FaultSetting setting = tavro::host::read_fault_setting(text);
        std::vector<std::uint64_t> counts(setting.entries.size());
        for (const std::string& error : setting.errors) {
            tavro::host::report_once(error);
        }
        text_ = std::move(text);
        std::lock_guard<std::mutex> lock(mutex_);
        setting_ = std::move(setting);
        counts_ = std::move(counts);
        any_ = !setting_.entries.empty();
    }

    std::atomic<std::int64_t> next_check_{0}; // 0: never checked
    std::atomic<bool> any_{false};

    std::mutex reading_; // guards what decides the setting
    std::optional<std::string> fixed_;
    std::string text_;

    std::mutex mutex_; // guards the setting; held for no call to anything else
    FaultSetting setting_;
    std::vector<std::uint64_t> counts_; // of each entry: calls of its functions
};

} // namespace

extern "C" {

void tavro_host_set_faults(const char* text) noexcept {
    try {
        Faults::instance().set(text);
    } catch (const std::exception&) {
        // Out of memory.
    }
}

bool tavro_host_has_faults() noexcept {
    try {
        return Faults::instance().any();
    } catch (const std::exception&) {
        return false; // out of memory; the next call tries again
    }
}

void tavro_host_begin_call(Function function, Fault* fault) noexcept {
    try {
        Faults::instance().begin_call(function, *fault);
    } catch (const std::exception&) {
        // Out of memory. The call is made.
    }
}

void tavro_host_kill() noexcept {
    for (;;) {
        ::kill(::getpid(), SIGKILL);
    }
}
}
