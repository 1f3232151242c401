// What the fuzz targets share: values taken from the input of one run, and checks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>
#include <string>

namespace tavro::fuzz {

// Ends the program with a message. libFuzzer then writes the input to a file.
[[noreturn]] void fail(const std::string& rule);

// Fails if a rule is broken.
inline void require(bool holds, const char* rule) {
    if (!holds) {
        fail(rule);
    }
}

// A new empty folder, in memory if $TMPDIR does not say otherwise. It is removed when the program ends normally.
std::string temporary_folder();

// Values from the input of one run. After its end they are zero or empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : bytes_(data, size) {}

    bool at_end() { return bytes_.remaining_bytes() == 0; }
    bool flag() { return (byte() & 1U) != 0; }
    std::uint8_t byte() { return bytes_.ConsumeIntegral<std::uint8_t>(); }
    std::int32_t number() { return bytes_.ConsumeIntegral<std::int32_t>(); }
    // A number from 0 to one less than `choices`.
    std::uint32_t choice(std::uint32_t choices) { return bytes_.ConsumeIntegralInRange<std::uint32_t>(0, choices - 1); }
    // Text of at most `most` bytes, without NUL.
    std::string text(std::size_t most) {
        const std::string bytes = bytes_.ConsumeRandomLengthString(most);
        return bytes.substr(0, bytes.find('\0'));
    }
    std::string rest() { return bytes_.ConsumeRemainingBytesAsString(); }
    void fill(void* out, std::size_t size) { bytes_.ConsumeData(out, size); }

private:
    FuzzedDataProvider bytes_;
};

} // namespace tavro::fuzz
