// Record identifiers: "list id, comma, record id", the text with which Java names a record.
#pragma once

#include "jni/env/jni_env.h"

#include <jni.h>

#include <string>
#include <string_view>

// Whether every character is a decimal digit. True for an empty string.
bool AllisNum(std::string_view text);

// Splits a record identifier; anything after a second comma is ignored. Returns false and leaves the out values alone
// when there is no comma or a part has other characters than digits. A part that is empty or does not fit an int throws
// std::stoi's exception, which no caller catches.
bool trimId(std::string_view identifier, int& list_id, int& record_id);

// The record identifier of two ids.
std::string combineStrMId(int list_id, int record_id);

// The same as a new Java string (a local reference). Null, with an exception pending, when there is no memory.
jstring combineMId(JNIEnv* env, int list_id, int record_id);

namespace tavro {

// Parses a record identifier from a Java string; null is empty text. Returns false and leaves the out values alone when
// it cannot be parsed or a JNI call has failed.
bool parse_identifier(Jni& jni, jstring identifier, int& list_id, int& record_id);

// combineMId within a native call.
jstring combine_identifier(Jni& jni, int list_id, int record_id);

} // namespace tavro
