#include "conform/check.h"

namespace tavro::conform {

std::vector<Check> all_checks() {
    std::vector<Check> checks;
    for (const auto add : {add_library_checks, add_list_checks, add_content_checks, add_handle_checks,
                           add_adding_checks, add_record_checks, add_query_checks, add_reading_checks,
                           add_filter_checks, add_lock_checks, add_file_checks, add_helper_checks}) {
        add(checks);
    }
    return checks;
}

} // namespace tavro::conform
