#include "conform/contract.h"

#include "conform/kinds.h"
#include "conform/reports.h"
#include "conform/shared.h"

#include <algorithm>
#include <cstdio>

namespace tavro::conform {
namespace {

// What checks of several kinds have in common: one line of the table.
struct Line {
    const Check* first;
    std::vector<std::string> kinds;
};

// The name without the kind.
std::string base_name(const Check& check) {
    return check.kind.empty() ? check.name : check.name.substr(check.kind.size() + 1);
}

bool same_line(const Check& check, const Check& other) {
    return check.kind.empty() == other.kind.empty() && base_name(check) == base_name(other) &&
           check.expects == other.expects && check.reason == other.reason && check.severity == other.severity;
}

std::vector<Line> lines_of(const std::vector<Check>& checks) {
    std::vector<Line> lines;
    for (const Check& check : checks) {
        const auto line =
            std::find_if(lines.begin(), lines.end(), [&](const Line& other) { return same_line(check, *other.first); });
        if (line == lines.end()) {
            lines.push_back({&check, {check.kind}});
        } else {
            line->kinds.push_back(check.kind);
        }
    }
    return lines;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : ", ") + part;
    }
    return text;
}

// The kinds of a line for {lists}.
std::string plural(const std::vector<std::string>& kinds) {
    if (kinds.size() == kKinds) {
        return "lists";
    }
    return kinds.size() == 1 ? in_words("{lists}", kinds[0]) : "companion lists";
}

std::string in_words_of(const std::string& text, const Line& line) {
    static const std::string kLists = "{lists}";
    const std::size_t at = text.find(kLists);
    return at == std::string::npos ? text : text.substr(0, at) + plural(line.kinds) + text.substr(at + kLists.size());
}

// The functions of a line: x_*_add_rec when several kinds have it.
std::string functions_of(const Line& line) {
    const Check& check = *line.first;
    std::vector<std::string> names;
    for (const std::string& role : check.roles) {
        if (role == "count" || role == "get_at") {
            names.push_back(role == "count" ? "*count*" : "*read by index*");
        } else {
            names.push_back("`x_" + (line.kinds.size() == 1 ? check.kind : "*") + "_" + role + "`");
        }
    }
    if (check.roles.empty()) {
        for (const std::string& function : check.functions) {
            names.push_back("`" + function + "`");
        }
    }
    return names.size() > 6 ? "all " + std::to_string(names.size()) + " of the library" : joined(names);
}

void print_functions(const char* kind, const char* plural, const char* count, const char* get_at) {
    std::printf("| %s | `x_%s_%s` | `x_%s_%s` |\n", plural, kind, count, kind, get_at);
}

template <class Kind>
void print_functions() {
    print_functions(Kind::kName, Kind::kPlural, Kind::kCount, Kind::kGetAt);
}

} // namespace

void print_contract(const std::vector<Check>& checks) {
    std::printf(R"(# What the library expects of the platform

Made from the checks of `tavro-conform` by `tavro-conform --contract`. Each line of the table is one expectation, with
the program's check of it. [conformance.md](conformance.md) describes how to run the checks on a TV.

- **Kinds**: the list kinds that have the check; `svl` services, `tsl` transport streams, `nwl` networks, `satl`
  satellites. The full name of a check starts with the kind: `svl.open.missing`.
- **If it fails**: *data loss* means that records are lost or damaged, or that the process ends; *wrong result* that
  Java gets a wrong result; *log line only* that nothing but a line of the log is wrong.
- *count* and *read by index* are the functions with which the library reads a whole list:

| Lists | count | read by index |
|---|---|---|
)");
    print_functions<Svl>();
    print_functions<Tsl>();
    print_functions<Nwl>();
    print_functions<Satl>();
    std::printf("\n| Check | Kinds | Expectation | Functions | Why | If it fails |\n|---|---|---|---|---|---|\n");
    for (const Line& line : lines_of(checks)) {
        const Check& check = *line.first;
        const std::string kinds = check.kind.empty() ? "" : line.kinds.size() == kKinds ? "all" : joined(line.kinds);
        std::printf("| `%s` | %s | %s%s | %s | %s | %s |\n", base_name(check).c_str(), kinds.c_str(),
                    in_words_of(check.expects, line).c_str(), check.slow ? " Only with `--slow`." : "",
                    functions_of(line).c_str(), in_words_of(check.reason, line).c_str(), severity_name(check.severity));
    }
}

} // namespace tavro::conform
