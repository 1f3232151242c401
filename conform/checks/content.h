// Files that checks write and read.
#pragma once

#include "conform/check.h"

#include <cstdio>
#include <string>

namespace tavro::conform {

// The checks of the middleware's file functions, which add_file_checks adds, too.
void add_raw_file_checks(std::vector<Check>& checks);

// Creates a file.
inline void write_file(Run& run, const std::string& path, const std::string& content) {
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    run.expect(file != nullptr, "to create " + path, "it cannot be created");
    const std::size_t written = std::fwrite(content.data(), 1, content.size(), file);
    run.expect(std::fclose(file) == 0 && written == content.size(), "to write " + path, "it cannot be written");
}

// The content of a file; empty if it does not exist.
inline std::string content_of(const std::string& path) {
    std::string content;
    if (std::FILE* const file = std::fopen(path.c_str(), "rb")) {
        char buffer[4096];
        for (std::size_t bytes = 1; bytes > 0;) {
            bytes = std::fread(buffer, 1, sizeof buffer, file);
            content.append(buffer, bytes);
        }
        std::fclose(file);
    }
    return content;
}

inline bool exists(const std::string& path) {
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file != nullptr) {
        std::fclose(file);
    }
    return file != nullptr;
}

} // namespace tavro::conform
