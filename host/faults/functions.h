// The functions of the middleware, numbered in the order of include/middleware/calls.h.
#pragma once

#include "middleware/calls.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace tavro::host {

#define TAVRO_FUNCTION_NUMBER(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) NAME,
enum class Function : std::uint32_t { TAVRO_MIDDLEWARE_CALLS(TAVRO_FUNCTION_NUMBER) };
#undef TAVRO_FUNCTION_NUMBER

// What faults need to know of a function.
struct FunctionTraits {
    std::string_view name;
    bool returns_status; // 0 or a negative status; otherwise a number, such as a channel id
};

#define TAVRO_FUNCTION_TRAITS(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                             \
    {#NAME, std::string_view(#RESULT) == "tavro::MwStatus"},
inline constexpr FunctionTraits kFunctions[] = {TAVRO_MIDDLEWARE_CALLS(TAVRO_FUNCTION_TRAITS)};
#undef TAVRO_FUNCTION_TRAITS

inline constexpr std::size_t kFunctionCount = std::size(kFunctions);

} // namespace tavro::host
