// Replaces a file atomically: write a temporary file, then rename it.
#pragma once

#include "open_file.h"

#include <cstddef>
#include <string>

namespace tavro::host {

// Owns the temporary file `PATH.tavro-tmp.PID.N` next to PATH. Readers of PATH see the old or the new content, never
// part of it, even if this process is killed. The next replacement of PATH removes temporary files left by killed
// processes: those that nobody has locked.
class ReplacementFile {
public:
    explicit ReplacementFile(const std::string& path);
    ~ReplacementFile(); // removes the temporary file unless it was committed
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    // Appends to the temporary file. Returns 0 or an errno value; so do the calls after a failure.
    int write(const void* bytes, std::size_t count);

    // Syncs the temporary file, renames it to PATH, and syncs the directory. Returns 0 or an errno value. On failure
    // PATH is unchanged. If only the sync of the directory fails, returns 0 and logs it: PATH is the new file then, but
    // a power failure may bring the old one back.
    int commit();

private:
    void create_temporary();
    void remove_leftovers() const;

    std::string path_;
    std::string temporary_; // empty if there is none
    File file_;
    int error_ = 0;
};

} // namespace tavro::host
