// Where the workstation's platform keeps its files, and where a path of the TV lies here.
#pragma once

#include <string>

namespace tavro::host {

// The storage directory: TAVRO_HOME, else $XDG_STATE_HOME/tavro, else ~/.local/state/tavro. Absolute,
// without a slash at its end. It need not exist yet.
std::string home_directory();

// The file that a path handed to the platform means. A path below one of the TV's own directories
// (/cache, /data, /3rd, /mnt/vendor) lies below the storage directory; every other path is the user's
// and stays as it is.
std::string resolve_path(const char* path);

// Whether `resolve_path` puts it below the storage directory.
bool is_platform_path(const char* path);

// Makes the directories that lead to a resolved platform path. Returns false when that fails.
bool make_parents(const std::string& resolved);

} // namespace tavro::host
