// A file that is written aside and takes its place whole.
#pragma once

#include <string>

namespace tavro::host {

// Owns the temporary file `PATH.tmp.PID.N` beside the file that it is to replace. Whoever reads PATH
// finds the old or the new content, never a part, even if this process is killed half-way; what a
// killed process left beside PATH is removed by the next replacement.
class ReplacementFile {
public:
    explicit ReplacementFile(const std::string& path);
    ~ReplacementFile(); // removes the temporary file unless it took its place
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    // Where to write; nothing is there yet.
    const std::string& temporary() const { return temporary_; }

    // Brings the temporary file to the disk and renames it. Returns 0 or an errno value; after a failure
    // the file at PATH is as it was.
    int take_place();

private:
    void remove_leftovers() const;

    std::string path_;
    std::string temporary_;
    bool in_place_ = false;
};

} // namespace tavro::host
