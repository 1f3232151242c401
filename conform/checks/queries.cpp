// Record ids, counts and reads by index.

#include "conform/lists.h"

namespace tavro::conform {

void add_query_checks(std::vector<Check>&) {}

} // namespace tavro::conform
