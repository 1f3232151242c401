#include "trace/json.h"

#include "trace/text.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <unistd.h>

namespace tavro::trace {
namespace {

constexpr std::size_t kMostDigits = 15; // a double holds them exactly

} // namespace

std::string json_string(const std::string& text) { return '"' + json_escaped(text) + '"'; }

std::string json_value(const std::string& text) {
    const std::size_t sign = text.rfind('-', 0) == 0 ? 1 : 0;
    const bool number = text.size() > sign && text.size() <= sign + kMostDigits &&
                        text.find_first_not_of("0123456789", sign) == std::string::npos &&
                        (text[sign] != '0' || text.size() == sign + 1);
    return number ? text : json_string(text);
}

std::string json_microseconds(std::int64_t nanoseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%lld.%03d", static_cast<long long>(nanoseconds / 1000),
                  static_cast<int>(nanoseconds % 1000));
    return text.data();
}

std::string json_event(long thread, const char* phase, std::int64_t at_ns, const std::string& rest) {
    return R"({"ph":")" + std::string(phase) + R"(","pid":)" + std::to_string(::getpid()) + R"(,"tid":)" +
           std::to_string(thread) + R"(,"ts":)" + json_microseconds(at_ns) + ',' + rest + '}';
}

} // namespace tavro::trace
