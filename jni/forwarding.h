// The natives that pass a call on to the manager and nothing more, alike for the companion lists.
#pragma once

#include <jni.h>

// Declares PREFIX_open, _open_path, _close, _clean, _delete, _store and _copy. All answer the manager's
// status. copy holds the destination's write lock.
#define TAVRO_DECLARE_FORWARDING(PREFIX)                                                                               \
    jint PREFIX##_open(JNIEnv* env, jobject self, jint mwdbId);                                                        \
    jint PREFIX##_open_path(JNIEnv* env, jobject self, jint mwdbId, jstring path);                                     \
    jint PREFIX##_close(JNIEnv* env, jobject self, jint mwdbId);                                                       \
    jint PREFIX##_clean(JNIEnv* env, jobject self, jint mwdbId);                                                       \
    jint PREFIX##_delete(JNIEnv* env, jobject self, jint mwdbId);                                                      \
    jint PREFIX##_store(JNIEnv* env, jobject self, jint mwdbId, jstring path);                                         \
    jint PREFIX##_copy(JNIEnv* env, jobject self, jint sourceId, jint destinationId)

// Defines them over the manager that MANAGER points to, whose lists WRITE_LOCK locks. Each begins with
// ENTRY(line), where `line` is kOpen, kOpenPath, kClose, kClean, kDelete, kStore or kCopy.
#define TAVRO_DEFINE_FORWARDING(PREFIX, MANAGER, WRITE_LOCK, ENTRY)                                                    \
    jint PREFIX##_open(JNIEnv*, jobject, jint mwdbId) {                                                                \
        ENTRY(kOpen);                                                                                                  \
        return (MANAGER)->open(mwdbId);                                                                                \
    }                                                                                                                  \
    jint PREFIX##_open_path(JNIEnv* env, jobject, jint mwdbId, jstring path) {                                         \
        ENTRY(kOpenPath);                                                                                              \
        return (MANAGER)->open(mwdbId, jstr2str(env, path));                                                           \
    }                                                                                                                  \
    jint PREFIX##_close(JNIEnv*, jobject, jint mwdbId) {                                                               \
        ENTRY(kClose);                                                                                                 \
        return (MANAGER)->close(mwdbId);                                                                               \
    }                                                                                                                  \
    jint PREFIX##_clean(JNIEnv*, jobject, jint mwdbId) {                                                               \
        ENTRY(kClean);                                                                                                 \
        return (MANAGER)->clean(mwdbId);                                                                               \
    }                                                                                                                  \
    jint PREFIX##_delete(JNIEnv*, jobject, jint mwdbId) {                                                              \
        ENTRY(kDelete);                                                                                                \
        return (MANAGER)->_delete(mwdbId);                                                                             \
    }                                                                                                                  \
    jint PREFIX##_store(JNIEnv* env, jobject, jint mwdbId, jstring path) {                                             \
        ENTRY(kStore);                                                                                                 \
        return (MANAGER)->store(mwdbId, jstr2str(env, path));                                                          \
    }                                                                                                                  \
    jint PREFIX##_copy(JNIEnv*, jobject, jint sourceId, jint destinationId) {                                          \
        ENTRY(kCopy);                                                                                                  \
        const WRITE_LOCK lock(*(MANAGER), destinationId);                                                              \
        return (MANAGER)->copy(sourceId, destinationId);                                                               \
    }                                                                                                                  \
    static_assert(true, "takes the semicolon")

// ENTRY of natives that write no entry line.
#define TAVRO_NO_ENTRY(LINE) static_cast<void>(0)
