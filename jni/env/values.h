// Conversions of service types, and a debugging aid.
#pragma once

#include <jni.h>

#include <string>

// The key of a service type: 1, 4, 7 audio and video; 2, 5, 8 audio; anything else "other".
std::string convert_service_type_to_key(int service_type);

// The service type of a key: 1, 2, or 0 for any other text. Not the inverse of the above: 4 becomes 1.
int convert_key_to_convert_service(std::string key);

namespace tavro {

// Types of values that showMapListValue reads.
enum MapValueKind { kMapInteger = 0, kMapString = 1, kMapBoolean = 2 };

} // namespace tavro

// Writes one value of a Java map object (one with getBoolean, getString and getInteger) to the log.
// For debugging; nothing calls it.
void showMapListValue(JNIEnv* env, const char* key, int value_kind, jobject object, jclass cls);
