#include "layouts/keys.h"

#include "jni/records/channel_rows.h"
#include "jni/records/network_record.h"
#include "jni/records/network_rows.h"
#include "jni/records/satellite_record.h"
#include "jni/records/satellite_rows.h"
#include "jni/records/transport_stream_rows.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <stdexcept>

namespace tavro::layouts {
namespace {

constexpr char kInt[] = "I";
constexpr char kString[] = "Ljava/lang/String;";

// What a row says, without the functions that it names: this program has none of the library's code.
struct PutRow {
    const char* key = nullptr;
    const char* field = nullptr;
    const char* kind = nullptr;
    const char* descriptor = kInt;
    Place to = {};
    Place to_record = {};
    std::uint32_t mask = 0;
    const CodeTable* codes = nullptr;
    std::array<Variant, 3> variants = {};
    bool by_view = false;
};

constexpr PutRow put_row(const ToRecordRow& row) {
    PutRow made = {row.key, row.field, "rule", kInt, row.to, row.to_record, row.mask, row.codes, {}, false};
    if (row.to_record.width != 0) {
        made.kind = "record id";
        made.descriptor = kString;
    } else if (row.mask != 0) {
        made.kind = "flag";
    } else if (row.put == put_integer) {
        made.kind = "number";
    } else if (row.put == put_code) {
        made.kind = "code";
    } else if (row.put == put_cut_text || row.put == put_short_text || row.put == satellite_rows::put_name) {
        made.kind = "text";
        made.descriptor = kString;
    } else if (row.put == channel_rows::put_region_codes) {
        made.descriptor = "[I";
    } else if (row.put == transport_stream_rows::put_alternate_frequencies) {
        made.descriptor =
            "[Lcom/velotra/tv/tavro/services/channellist/VltTvTransportStreamInfoBase$AlternateFrequencyInfoBase;";
    }
    if (row.variants != nullptr) {
        made.by_view = true;
        for (std::size_t i = 0; i < made.variants.size(); ++i) {
            made.variants[i] = row.variants[i];
        }
    }
    return made;
}

struct GetRow {
    const char* key = nullptr;
    const char* setter = nullptr;
    Place from = {};
    std::uint32_t mask = 0;
};

constexpr GetRow get_row(const ToJavaRow& row) { return {row.key, row.setter, row.from, row.mask}; }

// At compile time, so that nothing of a row stays in this program but what is copied here.
template <std::size_t N>
constexpr std::array<PutRow, N> copied(const ToRecordRow (&rows)[N]) {
    std::array<PutRow, N> copies = {};
    for (std::size_t i = 0; i < N; ++i) {
        copies[i] = put_row(rows[i]);
    }
    return copies;
}
template <std::size_t N>
constexpr std::array<GetRow, N> copied(const ToJavaRow (&rows)[N]) {
    std::array<GetRow, N> copies = {};
    for (std::size_t i = 0; i < N; ++i) {
        copies[i] = get_row(rows[i]);
    }
    return copies;
}

// A table of rows: where its structure begins in the record, and the view that has it; -1 for every record.
template <class Row>
struct Rows {
    const Row* first;
    const Row* last;
    std::size_t base;
    int view = -1;
};

template <const auto& Table>
auto rows(std::size_t base, int view = -1) {
    static constexpr auto copies = copied(Table);
    return Rows<typename decltype(copies)::value_type>{copies.data(), copies.data() + copies.size(), base, view};
}

// The keys that the natives read without a row: the record to update, and the channel numbers.
constexpr PutRow kServiceNatives[] = {
    {"SvlIdSvlRecId", "svlIdSvlRecId", "record id", kString, {}, TAVRO_PLACE(_SVL_REC_T, ui2_svl_rec_id)},
    {"MajorChannelNumber", "majorChannelNumber", "rule", kInt, TAVRO_PLACE(_SVL_REC_T, t_header.ui4_channel_id)},
    {"MinorChannelNumber", "minorChannelNumber", "rule", kInt, TAVRO_PLACE(_SVL_REC_T, t_header.ui4_channel_id)},
};
constexpr PutRow kType5Natives[] = {
    {"SdtServiceType", "sdtServiceType", "number", kInt,
     TAVRO_PLACE(_SVL_REC_T, u_specific.t_type5.ui1_sdt_service_type)},
};
constexpr PutRow kStreamNatives[] = {
    {"TslIdTslRecId", "tslIdTslRecId", "record id", kString, {}, TAVRO_PLACE(_TSL_REC_T, ui2_tsl_rec_id)},
};
constexpr PutRow kNetworkNatives[] = {
    {kNetworkIdKey, kNetworkIdKey, "record id", kString, {}, TAVRO_PLACE(_NWL_REC_T, ui2_nwl_rec_id)},
};
constexpr PutRow kSatelliteNatives[] = {
    {kSatelliteIdKey, kSatelliteIdKey, "record id", kString, {}, TAVRO_PLACE(_SATL_REC_T, ui2_satl_rec_id)},
};

std::vector<Rows<PutRow>> put_rows_of(const std::string& kind) {
    if (kind == "service") {
        constexpr std::size_t kHeader = offsetof(_SVL_REC_T, t_header);
        constexpr std::size_t kSpecific = offsetof(_SVL_REC_T, u_specific);
        return {{std::begin(kServiceNatives), std::end(kServiceNatives), 0},
                rows<channel_rows::kHeaderRows>(kHeader),
                rows<channel_rows::kMoreHeaderRows>(kHeader),
                rows<channel_rows::kChannelBlockAgain>(kHeader),
                rows<channel_rows::kDvbFirstRows>(kSpecific, kBroadcastDvb),
                rows<channel_rows::kCommonRows>(kSpecific, kBroadcastDvb),
                rows<channel_rows::kDvbRows>(kSpecific, kBroadcastDvb),
                {std::begin(kType5Natives), std::end(kType5Natives), 0, kBroadcastType5},
                rows<channel_rows::kDtmbFirstRows>(kSpecific, kBroadcastDtmb),
                rows<channel_rows::kCommonRows>(kSpecific, kBroadcastDtmb),
                rows<channel_rows::kDtmbRows>(kSpecific, kBroadcastDtmb)};
    }
    if (kind == "transport stream") {
        return {{std::begin(kStreamNatives), std::end(kStreamNatives), 0},
                rows<transport_stream_rows::kFirstRows>(0),
                rows<transport_stream_rows::kSubRows>(0),
                rows<transport_stream_rows::kSub2Rows>(0),
                rows<transport_stream_rows::kSub3Rows>(0),
                rows<transport_stream_rows::kSub4Rows>(0)};
    }
    if (kind == "network") {
        return {{std::begin(kNetworkNatives), std::end(kNetworkNatives), 0}, rows<network_rows::kToRecord>(0)};
    }
    constexpr std::size_t kDiseqc = offsetof(_SATL_REC_T, t_diseqc_info);
    return {{std::begin(kSatelliteNatives), std::end(kSatelliteNatives), 0},
            rows<satellite_rows::kMainToRecord>(0),
            rows<satellite_rows::kDiseqcToRecord>(kDiseqc),
            rows<satellite_rows::kPolarizationToRecord>(kDiseqc),
            rows<satellite_rows::kLnbToRecord>(0)};
}

std::vector<Rows<GetRow>> get_rows_of(const std::string& kind) {
    if (kind == "network") {
        return {rows<network_rows::kToJava>(0)};
    }
    if (kind != "satellite") {
        return {};
    }
    constexpr std::size_t kDiseqc = offsetof(_SATL_REC_T, t_diseqc_info);
    return {rows<satellite_rows::kMainToJava>(0), rows<satellite_rows::kSubMainToJava>(0),
            rows<satellite_rows::kSub2MainToJava>(0), rows<satellite_rows::kDiseqcToJava>(kDiseqc),
            rows<satellite_rows::kSubDiseqcToJava>(kDiseqc)};
}

// A key and a field of the record.
struct KeyField {
    const char* key;
    const char* path;
    const CodeTable* codes = nullptr;
};

// Rows that put the same bytes for every medium, where media have different fields in that place: the field meant.
constexpr KeyField kMeant[] = {
    {"Bandwidth", "u_tuner.t_ter.e_bandwidth"},
    {"TransmissionMode", "u_tuner.t_ter.e_trans_mode"},
    {"TunerPolarizaTion", "u_tuner.t_sat.e_pol"},
};

// Rows with a rule of their own: the fields that they put besides the one that they name, and codes that are in the
// rule.
constexpr KeyField kByRule[] = {
    {"GuardInterval", "u_tuner.t_ter.e_guard_interval_t2", &kGuardIntervalT2Codes},
    {"Modulation", "u_tuner.t_sat.e_mod_copy"},
    {"AlternateFrequencyInfoList", "at_alt_freq[0].e_bandwidth", &kBandwidthCodes},
    {"AlternateFrequencyInfoList", "at_alt_freq[1].e_bandwidth", &kBandwidthCodes},
    {"AlternateFrequencyInfoList", "at_alt_freq[2].e_bandwidth", &kBandwidthCodes},
    {"AlternateFrequencyInfoList", "at_alt_freq[3].e_bandwidth", &kBandwidthCodes},
    {"AlternateFrequencyInfoList", "at_alt_freq[4].e_bandwidth", &kBandwidthCodes},
    {"AntennaType", "t_diseqc_info.e_diseqc_type"},
    {"AntennaType", "t_diseqc_info.e_diseqc_type_ex"},
    {"AntennaType", "t_diseqc_info.e_diseqc_type_ex2"},
    {"DiseqcPosition", "t_diseqc_info.ui1_tone_burst"},
};

[[noreturn]] void fail(const Record& record, const std::string& key, const std::string& what) {
    throw std::runtime_error(record.kind + " key " + key + ": " + what);
}

const RecordField& field_at(const Record& record, const std::string& key, const std::string& path) {
    for (const RecordField& field : record.fields) {
        if (field.path == path) {
            return field;
        }
    }
    fail(record, key, "there is no field " + path);
}

const CodeNames* names_of(const Record& record, const std::string& key, const CodeTable* codes) {
    if (codes == nullptr) {
        return nullptr;
    }
    for (const CodeNames& names : all_code_names()) {
        if (names.table == codes) {
            return &names;
        }
    }
    fail(record, key, "its code table is not in all_code_names()");
}

std::string bytes_at(std::size_t offset, unsigned width) {
    return (width == 1 ? "byte" : std::to_string(width) + " bytes") + (" at " + std::to_string(offset));
}

// The fields that take up a place exactly: one, or, for a text with its terminator, several side by side. `view` -1 is
// any.
std::vector<const RecordField*> fields_at(const Record& record, const std::string& key, std::size_t base, Place place,
                                          int view) {
    const std::size_t begin = base + place.offset;
    const std::size_t end = begin + place.width;
    std::vector<const RecordField*> whole;
    std::vector<const RecordField*> parts;
    for (const RecordField& field : record.fields) {
        if (field.reserved() || field.offset < begin || field.end() > end ||
            (view >= 0 && !field.in({"", "", static_cast<unsigned>(view)}))) {
            continue;
        }
        (field.offset == begin && field.width == place.width ? whole : parts).push_back(&field);
    }
    if (whole.empty()) {
        std::size_t covered = 0;
        for (const RecordField* part : parts) {
            covered += part->width;
        }
        if (covered != place.width) {
            fail(record, key,
                 "no field takes up the " + bytes_at(begin, place.width) +
                     "; correct the row or the table of the structure");
        }
        return parts;
    }
    if (whole.size() > 1) {
        for (const KeyField& meant : kMeant) {
            for (const RecordField* field : whole) {
                if (key == meant.key && field->path == meant.path) {
                    return {field};
                }
            }
        }
        fail(record, key,
             "the " + bytes_at(begin, place.width) + " can be " + whole[0]->path + " or " + whole[1]->path +
                 "; name the one meant in kMeant");
    }
    return whole;
}

// Adds a field to those that a key's value goes to. Views that share a field have a row each for it.
void add_target(const Record& record, Key& key, const RecordField& field, const CodeTable* codes) {
    const CodeNames* names = names_of(record, key.name, codes);
    for (Target& target : key.targets) {
        if (target.field == &field) {
            target.codes = target.codes == nullptr ? names : target.codes;
            return;
        }
    }
    key.targets.push_back({&field, names});
}

void add_targets(const Record& record, Key& key, const PutRow& row, std::size_t base, int view) {
    const auto add = [&](Place place, int in_view, const CodeTable* codes) {
        if (place.width != 0) {
            for (const RecordField* field : fields_at(record, key.name, base, place, in_view)) {
                add_target(record, key, *field, codes);
            }
        }
    };
    if (row.by_view) {
        for (std::size_t i = 0; i < row.variants.size(); ++i) {
            const Variant& variant = row.variants[i];
            add(variant.to, static_cast<int>(record.views.at(i).value),
                variant.codes != nullptr ? variant.codes : row.codes);
        }
    } else {
        add(row.to, view, row.codes);
    }
    add(row.to_record, view, nullptr);
    for (const KeyField& more : kByRule) {
        if (key.name == more.key) {
            add_target(record, key, field_at(record, key.name, more.path), more.codes);
        }
    }
}

Key& key_named(const Record& record, std::vector<Key>& keys, const char* name) {
    for (Key& key : keys) {
        if (key.name == name) {
            return key;
        }
    }
    fail(record, name, "a row passes it to Java and none takes it");
}

void join(const Record& record, std::vector<Key>& keys, const GetRow& row, std::size_t base) {
    Key& key = key_named(record, keys, row.key);
    const std::vector<const RecordField*> fields = fields_at(record, row.key, base, row.from, -1);
    if (fields[0] != key.targets[0].field || row.mask != key.mask) {
        fail(record, row.key, "it is taken from " + fields[0]->path + " and put into " + key.targets[0].field->path);
    }
    if (row.setter != "set" + key.name) {
        fail(record, row.key, std::string("its setter is ") + row.setter);
    }
    key.readable = true;
}

} // namespace

const std::vector<CodeNames>& all_code_names() {
#define TAVRO_CODES(NAME, TABLE, NAMED)                                                                                \
    { NAME, &(TABLE), std::begin(NAMED), std::end(NAMED) }
    static const std::vector<CodeNames> all = {
        TAVRO_CODES("bandwidth", kBandwidthCodes, kBandwidths),
        TAVRO_CODES("inner FEC", kFecInnerCodes, kFecInners),
        TAVRO_CODES("outer FEC", kFecOuterCodes, kFecOuters),
        TAVRO_CODES("transmission mode", kTransmissionModeCodes, kTransmissionModes),
        TAVRO_CODES("hierarchy", kHierarchyCodes, kHierarchies),
        TAVRO_CODES("roll-off", kRollOffCodes, kRollOffs),
        TAVRO_CODES("terrestrial standard", kTerrestrialStandardCodes, kTerrestrialStandards),
        TAVRO_CODES("cable standard", kCableStandardCodes, kCableStandards),
        TAVRO_CODES("satellite standard", kSatelliteStandardCodes, kSatelliteStandards),
        TAVRO_CODES("guard interval, DVB-T", kGuardIntervalTCodes, kGuardIntervalsT),
        TAVRO_CODES("guard interval, DVB-T2", kGuardIntervalT2Codes, kGuardIntervalsT2),
        TAVRO_CODES("terrestrial code rate", kTerrestrialCodeRateCodes, kTerrestrialCodeRates),
        TAVRO_CODES("satellite code rate", kSatelliteCodeRateCodes, kSatelliteCodeRates),
    };
#undef TAVRO_CODES
    return all;
}

std::vector<Key> keys_of(const Record& record) {
    std::vector<Key> keys;
    for (const Rows<PutRow>& table : put_rows_of(record.kind)) {
        for (const PutRow* row = table.first; row != table.last; ++row) {
            auto key = std::find_if(keys.begin(), keys.end(), [&](const Key& other) { return other.name == row->key; });
            if (key == keys.end()) {
                keys.push_back({row->key, row->field, row->descriptor, row->kind, row->mask, false, {}});
                key = keys.end() - 1;
            }
            add_targets(record, *key, *row, table.base, table.view);
        }
    }
    for (const Rows<GetRow>& table : get_rows_of(record.kind)) {
        for (const GetRow* row = table.first; row != table.last; ++row) {
            join(record, keys, *row, table.base);
        }
    }
    return keys;
}

} // namespace tavro::layouts
