// Used by the scripted platform's functions to write the journal and to get their replies.
#pragma once

#include "script.h"

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace tavro::script {

// A handle or a mask, which is written in hexadecimal.
struct Hex {
    std::uint32_t value;
};

// An input record: null, or a pointer to `bytes` bytes.
struct RecordArgument {
    const void* data;
    std::size_t bytes;
};

// Appends an entry to the journal and calls the observer.
void append(Entry entry);

// The reply for one call of that name: the next queued one, else the one set by `always`, else none.
std::optional<Answer> take(const std::string& call);

// The property's value, if it was set. Records the call if `journal_properties` is on.
std::optional<std::string> property(const std::string& name, const std::string& default_value);

// Notes that a handle was given out or given back.
void opened(std::uint32_t handle);
void closed(std::uint32_t handle);

std::string text_of(Hex value);
std::string text_of(const char* text);
std::string text_of(RecordArgument record);
template <class Number>
std::enable_if_t<std::is_integral_v<Number>, std::string> text_of(Number number) {
    return std::to_string(number);
}

// Records "NAME(arguments)" with the bytes of `record` and returns the call's reply, if any.
std::optional<Answer> play(const std::string& name, const std::vector<std::string>& arguments,
                           RecordArgument record = {nullptr, 0});

// Like `play`, for a call without a record.
template <class... Arguments>
std::optional<Answer> ask(const std::string& name, Arguments... arguments) {
    return play(name, {text_of(arguments)...});
}

} // namespace tavro::script
