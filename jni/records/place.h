// Places of values in the middleware's structures.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavro {

// Offset and width in bytes.
struct Place {
    std::uint16_t offset;
    std::uint16_t width;
};

} // namespace tavro

#define TAVRO_PLACE(TYPE, MEMBER)                                                                                      \
    tavro::Place {                                                                                                     \
        static_cast<std::uint16_t>(offsetof(TYPE, MEMBER)),                                                            \
            static_cast<std::uint16_t>(sizeof(static_cast<TYPE*>(nullptr)->MEMBER))                                    \
    }
