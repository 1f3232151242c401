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

} // namespace tavro::host
