#include "jni/records/transport_stream_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/record_rows.h"
#include "jni/records/transport_stream_codes.h"

#include <cstring>

using tavro::code;
using tavro::flag;
using tavro::flag_if_positive;
using tavro::integer;
using tavro::LocalRef;
using tavro::Place;
using tavro::record_id;
using tavro::RecordObject;
using tavro::Row;
using tavro::short_text;
using tavro::special;
using tavro::Variant;

namespace {

_TSL_REC_T& record_of(std::byte* structure) { return *reinterpret_cast<_TSL_REC_T*>(structure); }
const _TSL_REC_T& record_of(const std::byte* structure) { return *reinterpret_cast<const _TSL_REC_T*>(structure); }

#define TS(MEMBER) TAVRO_PLACE(_TSL_REC_T, MEMBER)
#define TER(MEMBER) TS(u_tuner.t_ter.MEMBER)
#define CAB(MEMBER) TS(u_tuner.t_cab.MEMBER)
#define SAT(MEMBER) TS(u_tuner.t_sat.MEMBER)

constexpr Place kNowhere = {0, 0};

// Rows whose place depends on the record's medium have one variant a medium, from terrestrial (1) on.
constexpr std::uint8_t kFirstMedium = kMediumTerrestrial;
constexpr std::uint8_t kLastMedium = kMediumSatellite;

bool known(std::uint8_t medium) { return medium >= kFirstMedium && medium <= kLastMedium; }

// Stores a value where the record's medium has it; nothing for an unknown medium.
void put_by_medium(std::byte* structure, const Variant* variants, jint value) {
    const std::uint8_t medium = record_of(structure).e_bcst_medium;
    if (known(medium)) {
        tavro::put(structure, variants[medium - kFirstMedium], value);
    }
}

void store_by_medium(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        put_by_medium(structure, row.variants, *value);
    }
}

constexpr Row by_medium(const char* key, const char* field, const Variant (&variants)[3]) {
    Row row = special(key, field, store_by_medium);
    row.variants = variants;
    return row;
}

constexpr Variant kModeWord[] = {{TER(e_mode)}, {CAB(e_mode)}, {SAT(e_mode)}};
constexpr Variant kStandard[] = {{TER(e_mode), &kTerrestrialStandardCodes},
                                 {CAB(e_mode), &kCableStandardCodes},
                                 {SAT(e_mode), &kSatelliteStandardCodes}};
constexpr Variant kFecInner[] = {{TER(e_fec_inner)}, {CAB(e_fec_inner)}, {SAT(e_fec_inner)}};
constexpr Variant kFecOuter[] = {{TER(e_fec_outer), &kFecOuterCodes}, {CAB(e_fec_outer), &kFecOuterCodes}, {kNowhere}};
constexpr Variant kSymbolRate[] = {{kNowhere}, {CAB(ui4_sym_rate)}, {SAT(ui4_sym_rate)}};
constexpr Variant kCodeRate[] = {
    {TER(e_code_rate), &kTerrestrialCodeRateCodes}, {kNowhere}, {SAT(e_code_rate), &kSatelliteCodeRateCodes}};
constexpr Variant kSignalLevel[] = {{TER(ui1_sig_level)}, {CAB(ui1_sig_level)}, {SAT(ui1_sig_level)}};
constexpr Variant kSignalQuality[] = {{TER(ui4_sig_quality)}, {CAB(ui4_sig_quality)}, {SAT(ui4_sig_quality)}};

// The few keys with rules of their own.

void store_frequency(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        _set_freq_by_medium(record_of(structure), *value);
    }
}

void store_mode(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        set_mode(&record_of(structure), *value);
    }
}

void store_fec_inner(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        TUNER_FEC_INNER_T fec = 0;
        _get_fecInner_by_switch(*value, fec);
        put_by_medium(structure, kFecInner, static_cast<jint>(fec));
    }
}

// The modulation goes to the place that terrestrial and cable share whatever the medium, and for
// satellite to its own place as well, deliberately.
void store_modulation(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (!value) {
        return;
    }
    TUNER_MODULATION_T modulation = 0;
    _get_mod_by_switch(*value, modulation);
    _TSL_REC_T& record = record_of(structure);
    record.u_tuner.t_ter.e_mod = modulation;
    if (record.e_bcst_medium == kMediumSatellite) {
        record.u_tuner.t_sat.e_mod = modulation;
    }
}

// The medium is the Java object's own here, whether or not its key is set.
void store_standard(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> standard = object.int_field(row.field);
    const std::optional<jint> medium = object.int_field("broadcastMedium");
    if (!standard || !medium) {
        return;
    }
    if (*medium >= kFirstMedium && *medium <= kLastMedium) {
        tavro::put(structure, kStandard[*medium - kFirstMedium], *standard);
    }
    TAVRO_LOG_JNI("[%s][%d] BroadcastMedium=%d iStandard%d ", "_set_sub_ts_info", 2403, *medium, *standard);
}

// The terrestrial mode decides, whatever the medium.
void store_guard_interval(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (!value) {
        return;
    }
    _TSL_TER_T& terrestrial = record_of(structure).u_tuner.t_ter;
    if (terrestrial.e_mode == kModeT2) {
        terrestrial.e_guard_interval_t2 = kGuardIntervalT2Codes(*value);
    } else if (terrestrial.e_mode == kModeT) {
        terrestrial.e_guard_interval = kGuardIntervalTCodes(*value);
    }
}

void store_transmission_mode(const Row& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        TUNER_TRANSMISSION_MODE_T mode = 0;
        _get_transmission_mode_by_switch(*value, mode);
        tavro::put(structure, row.to, mode);
    }
}

constexpr char kAlternatesDescriptor[] = "[Lcom/velotra/tv/tavro/services/channellist/"
                                         "VltTvTransportStreamInfoBase$AlternateFrequencyInfoBase;";

// Up to five alternate frequencies; fewer zero the rest, more store nothing.
void store_alternate_frequencies(const Row& row, RecordObject& object, std::byte* structure) {
    _TSL_ALT_FREQ_T(&alternates)[5] = record_of(structure).at_alt_freq;
    tavro::Jni& jni = object.jni();
    const LocalRef field(jni, object.object_field(row.field, kAlternatesDescriptor).value_or(nullptr));
    if (field.get() == nullptr) {
        return;
    }
    auto* array = static_cast<jobjectArray>(field.get());
    const jsize length = jni.env()->GetArrayLength(array);
    if (length > static_cast<jsize>(std::size(alternates))) {
        return;
    }
    std::memset(alternates, 0, sizeof(alternates));
    for (jsize i = 0; i < length; ++i) {
        const LocalRef element(jni, jni.element(array, i));
        if (element.get() == nullptr) {
            continue; // leaves its entry zero
        }
        const LocalRef cls(jni, jni.class_of(element.get()));
        const jint frequency = jni.int_value(element.get(), jni.field(cls.get(), "alternateFreq", "I"));
        const jint bandwidth = jni.int_value(element.get(), jni.field(cls.get(), "alternateBandwidth", "I"));
        if (jni.failed()) {
            return;
        }
        _TSL_ALT_FREQ_T& entry = alternates[i];
        entry.ui4_freq = static_cast<std::uint32_t>(frequency);
        entry.e_bandwidth = kBandwidthCodes(bandwidth);
        TAVRO_LOG_JNI("iAlternateFreq = %d iAlternateBandwidth=%d \n", static_cast<int>(entry.ui4_freq),
                      static_cast<int>(entry.e_bandwidth));
    }
}

void trace_ts_name(const Row&, const std::byte* structure, jint) {
    TAVRO_LOG_JNI("ac_ts_name = %.*s\n", TAVRO_BOUNDED(record_of(structure).ac_ts_name));
}

// Rows without a variant a medium write their place whatever the medium, over what other media keep
// there.
constexpr Row kFirstRows[] = {
    integer("BroadcastType", "broadcastType", TS(e_bcst_type)),
    integer("BroadcastMedium", "broadcastMedium", TS(e_bcst_medium)),
    integer("NetworkId", "networkId", TS(ui2_nw_id)),
    integer("OriginalNetworkId", "originalNetworkId", TS(ui2_on_id)),
    integer("TransportStreamId", "transportStreamId", TS(ui2_ts_id)),
    record_id("TslNwlRecId", "tslNwlRecId", TS(ui1_nwl_id), TS(ui2_nwl_rec_id)),
    special("Frequency", "frequency", store_frequency),
    code("Bandwidth", "bandwidth", TER(e_bandwidth), kBandwidthCodes),
    special("BroadcastMode", "broadcastMode", store_mode),
    integer("PlpId", "plpId", TER(ui1_plp_id)),
    integer("PlpGroupId", "plpGroupId", TER(ui1_plp_group_id)),
    short_text("NetworkName", "networkName", TS(ac_nw_name)),
    flag_if_positive("BarkerChannel", "barkerChannel", TS(ui4_flags), 0x2),
};

constexpr Row kSubRows[] = {
    special("FecInner", "fecInner", store_fec_inner),
    special("Modulation", "modulation", store_modulation),
    special("Standard", "standard", store_standard),
    special("GuardInterval", "guardInterval", store_guard_interval),
    special("TransmissionMode", "transmissionMode", store_transmission_mode, TER(e_trans_mode)),
};

constexpr Row kSub2Rows[] = {
    code("Hierarchy", "hierarchy", TER(e_hierarchy), kHierarchyCodes),
    by_medium("FecOuter", "fecOuter", kFecOuter),
    by_medium("SymbolRate", "symbolRate", kSymbolRate),
    integer("PilotInsert", "pilotInsert", SAT(ui1_pilot_insert)),
    code("RollOff", "rollOff", SAT(e_roll_off), kRollOffCodes),
    by_medium("CodeRate", "codeRate", kCodeRate),
    flag("IsHomeTransponder", "isHomeTransponder", TS(ui4_flags_ex), 0x800),
};

constexpr Row kSub3Rows[] = {
    record_id("TslSatlRecId", "tslSatlRecId", TS(ui2_satl_id), TS(ui2_satl_rec_id)),
    short_text("AcTsName", "acTsName", TS(ac_ts_name), trace_ts_name),
    integer("TunerPolarizaTion", "tunerPolarizaTion", SAT(e_pol)),
    by_medium("SignalStrength", "signalStrength", kSignalLevel),
    by_medium("SignalQuality", "signalQuality", kSignalQuality),
};

constexpr Row kSub4Rows[] = {
    special("AlternateFrequencyInfoList", "alternateFrequencyInfoList", store_alternate_frequencies),
    integer("RcKeyId", "rcKeyId", TS(ui1_rc_key_id)),
};

} // namespace

void _get_fecInner_by_switch(int value, TUNER_FEC_INNER_T& code) {
    kFecInnerCodes.find(value, code);
    TAVRO_LOG_JNI("[%s][%d] fecInner:%d ", __func__, 2228, static_cast<int>(code));
}

void _get_mod_by_switch(int value, TUNER_MODULATION_T& code) {
    if (value >= kFirstModulation && value <= kLastModulation) {
        code = static_cast<TUNER_MODULATION_T>(value);
    }
    TAVRO_LOG_JNI("[%s][%d] mod:%d ", __func__, 2320, static_cast<int>(code));
}

void _get_transmission_mode_by_switch(int value, TUNER_TRANSMISSION_MODE_T& code) {
    kTransmissionModeCodes.find(value, code);
    TAVRO_LOG_JNI("[%s][%d] transMode:%d ", __func__, 2352, static_cast<int>(code));
}

void _set_freq_by_medium(_TSL_REC_T& record, int frequency) {
    if (known(record.e_bcst_medium)) {
        record.ui4_freq = static_cast<std::uint32_t>(frequency);
    }
    TAVRO_LOG_JNI("[%s][%d] ui4_freq:%d iFrequency:%d ", __func__, 2537, static_cast<int>(record.ui4_freq), frequency);
}

std::uint32_t get_mode(const _TSL_REC_T* record) {
    switch (record->e_bcst_medium) {
    case kMediumCable:
        return record->u_tuner.t_cab.e_mode;
    case kMediumSatellite:
        return record->u_tuner.t_sat.e_mode;
    default:
        return record->u_tuner.t_ter.e_mode;
    }
}

void set_mode(_TSL_REC_T* record, int mode) {
    const std::uint8_t medium = known(record->e_bcst_medium) ? record->e_bcst_medium : kMediumTerrestrial;
    tavro::put(reinterpret_cast<std::byte*>(record), kModeWord[medium - kFirstMedium], mode);
}

void _set_ts_info(tavro::Jni& jni, jobject object, _TSL_REC_T& record) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 2544);
    const LocalRef cls(jni, jni.find_class(kTransportStreamInfo));
    RecordObject stream(jni, cls.get(), object, kTransportStreamContainsKey);
    stream.look_up_contains_key();
    walk(kFirstRows, stream, record);
    _set_sub_ts_info(stream, record);
}

void _set_sub_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    walk(kSubRows, object, record);
    _set_sub2_ts_info(object, record);
}

void _set_sub2_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    walk(kSub2Rows, object, record);
    _set_sub3_ts_info(object, record);
}

void _set_sub3_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    walk(kSub3Rows, object, record);
    _set_sub4_ts_info(object, record);
}

void _set_sub4_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    walk(kSub4Rows, object, record);
}
