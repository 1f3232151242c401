// Adding, reading, updating and removing records.

#include "conform/lists.h"

namespace tavro::conform {

void add_record_checks(std::vector<Check>&) {}

} // namespace tavro::conform
