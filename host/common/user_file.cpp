#include "user_file.h"

#include "file_error.h"
#include "open_file.h"
#include "paths.h"
#include "services/status.h"

#include <cerrno>
#include <sys/stat.h>

namespace tavro::host {
namespace {

constexpr char kAlternative[] = "choose another path";

Failure refused(MwStatus status, const std::string& action, const std::string& path, const std::string& cause) {
    return {status, "cannot " + action + " " + path + ": " + cause + "; " + kAlternative};
}

// Throws Failure unless `error`, of find_regular_file, is 0.
void check_regular(int error, MwStatus status, const std::string& action, const std::string& path) {
    if (error == kNotRegular) {
        throw refused(status, action, path, "it is not a regular file");
    }
    if (error != 0) {
        throw file_failure(status, action, path, error);
    }
}

} // namespace

Failure file_failure(MwStatus status, const std::string& action, const std::string& path, int error) {
    return {is_disk_full(error) ? kHostStorageFull : status,
            "cannot " + action + " " + path + ": " + explain(error, kAlternative)};
}

void refuse_storage_file(MwStatus status, const std::string& action, const std::string& path) {
    if (is_storage_file(path)) {
        throw refused(status, action, path, "it belongs to the storage");
    }
}

void refuse_special_file(MwStatus status, const std::string& action, const std::string& path) {
    refuse_storage_file(status, action, path);
    const int error = find_regular_file(path);
    if (error == EISDIR || error == kNotRegular) {
        check_regular(error, status, action, path);
    }
}

File open_to_read(const std::string& action, const std::string& path, std::uint64_t& size) {
    refuse_storage_file(kHostCannotReadFile, action, path);
    int error = 0;
    File file = open_regular_file(path, error);
    if (error == ENOENT) {
        return file;
    }
    struct stat found {};
    if (error == 0 && ::fstat(file.descriptor(), &found) != 0) {
        error = errno;
    }
    check_regular(error, kHostCannotReadFile, action, path);
    size = static_cast<std::uint64_t>(found.st_size);
    return file;
}

} // namespace tavro::host
