// The keys of the Java objects, joined with the fields that their values go to.
#pragma once

#include "jni/records/code_table.h"
#include "layouts/fields.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tavro::layouts {

// A table of codes by its name.
struct CodeNames {
    const char* name;
    const CodeTable* table; // null where the library stores values unchanged
    const NamedCode* first;
    const NamedCode* last;
    const char* source = ""; // of such codes: where their names come from
};

// The tables by which the library converts values.
const std::vector<CodeNames>& all_code_names();

// A field that a key's value goes to.
struct Target {
    const RecordField* field;
    const CodeNames* codes = nullptr; // null: the value is stored unchanged, or by a rule of the key's own
};

struct Key {
    std::string name;
    std::string field;      // of the Java object
    std::string descriptor; // its type
    std::string kind;       // number, code, flag, text, record id, or rule: a rule of its own
    std::uint32_t mask = 0; // of a flag
    bool readable = false;  // the Java object gets the value of the record through the key's setter
    std::vector<Target> targets;
};

// The keys of a record, in the order of the rows, each once. Throws std::runtime_error when a row puts its value where
// the record has no field, where it has several and none is chosen, or when the rows of both directions disagree.
std::vector<Key> keys_of(const Record& record);

} // namespace tavro::layouts
