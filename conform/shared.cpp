#include "conform/shared.h"

#include "conform/check.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace tavro::conform {
namespace {

template <std::size_t N>
void copy_text(char (&to)[N], const std::string& from) {
    const std::size_t length = std::min(from.size(), N - 1);
    std::memcpy(to, from.data(), length);
    to[length] = '\0';
}

} // namespace

Settings& settings() {
    static Settings the_settings;
    return the_settings;
}

Shared*& shared_memory() {
    static Shared* memory = nullptr;
    return memory;
}

NotedCall::NotedCall(const std::string& text) {
    Shared* shared = shared_memory();
    if (shared != nullptr) {
        call_ = &shared->noted[shared->calls.fetch_add(1) % kNotedCalls];
        call_->returned = 0;
        copy_text(call_->text, text);
    }
}

void NotedCall::returned(std::int64_t result) const {
    if (call_ != nullptr) {
        call_->result = result;
        call_->returned = 1;
    }
}

std::vector<std::string> noted_calls(const Shared& shared) {
    std::vector<std::string> texts;
    const std::uint32_t end = shared.calls;
    for (std::uint32_t i = end > kNotedCalls ? end - kNotedCalls : 0; i != end; ++i) {
        const Shared::Call& call = shared.noted[i % kNotedCalls];
        texts.push_back(std::string(call.text) + (call.returned != 0 ? " = " + std::to_string(call.result) : " ..."));
    }
    return texts;
}

std::uint16_t own_list_id(std::size_t index) {
    return index == kHighestList ? std::uint16_t{0xFFFF} : static_cast<std::uint16_t>(settings().first_list + index);
}

std::size_t kind_number(const char* kind) {
    constexpr const char* kNames[kKinds] = {"svl", "tsl", "nwl", "satl"};
    std::size_t number = 0;
    while (number < kKinds - 1 && std::strcmp(kNames[number], kind) != 0) {
        ++number;
    }
    return number;
}

void end_check(Outcome outcome, const std::string& expected, const std::string& found) {
    Shared* shared = shared_memory();
    if (shared != nullptr && shared->reported.exchange(1) == 0) {
        copy_text(shared->expected, expected);
        copy_text(shared->found, found);
        shared->outcome = static_cast<std::int32_t>(outcome);
    }
    _exit(0);
}

} // namespace tavro::conform
