#include "fuzz.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

// A small quarantine of freed memory keeps the memory use of long runs down. ASAN_OPTIONS takes precedence.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=16"; }

namespace tavro::fuzz {

void fail(const std::string& rule) {
    std::fprintf(stderr, "BROKEN RULE: %s\n", rule.c_str());
    std::abort();
}

std::string temporary_folder() {
    static std::string& folder = *new std::string;
    const char* const parent = std::getenv("TMPDIR");
    folder = std::string(parent == nullptr ? "/dev/shm" : parent) + "/fuzz-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) {
        fail("a folder can be created like " + folder);
    }
    std::atexit([] { std::filesystem::remove_all(folder); });
    return folder;
}

} // namespace tavro::fuzz
