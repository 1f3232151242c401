// A platform with a defect, for tests: preloaded before the platform's libraries, this one forwards every call to them,
// except where the defect that TAVRO_BROKEN names does something else.
//
// TAVRO_BROKEN is a shell pattern for the names of variants, which are the names of checks. Several variants may be
// active at once. If it matches none, the process ends with status 99 when it loads a library. TAVRO_BROKEN=list prints
// all names. "correct.NAME" is no defect: a platform that differs from the stand-in, but does all that the library
// needs.
#include "hooks.h"
#include "past.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fnmatch.h>
#include <mutex>
#include <unistd.h>

using namespace tavro;
using namespace tavro::broken;

namespace {

constexpr int kNoVariant = 99;
constexpr std::size_t kLongestLine = 65536;

[[noreturn]] void give_up(const char* what, const char* name) {
    std::fprintf(stderr, "libtavro_broken: %s: %s\n", what, name);
    _exit(kNoVariant);
}

Variants all_variants() {
    Variants variants;
    add_library_variants(variants);
    add_list_variants(variants);
    add_handle_variants(variants);
    add_record_variants(variants);
    add_query_variants(variants);
    add_filter_variants(variants);
    add_lock_variants(variants);
    add_file_variants(variants);
    add_helper_variants(variants);
    add_correct_variants(variants);
    return variants;
}

// The loader's own functions; this library has the same names.
template <class Function>
Function* loaders(const char* name) {
    return reinterpret_cast<Function*>(::dlvsym(RTLD_NEXT, name, "GLIBC_2.34"));
}
void* real_dlopen(const char* library, int flags) {
    static auto* const function = loaders<void*(const char*, int)>("dlopen");
    return function(library, flags);
}
void* real_dlsym(void* handle, const char* name) {
    static auto* const function = loaders<void*(void*, const char*)>("dlsym");
    return function(handle, name);
}

// Finds a function in the library that the program has loaded, not in this one. Null if it is not there.
template <class Result, class... Parameters>
void find(const char* library, const char* name, std::function<Result(Parameters...)>& next) {
    void* const loaded = next ? nullptr : real_dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
    if (loaded != nullptr) {
        next = reinterpret_cast<Result (*)(Parameters...)>(real_dlsym(loaded, name));
    }
}

using LogFunction = int (*)(int, const char*, const char*, ...);

void find_platform() {
#define TAVRO_FIND(LIBRARY, CALLS, NAME, METHOD) find(LIBRARY, #NAME, CALLS::next.METHOD);
#define TAVRO_FIND_SVL(R, NAME, METHOD, P, A) TAVRO_FIND("libvelotra_tv_services.so", Svl, NAME, METHOD)
#define TAVRO_FIND_TSL(R, NAME, METHOD, P, A) TAVRO_FIND("libvelotra_tv_services.so", Tsl, NAME, METHOD)
#define TAVRO_FIND_NWL(R, NAME, METHOD, P, A) TAVRO_FIND("libvelotra_tv_services.so", Nwl, NAME, METHOD)
#define TAVRO_FIND_SATL(R, NAME, METHOD, P, A) TAVRO_FIND("libvelotra_tv_services.so", Satl, NAME, METHOD)
#define TAVRO_FIND_BUILDER(R, NAME, METHOD, P, A) TAVRO_FIND("libvelotra_tv_svl_builder.so", Builder, NAME, METHOD)
#define TAVRO_FIND_BASIC(R, NAME, METHOD, P, A) TAVRO_FIND("libvelotra_tv_basic.so", Basic, NAME, METHOD)
    TAVRO_SVL_CALLS(TAVRO_FIND_SVL)
    TAVRO_TSL_CALLS(TAVRO_FIND_TSL)
    TAVRO_NWL_CALLS(TAVRO_FIND_NWL)
    TAVRO_SATL_CALLS(TAVRO_FIND_SATL)
    TAVRO_SVL_BUILDER_CALLS(TAVRO_FIND_BUILDER)
    TAVRO_BASIC_CALLS(TAVRO_FIND_BASIC)
    static bool follows = false;
    if (!follows && Svl::next.open) {
        follows = true;
        follow<Svl>();
        follow<Tsl>();
        follow<Nwl>();
        follow<Satl>();
    }
    find("libcutils.so", "property_get", System::next.property_get);
    if (void* const loaded = real_dlopen("liblog.so", RTLD_LAZY | RTLD_NOLOAD)) {
        const auto log = reinterpret_cast<LogFunction>(real_dlsym(loaded, "__android_log_print"));
        System::next.log = [log](int priority, const char* tag, const char* text) {
            return log(priority, tag, "%s", text);
        };
    }
}

void break_platform() {
    const char* const pattern = std::getenv("TAVRO_BROKEN");
    if (pattern == nullptr) {
        return;
    }
    bool found = false;
    for (const Variant& variant : all_variants()) {
        if (::fnmatch(pattern, variant.check.c_str(), 0) == 0) {
            variant.break_it();
            found = true;
        }
    }
    if (!found) {
        give_up("no variant has this name", pattern);
    }
}

// Prints the names, before the program starts.
__attribute__((constructor)) void start() {
    const char* const pattern = std::getenv("TAVRO_BROKEN");
    if (pattern != nullptr && std::strcmp(pattern, "list") == 0) {
        for (const Variant& variant : all_variants()) {
            if (variant.check.rfind("correct.", 0) != 0) {
                std::printf("%s\n", variant.check.c_str());
            }
        }
        std::fflush(stdout);
        _exit(0);
    }
}

// The function to call: the hook, or the platform's.
template <class Function>
const Function& chosen(const Function& hook, const Function& next, const char* name) {
    if (!hook && !next) {
        give_up("the platform lacks a function", name);
    }
    return hook ? hook : next;
}

} // namespace

extern "C" {

#define TAVRO_FORWARD(GROUP, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                              \
    RESULT NAME PARAMETERS { return chosen(GROUP::hooks.METHOD, GROUP::next.METHOD, #NAME) ARGUMENTS; }
#define TAVRO_FORWARD_SVL(R, N, M, P, A) TAVRO_FORWARD(Svl, R, N, M, P, A)
#define TAVRO_FORWARD_TSL(R, N, M, P, A) TAVRO_FORWARD(Tsl, R, N, M, P, A)
#define TAVRO_FORWARD_NWL(R, N, M, P, A) TAVRO_FORWARD(Nwl, R, N, M, P, A)
#define TAVRO_FORWARD_SATL(R, N, M, P, A) TAVRO_FORWARD(Satl, R, N, M, P, A)
#define TAVRO_FORWARD_BUILDER(R, N, M, P, A) TAVRO_FORWARD(Builder, R, N, M, P, A)
#define TAVRO_FORWARD_BASIC(R, N, M, P, A) TAVRO_FORWARD(Basic, R, N, M, P, A)

TAVRO_SVL_CALLS(TAVRO_FORWARD_SVL)
TAVRO_TSL_CALLS(TAVRO_FORWARD_TSL)
TAVRO_NWL_CALLS(TAVRO_FORWARD_NWL)
TAVRO_SATL_CALLS(TAVRO_FORWARD_SATL)
TAVRO_SVL_BUILDER_CALLS(TAVRO_FORWARD_BUILDER)
TAVRO_BASIC_CALLS(TAVRO_FORWARD_BASIC)

int property_get(const char* key, char* value, const char* default_value) {
    return chosen(System::hooks.property_get, System::next.property_get, __func__)(key, value, default_value);
}

int __android_log_print(int priority, const char* tag, const char* format, ...) {
    std::string text(kLongestLine, '\0');
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    return chosen(System::hooks.log, System::next.log, __func__)(priority, tag, text.c_str());
}

void* dlopen(const char* library, int flags) {
    static std::once_flag once;
    std::call_once(once, break_platform); // not earlier: all objects of this library exist now
    const bool hidden = library != nullptr && Loader::hides_library && Loader::hides_library(library);
    void* const loaded = real_dlopen(library, flags);
    find_platform();
    return hidden ? real_dlopen("hidden", flags) : loaded; // a library that is not there sets dlerror
}

void* dlsym(void* handle, const char* name) {
    const bool hidden = Loader::hides_function && Loader::hides_function(name);
    return real_dlsym(handle, hidden ? "hidden" : name);
}
}
