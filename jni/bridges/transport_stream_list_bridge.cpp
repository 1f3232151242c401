#include "jni/bridges/transport_stream_list_bridge.h"

#include "jni/bridges/list_lock.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/transport_stream_record.h"

using tavro::JavaList;
using tavro::Jni;
using tavro::Key;
using tavro::LocalRef;
using tavro::RecordObject;

namespace {

using Manager = NativeVltTvTransportStreamList;
using WriteLock = tavro::ListLock<Manager, &Manager::lockTsl, &Manager::unLockTsl>;
using ReadLock = tavro::ListLock<Manager, &Manager::readLockTsl, &Manager::readUnLockTsl>;

struct Lines : tavro::EntryLines {
    static constexpr int kRemove = 2867;
    static constexpr int kRemoveByRecordId = 2876;
};

constexpr char kIdKey[] = "TslIdTslRecId";
constexpr char kIdField[] = "tslIdTslRecId";

// Hands the records of a list to Java. `count` and `read` are the manager's calls; `name` is the native's.
template <class Count, class Read>
jbyteArray list_records(JNIEnv* env, const char* name, int mwdbId, Count count, Read read) {
    TAVRO_LOG_JNI("%s", name);
    const ReadLock lock(*tsList, mwdbId);
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

// Overlays a stored record with the values of a Java object. Returns false when it cannot be read or a JNI
// call has failed.
bool overlay(Jni& jni, int mwdbId, int record_id, jobject stream, _TSL_REC_T& record) {
    if (jni.failed() || tsList->getInfo(mwdbId, record_id, &record) != kDone) {
        return false;
    }
    _set_ts_info(jni, stream, record);
    return !jni.failed();
}

} // namespace

jint com_velotra_tv_tavro_ts_list_native_setup(JNIEnv*, jobject) { return tavro::set_up(tsList); }

TAVRO_DEFINE_FORWARDING(com_velotra_tv_tavro_transportstreamlist, tsList, WriteLock, Lines);

jbyteArray com_velotra_tv_tavro_transportstreamlist_getInfo(JNIEnv* env, jobject, jstring identifier) {
    Jni jni(env);
    int list_id = 0;
    int record_id = 0;
    if (!tavro::parse_identifier(jni, identifier, list_id, record_id)) {
        return nullptr;
    }
    _TSL_REC_T record = {};
    const int result = tsList->getInfo(list_id, record_id, &record);
    if (result != kDone) {
        // The line speaks of service lists, deliberately.
        TAVRO_LOG_JNI("%s getSVLInfo fail ret=%d ", __func__, result);
        return nullptr;
    }
    return tavro::to_byte_array(env, &record, sizeof(record));
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
    TAVRO_LOG_JNI("%s", __func__);
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
        if (identifier != nullptr && !tavro::parse_identifier(jni, identifier, list_id, record_id)) {
            key.keep_reference(); // deliberately
            return kFailed;
        }
    }
    _TSL_REC_T record = {};
    return overlay(jni, mwdbId, record_id, stream, record) ? tavro::update_locked<WriteLock>(*tsList, mwdbId, record)
                                                           : kFailed;
}

jint com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId,
                                                                  jstring identifier) {
    TAVRO_LOG_JNI("%s", __func__);
    Jni jni(env);
    const char* chars = jni.keep_utf_chars(identifier);
    if (jni.failed()) {
        return kFailed;
    }
    TAVRO_LOG_JNI("%s recId=%s", __func__, chars == nullptr ? "" : chars);
    int list_id = 0;
    int record_id = 0;
    if (!tavro::parse_identifier(jni, identifier, list_id, record_id)) {
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
    return tavro::update_locked<WriteLock>(*tsList, mwdbId, record);
}

jint com_velotra_tv_tavro_transportstreamlist_updateInfoList(JNIEnv* env, jobject, jint mwdbId, jobject streams) {
    TAVRO_LOG_JNI("%s", __func__);
    Jni jni(env);
    JavaList list(jni, streams);
    if (jni.failed()) {
        return kFailed;
    }
    const WriteLock lock(*tsList, mwdbId);
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
                if (field && !tavro::parse_identifier(jni, identifier.get(), list_id, record_id)) {
                    key.keep_reference(); // deliberately
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
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 2811);
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
    return tavro::answer_add(env, "tsList->addInfo", status, mwdbId, record.ui2_tsl_rec_id, nothing);
}

jstring com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId,
                                                                   jstring identifier) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 2836);
    Jni jni(env);
    jstring nothing = jni.new_string("");
    _TSL_REC_T record = {};
    if (!tavro::read_named(jni, *tsList, identifier, record)) {
        return nothing;
    }
    const int status = tsList->copyInfo(mwdbId, &record);
    return tavro::answer_add(env, "tsList->copyInfo", status, mwdbId, record.ui2_tsl_rec_id, nothing);
}
