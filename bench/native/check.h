// Compares the calls of the library and the floor.
#pragma once

#include "jvm.h"

namespace tavro::bench {

// Runs every operation through the library and the floor, with the log gate closed and open, and compares JNI calls,
// platform calls, log lines, stored bytes and results. Prints the first difference of each; returns true if there is
// none.
bool check_floor(Jvm& jvm);

} // namespace tavro::bench
