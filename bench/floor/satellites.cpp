#include "common.h"
#include "floor.h"
#include "middleware/satl.h"

#define TAG "[SATELITE] NativeVltTvSatelliteList_Cpp"
#define CLASS "[NativeVltTvSatelliteList]"
#define INFO FLOOR_PACKAGE "VltTvSatelliteInfo"
#define INFO_BASE FLOOR_PACKAGE "VltTvSatelliteInfoBase"
#define CONTAINS "(L" INFO_BASE ";Ljava/lang/String;)Z"
#define NATIVE "com_velotra_tv_tavro_satellitelist_"

namespace tavro::bench::floor {
namespace {

FLOOR_HANDLES(satl, TAG, CLASS, "satId", "satHandle", "getSatHandle", "setSatHandle", true)

constexpr std::uint32_t kDetected = 0x00020;
constexpr std::uint32_t kEnabled = 0x02000;
constexpr std::uint32_t kUniversal = 0x04000;
constexpr std::uint32_t kSingleCable = 0x08000;
constexpr std::uint32_t kJess = 0x10000;
constexpr std::uint32_t kKinds = kUniversal | kSingleCable | kJess;
constexpr std::uint8_t kNone = 0xFF;
constexpr std::size_t kName = offsetof(_SATL_REC_T, ac_sat_name);
constexpr std::size_t kNameAndEnd = offsetof(_SATL_REC_T, c_sat_name_end) + 1 - kName;

// Logs the identifier's text, parses it and logs the ids.
MwStatus get(const char* text, _SATL_REC_T* record) {
    FLOOR_DEBUG(TAG, "[getInfo]: string recId = %s \n", text);
    const Ids ids = ids_in(text);
    FLOOR_DEBUG(TAG, "[getInfo]: satId = %d, satRecId = %u \n", ids.list,
                static_cast<unsigned int>(static_cast<std::uint16_t>(ids.record)));
    const MwdbHandle handle = satl_handle(ids.list);
    std::int32_t version;
    return x_satl_get_rec(handle, static_cast<std::uint16_t>(ids.record), record, &version);
}

// A number whose key equals its field name, and its log line.
#define NUMBER(key, to, word)                                                                                          \
    FLOOR_KEY(o, key, (to) = static_cast<decltype(to)>(int_field(o, key));                                             \
              FLOOR_BRIDGE(word " = %d \n", static_cast<int>(to)))
#define MASK_BIT(key, field, bit)                                                                                      \
    FLOOR_KEY(o, key, const jint value = int_field(o, field); set_bits(r.ui4_mask, value == 1, bit);                   \
              FLOOR_BRIDGE("ui4_mask = 0x%04X (%d, 0x%04X) \n", r.ui4_mask, value, bit))

void set_antenna(_SATL_REC_T& r, jint type) {
    if (type < 0 || type > 6) {
        return;
    }
    r.ui4_mask = (r.ui4_mask & ~kKinds) | (type == 1 ? kSingleCable : type == 2 ? kJess : kUniversal);
    if (type >= 3 && type <= 5) {
        r.t_diseqc_info.e_diseqc_type = type == 3 ? 2 : 0;
        r.t_diseqc_info.e_diseqc_type_ex = type == 4 ? 4 : 0;
        r.t_diseqc_info.e_diseqc_type_ex2 = type == 5 ? 5 : 0;
    }
}

void set_position(_TUNER_DISEQC_INFO_T& d, jint position) {
    if (position == 5 || position == 6) {
        d.ui1_tone_burst = position == 5 ? 0 : 1;
    } else {
        d.ui1_port = position >= 0 && position <= 3 ? static_cast<std::uint8_t>(position) : kNone;
        d.ui1_tone_burst = kNone;
    }
}

void set_main(Object& o, _SATL_REC_T& r) {
    look_up(o, CONTAINS);
    MASK_BIT("MaskStatusOn", "MaskStatusOn", kEnabled);
    MASK_BIT("MaskLnbUniver", "MaskLnbUniver", kUniversal);
    MASK_BIT("MaskLnbSingcab", "MaskLnbSingcab", kSingleCable);
    MASK_BIT("MaskLnbSingcabJess", "MaskLnbSingcabJess", kJess);
    MASK_BIT("LnbSignalDetected", "lnbSignalDetected", kDetected);
    NUMBER("OrbitPosition", r.i2_orb_pos, "i2_orb_pos");
    FLOOR_KEY(o, "Name", text_field(o, "Name", reinterpret_cast<char*>(&r) + kName, kNameAndEnd);
              FLOOR_BRIDGE("ac_sat_name = %.*s \n", static_cast<int>(sizeof r.ac_sat_name), r.ac_sat_name));
    FLOOR_KEY(o, "AntennaType", set_antenna(r, int_field(o, "AntennaType"));
              FLOOR_BRIDGE("pt_satl_rec.ui4_mask = %d \n", static_cast<int>(r.ui4_mask)));
}

void set_diseqc(Object& o, _TUNER_DISEQC_INFO_T& d) {
    look_up(o, CONTAINS);
    NUMBER("LnbPower", d.e_lnb_power, "e_lnb_power");
    NUMBER("ToneBurst", d.ui1_tone_burst, "ui1_tone_burst");
    NUMBER("DiseqcType", d.e_diseqc_type, "e_diseqc_type");
    NUMBER("Tone22k", d.ui1_22k, "ui1_22k");
    NUMBER("SingleCableUserBandMain", d.e_user_band, "e_user_band");
    NUMBER("UnicablePosition", d.e_position, "e_position");
    FLOOR_KEY(o, "DiseqcPosition", set_position(d, int_field(o, "DiseqcPosition"));
              FLOOR_BRIDGE("ui1_port = %d ui1_tone_burst = %d\n", d.ui1_port, d.ui1_tone_burst));
    NUMBER("SingleCableBandFreqMain", d.ui2_band_freq, "ui2_band_freq");
    NUMBER("MduType", d.e_mdu_type, "e_mdu_type");
    NUMBER("DiseqcTypeEx", d.e_diseqc_type_ex, "e_diseqc_type_ex");
    NUMBER("DiseqcPositionEx", d.ui1_port_ex, "ui1_port_ex");
}

void set_polarization(Object& o, _TUNER_DISEQC_INFO_T& d) {
    look_up(o, CONTAINS);
    NUMBER("DiseqcPolar", d.e_polar, "e_polar");
}

void set_lnb(const Object& o, _SATL_REC_T& r) {
    NUMBER("SingleCableUserBandSub", r.e_sub_user_band, "e_user_band");
    NUMBER("SingleCableBandFreqSub", r.ui2_sub_band_freq, "ui2_band_freq");
    NUMBER("LnbType", r.e_lnb_type, "e_lnb_type");
    NUMBER("LnbLowFreq", r.ui2_lnb_low_freq, "ui2_lnb_low_freq");
    NUMBER("LnbHighFreq", r.ui2_lnb_high_freq, "ui2_lnb_high_freq");
    NUMBER("LnbSwitchFreq", r.ui2_lnb_switch_freq, "ui2_lnb_switch_freq");
}

MwStatus apply(JNIEnv* env, jclass base, jobject satellite, const char* name, int line) {
    jclass cls = env->GetObjectClass(satellite);
    Object o = {env, satellite, cls, base, nullptr};
    look_up(o, CONTAINS);
    Ids ids = {0, 0};
    FLOOR_KEY(o, "RecId", ids = ids_field(o, "RecId"));
    const IdText text = text_of(ids.list, ids.record);
    FLOOR_BRIDGE("[%s][%d], sRecID: %s ", name, line, text.chars);
    _SATL_REC_T record = {};
    if (get(text.chars, &record) != kMwOk) {
        return kFailed;
    }
    set_main(o, record);
    set_diseqc(o, record.t_diseqc_info);
    set_lnb(o, record);
    x_satl_lock(satl_handle(ids.list));
    FLOOR_DEBUG(TAG, "[updateInfo]: satId = %d \n", ids.list);
    const MwStatus status = x_satl_update_rec(satl_handle(ids.list), &record, kMwUpdatePlain);
    x_satl_unlock(satl_handle(ids.list));
    env->DeleteLocalRef(cls);
    return status;
}

int antenna_of(const _SATL_REC_T& r) {
    if ((r.ui4_mask & kSingleCable) != 0) {
        return 1;
    }
    if ((r.ui4_mask & kJess) != 0) {
        return 2;
    }
    const _TUNER_DISEQC_INFO_T& d = r.t_diseqc_info;
    if (d.e_diseqc_type == 2 && d.e_diseqc_type_ex == 0 && d.e_diseqc_type_ex2 == 0) {
        return 3;
    }
    if (d.e_diseqc_type == 0 && d.e_diseqc_type_ex == 4 && d.e_diseqc_type_ex2 == 0) {
        return 4;
    }
    return d.e_diseqc_type == 0 && d.e_diseqc_type_ex == 0 && d.e_diseqc_type_ex2 == 5 ? 5 : 0;
}

int position_of(const _TUNER_DISEQC_INFO_T& d) {
    if (d.e_diseqc_type == 0) {
        return d.ui1_tone_burst == 0 ? 5 : d.ui1_tone_burst == 1 ? 6 : 255;
    }
    return d.e_diseqc_type == 2 ? d.ui1_port : 255;
}

// The number values of a satellite in the order of the setter calls. The name follows the orbit position.
#define SATELLITE_FIRST(VALUE)                                                                                         \
    VALUE("MaskStatusOn", (r.ui4_mask & kEnabled) != 0 ? 1 : 0)                                                        \
    VALUE("MaskLnbUniver", (r.ui4_mask & kUniversal) != 0 ? 1 : 0)                                                     \
    VALUE("MaskLnbSingcab", (r.ui4_mask & kSingleCable) != 0 ? 1 : 0)                                                  \
    VALUE("LnbSignalDetected", (r.ui4_mask & kDetected) != 0 ? 1 : 0)                                                  \
    VALUE("MaskLnbSingcabJess", (r.ui4_mask & kJess) != 0 ? 1 : 0)                                                     \
    VALUE("OrbitPosition", r.i2_orb_pos)
#define SATELLITE_REST(VALUE)                                                                                          \
    VALUE("SingleCableUserBandSub", static_cast<jint>(r.e_sub_user_band))                                              \
    VALUE("SingleCableBandFreqSub", r.ui2_sub_band_freq)                                                               \
    VALUE("LnbType", static_cast<jint>(r.e_lnb_type))                                                                  \
    VALUE("LnbLowFreq", r.ui2_lnb_low_freq)                                                                            \
    VALUE("LnbHighFreq", r.ui2_lnb_high_freq)                                                                          \
    VALUE("LnbSwitchFreq", r.ui2_lnb_switch_freq)                                                                      \
    VALUE("AntennaType", antenna_of(r))                                                                                \
    VALUE("LnbPower", static_cast<jint>(r.t_diseqc_info.e_lnb_power))                                                  \
    VALUE("ToneBurst", r.t_diseqc_info.ui1_tone_burst)                                                                 \
    VALUE("DiseqcType", static_cast<jint>(r.t_diseqc_info.e_diseqc_type))                                              \
    VALUE("Tone22k", r.t_diseqc_info.ui1_22k)                                                                          \
    VALUE("SingleCableUserBandMain", static_cast<jint>(r.t_diseqc_info.e_user_band))                                   \
    VALUE("UnicablePosition", static_cast<jint>(r.t_diseqc_info.e_position))                                           \
    VALUE("DiseqcPosition", position_of(r.t_diseqc_info))                                                              \
    VALUE("SingleCableBandFreqMain", r.t_diseqc_info.ui2_band_freq)                                                    \
    VALUE("MduType", static_cast<jint>(r.t_diseqc_info.e_mdu_type))                                                    \
    VALUE("DiseqcTypeEx", static_cast<jint>(r.t_diseqc_info.e_diseqc_type_ex))                                         \
    VALUE("DiseqcPositionEx", r.t_diseqc_info.ui1_port_ex)                                                             \
    VALUE("DiseqcPolar", static_cast<jint>(r.t_diseqc_info.e_polar))

void put_all(const Carrier& c, const _SATL_REC_T& r) {
#define VALUE(key, value) set_int(c, "set" key, value);
    SATELLITE_FIRST(VALUE)
    set_text(c, "setName", r.ac_sat_name, sizeof r.ac_sat_name);
    SATELLITE_REST(VALUE)
#undef VALUE
}

void put(const Carrier& c, const char* key, const _SATL_REC_T& r) {
#define VALUE(name, value)                                                                                             \
    if (std::strcmp(key, name) == 0) {                                                                                 \
        set_int(c, "set" name, value);                                                                                 \
        return;                                                                                                        \
    }
    SATELLITE_FIRST(VALUE)
    if (std::strcmp(key, "Name") == 0) {
        set_text(c, "setName", r.ac_sat_name, sizeof r.ac_sat_name);
        return;
    }
    SATELLITE_REST(VALUE)
#undef VALUE
}

// Shared by all results of one call.
struct Results {
    JavaClass info;
    Carrier carrier;
    jmethodID assign;
};

Results begin(JNIEnv* env, const JavaClass& info, const JavaClass& base) {
    jobject carrier = env->NewObject(base.cls, base.constructor);
    return {info, {env, base.cls, carrier}, env->GetMethodID(info.cls, "satlToSatelliteInfo", "(L" INFO_BASE ";)V")};
}

jobject begin_result(const Results& results, int list, int record) {
    JNIEnv* env = results.carrier.env;
    jstring text = identifier(env, list, record);
    jobject result = env->NewObject(results.info.cls, results.info.constructor);
    env->CallVoidMethod(results.carrier.object,
                        env->GetMethodID(results.carrier.cls, "setRecId", "(Ljava/lang/String;)V"), text);
    env->DeleteLocalRef(text);
    return result;
}

void put_keys(const Carrier& c, jobject keys, const JavaList& list, const _SATL_REC_T& r) {
    for (jint i = 0; i < list.size; ++i) {
        auto* key = static_cast<jstring>(c.env->CallObjectMethod(keys, list.get, i));
        put(c, c.env->GetStringUTFChars(key, nullptr), r);
        c.env->DeleteLocalRef(key);
    }
}

} // namespace

jobject satellite_get(JNIEnv* env, jobject, jstring identifier_text, jobject keys) {
    const IdText text = text_of(env, identifier_text);
    const JavaClass info = java_class(env, INFO);
    const JavaClass base = java_class(env, INFO_BASE);
    const Results results = begin(env, info, base);
    _SATL_REC_T record = {};
    const MwStatus status = get(text.chars, &record);
    FLOOR_DEBUG(nullptr, "[" NATIVE "getInfo]: pt_satl_rec.ui4_mask = %d \n", static_cast<int>(record.ui4_mask));
    if (status != kMwOk) {
        return nullptr;
    }
    const char* list_digits = text.chars;
    jobject result = begin_result(results, digits(list_digits), record.ui2_satl_rec_id);
    if (keys == nullptr) {
        put_all(results.carrier, record);
    } else {
        const JavaList list = java_list(env, keys);
        FLOOR_BRIDGE("Key List size = %d\n", list.size);
        put_keys(results.carrier, keys, list, record);
    }
    env->CallVoidMethod(result, results.assign, results.carrier.object);
    return result;
}

jobject satellite_get_list(JNIEnv* env, jobject, jint list_id, jobject keys) {
    FLOOR_BRIDGE("[" NATIVE "getInfoList][4601] ");
    const ResultList all = result_list(env);
    const JavaClass info = java_class(env, INFO);
    const JavaClass base = java_class(env, INFO_BASE);
    x_satl_read_lock(satl_handle(list_id));
    FLOOR_DEBUG(TAG, "[getInfoListNum]: satId = %d \n", list_id);
    std::uint16_t count;
    std::int32_t version;
    x_satl_get_num_recs(satl_handle(list_id), &count, &version);
    FLOOR_DEBUG(TAG, "[getInfoListNum]:i2_num_rec:%d \n", count);
    const Results results = begin(env, info, base);
    for (std::int32_t i = 0; i < count; ++i) {
        _SATL_REC_T record = {};
        FLOOR_DEBUG(TAG, CLASS "[getInfoByIdx]: satId = %d idx = %d\n", list_id, i);
        x_satl_get_rec_by_rec_idx(satl_handle(list_id), i, &record, &version);
        FLOOR_DEBUG(nullptr, "[" NATIVE "getInfoList]:List pt_satl_rec.ui4_mask = %d \n",
                    static_cast<int>(record.ui4_mask));
        jobject result = begin_result(results, list_id, record.ui2_satl_rec_id);
        if (keys == nullptr) {
            put_all(results.carrier, record);
        } else {
            const JavaList list = java_list(env, keys);
            FLOOR_DEBUG(nullptr, "[jni_VltTvList_Init]getInfoList, Key List size = %d\n", list.size);
            put_keys(results.carrier, keys, list, record);
        }
        env->CallVoidMethod(result, results.assign, results.carrier.object);
        env->CallBooleanMethod(all.list, all.add, result);
        env->DeleteLocalRef(result);
    }
    x_satl_read_unlock(satl_handle(list_id));
    return all.list;
}

jint satellite_open(JNIEnv*, jobject, jint list) {
    FLOOR_BRIDGE("[" NATIVE "open][3733] ");
    FLOOR_DEBUG(TAG, "[open]: satId = %d \n", list);
    satl_handle(list);
    return kDone;
}

jint satellite_clean(JNIEnv*, jobject, jint list) {
    FLOOR_BRIDGE("[" NATIVE "clean][3700] ");
    FLOOR_DEBUG(TAG, "[clean]: satId = %d \n", list);
    const MwdbHandle handle = satl_handle(list);
    x_satl_lock(handle);
    const MwStatus status = x_satl_clean(handle);
    x_satl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

jint satellite_update(JNIEnv* env, jobject, jobject satellite) {
    FLOOR_BRIDGE("[" NATIVE "updateInfo][4690] ");
    jclass base = env->FindClass(INFO_BASE);
    return apply(env, base, satellite, NATIVE "updateInfo", 4714) == kMwOk ? kDone : kFailed;
}

jint satellite_update_list(JNIEnv* env, jobject, jobject satellites) {
    FLOOR_BRIDGE(NATIVE "updateInfoList");
    const JavaList elements = java_list(env, satellites);
    jclass base = env->FindClass(INFO_BASE);
    for (jint i = 0; i < elements.size; ++i) {
        jobject satellite = env->CallObjectMethod(satellites, elements.get, i);
        apply(env, base, satellite, NATIVE "updateInfoList", 4847);
        env->DeleteLocalRef(satellite);
    }
    return kDone;
}

jstring satellite_add(JNIEnv* env, jobject, jint list, jobject satellite) {
    FLOOR_BRIDGE("[" NATIVE "add_Info][4373] ");
    env->NewStringUTF("");
    _SATL_REC_T record = {};
    record.t_diseqc_info.ui1_tone_burst = kNone;
    jclass cls = env->GetObjectClass(satellite);
    Object o = {env, satellite, cls, env->FindClass(INFO_BASE), nullptr};
    set_main(o, record);
    set_diseqc(o, record.t_diseqc_info);
    set_polarization(o, record.t_diseqc_info);
    set_lnb(o, record);
    FLOOR_DEBUG(TAG, "[addInfo]: satId = %d \n", list);
    const MwdbHandle handle = satl_handle(list);
    std::uint16_t highest;
    x_satl_qry_rec_id(handle, kMwQueryHighestRecordId, &highest);
    record.ui2_satl_rec_id = static_cast<std::uint16_t>(highest + 1);
    x_satl_lock(handle);
    x_satl_add_rec(handle, &record);
    x_satl_unlock(handle);
    FLOOR_DEBUG(TAG, "[addInfo]: x_satl_add_rec OK , satl_rec_id=%d  \n", record.ui2_satl_rec_id);
    FLOOR_BRIDGE("[satList->addInfo][%d] ", kDone);
    return identifier(env, list, record.ui2_satl_rec_id);
}

jint satellite_remove(JNIEnv* env, jobject, jstring identifier) {
    FLOOR_BRIDGE("[" NATIVE "remove_info][4492] ");
    const IdText text = text_of(env, identifier);
    FLOOR_DEBUG(TAG, "[removeInfo]: string recId = %s \n", text.chars);
    const Ids ids = ids_in(text.chars);
    FLOOR_DEBUG(TAG, "[removeInfo]: satId = %d, satRecId = %u \n", ids.list,
                static_cast<unsigned int>(static_cast<std::uint16_t>(ids.record)));
    const MwdbHandle handle = satl_handle(ids.list);
    x_satl_lock(handle);
    const MwStatus status = x_satl_del_rec(handle, static_cast<std::uint16_t>(ids.record));
    x_satl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

} // namespace tavro::bench::floor
