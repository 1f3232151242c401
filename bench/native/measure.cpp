#include "measure.h"

#include "control.h"

#include <algorithm>
#include <chrono>

namespace tavro::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kWarmUpSeconds = 0.1;
constexpr int kWarmUpBatches = 2;
constexpr double kRoundSeconds = 0.002; // shorter rounds would be measured too coarsely

double seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

// One batch inside a local frame of its own, as the virtual machine gives every native call one.
double time_batch(JNIEnv* env, const Operation& operation, const Calls& calls) {
    if (operation.before) {
        operation.before();
    }
    env->PushLocalFrame(16);
    const Clock::time_point start = Clock::now();
    calls(env, operation.batch);
    const Clock::time_point end = Clock::now();
    env->PopLocalFrame(nullptr);
    return seconds(end - start);
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

    // Until the virtual machine has compiled what is called, at least a few batches.
    double once = 0;
    const Clock::time_point start = Clock::now();
    for (int batch = 0; batch < kWarmUpBatches || seconds(Clock::now() - start) < kWarmUpSeconds; ++batch) {
        once = 0;
        for (const Calls* way : ways) {
            once += time_batch(env, operation, *way);
        }
    }

    const int batches = std::max(1, static_cast<int>(kRoundSeconds / once));
    const int rounds =
        std::clamp(static_cast<int>(effort.seconds / (once * batches)), effort.least_rounds, effort.most_rounds);
    std::vector<double> times[3];
    std::vector<double> ratios;
    std::vector<double> copy_ratios;
    for (int round = 0; round < rounds; ++round) {
        std::vector<double> taken[3];
        for (int batch = 0; batch < batches; ++batch) {
            for (std::size_t turn = 0; turn < ways.size(); ++turn) {
                const std::size_t way = (turn + static_cast<std::size_t>(round + batch)) % ways.size();
                taken[way].push_back(time_batch(env, operation, *ways[way]));
            }
        }
        // A batch that another process or the collector interrupted is not the median of its round.
        double median[3] = {};
        for (std::size_t way = 0; way < ways.size(); ++way) {
            median[way] = spread(taken[way]).median;
            times[way].push_back(median[way] * 1e9 / operation.batch);
        }
        ratios.push_back(median[0] / median[1]);
        if (operation.copy) {
            copy_ratios.push_back(median[0] / median[2]);
        }
    }
    tavro_memory_log_level = 0;
    return {spread(times[0]), spread(times[1]), spread(times[2]), spread(ratios), spread(copy_ratios), rounds};
}

} // namespace tavro::bench
