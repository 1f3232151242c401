#include "conform/reports.h"

#include "conform/kinds.h"
#include "conform/process.h"

#include <vector>

namespace tavro::conform {
namespace {

// The text with bytes that are not printable ASCII as \xNN: texts of the platform may hold anything.
std::string printable(const std::string& text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F) {
            result += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned int>(byte));
            result += escape;
        }
    }
    return result;
}

// A double-quoted YAML text.
std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : printable(text)) {
        result += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    }
    return result + '"';
}

std::string escaped_for_xml(const std::string& text) {
    std::string result;
    for (const char c : printable(text)) {
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += c;
        }
    }
    return result;
}

class TapReport : public Report {
public:
    explicit TapReport(std::FILE* file) : file_(file) {}

    void begin(std::size_t checks) override {
        std::fprintf(file_, "TAP version 14\n1..%zu\n", checks);
        std::fflush(file_);
    }

    void add(const Result& result) override {
        const bool failed = result.outcome == Outcome::kFailed;
        std::fprintf(file_, "%s %d - %s", failed ? "not ok" : "ok", ++number_, result.check->name.c_str());
        if (result.outcome == Outcome::kSkipped) {
            std::fprintf(file_, " # SKIP %s", printable(result.found).c_str());
        }
        std::fputc('\n', file_);
        if (failed) {
            std::fputs("  ---\n", file_);
            put("expectation", in_words(result.check->expects, result.check->kind));
            put("expected", result.expected);
            put("found", result.found);
            put("reason", in_words(result.check->reason, result.check->kind));
            put("severity", severity_name(result.check->severity));
            std::fputs(result.calls.empty() ? "  calls: []\n" : "  calls:\n", file_);
            for (const std::string& call : result.calls) {
                std::fprintf(file_, "    - %s\n", quoted(call).c_str());
            }
            std::fputs("  ...\n", file_);
        }
        std::fflush(file_);
    }

    void end(const Verdict& verdict) override {
        if (verdict.how != Verdict::How::kComplete) {
            std::fprintf(file_, "Bail out! %s\n", printable(why_ended(verdict)).c_str());
            std::fflush(file_);
        }
    }

private:
    void put(const char* key, const std::string& value) {
        std::fprintf(file_, "  %s: %s\n", key, quoted(value).c_str());
    }

    std::FILE* file_;
    int number_ = 0;
};

// The counts come first, so everything is written at the end.
class JunitReport : public Report {
public:
    explicit JunitReport(std::FILE* file) : file_(file) {}

    void begin(std::size_t) override {}

    void add(const Result& result) override {
        const std::string& name = result.check->name;
        char time[32];
        std::snprintf(time, sizeof time, "%.3f", result.seconds);
        seconds_ += result.seconds;
        ++tests_;
        cases_ += "    <testcase classname=\"tavro-conform." + name.substr(0, name.find('.')) + "\" name=\"" + name +
                  "\" time=\"" + time + "\"";
        if (result.outcome == Outcome::kPassed) {
            cases_ += "/>\n";
            return;
        }
        cases_ += ">\n";
        if (result.outcome == Outcome::kSkipped) {
            ++skipped_;
            cases_ += "      <skipped message=\"" + escaped_for_xml(result.found) + "\"/>\n";
        } else {
            ++failures_;
            add_failure(result);
        }
        cases_ += "    </testcase>\n";
    }

    void end(const Verdict& verdict) override {
        const bool error = verdict.how != Verdict::How::kComplete;
        if (error) {
            ++tests_;
            cases_ += "    <testcase classname=\"tavro-conform\" name=\"run\">\n      <error message=\"" +
                      escaped_for_xml(why_ended(verdict)) + "\"/>\n    </testcase>\n";
        }
        std::fputs("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n", file_);
        std::fprintf(file_,
                     "  <testsuite name=\"tavro-conform\" tests=\"%d\" failures=\"%d\" errors=\"%d\" skipped=\"%d\" "
                     "time=\"%.3f\">\n",
                     tests_, failures_, error ? 1 : 0, skipped_, seconds_);
        std::fputs(cases_.c_str(), file_);
        std::fputs("  </testsuite>\n</testsuites>\n", file_);
    }

private:
    void add_failure(const Result& result) {
        const Check& check = *result.check;
        cases_ += "      <failure type=\"" + std::string(severity_name(check.severity)) + "\" message=\"expected " +
                  escaped_for_xml(result.expected) + "; found " + escaped_for_xml(result.found) + "\">" +
                  escaped_for_xml(in_words(check.expects, check.kind)) + "\n" +
                  escaped_for_xml(in_words(check.reason, check.kind));
        for (const std::string& call : result.calls) {
            cases_ += "\n" + escaped_for_xml(call);
        }
        cases_ += "</failure>\n";
    }

    std::FILE* file_;
    std::string cases_;
    int tests_ = 0;
    int failures_ = 0;
    int skipped_ = 0;
    double seconds_ = 0;
};

} // namespace

std::unique_ptr<Report> make_report(Format format, std::FILE* file) {
    if (format == Format::kTap) {
        return std::make_unique<TapReport>(file);
    }
    return std::make_unique<JunitReport>(file);
}

const char* severity_name(Severity severity) {
    switch (severity) {
    case Severity::kDataLoss:
        return "data loss";
    case Severity::kWrongResult:
        return "wrong result";
    case Severity::kLogLine:
        return "log line only";
    }
    return "";
}

std::string in_words(const std::string& text, const std::string& kind) {
    static constexpr char kLists[] = "{lists}";
    const std::size_t at = text.find(kLists);
    if (at == std::string::npos) {
        return text;
    }
    const char* plural = kind == Svl::kName   ? Svl::kPlural
                         : kind == Tsl::kName ? Tsl::kPlural
                         : kind == Nwl::kName ? Nwl::kPlural
                                              : Satl::kPlural;
    return text.substr(0, at) + plural + text.substr(at + sizeof kLists - 1);
}

std::string why_ended(const Verdict& verdict) {
    return verdict.how == Verdict::How::kInterrupted ? "ended by " + signal_name(verdict.signal) : verdict.why;
}

} // namespace tavro::conform
