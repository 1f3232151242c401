#include "layouts/fields.h"

#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"

#include <algorithm>

namespace tavro::layouts {
namespace {

std::string joined(const std::string& first, const char* separator, const std::string& second) {
    return first.empty() || second.empty() ? first + second : first + separator + second;
}

// What a field takes over from the structures around it.
struct Around {
    std::string path;
    std::string member;
    unsigned offset = 0;
    std::string java;
    std::string label;
    std::string number; // of an array's element: its suffix
    std::vector<View> views;
};

void add(std::vector<RecordField>& out, const Around& around, const Field* fields, std::size_t count);

void add_structure(std::vector<RecordField>& out, const Around& around, const Field& field) {
    const unsigned width = field.width / field.count;
    for (unsigned i = 0; i < field.count; ++i) {
        Around inside = around;
        std::string name = field.name;
        name += field.count > 1 ? '[' + std::to_string(i) + ']' : "";
        inside.path += name;
        inside.member += name + '.';
        inside.offset += field.offset + i * width;
        if (field.count > 1) {
            inside.number = std::to_string(i + 1);
        }
        if (field.use == FieldUse::kView) {
            inside.views = {{field.label, inside.path, field.view}};
            inside.member = "";
        } else {
            inside.java = joined(around.java, "_", field.java);
            inside.label = joined(around.label, " ", field.label);
        }
        inside.path += '.';
        add(out, inside, field.members, field.member_count);
    }
}

void add(std::vector<RecordField>& out, const Around& around, const Field* fields, std::size_t count) {
    for (const Field* field = fields; field != fields + count; ++field) {
        if (field->type == FieldType::kStructure) {
            add_structure(out, around, *field);
            continue;
        }
        RecordField flat = {around.path + field->name,
                            around.member + field->name,
                            around.offset + field->offset,
                            field->width,
                            field->type == FieldType::kChar ? 1U : field->count,
                            field->type,
                            field->use,
                            joined(joined(around.java, "_", field->java), "_", around.number),
                            joined(joined(around.label, " ", field->label), " ", around.number),
                            field->meaning,
                            field->unit,
                            around.views};
        // A structure that several views begin with: its fields are there once.
        const auto same = std::find_if(out.begin(), out.end(), [&](const RecordField& other) {
            return !flat.reserved() && other.java == flat.java && other.offset == flat.offset &&
                   other.width == flat.width && !other.views.empty();
        });
        if (same == out.end()) {
            out.push_back(flat);
        } else {
            same->views.insert(same->views.end(), flat.views.begin(), flat.views.end());
        }
    }
}

template <class Structure>
Record record(const char* kind, const char* structure, const char* header, const char* selector) {
    Record made = {kind, structure, header, selector, sizeof(Structure), {}, {}};
    for (const Field& field : Layout<Structure>::fields) {
        if (field.use == FieldUse::kView) {
            made.views.push_back({field.label, field.name, field.view});
        }
    }
    made.fields = flatten(Layout<Structure>::fields, std::size(Layout<Structure>::fields));
    return made;
}

} // namespace

bool RecordField::in(const View& view) const {
    return views.empty() ||
           std::any_of(views.begin(), views.end(), [&](const View& own) { return own.value == view.value; });
}

std::vector<RecordField> Record::of(const View& view) const {
    std::vector<RecordField> some;
    std::copy_if(fields.begin(), fields.end(), std::back_inserter(some),
                 [&](const RecordField& field) { return field.in(view); });
    std::stable_sort(some.begin(), some.end(),
                     [](const RecordField& a, const RecordField& b) { return a.offset < b.offset; });
    return some;
}

std::vector<RecordField> flatten(const Field* fields, std::size_t count) {
    std::vector<RecordField> flat;
    add(flat, {}, fields, count);
    return flat;
}

std::vector<std::string> wrong_bytes(const Record& record) {
    std::vector<std::string> wrong;
    const std::vector<View> one = {{"", "", 0}};
    for (const View& view : record.views.empty() ? one : record.views) {
        std::vector<const RecordField*> owners(record.size);
        const std::vector<RecordField> fields = record.of(view);
        const std::string name = record.kind + (view.label.empty() ? "" : ", " + view.label);
        for (const RecordField& field : fields) {
            for (unsigned byte = field.offset; byte < field.end(); ++byte) {
                if (byte >= record.size) {
                    wrong.push_back(name + ": " + field.path + " ends after the record");
                    break;
                }
                if (owners[byte] != nullptr) {
                    wrong.push_back(name + ": byte " + std::to_string(byte) + " belongs to " + owners[byte]->path +
                                    " and to " + field.path);
                }
                owners[byte] = &field;
            }
        }
        for (unsigned byte = 0; byte < record.size; ++byte) {
            if (owners[byte] == nullptr) {
                wrong.push_back(name + ": byte " + std::to_string(byte) + " belongs to no field or reserved range");
            }
        }
    }
    return wrong;
}

std::vector<Record> all_records() {
    return {record<_SVL_REC_T>("service", "_SVL_REC_T", "svl.h", "t_header.e_brdcst_type"),
            record<_TSL_REC_T>("transport stream", "_TSL_REC_T", "tsl.h", "e_bcst_medium"),
            record<_NWL_REC_T>("network", "_NWL_REC_T", "nwl.h", ""),
            record<_SATL_REC_T>("satellite", "_SATL_REC_T", "satl.h", "")};
}

} // namespace tavro::layouts
