// Prints the layout of the records, as the compiler and the library's rows have it:
//
//   record_layouts markdown      docs/record-layouts.md
//   record_layouts java CLASS    the Java enum CLASS, such as ServiceField
//   record_layouts keys          the keys of the Java objects, as tab-separated values
//   record_layouts tables        the Java class LayoutTables, which has all of it for the tool
#include "layouts/writers.h"

#include <exception>
#include <iostream>
#include <string>

using namespace tavro;

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

int usage() {
    std::cerr << "usage: record_layouts markdown | java CLASS | keys | tables\n";
    return kWrongUsage;
}

int print(const std::string& what, const std::string& name) {
    const std::vector<tavro::layouts::Record> records = tavro::layouts::all_records();
    bool complete = true;
    for (const tavro::layouts::Record& record : records) {
        for (const std::string& wrong : tavro::layouts::wrong_bytes(record)) {
            std::cerr << "record_layouts: " << wrong << '\n';
            complete = false;
        }
    }
    if (!complete) {
        return kFailed;
    }
    if (what == "markdown") {
        tavro::layouts::write_markdown(std::cout, records);
        return 0;
    }
    if (what == "keys") {
        tavro::layouts::write_keys(std::cout, records);
        return 0;
    }
    if (what == "tables") {
        tavro::layouts::write_tables(std::cout, records);
        return 0;
    }
    for (const tavro::layouts::Record& record : records) {
        if (what == "java" && name == tavro::layouts::java_class(record)) {
            tavro::layouts::write_java(std::cout, record);
            return 0;
        }
    }
    return usage();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        return usage();
    }
    try {
        const int status = print(argv[1], argc == 3 ? argv[2] : "");
        std::cout.flush();
        return std::cout ? status : kFailed;
    } catch (const std::exception& error) {
        std::cerr << "record_layouts: " << error.what() << '\n';
        return kFailed;
    }
}
