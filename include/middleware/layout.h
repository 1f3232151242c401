// Proof of a record structure's layout at compile time.
#pragma once

#include <cstddef>
#include <type_traits>

// The middleware was built with its own compiler: a field that moves by one byte corrupts records
// silently, so every named field of a record is pinned to its offset. A structure without padding
// can be zeroed, compared and handed to Java as the bytes that it is.
#define TAVRO_AT(TYPE, MEMBER, OFFSET) static_assert(offsetof(TYPE, MEMBER) == (OFFSET), #TYPE "::" #MEMBER)
#define TAVRO_SIZE(TYPE, SIZE)                                                                                         \
    static_assert(sizeof(TYPE) == (SIZE), #TYPE);                                                                      \
    static_assert(std::is_trivially_copyable_v<TYPE> && std::is_standard_layout_v<TYPE>, #TYPE);                       \
    static_assert(std::has_unique_object_representations_v<TYPE>, #TYPE " has padding")
