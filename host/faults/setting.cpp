#include "setting.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <optional>

namespace tavro::host {
namespace {

constexpr std::int64_t kLongestDelay = 3'600'000;
constexpr std::int64_t kLeastStatus = INT32_MIN;

// Why an entry is invalid, and what to write.
struct Malformed {
    std::string message;
};

std::string quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

// The number that `text` is; nothing if it is not a decimal number within 64 bits.
std::optional<std::int64_t> number_of(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

bool remove_suffix(std::string_view& text, std::string_view suffix) {
    const bool found = text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
    text.remove_suffix(found ? suffix.size() : 0);
    return found;
}

// `*` in the pattern stands for any text.
bool matches(std::string_view pattern, std::string_view name) {
    if (pattern.empty() || pattern[0] != '*') {
        return pattern.empty() ? name.empty()
                               : !name.empty() && pattern[0] == name[0] && matches(pattern.substr(1), name.substr(1));
    }
    return matches(pattern.substr(1), name) || (!name.empty() && matches(pattern, name.substr(1)));
}

// Number of letters to insert, remove or replace.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (from[i - 1] == to[j - 1] ? 0U : 1U)});
            diagonal = above;
        }
    }
    return row.back();
}

std::string suggestion(std::string_view name) {
    constexpr std::size_t kMostDifferences = 3;
    const auto nearest =
        std::min_element(std::begin(kFunctions), std::end(kFunctions), [&](const auto& one, const auto& other) {
            return distance(name, one.name) < distance(name, other.name);
        });
    return distance(name, nearest->name) <= kMostDifferences
               ? "did you mean " + std::string(nearest->name) + "?"
               : "write a function of the middleware such as x_svl_add_rec, or a pattern such as x_svl_*";
}

std::bitset<kFunctionCount> functions_of(std::string_view pattern) {
    // Each further star multiplies the time.
    constexpr auto kMostStars = 3;
    if (std::count(pattern.begin(), pattern.end(), '*') > kMostStars) {
        throw Malformed{quoted(pattern) + " has more than 3 stars; write a pattern such as x_svl_*"};
    }
    std::bitset<kFunctionCount> functions;
    for (std::size_t i = 0; i < kFunctionCount; ++i) {
        functions[i] = matches(pattern, kFunctions[i].name);
    }
    if (functions.none()) {
        const bool starred = pattern.find('*') != std::string_view::npos;
        throw Malformed{starred ? "no function matches " + quoted(pattern) + "; write a pattern such as x_svl_*"
                                : "unknown function " + quoted(pattern) + "; " + suggestion(pattern)};
    }
    return functions;
}

// Reads a percentage with up to two decimal places, in hundredths; nothing if it is malformed.
std::optional<std::int64_t> hundredths_of(std::string_view text) {
    const std::size_t point = text.find('.');
    const std::string_view decimals = point == std::string_view::npos ? "" : text.substr(point + 1);
    if (decimals.size() > 2 || (point != std::string_view::npos && decimals.empty())) {
        return std::nullopt;
    }
    return number_of(std::string(text.substr(0, point)).append(decimals).append(2 - decimals.size(), '0'));
}

FaultEntry::Calls calls_of(std::string_view text) {
    const std::string_view whole = text;
    FaultEntry::Calls calls;
    std::optional<std::int64_t> number;
    if (remove_suffix(text, "%")) {
        number = hundredths_of(text);
        number = number > calls.hundredths ? std::nullopt : number;
        calls.hundredths = static_cast<std::uint32_t>(number.value_or(0));
    } else {
        const bool all_later = remove_suffix(text, "+");
        number = number_of(text);
        calls.first = static_cast<std::uint64_t>(number.value_or(0));
        calls.last = all_later ? calls.last : calls.first;
    }
    if (number.value_or(0) <= 0) {
        throw Malformed{quoted(whole) + " selects no calls; write :3 for the third call, :3+ for the third and all "
                                        "later calls, or :5% for 5 % of the calls"};
    }
    return calls;
}

std::int64_t delay_of(std::string_view text) {
    std::string_view number = text;
    const bool has_unit = remove_suffix(number, "ms");
    const std::int64_t delay = number_of(number).value_or(-1);
    if (!has_unit || delay < 0 || delay > kLongestDelay) {
        throw Malformed{quoted(text) + " is not a delay; write 0ms to 3600000ms"};
    }
    return delay;
}

void take_action(std::string_view text, FaultEntry& entry) {
    if (text == "kill" || text == "kill-after") {
        entry.action = text == "kill" ? FaultEntry::Action::kKill : FaultEntry::Action::kKillAfter;
        return;
    }
    const std::optional<std::int64_t> value = number_of(text);
    if (!value) {
        throw Malformed{quoted(text) + " is not an action; write a status such as -106, kill or kill-after, or write " +
                        entry.pattern + ":delay=200ms"};
    }
    bool returns_status = false;
    for (std::size_t i = 0; i < kFunctionCount; ++i) {
        returns_status = returns_status || (entry.functions[i] && kFunctions[i].returns_status);
    }
    if (returns_status && (*value < kLeastStatus || *value >= 0)) {
        throw Malformed{std::string(text) + " is not the status of a failure; write -2147483648 to -1"};
    }
    if (*value < kLeastStatus || *value > UINT32_MAX) {
        throw Malformed{std::string(text) + " does not fit in 32 bits; write -2147483648 to 4294967295"};
    }
    entry.value = *value;
}

FaultEntry entry_of(std::string_view left, std::string_view value) {
    FaultEntry entry;
    const bool is_delay = remove_suffix(left, ":delay");
    const std::size_t colon = left.find(':');
    entry.pattern = left.substr(0, colon);
    entry.functions = functions_of(entry.pattern);
    if (colon != std::string_view::npos) {
        entry.calls = calls_of(left.substr(colon + 1));
    }
    if (is_delay) {
        entry.action = FaultEntry::Action::kDelay;
        entry.value = delay_of(value);
    } else {
        take_action(value, entry);
    }
    return entry;
}

void take_entry(std::string_view text, FaultSetting& setting) {
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos) {
        throw Malformed{"'=' is missing; write FUNCTION=STATUS, such as x_svl_add_rec=-106"};
    }
    const std::string_view value = text.substr(sign + 1);
    if (text.substr(0, sign) != "seed") {
        setting.entries.push_back(entry_of(text.substr(0, sign), value));
        return;
    }
    const std::int64_t seed = number_of(value).value_or(-1);
    if (seed < 0) {
        throw Malformed{quoted(value) + " is not a seed; write a whole number, such as seed=7"};
    }
    setting.seed = static_cast<std::uint64_t>(seed);
}

// The finalizer of SplitMix64: every bit of the result depends on every bit of `number`.
std::uint64_t mixed(std::uint64_t number) {
    number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
    number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
    return number ^ (number >> 31U);
}

} // namespace

bool FaultSetting::is_hit(std::size_t entry, std::uint64_t number) const {
    const FaultEntry::Calls& calls = entries[entry].calls;
    constexpr std::uint64_t kAll = 10'000;
    return number >= calls.first && number <= calls.last &&
           mixed(mixed(mixed(seed) + entry) + number) % kAll < calls.hundredths;
}

FaultSetting read_fault_setting(std::string_view text) {
    constexpr std::string_view kSeparators = " \t\r\n,";
    FaultSetting setting;
    for (std::size_t start = text.find_first_not_of(kSeparators); start != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(kSeparators, start), text.size());
        const std::string_view entry = text.substr(start, end - start);
        try {
            take_entry(entry, setting);
        } catch (const Malformed& malformed) {
            setting.errors.push_back("the fault " + quoted(entry) + " is ignored: " + malformed.message);
        }
        start = text.find_first_not_of(kSeparators, end);
    }
    return setting;
}

} // namespace tavro::host
