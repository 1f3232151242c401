// The middleware's file functions on the workstation's file system.
#include "common/file_error.h"
#include "common/paths.h"
#include "common/replacement_file.h"
#include "common/report.h"
#include "middleware/files.h"
#include "services/status.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace tavro;

namespace {

using tavro::host::explain;
using tavro::host::is_disk_full;
using tavro::host::is_platform_path;
using tavro::host::make_parents;
using tavro::host::ReplacementFile;
using tavro::host::report_once;
using tavro::host::resolve_path;

constexpr mode_t kFileMode = 0644;
constexpr std::size_t kCopyBytes = std::size_t{64} * 1024;

bool is_bad(std::uint32_t drive, const char* path) { return drive != kMwRootDrive || path == nullptr || *path == '\0'; }

MwStatus failed(MwStatus status, const std::string& action, const std::string& path, int error) {
    report_once("cannot " + action + " " + path + ": " + explain(error, "choose another path"));
    return is_disk_full(error) ? kHostStorageFull : status;
}

// Owns a file descriptor.
class File {
public:
    File(const std::string& path, int flags) : descriptor_(::open(path.c_str(), flags | O_CLOEXEC, kFileMode)) {}
    ~File() {
        if (is_open()) {
            ::close(descriptor_);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    bool is_open() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_;
};

// Copies the rest of `from` to `to`. Returns 0 or an errno value.
int copy_content(const File& from, const File& to) {
    std::string buffer(kCopyBytes, '\0');
    for (;;) {
        const ssize_t got = ::read(from.descriptor(), buffer.data(), buffer.size());
        if (got <= 0) {
            return got == 0 ? 0 : errno;
        }
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = ::write(to.descriptor(), buffer.data() + done, static_cast<std::size_t>(got - done));
            if (put < 0) {
                return errno;
            }
            done += put;
        }
    }
}

} // namespace

extern "C" {

MwStatus fs_raw_init(std::uint32_t drive, const char* path) {
    if (is_bad(drive, path)) {
        return kHostBadArgument;
    }
    const std::string target = resolve_path(path);
    if (is_platform_path(path)) {
        make_parents(target);
    }
    const File file(target, O_RDWR | O_CREAT);
    return file.is_open() ? kMwOk : failed(kHostCannotWriteFile, "open", target, errno);
}

MwStatus fs_raw_qry_fpath(std::uint32_t drive, const char* path, std::uint32_t* word1, std::uint32_t* word2,
                          std::uint32_t* word3) {
    if (is_bad(drive, path) || word1 == nullptr || word2 == nullptr || word3 == nullptr) {
        return kHostBadArgument;
    }
    struct stat found {};
    if (::stat(resolve_path(path).c_str(), &found) != 0 || !S_ISREG(found.st_mode)) {
        return kMwNoFile;
    }
    *word1 = static_cast<std::uint32_t>(found.st_size);
    *word2 = static_cast<std::uint32_t>(found.st_mtime);
    *word3 = found.st_mode;
    return kMwOk;
}

MwStatus fs_raw_copy(std::uint32_t from_drive, const char* from, std::uint32_t to_drive, const char* to) {
    if (is_bad(from_drive, from) || is_bad(to_drive, to)) {
        return kHostBadArgument;
    }
    const std::string source = resolve_path(from);
    const std::string target = resolve_path(to);
    const File reading(source, O_RDONLY);
    if (!reading.is_open()) {
        return errno == ENOENT ? kMwNoFile : failed(kHostCannotReadFile, "read", source, errno);
    }
    if (is_platform_path(to)) {
        make_parents(target);
    }
    ReplacementFile replacement(target);
    const File writing(replacement.temporary(), O_WRONLY | O_CREAT | O_TRUNC);
    int error = writing.is_open() ? copy_content(reading, writing) : errno;
    if (error == 0) {
        error = replacement.commit();
    }
    return error == 0 ? kMwOk : failed(kHostCannotWriteFile, "write", target, error);
}

MwStatus x_fm_delete_file(std::uint32_t drive, const char* path) {
    if (is_bad(drive, path)) {
        return kHostBadArgument;
    }
    const std::string target = resolve_path(path);
    if (::unlink(target.c_str()) == 0) {
        return kMwOk;
    }
    return errno == ENOENT ? kMwNoFile : failed(kHostCannotWriteFile, "delete", target, errno);
}
}
