// Loading of the library and registration of its natives. jni.h declares the load entry, JNI_OnLoad. It returns the JNI
// version that the library needs, or -1 when it cannot be used.
#pragma once

#include <jni.h>

// Registers a table of methods with the class at `path`. Returns 0, or -1 with an exception pending when the class or
// one of its methods is missing. Deliberate: the class reference is not deleted.
int registerNativeMethods(JNIEnv* env, const char* path, const JNINativeMethod* methods, int count);

// Registers the tables of the four list classes in order and stops at the first failure. Returns 1 when all are
// registered, otherwise 0.
int register_com_velotra_tv_tavro_channellist_VltTvList(JNIEnv* env);
