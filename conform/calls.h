// The platform's 88 functions as the checks call them: bound at run time, and noted so that a report can show them.
//
// Nothing here is linked to the platform. load_platform() opens the five libraries by their file names and looks every
// function up, so a missing one is a failed check and not a program that does not start.
#pragma once

#include "middleware/calls.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavro::conform {

// A library of the platform, with the functions that it must have.
struct Library {
    const char* file;                   // such as "libcutils.so"
    std::vector<const char*> functions; // names
    std::string error;                  // why it could not be loaded; empty if it was
    std::vector<const char*> not_found; // functions that the loader does not find; all of them without the library
};

// Loads the libraries into this process and binds the functions; a preloaded library takes precedence. The result stays
// valid until the process ends. Later calls return the first result.
const std::array<Library, 5>& load_platform();

// The libraries and their functions, without loading anything.
const std::array<Library, 5>& platform_libraries();

// The middleware's functions, under their own names. Each wrapper notes the call with its arguments and its result,
// so a report can name the call that failed, crashed or did not return. A function that the platform lacks ends the
// check as skipped: one check of its own reports it.
namespace mw {
#define TAVRO_DECLARE_WRAPPER(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) RESULT NAME PARAMETERS;
TAVRO_MIDDLEWARE_CALLS(TAVRO_DECLARE_WRAPPER)
#undef TAVRO_DECLARE_WRAPPER

// Notes the call and returns the platform's __android_log_print.
using LogFunction = int(int priority, const char* tag, const char* format, ...);
LogFunction* log_function(int priority, const char* tag, const char* format);

// The platform's __android_log_print; `tag` may be null.
template <class... Arguments>
int log_print(int priority, const char* tag, const char* format, Arguments... arguments) {
    return log_function(priority, tag, format)(priority, tag, format, arguments...);
}
// The platform's property_get. `value` has 92 bytes.
int property_get(const char* key, char* value, const char* default_value);
} // namespace mw

// Text of this thread's last call, such as "x_svl_open(65301, 0, 0, out)".
const std::string& last_call();

} // namespace tavro::conform
