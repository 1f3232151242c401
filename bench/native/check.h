// Compares what the library and the floor do.
#pragma once

#include "jvm.h"

namespace tavro::bench {

// Makes every operation once through each and compares their JNI calls, platform calls, log lines, stored bytes and
// results, with the log gate closed and open. Prints where they part; returns whether all are equal.
bool check_floor(Jvm& jvm);

} // namespace tavro::bench
