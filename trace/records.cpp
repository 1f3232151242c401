#include "trace/records.h"

#include "trace/text.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace tavro::trace {
namespace {

using layouts::RecordField;

constexpr std::size_t kMostRecords = 20000; // about 12 MB; all are forgotten when there are more

std::uint64_t number_at(const Bytes& bytes, std::size_t offset, std::size_t width) {
    std::uint64_t number = 0;
    for (std::size_t i = width; i-- > 0;) {
        number = (number << 8U) | bytes[offset + i]; // little-endian
    }
    return number;
}

std::string number_text(const RecordField& field, const Bytes& bytes, std::size_t index) {
    const std::size_t width = field.width / field.count;
    const std::uint64_t number = number_at(bytes, field.offset + index * width, width);
    if (field.use == FieldUse::kFlags) {
        return hexadecimal(number);
    }
    return field.type == FieldType::kInt16 ? std::to_string(static_cast<std::int16_t>(number)) : std::to_string(number);
}

// The value of a field: a number, numbers in brackets, or text in quotes.
std::string value_text(const RecordField& field, const Bytes& bytes) {
    if (field.text()) {
        const auto* const text = reinterpret_cast<const char*>(bytes.data() + field.offset);
        return quoted(std::string_view(text, ::strnlen(text, field.width)));
    }
    if (field.count == 1) {
        return number_text(field, bytes, 0);
    }
    std::string all;
    for (std::size_t i = 0; i < field.count; ++i) {
        all += (i == 0 ? "[" : ", ") + number_text(field, bytes, i);
    }
    return all + ']';
}

std::string lower_case(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

std::vector<NamedField> named(const std::vector<RecordField>& fields) {
    std::vector<NamedField> all;
    for (const RecordField& field : fields) {
        if (!field.reserved()) {
            all.push_back({lower_case(field.java), field});
        }
    }
    return all;
}

std::string in_braces(const std::vector<std::string>& parts) {
    std::string all = "{";
    for (const std::string& part : parts) {
        all += (all.size() == 1 ? "" : ", ") + part;
    }
    return all + '}';
}

// Adds "bytes 36..43" for each run of marked bytes.
void add_ranges(std::vector<std::string>& parts, const std::vector<bool>& marked) {
    for (std::size_t at = 0; at < marked.size(); ++at) {
        if (!marked[at]) {
            continue;
        }
        const std::size_t first = at;
        while (at + 1 < marked.size() && marked[at + 1]) {
            ++at;
        }
        parts.push_back(first == at ? "byte " + std::to_string(at)
                                    : "bytes " + std::to_string(first) + ".." + std::to_string(at));
    }
}

} // namespace

RecordFormat::RecordFormat(const layouts::Record& record) : size_(record.size) {
    for (const RecordField& field : record.fields) {
        if (field.java == "RECORD_ID") {
            record_id_offset_ = field.offset;
        }
        if (field.path == record.selector) {
            selector_offset_ = field.offset;
        }
    }
    for (const layouts::View& view : record.views) {
        views_.push_back({view.value, named(record.of(view))});
    }
    std::vector<RecordField> common;
    std::copy_if(record.fields.begin(), record.fields.end(), std::back_inserter(common),
                 [](const RecordField& field) { return field.views.empty(); });
    std::stable_sort(common.begin(), common.end(),
                     [](const RecordField& a, const RecordField& b) { return a.offset < b.offset; });
    common_ = named(common);
}

std::uint16_t RecordFormat::record_id(const Bytes& bytes) const {
    return static_cast<std::uint16_t>(number_at(bytes, record_id_offset_, 2));
}

const std::vector<NamedField>& RecordFormat::fields_of(const Bytes& bytes) const {
    for (const View& view : views_) {
        if (view.selected_by == bytes[selector_offset_]) {
            return view.fields;
        }
    }
    return common_;
}

std::vector<std::string> RecordFormat::differences(const Bytes& before, const Bytes& after, bool with_old) const {
    std::vector<bool> unnamed(size_);
    for (std::size_t i = 0; i < size_; ++i) {
        unnamed[i] = before[i] != after[i];
    }
    std::vector<std::string> parts;
    for (const NamedField& named : fields_of(after)) {
        const auto first = unnamed.begin() + static_cast<std::ptrdiff_t>(named.field.offset);
        const auto last = first + static_cast<std::ptrdiff_t>(named.field.width);
        if (std::find(first, last, true) == last) {
            continue;
        }
        const std::string old_value = value_text(named.field, before);
        const std::string value = value_text(named.field, after);
        if (value != old_value) {
            std::string part = named.name;
            part.append(with_old ? " " + old_value + " -> " : "=").append(value);
            parts.push_back(part);
            std::fill(first, last, false);
        }
    }
    add_ranges(parts, unnamed);
    return parts;
}

std::string RecordFormat::fields(const Bytes& bytes) const {
    return in_braces(differences(Bytes(size_), bytes, false));
}

std::string RecordFormat::changes(const Bytes& before, const Bytes& after) const {
    const std::vector<std::string> parts = differences(before, after, true);
    return parts.empty() ? "{same as before}" : in_braces(parts);
}

void RecordMemory::opened(int kind, std::uint32_t handle, std::uint16_t list) {
    const std::lock_guard<std::mutex> lock(mutex_);
    lists_[{kind, handle}] = list;
}

void RecordMemory::closed(int kind, std::uint32_t handle) {
    const std::lock_guard<std::mutex> lock(mutex_);
    lists_.erase({kind, handle});
}

std::uint64_t RecordMemory::list_of(int kind, std::uint32_t handle) const {
    const auto found = lists_.find({kind, handle});
    return found == lists_.end() ? static_cast<std::uint64_t>(handle) << 16U : found->second;
}

std::string RecordMemory::described(int kind, const RecordFormat& format, std::uint32_t handle,
                                    const Bytes& bytes) const {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto found = records_.find({kind, list_of(kind, handle), format.record_id(bytes)});
    return found == records_.end() ? format.fields(bytes) : format.changes(found->second, bytes);
}

void RecordMemory::remember(int kind, const RecordFormat& format, std::uint32_t handle, const Bytes& bytes) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (records_.size() >= kMostRecords) {
        records_.clear();
    }
    records_[{kind, list_of(kind, handle), format.record_id(bytes)}] = bytes;
}

void RecordMemory::forget(int kind, std::uint32_t handle, std::uint16_t record) {
    const std::lock_guard<std::mutex> lock(mutex_);
    records_.erase({kind, list_of(kind, handle), record});
}

void RecordMemory::forget_list(int kind, std::uint32_t handle) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::uint64_t list = list_of(kind, handle);
    const auto first = records_.lower_bound({kind, list, 0});
    records_.erase(first, records_.upper_bound({kind, list, 0xFFFF}));
}

} // namespace tavro::trace
