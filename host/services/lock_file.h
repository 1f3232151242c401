// Locks between processes: one byte of a file for each list, locked with open-file-description locks,
// which end with the process that holds them however it ends.
#pragma once

#include "kinds.h"

#include <cstdint>
#include <string>

namespace tavro::host {

// What a process, or a thread of it, has of a list's lock.
enum class LockLevel { kNone, kRead, kWrite };

class LockFile {
public:
    // Opens or makes the file. Throws Failure(kHostStorageUnavailable).
    explicit LockFile(const std::string& path);
    ~LockFile();
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;

    // Changes this process's hold of a list without waiting. Returns false when another process is in
    // the way; the hold is then what it was. Giving up or lowering a hold always succeeds.
    bool set(const ListKey& list, LockLevel level);

    // Waits until no other process opens the storage, and keeps it so until `end_opening`.
    void begin_opening();
    void end_opening();

    // The process and thread that last took the list's lock: "thread 12 of process 34".
    std::string last_holder(const ListKey& list) const;

private:
    bool set_byte(std::int64_t offset, LockLevel level, bool wait);

    std::string path_;
    int file_;
};

} // namespace tavro::host
