// What the tracer writes about a program without a virtual machine.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <sys/wait.h>

namespace {

class Trace : public testing::Test {
protected:
    Trace() {
        std::string name = testing::TempDir() + "traceXXXXXX";
        folder_ = ::mkdtemp(name.data());
    }
    ~Trace() override { std::filesystem::remove_all(folder_); }
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    std::string file(const std::string& name) const { return folder_ + '/' + name; }

    // Runs a scenario of the program with the tracer and further variables. Returns what it wrote to standard error.
    std::string run(const std::string& scenario, const std::string& variables = "") const {
        const std::string command = "exec env TAVRO_HOME=" + folder_ + " TAVRO_LOG_FILE=" + file("log") + ' ' +
                                    variables + " LD_PRELOAD=" TRACE_LIBRARY " " TRACED_PROGRAM " " + scenario + " >" +
                                    file("out") + " 2>" + file("err");
        status_ = std::system(command.c_str());
        return content("err");
    }
    std::string content(const std::string& name) const {
        std::ostringstream all;
        all << std::ifstream(file(name)).rdbuf();
        return all.str();
    }
    int status() const { return status_; }

    // Without times and process ids.
    static std::string normal(std::string text) {
        text = std::regex_replace(text, std::regex("(^|\n) *[0-9]+ "), "$1");
        text = std::regex_replace(text, std::regex(" <[0-9]+ us>"), "");
        text = std::regex_replace(text, std::regex("traced_program "), "");
        return std::regex_replace(text, std::regex("process [0-9]+"), "process N");
    }
    // Without the first line.
    static std::string calls(const std::string& text) {
        const std::string all = normal(text);
        EXPECT_EQ(0U, all.find(kFirstLine)) << all;
        return all.substr(all.find('\n') + 1);
    }

    static constexpr char kFirstLine[] = "# trace of process N (traced_program), begun ";

private:
    std::string folder_;
    mutable int status_ = 0;
};

TEST_F(Trace, RecordsAreShownAsTheFieldsThatDiffer) {
    EXPECT_EQ(
        R"(x_svl_open(list_id=3, tag=0, notify=0) = -101
x_svl_create(name="some list", list_id=3, mode=1, growth=16, tag=0, notify=0) = 0, handle=0x1
x_svl_add_rec(handle=0x1, record={record_id=5, network_mask=0x20f, broadcast_type=2, name="Arte \"HD\" ü", hd_simulcast_ts_id=1051, lcn=7, region_code=[0, 9, 0]}) = 0
x_svl_add_rec(handle=0x1, record={same as before}) = -11
x_svl_get_rec(handle=0x1, record_id=5) = 0, record={same as before}, version=1
x_svl_update_rec(handle=0x1, record={name "Arte \"HD\" ü" -> "Arte", lcn 7 -> 8, bytes 105..106, byte 114}, flag=0) = 0
x_svl_update_rec(handle=0x1, record={byte 100}, flag=0) = 0
x_svl_update_rec(handle=0x1, record={broadcast_type 2 -> 3, byte 260}, flag=0) = 0
x_svl_open(list_id=3, tag=0, notify=0) = 0, handle=0x2
x_svl_get_rec(handle=0x2, record_id=5) = 0, record={same as before}, version=4
x_svl_get_rec(handle=0x1, record_id=6) = -104
x_svl_get_rec(handle=0x1, record_id=5, version=null) = -109
x_svl_del_rec(handle=0x1, record_id=5) = 0
x_svl_add_rec(handle=0x1, record={record_id=5, network_mask=0x20f, broadcast_type=2, name="Arte \"HD\" ü", hd_simulcast_ts_id=1051, lcn=7, region_code=[0, 9, 0]}) = 0
x_svl_clean(handle=0x1) = 0
x_svl_update_rec(handle=0x1, record={record_id=5, network_mask=0x20f, broadcast_type=2, name="Arte \"HD\" ü", hd_simulcast_ts_id=1051, lcn=7, region_code=[0, 9, 0]}, flag=0) = -104
x_svl_close(handle=0x1) = 0
)",
        calls(run("records")));
}

TEST_F(Trace, AllKindsAndTheCallsWithoutAListAreShown) {
    EXPECT_EQ(R"(x_tsl_create(name="streams", list_id=1, mode=1, growth=16, tag=0, notify=0) = 0, handle=0x1
x_tsl_add_rec(handle=0x1, record={record_id=1, medium=2, cab_symbol_rate=6900000, alt_frequency_2=474000}) = 0
x_tsl_get_num_recs(handle=0x1) = 0, count=1, version=1
x_satl_create(name="satellites", list_id=1, mode=1, growth=16, tag=0, notify=0) = 0, handle=0x2
x_satl_add_rec(handle=0x2, record={record_id=1, diseqc_port=255, orbital_position=-50}) = 0
x_nwl_open(list_id=9, tag=0, notify=0, handle=null) = -109
x_sb_gen_channel_id(major=1, minor=2, index=3) = 0x40203
x_sb_get_channel_index(channel_id=0x40081) = 129
x_fm_delete_file(drive=0, path=null) = -109
fs_raw_copy(from_drive=0, from="/no\nfile", to_drive=0, to="/none") = -8
)",
              calls(run("others")));
}

TEST_F(Trace, LogLinesAreEscapedAndStillReachTheLog) {
    const std::string text = normal(run("logs", "TAVRO_TRACE_PROPERTIES=1"));
    const std::string first =
        "(# trace of process N .traced_program., begun [-0-9]+ [:0-9]+ UTC, times in microseconds\n)";
    EXPECT_EQ(R"(D/Tag: text 5\n\x1b[31m \xc2\x9b \xff
E/-: no tag \ "quoted"
x_svl_open(list_id=1, tag=0, notify=0) = -101
x_svl_open(list_id=1, tag=0, notify=0)
  E/TavroHost: process N is a fork of a process that uses lists, and cannot use them; start a program in it (exec)
= -106
property_get(key="vendor.vlt.broadcast.log.level", default="none") = 4, value="none"
)",
              std::regex_replace(text, std::regex(first), ""));
    const std::string log = content("log");
    EXPECT_EQ(0U, log.find("D/Tag     (")) << log;
    EXPECT_NE(std::string::npos, log.find("): text 5\n")) << log;
    EXPECT_NE(std::string::npos, log.find("): \x1B[31m \xC2\x9B \xFF\n")) << log;
}

TEST_F(Trace, TheErrorNumberOfTheCallerStays) {
    run("errno");
    EXPECT_EQ("errno 77\n", content("out"));
}

TEST_F(Trace, PropertiesAreShownOnRequestOnly) { EXPECT_EQ(std::string::npos, run("logs").find("property_get")); }

TEST_F(Trace, ACallThatCrashesIsTheLastLineOnRequest) {
    EXPECT_EQ(R"(x_svl_open(list_id=1, tag=0, notify=0)
= -101
x_svl_create(name="some list", list_id=1, mode=1, growth=16, tag=0, notify=0)
= 0, handle=0x1
x_svl_open(list_id=1, tag=0, notify=0)
)",
              calls(run("crashes", "TAVRO_TRACE_EARLY=1")));
    EXPECT_TRUE(WIFSIGNALED(status())) << status();
}

TEST_F(Trace, LinesOfSeveralThreadsStayWhole) {
    const std::string text = run("threads");
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    std::map<std::string, int> counts;
    const std::regex form(" *[0-9]+ (traced_program(#2)?) x_sb_get_channel_index\\(channel_id=0x0\\) = 0 <[0-9]+ us>");
    while (std::getline(lines, line)) {
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
        ++counts[parts[1]];
    }
    EXPECT_EQ((std::map<std::string, int>{{"traced_program", 200}, {"traced_program#2", 200}}), counts);
}

TEST_F(Trace, AFileIsAppendedTo) {
    EXPECT_EQ("", run("is_killed", "TAVRO_TRACE=" + file("trace")));
    EXPECT_EQ("", run("is_killed", "TAVRO_TRACE=" + file("trace")));
    const std::string call = "x_sb_get_channel_index(channel_id=0x1) = 1\n";
    const std::string text = normal(content("trace"));
    EXPECT_EQ(text.find(call), text.rfind(call, text.size() - call.size() - 1)) << text;
    EXPECT_NE(text.find(call), text.rfind(call)) << text;
}

// The events of a trace in JSON, without times, process and thread ids.
std::string events(std::string text) {
    text = std::regex_replace(text, std::regex("\"(ts|dur)\":[0-9]+\\.[0-9]{3},"), "");
    return std::regex_replace(text, std::regex("\"(pid|tid)\":[1-9][0-9]*,"), "");
}

TEST_F(Trace, JsonIsCompleteEvenIfTheProcessesAreKilled) {
    const std::string variables = "TAVRO_TRACE_FORMAT=json TAVRO_TRACE=" + file("trace");
    run("is_killed", variables);
    EXPECT_TRUE(WIFSIGNALED(status()) && WTERMSIG(status()) == SIGKILL) << status();
    run("is_killed", variables);
    const std::string names = R"({"ph":"M","name":"thread_name","args":{"name":"traced_program"}},
{"ph":"M","name":"process_name","args":{"name":"traced_program"}},
)";
    const std::string call =
        R"({"ph":"X","cat":"platform","name":"x_sb_get_channel_index","args":{"channel_id":"0x1","result":1}})";
    EXPECT_EQ("{\"traceEvents\":[\n" + names + call + ",\n" + names + call + "\n]}\n", events(content("trace")));
}

TEST_F(Trace, JsonOnAPipeIsCompletedAtExit) {
    const std::string text = events(run("errno", "TAVRO_TRACE_FORMAT=json"));
    EXPECT_EQ(R"({"traceEvents":[
{"ph":"M","name":"thread_name","args":{"name":"traced_program"}},
{"ph":"M","name":"process_name","args":{"name":"traced_program"}},
{"ph":"X","cat":"platform","name":"x_sb_get_channel_index","args":{"channel_id":"0x0","result":0}},
{"ph":"X","cat":"platform","name":"x_sb_gen_channel_id","args":{"major":1,"minor":2,"index":3,"result":"0x40203"}},
{"ph":"i","s":"t","cat":"log","name":"D/Tag: text","args":{"priority":"D","tag":"Tag","text":"text"}}
]}
)",
              text);
}

TEST_F(Trace, WrongSettingsAreReportedAndReplacedByTheDefaults) {
    const std::string text = normal(
        run("is_killed", "TAVRO_TRACE_FORMAT=xml TAVRO_TRACE_JNI=yes TAVRO_TRACE_PROPERTIES=2 TAVRO_TRACE_EARLY=- "
                         "TAVRO_TRACE=" +
                             file("no/trace")));
    EXPECT_EQ("# TAVRO_TRACE is \"" + file("no/trace") +
                  "\": cannot open the file: No such file or directory; using standard error\n"
                  "# TAVRO_TRACE_FORMAT is \"xml\", not text or json; using text\n"
                  "# TAVRO_TRACE_JNI is \"yes\", not 0 or 1; using 0\n"
                  "# TAVRO_TRACE_PROPERTIES is \"2\", not 0 or 1; using 0\n"
                  "# TAVRO_TRACE_EARLY is \"-\", not 0 or 1; using 0\n"
                  "x_sb_get_channel_index(channel_id=0x1) = 1\n",
              text.substr(text.find('\n') + 1));
}

TEST_F(Trace, AFileThatIsNotATraceIsLeftAlone) {
    std::ofstream(file("mine")) << "my notes\n";
    const std::string text = run("is_killed", "TAVRO_TRACE_FORMAT=json TAVRO_TRACE=" + file("mine"));
    EXPECT_NE(std::string::npos,
              text.find("mine\\\": the file is not empty, and not a trace in JSON; using standard error\""))
        << text;
    EXPECT_EQ("my notes\n", content("mine"));
}

} // namespace
