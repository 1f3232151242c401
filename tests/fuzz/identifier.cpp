// Record identifiers are parsed as by a simple reference parser, whatever the text.
#include "text/identifier.h"

#include "fuzz.h"
#include "jni/env/record_id.h"
#include "script.h"

#include <stdexcept>
#include <string>

using tavro::fuzz::require;

namespace {

constexpr long kMostOfAnInt = 2147483647;

// How parsing ends, with the ids if it succeeds and the log lines.
struct Outcome {
    enum Kind { kParsed, kRejected, kNoNumber, kTooLarge } kind = kRejected;
    int list_id = -77;
    int record_id = -77;
    std::string line{};

    bool operator==(const Outcome& other) const {
        return kind == other.kind && list_id == other.list_id && record_id == other.record_id && line == other.line;
    }
};

// The value of a text of digits; one above every int if it is larger than that.
long value_of(const std::string& digits) {
    long value = 0;
    for (const char digit : digits) {
        value = value > kMostOfAnInt ? value : value * 10 + (digit - '0');
    }
    return value;
}

Outcome expected(const std::string& text) {
    if (text.empty()) {
        return {Outcome::kRejected, -77, -77, "log 6 -: Invalid param.\n"};
    }
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return {Outcome::kRejected, -77, -77, "log 6 -: Unknown data s_Id.\n"};
    }
    const std::string parts[] = {text.substr(0, comma), text.substr(comma + 1, text.find(',', comma + 1) - comma - 1)};
    for (const std::string& part : parts) {
        if (part.find_first_not_of("0123456789") != std::string::npos) {
            return {};
        }
    }
    Outcome outcome{Outcome::kParsed};
    int* const ids[] = {&outcome.list_id, &outcome.record_id};
    for (int i = 0; i < 2; ++i) {
        const long value = value_of(parts[i]);
        if (parts[i].empty() || value > kMostOfAnInt) {
            // The first part is assigned before the second is read.
            return {parts[i].empty() ? Outcome::kNoNumber : Outcome::kTooLarge, i == 0 ? -77 : outcome.list_id, -77};
        }
        *ids[i] = static_cast<int>(value);
    }
    return outcome;
}

Outcome actual(const std::string& text) {
    tavro::script::reset();
    tavro::script::set_property("vendor.vlt.broadcast.log.level", "d");
    Outcome outcome;
    try {
        outcome.kind = trimId(text, outcome.list_id, outcome.record_id) ? Outcome::kParsed : Outcome::kRejected;
    } catch (const std::invalid_argument&) {
        outcome.kind = Outcome::kNoNumber;
    } catch (const std::out_of_range&) {
        outcome.kind = Outcome::kTooLarge;
    }
    for (const std::string& line : tavro::script::lines()) {
        outcome.line += line;
    }
    return outcome;
}

// What std::stoi does with the text: 0 for no number, 1 for one beyond an int, 2 for `value`.
template <class Parse>
int parsed(Parse parse, int& value) {
    try {
        value = parse();
        return 2;
    } catch (const std::invalid_argument&) {
        return 0;
    } catch (const std::out_of_range&) {
        return 1;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const Outcome outcome = actual(text);
    require(outcome == expected(text), "trimId splits as the reference parser does");

    int value = 0;
    int reference = 0;
    const int how = parsed([&] { return tavro::decimal(text); }, value);
    require(how == parsed([&] { return std::stoi(text); }, reference) && value == reference,
            "decimal reads what std::stoi reads");

    if (outcome.kind == Outcome::kParsed) {
        Outcome again;
        require(trimId(combineStrMId(outcome.list_id, outcome.record_id), again.list_id, again.record_id) &&
                    again.list_id == outcome.list_id && again.record_id == outcome.record_id,
                "an identifier that was built is parsed to the same ids");
    }
    return 0;
}
