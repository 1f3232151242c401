// tavro-conform: see options.cpp for what it does.

#include "conform/contract.h"
#include "conform/options.h"
#include "conform/reports.h"
#include "conform/runner.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace tavro::conform {
namespace {

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int complain(int code, const std::string& message) {
    std::fprintf(stderr, "tavro-conform: %s\n", message.c_str());
    return code;
}

// The default directory for files.
std::string temporary_directory() {
    const char* named = std::getenv("TMPDIR");
    if (named != nullptr && *named != '\0') {
        return named;
    }
#ifdef __ANDROID__
    return "/data/local/tmp";
#else
    return "/tmp";
#endif
}

// The directory as an absolute path, because the platform may have another current directory; empty if there is none.
std::string absolute(const std::string& directory) {
    char path[PATH_MAX];
    return realpath(directory.c_str(), path) == nullptr ? "" : path;
}

void list_checks(const std::vector<const Check*>& checks) {
    for (const Check* check : checks) {
        std::printf("%s\n    %s\n", check->name.c_str(), in_words(check->expects, check->kind).c_str());
    }
}

void describe_run(const std::vector<const Check*>& checks, const std::string& directory) {
    std::printf("Would run %zu checks:\n", checks.size());
    std::vector<std::string> files;
    for (const Check* check : checks) {
        std::printf("  %s\n", check->name.c_str());
        files.insert(files.end(), check->files.begin(), check->files.end());
    }
    std::printf("They would create and delete these lists, which must not exist:\n");
    const std::vector<OwnLists> lists = own_lists(checks);
    for (const OwnLists& own : lists) {
        std::printf("  %s", own.kind);
        for (const std::size_t number : own.numbers) {
            std::printf(" %d", own_list_id(number));
        }
        std::printf("\n");
    }
    if (lists.empty()) {
        std::printf("  none\n");
    }
    std::printf("They would make these files in a new directory below %s, and remove them:\n", directory.c_str());
    for (const std::string& file : files) {
        std::printf("  %s\n", file.c_str());
    }
    if (files.empty()) {
        std::printf("  none\n");
    }
}

// The reports of a run with their files.
class Reports {
public:
    ~Reports() { close(); }

    // Opens the files; returns the mistake, or nothing.
    std::string open(const std::vector<Output>& outputs) {
        for (const Output& output : outputs) {
            std::FILE* file = output.file.empty() ? stdout : std::fopen(output.file.c_str(), "we");
            if (file == nullptr) {
                return "cannot write " + output.file + ": " + std::strerror(errno) + ".";
            }
            opened_.push_back({make_report(output.format, file), file, output.file});
        }
        return "";
    }

    template <class Action>
    void each(Action action) {
        for (Opened& opened : opened_) {
            action(*opened.report);
        }
    }

    // Closes the files; returns the mistake, or nothing.
    std::string close() {
        std::string error;
        for (Opened& opened : opened_) {
            const bool written = std::ferror(opened.file) == 0;
            const bool closed = (opened.file == stdout ? std::fflush(stdout) : std::fclose(opened.file)) == 0;
            if (!written || !closed) {
                error = "cannot write " + (opened.name.empty() ? "standard output" : opened.name) +
                        ": the report is not complete.";
            }
        }
        opened_.clear();
        return error;
    }

private:
    struct Opened {
        std::unique_ptr<Report> report;
        std::FILE* file;
        std::string name;
    };
    std::vector<Opened> opened_;
};

int run(const std::vector<const Check*>& checks, const std::string& directory, const std::vector<Output>& outputs) {
    Reports reports;
    if (const std::string error = reports.open(outputs); !error.empty()) {
        return complain(kFailed, error);
    }
    std::size_t passed = 0;
    std::size_t failed = 0;
    std::size_t skipped = 0;
    reports.each([&](Report& report) { report.begin(checks.size()); });
    const Verdict verdict = run_checks(checks, directory, [&](const Result& result) {
        ++(result.outcome == Outcome::kPassed ? passed : result.outcome == Outcome::kFailed ? failed : skipped);
        reports.each([&](Report& report) { report.add(result); });
    });
    reports.each([&](Report& report) { report.end(verdict); });
    const std::string error = reports.close();
    if (!error.empty()) {
        complain(kFailed, error);
    }
    if (verdict.how != Verdict::How::kComplete) {
        complain(kFailed, why_ended(verdict) + ".");
    }
    std::fprintf(stderr, "%zu of %zu checks passed, %zu failed, %zu skipped\n", passed, checks.size(), failed, skipped);
    if (verdict.how == Verdict::How::kInterrupted) {
        return 128 + verdict.signal;
    }
    return passed == checks.size() && error.empty() ? kPassed : kFailed;
}

int main(const std::vector<std::string>& arguments) {
    Options options;
    std::string error;
    if (!read_options(arguments, options, error)) {
        return complain(kWrongUsage, error);
    }
    const std::vector<Check> all = all_checks();
    switch (options.action) {
    case Options::Action::kHelp:
        std::fputs(kHelp, stdout);
        return kPassed;
    case Options::Action::kVersion:
        std::printf("tavro-conform %s\n", TAVRO_VERSION);
        return kPassed;
    case Options::Action::kContract:
        print_contract(all);
        return kPassed;
    default:
        break;
    }
    if (options.action == Options::Action::kList) {
        options.slow = true;
    }
    const std::vector<const Check*> chosen = choose(all, options, error);
    if (chosen.empty()) {
        return complain(kWrongUsage, error);
    }
    if (options.action == Options::Action::kList) {
        list_checks(chosen);
        return kPassed;
    }
    settings().first_list = options.first_list;
    settings().timeout_ms = options.timeout_seconds * 1000;
    const std::string named = options.directory.empty() ? temporary_directory() : options.directory;
    const std::string directory = absolute(named);
    if (directory.empty()) {
        return complain(kFailed, "cannot use the directory " + named + ": " + std::strerror(errno) +
                                     "; name another one with --directory=DIR.");
    }
    if (options.action == Options::Action::kDryRun) {
        describe_run(chosen, directory);
        return kPassed;
    }
    return run(chosen, directory, options.outputs);
}

} // namespace
} // namespace tavro::conform

int main(int count, char** arguments) {
    return tavro::conform::main(std::vector<std::string>(arguments + 1, arguments + count));
}
