#include "jni/bridges/network_list_bridge.h"

#include "jni/bridges/forwarding.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/network_record.h"

using namespace tavro;

namespace {

// Line numbers in the entry lines.
constexpr int kAddLine = 3109;
constexpr int kAddCopyLine = 3208;
constexpr int kRemoveLine = 3238;
constexpr int kRemoveByRecordIdLine = 3248;
constexpr int kUpdateLine = 3462;
constexpr int kUpdateCopyLine = 3555;

// Takes the record id from the identifier that an object carries under `key`; the list id is ignored. Without an
// identifier the record id stays. Returns false when the identifier cannot be parsed.
bool take_record_id(RecordObject& object, const Key& key, int& record_id) {
    const std::optional<jstring> field = key.present() ? object.string_field(kNetworkIdKey) : std::nullopt;
    const LocalRef identifier(object.jni(), field.value_or(nullptr));
    int list_id = 0;
    return identifier.get() == nullptr || parse_identifier(object.jni(), identifier.get(), list_id, record_id);
}

// The same for an update. Deliberate: it keeps the key's reference when the identifier cannot be parsed.
bool take_record_id_for_update(RecordObject& object, int& record_id) {
    Key key(object, kNetworkIdKey);
    if (take_record_id(object, key, record_id)) {
        return true;
    }
    key.keep_reference();
    return false;
}

} // namespace

jint com_velotra_tv_tavro_nw_list_native_setup(JNIEnv*, jobject) { return set_up(nwList); }

jint com_velotra_tv_tavro_networklist_open(JNIEnv*, jobject, jint mwdbId) {
    return forward::open(kSilent, nwList, mwdbId);
}

jint com_velotra_tv_tavro_networklist_open_path(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::open_path(kSilent, nwList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_networklist_close(JNIEnv*, jobject, jint mwdbId) {
    return forward::close(kSilent, nwList, mwdbId);
}

jint com_velotra_tv_tavro_networklist_clean(JNIEnv*, jobject, jint mwdbId) {
    return forward::clean(kSilent, nwList, mwdbId);
}

jint com_velotra_tv_tavro_networklist_delete(JNIEnv*, jobject, jint mwdbId) {
    return forward::delete_list(kSilent, nwList, mwdbId);
}

jint com_velotra_tv_tavro_networklist_store(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::store(kSilent, nwList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_networklist_copy(JNIEnv*, jobject, jint sourceId, jint destinationId) {
    return forward::copy(kSilent, nwList, sourceId, destinationId);
}

jint com_velotra_tv_tavro_networklist_remove_info(JNIEnv* env, jobject, jstring identifier) {
    return forward::remove({__func__, kRemoveLine}, nwList, env, identifier);
}

jint com_velotra_tv_tavro_networklist_remove_info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    return forward::remove_by_record_id({__func__, kRemoveByRecordIdLine}, nwList, env, mwdbId, identifier);
}

jint com_velotra_tv_tavro_networklist_updateInfo(JNIEnv* env, jobject, jint mwdbId, jobject network) {
    trace_entry({__func__, kUpdateLine});
    if (network == nullptr) {
        return kFailed;
    }
    Jni jni(env);
    RecordObject object(jni, jni.class_of(network), network, kNetworkContainsKey);
    object.look_up_contains_key();
    int record_id = 0;
    _NWL_REC_T record = {};
    if (!take_record_id_for_update(object, record_id) || jni.failed() ||
        nwList->getInfo(mwdbId, record_id, &record) != kDone) {
        return kFailed;
    }
    set_network_info(object, record);
    return jni.failed() ? kFailed : update_locked(*nwList, mwdbId, record);
}

jint com_velotra_tv_tavro_networklist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    trace_entry({__func__, kUpdateCopyLine});
    Jni jni(env);
    _NWL_REC_T record = {};
    if (!read_named(jni, *nwList, identifier, record)) {
        return kFailed;
    }
    NwlKind::stamp_list(record, mwdbId);
    return update_locked(*nwList, mwdbId, record);
}

jint com_velotra_tv_tavro_networklist_updateInfoList(JNIEnv* env, jobject, jint mwdbId, jobject networks) {
    trace_entry(__func__);
    Jni jni(env);
    JavaList list(jni, networks);
    if (jni.failed()) {
        return kFailed;
    }
    WriteLock<NativeVltTvNetworkList> lock(*nwList, mwdbId);
    int read = kFailed; // status of the latest read
    for (jint i = 0; i < list.size(); ++i) {
        const LocalRef network(jni, list.get(i));
        if (network.get() == nullptr) {
            return kFailed;
        }
        const LocalRef cls(jni, jni.class_of(network.get()));
        RecordObject object(jni, cls.get(), network.get(), kNetworkContainsKey);
        object.look_up_contains_key();
        int record_id = 0;
        const bool named = take_record_id_for_update(object, record_id);
        if (jni.failed()) {
            return kFailed;
        }
        if (!named) {
            // Deliberate: the list stays half updated, and locked.
            lock.leave_locked();
            return read;
        }
        _NWL_REC_T record = {};
        read = nwList->getInfo(mwdbId, record_id, &record);
        if (read != kDone) {
            return kFailed;
        }
        set_network_info(object, record);
        // Only -22 ends the list; the manager returns no other failure.
        if (jni.failed() || nwList->updateInfo(mwdbId, &record) == kFailed) {
            return kFailed;
        }
    }
    return kDone;
}

jstring com_velotra_tv_tavro_networklist_add_Info(JNIEnv* env, jobject, jint mwdbId, jobject network) {
    trace_entry({__func__, kAddLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    if (network == nullptr || jni.failed()) {
        return nothing;
    }
    _NWL_REC_T record = {};
    RecordObject object(jni, jni.class_of(network), network, kNetworkContainsKey);
    object.look_up_contains_key();
    set_network_info(object, record);
    int record_id = 0;
    if (take_record_id(object, Key(object, kNetworkIdKey), record_id)) {
        record.ui2_nwl_rec_id = low16(record_id);
    }
    if (jni.failed()) {
        return nothing;
    }
    const int status = nwList->addInfo(mwdbId, &record);
    return added(env, "nwList->addInfo", status, mwdbId, record.ui2_nwl_rec_id, nothing);
}

jstring com_velotra_tv_tavro_networklist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    trace_entry({__func__, kAddCopyLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    _NWL_REC_T record = {};
    if (!read_named(jni, *nwList, identifier, record)) {
        return nothing;
    }
    const int status = nwList->copyInfo(mwdbId, &record);
    return added(env, "nwList->copyInfo", status, mwdbId, record.ui2_nwl_rec_id, nothing);
}
