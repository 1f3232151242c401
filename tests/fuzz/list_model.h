// A simple model of the lists of all four kinds and of the list files: what each native returns, and which records the
// lists have afterwards.
#pragma once

#include "bridge_kinds.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tavro::fuzz {

using test::Bytes;

// The values that the fuzz target sets in a Java object. Numbers are cut to 16 bits by every kind.
struct Values {
    int list_id = 0;
    int record_id = 0;
    std::int32_t number = 0;
    std::string text;
    int reference_list = 0; // of a record that the record refers to
    int reference_record = 0;
};

// What the model knows of a kind.
struct ModelKind {
    std::size_t bytes;
    std::size_t record_id_at;
    std::size_t number_at;
    std::size_t text_at;
    std::size_t text_bytes;
    bool cuts_text;                // a text that does not fit is cut; otherwise it is dropped
    std::size_t reference_list_at; // 0: the kind has no reference
    std::size_t reference_record_at;
    std::vector<std::pair<std::size_t, std::size_t>> copied_list_ids;  // place and width of what an add by id writes
    std::vector<std::pair<std::size_t, std::size_t>> updated_list_ids; // the same for an update by id
};

inline const ModelKind kModelKinds[] = {
    {sizeof(_SVL_REC_T), 0, 24, 40, 65, true, 26, 28, {}, {{26, 2}, {30, 2}, {34, 2}}},
    {sizeof(_TSL_REC_T), 0, 16, 544, 32, false, 712, 714, {{20, 1}, {708, 2}, {712, 2}}, {{20, 1}, {708, 2}, {712, 2}}},
    {sizeof(_NWL_REC_T), 4, 10, 13, 32, false, 0, 0, {{6, 2}}, {{6, 2}}},
    {sizeof(_SATL_REC_T), 0, 280, 282, 65, true, 0, 0, {}, {}},
};

constexpr int kServices = 0;
constexpr int kStreams = 1;
constexpr int kNetworks = 2;
constexpr int kSatellites = 3;

inline std::uint16_t number16(const Bytes& record, std::size_t at) {
    std::uint16_t number = 0;
    std::memcpy(&number, record.data() + at, sizeof(number));
    return number;
}
inline void put_low_bytes(Bytes& record, std::size_t at, std::size_t width, int number) {
    std::memcpy(record.data() + at, &number, width);
}

// The records of a list in their order.
class Records {
public:
    const std::vector<Bytes>& all() const { return records_; }

    const Bytes* find(const ModelKind& kind, int record_id) const {
        const auto found = std::find_if(records_.begin(), records_.end(), [&](const Bytes& record) {
            return number16(record, kind.record_id_at) == static_cast<std::uint16_t>(record_id);
        });
        return found == records_.end() ? nullptr : &*found;
    }
    void add(const Bytes& record) { records_.push_back(record); }
    bool replace(const ModelKind& kind, const Bytes& record) {
        auto* const old = const_cast<Bytes*>(find(kind, number16(record, kind.record_id_at)));
        if (old != nullptr) {
            *old = record;
        }
        return old != nullptr;
    }
    bool remove(const ModelKind& kind, int record_id) {
        const Bytes* const old = find(kind, record_id);
        if (old != nullptr) {
            records_.erase(records_.begin() + (old - records_.data()));
        }
        return old != nullptr;
    }
    void clear() { records_.clear(); }
    int highest_id(const ModelKind& kind) const {
        int highest = 0;
        for (const Bytes& record : records_) {
            highest = std::max<int>(highest, number16(record, kind.record_id_at));
        }
        return highest;
    }

private:
    std::vector<Bytes> records_;
};

// The model. Its operations have the names and results of the natives: 0, -22 or -1; for adds the new record id or -22.
class ListModel {
public:
    explicit ListModel(int kind) : number_(kind), kind_(kModelKinds[kind]) {}

    struct File {
        int kind = -1;
        Records records{};
    };
    using Files = std::map<std::string, File>;

    const ModelKind& kind() const { return kind_; }
    const std::map<std::uint16_t, Records>& lists() const { return lists_; }
    const std::set<std::uint16_t>& open_lists() const { return open_; }
    // Returns the list's records, or an empty vector if the list does not exist.
    std::vector<Bytes> records(int list) const {
        const auto found = lists_.find(low16(list));
        return found == lists_.end() ? std::vector<Bytes>{} : found->second.all();
    }
    void close_all() { open_.clear(); }

    int open(int list) {
        if (low16(list) == 0) {
            return number_ == kServices ? kFailed : kDone;
        }
        lists_[low16(list)];
        open_.insert(low16(list));
        return kDone;
    }
    int open_path(int list, const std::string& path, const Files& files) {
        const bool is_open = open_.count(low16(list)) != 0;
        if (path.empty()) {
            return number_ == kSatellites && is_open ? kDone : kFailed;
        }
        if (low16(list) == 0) {
            return kDone;
        }
        const bool reloads = number_ == kServices && is_open && lists_.at(low16(list)).all().empty();
        open(list);
        const auto file = files.find(path);
        if ((!is_open || reloads) && file != files.end() && file->second.kind == number_) {
            lists_[low16(list)] = file->second.records;
        }
        return kDone;
    }
    int close(int list) { return use(list) ? (open_.erase(low16(list)), kDone) : kFailed; }
    int remove_list(int list) {
        if (!use(list)) {
            return kFailed;
        }
        lists_.erase(low16(list));
        open_.erase(low16(list));
        return kDone;
    }
    int clean(int list) { return use(list) ? (use(list)->clear(), kDone) : kFailed; }
    int store(int list, const std::string& path, Files& files) {
        if (path.empty() || !use(list)) {
            return kFailed;
        }
        files[path] = {number_, *use(list)};
        return kDone;
    }
    int copy(int source, int destination) {
        use(destination); // is opened first, for its lock
        if (!use(source) || !use(destination)) {
            return kFailed;
        }
        const Records copied = *use(source);
        *use(destination) = copied;
        return kDone;
    }
    int remove(int list, int record) {
        if (number_ == kStreams && open_.count(low16(list)) == 0) {
            return kFailed;
        }
        return use(list) && use(list)->remove(kind_, record) ? kDone : kFailed;
    }
    int add(int list, const Values& values) {
        Records* const records = use(list);
        if (records == nullptr) {
            return kFailed;
        }
        const int id = records->highest_id(kind_) + 1;
        Bytes record(kind_.bytes);
        if (number_ == kServices) {
            record[8] = std::byte{1}; // network mask
        } else if (number_ == kSatellites) {
            record[48] = std::byte{0xFF}; // tone burst
        }
        put(record, values);
        put_low_bytes(record, kind_.record_id_at, 2, id);
        records->add(record);
        return id;
    }
    int add_by_record_id(int list, int source_list, int source_record) {
        const Bytes* const found = get(source_list, source_record);
        if (found == nullptr) {
            return kFailed;
        }
        Bytes record = *found;
        Records* const records = use(list);
        if (records == nullptr) {
            return kFailed;
        }
        for (const auto& [at, width] : kind_.copied_list_ids) {
            put_low_bytes(record, at, width, list);
        }
        const bool is_new = records->find(kind_, source_record) == nullptr;
        if (!is_new && number_ == kServices) {
            return kFailed;
        }
        is_new ? records->add(record) : (void)records->replace(kind_, record);
        return number16(record, kind_.record_id_at);
    }
    int update(int list, const Values& values) {
        const Bytes* const found = get(list, values.record_id);
        if (found == nullptr) {
            return kFailed;
        }
        Bytes record = *found;
        put(record, values);
        use(list)->replace(kind_, record);
        return kDone;
    }
    int update_by_record_id(int list, int source_list, int source_record) {
        const Bytes* const found = get(source_list, source_record);
        if (found == nullptr) {
            return kFailed;
        }
        Bytes record = *found;
        for (const auto& [at, width] : kind_.updated_list_ids) {
            put_low_bytes(record, at, width, list);
        }
        return use(list) && use(list)->replace(kind_, record) ? kDone : kFailed;
    }
    // A record, or null. Opens the list.
    const Bytes* get(int list, int record) {
        Records* const records = use(list);
        return records == nullptr ? nullptr : records->find(kind_, record);
    }
    // The list's records, or null. Opens the list.
    Records* use(int list) {
        const auto found = lists_.find(low16(list));
        if (found == lists_.end()) {
            return nullptr;
        }
        open_.insert(found->first);
        return &found->second;
    }

private:
    void put(Bytes& record, const Values& values) const {
        put_low_bytes(record, kind_.number_at, 2, values.number);
        if (kind_.cuts_text) {
            std::string text = values.text.substr(0, kind_.text_bytes - 1);
            text.resize(kind_.text_bytes, '\0');
            std::memcpy(record.data() + kind_.text_at, text.data(), text.size());
        } else if (values.text.size() < kind_.text_bytes) {
            std::memcpy(record.data() + kind_.text_at, values.text.c_str(), values.text.size() + 1);
        }
        if (kind_.reference_list_at != 0) {
            put_low_bytes(record, kind_.reference_list_at, 2, values.reference_list);
            put_low_bytes(record, kind_.reference_record_at, 2, values.reference_record);
        }
    }

    int number_;
    const ModelKind& kind_;
    std::map<std::uint16_t, Records> lists_;
    std::set<std::uint16_t> open_;
};

} // namespace tavro::fuzz
