// Library load and registration of the native methods. The load entry itself, JNI_OnLoad, is declared
// by jni.h: it answers the JNI version that the library needs, or -1 when it cannot be used.
#pragma once

#include <jni.h>

// Registers a method table on the class at `path`. Returns 0, or -1 when there is no such class or it
// lacks one of the methods; an exception is pending then. The class reference is left to the VM.
int registerNativeMethods(JNIEnv* env, const char* path, const JNINativeMethod* methods, int count);

// Registers the tables of the four list classes in order, up to the first that fails. Returns 1 when
// all are registered, otherwise 0.
int register_com_velotra_tv_tavro_channellist_VltTvList(JNIEnv* env);
