#include "check.h"

namespace tavro::conform {

std::vector<Check> all_checks() {
    std::vector<Check> checks;
    for (const auto add : {add_library_checks, add_list_checks}) {
        add(checks);
    }
    return checks;
}

} // namespace tavro::conform
