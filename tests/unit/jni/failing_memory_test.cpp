// Every native on each of its paths, while its first, second, third... memory allocation fails.

#include "allocations.h"
#include "bridge_test_support.h"
#include "native_run.h"
#include "scripted_situation.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <vector>

using namespace tavro::test;

namespace {

class FailingMemory : public EveryNativeTest {
protected:
    // What a run does while the n-th allocation fails. The result is missing if the exception leaves the native, which
    // ends a Java virtual machine.
    struct Outcome {
        bool failed;
        std::optional<std::string> result;
        std::vector<std::string> journal;
    };
    Outcome run(const NativeCase& native, int n) {
        start_again();
        set_managers();
        script_situation(*native.kind, native.situation);
        log_level("d");
        FakeJni jni;
        jni.clear_journal();
        Outcome outcome{};
        try {
            const NativeRun run = run_native(native, jni, n);
            outcome.failed = FailingAllocation::failed();
            outcome.result = run.result;
            EXPECT_EQ(run.left, "") << native.name << ", allocation " << n;
        } catch (const std::bad_alloc&) {
            outcome.failed = true;
        }
        outcome.journal = jni.journal();
        return outcome;
    }

    static std::size_t number(const std::vector<std::string>& journal, const std::string& part) {
        return static_cast<std::size_t>(std::count_if(journal.begin(), journal.end(), [&](const std::string& entry) {
            return entry.find(part) != std::string::npos;
        }));
    }
};

// Of all allocations that can fail, only the one of the buffer of a whole service list is reported: its natives return
// null. After any other the process ends, and nothing has been written that is not written on success.
TEST_F(FailingMemory, LeavesTheNativeOrFailsTheReadOfAServiceList) {
    std::set<std::string> returned;
    std::set<std::string> ended; // of the cases whose list is open
    for (const BridgeKind* kind : kBridgeKinds) {
        for (const NativeCase& native : native_cases(*kind)) {
            if (native.slow) {
                continue;
            }
            const Outcome good = run(native, 0);
            Outcome outcome = good;
            for (int n = 1; (outcome = run(native, n)).failed; ++n) {
                ASSERT_LT(n, 100) << native.name;
                for (const char* part : {"_update_rec(", "_add_rec(", "_del_rec("}) {
                    EXPECT_LE(number(outcome.journal, part), number(good.journal, part)) << native.name;
                }
                EXPECT_EQ(number(outcome.journal, "_lock("), number(outcome.journal, "_unlock(")) << native.name;
                if (!outcome.result) {
                    if (native.situation.open) {
                        ended.insert(native.kind->name + std::string(" ") + native.name);
                    }
                    continue;
                }
                EXPECT_EQ(*outcome.result, "null") << native.name;
                EXPECT_EQ(number(outcome.journal, "sa_svl_buffer malloc fail"), 1U) << native.name;
                returned.insert(native.name.substr(0, native.name.find(',')));
            }
        }
    }
    EXPECT_EQ(returned,
              (std::set<std::string>{"filter by network", "filter by stream", "filter by stream record", "read all"}));
    // The natives of an open list allocate memory for names without a terminator and for companion lists only.
    EXPECT_EQ(ended, (std::set<std::string>{"Networks read all by keys", "Networks read all, open list",
                                            "Networks read by keys", "Networks read, open list",
                                            "Services filter by network, open list",
                                            "Services filter by stream, list loaded from a file",
                                            "Services filter by stream, open list"}));
}

} // namespace
