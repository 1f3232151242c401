#include "jni/bridges/transport_stream_list_bridge.h"

#include "jni/bridges/forwarding.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/transport_stream_record.h"

using namespace tavro;

namespace {

using Manager = NativeVltTvTransportStreamList;

// Line numbers in the entry lines.
constexpr int kAddLine = 2811;
constexpr int kAddCopyLine = 2836;
constexpr int kRemoveLine = 2867;
constexpr int kRemoveByRecordIdLine = 2876;

constexpr char kIdKey[] = "TslIdTslRecId";
constexpr char kIdField[] = "tslIdTslRecId";

// Reads the records of a list into a Java array. `count` and `read` are the manager's calls; `name` is the native's.
template <class Count, class Read>
jbyteArray list_records(JNIEnv* env, const char* name, int mwdbId, Count count, Read read) {
    trace_entry(name);
    const ReadLock<Manager> lock(*tsList, mwdbId);
    const int number = count();
    if (number < 1) {
        return nullptr;
    }
    constexpr jsize kSize = sizeof(_TSL_REC_T);
    jbyteArray array = env->NewByteArray(number * kSize);
    if (array == nullptr) {
        return nullptr;
    }
    for (int index = 0; index < number; ++index) {
        _TSL_REC_T record = {};
        int version = 0;
        const int result = read(index, &version, &record);
        if (result != kDone) {
            TAVRO_LOG_JNI("%s getInfoByIdx fail ret=%d ", name, result);
            return nullptr;
        }
        env->SetByteArrayRegion(array, index * kSize, kSize, reinterpret_cast<const jbyte*>(&record));
    }
    return array;
}

// Reads a stored record and puts the values of a Java object into it. Returns false when the record cannot be read
// or a JNI call has failed.
bool overlay(Jni& jni, int mwdbId, int record_id, jobject stream, _TSL_REC_T& record) {
    if (jni.failed() || tsList->getInfo(mwdbId, record_id, &record) != kDone) {
        return false;
    }
    _set_ts_info(jni, stream, record);
    return !jni.failed();
}

} // namespace

jint com_velotra_tv_tavro_ts_list_native_setup(JNIEnv*, jobject) { return set_up(tsList); }

jint com_velotra_tv_tavro_transportstreamlist_open(JNIEnv*, jobject, jint mwdbId) {
    return forward::open(kSilent, tsList, mwdbId);
}

jint com_velotra_tv_tavro_transportstreamlist_open_path(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::open_path(kSilent, tsList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_transportstreamlist_close(JNIEnv*, jobject, jint mwdbId) {
    return forward::close(kSilent, tsList, mwdbId);
}

jint com_velotra_tv_tavro_transportstreamlist_clean(JNIEnv*, jobject, jint mwdbId) {
    return forward::clean(kSilent, tsList, mwdbId);
}

jint com_velotra_tv_tavro_transportstreamlist_delete(JNIEnv*, jobject, jint mwdbId) {
    return forward::delete_list(kSilent, tsList, mwdbId);
}

jint com_velotra_tv_tavro_transportstreamlist_store(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::store(kSilent, tsList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_transportstreamlist_copy(JNIEnv*, jobject, jint sourceId, jint destinationId) {
    return forward::copy(kSilent, tsList, sourceId, destinationId);
}

jint com_velotra_tv_tavro_transportstreamlist_remove_info(JNIEnv* env, jobject, jstring identifier) {
    return forward::remove({__func__, kRemoveLine}, tsList, env, identifier);
}

jint com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId(JNIEnv* env, jobject, jint mwdbId,
                                                                   jstring identifier) {
    return forward::remove_by_record_id({__func__, kRemoveByRecordIdLine}, tsList, env, mwdbId, identifier);
}

jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfo(JNIEnv* env, jobject, jstring identifier) {
    Jni jni(env);
    int list_id = 0;
    int record_id = 0;
    if (!parse_identifier(jni, identifier, list_id, record_id)) {
        return nullptr;
    }
    _TSL_REC_T record = {};
    const int result = tsList->getInfo(list_id, record_id, &record);
    if (result != kDone) {
        // Deliberate: the line names service lists.
        TAVRO_LOG_JNI("%s getSVLInfo fail ret=%d ", __func__, result);
        return nullptr;
    }
    return to_byte_array(env, &record, sizeof(record));
}

jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfoList(JNIEnv* env, jobject, jint mwdbId) {
    return list_records(
        env, __func__, mwdbId, [&] { return tsList->getInfoListNum(mwdbId); },
        [&](int index, int* version, _TSL_REC_T* record) {
            return tsList->getInfoByIdx(mwdbId, index, version, record);
        });
}

jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(JNIEnv* env, jobject, jint mwdbId,
                                                                           jint satelliteRecordId) {
    return list_records(
        env, __func__, mwdbId, [&] { return tsList->getInfoListNumBySatellite(mwdbId, mwdbId, satelliteRecordId); },
        [&](int index, int* version, _TSL_REC_T* record) {
            return tsList->getInfoByIdxBySatellite(mwdbId, mwdbId, satelliteRecordId, index, version, record);
        });
}

jint com_velotra_tv_tavro_transportstreamlist_updateInfo(JNIEnv* env, jobject, jint mwdbId, jobject stream) {
    trace_entry(__func__);
    if (stream == nullptr) {
        return kFailed;
    }
    Jni jni(env);
    RecordObject object(jni, jni.class_of(stream), stream, kTransportStreamContainsKey);
    object.look_up_contains_key();
    int record_id = 0;
    {
        Key key(object, kIdKey);
        jstring identifier = key.present() ? object.string_field(kIdField).value_or(nullptr) : nullptr;
        int list_id = 0;
        if (identifier != nullptr && !parse_identifier(jni, identifier, list_id, record_id)) {
            key.keep_reference(); // deliberate: not deleted
            return kFailed;
        }
    }
    _TSL_REC_T record = {};
    return overlay(jni, mwdbId, record_id, stream, record) ? update_locked(*tsList, mwdbId, record) : kFailed;
}

jint com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId,
                                                                  jstring identifier) {
    trace_entry(__func__);
    Jni jni(env);
    const char* chars = jni.keep_utf_chars(identifier);
    if (jni.failed()) {
        return kFailed;
    }
    TAVRO_LOG_JNI("%s recId=%s", __func__, chars == nullptr ? "" : chars);
    int list_id = 0;
    int record_id = 0;
    if (!parse_identifier(jni, identifier, list_id, record_id)) {
        if (!jni.failed()) {
            TAVRO_LOG_JNI("%s tmpRecId=%d ", __func__, record_id);
        }
        return kFailed;
    }
    _TSL_REC_T record = {};
    if (tsList->getInfo(list_id, record_id, &record) != kDone) {
        return kFailed;
    }
    TslKind::stamp_list(record, mwdbId);
    return update_locked(*tsList, mwdbId, record);
}

jint com_velotra_tv_tavro_transportstreamlist_updateInfoList(JNIEnv* env, jobject, jint mwdbId, jobject streams) {
    trace_entry(__func__);
    Jni jni(env);
    JavaList list(jni, streams);
    if (jni.failed()) {
        return kFailed;
    }
    const WriteLock<Manager> lock(*tsList, mwdbId);
    jclass stream_class = jni.find_class(kTransportStreamInfo);
    jmethodID contains_key = jni.method(stream_class, "isContainsKey", kTransportStreamContainsKey);
    if (jni.failed()) {
        return kFailed;
    }
    for (jint i = 0; i < list.size(); ++i) {
        const LocalRef stream(jni, list.get(i));
        if (stream.get() == nullptr) {
            return kFailed;
        }
        RecordObject object(jni, stream_class, stream.get(), contains_key);
        int record_id = 0;
        {
            Key key(object, kIdKey);
            if (key.present()) {
                const std::optional<jstring> field = object.string_field(kIdField);
                const LocalRef identifier(jni, field.value_or(nullptr));
                int list_id = 0;
                if (field && !parse_identifier(jni, identifier.get(), list_id, record_id)) {
                    key.keep_reference(); // deliberate: not deleted
                    if (jni.failed()) {
                        return kFailed;
                    }
                    continue;
                }
            }
        }
        _TSL_REC_T record = {};
        if (!overlay(jni, mwdbId, record_id, stream.get(), record) || tsList->updateInfo(mwdbId, &record) != kDone) {
            return kFailed;
        }
    }
    return kDone;
}

jstring com_velotra_tv_tavro_transportstreamlist_add_Info(JNIEnv* env, jobject, jint mwdbId, jobject stream) {
    trace_entry({__func__, kAddLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    if (stream == nullptr || jni.failed()) {
        return nothing;
    }
    _TSL_REC_T record = {};
    _set_ts_info(jni, stream, record);
    if (jni.failed()) {
        return nothing;
    }
    const int status = tsList->addInfo(mwdbId, &record);
    return added(env, "tsList->addInfo", status, mwdbId, record.ui2_tsl_rec_id, nothing);
}

jstring com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId,
                                                                   jstring identifier) {
    trace_entry({__func__, kAddCopyLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    _TSL_REC_T record = {};
    if (!read_named(jni, *tsList, identifier, record)) {
        return nothing;
    }
    const int status = tsList->copyInfo(mwdbId, &record);
    return added(env, "tsList->copyInfo", status, mwdbId, record.ui2_tsl_rec_id, nothing);
}
