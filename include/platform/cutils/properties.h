// The part of the platform's property interface that the library calls, for builds without the
// platform's own headers.
#pragma once

// Longest property value with its terminating NUL.
#define PROPERTY_VALUE_MAX 92

extern "C" {
// Copies the value of property `key`, or `default_value` when it has none, into `value`
// (PROPERTY_VALUE_MAX bytes). Returns the value's length.
int property_get(const char* key, char* value, const char* default_value);
}
