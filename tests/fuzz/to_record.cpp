// The conversion of Java objects into records of all kinds. A model follows the tables of rows. Values with a special
// rule may write any bytes into their own fields; every other byte must equal the model's.
#include "fuzz.h"
#include "fuzz_jni.h"
#include "jni/env/record_id.h"
#include "jni/records/channel_record.h"
#include "jni/records/channel_rows.h"
#include "jni/records/network_record.h"
#include "jni/records/network_rows.h"
#include "jni/records/satellite_record.h"
#include "jni/records/satellite_rows.h"
#include "jni/records/transport_stream_record.h"
#include "jni/records/transport_stream_rows.h"

#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

using namespace tavro;
using namespace tavro::fuzz;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

// A table of rows, and where its structure begins in the record.
struct Table {
    template <std::size_t N>
    Table(const ToRecordRow (&rows)[N], std::size_t offset) : first(rows), last(rows + N), base(offset) {}

    const ToRecordRow* first;
    const ToRecordRow* last;
    std::size_t base;
};
using Tables = std::vector<Table>;

// One conversion: its tables in their order, and the function that makes it.
struct Conversion {
    Tables tables;
    std::size_t bytes;
    void (*convert)(Jni& jni, jobject object, std::byte* record);
};

template <class Record>
Record& as(std::byte* bytes) {
    return *reinterpret_cast<Record*>(bytes);
}

RecordObject& looked_up(RecordObject& object) {
    object.look_up_contains_key();
    return object;
}

constexpr std::size_t kHeader = offsetof(_SVL_REC_T, t_header);
constexpr std::size_t kSpecific = offsetof(_SVL_REC_T, u_specific);
constexpr std::size_t kDiseqc = offsetof(_SATL_REC_T, t_diseqc_info);

const Conversion kConversions[] = {
    {{{channel_rows::kHeaderRows, kHeader},
      {channel_rows::kMoreHeaderRows, kHeader},
      {channel_rows::kChannelBlockAgain, kHeader}},
     sizeof(_SVL_REC_T),
     [](Jni& jni, jobject object, std::byte* record) {
         RecordObject channel(jni, jni.class_of(object), object, kChannelContainsKey);
         _set_header_info(channel, as<_SVL_REC_T>(record).t_header);
     }},
    {{{channel_rows::kDvbFirstRows, kSpecific},
      {channel_rows::kCommonRows, kSpecific},
      {channel_rows::kDvbRows, kSpecific}},
     sizeof(_SVL_REC_T),
     [](Jni& jni, jobject object, std::byte* record) {
         RecordObject channel(jni, jni.class_of(object), object, kChannelContainsKey);
         _set_dvb_info(channel, as<_SVL_REC_T>(record).u_specific.t_dvb);
     }},
    {{{channel_rows::kDtmbFirstRows, kSpecific},
      {channel_rows::kCommonRows, kSpecific},
      {channel_rows::kDtmbRows, kSpecific}},
     sizeof(_SVL_REC_T),
     [](Jni& jni, jobject object, std::byte* record) {
         RecordObject channel(jni, jni.class_of(object), object, kChannelContainsKey);
         _set_dtmb_info(channel, as<_SVL_REC_T>(record).u_specific.t_dtmb);
     }},
    {{{transport_stream_rows::kFirstRows, 0},
      {transport_stream_rows::kSubRows, 0},
      {transport_stream_rows::kSub2Rows, 0},
      {transport_stream_rows::kSub3Rows, 0},
      {transport_stream_rows::kSub4Rows, 0}},
     sizeof(_TSL_REC_T),
     [](Jni& jni, jobject object, std::byte* record) { _set_ts_info(jni, object, as<_TSL_REC_T>(record)); }},
    {{{network_rows::kToRecord, 0}},
     sizeof(_NWL_REC_T),
     [](Jni& jni, jobject object, std::byte* record) {
         RecordObject network(jni, jni.class_of(object), object, kNetworkContainsKey);
         set_network_info(looked_up(network), as<_NWL_REC_T>(record));
     }},
    {{{satellite_rows::kMainToRecord, 0},
      {satellite_rows::kDiseqcToRecord, kDiseqc},
      {satellite_rows::kPolarizationToRecord, kDiseqc},
      {satellite_rows::kLnbToRecord, 0}},
     sizeof(_SATL_REC_T),
     [](Jni& jni, jobject object, std::byte* record) {
         RecordObject satellite(jni, jni.class_of(object), object, kSatelliteContainsKey);
         auto& stored = as<_SATL_REC_T>(record);
         set_main_data(satellite, stored);
         set_diseqc_data(satellite, stored.t_diseqc_info);
         set_sub_diseqc_data(satellite, stored.t_diseqc_info);
         set_lnb_data(satellite, stored);
     }},
};

bool takes_text(const ToRecordRow& row) {
    return row.put == put_cut_text || row.put == put_short_text || row.put == put_record_id ||
           row.put == satellite_rows::put_name || row.put == channel_rows::put_satellite_record_id;
}

// Gives the object the value of a row, for every type of field. Sometimes null, where the type allows it.
void give_value(Input& input, FakeJni& jni, FakeObject& object, const ToRecordRow& row) {
    FakeObject*& value = object.object_fields[row.field];
    if (takes_text(row)) {
        value = input.byte() == 0 ? nullptr : &jni.string(input.text(100));
    } else if (row.put == channel_rows::put_region_codes) {
        std::vector<jint> codes(input.choice(5));
        for (jint& code : codes) {
            code = input.number();
        }
        value = input.byte() == 0 ? nullptr : &jni.int_array(codes);
    } else if (row.put == transport_stream_rows::put_alternate_frequencies) {
        FakeObject& array = jni.object("array");
        array.elements.resize(input.choice(7));
        for (FakeObject*& element : array.elements) {
            element = input.byte() == 0 ? nullptr : &jni.object("entry");
            if (element != nullptr) {
                element->int_fields = {{"alternateFreq", input.number()}, {"alternateBandwidth", input.number()}};
            }
        }
        value = &array;
    } else {
        // Small numbers are codes, positions and flags; others are cut to their fields.
        object.int_fields[row.field] = input.flag() ? input.byte() % 32 : input.number();
    }
}

// A record whose bytes are known or may be anything.
class Model {
public:
    explicit Model(const std::vector<std::byte>& record) : bytes_(record.begin(), record.end()) {}

    void put(std::size_t at, std::size_t width, std::uint32_t value) {
        for (std::size_t i = 0; i < width; ++i, value >>= 8U) {
            bytes_[at + i] = static_cast<std::byte>(value & 0xFFU);
        }
    }
    void put(std::size_t at, const std::string& text) {
        for (const char character : text) {
            bytes_[at++] = static_cast<std::byte>(character);
        }
    }
    void put_bits(std::size_t at, std::uint32_t mask, bool on) {
        for (std::size_t i = 0; i < sizeof(mask); ++i) {
            const auto bits = static_cast<std::byte>((mask >> (8 * i)) & 0xFFU);
            std::optional<std::byte>& byte = bytes_[at + i];
            if (byte) {
                byte = on ? *byte | bits : *byte & ~bits;
            }
        }
    }
    void forget(std::size_t at, std::size_t width) { std::fill_n(bytes_.begin() + at, width, std::nullopt); }

    void compare(const std::vector<std::byte>& record) const {
        for (std::size_t i = 0; i < bytes_.size(); ++i) {
            if (bytes_[i] && *bytes_[i] != record[i]) {
                fail("byte " + std::to_string(i) + " is as the model says");
            }
        }
    }

private:
    std::vector<std::optional<std::byte>> bytes_;
};

// The ids of an identifier, which the target "identifier" compares with a reference parser.
struct Ids {
    explicit Ids(const std::string& text) {
        try {
            parsed = trimId(text, list_id, record_id);
        } catch (const std::exception&) {
            throws = true;
        }
    }

    int list_id = 0;
    int record_id = 0;
    bool parsed = false;
    bool throws = false;
};

void expect(Model& model, std::size_t base, const ToRecordRow& row, const FakeObject& object) {
    const std::size_t at = base + row.to.offset;
    const auto number = object.int_fields.find(row.field);
    const jint value = number == object.int_fields.end() ? 0 : number->second;
    const auto field = object.object_fields.find(row.field);
    const FakeObject* const reference = field == object.object_fields.end() ? nullptr : field->second;
    if (row.put == put_integer) {
        model.put(at, row.to.width, static_cast<std::uint32_t>(value));
    } else if (row.put == put_code) {
        model.put(at, row.to.width, (*row.codes)(value));
    } else if (row.put == put_flag_if_one) {
        model.put_bits(at, row.mask, value == 1);
    } else if (row.put == put_flag_if_positive) {
        model.put_bits(at, row.mask, value > 0);
    } else if (row.put == put_cut_text || row.put == satellite_rows::put_name) {
        if (reference != nullptr) {
            std::string text = reference->text.substr(0, row.to.width - 1U);
            text.resize(row.to.width, '\0');
            model.put(at, text);
        }
    } else if (row.put == put_short_text) {
        if (reference != nullptr && reference->text.size() < row.to.width) {
            model.put(at, reference->text + '\0');
        }
    } else if (row.to_record.width != 0) {
        const Ids ids(reference == nullptr ? "" : reference->text);
        if (ids.parsed) {
            model.put(at, row.to.width, static_cast<std::uint32_t>(ids.list_id));
            model.put(base + row.to_record.offset, row.to_record.width, static_cast<std::uint32_t>(ids.record_id));
        }
    } else if (row.variants != nullptr) {
        for (std::size_t medium = 0; medium < 3; ++medium) {
            model.forget(base + row.variants[medium].to.offset, row.variants[medium].to.width);
        }
    } else if (row.put == transport_stream_rows::put_guard_interval) {
        model.forget(at, row.to.width);
        model.forget(offsetof(_TSL_REC_T, u_tuner.t_ter.e_guard_interval_t2), sizeof(_TSL_TER_T::e_guard_interval_t2));
    } else if (row.put == satellite_rows::put_antenna_type) {
        model.forget(at, row.to.width);
        for (const std::size_t modes :
             {offsetof(_TUNER_DISEQC_INFO_T, e_diseqc_type), offsetof(_TUNER_DISEQC_INFO_T, e_diseqc_type_ex),
              offsetof(_TUNER_DISEQC_INFO_T, e_diseqc_type_ex2)}) {
            model.forget(kDiseqc + modes, sizeof(_TUNER_DISEQC_INFO_T::e_diseqc_type));
        }
    } else if (row.put == satellite_rows::put_diseqc_position) {
        model.forget(at, row.to.width);
        model.forget(base + offsetof(_TUNER_DISEQC_INFO_T, ui1_tone_burst), 1);
    } else {
        model.forget(at, row.to.width);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const Conversion& conversion = kConversions[input.choice(std::size(kConversions))];
    const bool logs = input.flag();
    const std::uint32_t failing = input.byte();
    Platform platform(logs);
    FakeJni& jni = platform.jni;
    FakeObject& object = jni.object("object");
    object.int_fields["broadcastMedium"] = input.choice(6);
    for (const Table& table : conversion.tables) {
        for (const ToRecordRow* row = table.first; row != table.last; ++row) {
            if (input.flag()) {
                object.keys.insert(row->key);
                give_value(input, jni, object, *row);
            }
        }
    }
    for (const auto& [name, value] : object.object_fields) {
        if (value != nullptr && Ids(value->text).throws) {
            value->text = "1,2"; // an exception would end the process
        }
    }
    std::vector<std::byte> record(conversion.bytes, static_cast<std::byte>(input.byte()));
    input.fill(record.data(), record.size());

    Model model(record);
    for (const Table& table : conversion.tables) {
        for (const ToRecordRow* row = table.first; row != table.last; ++row) {
            if (object.keys.count(row->key) != 0) {
                expect(model, table.base, *row, object);
            }
        }
    }
    if (failing >= 128) {
        jni.fail_nth(static_cast<int>(failing) - 127);
    }
    {
        Jni calls(jni.env());
        conversion.convert(calls, FakeJni::ref(object), record.data());
    }
    platform.require_allowed_calls();
    if (!jni.exception_pending()) {
        model.compare(record);
    }
    return 0;
}
