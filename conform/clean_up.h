// Finds and deletes the checks' own lists. Both functions call the platform, so they need a process that has loaded it.
#pragma once

#include "conform/check.h"

#include <cstddef>
#include <vector>

namespace tavro::conform {

// The own lists of a kind, among `numbers`, that exist.
std::vector<std::size_t> existing_lists(const std::string& kind, const std::vector<std::size_t>& numbers);

// Deletes the lists that the check's processes may have created, and clears their bits in the shared memory. A list
// that cannot be deleted keeps its bit.
void delete_own_lists();

} // namespace tavro::conform
