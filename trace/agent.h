// Observes the natives of a Java virtual machine through its tool interface.
#pragma once

#include <jni.h>

#include <jvmti.h>

namespace tavro::trace {

// Starts to observe the natives that are registered from now on, if this process has a virtual machine and they are not
// observed yet. Cheap once they are.
void attach_to_java() noexcept;

// The virtual machine's tool interface; null before attach_to_java() found one.
jvmtiEnv* tool_interface() noexcept;

} // namespace tavro::trace
