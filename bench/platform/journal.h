// Used by the memory platform's functions to write the journal, if there is one.
#pragma once

#include "control.h"

#include <cstddef>
#include <cstdio>
#include <string>

namespace tavro::memory {

// Writes "NAME a b c d" and the bytes of `record`. Not inlined, because benchmarks run without a journal.
[[gnu::noinline, gnu::cold]] inline void journal_call(const char* name, long a, long b, long c, long d,
                                                      const void* record, std::size_t bytes) {
    char head[128];
    std::snprintf(head, sizeof head, "%s %ld %ld %ld %ld ", name, a, b, c, d);
    std::string text = head;
    for (std::size_t i = 0; i < bytes; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<const unsigned char*>(record)[i]);
        text += digits;
    }
    tavro_memory_journal(text.c_str());
}

inline void journal(const char* name, long a = 0, long b = 0, long c = 0, long d = 0, const void* record = nullptr,
                    std::size_t bytes = 0) {
    if (tavro_memory_journal != nullptr) {
        journal_call(name, a, b, c, d, record, bytes);
    }
}

} // namespace tavro::memory
