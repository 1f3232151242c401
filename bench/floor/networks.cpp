#include "common.h"
#include "floor.h"
#include "middleware/nwl.h"

#define TAG "NativeVltTvNetworkList_Cpp"
#define CLASS "[NativeVltTvNetworkList]"
#define INFO FLOOR_PACKAGE "VltTvNetworkInfo"
#define INFO_BASE FLOOR_PACKAGE "VltTvNetworkInfoBase"
#define CONTAINS "(L" INFO_BASE ";Ljava/lang/String;)Z"
#define NATIVE "com_velotra_tv_tavro_networklist_"

namespace tavro::bench::floor {
namespace {

FLOOR_HANDLES(nwl, TAG, CLASS, "mwdbId", "mwdbHandle", "getMwdbHandle", "setMwdbHandle", true)

void trace_record(const char* operation, const _NWL_REC_T& record) {
    FLOOR_DEBUG(TAG, CLASS "[%s]:rec_id:%d nw_id:%d nit_ver:%d s_nw_name:%.*s\n", operation, record.ui2_nwl_rec_id,
                record.ui2_nw_id, record.ui1_nw_version, static_cast<int>(sizeof record.ac_nw_name), record.ac_nw_name);
}

MwStatus get(int list, int id, _NWL_REC_T* record) {
    FLOOR_DEBUG(TAG, CLASS "[getInfo]: mwdbId = %d recId = %d\n", list, id);
    const MwdbHandle handle = nwl_handle(list);
    std::int32_t version;
    const MwStatus status = x_nwl_get_rec(handle, static_cast<std::uint16_t>(id), record, &version);
    trace_record("getInfo", *record);
    return status;
}

MwStatus update(int list, _NWL_REC_T* record) {
    FLOOR_DEBUG(TAG, CLASS "[updateInfo]: mwdbId = %d \n", list);
    const MwdbHandle handle = nwl_handle(list);
    trace_record("updateInfo", *record);
    return x_nwl_update_rec(handle, record, kMwUpdatePlain);
}

void set_values(const Object& o, _NWL_REC_T& r) {
    FLOOR_INT(o, "NetworkVersion", "NetworkVersion", r.ui1_nw_version);
    FLOOR_KEY(o, "NetworkName",
              o.env->DeleteLocalRef(short_text_field(o, "NetworkName", r.ac_nw_name, sizeof r.ac_nw_name)));
    FLOOR_FLAG(o, "NwlFavNetworkCandidate", "NwlFavNetworkCandidate", r.ui4_nwl_flags, 0x2);
    FLOOR_FLAG(o, "NwlFavNetwork", "NwlFavNetwork", r.ui4_nwl_flags, 0x4);
    FLOOR_INT(o, "NwlNetworkId", "NwlNetworkId", r.ui2_nw_id);
}

int record_id_of(const Object& o) {
    int id = 0;
    FLOOR_KEY(o, "NwlIdNwlRecId", id = ids_field(o, "NwlIdNwlRecId").record);
    return id;
}

Object object_of(JNIEnv* env, jobject network) {
    jclass cls = env->GetObjectClass(network);
    Object o = {env, network, cls, cls, nullptr};
    look_up(o, CONTAINS);
    return o;
}

// A result object, and the carrier object from which it is filled.
struct Result {
    jobject info;
    jmethodID assign;
    Carrier carrier;
    jstring identifier;
};

Result make_result(JNIEnv* env, const JavaClass& info, jobject object, const JavaClass& base, jstring identifier) {
    jobject carrier = env->NewObject(base.cls, base.constructor);
    jmethodID assign = env->GetMethodID(info.cls, "nwlToNetworkInfo", "(L" INFO_BASE ";)V");
    return {object, assign, {env, base.cls, carrier}, identifier};
}

void set_identifier(const Result& result) {
    const Carrier& c = result.carrier;
    c.env->CallVoidMethod(c.object, c.env->GetMethodID(c.cls, "setNwlIdNwlRecId", "(Ljava/lang/String;)V"),
                          result.identifier);
}

void put_all(const Result& result, const _NWL_REC_T& r) {
    const Carrier& c = result.carrier;
    set_identifier(result);
    set_int(c, "setNetworkVersion", r.ui1_nw_version);
    set_text(c, "setNetworkName", r.ac_nw_name, sizeof r.ac_nw_name);
    set_int(c, "setNwlFavNetworkCandidate", (r.ui4_nwl_flags & 0x2) != 0 ? 1 : 0);
    set_int(c, "setNwlFavNetwork", (r.ui4_nwl_flags & 0x4) != 0 ? 1 : 0);
    set_int(c, "setNwlNetworkId", r.ui2_nw_id);
}

void put(const Result& result, const char* key, const _NWL_REC_T& r) {
    const Carrier& c = result.carrier;
    if (std::strcmp(key, "NetworkVersion") == 0) {
        FLOOR_DEBUG(nullptr, "[KEY_NETWORK_VERSION] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:%d ", r.ui2_nwl_rec_id);
        set_int(c, "setNetworkVersion", r.ui1_nw_version);
    } else if (std::strcmp(key, "NetworkName") == 0) {
        FLOOR_DEBUG(nullptr, "[KEY_NETWORK_NAME] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:%d", r.ui2_nwl_rec_id);
        set_text(c, "setNetworkName", r.ac_nw_name, sizeof r.ac_nw_name);
    } else if (std::strcmp(key, "NwlFavNetworkCandidate") == 0) {
        set_int(c, "setNwlFavNetworkCandidate", (r.ui4_nwl_flags & 0x2) != 0 ? 1 : 0);
    } else if (std::strcmp(key, "NwlFavNetwork") == 0) {
        set_int(c, "setNwlFavNetwork", (r.ui4_nwl_flags & 0x4) != 0 ? 1 : 0);
    } else if (std::strcmp(key, "NwlNetworkId") == 0) {
        set_int(c, "setNwlNetworkId", r.ui2_nw_id);
    } else if (std::strcmp(key, "NwlIdNwlRecId") == 0) {
        set_identifier(result);
    }
}

} // namespace

jobject network_get(JNIEnv* env, jobject, jstring text, jobject keys) {
    FLOOR_BRIDGE(NATIVE "getInfo line:3258 ");
    const JavaClass info = java_class(env, INFO);
    const Ids ids = parse(env, text);
    _NWL_REC_T record = {};
    if (get(ids.list, ids.record, &record) != kMwOk) {
        return nullptr;
    }
    jstring read = identifier(env, ids.list, record.ui2_nwl_rec_id);
    jobject object = env->NewObject(info.cls, info.constructor);
    const JavaClass base = java_class(env, INFO_BASE);
    const Result result = make_result(env, info, object, base, read);
    if (keys == nullptr) {
        put_all(result, record);
    } else {
        const JavaList list = java_list(env, keys, true);
        FLOOR_BRIDGE("Key List size = %d\n", list.size);
        for (jint i = 0; i < list.size; ++i) {
            auto* key = static_cast<jstring>(env->CallObjectMethod(keys, list.get, i));
            const char* chars = env->GetStringUTFChars(key, nullptr);
            put(result, chars, record);
            env->ReleaseStringUTFChars(key, chars);
            env->DeleteLocalRef(key);
        }
    }
    env->CallVoidMethod(result.info, result.assign, result.carrier.object);
    return result.info;
}

jobject network_get_list(JNIEnv* env, jobject, jint list_id, jobject keys) {
    FLOOR_BRIDGE(NATIVE "getInfoList");
    const ResultList results = result_list(env);
    const JavaClass info = java_class(env, INFO);
    const JavaClass base = java_class(env, INFO_BASE);
    x_nwl_read_lock(nwl_handle(list_id));
    FLOOR_DEBUG(TAG, CLASS "[getInfoListNum]: mwdbId = %d \n", list_id);
    std::uint16_t count;
    std::int32_t version;
    x_nwl_get_num_rec(nwl_handle(list_id), &count, &version);
    FLOOR_DEBUG(TAG, CLASS "[getInfoListNum]:i2_num_rec:%d \n", count);
    for (std::uint16_t i = 0; i < count; ++i) {
        _NWL_REC_T record = {};
        FLOOR_DEBUG(TAG, CLASS "[getInfoByIdx]: mwdbId = %d idx = %d\n", list_id, i);
        x_nwl_get_rec_by_rec_idx(nwl_handle(list_id), i, &record, &version);
        trace_record("getInfoByIdx", record);
        FLOOR_BRIDGE(NATIVE "getInfoList  pt_nwl_rec.ui2_nwl_rec_id:%d ", record.ui2_nwl_rec_id);
        jstring read = identifier(env, list_id, record.ui2_nwl_rec_id);
        jobject object = env->NewObject(info.cls, info.constructor);
        const Result result = make_result(env, info, object, base, read);
        if (keys == nullptr) {
            put_all(result, record);
        } else {
            const JavaList list = java_list(env, keys, true);
            FLOOR_DEBUG(nullptr, "[jni_VltTvList_Init]getInfoList, Key List size = %d\n", list.size);
            for (jint k = 0; k < list.size; ++k) {
                auto* key = static_cast<jstring>(env->CallObjectMethod(keys, list.get, k));
                const char* chars = env->GetStringUTFChars(key, nullptr);
                FLOOR_DEBUG(nullptr, "[jni_VltTvList_Init]getInfoList, keyName = %s \n", chars);
                put(result, chars, record);
                env->ReleaseStringUTFChars(key, chars);
                env->DeleteLocalRef(key);
            }
        }
        env->CallVoidMethod(result.info, result.assign, result.carrier.object);
        env->CallBooleanMethod(results.list, results.add, result.info);
        env->DeleteLocalRef(result.carrier.object);
        env->DeleteLocalRef(object);
        env->DeleteLocalRef(read);
    }
    x_nwl_read_unlock(nwl_handle(list_id));
    return results.list;
}

jint network_open(JNIEnv*, jobject, jint list) {
    FLOOR_DEBUG(TAG, CLASS "[open]: mwdbId = %d \n", list);
    nwl_handle(list);
    return kDone;
}

jint network_clean(JNIEnv*, jobject, jint list) {
    FLOOR_DEBUG(TAG, CLASS "[clean]: mwdbId = %d \n", list);
    const MwdbHandle handle = nwl_handle(list);
    x_nwl_lock(handle);
    const MwStatus status = x_nwl_clean(handle);
    x_nwl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

jint network_update(JNIEnv* env, jobject, jint list, jobject network) {
    FLOOR_BRIDGE("[" NATIVE "updateInfo][3462] ");
    const Object o = object_of(env, network);
    const int id = record_id_of(o);
    _NWL_REC_T record = {};
    if (get(list, id, &record) != kMwOk) {
        return kFailed;
    }
    set_values(o, record);
    x_nwl_lock(nwl_handle(list));
    const MwStatus status = update(list, &record);
    x_nwl_unlock(nwl_handle(list));
    return status == kMwOk ? kDone : kFailed;
}

jint network_update_list(JNIEnv* env, jobject, jint list, jobject networks) {
    FLOOR_BRIDGE(NATIVE "updateInfoList");
    const JavaList elements = java_list(env, networks);
    x_nwl_lock(nwl_handle(list));
    for (jint i = 0; i < elements.size; ++i) {
        const Object o = object_of(env, env->CallObjectMethod(networks, elements.get, i));
        const int id = record_id_of(o);
        _NWL_REC_T record = {};
        get(list, id, &record);
        set_values(o, record);
        update(list, &record);
        env->DeleteLocalRef(o.method_class);
        env->DeleteLocalRef(o.object);
    }
    x_nwl_unlock(nwl_handle(list));
    return kDone;
}

jstring network_add(JNIEnv* env, jobject, jint list, jobject network) {
    FLOOR_BRIDGE("[" NATIVE "add_Info][3109] ");
    env->NewStringUTF("");
    _NWL_REC_T record = {};
    const Object o = object_of(env, network);
    set_values(o, record);
    record_id_of(o);
    FLOOR_DEBUG(TAG, "[addInfo]: mwdbId = %d \n", list);
    const MwdbHandle handle = nwl_handle(list);
    std::uint16_t highest;
    x_nwl_qry_rec_id(handle, kMwQueryHighestRecordId, &highest);
    record.ui2_nwl_rec_id = static_cast<std::uint16_t>(highest + 1);
    x_nwl_lock(handle);
    x_nwl_add_rec(handle, &record);
    x_nwl_unlock(handle);
    FLOOR_DEBUG(TAG, "[addInfo]: x_nwl_add_rec OK , nwl_rec_id=%d  \n", record.ui2_nwl_rec_id);
    FLOOR_BRIDGE("[nwList->addInfo][%d] ", kDone);
    return identifier(env, list, record.ui2_nwl_rec_id);
}

jint network_remove(JNIEnv* env, jobject, jstring identifier) {
    FLOOR_BRIDGE("[" NATIVE "remove_info][3238] ");
    const IdText text = text_of(env, identifier);
    FLOOR_DEBUG(TAG, "[removeInfo]: string recId = %s \n", text.chars);
    const Ids ids = ids_in(text.chars);
    FLOOR_DEBUG(TAG, "[removeInfo]: nwlId = %d, nwlRecId = %u \n", ids.list, static_cast<unsigned int>(ids.record));
    const MwdbHandle handle = nwl_handle(ids.list);
    x_nwl_lock(handle);
    const MwStatus status = x_nwl_del_rec(handle, static_cast<std::uint16_t>(ids.record));
    x_nwl_unlock(handle);
    return status == kMwOk ? kDone : kFailed;
}

} // namespace tavro::bench::floor
