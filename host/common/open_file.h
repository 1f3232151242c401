// Opening files in a process whose standard descriptors may be closed.
#pragma once

#include <sys/types.h>

namespace tavro::host {

// Opens /dev/null on each of the descriptors 0, 1 and 2 that is closed. Call before opening any file: the file would
// get the free number, and whatever the process writes to its standard error would end up in it.
void fill_standard_descriptors();

// open() with O_CLOEXEC, never on a standard descriptor. Returns the descriptor, or -1 with errno set.
int open_file(const char* path, int flags, mode_t mode = 0);

// Opens a regular file for reading. Never waits, whatever the path names. Returns the descriptor, or -1 with `error`
// set to an errno value: EISDIR for a directory, kNotRegular for a FIFO, a socket or a device.
int open_regular_file(const char* path, int& error);
inline constexpr int kNotRegular = -1; // no errno value says this

} // namespace tavro::host
