// The four records as flat lists of fields, made from the tables next to the structures.
#pragma once

#include "middleware/layout.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavro::layouts {

// One way to read bytes that are shared: "DVB" while the selecting field is 2.
struct View {
    std::string label;
    std::string member; // of the structure: u_specific.t_dvb
    unsigned value;
};

// One field or reserved range of a record. Arrays of numbers are one field, arrays of structures one per element.
struct RecordField {
    std::string path;   // as C++ code reaches it from the record: t_header.ui4_nw_mask
    std::string member; // the same from its view, if it has one
    unsigned offset;    // from the start of the record
    unsigned width;
    unsigned count; // of an array's elements; 1 when it is none, or text
    FieldType type; // of one element
    FieldUse use;
    std::string java; // name of the Java constant
    std::string label;
    std::string meaning;
    std::string unit;
    std::vector<View> views; // those that have the field; none: every record has it

    bool reserved() const { return use == FieldUse::kReserved; }
    bool text() const { return type == FieldType::kChar && width > 1; }
    unsigned end() const { return offset + width; }
    bool in(const View& view) const;
};

struct Record {
    std::string kind;      // service
    std::string structure; // _SVL_REC_T
    std::string header;    // where it is declared
    std::string selector;  // path of the field that selects a view; empty without views
    unsigned size;
    std::vector<View> views;
    std::vector<RecordField> fields; // by view, then by offset

    // The fields that a record of this view has, by offset.
    std::vector<RecordField> of(const View& view) const;
};

// The fields of a structure whose first byte is byte 0.
std::vector<RecordField> flatten(const Field* fields, std::size_t count);

// What is wrong with a record: bytes that no field or reserved range has, or that more than one has in the same view.
// Empty when every byte belongs to one.
std::vector<std::string> wrong_bytes(const Record& record);

// Services, transport streams, networks and satellites.
std::vector<Record> all_records();

} // namespace tavro::layouts
