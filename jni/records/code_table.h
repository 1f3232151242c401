// Tables that convert Java values into the codes that records store.
#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>

namespace tavro {

// A Java value, the code stored for it, and what it means. The names are for documents and tools: the
// library carries the numbers alone.
struct NamedCode {
    jint value;
    std::uint32_t code;
    const char* name;
};

// A Java value and the code stored for it.
struct Code {
    jint value;
    std::uint32_t code;
};

template <std::size_t N>
struct Codes {
    Code entries[N];
};

// The numbers of a table.
template <std::size_t N>
constexpr Codes<N> numbers(const NamedCode (&named)[N]) {
    Codes<N> codes = {};
    for (std::size_t i = 0; i < N; ++i) {
        codes.entries[i] = {named[i].value, named[i].code};
    }
    return codes;
}

// Pairs in any order, and the code for all other values.
class CodeTable {
public:
    template <std::size_t N>
    constexpr explicit CodeTable(const Codes<N>& codes, std::uint32_t fallback)
        : first_(codes.entries), last_(codes.entries + N), fallback_(fallback) {}

    // Sets `code` to the code of a value. Returns false and leaves `code` alone when the table lacks the value.
    constexpr bool find(jint value, std::uint32_t& code) const {
        for (const Code* entry = first_; entry != last_; ++entry) {
            if (entry->value == value) {
                code = entry->code;
                return true;
            }
        }
        return false;
    }

    // The code of a value, or the fallback.
    constexpr std::uint32_t operator()(jint value) const {
        std::uint32_t code = fallback_;
        find(value, code);
        return code;
    }

    constexpr std::uint32_t fallback() const { return fallback_; }

private:
    const Code* first_;
    const Code* last_;
    std::uint32_t fallback_;
};

} // namespace tavro
