// The locks of lists.

#include "conform/lists.h"

namespace tavro::conform {

void add_lock_checks(std::vector<Check>&) {}

} // namespace tavro::conform
