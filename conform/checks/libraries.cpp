// The platform's libraries and their functions.

#include "conform/check.h"

namespace tavro::conform {
namespace {

template <std::size_t Number>
void loads(Run& run) {
    const Library& library = load_platform()[Number];
    run.expect(library.error.empty(), std::string("the loader loads ") + library.file, library.error);
}

template <std::size_t Number>
void has_functions(Run& run) {
    const Library& library = load_platform()[Number];
    if (!library.error.empty() && library.not_found.size() == library.functions.size()) {
        run.skip(std::string(library.file) + " cannot be loaded");
    }
    std::string missing;
    for (const char* name : library.not_found) {
        missing += (missing.empty() ? "" : ", ") + std::string(name);
    }
    run.expect(missing.empty(), std::string("the loader finds all functions of ") + library.file,
               "missing: " + missing);
}

template <std::size_t Number>
void add_rows(std::vector<Check>& checks) {
    const Library& library = platform_libraries()[Number];
    const std::string file = library.file;
    const std::string name = file.substr(0, file.size() - 3);
    const std::vector<std::string> functions(library.functions.begin(), library.functions.end());
    checks.push_back({name + ".load", functions, "The loader finds and loads " + file + ".",
                      "needed by JNI_OnLoad: the library does not load otherwise", Severity::kWrongResult,
                      loads<Number>});
    checks.push_back({name + ".functions", functions, "The loader finds every function in " + file + ".",
                      "needed by JNI_OnLoad: the library does not load otherwise", Severity::kWrongResult,
                      has_functions<Number>});
}

} // namespace

void add_library_checks(std::vector<Check>& checks) {
    add_rows<0>(checks);
    add_rows<1>(checks);
    add_rows<2>(checks);
    add_rows<3>(checks);
    add_rows<4>(checks);
}

} // namespace tavro::conform
