// How the scripted platform functions write their journal text and fetch their answer.
#pragma once

#include "script.h"

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tavro::script {

// A handle or a mask: written in hexadecimal.
struct Hex {
    std::uint32_t value;
};

// A record that is handed in; null or the first of `bytes` bytes.
struct RecordArgument {
    const void* data;
    std::size_t bytes;
};

// Appends an entry to the journal. `observe`d tests see it here.
void append(Entry entry);

// The answer to one call of that name: the first queued, else the lasting one, else none.
std::optional<Answer> take(const std::string& call);

// The property that was set, else none. Journals the question when that is on.
std::optional<std::string> property(const std::string& name, const std::string& default_value);

std::string text_of(Hex value);
std::string text_of(const char* text);
std::string text_of(RecordArgument record);
template <class Number>
std::enable_if_t<std::is_integral_v<Number>, std::string> text_of(Number number) {
    return std::to_string(number);
}

// Journals "NAME(arguments)" with the bytes of `record` and returns the call's answer, if any.
std::optional<Answer> play(const std::string& name, const std::vector<std::string>& arguments,
                           RecordArgument record = {nullptr, 0});

// The same for a call without a record.
template <class... Arguments>
std::optional<Answer> ask(const std::string& name, Arguments... arguments) {
    return play(name, {text_of(arguments)...});
}

} // namespace tavro::script
