// Writes the results of a run as TAP or as JUnit XML.
#pragma once

#include "conform/options.h"
#include "conform/runner.h"

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace tavro::conform {

class Report {
public:
    virtual ~Report() = default;
    // In this order: begin once, add for each check, end once.
    virtual void begin(std::size_t checks) = 0;
    virtual void add(const Result& result) = 0;
    virtual void end(const Verdict& verdict) = 0;
};

// A report that writes to `file`, which stays the caller's.
std::unique_ptr<Report> make_report(Format format, std::FILE* file);

// "data loss", "wrong result", "log line only".
const char* severity_name(Severity severity);

// An expectation or a reason with the lists' name for {lists}: "service lists".
std::string in_words(const std::string& text, const std::string& kind);

// Why the run did not go on: one sentence without a full stop. Empty for a complete run.
std::string why_ended(const Verdict& verdict);

} // namespace tavro::conform
