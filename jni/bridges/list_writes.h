// Steps that the natives which write records share.
#pragma once

#include "jni/bridges/list_locks.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"

namespace tavro {

// How the update of a record ended.
enum class Updated { kDone, kFailed, kBadIdentifier };

// Updates a record under its list's write lock. Returns the manager's status.
template <class Manager, class Record>
int update_locked(Manager& manager, int list_id, Record& record) {
    const WriteLock<Manager> lock(manager, list_id);
    return manager.updateInfo(list_id, &record);
}

// Reads the record that an identifier names. Returns false when the identifier cannot be parsed or the record
// cannot be read.
template <class Manager, class Record>
bool read_named(Jni& jni, Manager& manager, jstring identifier, Record& record) {
    int list_id = 0;
    int record_id = 0;
    return parse_identifier(jni, identifier, list_id, record_id) && manager.getInfo(list_id, record_id, &record) == 0;
}

// Logs how an add ended; `call` is the manager's function. Returns the record's identifier, or `nothing` when the
// add failed.
inline jstring added(JNIEnv* env, const char* call, int status, int list_id, int record_id, jstring nothing) {
    TAVRO_LOG_JNI("[%s][%d] ", call, status);
    return status == 0 ? combineMId(env, list_id, record_id) : nothing;
}

} // namespace tavro
