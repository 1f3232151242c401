// What an errno value of a file operation means for the engineer: the cause in words, and the remedy.
#pragma once

#include <string>

namespace tavro::host {

// Whether the file system, or the user's share of it, has no space left.
bool means_full(int error);

// "CAUSE; REMEDY". `alternative` is what helps when the file itself cannot be mended, as in "choose another
// path"; it is left out where it would not help.
std::string explain(int error, const std::string& alternative);

} // namespace tavro::host
