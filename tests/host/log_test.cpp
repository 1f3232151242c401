// The format of log lines.
#include "workspace.h"

#include <android/log.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class Log : public Workspace {
protected:
    using Lines = std::vector<std::string>;

    // Logs `text` and returns what was written to standard error.
    static std::string on_standard_error(const std::string& text) {
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(__android_log_print(5, "LongTags", "%s", text.c_str()), 1);
        return ::testing::internal::GetCapturedStderr();
    }

    static std::string longer_than(int fifo) {
        return std::string(static_cast<std::size_t>(3 * ::fcntl(fifo, F_GETPIPE_SZ)), 'x');
    }

    // Waits until a FIFO is full, or `written`.
    static void await_full(int fifo, const std::atomic<bool>& written) {
        const int most = ::fcntl(fifo, F_GETPIPE_SZ);
        for (int held = 0; held < most && !written;) {
            std::this_thread::yield();
            ::ioctl(fifo, FIONREAD, &held);
        }
    }
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

TEST_F(Log, WritesTextsOfEveryLengthWhole) {
    const std::string prefix = "D/LongTags" + process_mark() + ": ";
    Lines expected;
    for (std::size_t length = 500; length <= 530; ++length) {
        expected.push_back(prefix + std::string(length - 1, 'x') + ".");
        __android_log_print(3, "LongTags", "%s.", std::string(length - 1, 'x').c_str());
    }
    EXPECT_EQ(log(), expected);
}

TEST_F(Log, GoesToStandardErrorWithoutAFile) {
    environment.set("TAVRO_LOG_FILE", "");
    EXPECT_EQ(on_standard_error("text\n"), "W/LongTags" + process_mark() + ": text\n");
    environment.unset("TAVRO_LOG_FILE");
    EXPECT_EQ(on_standard_error("text\n"), "W/LongTags" + process_mark() + ": text\n");
}

TEST_F(Log, GoesToStandardErrorWhenTheFileCannotBeWrittenAndSaysSoOnce) {
    const std::string file = path("nowhere/log");
    environment.set("TAVRO_LOG_FILE", file);
    const std::string line = "W/LongTags" + process_mark() + ": text\n";
    EXPECT_EQ(on_standard_error("text"), "E/TavroHost" + process_mark() + ": cannot write the log file " + file +
                                             ": No such file or directory; check the path, or set TAVRO_LOG_FILE to "
                                             "another file; until then, log lines go to standard error\n" +
                                             line);
    EXPECT_EQ(on_standard_error("text"), line);
    environment.set("TAVRO_LOG_FILE", directory());
    EXPECT_EQ(on_standard_error("text"), "E/TavroHost" + process_mark() + ": cannot write the log file " + directory() +
                                             ": Is a directory; move it away, or set TAVRO_LOG_FILE to another file; "
                                             "until then, log lines go to standard error\n" +
                                             line);
}

TEST_F(Log, GoesToStandardErrorWhenTheFileIsOnAFullDisk) {
    environment.set("TAVRO_LOG_FILE", "/dev/full");
    std::string lines = on_standard_error("text");
    lines += on_standard_error("text");
    const std::string line = "W/LongTags" + process_mark() + ": text\n";
    EXPECT_EQ(lines, "E/TavroHost" + process_mark() +
                         ": cannot write the log file /dev/full: No space left on device; free some space on its file "
                         "system; until then, log lines go to standard error\n" +
                         line + line);
}

TEST_F(Log, GoesToStandardErrorWhenTheFileIsAFifoThatNobodyReads) {
    const std::string fifo = path("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    environment.set("TAVRO_LOG_FILE", fifo);
    const std::string line = "W/LongTags" + process_mark() + ": text\n";
    EXPECT_EQ(on_standard_error("text"), "E/TavroHost" + process_mark() + ": cannot write the log file " + fifo +
                                             ": No such device or address; check the path, or set TAVRO_LOG_FILE to "
                                             "another file; until then, log lines go to standard error\n" +
                                             line);
    const int reader = ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(on_standard_error("text"), "");
    std::string read(line.size() + 1, '#');
    EXPECT_EQ(::read(reader, read.data(), read.size()), static_cast<ssize_t>(line.size()));
    EXPECT_EQ(read, line + "#");
    ::close(reader);
}

TEST_F(Log, IsNeverWrittenToAFileOfTheStorage) {
    fs::create_directory(home());
    write_file(home() + "/lists.db", "lists");
    fs::create_hard_link(home() + "/lists.db", path("hard"));
    const std::string line = "W/LongTags" + process_mark() + ": text\n";
    for (const std::string& file : {home() + "/lists.db", home() + "/locks", path("hard")}) {
        environment.set("TAVRO_LOG_FILE", file);
        EXPECT_EQ(on_standard_error("text"), "E/TavroHost" + process_mark() + ": cannot write the log file " + file +
                                                 ": it belongs to the storage; set TAVRO_LOG_FILE to another file; "
                                                 "until then, log lines go to standard error\n" +
                                                 line);
        EXPECT_EQ(on_standard_error("text"), line);
    }
    EXPECT_EQ(read_file(home() + "/lists.db"), "lists");
    EXPECT_FALSE(fs::exists(home() + "/locks"));
    environment.set("TAVRO_LOG_FILE", path("log"));
    EXPECT_EQ(on_standard_error("text"), "");
    EXPECT_EQ(on_standard_error("text"), "");
    fs::rename(path("hard"), path("log")); // the path of the last line may lead to another file now
    EXPECT_NE(on_standard_error("text").find("it belongs to the storage"), std::string::npos);
    EXPECT_EQ(read_file(path("log")), "lists");
}

// A text that is longer than the FIFO, whose reader starts when the FIFO is full.
TEST_F(Log, WaitsForTheReaderOfAFullFifo) {
    const std::string fifo = path("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    environment.set("TAVRO_LOG_FILE", fifo);
    const int reader = ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const std::string text = longer_than(reader);
    std::atomic<bool> written{false};
    std::string read;
    std::thread reading([&] {
        await_full(reader, written);
        std::string buffer(4096, '#');
        for (ssize_t size = 1; size != 0;) {
            const bool last = written; // nothing is written after this read
            size = ::read(reader, buffer.data(), buffer.size());
            read.append(buffer, 0, static_cast<std::size_t>(std::max(size, ssize_t{0})));
            size = size <= 0 && last ? 0 : 1;
        }
    });
    EXPECT_EQ(on_standard_error(text), "");
    written = true;
    reading.join();
    EXPECT_TRUE(read == "W/LongTags" + process_mark() + ": " + text + "\n") << read.size();
    ::close(reader);
}

TEST_F(Log, SurvivesTheEndOfTheReaderOfAFullFifo) {
    const std::string fifo = path("fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    environment.set("TAVRO_LOG_FILE", fifo);
    static std::atomic<int> signals;
    signals = 0;
    const auto before = std::signal(SIGPIPE, [](int) { ++signals; });
    const int reader = ::open(fifo.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::atomic<bool> written{false};
    std::thread closing([&] {
        await_full(reader, written);
        ::close(reader);
    });
    const std::string text = longer_than(reader);
    const std::string shown = on_standard_error(text);
    written = true;
    closing.join();
    const auto problem = [&](const char* cause) {
        return "E/TavroHost" + process_mark() + ": cannot write the log file " + fifo + ": " + cause +
               "; check the path, or set TAVRO_LOG_FILE to another file; until then, log lines go to standard error\n";
    };
    // The report meets a FIFO without a reader.
    EXPECT_TRUE(shown == problem("No such device or address") + problem("Broken pipe") + "W/LongTags" + process_mark() +
                             ": " + text + "\n")
        << shown.substr(0, 1000);
    EXPECT_EQ(signals, 0);
    std::raise(SIGPIPE); // reaches the process as before
    EXPECT_EQ(signals, 1);
    std::signal(SIGPIPE, before);
}

// Control characters are shown as dots: C0 such as ESC and BEL, DEL, C1 in UTF-8, and bytes that a terminal without
// UTF-8 treats as C1.
TEST_F(Log, NeverControlsTheTerminal) {
    environment.unset("TAVRO_LOG_FILE");
    const std::pair<std::string, std::string> cases[] = {
        {"\x1B[31mred\a", "·[31mred·"},
        {"a\rb\bc\x7F", "a·b·c·"},
        {"tab\tand blank", "tab\tand blank"},
        {"\xC2\x80 \xC2\x9B"
         "31m \xC2\x9F \xC2\xA0",
         "· ·31m · \xC2\xA0"},
        {"\x9B"
         "31m\x80\x9F",
         "·31m··"},
        {"\xA0\xE4\xFF", "\xA0\xE4\xFF"},
        {"ZDF Übertragung € 你 😀 Ü", "ZDF Übertragung € 你 😀 Ü"},
        {"\xC0\x9B \xE0\x80\x9B \xF0\x80\x80\x9B", "\xC0· \xE0·· \xF0···"},
        {"\xED\xA0\x80 \xF4\x90\x80\x80 \xF5\x80\x80\x80", "\xED\xA0· \xF4··· \xF5···"},
        {"\xE2\x82", "\xE2·"},
        {"\xE2\x82\x1B", "\xE2··"},
        {"\xC3\xC3\x9C \xF0\x9F\x98", "\xC3Ü \xF0··"},
    };
    for (const auto& [text, shown] : cases) {
        EXPECT_EQ(on_standard_error(text), "W/LongTags" + process_mark() + ": " + shown + "\n");
    }
    ::testing::internal::CaptureStderr();
    __android_log_print(5, "Tag\x1B", "one\n\x1Btwo\n");
    const std::string prefix = "W/Tag·    " + process_mark() + ": ";
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), prefix + "one\n" + prefix + "·two\n");
}

TEST_F(Log, KeepsEveryByteInAFile) {
    std::string text;
    for (int byte = 1; byte <= 0xFF; ++byte) {
        text += byte == '\n' ? ' ' : static_cast<char>(byte);
    }
    __android_log_print(5, "LongTags", "%s", text.c_str());
    EXPECT_EQ(log(), (Lines{"W/LongTags" + process_mark() + ": " + text}));
}

TEST_F(Log, ShowsDotsInLinesThatTheFileDoesNotTake) {
    environment.set("TAVRO_LOG_FILE", path("no\x1Bwhere/log"));
    const std::string shown = on_standard_error("\x1B[31m");
    EXPECT_EQ(shown.find('\x1B'), std::string::npos) << shown;
    EXPECT_NE(shown.find(path("no·where/log")), std::string::npos) << shown;
    EXPECT_NE(shown.find(": ·[31m\n"), std::string::npos) << shown;
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
