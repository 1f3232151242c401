// The names of the numbers that a field can hold.
#pragma once

#include "layouts/keys.h"

#include <vector>

namespace tavro::layouts {

// Every table of names: those by which the library converts values, and those of numbers that it passes on unchanged.
std::vector<CodeNames> all_codes();

// The names of a field's numbers; null if there are none. `keys` are those of the record.
const CodeNames* codes_of(const Record& record, const std::vector<Key>& keys, const RecordField& field);

} // namespace tavro::layouts
