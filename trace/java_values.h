// Java values as text.
#pragma once

#include <jni.h>

#include <string>

namespace tavro::trace {

// A string in quotes, an array as byte[552], a class as class VltTvNetworkInfo, a list of the class library as
// ArrayList[3], any other object by its class, or null. Names are without the package. No exception may be pending.
// Calls no method of a class outside of java.util.
std::string object_text(JNIEnv* env, jobject object);

// The class of the pending exception; "" if there is none. It stays pending.
std::string pending_exception(JNIEnv* env);

} // namespace tavro::trace
