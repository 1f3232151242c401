#include "layouts/writers.h"

#include <algorithm>
#include <cctype>

namespace tavro::layouts {
namespace {

std::string upper_first(std::string text) {
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

// "broadcast types 2 and 7", or nothing where every record has the field.
std::string condition(const Record& record, const RecordField& field) {
    if (field.views.empty()) {
        return "";
    }
    std::string text = record.kind == "service" ? "broadcast type" : "medium";
    for (std::size_t i = 0; i < field.views.size(); ++i) {
        text += (i == 0 ? " " : " or ") + std::to_string(field.views[i].value);
    }
    return text;
}

std::string sentence(const Record& record, const RecordField& field, const std::string& label) {
    std::string text = upper_first(label);
    text += field.meaning.empty() ? "" : ": " + field.meaning;
    text += field.unit.empty() ? "" : ", in " + field.unit;
    const std::string only = condition(record, field);
    return text + (only.empty() ? "." : "; " + only + ".");
}

void write_constant(std::ostream& out, const Record& record, const RecordField& field, unsigned element) {
    const std::string number = field.count == 1 ? "" : std::to_string(element + 1);
    const std::string label = field.label + (number.empty() ? "" : " " + number);
    const unsigned width = field.width / field.count;
    out << "    /** " << sentence(record, field, label) << " */\n"
        << "    " << field.java << (number.empty() ? "" : "_") << number << "(\"" << label << "\", "
        << field.offset + element * width << ", " << width << ", Style." << style_of(field);
    for (const View& view : field.views) {
        out << ", " << view.value;
    }
    out << ')';
}

constexpr char kBody[] = R"(
    private final String label;
    private final int offset;
    private final int width;
    private final Style style;
    private final int[] views;

    @FIELD@(String label, int offset, int width, Style style, int... views) {
        this.label = label;
        this.offset = offset;
        this.width = width;
        this.style = style;
        this.views = views;
    }

    @Override
    public String label() {
        return label;
    }

    @Override
    public int offset() {
        return offset;
    }

    @Override
    public int width() {
        return width;
    }

    @Override
    public Style style() {
        return style;
    }
)";

constexpr char kBelongsTo[] = R"(
    /** Whether @KIND@s of that @SELECTOR@ have the field. */
    public boolean belongsTo(int @PARAMETER@) {
        for (int view : views) {
            if (view == @PARAMETER@) {
                return true;
            }
        }
        return views.length == 0;
    }
)";

std::string filled(std::string text, const std::string& mark, const std::string& value) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + value.size())) {
        text.replace(at, mark.size(), value);
    }
    return text;
}

} // namespace

const char* style_of(const RecordField& field) {
    if (field.text()) {
        return "TEXT";
    }
    if (field.type == FieldType::kInt16) {
        return "SIGNED";
    }
    return field.use == FieldUse::kFlags ? "HEX" : "NUMBER";
}

std::string java_class(const Record& record) {
    std::string name;
    bool first = true;
    for (const char letter : record.kind) {
        if (letter == ' ') {
            first = true;
        } else {
            name += first ? static_cast<char>(std::toupper(static_cast<unsigned char>(letter))) : letter;
            first = false;
        }
    }
    return name + "Field";
}

void write_java(std::ostream& out, const Record& record) {
    const std::string name = java_class(record);
    out << "package com.velotra.tv.tavro.services.channellist;\n\n"
        << "/** The fields of a " << record.kind << " record. Made from include/middleware/" << record.header
        << " by the program record_layouts. */\n"
        << "public enum " << name << " implements RecordField {\n";
    const char* separator = "";
    for (const RecordField& field : record.fields) {
        for (unsigned i = 0; i < field.count && !field.reserved(); ++i) {
            out << separator;
            write_constant(out, record, field, i);
            separator = ",\n\n";
        }
    }
    out << ";\n";
    const bool service = record.kind == "service";
    std::string body = kBody;
    body += record.views.empty() ? "" : kBelongsTo;
    body = filled(body, "@FIELD@", name);
    body = filled(body, "@KIND@", record.kind);
    body = filled(body, "@SELECTOR@", service ? "broadcast type" : "medium");
    body = filled(body, "@PARAMETER@", service ? "broadcastType" : "medium");
    if (record.views.empty()) {
        body = filled(body, "    private final int[] views;\n", "");
        body = filled(body, ", int... views", "");
        body = filled(body, "        this.views = views;\n", "");
    }
    out << body << "}\n";
}

} // namespace tavro::layouts
