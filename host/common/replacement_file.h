// Replaces a file atomically: write a temporary file, then rename it.
#pragma once

#include <string>

namespace tavro::host {

// Owns the temporary file `PATH.tmp.PID.N` next to PATH. Readers of PATH see the old or the new content, never part of
// it, even if this process is killed. The next replacement of PATH removes temporary files left by killed processes.
class ReplacementFile {
public:
    explicit ReplacementFile(const std::string& path);
    ~ReplacementFile(); // removes the temporary file unless it was committed
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    // Path to write to. The file does not exist yet.
    const std::string& temporary() const { return temporary_; }

    // Syncs the temporary file and renames it to PATH. Returns 0 or an errno value. On failure PATH is unchanged.
    int commit();

private:
    void remove_leftovers() const;

    std::string path_;
    std::string temporary_;
    bool committed_ = false;
};

} // namespace tavro::host
