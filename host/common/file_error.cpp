#include "file_error.h"

#include <cerrno>
#include <cstring>

namespace tavro::host {
namespace {

std::string remedy(int error, const std::string& alternative) {
    if (is_disk_full(error)) {
        return "free some space on its file system";
    }
    switch (error) {
    case EACCES:
    case EPERM:
        return "change its owner or permissions, or " + alternative;
    case EROFS:
        return "mount it read-write, or " + alternative;
    case EISDIR:
        return "move it away, or " + alternative;
    case EMFILE:
    case ENFILE:
        return "raise the open file limit (ulimit -n)";
    case EFBIG:
        return "raise the file size limit (ulimit -f), or " + alternative;
    case EIO:
        return "check the disk, or " + alternative;
    default:
        return "check the path, or " + alternative;
    }
}

} // namespace

bool is_disk_full(int error) { return error == ENOSPC || error == EDQUOT; }

std::string explain(int error, const std::string& alternative) {
    return std::string(std::strerror(error)) + "; " + remedy(error, alternative);
}

} // namespace tavro::host
