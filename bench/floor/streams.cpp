#include "common.h"
#include "floor.h"
#include "middleware/tsl.h"

#define TAG "NativeVltTvTransportStreamList_Cpp"
#define CLASS "[NativeVltTvTransportStreamList]"
#define INFO_CLASS FLOOR_PACKAGE "VltTvTransportStreamInfoBase"
#define CONTAINS "(L" INFO_CLASS ";Ljava/lang/String;)Z"
#define NATIVE "com_velotra_tv_tavro_transportstreamlist_"

namespace tavro::bench::floor {
namespace {

FLOOR_HANDLES(tsl, TAG, CLASS, "mwdbId", "mwdbHandle", "getMwdbHandle", "setMwdbHandle", false)

constexpr std::uint16_t kEveryNetwork = 65535;

void trace_record(const char* operation, const _TSL_REC_T& record) {
    FLOOR_DEBUG(TAG, CLASS "[%s]:rec_id:%d ts_id:%d s_nw_name:%.*s\n", operation, record.ui2_tsl_rec_id,
                record.ui2_ts_id, static_cast<int>(sizeof record.ac_nw_name), record.ac_nw_name);
}

MwStatus get(int list, int id, _TSL_REC_T* record) {
    std::int32_t version;
    return x_tsl_get_rec(tsl_handle(list), static_cast<std::uint16_t>(id), record, &version);
}

MwStatus update(int list, _TSL_REC_T* record) {
    FLOOR_DEBUG(TAG, CLASS "[updateInfo]: mwdbId = %d \n", list);
    const MwdbHandle handle = tsl_handle(list);
    trace_record("updateInfo", *record);
    return x_tsl_update_rec(handle, record, kMwUpdatePlain);
}

// Converts a value with a table of the codes for values from 0.
template <std::size_t N>
std::uint32_t code(const std::uint8_t (&codes)[N], jint value, std::uint32_t otherwise) {
    return value >= 0 && value < static_cast<jint>(N) && codes[value] != 0xFF ? codes[value] : otherwise;
}

constexpr std::uint8_t kFecInner[] = {0, 2, 3, 4, 6, 7, 8, 9, 10, 11};
constexpr std::uint8_t kTransmissionMode[] = {0, 0, 5, 1, 6, 2, 7, 8, 3, 4};
constexpr std::uint8_t kHierarchy[] = {0, 0, 0, 0, 1, 2, 3, 4};
constexpr std::uint8_t kRollOff[] = {0, 0, 0, 1, 2};
constexpr std::uint8_t kStandard[] = {0, 0, 0, 0, 0, 1, 2};
constexpr std::uint8_t kGuardT[] = {0, 0, 1, 2, 3, 4};
constexpr std::uint8_t kGuardT2[] = {0, 0, 1, 2, 3, 4, 5, 6, 7};
constexpr std::uint8_t kCodeRate[] = {0xFF, 0xFF, 3, 5, 6, 8, 9, 2, 4, 7, 12, 10};
constexpr std::uint32_t kNoCodeRate = 12;

std::uint32_t bandwidth_code(jint kilohertz) {
    switch (kilohertz) {
    case 6000:
        return 1;
    case 7000:
        return 2;
    case 8000:
        return 3;
    case 5000:
        return 4;
    case 10000:
        return 5;
    case 1712:
        return 6;
    default:
        return 0;
    }
}

void set_alternates(const Object& o, _TSL_REC_T& r) {
    jfieldID field =
        o.env->GetFieldID(o.field_class, "alternateFrequencyInfoList", "[L" INFO_CLASS "$AlternateFrequencyInfoBase;");
    auto* array = static_cast<jobjectArray>(o.env->GetObjectField(o.object, field));
    const jsize length = o.env->GetArrayLength(array);
    std::memset(r.at_alt_freq, 0, sizeof r.at_alt_freq);
    for (jsize i = 0; i < length; ++i) {
        jobject element = o.env->GetObjectArrayElement(array, i);
        jclass cls = o.env->GetObjectClass(element);
        _TSL_ALT_FREQ_T& entry = r.at_alt_freq[i];
        jfieldID frequency = o.env->GetFieldID(cls, "alternateFreq", "I");
        entry.ui4_freq = static_cast<std::uint32_t>(o.env->GetIntField(element, frequency));
        jfieldID bandwidth = o.env->GetFieldID(cls, "alternateBandwidth", "I");
        entry.e_bandwidth = bandwidth_code(o.env->GetIntField(element, bandwidth));
        FLOOR_BRIDGE("iAlternateFreq = %d iAlternateBandwidth=%d \n", static_cast<int>(entry.ui4_freq),
                     static_cast<int>(entry.e_bandwidth));
        o.env->DeleteLocalRef(cls);
        o.env->DeleteLocalRef(element);
    }
    o.env->DeleteLocalRef(array);
}

// Satellite values are stored only if the medium is satellite.
void set_values(JNIEnv* env, jobject stream, _TSL_REC_T& r) {
    _TSL_TER_T& ter = r.u_tuner.t_ter;
    _TSL_SAT_T& sat = r.u_tuner.t_sat;
    FLOOR_BRIDGE("[_set_ts_info][2544] ");
    jclass cls = env->FindClass(INFO_CLASS);
    Object o = {env, stream, cls, cls, nullptr};
    look_up(o, CONTAINS);
    FLOOR_INT(o, "BroadcastType", "broadcastType", r.e_bcst_type);
    FLOOR_INT(o, "BroadcastMedium", "broadcastMedium", r.e_bcst_medium);
    FLOOR_INT(o, "NetworkId", "networkId", r.ui2_nw_id);
    FLOOR_INT(o, "OriginalNetworkId", "originalNetworkId", r.ui2_on_id);
    FLOOR_INT(o, "TransportStreamId", "transportStreamId", r.ui2_ts_id);
    FLOOR_KEY(o, "TslNwlRecId", const Ids ids = ids_field(o, "tslNwlRecId");
              r.ui1_nwl_id = static_cast<std::uint8_t>(ids.list);
              r.ui2_nwl_rec_id = static_cast<std::uint16_t>(ids.record));
    const bool satellite = r.e_bcst_medium == kMediumSatellite;
    FLOOR_KEY(
        o, "Frequency", const jint frequency = int_field(o, "frequency");
        if (satellite) { r.ui4_freq = static_cast<std::uint32_t>(frequency); } FLOOR_BRIDGE(
            "[_set_freq_by_medium][2537] ui4_freq:%d iFrequency:%d ", static_cast<int>(r.ui4_freq), frequency));
    FLOOR_KEY(o, "Bandwidth", ter.e_bandwidth = bandwidth_code(int_field(o, "bandwidth")));
    FLOOR_KEY(o, "BroadcastMode", const auto mode = static_cast<std::uint32_t>(int_field(o, "broadcastMode"));
              (satellite ? sat.e_mode : ter.e_mode) = mode);
    FLOOR_INT(o, "PlpId", "plpId", ter.ui1_plp_id);
    FLOOR_INT(o, "PlpGroupId", "plpGroupId", ter.ui1_plp_group_id);
    FLOOR_KEY(o, "NetworkName",
              env->DeleteLocalRef(short_text_field(o, "networkName", r.ac_nw_name, sizeof r.ac_nw_name)));
    FLOOR_KEY(o, "BarkerChannel", set_bits(r.ui4_flags, int_field(o, "barkerChannel") > 0, 0x2));

    look_up(o, CONTAINS);
    FLOOR_KEY(
        o, "FecInner", const std::uint32_t fec = code(kFecInner, int_field(o, "fecInner"), 0);
        FLOOR_BRIDGE("[_get_fecInner_by_switch][2228] fecInner:%d ", static_cast<int>(fec));
        if (satellite) { sat.e_fec_inner = fec; });
    FLOOR_KEY(
        o, "Modulation", const jint value = int_field(o, "modulation");
        const std::uint32_t modulation = value >= 1 && value <= 28 ? static_cast<std::uint32_t>(value) : 0;
        FLOOR_BRIDGE("[_get_mod_by_switch][2320] mod:%d ", static_cast<int>(modulation)); ter.e_mod = modulation;
        if (satellite) { sat.e_mod = modulation; });
    FLOOR_KEY(
        o, "Standard", const jint standard = int_field(o, "standard");
        const jint medium = int_field(o, "broadcastMedium"); if (medium == kMediumSatellite) {
            sat.e_mode = code(kStandard, standard, 0);
        } FLOOR_BRIDGE("[_set_sub_ts_info][2403] BroadcastMedium=%d iStandard%d ", medium, standard));
    FLOOR_KEY(
        o, "GuardInterval", const jint interval = int_field(o, "guardInterval"); if (ter.e_mode == 2) {
            ter.e_guard_interval_t2 = code(kGuardT2, interval, 0);
        } else if (ter.e_mode == 1) { ter.e_guard_interval = code(kGuardT, interval, 0); });
    FLOOR_KEY(o, "TransmissionMode",
              const std::uint32_t mode = code(kTransmissionMode, int_field(o, "transmissionMode"), 0);
              FLOOR_BRIDGE("[_get_transmission_mode_by_switch][2352] transMode:%d ", static_cast<int>(mode));
              ter.e_trans_mode = mode);

    look_up(o, CONTAINS);
    FLOOR_KEY(o, "Hierarchy", ter.e_hierarchy = code(kHierarchy, int_field(o, "hierarchy"), 0));
    FLOOR_KEY(o, "FecOuter", int_field(o, "fecOuter"));
    FLOOR_KEY(
        o, "SymbolRate", const jint rate = int_field(o, "symbolRate");
        if (satellite) { sat.ui4_sym_rate = static_cast<std::uint32_t>(rate); });
    FLOOR_INT(o, "PilotInsert", "pilotInsert", sat.ui1_pilot_insert);
    FLOOR_KEY(o, "RollOff", sat.e_roll_off = code(kRollOff, int_field(o, "rollOff"), 0));
    FLOOR_KEY(
        o, "CodeRate", const jint rate = int_field(o, "codeRate");
        if (satellite) { sat.e_code_rate = code(kCodeRate, rate, kNoCodeRate); });
    FLOOR_FLAG(o, "IsHomeTransponder", "isHomeTransponder", r.ui4_flags_ex, 0x800);

    look_up(o, CONTAINS);
    FLOOR_KEY(o, "TslSatlRecId", const Ids ids = ids_field(o, "tslSatlRecId");
              r.ui2_satl_id = static_cast<std::uint16_t>(ids.list);
              r.ui2_satl_rec_id = static_cast<std::uint16_t>(ids.record));
    FLOOR_KEY(o, "AcTsName", jstring text = short_text_field(o, "acTsName", r.ac_ts_name, sizeof r.ac_ts_name);
              FLOOR_BRIDGE("ac_ts_name = %.*s\n", static_cast<int>(sizeof r.ac_ts_name), r.ac_ts_name);
              env->DeleteLocalRef(text));
    FLOOR_INT(o, "TunerPolarizaTion", "tunerPolarizaTion", sat.e_pol);
    FLOOR_KEY(
        o, "SignalStrength", const jint level = int_field(o, "signalStrength");
        if (satellite) { sat.ui1_sig_level = static_cast<std::uint8_t>(level); });
    FLOOR_KEY(
        o, "SignalQuality", const jint quality = int_field(o, "signalQuality");
        if (satellite) { sat.ui4_sig_quality = static_cast<std::uint32_t>(quality); });

    look_up(o, CONTAINS);
    FLOOR_KEY(o, "AlternateFrequencyInfoList", set_alternates(o, r));
    FLOOR_INT(o, "RcKeyId", "rcKeyId", r.ui1_rc_key_id);
    env->DeleteLocalRef(cls);
}

} // namespace

jbyteArray stream_get(JNIEnv* env, jobject, jstring identifier) {
    const Ids ids = parse(env, identifier);
    _TSL_REC_T record = {};
    if (get(ids.list, ids.record, &record) != kMwOk) {
        return nullptr;
    }
    return bytes(env, &record, sizeof record);
}

jbyteArray stream_get_list(JNIEnv* env, jobject, jint list) {
    FLOOR_BRIDGE(NATIVE "getInfoList");
    x_tsl_read_lock(tsl_handle(list));
    FLOOR_DEBUG(TAG, CLASS "[getInfoListNum]: mwdbId = %d \n", list);
    std::uint16_t count;
    std::int32_t version;
    x_tsl_get_num_recs(tsl_handle(list), &count, &version);
    jbyteArray array = env->NewByteArray(count * static_cast<jsize>(sizeof(_TSL_REC_T)));
    for (std::uint16_t i = 0; i < count; ++i) {
        _TSL_REC_T record = {};
        FLOOR_DEBUG(TAG, CLASS "[getInfoByIdx]: mwdbId = %d idx = %d\n", list, i);
        x_tsl_get_rec_by_rec_idx(tsl_handle(list), i, &record, &version);
        trace_record("getInfoByIdx", record);
        env->SetByteArrayRegion(array, i * static_cast<jsize>(sizeof record), sizeof record,
                                reinterpret_cast<const jbyte*>(&record));
    }
    x_tsl_read_unlock(tsl_handle(list));
    return array;
}

jbyteArray stream_get_by_satellite(JNIEnv* env, jobject, jint list, jint satellite) {
    const auto satl_id = static_cast<std::uint16_t>(list);
    const auto satl_rec_id = static_cast<std::uint16_t>(satellite);
    FLOOR_BRIDGE(NATIVE "getInfoListBySatellite");
    x_tsl_read_lock(tsl_handle(list));
    FLOOR_DEBUG(TAG, CLASS "[getInfoListNumBySatellite]: mwdbId = %d \n", list);
    std::uint16_t count;
    std::int32_t version;
    x_tsl_get_num_rec_by_sat(tsl_handle(list), kEveryNetwork, satl_id, satl_rec_id, &count, &version);
    jbyteArray array = env->NewByteArray(count * static_cast<jsize>(sizeof(_TSL_REC_T)));
    for (std::uint16_t i = 0; i < count; ++i) {
        _TSL_REC_T record = {};
        FLOOR_DEBUG(TAG, CLASS "[getInfoByIdxBySatellite]: mwdbId = %d idx = %d\n", list, i);
        x_tsl_get_rec_by_sat(tsl_handle(list), kEveryNetwork, satl_id, satl_rec_id, i, &record, &version);
        trace_record("getInfoByIdxBySatellite", record);
        env->SetByteArrayRegion(array, i * static_cast<jsize>(sizeof record), sizeof record,
                                reinterpret_cast<const jbyte*>(&record));
    }
    x_tsl_read_unlock(tsl_handle(list));
    return array;
}

jbyteArray stream_copy(JNIEnv* env, jobject, jint list) {
    const MwdbHandle handle = tsl_handle(list);
    std::uint16_t count;
    std::int32_t version;
    x_tsl_get_num_recs(handle, &count, &version);
    jbyteArray array = env->NewByteArray(count * static_cast<jsize>(sizeof(_TSL_REC_T)));
    for (std::uint16_t i = 0; i < count; ++i) {
        _TSL_REC_T record = {};
        x_tsl_get_rec_by_rec_idx(handle, i, &record, &version);
        env->SetByteArrayRegion(array, i * static_cast<jsize>(sizeof record), sizeof record,
                                reinterpret_cast<const jbyte*>(&record));
    }
    return array;
}

jint stream_open(JNIEnv*, jobject, jint list) {
    FLOOR_DEBUG(TAG, CLASS "[open]: mwdbId = %d \n", list);
    tsl_handle(list);
    return kDone;
}

jint stream_clean(JNIEnv*, jobject, jint list) {
    FLOOR_DEBUG(TAG, CLASS "[clean]: mwdbId = %d \n", list);
    const MwdbHandle handle = tsl_handle(list);
    x_tsl_lock(handle);
    const MwStatus status = x_tsl_clean(handle);
    x_tsl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

jint stream_update(JNIEnv* env, jobject, jint list, jobject stream) {
    FLOOR_BRIDGE(NATIVE "updateInfo");
    jclass cls = env->GetObjectClass(stream);
    Object o = {env, stream, cls, cls, nullptr};
    look_up(o, CONTAINS);
    int id = 0;
    FLOOR_KEY(o, "TslIdTslRecId", id = parse(env, string_field(o, "tslIdTslRecId")).record);
    _TSL_REC_T record = {};
    if (get(list, id, &record) != kMwOk) {
        return kFailed;
    }
    set_values(env, stream, record);
    x_tsl_lock(tsl_handle(list));
    const MwStatus status = update(list, &record);
    x_tsl_unlock(tsl_handle(list));
    return status == kMwOk ? kDone : kFailed;
}

jint stream_update_list(JNIEnv* env, jobject, jint list, jobject streams) {
    FLOOR_BRIDGE(NATIVE "updateInfoList");
    const JavaList elements = java_list(env, streams);
    x_tsl_lock(tsl_handle(list));
    jclass cls = env->FindClass(INFO_CLASS);
    Object o = {env, nullptr, cls, cls, nullptr};
    look_up(o, CONTAINS);
    for (jint i = 0; i < elements.size; ++i) {
        o.object = env->CallObjectMethod(streams, elements.get, i);
        int id = 0;
        FLOOR_KEY(o, "TslIdTslRecId", id = ids_field(o, "tslIdTslRecId").record);
        _TSL_REC_T record = {};
        get(list, id, &record);
        set_values(env, o.object, record);
        update(list, &record);
        env->DeleteLocalRef(o.object);
    }
    x_tsl_unlock(tsl_handle(list));
    return kDone;
}

jstring stream_add(JNIEnv* env, jobject, jint list, jobject stream) {
    FLOOR_BRIDGE("[" NATIVE "add_Info][2811] ");
    env->NewStringUTF("");
    _TSL_REC_T record = {};
    set_values(env, stream, record);
    FLOOR_DEBUG(TAG, "[addInfo]: mwdbId = %d \n", list);
    const MwdbHandle handle = tsl_handle(list);
    std::uint16_t highest;
    x_tsl_qry_rec_id(handle, kMwQueryHighestRecordId, &highest);
    record.ui2_tsl_rec_id = static_cast<std::uint16_t>(highest + 1);
    x_tsl_lock(handle);
    x_tsl_add_rec(handle, &record);
    x_tsl_unlock(handle);
    FLOOR_DEBUG(TAG, "[addInfo]: x_tsl_add_rec OK , tsl_rec_id=%d  \n", record.ui2_tsl_rec_id);
    FLOOR_BRIDGE("[tsList->addInfo][%d] ", kDone);
    return identifier(env, list, record.ui2_tsl_rec_id);
}

jint stream_remove(JNIEnv* env, jobject, jstring identifier) {
    FLOOR_BRIDGE("[" NATIVE "remove_info][2867] ");
    const IdText text = text_of(env, identifier);
    FLOOR_DEBUG(TAG, "[removeInfo]: string recId = %s \n", text.chars);
    const Ids ids = ids_in(text.chars);
    FLOOR_DEBUG(TAG, "[removeInfo]: tslId = %d, tslRecId = %u \n", ids.list, static_cast<unsigned int>(ids.record));
    const MwdbHandle handle = tsl_handle(ids.list);
    x_tsl_lock(handle);
    const MwStatus status = x_tsl_del_rec(handle, static_cast<std::uint16_t>(ids.record));
    FLOOR_ERROR(TAG, "i4_ret: %d", status);
    x_tsl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

} // namespace tavro::bench::floor
