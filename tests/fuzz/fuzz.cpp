#include "fuzz.h"

#include <cstdio>
#include <cstdlib>

// A small quarantine of freed memory keeps the memory use of long runs down. ASAN_OPTIONS takes precedence.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=16"; }

namespace tavro::fuzz {

void fail(const std::string& rule) {
    std::fprintf(stderr, "BROKEN RULE: %s\n", rule.c_str());
    std::abort();
}

} // namespace tavro::fuzz
