#include "layouts/codes.h"
#include "layouts/keys.h"
#include "layouts/writers.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace tavro::layouts {
namespace {

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

std::string views_of(const RecordField& field) {
    std::string text;
    for (const View& view : field.views) {
        text += (text.empty() ? "" : ",") + std::to_string(view.value);
    }
    return text;
}

// "ServiceId=number", and so on: the keys whose value goes to the field, but for flags.
std::string keys_to(const RecordField& field, const std::vector<Key>& keys) {
    std::string text;
    for (const Key& key : keys) {
        for (const Target& target : key.targets) {
            if (target.field->path == field.path && key.kind != "flag") {
                text += (text.empty() ? "" : ",") + key.name + '=' + key.kind;
            }
        }
    }
    return text;
}

// The longest text, without its terminator, which is in the field or the byte after it.
unsigned longest_text(const Record& record, const RecordField& field) {
    for (const RecordField& other : record.fields) {
        if (other.offset == field.end() && other.type == FieldType::kChar && other.width == 1) {
            return field.width;
        }
    }
    return field.width - 1;
}

void write_field(std::ostream& out, const Record& record, const RecordField& field, const std::vector<Key>& keys,
                 unsigned element) {
    const bool single = field.count == 1;
    const std::string number = std::to_string(element + 1);
    const unsigned width = field.width / field.count;
    out << "field|" << lower(field.java) << (single ? "" : '_' + number) << '|' << field.label
        << (single ? "" : ' ' + number) << '|' << field.offset + element * width << '|' << width << '|'
        << style_of(field) << '|' << (field.text() ? longest_text(record, field) : 0) << '|' << views_of(field) << '|'
        << field.member << (single ? "" : '[' + std::to_string(element) + ']') << '|' << field.unit << '|'
        << keys_to(field, keys) << '|' << field.meaning << '\n';
    std::map<std::uint32_t, std::string> flags;
    for (const Key& key : keys) {
        if (key.kind == "flag" && key.targets[0].field->path == field.path) {
            flags[key.mask] = key.name;
        }
    }
    for (const auto& [mask, key] : flags) {
        out << "flag|" << mask << '|' << key << '\n';
    }
    if (const CodeNames* codes = codes_of(record, keys, field)) {
        for (const NamedCode* named = codes->first; named != codes->last; ++named) {
            out << "code|" << named->code << '|' << named->value << '|' << named->name << '\n';
        }
    }
}

void write_table(std::ostream& out, const Record& record) {
    int selector = -1;
    for (const RecordField& field : record.fields) {
        selector = field.path == record.selector ? static_cast<int>(field.offset) : selector;
    }
    out << "record|" << record.structure << '|' << record.size << '|' << selector << '\n';
    for (const View& view : record.views) {
        out << "view|" << view.value << '|' << view.label << '|' << view.member << '\n';
    }
    const std::vector<Key> keys = keys_of(record);
    for (const RecordField& field : record.fields) {
        if (field.reserved()) {
            out << "reserved|" << field.offset << '|' << field.width << '|' << views_of(field) << '|' << field.member
                << '\n';
            continue;
        }
        for (unsigned i = 0; i < field.count; ++i) {
            write_field(out, record, field, keys, i);
        }
    }
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    return text;
}

// "svl", as in names of functions and files.
std::string short_name(const Record& record) { return record.header.substr(0, record.header.find('.')); }

} // namespace

void write_tables(std::ostream& out, const std::vector<Record>& records) {
    out << "package com.velotra.tv.tavro.tool.records;\n\n"
        << "/** The layouts of the records, for LayoutReader. Made by the program record_layouts. */\n"
        << "final class LayoutTables {\n";
    for (const Record& record : records) {
        out << "    static final String " << upper(short_name(record)) << " = \"\"\"\n";
        write_table(out, record);
        out << "\"\"\";\n\n";
    }
    out << "    private LayoutTables() {}\n}\n";
}

void write_keys(std::ostream& out, const std::vector<Record>& records) {
    out << "key\trecord\tname\tJava field\tJava type\tkind\tread\tmask\tpath\toffset\twidth\tviews\tcodes\n";
    for (const Record& record : records) {
        for (const Key& key : keys_of(record)) {
            for (const Target& target : key.targets) {
                const RecordField& field = *target.field;
                out << "key\t" << record.kind << '\t' << key.name << '\t' << key.field << '\t' << key.descriptor << '\t'
                    << key.kind << '\t' << (key.readable ? "yes" : "no") << '\t' << key.mask << '\t' << field.path
                    << '\t' << field.offset << '\t' << field.width << '\t';
                for (std::size_t i = 0; i < field.views.size(); ++i) {
                    out << (i == 0 ? "" : ",") << field.views[i].value;
                }
                out << '\t' << (target.codes == nullptr ? "" : target.codes->name) << '\n';
            }
        }
    }
    for (const CodeNames& codes : all_code_names()) {
        for (const NamedCode* named = codes.first; named != codes.last; ++named) {
            out << "code\t" << codes.name << '\t' << named->value << '\t' << named->code << '\t' << named->name << '\n';
        }
    }
}

} // namespace tavro::layouts
