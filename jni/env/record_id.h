// Record identifiers: the text "list id, comma, record id" by which Java names one record.
#pragma once

#include "jni/env/jni_env.h"

#include <jni.h>

#include <string>
#include <string_view>

// Whether every character is a decimal digit; so is every character of an empty string.
bool AllisNum(std::string_view text);

// Takes a record identifier apart; what follows a second comma is ignored. Returns false, with the out
// values as they were, when it has no comma or a field has anything but digits. A field that is empty
// or beyond an int raises std::stoi's exception, which no caller catches.
bool trimId(std::string_view identifier, int& list_id, int& record_id);

// The record identifier of two ids.
std::string combineStrMId(int list_id, int record_id);

// The same as a new Java string, a local reference; null with an exception pending when there is no
// memory for it.
jstring combineMId(JNIEnv* env, int list_id, int record_id);

namespace tavro {

// Reads a record identifier that came as a Java string; a null one counts as empty text. Returns false, with
// the out values as they were, when it cannot be parsed or a JNI call has failed.
bool parse_identifier(Jni& jni, jstring identifier, int& list_id, int& record_id);

// combineMId within a native call.
jstring combine_identifier(Jni& jni, int list_id, int record_id);

} // namespace tavro
