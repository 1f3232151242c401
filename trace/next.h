// Finds the platform's own functions, which those of the tracer hide.
#pragma once

namespace tavro::trace {

// Returns the function `name` of the platform library `library` (its file name), or null if there is none. `own` is the
// tracer's function of that name. The virtual machine opens the library and with it the platform for itself alone, so
// the next definition in the order of the global scope (RTLD_NEXT) is not enough.
void* find_next(const char* library, const char* name, const void* own) noexcept;

} // namespace tavro::trace
