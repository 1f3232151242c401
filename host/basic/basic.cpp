// The middleware's file functions on the workstation's file system.
#include "common/open_file.h"
#include "common/paths.h"
#include "common/replacement_file.h"
#include "common/report.h"
#include "common/user_file.h"
#include "faults/faults.h"
#include "middleware/files.h"
#include "services/status.h"

#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavro;

namespace {

using tavro::host::Failure;
using tavro::host::File;
using tavro::host::file_failure;
using tavro::host::is_platform_path;
using tavro::host::make_parents;
using tavro::host::ReplacementFile;
using tavro::host::resolve_path;

constexpr mode_t kFileMode = 0644;
constexpr std::size_t kCopyBytes = std::size_t{64} * 1024;

bool is_bad(std::uint32_t drive, const char* path) { return drive != kMwRootDrive || path == nullptr || *path == '\0'; }

// Runs `body`. Turns an exception into a status and a log line.
template <class Body>
MwStatus guarded(Body body) noexcept {
    try {
        try {
            return body();
        } catch (const Failure& failure) {
            tavro::host::report_once(failure.what());
            return failure.status();
        }
    } catch (const std::exception&) {
        return kHostOutOfMemory;
    }
}

// Resolves the path of a file that is to be written.
std::string target_of(const char* path) {
    std::string target = resolve_path(path);
    if (is_platform_path(path)) {
        make_parents(target);
    }
    return target;
}

MwStatus prepare(const std::string& path) {
    constexpr char kAction[] = "open";
    tavro::host::refuse_special_file(kHostCannotWriteFile, kAction, path);
    const File file(tavro::host::open_file(path.c_str(), O_RDWR | O_CREAT | O_NONBLOCK, kFileMode));
    if (!file.is_open()) {
        throw file_failure(kHostCannotWriteFile, kAction, path, errno);
    }
    return kMwOk;
}

MwStatus query(const std::string& path, std::uint32_t& size, std::uint32_t& modified, std::uint32_t& mode) {
    struct stat found {};
    if (::stat(path.c_str(), &found) != 0 && errno != ENOENT) {
        throw file_failure(kHostCannotReadFile, "find", path, errno);
    }
    if (!S_ISREG(found.st_mode)) {
        return kMwNoFile;
    }
    size = static_cast<std::uint32_t>(found.st_size);
    modified = static_cast<std::uint32_t>(found.st_mtime);
    mode = found.st_mode;
    return kMwOk;
}

MwStatus copy_file(const std::string& from, const char* to) {
    constexpr char kReading[] = "read";
    constexpr char kWriting[] = "write";
    std::uint64_t ignored = 0;
    const File source = tavro::host::open_to_read(kReading, from, ignored);
    if (!source.is_open()) {
        return kMwNoFile;
    }
    const std::string target = target_of(to);
    tavro::host::refuse_special_file(kHostCannotWriteFile, kWriting, target);
    ReplacementFile replacement(target);
    std::string buffer(kCopyBytes, '\0');
    int error = 0;
    for (std::size_t bytes = buffer.size(); error == 0 && bytes == buffer.size();) {
        const int unreadable = tavro::host::read_all(source, buffer.data(), bytes);
        if (unreadable != 0) {
            throw file_failure(kHostCannotReadFile, kReading, from, unreadable);
        }
        error = replacement.write(buffer.data(), bytes);
    }
    if (error == 0) {
        error = replacement.commit();
    }
    if (error != 0) {
        throw file_failure(kHostCannotWriteFile, kWriting, target, error);
    }
    return kMwOk;
}

MwStatus remove_file(const std::string& path) {
    constexpr char kAction[] = "delete";
    tavro::host::refuse_storage_file(kHostCannotWriteFile, kAction, path);
    if (::unlink(path.c_str()) == 0) {
        return kMwOk;
    }
    if (errno != ENOENT) {
        throw file_failure(kHostCannotWriteFile, kAction, path, errno);
    }
    return kMwNoFile;
}

struct Files {
    static MwStatus init(std::uint32_t drive, const char* path) {
        return is_bad(drive, path) ? kHostBadArgument : guarded([&] { return prepare(target_of(path)); });
    }
    static MwStatus qry_fpath(std::uint32_t drive, const char* path, std::uint32_t* word1, std::uint32_t* word2,
                              std::uint32_t* word3) {
        if (is_bad(drive, path) || word1 == nullptr || word2 == nullptr || word3 == nullptr) {
            return kHostBadArgument;
        }
        return guarded([&] { return query(resolve_path(path), *word1, *word2, *word3); });
    }
    static MwStatus copy(std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to) {
        if (is_bad(from_drive, from) || is_bad(to_drive, to)) {
            return kHostBadArgument;
        }
        return guarded([&] { return copy_file(resolve_path(from), to); });
    }
    static MwStatus delete_file(std::uint32_t drive, const char* path) {
        return is_bad(drive, path) ? kHostBadArgument : guarded([&] { return remove_file(resolve_path(path)); });
    }
};

} // namespace

extern "C" {

#define TAVRO_DEFINE_FILE_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                            \
    TAVRO_DEFINE_CALL(Files, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)
TAVRO_BASIC_CALLS(TAVRO_DEFINE_FILE_CALL)
}
