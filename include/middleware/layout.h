// Proof of a record structure's layout at compile time.
#pragma once

#include <cstddef>

// The middleware was built with its own compiler: a field that moves by one byte corrupts records
// silently, so every named field of a record is pinned to its offset.
#define TAVRO_AT(TYPE, MEMBER, OFFSET) static_assert(offsetof(TYPE, MEMBER) == (OFFSET), #TYPE "::" #MEMBER)
#define TAVRO_SIZE(TYPE, SIZE) static_assert(sizeof(TYPE) == (SIZE), #TYPE)
