#include "trace/settings.h"

#include "trace/text.h"

#include <cstdlib>
#include <string_view>

namespace tavro::trace {
namespace {

// The value of a variable that must be `no` (the default) or `yes`.
bool is_on(Settings& settings, const char* name, std::string_view no, std::string_view yes) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0' || value == no) {
        return false;
    }
    if (value == yes) {
        return true;
    }
    settings.wrong.push_back(std::string(name) + " is " + quoted(value) + ", not " + std::string(no) + " or " +
                             std::string(yes) + "; using " + std::string(no));
    return false;
}

Settings read() {
    Settings settings;
    const char* const file = std::getenv("TAVRO_TRACE");
    settings.file = file == nullptr ? "" : file;
    settings.json = is_on(settings, "TAVRO_TRACE_FORMAT", "text", "json");
    settings.jni = is_on(settings, "TAVRO_TRACE_JNI", "0", "1");
    settings.properties = is_on(settings, "TAVRO_TRACE_PROPERTIES", "0", "1");
    settings.early = is_on(settings, "TAVRO_TRACE_EARLY", "0", "1");
    return settings;
}

} // namespace

const Settings& settings() {
    static const Settings& once = *new Settings(read()); // never destroyed: calls are traced during exit, too
    return once;
}

} // namespace tavro::trace
