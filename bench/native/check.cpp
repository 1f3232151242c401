#include "check.h"

#include "control.h"
#include "operations.h"

#include <algorithm>
#include <cstdio>
#include <regex>

namespace tavro::bench {

namespace {

constexpr int kMostRecords = 100;
constexpr std::size_t kShown = 300; // characters shown of a line

std::vector<std::string> journal_of(Jvm& jvm, const Operation& operation, const Calls& calls) {
    if (operation.before) {
        operation.before();
    }
    jvm.env()->PushLocalFrame(16);
    RecordingEnv& recorder = jvm.recorder();
    recorder.start();
    calls(recorder.env(), 1);
    std::vector<std::string> journal = recorder.stop();
    jvm.env()->PopLocalFrame(nullptr);
    jvm.check(operation.name.c_str());
    // Some log lines contain source line numbers of the library.
    static const std::regex source_line(
        "^(log 3 -: \\[jni_VltTvList_Init\\] \\[com_velotra_tv_tavro_channellist_.*\\])\\[\\d+\\]");
    for (std::string& line : journal) {
        line = std::regex_replace(line, source_line, "$1[LINE]");
    }
    return journal;
}

bool same(const Operation& operation, const std::vector<std::string>& library, const std::vector<std::string>& floor,
          const char* gate) {
    const auto [left, right] = std::mismatch(library.begin(), library.end(), floor.begin(), floor.end());
    if (left == library.end() && right == floor.end()) {
        std::printf("ok   %s, %s gate: %zu calls\n", operation.name.c_str(), gate, library.size());
        return true;
    }
    const auto shown = [](const std::vector<std::string>& journal, auto at) {
        return at == journal.end() ? std::string("no more calls") : at->substr(0, kShown);
    };
    std::printf("FAIL %s, %s gate, call %zu\n  before:  %s\n  library: %s\n  floor:   %s\n", operation.name.c_str(),
                gate, static_cast<std::size_t>(left - library.begin()) + 1,
                left == library.begin() ? "" : (left - 1)->substr(0, kShown).c_str(), shown(library, left).c_str(),
                shown(floor, right).c_str());
    return false;
}

} // namespace

bool check_floor(Jvm& jvm) {
    bool all = true;
    for (const Operation& operation : operations(jvm, kMostRecords)) {
        if (operation.log_level != 0) {
            continue; // a repetition for another log level
        }
        for (const char level : {'\0', 'D'}) {
            tavro_memory_log_level = level;
            // The first call of each opens the lists.
            journal_of(jvm, operation, operation.library);
            journal_of(jvm, operation, operation.floor);
            const std::vector<std::string> library = journal_of(jvm, operation, operation.library);
            const std::vector<std::string> floor = journal_of(jvm, operation, operation.floor);
            all = same(operation, library, floor, level == '\0' ? "closed" : "open") && all;
        }
    }
    tavro_memory_log_level = 0;
    return all;
}

} // namespace tavro::bench
