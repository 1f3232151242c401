// Faults: which calls fail, wait or kill the process, and what the log has of it.
#include "child_process.h"
#include "faults/faults.h"
#include "kinds.h"
#include "middleware/files.h"
#include "services/status.h"
#include "workspace.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

using namespace tavro;

namespace {

constexpr MwStatus kNoFault = kHostBadArgument; // of a call without a path

// A call that takes no time and needs no storage.
MwStatus cheap_call() { return x_fm_delete_file(kMwRootDrive, ""); }

template <class Result, class... Parameters>
std::int64_t call_with_zeros(Result (*function)(Parameters...)) {
    return static_cast<std::int32_t>(function(Parameters{}...));
}

class Faults : public Workspace {
protected:
    using Lines = std::vector<std::string>;
    using Statuses = std::vector<MwStatus>;

    static Statuses statuses(int calls) {
        Statuses all;
        for (int i = 0; i < calls; ++i) {
            all.push_back(cheap_call());
        }
        return all;
    }

    static Statuses statuses_with(const std::string& faults, int calls = 5) {
        tavro_host_set_faults(faults.c_str());
        return statuses(calls);
    }

    // The log without priorities, tags and process ids.
    Lines texts() const {
        Lines all = log();
        for (std::string& line : all) {
            line.erase(0, line.find(": ") + 2);
        }
        return all;
    }

    // Calls until the status is `expected`. Returns false if that takes too long.
    static bool becomes(MwStatus expected) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (cheap_call() != expected && std::chrono::steady_clock::now() < end) {
            std::this_thread::yield();
        }
        return cheap_call() == expected;
    }

    void set_properties(const std::string& content) const {
        std::filesystem::create_directories(home());
        write_file(home() + "/properties", content);
    }

    // Calls from four threads. Returns how many returned `status`.
    static int calls_of_threads(MwStatus status, int calls_each) {
        std::atomic<int> found{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (const MwStatus result : statuses(calls_each)) {
                    found += result == status ? 1 : 0;
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        return found;
    }
};

} // namespace

TEST_F(Faults, HitTheSelectedCalls) {
    const struct {
        const char* faults;
        Statuses expected;
    } cases[] = {
        {"", {kNoFault, kNoFault, kNoFault, kNoFault, kNoFault}},
        {"x_fm_delete_file=-5", {-5, -5, -5, -5, -5}},
        {"x_fm_delete_file:3=-106", {kNoFault, kNoFault, -106, kNoFault, kNoFault}},
        {"x_fm_delete_file:3+=-106", {kNoFault, kNoFault, -106, -106, -106}},
        {"x_fm_delete_file:100%=-5", {-5, -5, -5, -5, -5}},
        {"x_fm_delete_file:0.01%=-5", {kNoFault, kNoFault, kNoFault, kNoFault, kNoFault}},
        {"x_fm_*:2=-7", {kNoFault, -7, kNoFault, kNoFault, kNoFault}},
        {"*_file:2=-7", {kNoFault, -7, kNoFault, kNoFault, kNoFault}},
        {"x*m*:2=-7", {kNoFault, -7, kNoFault, kNoFault, kNoFault}},
        {"fs_raw_*=-7", {kNoFault, kNoFault, kNoFault, kNoFault, kNoFault}},
        {" x_fm_delete_file:1=-1,x_fm_delete_file:2=-2\tx_fm_*:3=-3,\n", {-1, -2, -3, kNoFault, kNoFault}},
        {"x_fm_delete_file:2=-5 x_fm_delete_file:2+=-2147483648",
         {kNoFault, -5, INT32_MIN, INT32_MIN, INT32_MIN}}, // the first one decides
    };
    for (const auto& [faults, expected] : cases) {
        EXPECT_EQ(statuses_with(faults), expected) << faults;
    }
}

TEST_F(Faults, OfAPatternCountTheCallsOfAllItsFunctions) {
    tavro_host_set_faults("fs_raw_*:3=-5");
    EXPECT_EQ(fs_raw_init(kMwRootDrive, ""), kNoFault);
    cheap_call();
    EXPECT_EQ(fs_raw_copy(kMwRootDrive, "", kMwRootDrive, ""), kNoFault);
    std::uint32_t words[] = {7, 8, 9};
    EXPECT_EQ(fs_raw_qry_fpath(kMwRootDrive, "/", &words[0], &words[1], &words[2]), -5);
    EXPECT_EQ((std::vector<std::uint32_t>(std::begin(words), std::end(words))), (std::vector<std::uint32_t>{7, 8, 9}));
    EXPECT_EQ(fs_raw_init(kMwRootDrive, ""), kNoFault);
    EXPECT_EQ(log(), Lines{"W/TavroHost" + process_mark() + ": fault: fs_raw_qry_fpath call 3 of fs_raw_* returns -5"});
}

TEST_F(Faults, HitEveryFunctionOfTheMiddleware) {
    tavro_host_set_faults("*=-77");
    std::vector<std::string> missed;
    std::size_t calls = 0;
#define TAVRO_CALL_WITH_ZEROS(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                             \
    ++calls;                                                                                                           \
    if (call_with_zeros(NAME) != -77) {                                                                                \
        missed.emplace_back(#NAME);                                                                                    \
    }
    TAVRO_MIDDLEWARE_CALLS(TAVRO_CALL_WITH_ZEROS)
    EXPECT_EQ(missed, std::vector<std::string>{});
    EXPECT_EQ(calls, 86U);
    EXPECT_EQ(texts().front(), "fault: x_svl_open call 1 of * returns -77");
    EXPECT_EQ(texts().back(), "fault: x_fm_delete_file call 86 of * returns -77");
}

TEST_F(Faults, OfChannelNumbersReturnAnyNumber) {
    tavro_host_set_faults("x_sb_gen_channel_id:1=4294967295 x_sb_gen_channel_id:2=0 x_sb_get_channel_index=-1");
    EXPECT_EQ(x_sb_gen_channel_id(1, 2, 3), 0xFFFFFFFF);
    EXPECT_EQ(x_sb_gen_channel_id(1, 2, 3), 0U);
    EXPECT_EQ(x_sb_gen_channel_id(1, 2, 3), 0x40203U);
    EXPECT_EQ(x_sb_get_channel_index(0x40203), -1);
}

TEST_F(Faults, OfAPercentageAreTheSameInEachRun) {
    const Statuses once = statuses_with("x_fm_delete_file:5%=-7", 1000);
    EXPECT_EQ(statuses_with("seed=1 x_fm_delete_file:5%=-7", 1000), once);
    EXPECT_NE(statuses_with("x_fm_delete_file:5%=-7 seed=2", 1000), once);
    const auto hits = std::count(once.begin(), once.end(), -7);
    EXPECT_EQ(hits, 45);
    tavro_host_set_faults("x_fm_delete_file:5%=-7");
    EXPECT_EQ(calls_of_threads(-7, 250), hits);
}

TEST_F(Faults, HitOneOfTheCallsOfManyThreads) {
    tavro_host_set_faults("x_fm_delete_file:500=-5");
    EXPECT_EQ(calls_of_threads(-5, 250), 1);
    EXPECT_EQ(texts(), Lines{"fault: x_fm_delete_file call 500 returns -5"});
}

TEST_F(Faults, DelayTheCallAndLeaveItsResult) {
    tavro_host_set_faults("x_fm_delete_file:2:delay=20ms x_fm_*:delay=1ms x_fm_*:3=-5 x_fm_*:3:delay=0ms");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(statuses(3), (Statuses{kNoFault, kNoFault, -5}));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(23));
    EXPECT_EQ(texts(), (Lines{
                           "fault: x_fm_delete_file call 1 of x_fm_* waits 1 ms",
                           "fault: x_fm_delete_file call 2 waits 20 ms",
                           "fault: x_fm_delete_file call 2 of x_fm_* waits 1 ms",
                           "fault: x_fm_delete_file call 3 of x_fm_* waits 1 ms",
                           "fault: x_fm_delete_file call 3 of x_fm_* returns -5",
                           "fault: x_fm_delete_file call 3 of x_fm_* waits 0 ms",
                       }));
}

TEST_F(Faults, KillTheProcessBeforeOrAfterTheCall) {
    created<Networks>(1);
    {
        environment.set("TAVRO_FAULTS", "x_nwl_add_rec:3=kill");
        ChildProcess process({"add", "1", "5"});
        EXPECT_EQ(process.read_lines(), (Lines{"1", "2"}));
        EXPECT_EQ(process.wait(), -SIGKILL);
        EXPECT_EQ(contents<Networks>(opened<Networks>(1)), (Contents{{1, 1}, {2, 2}}));
    }
    environment.set("TAVRO_FAULTS", "x_nwl_add_rec:2=kill-after");
    ChildProcess process({"add", "11", "5"});
    EXPECT_EQ(process.read_lines(), Lines{"11"});
    EXPECT_EQ(process.wait(), -SIGKILL);
    EXPECT_EQ(contents<Networks>(opened<Networks>(1)), (Contents{{1, 1}, {2, 2}, {11, 11}, {12, 12}}));
    EXPECT_EQ(texts(), (Lines{"fault: x_nwl_add_rec call 3 kills the process",
                              "fault: x_nwl_add_rec call 2 kills the process when it is done"}));
}

TEST_F(Faults, CountAnewWhenTheSettingChanges) {
    EXPECT_EQ(statuses_with("x_fm_*:2=-5", 1), Statuses{kNoFault});
    EXPECT_EQ(statuses_with("x_fm_*:2=-5", 2), (Statuses{kNoFault, -5}));
    EXPECT_EQ(statuses_with("", 2), (Statuses{kNoFault, kNoFault}));
}

TEST_F(Faults, FollowThePropertiesWhileTheProcessRuns) {
    tavro_host_set_faults(nullptr);
    EXPECT_EQ(cheap_call(), kNoFault);
    set_properties("tavro.faults = x_fm_*=-5\n");
    EXPECT_TRUE(becomes(-5));
    set_properties("tavro.faults = x_fm_*=-6\n");
    EXPECT_TRUE(becomes(-6));
    set_properties("");
    EXPECT_TRUE(becomes(kNoFault));
}

TEST_F(Faults, ContinueInNumberedProperties) {
    set_properties("tavro.faults = x_fm_*:1=-5\ntavro.faults.2 = x_fm_*:2=-6\ntavro.faults.4 = x_fm_*:3=-7\n");
    tavro_host_set_faults(nullptr);
    EXPECT_EQ(statuses(4), (Statuses{-5, -6, kNoFault, kNoFault}));
}

TEST_F(Faults, RefuseAPropertyThatMayHaveBeenTruncated) {
    const std::string blanks(80, ',');
    set_properties("tavro.faults = x_fm_*:1=-5" + blanks + "x_fm_*=-6\ntavro.faults.2 = x_fm_*:2=-7\n");
    tavro_host_set_faults(nullptr);
    EXPECT_EQ(statuses(3), (Statuses{kNoFault, -7, kNoFault}));
    EXPECT_EQ(texts(), (Lines{"the property tavro.faults is ignored: it has more than 90 bytes; continue in "
                              "tavro.faults.2",
                              "fault: x_fm_delete_file call 2 of x_fm_* returns -7"}));
}

TEST_F(Faults, OfTheVariableReplaceTheProperties) {
    set_properties("tavro.faults = x_fm_*:1=-5\n");
    environment.set("TAVRO_FAULTS", "x_fm_*:2=-6");
    tavro_host_set_faults(nullptr);
    EXPECT_EQ(statuses(3), (Statuses{kNoFault, -6, kNoFault}));
    environment.set("TAVRO_FAULTS", "");
    tavro_host_set_faults(nullptr);
    EXPECT_EQ(statuses(3), (Statuses{-5, kNoFault, kNoFault}));
}

TEST_F(Faults, ReportEachInvalidEntryOnceAndKeepTheOthers) {
    const struct {
        const char* entry;
        const char* cause;
    } cases[] = {
        {"x_fm_delete_file", "'=' is missing; write FUNCTION=STATUS, such as x_svl_add_rec=-106"},
        {"x_fm_delet_file=-5", "unknown function 'x_fm_delet_file'; did you mean x_fm_delete_file?"},
        {"strlen=-5", "unknown function 'strlen'; write a function of the middleware such as x_svl_add_rec, or a "
                      "pattern such as x_svl_*"},
        {"=-5", "unknown function ''; write a function of the middleware such as x_svl_add_rec, or a pattern such as "
                "x_svl_*"},
        {"x_xyz_*=-5", "no function matches 'x_xyz_*'; write a pattern such as x_svl_*"},
        {"*x*_*_*=-5", "'*x*_*_*' has more than 3 stars; write a pattern such as x_svl_*"},
        {"x_fm_*:0=-5", "'0' selects no calls; write :3 for the third call, :3+ for the third and all later calls, or "
                        ":5% for 5 % of the calls"},
        {"x_fm_*:2:3=-5", "'2:3' selects no calls; write :3 for the third call, :3+ for the third and all later "
                          "calls, or :5% for 5 % of the calls"},
        {"x_fm_*:-1+=-5", "'-1+' selects no calls; write :3 for the third call, :3+ for the third and all later "
                          "calls, or :5% for 5 % of the calls"},
        {"x_fm_*:101%=-5", "'101%' selects no calls; write :3 for the third call, :3+ for the third and all later "
                           "calls, or :5% for 5 % of the calls"},
        {"x_fm_*:1.234%=-5", "'1.234%' selects no calls; write :3 for the third call, :3+ for the third and all later "
                             "calls, or :5% for 5 % of the calls"},
        {"x_fm_*:1.%=-5", "'1.%' selects no calls; write :3 for the third call, :3+ for the third and all later "
                          "calls, or :5% for 5 % of the calls"},
        {"x_fm_*=fail", "'fail' is not an action; write a status such as -106, kill or kill-after, or write "
                        "x_fm_*:delay=200ms"},
        {"x_fm_*=0", "0 is not the status of a failure; write -2147483648 to -1"},
        {"*=-2147483649", "-2147483649 is not the status of a failure; write -2147483648 to -1"},
        {"x_sb_*=4294967296", "4294967296 does not fit in 32 bits; write -2147483648 to 4294967295"},
        {"x_fm_*:delay=200", "'200' is not a delay; write 0ms to 3600000ms"},
        {"x_fm_*:delay=3600001ms", "'3600001ms' is not a delay; write 0ms to 3600000ms"},
        {"seed=x", "'x' is not a seed; write a whole number, such as seed=7"},
        {"seed=-1", "'-1' is not a seed; write a whole number, such as seed=7"},
    };
    std::string all = "x_fm_delete_file:2=-5";
    Lines expected;
    for (const auto& [entry, cause] : cases) {
        all += std::string(" ") + entry;
        expected.push_back("E/TavroHost" + process_mark() + ": the fault '" + entry + "' is ignored: " + cause);
    }
    expected.push_back("W/TavroHost" + process_mark() + ": fault: x_fm_delete_file call 2 returns -5");
    expected.push_back("W/TavroHost" + process_mark() + ": fault: x_fm_delete_file call 4 returns -6");
    EXPECT_EQ(statuses_with(all, 3), (Statuses{kNoFault, -5, kNoFault}));
    EXPECT_EQ(statuses_with(all + " x_fm_*:1=-4", 0), Statuses{}); // reports nothing again
    EXPECT_EQ(statuses_with("x_fm_delete_file:4=-6", 4), (Statuses{kNoFault, kNoFault, kNoFault, -6}));
    EXPECT_EQ(log(), expected);
}
