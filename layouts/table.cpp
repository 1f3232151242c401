#include "layouts/keys.h"
#include "layouts/writers.h"

namespace tavro::layouts {

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
