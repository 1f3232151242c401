// Entry points to library functions that are not exported.
#include "entries.h"

#include "jni/env/record_id.h"
#include "jni/log/log_gate.h"

unsigned int tavro_log_gate() { return tavro::is_loggable(tavro::kDebugLevel) ? 1 : 0; }

bool tavro_parse_record_id(const std::string& identifier, int& list_id, int& record_id) {
    return trimId(identifier, list_id, record_id);
}
