#include "jni/records/transport_stream_record.h"

#include "jni/env/jni_log.h"
#include "jni/records/transport_stream_rows.h"

#include <cstring>

using namespace tavro;
using namespace tavro::transport_stream_rows;

namespace {

_TSL_REC_T& record_of(std::byte* structure) { return *reinterpret_cast<_TSL_REC_T*>(structure); }
const _TSL_REC_T& record_of(const std::byte* structure) { return *reinterpret_cast<const _TSL_REC_T*>(structure); }

// The media with tuner parameters; variants have one entry for each, in this order.
constexpr std::uint8_t kFirstMedium = kMediumTerrestrial;
constexpr std::uint8_t kLastMedium = kMediumSatellite;

bool known(std::uint8_t medium) { return medium >= kFirstMedium && medium <= kLastMedium; }

// Puts a value where the record's medium keeps it; nothing for an unknown medium.
void put_variant(std::byte* structure, const Variant* variants, jint value) {
    const std::uint8_t medium = record_of(structure).e_bcst_medium;
    if (known(medium)) {
        put(structure, variants[medium - kFirstMedium], value);
    }
}

} // namespace

namespace tavro::transport_stream_rows {

void put_by_medium(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        put_variant(structure, row.variants, *value);
    }
}

void put_frequency(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        _set_freq_by_medium(record_of(structure), *value);
    }
}

void put_mode(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        set_mode(&record_of(structure), *value);
    }
}

void put_fec_inner(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        TUNER_FEC_INNER_T fec = 0;
        _get_fecInner_by_switch(*value, fec);
        put_variant(structure, row.variants, static_cast<jint>(fec));
    }
}

// Deliberate: the modulation goes to the place that terrestrial and cable share, whatever the medium, and for
// satellite to its own place as well.
void put_modulation(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
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

// The medium is the Java object's, whether or not its key is set.
void put_standard(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> standard = object.int_field(row.field);
    const std::optional<jint> medium = object.int_field("broadcastMedium");
    if (!standard || !medium) {
        return;
    }
    if (*medium >= kFirstMedium && *medium <= kLastMedium) {
        put(structure, row.variants[*medium - kFirstMedium], *standard);
    }
    TAVRO_LOG_JNI("[%s][%d] BroadcastMedium=%d iStandard%d ", "_set_sub_ts_info", 2403, *medium, *standard);
}

// The terrestrial mode decides, whatever the medium.
void put_guard_interval(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
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

void put_transmission_mode(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    const std::optional<jint> value = object.int_field(row.field);
    if (value) {
        TUNER_TRANSMISSION_MODE_T mode = 0;
        _get_transmission_mode_by_switch(*value, mode);
        put(structure, row.to, mode);
    }
}

constexpr char kAlternatesDescriptor[] = "[Lcom/velotra/tv/tavro/services/channellist/"
                                         "VltTvTransportStreamInfoBase$AlternateFrequencyInfoBase;";

// Up to five alternate frequencies; the rest becomes zero. More than five put nothing.
void put_alternate_frequencies(const ToRecordRow& row, RecordObject& object, std::byte* structure) {
    _TSL_ALT_FREQ_T(&alternates)[5] = record_of(structure).at_alt_freq;
    Jni& jni = object.jni();
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

void trace_ts_name(const ToRecordRow&, const std::byte* structure, jint) {
    TAVRO_LOG_JNI("ac_ts_name = %.*s\n", TAVRO_BOUNDED(record_of(structure).ac_ts_name));
}

} // namespace tavro::transport_stream_rows

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
    put(reinterpret_cast<std::byte*>(record), kModeWord[medium - kFirstMedium], mode);
}

void _set_ts_info(Jni& jni, jobject object, _TSL_REC_T& record) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 2544);
    const LocalRef cls(jni, jni.find_class(kTransportStreamInfo));
    RecordObject stream(jni, cls.get(), object, kTransportStreamContainsKey);
    stream.look_up_contains_key();
    put_all(kFirstRows, stream, record);
    _set_sub_ts_info(stream, record);
}

void _set_sub_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    put_all(kSubRows, object, record);
    _set_sub2_ts_info(object, record);
}

void _set_sub2_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    put_all(kSub2Rows, object, record);
    _set_sub3_ts_info(object, record);
}

void _set_sub3_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    put_all(kSub3Rows, object, record);
    _set_sub4_ts_info(object, record);
}

void _set_sub4_ts_info(RecordObject& object, _TSL_REC_T& record) {
    object.look_up_contains_key();
    put_all(kSub4Rows, object, record);
}
