// The document of everything that the checks expect.
#pragma once

#include "conform/check.h"

#include <vector>

namespace tavro::conform {

// Prints docs/middleware-contract.md.
void print_contract(const std::vector<Check>& checks);

} // namespace tavro::conform
