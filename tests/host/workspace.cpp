#include "workspace.h"

#include "faults/faults.h"
#include "services/control.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace fs = std::filesystem;

Environment::~Environment() {
    for (const auto& [name, value] : before_) {
        if (value) {
            ::setenv(name.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }
}

void Environment::remember(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    before_.emplace(name, value == nullptr ? std::nullopt : std::optional<std::string>(value));
}

void Environment::set(const std::string& name, const std::string& value) {
    remember(name);
    ::setenv(name.c_str(), value.c_str(), 1);
}

void Environment::unset(const std::string& name) {
    remember(name);
    ::unsetenv(name.c_str());
}

Workspace::Workspace() {
    std::string pattern = (fs::temp_directory_path() / "tavro-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("cannot create a directory like " + pattern);
    }
    directory_ = pattern;
    environment.set("TAVRO_HOME", home());
    environment.set("TAVRO_LOG_FILE", path("log"));
    environment.unset("TAVRO_LOCK_TIMEOUT_MS");
    environment.unset("TAVRO_PROPERTIES");
    environment.unset("TAVRO_FAULTS");
    tavro_host_set_faults(""); // also reads no properties, which would open files
    restart();
}

Workspace::~Workspace() {
    restart();
    fs::remove_all(directory_);
}

void Workspace::restart() const { tavro_host_reset(); }

std::vector<std::string> Workspace::log() const {
    std::vector<std::string> lines;
    std::ifstream file(path("log"));
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string Workspace::process_mark() {
    std::string id = std::to_string(::getpid());
    return "(" + std::string(id.size() < 5 ? 5 - id.size() : 0, ' ') + id + ")";
}

void Workspace::write_file(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string Workspace::read_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
