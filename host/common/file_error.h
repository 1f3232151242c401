// Explains errno values of file operations: cause and remedy.
#pragma once

#include <string>

namespace tavro::host {

// True if the file system or the user's quota is full.
bool is_disk_full(int error);

// Returns "CAUSE; REMEDY". `alternative` is a second remedy, such as "choose another path". It is left out where it
// would not help.
std::string explain(int error, const std::string& alternative);

} // namespace tavro::host
