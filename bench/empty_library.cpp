// A JNI library that does nothing: the baseline for the cost of loading the real one.
#include <jni.h>

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM*, void*) { return JNI_VERSION_1_4; }
