// The conversion of network and satellite records with any bytes into Java objects: every setter gets the value of its
// field, whether all values are read or only that of one key. Values that are put back into the record leave it as it
// is, except where the library normalizes them.
#include "fuzz.h"
#include "fuzz_jni.h"
#include "jni/records/network_record.h"
#include "jni/records/network_rows.h"
#include "jni/records/satellite_record.h"
#include "jni/records/satellite_rows.h"

#include <cstring>
#include <string>
#include <vector>

using namespace tavro;
using namespace tavro::fuzz;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

using Lines = std::vector<std::string>;
using ToJava = std::pair<const ToJavaRow*, std::size_t>; // a row, and where its structure begins in the record
using ToRecord = std::pair<const ToRecordRow*, std::size_t>;

constexpr std::size_t kDiseqc = offsetof(_SATL_REC_T, t_diseqc_info);

template <class Rows, class Row>
void append(const Rows& rows, std::size_t base, std::vector<std::pair<const Row*, std::size_t>>& all) {
    for (const Row& row : rows) {
        all.emplace_back(&row, base);
    }
}

std::uint32_t number_at(const std::byte* bytes, std::size_t width) {
    std::uint32_t number = 0;
    for (std::size_t i = width; i > 0; --i) {
        number = number << 8U | std::to_integer<std::uint32_t>(bytes[i - 1]);
    }
    return number;
}

// The values that special rules derive from a satellite record. Empty if the setter is not called.
std::optional<jint> antenna_type_of(const _SATL_REC_T& satellite) {
    const _TUNER_DISEQC_INFO_T& diseqc = satellite.t_diseqc_info;
    if ((satellite.ui4_mask & 0x8000U) != 0) {
        return 1;
    }
    if ((satellite.ui4_mask & 0x10000U) != 0) {
        return 2;
    }
    if ((satellite.ui4_mask & 0x4000U) == 0) {
        return std::nullopt;
    }
    const std::uint32_t modes[] = {diseqc.e_diseqc_type, diseqc.e_diseqc_type_ex, diseqc.e_diseqc_type_ex2};
    const std::uint32_t of_type[][3] = {{2, 0, 0}, {0, 4, 0}, {0, 0, 5}};
    for (int type = 0; type < 3; ++type) {
        if (std::memcmp(modes, of_type[type], sizeof(modes)) == 0) {
            return type + 3;
        }
    }
    return 0;
}

jint position_of(const _TUNER_DISEQC_INFO_T& diseqc) {
    const bool burst = diseqc.e_diseqc_type == 0 && diseqc.ui1_tone_burst < 2;
    return burst ? 5 + diseqc.ui1_tone_burst : diseqc.e_diseqc_type == 2 ? diseqc.ui1_port : 255;
}

// The setter call of a row; empty if it is not called. Puts the value into `object`, under the field of `back`.
std::string setter_call(const ToJava& row, const std::byte* record, FakeJni& jni, FakeObject* object,
                        const ToRecordRow* back) {
    const ToJavaRow& to_java = *row.first;
    const std::byte* const field = record + row.second + to_java.from.offset;
    const auto& satellite = *reinterpret_cast<const _SATL_REC_T*>(record);
    if (to_java.value == nullptr) {
        const auto* const chars = reinterpret_cast<const char*>(field);
        const std::string text(chars, strnlen(chars, to_java.from.width));
        if (object != nullptr) {
            object->object_fields[back->field] = &jni.string(text);
        }
        return std::string("carrier.") + to_java.setter + "(\"" + text + "\")";
    }
    std::optional<jint> value = static_cast<jint>(number_at(field, to_java.from.width));
    if (to_java.value == flag_value) {
        value = (*value & static_cast<jint>(to_java.mask)) != 0 ? 1 : 0;
    } else if (to_java.value == satellite_rows::orbit_value) {
        value = static_cast<std::int16_t>(*value);
    } else if (to_java.value == satellite_rows::antenna_value) {
        value = antenna_type_of(satellite);
    } else if (to_java.value == satellite_rows::position_value) {
        value = position_of(satellite.t_diseqc_info);
    }
    if (!value) {
        return "";
    }
    if (object != nullptr) {
        object->int_fields[back->field] = *value;
    }
    return std::string("carrier.") + to_java.setter + "(" + std::to_string(*value) + ")";
}

// One kind: its rows in both directions and the functions under test.
struct Kind {
    std::vector<ToJava> to_java;
    std::vector<ToRecord> to_record;
    std::size_t bytes;
    void (*pass_all)(Jni& jni, jobject carrier, const std::byte* record);
    void (*pass_key)(Jni& jni, jobject carrier, const char* key, const std::byte* record);
    void (*put)(Jni& jni, jobject object, std::byte* record);
    // What putting the record's own values back changes.
    void (*normalize)(std::byte* record);

    const ToRecordRow* row_back(const char* key) const {
        for (const ToRecord& row : to_record) {
            if (std::strcmp(row.first->key, key) == 0) {
                return row.first;
            }
        }
        fail("each key is put and passed");
    }
};

Kind network_kind() {
    Kind kind = {};
    append(network_rows::kToJava, 0, kind.to_java);
    append(network_rows::kToRecord, 0, kind.to_record);
    kind.bytes = sizeof(_NWL_REC_T);
    kind.pass_all = [](Jni& jni, jobject carrier, const std::byte* record) {
        _get_networklist_data(jni, jni.class_of(carrier), carrier, *reinterpret_cast<const _NWL_REC_T*>(record));
    };
    kind.pass_key = [](Jni& jni, jobject carrier, const char* key, const std::byte* record) {
        _get_nwl_info(jni, jni.class_of(carrier), carrier, key, *reinterpret_cast<const _NWL_REC_T*>(record));
    };
    kind.put = [](Jni& jni, jobject object, std::byte* record) {
        RecordObject network(jni, jni.class_of(object), object, kNetworkContainsKey);
        network.look_up_contains_key();
        set_network_info(network, *reinterpret_cast<_NWL_REC_T*>(record));
    };
    kind.normalize = [](std::byte*) {};
    return kind;
}

Kind satellite_kind() {
    Kind kind = {};
    append(satellite_rows::kMainToJava, 0, kind.to_java);
    append(satellite_rows::kSubMainToJava, 0, kind.to_java);
    append(satellite_rows::kSub2MainToJava, 0, kind.to_java);
    append(satellite_rows::kDiseqcToJava, kDiseqc, kind.to_java);
    append(satellite_rows::kSubDiseqcToJava, kDiseqc, kind.to_java);
    append(satellite_rows::kMainToRecord, 0, kind.to_record);
    append(satellite_rows::kDiseqcToRecord, kDiseqc, kind.to_record);
    append(satellite_rows::kPolarizationToRecord, kDiseqc, kind.to_record);
    append(satellite_rows::kLnbToRecord, 0, kind.to_record);
    kind.bytes = sizeof(_SATL_REC_T);
    kind.pass_all = [](Jni& jni, jobject carrier, const std::byte* record) {
        const auto& satellite = *reinterpret_cast<const _SATL_REC_T*>(record);
        get_satellite_data(jni, jni.class_of(carrier), carrier, satellite);
        get_all_diseqc_data(jni, jni.class_of(carrier), carrier, satellite.t_diseqc_info);
    };
    kind.pass_key = [](Jni& jni, jobject carrier, const char* key, const std::byte* record) {
        const auto& satellite = *reinterpret_cast<const _SATL_REC_T*>(record);
        get_main_data(jni, jni.class_of(carrier), carrier, key, satellite);
        get_diseqc_data(jni, jni.class_of(carrier), carrier, key, satellite.t_diseqc_info);
    };
    kind.put = [](Jni& jni, jobject object, std::byte* record) {
        auto& satellite = *reinterpret_cast<_SATL_REC_T*>(record);
        RecordObject values(jni, jni.class_of(object), object, kSatelliteContainsKey);
        set_main_data(values, satellite);
        set_diseqc_data(values, satellite.t_diseqc_info);
        set_sub_diseqc_data(values, satellite.t_diseqc_info);
        set_lnb_data(values, satellite);
    };
    // The antenna type leaves one LNB flag. The name is filled up with NUL bytes, and terminated. A switch position
    // that is not 5 or 6 clears the tone burst, and the port too unless it is 0 to 3.
    kind.normalize = [](std::byte* record) {
        auto& satellite = *reinterpret_cast<_SATL_REC_T*>(record);
        const jint position = position_of(satellite.t_diseqc_info);
        const std::optional<jint> antenna = antenna_type_of(satellite);
        const std::uint32_t kind_bits[] = {0x4000, 0x8000, 0x10000};
        if (antenna) {
            satellite.ui4_mask = (satellite.ui4_mask & ~0x1C000U) | kind_bits[*antenna < 3 ? *antenna : 0];
        }
        const std::size_t length = strnlen(satellite.ac_sat_name, sizeof(satellite.ac_sat_name));
        std::memset(satellite.ac_sat_name + length, 0, sizeof(satellite.ac_sat_name) - length);
        satellite.c_sat_name_end = '\0';
        if (position != 5 && position != 6) {
            satellite.t_diseqc_info.ui1_tone_burst = 0xFF;
            satellite.t_diseqc_info.ui1_port = position < 4 ? static_cast<std::uint8_t>(position) : 0xFF;
        }
    };
    return kind;
}

// The setter calls in the journal.
Lines setters(const FakeJni& jni) {
    Lines calls;
    for (const std::string& line : jni.journal()) {
        if (line.rfind("carrier.set", 0) == 0) {
            calls.push_back(line);
        }
    }
    return calls;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Kind kKinds[] = {network_kind(), satellite_kind()};
    Input input(data, size);
    const Kind& kind = kKinds[input.choice(2)];
    const bool logs = input.flag();
    const std::uint32_t failing = input.byte();
    const std::string text = input.text(20);
    const std::string key = input.flag() ? text : kind.to_java[input.choice(kind.to_java.size())].first->key;
    std::vector<std::byte> record(kind.bytes);
    input.fill(record.data(), record.size());
    Platform platform(logs);
    FakeJni& jni = platform.jni;
    Jni calls(jni.env());
    FakeObject& carrier = jni.object("carrier");
    FakeObject& object = jni.object("object");

    Lines all;
    Lines one;
    for (const ToJava& row : kind.to_java) {
        const ToRecordRow* const back = kind.row_back(row.first->key);
        const std::string call = setter_call(row, record.data(), jni, &object, back);
        if (!call.empty()) {
            object.keys.insert(back->key);
            all.push_back(call);
            if (key == row.first->key) {
                one.push_back(call);
            }
        }
    }
    kind.pass_all(calls, FakeJni::ref(carrier), record.data());
    require(setters(jni) == all, "every setter gets the value of its field");
    jni.clear_journal();
    kind.pass_key(calls, FakeJni::ref(carrier), key.c_str(), record.data());
    require(setters(jni) == one, "the setter of a key, and no other, gets the value of its field");

    std::vector<std::byte> expected = record;
    kind.normalize(expected.data());
    std::vector<std::byte> put_back = record;
    kind.put(calls, FakeJni::ref(object), put_back.data());
    require(put_back == expected, "values that are put back leave the record as it is");

    if (failing >= 128) {
        jni.fail_nth(static_cast<int>(failing) - 127);
        kind.pass_all(calls, FakeJni::ref(carrier), record.data());
    }
    platform.require_allowed_calls();
    return 0;
}
