// The platform's log and property functions: traced and forwarded like the middleware's.
#include "log/format.h"
#include "trace/agent.h"
#include "trace/next.h"
#include "trace/settings.h"
#include "trace/sink.h"
#include "trace/text.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <exception>
#include <string_view>

namespace {

using namespace tavro::trace;

constexpr std::string_view kPriorityLetters = "??VDIWEFS"; // by priority, from 0

template <class Function>
Function* next_of(std::atomic<void*>& found, const char* library, const char* name, Function* own) {
    if (found == nullptr) {
        found = find_next(library, name, reinterpret_cast<const void*>(own));
    }
    return reinterpret_cast<Function*>(found.load());
}

char letter_of(int priority) {
    const bool known = priority >= 0 && static_cast<std::size_t>(priority) < kPriorityLetters.size();
    return known ? kPriorityLetters[static_cast<std::size_t>(priority)] : '?';
}

} // namespace

extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...) {
    static std::atomic<void*> found{nullptr};
    const int callers_errno = errno;
    int result = -ENOMEM;
    va_list arguments;
    va_start(arguments, format);
    try {
        auto* const next = next_of(found, "liblog.so", "__android_log_print", &__android_log_print);
        errno = callers_errno; // the format may contain %m
        const std::string text = format_text(format, arguments);
        if (!is_quiet()) {
            log_line(letter_of(priority), tag == nullptr || *tag == '\0' ? "-" : escaped(tag), escaped(text));
        }
        errno = callers_errno;
        result = next == nullptr ? -1 : next(priority, tag, "%s", text.c_str());
    } catch (const std::exception&) {
        // Out of memory: the line is lost, as it is in the log.
    }
    va_end(arguments);
    return result;
}

extern "C" int property_get(const char* key, char* value, const char* default_value) {
    static std::atomic<void*> found{nullptr};
    const int callers_errno = errno;
    attach_to_java(); // the library reads a property before it registers its natives
    auto* const next = next_of(found, "libcutils.so", "property_get", &property_get);
    errno = callers_errno;
    if (next == nullptr || is_quiet() || !settings().properties || in_platform_call()) {
        return next == nullptr ? -1 : next(key, value, default_value);
    }
    Event event(Category::kMiddleware, "property_get");
    const int length = next(key, value, default_value);
    const int errno_of_call = errno;
    event.returned();
    try {
        event.argument("key", quoted(key));
        event.argument("default", quoted(default_value));
        event.finish(std::to_string(length), {{"value", quoted(value)}});
    } catch (const std::exception&) {
        // Out of memory: the call is not traced.
    }
    errno = errno_of_call;
    return length;
}
