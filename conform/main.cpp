#include "conform/runner.h"

#include <cstdio>

int main() {
    using namespace tavro::conform;
    const std::vector<Check> checks = all_checks();
    std::vector<const Check*> chosen;
    for (const Check& check : checks) {
        chosen.push_back(&check);
    }
    std::printf("TAP version 14\n1..%zu\n", chosen.size());
    int number = 0;
    const Verdict verdict = run_checks(chosen, "/tmp", [&](const Result& result) {
        std::printf("%s %d - %s\n", result.outcome == Outcome::kFailed ? "not ok" : "ok", ++number,
                    result.check->name.c_str());
        if (result.outcome == Outcome::kFailed) {
            std::printf("  expected: %s\n  found: %s\n", result.expected.c_str(), result.found.c_str());
            for (const std::string& call : result.calls) {
                std::printf("    %s\n", call.c_str());
            }
        }
        std::fflush(stdout);
    });
    std::fprintf(stderr, "%d %s\n", static_cast<int>(verdict.how), verdict.why.c_str());
    return 0;
}
