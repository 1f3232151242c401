#include "trace/next.h"

#include "trace/sink.h"

#include <dlfcn.h>
#include <exception>
#include <string>

namespace tavro::trace {
namespace {

void* look_up(void* library, const char* name, const void* own) {
    void* const found = library == nullptr ? nullptr : ::dlsym(library, name);
    return found == own ? nullptr : found;
}

} // namespace

void* find_next(const char* library, const char* name, const void* own) noexcept {
    // First the library that is already loaded: a search by name could find another file.
    void* found = look_up(::dlopen(library, RTLD_LAZY | RTLD_NOLOAD), name, own);
    if (found == nullptr) {
        found = look_up(RTLD_NEXT, name, own);
    }
    if (found == nullptr) {
        found = look_up(::dlopen(library, RTLD_LAZY), name, own);
    }
    if (found == nullptr) {
        try {
            remark(std::string("cannot find ") + name + " in " + library + "; its calls return -1");
        } catch (const std::exception&) {
            // Out of memory: the remark is lost.
        }
    }
    return found;
}

} // namespace tavro::trace
