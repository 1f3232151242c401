// The storage directory, and the mapping of TV paths into it.
#pragma once

#include <string>

namespace tavro::host {

// The storage directory: TAVRO_HOME, else $XDG_STATE_HOME/tavro, else ~/.local/state/tavro. Absolute, without a
// trailing slash. It need not exist yet.
std::string home_directory();

// Maps a path below a TV directory (/cache, /data, /3rd, /mnt/vendor) to the storage directory. Returns every other
// path unchanged.
std::string resolve_path(const char* path);

// True if `resolve_path` maps the path to the storage directory.
bool is_platform_path(const char* path);

// Creates the parent directories of a resolved platform path. Returns false on failure.
bool make_parents(const std::string& resolved);

// True if the path leads to a file of the storage, such as lists.db, or would create one. Does not open the file:
// opening and closing a database releases the locks that SQLite holds on it in this process.
bool is_storage_file(const std::string& path);

} // namespace tavro::host
