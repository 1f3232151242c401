// Handles of open lists.

#include "conform/lists.h"

namespace tavro::conform {

void add_handle_checks(std::vector<Check>&) {}

} // namespace tavro::conform
