// The scripted log.
#include "log/format.h"
#include "recorder.h"

#include <android/log.h>

using tavro::script::Answer;

extern "C" int __android_log_print(int priority, const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = format_text(format, arguments);
    va_end(arguments);
    const char* const shown_tag = tag == nullptr ? "-" : tag;
    tavro::script::append({"log " + std::to_string(priority) + " " + shown_tag + ": " + text, {}});
    const Answer written{1, {}, {}, 0, {}};
    return tavro::script::take(__func__).value_or(written).status;
}
