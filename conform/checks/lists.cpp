// Opening, creating, cleaning, copying and deleting lists.

#include "conform/lists.h"

namespace tavro::conform {
namespace {

template <class Kind>
void open_missing(Run& run) {
    MwdbHandle handle = 0;
    const MwStatus status = Kind::open(run.list(), 0, 0, &handle);
    run.expect(status < 0 || handle == 0, last_call() + " fails: there is no such list",
               "status " + std::to_string(status) + ", handle " + std::to_string(handle));
}

template <class Kind>
void create_handle(Run& run) {
    create<Kind>(run);
}

template <class Kind>
void add_rows(std::vector<Check>& checks) {
    const auto add_row = [&](Check row) { add_of_kind<Kind>(checks, std::move(row)); };
    add_row({"open.missing",
             {"open"},
             "Opening a list that does not exist fails.",
             "needed by the open natives of {lists}, which create the list then",
             Severity::kWrongResult,
             open_missing<Kind>,
             1});
    add_row({"create.handle",
             {"create"},
             "Creating a list gives a handle other than 0.",
             "needed by the open natives of {lists}",
             Severity::kWrongResult,
             create_handle<Kind>,
             1});
}

} // namespace

void add_list_checks(std::vector<Check>& checks) {
    add_rows<Svl>(checks);
    add_rows<Tsl>(checks);
    add_rows<Nwl>(checks);
    add_rows<Satl>(checks);
}

} // namespace tavro::conform
