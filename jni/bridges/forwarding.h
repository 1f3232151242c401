// The natives that pass a call on to the manager and nothing more, alike for the companion lists.
#pragma once

#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"

#include <jni.h>

#include <string>

namespace tavro {

// The numbers by which the log knows the forwarding natives of a list kind. A kind derives its own from this
// and says those that are told.
struct EntryLines {
    static constexpr int kNone = 0; // no line is written
    static constexpr int kOpen = kNone;
    static constexpr int kOpenPath = kNone;
    static constexpr int kClose = kNone;
    static constexpr int kClean = kNone;
    static constexpr int kDelete = kNone;
    static constexpr int kStore = kNone;
    static constexpr int kCopy = kNone;
};

// Writes the line that tells that the native `name` was called.
inline void trace_entry(const char* name, int line) {
    if (line != EntryLines::kNone) {
        TAVRO_LOG_JNI("[%s][%d] ", name, line);
    }
}

} // namespace tavro

// Declares PREFIX_open, _open_path, _close, _clean, _delete, _store, _copy, _remove_info and
// _remove_info_by_recId. All answer the manager's status. copy holds the destination's write lock.
#define TAVRO_DECLARE_FORWARDING(PREFIX)                                                                               \
    jint PREFIX##_open(JNIEnv* env, jobject self, jint mwdbId);                                                        \
    jint PREFIX##_open_path(JNIEnv* env, jobject self, jint mwdbId, jstring path);                                     \
    jint PREFIX##_close(JNIEnv* env, jobject self, jint mwdbId);                                                       \
    jint PREFIX##_clean(JNIEnv* env, jobject self, jint mwdbId);                                                       \
    jint PREFIX##_delete(JNIEnv* env, jobject self, jint mwdbId);                                                      \
    jint PREFIX##_store(JNIEnv* env, jobject self, jint mwdbId, jstring path);                                         \
    jint PREFIX##_copy(JNIEnv* env, jobject self, jint sourceId, jint destinationId);                                  \
    jint PREFIX##_remove_info(JNIEnv* env, jobject self, jstring identifier);                                          \
    jint PREFIX##_remove_info_by_recId(JNIEnv* env, jobject self, jint mwdbId, jstring identifier)

// Defines them over the manager that MANAGER points to, whose lists WRITE_LOCK locks. LINES are the entry
// lines of the kind.
#define TAVRO_DEFINE_FORWARDING(PREFIX, MANAGER, WRITE_LOCK, LINES)                                                    \
    jint PREFIX##_open(JNIEnv*, jobject, jint mwdbId) {                                                                \
        tavro::trace_entry(__func__, LINES::kOpen);                                                                    \
        return (MANAGER)->open(mwdbId);                                                                                \
    }                                                                                                                  \
    jint PREFIX##_open_path(JNIEnv* env, jobject, jint mwdbId, jstring path) {                                         \
        tavro::trace_entry(__func__, LINES::kOpenPath);                                                                \
        tavro::Jni jni(env);                                                                                           \
        const std::string text = jni.text(path);                                                                       \
        return jni.failed() ? kFailed : (MANAGER)->open(mwdbId, text);                                                 \
    }                                                                                                                  \
    jint PREFIX##_close(JNIEnv*, jobject, jint mwdbId) {                                                               \
        tavro::trace_entry(__func__, LINES::kClose);                                                                   \
        return (MANAGER)->close(mwdbId);                                                                               \
    }                                                                                                                  \
    jint PREFIX##_clean(JNIEnv*, jobject, jint mwdbId) {                                                               \
        tavro::trace_entry(__func__, LINES::kClean);                                                                   \
        return (MANAGER)->clean(mwdbId);                                                                               \
    }                                                                                                                  \
    jint PREFIX##_delete(JNIEnv*, jobject, jint mwdbId) {                                                              \
        tavro::trace_entry(__func__, LINES::kDelete);                                                                  \
        return (MANAGER)->_delete(mwdbId);                                                                             \
    }                                                                                                                  \
    jint PREFIX##_store(JNIEnv* env, jobject, jint mwdbId, jstring path) {                                             \
        tavro::trace_entry(__func__, LINES::kStore);                                                                   \
        return (MANAGER)->store(mwdbId, jstr2str(env, path));                                                          \
    }                                                                                                                  \
    jint PREFIX##_copy(JNIEnv*, jobject, jint sourceId, jint destinationId) {                                          \
        tavro::trace_entry(__func__, LINES::kCopy);                                                                    \
        const WRITE_LOCK lock(*(MANAGER), destinationId);                                                              \
        return (MANAGER)->copy(sourceId, destinationId);                                                               \
    }                                                                                                                  \
    jint PREFIX##_remove_info(JNIEnv* env, jobject, jstring identifier) {                                              \
        tavro::trace_entry(__func__, LINES::kRemove);                                                                  \
        return (MANAGER)->removeInfo(jstr2str(env, identifier));                                                       \
    }                                                                                                                  \
    jint PREFIX##_remove_info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {                        \
        tavro::trace_entry(__func__, LINES::kRemoveByRecordId);                                                        \
        return (MANAGER)->removeInfoByRecId(mwdbId, jstr2str(env, identifier));                                        \
    }                                                                                                                  \
    static_assert(true, "takes the semicolon")
