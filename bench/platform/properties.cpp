#include "journal.h"

#include <cutils/properties.h>

int property_get(const char* name, char* value, const char* /*default_value*/) {
    if (tavro_memory_journal != nullptr) {
        tavro_memory_journal((std::string("property_get ") + name).c_str());
    }
    value[0] = tavro_memory_log_level;
    value[1] = '\0';
    return tavro_memory_log_level == 0 ? 0 : 1;
}
