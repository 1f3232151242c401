// The command line.
#pragma once

#include "conform/check.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavro::conform {

enum class Format { kTap, kJunit };

// A report and where it goes; an empty file means standard output.
struct Output {
    Format format;
    std::string file;
};

struct Options {
    enum class Action { kRun, kDryRun, kList, kContract, kVersion, kHelp };
    Action action = Action::kRun;
    std::vector<std::string> filters; // shell patterns; a check runs if one matches. Empty: every check
    bool slow = false;
    std::uint16_t first_list = 65301;
    std::uint32_t timeout_seconds = 10;
    std::string directory; // for files; empty: the default
    std::vector<Output> outputs;
};

// Reads the arguments, without the program's name. Returns false with the mistake in `error`, a whole sentence.
bool read_options(const std::vector<std::string>& arguments, Options& options, std::string& error);

// The checks that the options choose, in order. Without a check, `error` says why.
std::vector<const Check*> choose(const std::vector<Check>& checks, const Options& options, std::string& error);

// What --help prints.
extern const char* const kHelp;

} // namespace tavro::conform
