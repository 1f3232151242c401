// Every native on each of its paths, while its first, second, third... middleware call fails. What it returns and does
// then is in failing_middleware/, one file for each kind of list.

#include "bridge_test_support.h"
#include "jni/jni_VltTvList_Init.h"
#include "native_run.h"
#include "scripted_situation.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace tavro;
using namespace tavro::test;

namespace {

// The statuses that the library distinguishes, and one that it does not.
const MwStatus kStatuses[] = {kMwEmpty, kMwNoFile, kMwRecordExists, kMwNotAListFile, -5};
constexpr MwStatus kOther = -5;

// Builds whose tests run slowly try every fourth case.
#ifdef TAVRO_SLOW_BUILD
constexpr int kEvery = 4;
#else
constexpr int kEvery = 1;
#endif

Lines names_of(const std::vector<TappedCall>& calls, std::size_t from) {
    Lines names;
    for (std::size_t i = from; i < calls.size(); ++i) {
        names.push_back(calls[i].name.substr(calls[i].name.rfind("x_", 0) == 0 ? 2 : 0));
    }
    return names;
}

std::string listed(const Lines& entries) {
    std::string text;
    for (const std::string& entry : entries) {
        text += (text.empty() ? "" : ", ") + entry;
    }
    return text;
}

void replace_all(std::string& text, const std::string& part, const std::string& by) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + by.size())) {
        text.replace(at, part.size(), by);
    }
}

// The log lines that a run has and the run without failures has not, with visible line ends. STATUS stands for the
// status of the failed calls.
Lines new_lines(const NativeRun& run, const NativeRun& good, MwStatus status) {
    std::multiset<std::string> known(good.lines.begin(), good.lines.end());
    Lines found;
    for (const std::string& line : run.lines) {
        const auto same = known.find(line);
        if (same != known.end()) {
            known.erase(same);
            continue;
        }
        std::string shown = line;
        replace_all(shown, "\n", "\\n");
        for (const char* before : {"i4_ret", "i4_ret ", "i4_ret: "}) {
            replace_all(shown, before + std::to_string(status), before + std::string("STATUS"));
        }
        found.push_back(shown);
    }
    return found;
}

// What a native does after its `failed`-th call failed.
std::string outcome(const NativeRun& run, const NativeRun& good, std::size_t failed, MwStatus status) {
    const Lines rest = names_of(run.calls, failed);
    const Lines lines = new_lines(run, good, status);
    std::string text = run.result;
    if (run.result == good.result && rest == names_of(good.calls, failed) && lines.empty()) {
        return text + ", as if it had not failed";
    }
    text += rest.empty() ? ", ends" : ", goes on with " + listed(rest);
    for (const std::string& line : lines) {
        text += "\n        \"" + line + "\"";
    }
    return text;
}

class FailingMiddleware : public EveryNativeTest, public testing::WithParamInterface<const BridgeKind*> {
protected:
    // Runs a case in its situation. After calls that failed with one of the statuses, runs it once more to see that the
    // library is still usable.
    NativeRun run(const NativeCase& native, const Failures& failures = {}) {
        start_again();
        set_managers();
        const NativeRun result = run_on(native, failures);
        EXPECT_EQ(result.left, "") << native.name << ": call " << failures.first << " to " << failures.last << ", "
                                   << failures.status;
        if (failures.status == kOther) {
            const Situation closed = [&] {
                Situation situation = native.situation;
                situation.open = false;
                return situation;
            }();
            EXPECT_EQ(run_again(native, closed).result, good_result) << "after failures of " << native.name;
        }
        return result;
    }

    std::string good_result;

private:
    NativeRun run_on(const NativeCase& native, const Failures& failures) {
        FakeJni jni;
        script_situation(*native.kind, native.situation);
        log_level("d");
        return run_native(native, jni, failures);
    }
    NativeRun run_again(const NativeCase& native, const Situation& situation) {
        script::reset();
        set_managers();
        FakeJni jni;
        script_situation(*native.kind, situation);
        log_level("d");
        return run_native(native, jni);
    }
};

// The outcomes of one case: each call, by the statuses and the number of failures that make a difference.
std::string described(const NativeCase& native, const NativeRun& good,
                      const std::function<NativeRun(const Failures&)>& run) {
    std::string text = native.name + ": " + good.result + "\n    calls ";
    text += (good.calls.empty() ? "nothing" : listed(names_of(good.calls, 0))) + "\n";
    constexpr int kForEver = 1 << 20;
    for (std::size_t n = 1; n <= good.calls.size(); ++n) {
        const std::string name = std::to_string(n) + " " + names_of(good.calls, n - 1).front();
        const int number = static_cast<int>(n);
        // What happens, and with which statuses and how many failures.
        std::map<std::string, std::map<std::string, std::vector<MwStatus>>> found;
        for (const MwStatus status : kStatuses) {
            found[outcome(run({number, number, status}), good, n, status)]["once"].push_back(status);
            found[outcome(run({number, kForEver, status}), good, n, status)]["from then on"].push_back(status);
        }
        std::set<std::string> shown;
        for (const auto& [happens, modes] : found) {
            for (const auto& [mode, statuses] : modes) {
                const bool both = modes.size() == 2 && modes.begin()->second == modes.rbegin()->second;
                std::string condition;
                if (statuses.size() != std::size(kStatuses)) {
                    for (const MwStatus status : statuses) {
                        condition += " " + (status == kOther ? std::string("other") : std::to_string(status));
                    }
                }
                if (!both) {
                    condition += " " + mode;
                }
                if (shown.insert(condition + happens).second) {
                    text += "    " + name + condition + ": " + happens + "\n";
                }
            }
        }
    }
    return text;
}

// The text of the file that a kind's outcomes are compared with, and where it is.
std::string golden_path(const BridgeKind& kind) { return std::string(FAILURE_OUTCOMES) + "/" + kind.name + ".txt"; }

std::string content_of(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The outcomes in a file, by the names of the cases.
std::map<std::string, std::string> outcomes_of(const std::string& text) {
    std::map<std::string, std::string> outcomes;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find("\n\n", begin), text.size());
        const std::string outcome = text.substr(begin, end - begin);
        outcomes[outcome.substr(0, outcome.find(": "))] = outcome;
        begin = end + 2;
    }
    return outcomes;
}

TEST_P(FailingMiddleware, HasItsOutcomeAndLeavesNoLockAndNoHandle) {
    std::map<std::string, std::string> expected = outcomes_of(content_of(golden_path(*GetParam())));
    std::string text;
    bool same = true;
    int number = 0;
    for (const NativeCase& native : native_cases(*GetParam())) {
        if (native.slow) {
            continue; // more JNI calls, the same calls of the middleware
        }
        if (++number % kEvery != 0) {
            expected.erase(native.name);
            continue;
        }
        const NativeRun good = run(native);
        good_result = good.result;
        const std::string found =
            described(native, good, [&](const Failures& failures) { return run(native, failures); });
        text += found + "\n";
        same = expected[native.name] + "\n" == found && same;
        EXPECT_EQ(expected[native.name] + "\n", found);
        expected.erase(native.name);
    }
    for (const auto& rest : expected) {
        ADD_FAILURE() << "no case for " << rest.first;
    }
    if (!same) {
        const std::string written = testing::TempDir() + "tavro-" + GetParam()->name + ".txt";
        std::ofstream(written) << text;
        ADD_FAILURE() << "All outcomes are in " << written << "; expected are those in " << golden_path(*GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(Lists, FailingMiddleware, testing::ValuesIn(kBridgeKinds), kind_name);

TEST(NativeCases, HaveEveryRegisteredNative) {
    script::reset();
    FakeJni jni;
    ASSERT_EQ(register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()), 1);
    std::map<const void*, std::string> registered;
    for (const FakeJni::Registered& table : jni.registered) {
        for (const JNINativeMethod& method : table.methods) {
            registered[method.fnPtr] = table.cls + " " + method.name + method.signature;
        }
    }
    EXPECT_EQ(registered.size(), 72U);
    for (const BridgeKind* kind : kBridgeKinds) {
        for (const NativeCase& native : native_cases(*kind)) {
            registered.erase(native.native);
        }
    }
    EXPECT_EQ(registered, (std::map<const void*, std::string>{}));
}

} // namespace
