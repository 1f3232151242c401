#include "control.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

[[gnu::noinline, gnu::cold]] void journal_line(int priority, const char* tag, const char* format, std::va_list values) {
    char text[1024];
    std::vsnprintf(text, sizeof text, format, values);
    tavro_memory_journal(
        ("log " + std::to_string(priority) + " " + (tag == nullptr ? "-" : tag) + ": " + text).c_str());
}

} // namespace

int __android_log_print(int priority, const char* tag, const char* format, ...) {
    ++tavro_memory_lines;
    if (tavro_memory_journal != nullptr) {
        std::va_list values;
        va_start(values, format);
        journal_line(priority, tag, format, values);
        va_end(values);
    }
    return 1;
}
