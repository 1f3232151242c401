// Tables that convert the values of the Java side into codes of the middleware.
#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>

namespace tavro {

// A Java value and the code that is stored for it.
struct Code {
    jint value;
    std::uint32_t code;
};

// Pairs in any order, and the code of every value that is not among them.
class CodeTable {
public:
    template <std::size_t N>
    constexpr explicit CodeTable(const Code (&codes)[N], std::uint32_t fallback)
        : first_(codes), last_(codes + N), fallback_(fallback) {}

    // Stores the code of a value; leaves `code` alone and returns false when the table lacks the value.
    constexpr bool find(jint value, std::uint32_t& code) const {
        for (const Code* entry = first_; entry != last_; ++entry) {
            if (entry->value == value) {
                code = entry->code;
                return true;
            }
        }
        return false;
    }

    constexpr std::uint32_t operator()(jint value) const {
        std::uint32_t code = fallback_;
        find(value, code);
        return code;
    }

private:
    const Code* first_;
    const Code* last_;
    std::uint32_t fallback_;
};

} // namespace tavro
