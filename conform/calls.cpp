#include "conform/calls.h"

#include "conform/check.h"
#include "conform/shared.h"

#include <cstring>
#include <dlfcn.h>
#include <tuple>

namespace tavro::conform {
namespace {

// The functions as the loader found them; null for a missing one.
struct Bound {
#define TAVRO_POINTER(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) RESULT(*NAME) PARAMETERS = nullptr;
    TAVRO_MIDDLEWARE_CALLS(TAVRO_POINTER)
#undef TAVRO_POINTER
    mw::LogFunction* __android_log_print = nullptr;
    int (*property_get)(const char*, char*, const char*) = nullptr;
};

Bound& bound() {
    static Bound functions;
    return functions;
}

#define TAVRO_NAME(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) #NAME,

std::array<Library, 5> make_libraries() {
    return {{
        {"libvelotra_tv_basic.so", {TAVRO_BASIC_CALLS(TAVRO_NAME)}, "", {}},
        {"libvelotra_tv_svl_builder.so", {TAVRO_SVL_BUILDER_CALLS(TAVRO_NAME)}, "", {}},
        {"libvelotra_tv_services.so", {TAVRO_SERVICES_CALLS(TAVRO_NAME)}, "", {}},
        {"libcutils.so", {"property_get"}, "", {}},
        {"liblog.so", {"__android_log_print"}, "", {}},
    }};
}

// Looks a function up where every library of the process is found, so that a preloaded one comes first, and in the
// platform's libraries, for loaders that keep them apart.
template <class Function>
void look_up(const std::array<void*, 5>& handles, const char* name, Function*& function) {
    void* found = dlsym(RTLD_DEFAULT, name);
    for (std::size_t i = 0; found == nullptr && i < handles.size(); ++i) {
        found = handles[i] == nullptr ? nullptr : dlsym(handles[i], name);
    }
    function = reinterpret_cast<Function*>(found);
}

bool is_bound(const char* name) {
#define TAVRO_IS_BOUND(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                                    \
    if (std::strcmp(name, #NAME) == 0) {                                                                               \
        return bound().NAME != nullptr;                                                                                \
    }
    TAVRO_MIDDLEWARE_CALLS(TAVRO_IS_BOUND)
#undef TAVRO_IS_BOUND
    return std::strcmp(name, "property_get") == 0 ? bound().property_get != nullptr
                                                  : bound().__android_log_print != nullptr;
}

std::array<Library, 5> load() {
    std::array<Library, 5> libraries = make_libraries();
    std::array<void*, 5> handles = {};
    for (std::size_t i = 0; i < libraries.size(); ++i) {
        handles[i] = dlopen(libraries[i].file, RTLD_NOW | RTLD_GLOBAL);
        if (handles[i] == nullptr) {
            const char* error = dlerror();
            libraries[i].error = error == nullptr ? "dlopen failed" : error;
        }
    }
#define TAVRO_LOOK_UP(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS) look_up(handles, #NAME, bound().NAME);
    TAVRO_MIDDLEWARE_CALLS(TAVRO_LOOK_UP)
#undef TAVRO_LOOK_UP
    look_up(handles, "__android_log_print", bound().__android_log_print);
    look_up(handles, "property_get", bound().property_get);
    for (Library& library : libraries) {
        for (const char* name : library.functions) {
            if (!is_bound(name)) {
                library.not_found.push_back(name);
            }
        }
    }
    return libraries;
}

// The text of the thread's last call.
std::string& this_threads_call() {
    thread_local std::string text;
    return text;
}

void put(std::string& text, const char* value) { text += value == nullptr ? "null" : '"' + std::string(value) + '"'; }
void put(std::string& text, char* value) { text += value == nullptr ? "null" : "out"; }
void put(std::string& text, std::uint32_t value) {
    text += value == kMwEveryNetworkMask ? "0xFFFFFFFF" : std::to_string(value);
}
void put(std::string& text, std::int32_t value) { text += std::to_string(value); }
void put(std::string& text, std::uint16_t value) { text += std::to_string(value); }
template <class Pointed>
void put(std::string& text, Pointed* value) {
    text += value == nullptr ? "null" : std::is_integral_v<Pointed> ? "out" : "record";
}

// The call as text, which is also the thread's last call.
template <class... Arguments>
const std::string& describe(const char* name, const std::tuple<Arguments...>& arguments) {
    std::string& text = this_threads_call();
    text = name;
    text += '(';
    bool first = true;
    std::apply([&](const auto&... argument) { ((text += first ? "" : ", ", first = false, put(text, argument)), ...); },
               arguments);
    text += ')';
    return text;
}

// Notes that a check may have made a list, before it is made.
void note_list(const char* name, std::uint16_t list_id) {
    Shared* shared = shared_memory();
    if (shared == nullptr) {
        return;
    }
    const std::string kind(name + 2, std::strcspn(name + 2, "_")); // x_svl_create
    const std::uint32_t index =
        list_id == own_list_id(kHighestList) ? kHighestList : list_id - settings().first_list + 0U;
    shared->lists[kind_number(kind.c_str())] |= 1U << (index & 31U);
}

// Only x_..._create has seven arguments of which the first is a text.
template <class... Arguments>
void note_created(const char* name, const std::tuple<Arguments...>& arguments) {
    if constexpr (sizeof...(Arguments) == 7 &&
                  std::is_same_v<std::tuple_element_t<0, std::tuple<Arguments...>>, const char*>) {
        note_list(name, std::get<1>(arguments));
    }
}

// Ends the check as skipped without the function.
template <class Function>
void need(Function* function, const char* name) {
    if (function == nullptr) {
        end_check(Outcome::kSkipped, "", std::string(name) + " is missing");
    }
}

template <class Result, class... Parameters, class Arguments>
Result call(const char* name, Result (*function)(Parameters...), const Arguments& arguments) {
    const std::string& text = describe(name, arguments);
    need(function, name);
    note_created(name, arguments);
    const NotedCall noted(text);
    const Result result = std::apply(function, arguments);
    noted.returned(result);
    return result;
}

} // namespace

const std::array<Library, 5>& load_platform() {
    static const std::array<Library, 5> libraries = load();
    return libraries;
}

const std::array<Library, 5>& platform_libraries() {
    static const std::array<Library, 5> libraries = make_libraries();
    return libraries;
}

const std::string& last_call() { return this_threads_call(); }

namespace mw {

#define TAVRO_DEFINE_WRAPPER(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                              \
    RESULT NAME PARAMETERS { return call(#NAME, bound().NAME, std::make_tuple ARGUMENTS); }
TAVRO_MIDDLEWARE_CALLS(TAVRO_DEFINE_WRAPPER)
#undef TAVRO_DEFINE_WRAPPER

LogFunction* log_function(int priority, const char* tag, const char* format) {
    const NotedCall noted(describe("__android_log_print", std::make_tuple(priority, tag, format)));
    need(bound().__android_log_print, "__android_log_print");
    return bound().__android_log_print;
}

int property_get(const char* key, char* value, const char* default_value) {
    return call("property_get", bound().property_get, std::make_tuple(key, value, default_value));
}

} // namespace mw
} // namespace tavro::conform
