// Checks of the channel number helpers, the properties and the log.
#include "conform/check.h"

#include <cutils/properties.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tavro::conform {

namespace {

constexpr std::int32_t kMajorNumbers[] = {1, 2, 99, 100, 999};
constexpr std::int32_t kMinorNumbers[] = {0, 1, 2, 99, 100, 999};
constexpr std::int32_t kHighestServiceType = 8; // of those that the library gives names

// Runs `check` for all numbers and indices.
template <class Function>
void for_numbers(Function check) {
    for (const std::int32_t major_number : kMajorNumbers) {
        for (const std::int32_t minor_number : kMinorNumbers) {
            for (std::int32_t index = 0; index <= kHighestServiceType; ++index) {
                check(major_number, minor_number, index);
            }
        }
    }
}

void index_returns(Run& run) {
    for_numbers([&run](std::int32_t major_number, std::int32_t minor_number, std::int32_t index) {
        const std::uint32_t id = mw::x_sb_gen_channel_id(major_number, minor_number, index);
        run.equal("the index", index, mw::x_sb_get_channel_index(id));
    });
}

void ids_differ(Run& run) {
    std::set<std::uint32_t> ids;
    for_numbers([&](std::int32_t major_number, std::int32_t minor_number, std::int32_t index) {
        const bool is_new = ids.insert(mw::x_sb_gen_channel_id(major_number, minor_number, index)).second;
        run.expect(is_new, "another channel id than for all other numbers", "the same id twice");
    });
}

void ids_stay(Run& run) {
    for_numbers([&run](std::int32_t major_number, std::int32_t minor_number, std::int32_t index) {
        const std::uint32_t id = mw::x_sb_gen_channel_id(major_number, minor_number, index);
        run.equal("the second id", id, mw::x_sb_gen_channel_id(major_number, minor_number, index));
    });
}

constexpr char kProperty[] = "debug.tavro.conform";
constexpr char kUnsetProperty[] = "debug.tavro.conform.unset";
constexpr std::size_t kLongestValue = PROPERTY_VALUE_MAX - 1;

// Sets the property to `value`: one or more letters. Skips the check if this process may not do that.
void set_property(Run& run, const std::string& value) {
#ifdef __ANDROID__
    const bool set = std::system((std::string("setprop ") + kProperty + " " + value).c_str()) == 0;
#else
    const bool set = ::setenv("TAVRO_PROP_debug_tavro_conform", value.c_str(), 1) == 0;
#endif
    if (!set) {
        run.skip(std::string("this process may not set the property ") + kProperty);
    }
}

// Sets the property back at the end of a check.
class PropertyReset {
public:
    PropertyReset() = default;
    ~PropertyReset() {
#ifdef __ANDROID__
        if (std::system((std::string("setprop ") + kProperty + " ''").c_str()) != 0) {
            std::fputs("tavro-conform: cannot reset the property debug.tavro.conform\n", stderr);
        }
#endif
    }
    PropertyReset(const PropertyReset&) = delete;
    PropertyReset& operator=(const PropertyReset&) = delete;
};

// A property's value as the library reads it. Bytes that nothing may write follow the buffer.
struct Value {
    char text[PROPERTY_VALUE_MAX];
    char beyond[PROPERTY_VALUE_MAX];
};
Value value_of(const char* name, const char* default_value) {
    Value value;
    std::memset(&value, 0x5A, sizeof value);
    mw::property_get(name, value.text, default_value);
    return value;
}

std::string text_of(Run& run, const Value& value) {
    const void* const end = std::memchr(value.text, 0, sizeof value.text);
    run.expect(end != nullptr, "a NUL within the 92 bytes of the value", "none");
    return value.text;
}

void property_unset(Run& run) { run.equal_text("the value", "", text_of(run, value_of(kUnsetProperty, ""))); }

void property_value(Run& run) {
    const PropertyReset reset;
    set_property(run, "d");
    run.equal_text("the value", "d", text_of(run, value_of(kProperty, "")));
}

void property_changes(Run& run) {
    const PropertyReset reset;
    set_property(run, "first");
    value_of(kProperty, "");
    set_property(run, "second");
    run.equal_text("the value after a change", "second", text_of(run, value_of(kProperty, "")));
}

void property_longest(Run& run) {
    const PropertyReset reset;
    const std::string longest(kLongestValue, 'v');
    set_property(run, longest);
    run.equal_text("the value", longest, text_of(run, value_of(kProperty, "")));
}

void property_buffer(Run& run) {
    const PropertyReset reset;
    char untouched[PROPERTY_VALUE_MAX];
    std::memset(untouched, 0x5A, sizeof untouched);
    const Value unset = value_of(kUnsetProperty, "");
    run.equal_bytes("the bytes after the value", untouched, unset.beyond, sizeof untouched);
    set_property(run, std::string(kLongestValue, 'v'));
    const Value longest = value_of(kProperty, "");
    run.equal_bytes("the bytes after the value", untouched, longest.beyond, sizeof untouched);
}

constexpr int kDebug = 3; // the priority of debug lines
constexpr char kTag[] = "tavro-conform";
constexpr std::size_t kLongLine = 4200; // a path of 4096 bytes and what the library writes before it

void log_null_tag(Run&) { mw::log_print(kDebug, nullptr, "a line of %s", "tavro-conform"); }

void log_percent(Run&) { mw::log_print(kDebug, kTag, "%s %d%%", "%s%n%s", 100); }

void log_long_line(Run&) { mw::log_print(kDebug, kTag, "path = %s \n", std::string(kLongLine, 'p').c_str()); }

void log_threads(Run&) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([number] {
            for (int line = 0; line < 5; ++line) {
                mw::log_print(kDebug, kTag, "thread %d, line %d\n", number, line);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace

void add_helper_checks(std::vector<Check>& checks) {
    const auto add = [&checks](const char* function, const char* behavior, const char* expects, const char* reason,
                               Severity severity, void (*run)(Run&)) {
        Check check;
        check.name = std::string(function) + "." + behavior;
        check.functions = {function};
        check.expects = expects;
        check.reason = reason;
        check.severity = severity;
        check.run = run;
        checks.push_back(std::move(check));
    };
    constexpr char kNumbers[] = "needed by nativeAdd and native_updateInfo of services of broadcast type 3";
    constexpr char kGate[] = "needed by the log gate, before every log line";
    constexpr char kLines[] = "needed by every native that writes a log line";

    add("x_sb_get_channel_index", "returns-index",
        "x_sb_get_channel_index returns the index that x_sb_gen_channel_id was given.", kNumbers,
        Severity::kWrongResult, index_returns);
    checks.back().functions.emplace_back("x_sb_gen_channel_id");
    add("x_sb_gen_channel_id", "ids-differ",
        "Channel ids of different major numbers, minor numbers (to 999) or indices (to 8) differ.", kNumbers,
        Severity::kWrongResult, ids_differ);
    add("x_sb_gen_channel_id", "ids-stay", "The same numbers give the same channel id at every call.", kNumbers,
        Severity::kWrongResult, ids_stay);
    add("property_get", "unset", "A property that is not set has the default value, here the empty text.", kGate,
        Severity::kLogLine, property_unset);
    add("property_get", "value", "A property that is set has its value.", kGate, Severity::kLogLine, property_value);
    add("property_get", "changes", "A change of a property takes effect at once.", kGate, Severity::kLogLine,
        property_changes);
    add("property_get", "longest-value", "A value has up to 91 bytes and a NUL.", kGate, Severity::kLogLine,
        property_longest);
    add("property_get", "buffer", "property_get writes at most the 92 bytes of its buffer.", kGate, Severity::kDataLoss,
        property_buffer);
    add("__android_log_print", "null-tag", "A line may have no tag.", kLines, Severity::kDataLoss, log_null_tag);
    add("__android_log_print", "percent-sign", "A text in a line may contain percent signs.", kLines,
        Severity::kDataLoss, log_percent);
    add("__android_log_print", "long-line", "A line may have 4200 bytes, as one with a long path.", kLines,
        Severity::kDataLoss, log_long_line);
    add("__android_log_print", "threads", "Several threads may write lines at the same time.", kLines,
        Severity::kDataLoss, log_threads);
}

} // namespace tavro::conform
