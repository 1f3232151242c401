// What the program prints.
#pragma once

#include "layouts/fields.h"

#include <ostream>
#include <string>
#include <vector>

namespace tavro::layouts {

// docs/record-layouts.md.
void write_markdown(std::ostream& out, const std::vector<Record>& records);

// The source of a Java enum with the fields of a record, such as ServiceField.
void write_java(std::ostream& out, const Record& record);

// How Java reads and prints a field: a constant of RecordField.Style.
const char* style_of(const RecordField& field);

// The name of that enum.
std::string java_class(const Record& record);

// The keys of all records, as tab-separated values: one line per key and field that its value goes to, and one per
// code.
void write_keys(std::ostream& out, const std::vector<Record>& records);

// The source of a Java class with a table of each record: its views, fields and reserved ranges, one per line. Flags
// and codes follow their field.
void write_tables(std::ostream& out, const std::vector<Record>& records);

} // namespace tavro::layouts
