// Properties, log and list locks when memory runs out: no exception leaves them, and they go on working
// once there is memory.
#include "child_process.h"
#include "common/report.h"
#include "failing_memory.h"
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <android/log.h>
#include <cutils/properties.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <thread>

using namespace tavro;

namespace {

class OutOfMemory : public Workspace {
protected:
    // Makes the call while the first allocation fails, the second, and so on until there is enough memory. Returns the
    // results that differ from one another, in order of occurrence; the last one is the result with enough memory.
    static std::vector<int> results(const std::function<void()>& prepare, const std::function<int()>& call) {
        std::vector<int> found;
        for (int allocations = 0;; ++allocations) {
            prepare();
            int result = 0;
            bool failed = false;
            {
                const FailingMemory memory(allocations);
                result = call();
                failed = memory.has_failed();
            }
            if (found.empty() || found.back() != result) {
                found.push_back(result);
            }
            if (!failed) {
                EXPECT_GT(allocations, 0);
                return found;
            }
        }
    }
};

} // namespace

TEST_F(OutOfMemory, PropertiesHaveTheirDefaultsUntilThereIsMemory) {
    const std::string file = path("properties");
    environment.set("TAVRO_PROPERTIES", file);
    int round = 0;
    const auto change = [&] {
        write_file(file, "long.name.of.a.property=" + std::string(40, 'x') + std::to_string(++round));
    };
    char value[PROPERTY_VALUE_MAX];
    const auto call = [&] { return property_get("long.name.of.a.property", value, "default"); };
    for (const char* name : {"a/b/c", "properties"}) { // moves the file, too
        environment.set("TAVRO_PROPERTIES", path(name));
        const bool there = std::string(name) == "properties";
        const std::vector<int> lengths = results(change, call);
        EXPECT_EQ(lengths.front(), 7) << name;
        EXPECT_EQ(lengths.back(), there ? 40 + static_cast<int>(std::to_string(round).size()) : 7) << name;
        EXPECT_EQ(value, there ? std::string(40, 'x') + std::to_string(round) : "default");
    }
}

TEST_F(OutOfMemory, LogLinesAreLostButNothingElse) {
    const std::string text(2000, 'x');
    EXPECT_EQ(results([] {}, [&] { return __android_log_print(3, "LongTags", "%s", text.c_str()); }),
              (std::vector<int>{-ENOMEM, 1}));
    EXPECT_EQ(log(), std::vector<std::string>{"D/LongTags" + process_mark() + ": " + text});
}

TEST_F(OutOfMemory, TheFirstCallOfAProcessFailsAndTheNextOneWorks) {
    created<Networks>(1);
    ChildProcess process({"first_call_without_memory"});
    EXPECT_EQ(process.read_line(), std::to_string(kHostOutOfMemory) + " 0");
    EXPECT_EQ(process.wait(), 0);
}

TEST_F(OutOfMemory, AFailedOpeningOfTheStorageLeavesNoFileOpen) {
    created<Networks>(1);
    const auto open_files = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    restart();
    const auto before = open_files();
    MwdbHandle handle = 0;
    const auto check = [&] {
        restart();
        EXPECT_EQ(open_files(), before);
    };
    EXPECT_EQ(results(check, [&] { return x_nwl_open(1, 0, 0, &handle); }),
              (std::vector<int>{kHostOutOfMemory, kMwOk}));
    check();
}

TEST_F(OutOfMemory, ReportsAreWrittenOnceWhenThereIsMemory) {
    const std::string message = "a problem of " + directory();
    const auto call = [&] {
        tavro::host::report_once(message);
        return 0;
    };
    results([] {}, call);
    EXPECT_EQ(log(), std::vector<std::string>{"E/TavroHost" + process_mark() + ": " + message});
    call();
    EXPECT_EQ(log().size(), 1u);
}

// A second list makes each first call take memory, a reader makes the call wait.
TEST_F(OutOfMemory, LocksAreNeitherTakenNorKept) {
    const MwdbHandle handle = created<Networks>(1);
    environment.set("TAVRO_LOCK_TIMEOUT_MS", "0");
    MwdbHandle fresh = 0;
    std::uint16_t id = 40000; // the lock table has no entry for these lists yet
    const auto fresh_list = [&] { fresh = created<Networks>(++id); };
    for (const auto lock : {x_nwl_lock, x_nwl_read_lock}) {
        EXPECT_EQ(results(fresh_list, [&] { return lock(fresh); }), (std::vector<int>{kHostOutOfMemory, kMwOk}));
        ChildProcess other({"lock", std::to_string(id - 1)}); // the last list whose lock was not taken
        EXPECT_EQ(other.read_line(), "locked");
    }
    ASSERT_EQ(x_nwl_lock(handle), kMwOk);
    std::thread([&] {
        EXPECT_EQ(results([] {}, [&] { return x_nwl_read_lock(handle); }),
                  (std::vector<int>{kHostOutOfMemory, kHostLockTimeout}));
    }).join();
    EXPECT_EQ(x_nwl_unlock(handle), kMwOk);
    ChildProcess other({"lock"});
    EXPECT_EQ(other.read_line(), "locked");
}
