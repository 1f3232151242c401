#include "conform/options.h"

#include <cstdlib>
#include <fnmatch.h>
#include <functional>
#include <map>

namespace tavro::conform {

const char* const kHelp =
    R"(Usage: tavro-conform [OPTIONS]
Check that the TV middleware, the log and the system properties do what the
channel list library relies on. The libraries are those that the loader finds
under the platform's names; LD_LIBRARY_PATH can name others.

Each check runs in a process of its own, so one that crashes or hangs fails
alone. Checks use only lists with ids of their own, refuse to run if one of
them exists, and delete them afterwards.

      --contract          print the document with all expectations, and exit
      --directory=DIR     make list files in a new directory below DIR
                            (default: $TMPDIR, else the system's)
      --dry-run           show which checks would run and which lists and files
                            they would use, without calling the platform
      --filter=PATTERN    run only checks whose name matches the shell pattern;
                            can be repeated
      --format=FORMAT     tap (default) or junit; can be repeated, so that one
                            run writes both
      --help              show this help, and exit
      --list              list the checks, and exit
      --lists=FIRST       use the list ids FIRST to FIRST+3 of each kind
                            (default 65301); one check also uses list 65535
      --output=FILE       write the format before this option to FILE instead
                            of standard output
      --slow              also run checks that take more than a second
      --timeout=SECONDS   end a check that takes longer, as failed (default 10)
      --version           print the version, and exit

Exit codes: 0 all checks passed, 1 a check failed or could not be run, 2 wrong
usage.

Examples:
  tavro-conform
  tavro-conform --filter='svl.*' --filter='*.lock.*'
  tavro-conform --format=tap --format=junit --output=results.xml
)";

namespace {

// Reads a whole number from `least` to `most`.
bool read_number(const std::string& text, unsigned long least, unsigned long most, unsigned long& number) {
    if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    number = std::strtoul(text.c_str(), nullptr, 10);
    return number >= least && number <= most;
}

class Reader {
public:
    explicit Reader(Options& options) : options_(options) {}

    // Reads one argument; returns the mistake, or nothing.
    std::string read(const std::string& argument) {
        const std::size_t equals = argument.find('=');
        const std::string name = argument.substr(0, equals);
        if (const auto flag = flags_.find(name); flag != flags_.end()) {
            if (equals != std::string::npos) {
                return name + " takes no value, but got '" + argument.substr(equals + 1) + "'.";
            }
            flag->second();
            return "";
        }
        const auto value = values_.find(name);
        if (value == values_.end()) {
            return "unknown " + std::string(argument.rfind('-', 0) == 0 ? "option" : "argument") + " '" + argument +
                   "'; tavro-conform --help lists the options.";
        }
        if (equals == std::string::npos || equals + 1 == argument.size()) {
            return name + " needs a value: " + value->second.form + ".";
        }
        return value->second.read(argument.substr(equals + 1));
    }

    // Checks what only all arguments together show.
    std::string finish() {
        if (options_.outputs.empty()) {
            options_.outputs.push_back({Format::kTap, ""});
        }
        std::size_t on_standard_output = 0;
        for (const Output& output : options_.outputs) {
            on_standard_output += output.file.empty() ? 1 : 0;
        }
        return on_standard_output < 2 ? ""
                                      : "two reports cannot both go to standard output; add --output=FILE after one "
                                        "--format.";
    }

private:
    using Action = Options::Action;
    struct Value {
        const char* form;
        std::function<std::string(const std::string&)> read;
    };

    std::string read_format(const std::string& text) {
        if (text != "tap" && text != "junit") {
            return "--format is '" + text + "' and must be tap or junit.";
        }
        options_.outputs.push_back({text == "tap" ? Format::kTap : Format::kJunit, ""});
        return "";
    }

    std::string read_output(const std::string& text) {
        if (options_.outputs.empty()) {
            options_.outputs.push_back({Format::kTap, ""});
        }
        if (!options_.outputs.back().file.empty()) {
            return "--output is given twice for one report; put --format=FORMAT before the second.";
        }
        options_.outputs.back().file = text;
        return "";
    }

    std::string read_lists(const std::string& text) {
        constexpr unsigned long kLast = 65535 - kHighestList; // so that 65535 stays apart
        unsigned long number = 0;
        if (!read_number(text, 1, kLast, number)) {
            return "--lists is '" + text + "' and must be a number from 1 to " + std::to_string(kLast) + ".";
        }
        options_.first_list = static_cast<std::uint16_t>(number);
        return "";
    }

    std::string read_timeout(const std::string& text) {
        unsigned long number = 0;
        if (!read_number(text, 1, 3600, number)) {
            return "--timeout is '" + text + "' and must be a number of seconds from 1 to 3600.";
        }
        options_.timeout_seconds = static_cast<std::uint32_t>(number);
        return "";
    }

    Options& options_;
    const std::map<std::string, std::function<void()>> flags_ = {
        {"--contract", [this] { options_.action = Action::kContract; }},
        {"--dry-run", [this] { options_.action = Action::kDryRun; }},
        {"--help", [this] { options_.action = Action::kHelp; }},
        {"--list", [this] { options_.action = Action::kList; }},
        {"--slow", [this] { options_.slow = true; }},
        {"--version", [this] { options_.action = Action::kVersion; }},
    };
    const std::map<std::string, Value> values_ = {
        {"--directory", {"--directory=DIR", [this](const std::string& text) { return options_.directory = text, ""; }}},
        {"--filter",
         {"--filter=PATTERN", [this](const std::string& text) { return options_.filters.push_back(text), ""; }}},
        {"--format", {"--format=FORMAT", [this](const std::string& text) { return read_format(text); }}},
        {"--lists", {"--lists=FIRST", [this](const std::string& text) { return read_lists(text); }}},
        {"--output", {"--output=FILE", [this](const std::string& text) { return read_output(text); }}},
        {"--timeout", {"--timeout=SECONDS", [this](const std::string& text) { return read_timeout(text); }}},
    };
};

bool matches(const Check& check, const std::string& pattern) {
    return fnmatch(pattern.c_str(), check.name.c_str(), 0) == 0;
}

} // namespace

bool read_options(const std::vector<std::string>& arguments, Options& options, std::string& error) {
    Reader reader(options);
    for (const std::string& argument : arguments) {
        error = reader.read(argument);
        if (!error.empty()) {
            return false;
        }
    }
    error = reader.finish();
    return error.empty();
}

std::vector<const Check*> choose(const std::vector<Check>& checks, const Options& options, std::string& error) {
    std::vector<const Check*> chosen;
    std::vector<bool> used(options.filters.size());
    bool slow_ones = false;
    for (const Check& check : checks) {
        bool wanted = options.filters.empty();
        for (std::size_t i = 0; i < options.filters.size(); ++i) {
            if (matches(check, options.filters[i])) {
                wanted = true;
                used[i] = true;
            }
        }
        if (wanted && (!check.slow || options.slow)) {
            chosen.push_back(&check);
        }
        slow_ones = slow_ones || (wanted && check.slow);
    }
    for (std::size_t i = 0; i < used.size(); ++i) {
        if (!used[i]) {
            error = "no check matches '" + options.filters[i] + "'; tavro-conform --list shows the names.";
            return {};
        }
    }
    if (chosen.empty() && slow_ones) {
        error = "all checks that match are slow; add --slow to run them.";
    }
    return chosen;
}

} // namespace tavro::conform
