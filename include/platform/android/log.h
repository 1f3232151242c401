// The part of the platform's log interface that the library calls, for builds without the platform's
// own headers.
#pragma once

extern "C" {
// Writes one line; `tag` may be null. Returns a positive number when the line was written.
int __android_log_print(int priority, const char* tag, const char* format, ...) __attribute__((format(printf, 3, 4)));
}
