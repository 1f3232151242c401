// Measures the implementations of an operation in alternation, so that noise affects all of them equally.
#pragma once

#include "operations.h"

namespace tavro::bench {

// Quantiles over the rounds.
struct Spread {
    double median = 0;
    double p10 = 0;
    double p90 = 0;
};

struct Measurement {
    Spread library; // nanoseconds for one call
    Spread floor;
    Spread copy;
    Spread ratio;      // library to floor, round by round
    Spread copy_ratio; // library to copy
    Spread floor_copy_ratio;
    int rounds = 0;
};

struct Effort {
    double warm_up_seconds;
    double seconds; // per operation, after the warm-up
    int least_rounds;
    int most_rounds;
};

Measurement measure(JNIEnv* env, const Operation& operation, const Effort& effort);

} // namespace tavro::bench
