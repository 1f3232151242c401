// Everything at once: threads of several processes lock, change, read, store and load lists, read and change
// properties, and write to the log. ThreadSanitizer finds the data races in it.
#include "child_process.h"
#include "traffic.h"
#include "workspace.h"

#include <memory>

using namespace tavro;

namespace {

constexpr int kProcesses = 3;
constexpr int kRounds = 20;

class BusyProcesses : public Workspace {
protected:
    BusyProcesses() {
        // No wait may time out, even on a slow machine.
        environment.set("TAVRO_LOCK_TIMEOUT_MS", "60000");
        environment.set("TAVRO_PROPERTIES", path("properties"));
        write_file(path("properties"), "traffic=even\n");
    }

    // Number of rounds of a process whose two log lines follow one another.
    int logged_rounds(int process) const {
        const std::vector<std::string> lines = log();
        int rounds = 0;
        for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
            const std::string start = lines[i].substr(0, lines[i].find(": "));
            rounds += lines[i] == start + ": process " + std::to_string(process) &&
                              lines[i + 1].compare(0, start.size() + 8, start + ": round ") == 0
                          ? 1
                          : 0;
        }
        return rounds;
    }
};

} // namespace

TEST_F(BusyProcesses, LoseNothingAndAgree) {
    const MwdbHandle list = created<Networks>(1);
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int process = 1; process < kProcesses; ++process) {
        children.push_back(std::make_unique<ChildProcess>(
            std::vector<std::string>{"traffic", directory(), std::to_string(process), std::to_string(kRounds)}));
    }
    EXPECT_EQ(Traffic(directory(), 0, kRounds).run(), 0);
    for (const auto& child : children) {
        EXPECT_EQ(child->wait(), 0);
    }
    Contents expected;
    for (int id = 1; id <= kProcesses * kRounds * Traffic::kAddsInARound; ++id) {
        expected.emplace_back(id, 1);
    }
    EXPECT_EQ(contents<Networks>(list), expected);
    for (int process = 0; process < kProcesses; ++process) {
        EXPECT_EQ(logged_rounds(process), kRounds) << process;
    }
    EXPECT_EQ(log().size(), static_cast<std::size_t>(2 * kProcesses * kRounds));
}
