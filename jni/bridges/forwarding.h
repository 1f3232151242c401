// Natives that pass a call on to the manager and nothing more. Each is a one-line function that calls a template here.
#pragma once

#include "jni/bridges/entry_line.h"
#include "jni/bridges/list_locks.h"
#include "jni/env/jni_env.h"

#include <jni.h>

#include <string>

// Each function writes the native's entry line, calls the manager and returns its status: 0, or -22 for a failure.
namespace tavro::forward {

template <class Manager>
jint open(Entry entry, Manager* manager, jint list_id) {
    trace_entry(entry);
    return manager->open(list_id);
}

// Returns -22 without calling the manager when the path cannot be read from Java.
template <class Manager>
jint open_path(Entry entry, Manager* manager, JNIEnv* env, jint list_id, jstring path) {
    trace_entry(entry);
    Jni jni(env);
    const std::string text = jni.text(path);
    return jni.failed() ? kFailed : manager->open(list_id, text);
}

template <class Manager>
jint close(Entry entry, Manager* manager, jint list_id) {
    trace_entry(entry);
    return manager->close(list_id);
}

template <class Manager>
jint clean(Entry entry, Manager* manager, jint list_id) {
    trace_entry(entry);
    return manager->clean(list_id);
}

template <class Manager>
jint delete_list(Entry entry, Manager* manager, jint list_id) {
    trace_entry(entry);
    return manager->_delete(list_id);
}

template <class Manager>
jint store(Entry entry, Manager* manager, JNIEnv* env, jint list_id, jstring path) {
    trace_entry(entry);
    return manager->store(list_id, jstr2str(env, path));
}

// Copies under the destination's write lock.
template <class Manager>
jint copy(Entry entry, Manager* manager, jint source_id, jint destination_id) {
    trace_entry(entry);
    const WriteLock<Manager> lock(*manager, destination_id);
    return manager->copy(source_id, destination_id);
}

// Removals return -1 when the identifier has no comma.
template <class Manager>
jint remove(Entry entry, Manager* manager, JNIEnv* env, jstring identifier) {
    trace_entry(entry);
    return manager->removeInfo(jstr2str(env, identifier));
}

template <class Manager>
jint remove_by_record_id(Entry entry, Manager* manager, JNIEnv* env, jint list_id, jstring identifier) {
    trace_entry(entry);
    return manager->removeInfoByRecId(list_id, jstr2str(env, identifier));
}

} // namespace tavro::forward
