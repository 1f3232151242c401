// The four list kinds as the tests of the managers see them: their log lines and the rules in which they differ.
//
// A rule that one kind keeps differently is a member of ListKind, not a separate test.
#pragma once

#include "any_manager.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

namespace tavro::test {

// Writes a 16-bit number, or a text with its terminator, into a record.
inline void put16(Bytes& record, std::size_t at, std::uint16_t number) {
    std::memcpy(record.data() + at, &number, sizeof(number));
}
inline void put_text(Bytes& record, std::size_t at, const char* text) {
    std::memcpy(record.data() + at, text, std::strlen(text) + 1);
}

// Reads them as a log line shows them. A text ends at its NUL or at the end of its field.
inline std::string number16(const Bytes& record, std::size_t at) {
    std::uint16_t number = 0;
    std::memcpy(&number, record.data() + at, sizeof(number));
    return std::to_string(number);
}
inline std::string text_field(const Bytes& record, std::size_t at, std::size_t width) {
    const std::string field(reinterpret_cast<const char*>(record.data()) + at, width);
    return field.substr(0, field.find('\0'));
}

struct ListKind {
    // Where its manager, handles and middleware calls are found.
    const char* name = "";    // in the names of parameterized tests
    const char* word = "";    // calls start with "x_WORD_"
    std::uint32_t number = 0; // a scripted handle is number << 16 | list id
    tavro::HandleMap* handles = nullptr;
    std::unique_ptr<AnyManager> (*make)() = nullptr;
    const char* storage = "";    // storage names are this and a number
    const char* count_call = ""; // middleware call that counts by list id

    // Words of its log lines.
    const char* tag = "";
    const char* class_name = ""; // starts the lines of handle operations and of reads by index
    const char* prefix = "";     // starts the lines of most operations
    const char* clean_prefix = "";
    const char* count_prefix = "";
    const char* list_id = "mwdbId";
    const char* copy_source = "srcMwdbId";
    const char* copy_destination = "destMwdbId";
    const char* handle = "mwdbHandle";
    const char* handle_operation = "MwdbHandle"; // handle operations are named "get", "set"... and this
    const char* named_list = "";                 // list id and record id taken from an identifier
    const char* named_record = "";
    const char* removed_record = ""; // record id of a removal by record id

    // Its record.
    std::size_t record_bytes = 0;
    std::size_t record_id_at = 0;
    std::size_t name_at = 0;
    struct ListIdField {
        std::size_t at;
        std::size_t width;
    };
    std::vector<ListIdField> list_id_fields{};      // overwritten by copyInfo
    std::string (*printed)(const Bytes&) = nullptr; // a record in the lines of updates and reads; null: no lines

    // Its rules.
    enum class GetLines { kNone, kListAndRecord, kIdentifier };
    GetLines get_lines = GetLines::kNone;    // what getInfo logs before the look-up
    bool get_prints_record = false;          // getInfo logs the record that it read
    bool logs_lookups = true;                // the look-up of an open list writes a line
    bool logs_opening = false;               // open ends with a "set handle ok" line
    bool logs_prepared_file = false;         // open logs the file that it prepared
    bool logs_count = false;                 // getInfoListNum logs its result
    bool logs_removal_status = false;        // removals log the middleware's status, under the lock
    bool cuts_logged_record_id = false;      // removals log the low 16 bits of the record id
    bool removal_opens = true;               // removals open a list that is not open
    bool cuts_index = true;                  // getInfoByIdx passes the low 16 bits of the index
    bool open_list_takes_empty_path = false; // open with an empty path succeeds if the list is open
    int failed_create_result = 0;            // open's result when the list cannot be created

    std::string calls() const { return std::string("x_") + word + "_"; }

    // A record in which no two neighboring bytes are equal; record id 17, name "Name".
    Bytes sample() const {
        Bytes record(record_bytes);
        for (std::size_t i = 0; i < record.size(); ++i) {
            record[i] = static_cast<std::byte>(i * 31 + 7);
        }
        put16(record, record_id_at, 17);
        put_text(record, name_at, "Name");
        return record;
    }
    // The sample under another record id.
    Bytes sample_as(std::uint16_t record_id) const {
        Bytes record = sample();
        put16(record, record_id_at, record_id);
        return record;
    }
    // The sample as copyInfo writes it to that list.
    Bytes sample_in(std::uint16_t list) const {
        Bytes record = sample();
        for (const ListIdField& field : list_id_fields) {
            std::memcpy(record.data() + field.at, &list, field.width); // little-endian: the low bytes
        }
        return record;
    }
};

inline const ListKind kServices = [] {
    ListKind kind;
    kind.name = "Services";
    kind.word = "svl";
    kind.number = 1;
    kind.handles = &tavro::SvlKind::handles();
    kind.make = make_manager<AnyServiceList>;
    kind.storage = "fs_Svl_";

    kind.tag = "NativeVltTvChannelList_Cpp";
    kind.class_name = kind.prefix = "[NativeVltTvChannelList]";
    kind.clean_prefix = "[NativeVltChannelList]"; // deliberate: without "Tv"
    kind.named_list = "svlId";
    kind.named_record = kind.removed_record = "svlRecId";

    kind.record_bytes = 552;
    kind.record_id_at = 0;
    kind.name_at = 40;
    kind.printed = [](const Bytes& record) {
        return "rec_id:" + number16(record, 0) + " ui2_prog_id:" + number16(record, 24) +
               " ac_name:" + text_field(record, 40, 65);
    };

    kind.get_lines = ListKind::GetLines::kListAndRecord;
    kind.get_prints_record = true;
    kind.logs_opening = true;
    kind.logs_prepared_file = true;
    kind.failed_create_result = -22;
    return kind;
}();

inline const ListKind kTransportStreams = [] {
    ListKind kind;
    kind.name = "TransportStreams";
    kind.word = "tsl";
    kind.number = 2;
    kind.handles = &tavro::TslKind::handles();
    kind.make = make_manager<AnyTransportStreamList>;
    kind.storage = "fs_Tsl_";
    kind.count_call = "get_num_recs";

    kind.tag = "NativeVltTvTransportStreamList_Cpp";
    kind.class_name = kind.prefix = kind.clean_prefix = "[NativeVltTvTransportStreamList]";
    kind.named_list = "tslId";
    kind.named_record = kind.removed_record = "tslRecId";

    kind.record_bytes = 724;
    kind.record_id_at = 0;
    kind.name_at = 544;
    kind.list_id_fields = {{708, 2}, {712, 2}, {20, 1}};
    kind.printed = [](const Bytes& record) {
        return "rec_id:" + number16(record, 0) + " ts_id:" + number16(record, 16) +
               " s_nw_name:" + text_field(record, 544, 32);
    };

    kind.logs_lookups = false;
    kind.logs_removal_status = true;
    kind.cuts_logged_record_id = true;
    kind.removal_opens = false;
    return kind;
}();

inline const ListKind kNetworks = [] {
    ListKind kind;
    kind.name = "Networks";
    kind.word = "nwl";
    kind.number = 3;
    kind.handles = &tavro::NwlKind::handles();
    kind.make = make_manager<AnyNetworkList>;
    kind.storage = "fs_Nwl_";
    kind.count_call = "get_num_rec";

    kind.tag = "NativeVltTvNetworkList_Cpp";
    kind.class_name = kind.prefix = kind.clean_prefix = kind.count_prefix = "[NativeVltTvNetworkList]";
    kind.named_list = "nwlId";
    kind.named_record = kind.removed_record = "nwlRecId";

    kind.record_bytes = 304;
    kind.record_id_at = 4;
    kind.name_at = 13;
    kind.list_id_fields = {{6, 2}};
    kind.printed = [](const Bytes& record) {
        return "rec_id:" + number16(record, 4) + " nw_id:" + number16(record, 10) +
               " nit_ver:" + std::to_string(std::to_integer<int>(record[12])) +
               " s_nw_name:" + text_field(record, 13, 32);
    };

    kind.get_lines = ListKind::GetLines::kListAndRecord;
    kind.get_prints_record = true;
    kind.logs_count = true;
    return kind;
}();

inline const ListKind kSatellites = [] {
    ListKind kind;
    kind.name = "Satellites";
    kind.word = "satl";
    kind.number = 4;
    kind.handles = &tavro::SatlKind::handles();
    kind.make = make_manager<AnySatelliteList>;
    kind.storage = "fs_satl_";
    kind.count_call = "get_num_recs";

    kind.tag = "[SATELITE] NativeVltTvSatelliteList_Cpp"; // deliberate: misspelled
    kind.class_name = "[NativeVltTvSatelliteList]";
    kind.list_id = kind.named_list = "satId";
    kind.copy_source = "srcSatId";
    kind.copy_destination = "destSatId";
    kind.handle = "satHandle";
    kind.handle_operation = "SatHandle";
    kind.named_record = "satRecId";
    kind.removed_record = "nwlRecId"; // deliberate: the network list's word

    kind.record_bytes = 412;
    kind.record_id_at = 0;
    kind.name_at = 282;

    kind.get_lines = ListKind::GetLines::kIdentifier;
    kind.logs_count = true;
    kind.cuts_index = false;
    kind.open_list_takes_empty_path = true;
    return kind;
}();

inline constexpr const ListKind* kEveryKind[] = {&kServices, &kTransportStreams, &kNetworks, &kSatellites};

inline void PrintTo(const ListKind* kind, std::ostream* out) { *out << kind->name; }

} // namespace tavro::test
