#include "paths.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace tavro::host {
namespace {

// TV directories that the broadcast stack uses.
constexpr const char* kPlatformDirectories[] = {"/cache", "/data", "/3rd", "/mnt/vendor"};

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool is_below(const std::string& path, const std::string& directory) {
    return path == directory || path.compare(0, directory.size() + 1, directory + "/") == 0;
}

} // namespace

std::string home_directory() {
    std::string home = variable("TAVRO_HOME");
    if (home.empty()) {
        const std::string state = variable("XDG_STATE_HOME");
        home = state.empty() ? variable("HOME") + "/.local/state/tavro" : state + "/tavro";
    }
    std::error_code ignored;
    std::string absolute = fs::absolute(home, ignored).lexically_normal().string();
    if (absolute.size() > 1 && absolute.back() == '/') {
        absolute.pop_back();
    }
    return absolute;
}

bool is_platform_path(const char* path) {
    const std::string normal = fs::path(path).lexically_normal().string();
    if (is_below(normal, home_directory())) {
        return false; // a storage directory may itself be below /data
    }
    for (const char* directory : kPlatformDirectories) {
        if (is_below(normal, directory)) {
            return true;
        }
    }
    return false;
}

std::string resolve_path(const char* path) {
    return is_platform_path(path) ? home_directory() + fs::path(path).lexically_normal().string() : path;
}

bool make_parents(const std::string& resolved) {
    std::error_code error;
    fs::create_directories(fs::path(resolved).parent_path(), error);
    return !error;
}

} // namespace tavro::host
