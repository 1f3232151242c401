#include "layouts/codes.h"
#include "layouts/keys.h"
#include "layouts/writers.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <map>

namespace tavro::layouts {
namespace {

const char* type_name(FieldType type) {
    switch (type) {
    case FieldType::kUint8:
        return "uint8_t";
    case FieldType::kUint16:
        return "uint16_t";
    case FieldType::kUint32:
        return "uint32_t";
    case FieldType::kInt16:
        return "int16_t";
    default:
        return "char";
    }
}

std::string type_of(const RecordField& field) {
    const unsigned elements = field.type == FieldType::kChar ? field.width : field.count;
    return type_name(field.type) + (elements == 1 ? "" : '[' + std::to_string(elements) + ']');
}

std::string hex(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%X", static_cast<unsigned>(number));
    return text;
}

std::string code(const std::string& text) { return '`' + text + '`'; }

// A heading's name in links.
std::string anchor(const std::string& heading) {
    std::string link;
    for (const char letter : heading) {
        if (letter == ' ') {
            link += '-';
        } else if (std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '-') {
            link += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
        }
    }
    return link;
}

std::string heading_of(const CodeNames& codes) { return std::string("Codes: ") + codes.name; }

// The keys of a field, but for flags.
std::string names_of(const std::vector<Key>& keys, const RecordField& field) {
    std::string names;
    for (const Key& key : keys) {
        for (const Target& target : key.targets) {
            if (target.field->path == field.path && key.kind != "flag") {
                names += (names.empty() ? "" : ", ") + code(key.name);
            }
        }
    }
    return names;
}

void write_row(std::ostream& out, const Record& record, const RecordField& field, const std::vector<Key>& keys) {
    out << "| " << field.offset << " | " << field.width << " | ";
    if (field.reserved()) {
        out << "reserved | | | | | |\n";
        return;
    }
    std::string meaning = field.label + (field.meaning.empty() ? "" : ": " + field.meaning);
    if (const CodeNames* codes = codes_of(record, keys, field)) {
        meaning += " ([codes](#" + anchor(heading_of(*codes)) + "))";
    }
    const std::string constant =
        field.count == 1 ? code(field.java)
                         : code(field.java + "_1") + " to " + code(field.java + '_' + std::to_string(field.count));
    out << code(field.member) << " | " << code(type_of(field)) << " | " << names_of(keys, field) << " | " << constant
        << " | " << field.unit << " | " << meaning << " |\n";
    std::map<std::uint32_t, std::string> flags;
    for (const Key& key : keys) {
        if (key.kind == "flag" && key.targets[0].field->path == field.path) {
            flags[key.mask] = key.name;
        }
    }
    for (const auto& [mask, key] : flags) {
        out << "| | | bit " << hex(mask) << " | | " << code(key) << " | | | |\n";
    }
}

void write_head(std::ostream& out) {
    out << "\n| Offset | Size | Field | Type | Java key | Java constant | Unit | Meaning |\n"
        << "|---|---|---|---|---|---|---|---|\n";
}

void write_record(std::ostream& out, const Record& record) {
    const std::vector<Key> keys = keys_of(record);
    std::string title = record.kind;
    title[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(title[0])));
    out << "\n## " << title << "s: " << code(record.structure) << ", " << record.size << " bytes\n\n"
        << "Declared in `include/middleware/" << record.header << "`; constants are those of `" << java_class(record)
        << "`.";
    const bool readable = std::any_of(keys.begin(), keys.end(), [](const Key& key) { return key.readable; });
    if (readable) {
        out << " The natives pass values to Java through the setter of their key, such as `set" << keys[1].name << "`.";
    } else {
        out << " Java reads the bytes themselves.";
    }
    out << '\n';
    write_head(out);
    bool shared = false;
    for (const RecordField& field : record.fields) {
        if (field.views.empty()) {
            write_row(out, record, field, keys);
        } else if (!shared) {
            shared = true;
            unsigned end = 0;
            for (const RecordField& other : record.fields) {
                end = other.views.empty() ? end : std::max(end, other.end());
            }
            out << "| " << field.offset << " | " << end - field.offset << " | one of the views below | | | | | by "
                << code(record.selector) << " |\n";
        }
    }
    for (const View& view : record.views) {
        out << "\n### " << title << "s, " << view.label << ": " << code(view.member) << " while "
            << code(record.selector) << " is " << view.value << '\n';
        write_head(out);
        for (const RecordField& field : record.of(view)) {
            if (!field.views.empty()) {
                write_row(out, record, field, keys);
            }
        }
    }
}

void write_codes(std::ostream& out, const CodeNames& codes) {
    out << "\n## " << heading_of(codes) << '\n';
    if (codes.table == nullptr) {
        out << "\nFrom " << codes.source << ".\n\n| Value | Meaning |\n|---|---|\n";
        for (const NamedCode* named = codes.first; named != codes.last; ++named) {
            out << "| " << named->code << " | " << named->name << " |\n";
        }
        return;
    }
    out << "\n| Java value | Stored code | Meaning |\n|---|---|---|\n";
    for (const NamedCode* named = codes.first; named != codes.last; ++named) {
        out << "| " << named->value << " | " << named->code << " | " << named->name << " |\n";
    }
    out << "| any other | " << codes.table->fallback() << " | |\n";
}

constexpr char kIntroduction[] =
    R"(# Record layouts

Made by the program `record_layouts` from the structures in `include/middleware/` and the rows in `jni/records/`. Offsets
and sizes are in bytes from the start of the record; numbers are little-endian. Numbers in parentheses are clauses of ETSI
EN 300 468. The value of a key goes to every field with that key, except fields of another broadcast type or medium.

Every byte is in these tables. Reserved bytes belong to the middleware: the library zeroes them in a new record and
otherwise leaves them as they are.

Units are those in which `./tavro import` stores values. The library passes these numbers on unchanged, so that a TV may
count in others.
)";

} // namespace

void write_markdown(std::ostream& out, const std::vector<Record>& records) {
    out << kIntroduction;
    for (const Record& record : records) {
        write_record(out, record);
    }
    for (const CodeNames& codes : all_codes()) {
        write_codes(out, codes);
    }
}

} // namespace tavro::layouts
