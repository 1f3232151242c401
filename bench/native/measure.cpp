#include "measure.h"

#include "control.h"

#include <algorithm>
#include <ctime>

namespace tavro::bench {

namespace {

// Short batches are timed with the wall clock, which is cheap to read; an interrupted batch does not affect the median
// of its round. Longer batches are timed in the thread's CPU time, which excludes other processes and the virtual
// machine's garbage collector thread.
enum class Time { kWall, kThread };

constexpr double kLongBatchSeconds = 50e-6;

double now(Time time) {
    timespec point = {};
    clock_gettime(time == Time::kWall ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID, &point);
    return static_cast<double>(point.tv_sec) + static_cast<double>(point.tv_nsec) * 1e-9;
}

constexpr int kWarmUpBatches = 2;
constexpr double kRoundSeconds = 0.002; // shorter rounds would be too imprecise

// Times one batch in its own local reference frame, like the frame that every native call gets.
double time_batch(JNIEnv* env, const Operation& operation, const Calls& calls, Time time) {
    if (operation.before) {
        operation.before();
    }
    env->PushLocalFrame(16);
    const double start = now(time);
    calls(env, operation.batch);
    const double end = now(time);
    env->PopLocalFrame(nullptr);
    return end - start;
}

Spread spread(std::vector<double> values) {
    if (values.empty()) {
        return {};
    }
    std::sort(values.begin(), values.end());
    const auto at = [&](double part) {
        return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1) + 0.5)];
    };
    return {at(0.5), at(0.1), at(0.9)};
}

} // namespace

Measurement measure(JNIEnv* env, const Operation& operation, const Effort& effort) {
    tavro_memory_log_level = operation.log_level;
    std::vector<const Calls*> ways = {&operation.library, &operation.floor};
    if (operation.copy) {
        ways.push_back(&operation.copy);
    }

    // Warm up until the virtual machine has compiled the called Java code.
    double once = 0;
    const double start = now(Time::kThread);
    for (int batch = 0; batch < kWarmUpBatches || now(Time::kThread) - start < effort.warm_up_seconds; ++batch) {
        once = 0;
        for (const Calls* way : ways) {
            once += time_batch(env, operation, *way, Time::kThread);
        }
    }

    const Time time = once > kLongBatchSeconds * static_cast<double>(ways.size()) ? Time::kThread : Time::kWall;
    const int batches = std::max(1, static_cast<int>(kRoundSeconds / once));
    const int rounds =
        std::clamp(static_cast<int>(effort.seconds / (once * batches)), effort.least_rounds, effort.most_rounds);
    std::vector<double> times[3];
    std::vector<double> ratios;
    std::vector<double> copy_ratios;
    std::vector<double> floor_copy_ratios;
    for (int round = 0; round < rounds; ++round) {
        std::vector<double> taken[3];
        for (int batch = 0; batch < batches; ++batch) {
            for (std::size_t turn = 0; turn < ways.size(); ++turn) {
                const std::size_t way = (turn + static_cast<std::size_t>(round + batch)) % ways.size();
                taken[way].push_back(time_batch(env, operation, *ways[way], time));
            }
        }
        // The median of a round ignores batches that were interrupted.
        double median[3] = {};
        for (std::size_t way = 0; way < ways.size(); ++way) {
            median[way] = spread(taken[way]).median;
            times[way].push_back(median[way] * 1e9 / operation.batch);
        }
        ratios.push_back(median[0] / median[1]);
        if (operation.copy) {
            copy_ratios.push_back(median[0] / median[2]);
            floor_copy_ratios.push_back(median[1] / median[2]);
        }
    }
    tavro_memory_log_level = 0;
    return {spread(times[0]),
            spread(times[1]),
            spread(times[2]),
            spread(ratios),
            spread(copy_ratios),
            spread(floor_copy_ratios),
            rounds};
}

} // namespace tavro::bench
