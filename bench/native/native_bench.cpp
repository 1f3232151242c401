// Compares the natives with the floor, on an embedded Java virtual machine over the memory platform.
//
//   native_bench [--quick] [--check] [Google Benchmark's options]
//
// Prints one row per operation:
// - median, 10th and 90th percentile of the time per call, for the library and for the floor
// - their ratio: the median over the rounds, in which both are measured in alternation
// - for whole lists of bytes, the ratio to a plain copy
// - for the largest lists, the growth: cost per record relative to a list of 1,000 records
//
// Values above their target are marked. --benchmark_out=FILE writes the same as JSON. --quick measures smaller lists
// for a shorter time. --check only compares the calls of the library and the floor; the exit code is 1 if they differ.
#include "check.h"
#include "measure.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <malloc.h>
#include <map>

namespace tavro::bench {

namespace {

constexpr double kFloorTarget = 1.10;  // library to floor
constexpr double kCopyTarget = 1.15;   // library to plain copy, whole lists of bytes
constexpr double kGrowthTarget = 1.30; // cost per record in a list of 65,534, relative to a list of 1,000

constexpr Effort kFull = {0.1, 1.0, 5, 301};
constexpr Effort kQuick = {0.05, 0.1, 3, 101};
constexpr int kAllRecords = 65'534;
constexpr int kQuickRecords = 10'000;

constexpr int kShortList = 1'000;

std::string measuring_options() {
    std::string text;
    for (const std::string& option : kMeasuringOptions) {
        text += (text.empty() ? "" : " ") + option;
    }
    return text;
}

void set_counters(benchmark::State& state, const std::string& name, const Spread& spread) {
    state.counters[name] = spread.median;
    state.counters[name + "_p10"] = spread.p10;
    state.counters[name + "_p90"] = spread.p90;
}

// Prints the rows.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override {
        std::printf("Java virtual machine: %s\n"
                    "ns per call: median [p10 .. p90]; * target missed (floor %.2f, copy %.2f, growth %.2f)\n\n"
                    "%-36s %39s %39s  %-20s %-20s %s\n",
                    measuring_options().c_str(), kFloorTarget, kCopyTarget, kGrowthTarget, "operation", "library",
                    "floor", "ratio", "to copy", "growth");
        return true;
    }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                print(run);
            }
        }
        std::fflush(stdout);
    }
    void Finalize() override {
        std::printf("\n%d operations; targets missed: %d floor, %d plain copy, %d growth\n", rows_, missed_floor_,
                    missed_copy_, missed_growth_);
    }

private:
    static double value(const Run& run, const std::string& name) {
        const auto counter = run.counters.find(name);
        return counter == run.counters.end() ? 0 : static_cast<double>(counter->second);
    }
    static void print_times(const Run& run, const std::string& name) {
        std::printf(" %13.0f [%10.0f ..%10.0f]", value(run, name), value(run, name + "_p10"),
                    value(run, name + "_p90"));
    }
    static const char* mark(double value, double target, int& missed) {
        if (value <= target) {
            return " ";
        }
        ++missed;
        return "*";
    }
    void print(const Run& run) {
        ++rows_;
        std::printf("%-36s", run.run_name.function_name.c_str());
        print_times(run, "library_ns");
        print_times(run, "floor_ns");
        const double ratio = value(run, "ratio");
        std::printf("  %5.2f%s [%4.2f .. %4.2f]", ratio, mark(ratio, kFloorTarget, missed_floor_),
                    value(run, "ratio_p10"), value(run, "ratio_p90"));
        const double copy = value(run, "copy_ratio");
        const double growth = value(run, "growth");
        if (copy > 0) {
            std::printf("  %5.2f%s (floor %.2f)", copy, mark(copy, kCopyTarget, missed_copy_),
                        value(run, "floor_copy_ratio"));
        }
        if (growth > 0) {
            std::printf("%*s%5.2f%s (floor %.2f)", copy > 0 ? 2 : 23, "", growth,
                        mark(growth, kGrowthTarget, missed_growth_), value(run, "floor_growth"));
        }
        std::printf("\n");
    }

    int rows_ = 0;
    int missed_floor_ = 0;
    int missed_copy_ = 0;
    int missed_growth_ = 0;
};

void run_operation(benchmark::State& state, JNIEnv* env, const Operation& operation, const Effort& effort) {
    struct RecordCost {
        double library; // nanoseconds per record
        double floor;
    };
    static std::map<std::string, RecordCost> short_lists; // by operation name without the size
    Measurement result;
    for (auto _ : state) {
        result = measure(env, operation, effort);
        state.SetIterationTime(result.library.median * 1e-9);
    }
    set_counters(state, "library_ns", result.library);
    set_counters(state, "floor_ns", result.floor);
    set_counters(state, "ratio", result.ratio);
    state.counters["rounds"] = result.rounds;
    state.counters["records"] = operation.records;
    if (operation.copy) {
        set_counters(state, "copy_ns", result.copy);
        set_counters(state, "copy_ratio", result.copy_ratio);
        state.counters["floor_copy_ratio"] = result.floor_copy_ratio.median;
    }
    if (operation.records > 0) {
        const std::string family = operation.name.substr(0, operation.name.find(':'));
        const RecordCost cost = {result.library.median / operation.records, result.floor.median / operation.records};
        const auto short_list = short_lists.find(family);
        if (operation.records == kShortList) {
            short_lists[family] = cost;
        } else if (operation.records > kQuickRecords && short_list != short_lists.end()) {
            state.counters["growth"] = cost.library / short_list->second.library;
            state.counters["floor_growth"] = cost.floor / short_list->second.floor;
        }
    }
}

// Makes malloc reuse memory instead of returning it to the system. Otherwise the ratio would depend on which side has
// to fault in new pages.
void keep_memory() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_TOP_PAD, 64 << 20);
}

// Removes an option of this program from the arguments. Returns true if it was there.
bool take_flag(int& count, char** arguments, const char* flag) {
    char** end = std::remove_if(arguments + 1, arguments + count,
                                [&](const char* argument) { return std::strcmp(argument, flag) == 0; });
    const bool found = end != arguments + count;
    count = static_cast<int>(end - arguments);
    return found;
}

int run(int count, char** arguments) {
    const bool quick = take_flag(count, arguments, "--quick");
    const bool check = take_flag(count, arguments, "--check");
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) {
        return 2;
    }
    if (check) {
        Jvm jvm(kCheckingOptions);
        return check_floor(jvm) ? 0 : 1;
    }
    keep_memory();
    Jvm jvm(kMeasuringOptions);
    const std::vector<Operation> all = operations(jvm, quick ? kQuickRecords : kAllRecords);
    for (const Operation& operation : all) {
        benchmark::RegisterBenchmark(
            operation.name.c_str(),
            [&](benchmark::State& state) { run_operation(state, jvm.env(), operation, quick ? kQuick : kFull); })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kNanosecond);
    }
    benchmark::AddCustomContext("jvm_options", measuring_options());
    Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}

} // namespace

} // namespace tavro::bench

int main(int count, char** arguments) {
    try {
        return tavro::bench::run(count, arguments);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "native_bench: %s\n", e.what());
        return 1;
    }
}
