// Records as text: the fields that are not zero, or that differ from the bytes last seen of the record.
#pragma once

#include "layouts/fields.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <tuple>
#include <vector>

namespace tavro::trace {

using Bytes = std::vector<std::uint8_t>;

// A field under the name that it has in a trace: its Java constant in lower case, such as network_mask.
struct NamedField {
    std::string name;
    layouts::RecordField field;
};

// How the records of one kind are read.
class RecordFormat {
public:
    explicit RecordFormat(const layouts::Record& record);

    std::size_t size() const { return size_; }
    std::uint16_t record_id(const Bytes& bytes) const;

    // "{name="A", lcn=5, bytes 36..43}": the fields of `bytes` that are not zero; "{}" if all are.
    std::string fields(const Bytes& bytes) const;
    // "{lcn 5 -> 6}": the fields that changed; "{same as before}" if none did. Changed bytes that belong to no field,
    // or to text after its NUL, are named by their positions.
    std::string changes(const Bytes& before, const Bytes& after) const;

private:
    struct View {
        std::uint64_t selected_by;
        std::vector<NamedField> fields; // by offset
    };

    const std::vector<NamedField>& fields_of(const Bytes& bytes) const;
    std::vector<std::string> differences(const Bytes& before, const Bytes& after, bool with_old) const;

    std::size_t size_;
    std::size_t record_id_offset_ = 0;
    std::size_t selector_offset_ = 0; // of a byte
    std::vector<View> views_;
    std::vector<NamedField> common_; // for records that no view fits
};

// What was last seen of the records that this process read and wrote, and the lists of its handles. Thread-safe.
class RecordMemory {
public:
    void opened(int kind, std::uint32_t handle, std::uint16_t list);
    void closed(int kind, std::uint32_t handle);

    // Returns the record's changes since it was last seen, or its fields. Remembers nothing.
    std::string described(int kind, const RecordFormat& format, std::uint32_t handle, const Bytes& bytes) const;
    void remember(int kind, const RecordFormat& format, std::uint32_t handle, const Bytes& bytes);
    void forget(int kind, std::uint32_t handle, std::uint16_t record);
    void forget_list(int kind, std::uint32_t handle);

private:
    // Kind, list id (or, of an unknown handle, the handle above 16 bits) and record id.
    using Key = std::tuple<int, std::uint64_t, std::uint16_t>;

    std::uint64_t list_of(int kind, std::uint32_t handle) const;

    mutable std::mutex mutex_;
    std::map<std::pair<int, std::uint32_t>, std::uint16_t> lists_;
    std::map<Key, Bytes> records_;
};

} // namespace tavro::trace
