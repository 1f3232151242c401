// The JNI calls of natives, for TAVRO_TRACE_JNI=1.
#pragma once

#include <jni.h>

#include <jvmti.h>

namespace tavro::trace {

// Replaces the virtual machine's JNI functions by ones that trace the calls of natives (natives_running() > 0, not
// is_quiet()) as events of Category::kJni. Called once, in the live phase. Returns false if that is not possible.
bool trace_jni_calls(jvmtiEnv* jvmti, JNIEnv* env);

} // namespace tavro::trace
