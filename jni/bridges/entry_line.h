// The debug lines with which natives begin. A native that adds a service writes a second one after the header.
#pragma once

#include "jni/env/jni_log.h"

namespace tavro {

// The name of a native and the line number that its entry line carries. The numbers are part of the log's contract.
struct Entry {
    const char* name;
    int line;
};

// Some natives write no entry line.
inline constexpr Entry kSilent = {nullptr, 0};

inline void trace_entry(Entry entry) {
    if (entry.name != nullptr) {
        TAVRO_LOG_JNI("[%s][%d] ", entry.name, entry.line);
    }
}

// The entry line of natives without a number.
inline void trace_entry(const char* name) { TAVRO_LOG_JNI("%s", name); }

} // namespace tavro
