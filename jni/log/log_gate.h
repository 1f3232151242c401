// The log gate, and the two kinds of line that the library writes.
#pragma once

#include <android/log.h>

namespace tavro {

// The system property that holds the wanted verbosity; "persist." in front of it names the fallback.
inline constexpr char kLogLevelProperty[] = "vendor.vlt.broadcast.log.level";

// A gate level and the priority that goes with it.
inline constexpr int kErrorLevel = 5;
inline constexpr int kErrorPriority = 6;
inline constexpr int kDebugLevel = 2;
inline constexpr int kDebugPriority = 3;

} // namespace tavro

// Returns 1 when a line of `level` may be written, else 0. Levels are 1 verbose, 2 debug, 3 info, 4 warning, 5 error:
// one below the platform's priorities. Reads the property at every call, so that the verbosity of a running TV can
// change.
unsigned int __velotra_log_is_loggable(int level, const char* property);

namespace tavro {

// The same for kLogLevelProperty, which all lines of the library use.
bool is_loggable(int level);

} // namespace tavro

// Two arguments for "%.*s": a text field of a record, which may lack its NUL.
#define TAVRO_BOUNDED(ARRAY) static_cast<int>(sizeof(ARRAY)), ARRAY

// Macros, so that arguments are evaluated only when the gate is open and the compiler checks the format.
#define TAVRO_LOG_LINE(level, priority, tag, ...)                                                                      \
    do {                                                                                                               \
        if (tavro::is_loggable(level)) {                                                                               \
            __android_log_print(priority, tag, __VA_ARGS__);                                                           \
        }                                                                                                              \
    } while (false)

#define TAVRO_LOG_ERROR(tag, ...) TAVRO_LOG_LINE(tavro::kErrorLevel, tavro::kErrorPriority, tag, __VA_ARGS__)
#define TAVRO_LOG_DEBUG(tag, ...) TAVRO_LOG_LINE(tavro::kDebugLevel, tavro::kDebugPriority, tag, __VA_ARGS__)
