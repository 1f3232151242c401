// The form of log lines.
#include "workspace.h"

#include <android/log.h>

#include <thread>

namespace {

class Log : public Workspace {
protected:
    using Lines = std::vector<std::string>;
};

} // namespace

TEST_F(Log, CarriesPriorityTagProcessAndText) {
    EXPECT_EQ(__android_log_print(3, "SomeLongTag", "number %d and %s", 7, "text"), 1);
    EXPECT_EQ(__android_log_print(6, "Tag", "plain"), 1);
    EXPECT_EQ(log(), (Lines{"D/SomeLongTag" + process_mark() + ": number 7 and text",
                            "E/Tag     " + process_mark() + ": plain"}));
}

TEST_F(Log, ShowsANullTagAsAnEmptyOne) {
    __android_log_print(3, nullptr, "text");
    EXPECT_EQ(log(), (Lines{"D/        " + process_mark() + ": text"}));
}

TEST_F(Log, KnowsTheLettersOfThePriorities) {
    for (const int priority : {2, 3, 4, 5, 6, 7, 8, 99, -1}) {
        __android_log_print(priority, "LongTags", "x");
    }
    std::string letters;
    for (const std::string& line : log()) {
        letters += line[0];
    }
    EXPECT_EQ(letters, "VDIWEFS??");
}

TEST_F(Log, PrefixesEveryLineOfATextAndEndsItOnce) {
    __android_log_print(3, "LongTags", "one\ntwo\n");
    __android_log_print(3, "LongTags", "\n");
    __android_log_print(3, "LongTags", "%s", "");
    __android_log_print(3, "LongTags", "a\n\nb");
    const std::string prefix = "D/LongTags" + process_mark() + ": ";
    EXPECT_EQ(log(), (Lines{prefix + "one", prefix + "two", prefix, prefix, prefix + "a", prefix, prefix + "b"}));
}

TEST_F(Log, WritesLongTextsWhole) {
    const std::string text(100'000, 'x');
    __android_log_print(3, "LongTags", "%s", text.c_str());
    EXPECT_EQ(log(), (Lines{"D/LongTags" + process_mark() + ": " + text}));
}

TEST_F(Log, GoesToStandardErrorWithoutAFileOrWhenTheFileCannotBeWritten) {
    for (const std::string& file : {std::string(), path("nowhere/log")}) {
        environment.set("TAVRO_LOG_FILE", file);
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(__android_log_print(5, "LongTags", "text\n"), 1);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "W/LongTags" + process_mark() + ": text\n");
    }
}

TEST_F(Log, KeepsTheLinesOfManyThreadsApart) {
    constexpr int kThreads = 8;
    constexpr int kLines = 100;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < kLines; ++n) {
                __android_log_print(3, "LongTags", "first\nsecond\n");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string prefix = "D/LongTags" + process_mark() + ": ";
    Lines expected;
    for (int n = 0; n < kThreads * kLines; ++n) {
        expected.insert(expected.end(), {prefix + "first", prefix + "second"});
    }
    EXPECT_EQ(log(), expected);
}

TEST_F(Log, LeavesErrnoAlone) {
    environment.set("TAVRO_LOG_FILE", path("nowhere/log"));
    errno = 4711;
    ::testing::internal::CaptureStderr();
    __android_log_print(3, "LongTags", "text");
    const int after = errno;
    ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(after, 4711);
}
