// Values between guards, to show that a function writes the value and nothing else.
#pragma once

#include "conform/check.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace tavro::conform {

// A value directly before a page that can be neither read nor written. A page like that also lies before it, and the
// bytes between that page and the value have a known pattern. The memory is released when the process ends.
template <class Value>
class Guarded {
public:
    // The value's bytes are the pattern until they are written.
    explicit Guarded(Run& run) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        void* memory = mmap(nullptr, 3 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            run.skip("no memory for guard pages");
        }
        auto* bytes = static_cast<unsigned char*>(memory);
        mprotect(bytes, page, PROT_NONE);
        mprotect(bytes + 2 * page, page, PROT_NONE);
        first_ = bytes + page;
        value_ = bytes + 2 * page - sizeof(Value);
        std::memset(first_, kPattern, page);
    }

    Value* get() { return reinterpret_cast<Value*>(value_); }

    // Ends the check as failed if bytes before the value have been written. `call` wrote the value.
    void expect_nothing_before(const Run& run, const std::string& call) const {
        std::size_t changed = 0;
        for (const unsigned char* byte = first_; byte != value_; ++byte) {
            changed += *byte == kPattern ? 0U : 1U;
        }
        run.expect(changed == 0, call + " writes " + std::to_string(sizeof(Value)) + " bytes and nothing before them",
                   std::to_string(changed) + " bytes before them were written");
    }

    // Ends the check as failed if the value has been written.
    void expect_unwritten(const Run& run, const std::string& call) const {
        std::size_t changed = 0;
        for (std::size_t i = 0; i < sizeof(Value); ++i) {
            changed += value_[i] == kPattern ? 0U : 1U;
        }
        run.expect(changed == 0, call + " fails and writes nothing",
                   std::to_string(changed) + " of " + std::to_string(sizeof(Value)) + " bytes were written");
    }

private:
    static constexpr unsigned char kPattern = 0xA5;

    unsigned char* first_;
    unsigned char* value_;
};

} // namespace tavro::conform
