// What the environment variables say.
#pragma once

#include <string>
#include <vector>

namespace tavro::trace {

struct Settings {
    std::string file;               // TAVRO_TRACE; empty: standard error
    bool json = false;              // TAVRO_TRACE_FORMAT is json, not text
    bool jni = false;               // TAVRO_TRACE_JNI is 1: also the JNI calls of the natives
    bool properties = false;        // TAVRO_TRACE_PROPERTIES is 1: also calls of property_get
    bool early = false;             // TAVRO_TRACE_EARLY is 1: a call is written before it is made, its result after it
    std::vector<std::string> wrong; // one sentence per variable with a bad value; the default is used instead
};

// Read once, at the first call.
const Settings& settings();

} // namespace tavro::trace
