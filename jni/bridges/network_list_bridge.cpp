#include "jni/bridges/network_list_bridge.h"

#include "jni/bridges/list_lock.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/network_record.h"

using tavro::JavaList;
using tavro::Jni;
using tavro::Key;
using tavro::LocalRef;
using tavro::RecordObject;

namespace {

using Manager = NativeVltTvNetworkList;
using WriteLock = tavro::ListLock<Manager, &Manager::lockNwl, &Manager::unLockNwl>;

struct Lines : tavro::EntryLines {
    static constexpr int kRemove = 3238;
    static constexpr int kRemoveByRecordId = 3248;
};

// Takes the record id of the identifier that an object carries under `key`; its list id is ignored. Without
// one the record id stays. Returns false when it cannot be parsed.
bool take_record_id(RecordObject& object, const Key& key, int& record_id) {
    const std::optional<jstring> field = key.present() ? object.string_field(kNetworkIdKey) : std::nullopt;
    const LocalRef identifier(object.jni(), field.value_or(nullptr));
    int list_id = 0;
    return identifier.get() == nullptr || tavro::parse_identifier(object.jni(), identifier.get(), list_id, record_id);
}

// The same for an update, which leaves the key's reference when the identifier cannot be parsed, deliberately.
bool take_record_id_for_update(RecordObject& object, int& record_id) {
    Key key(object, kNetworkIdKey);
    if (take_record_id(object, key, record_id)) {
        return true;
    }
    key.keep_reference();
    return false;
}

} // namespace

jint com_velotra_tv_tavro_nw_list_native_setup(JNIEnv*, jobject) { return tavro::set_up(nwList); }

TAVRO_DEFINE_FORWARDING(com_velotra_tv_tavro_networklist, nwList, WriteLock, Lines);

jint com_velotra_tv_tavro_networklist_updateInfo(JNIEnv* env, jobject, jint mwdbId, jobject network) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 3462);
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
    return jni.failed() ? kFailed : tavro::update_locked<WriteLock>(*nwList, mwdbId, record);
}

jint com_velotra_tv_tavro_networklist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 3555);
    Jni jni(env);
    _NWL_REC_T record = {};
    if (!tavro::read_named(jni, *nwList, identifier, record)) {
        return kFailed;
    }
    NwlKind::stamp_list(record, mwdbId);
    return tavro::update_locked<WriteLock>(*nwList, mwdbId, record);
}

jint com_velotra_tv_tavro_networklist_updateInfoList(JNIEnv* env, jobject, jint mwdbId, jobject networks) {
    TAVRO_LOG_JNI("%s", __func__);
    Jni jni(env);
    JavaList list(jni, networks);
    if (jni.failed()) {
        return kFailed;
    }
    WriteLock lock(*nwList, mwdbId);
    int saved = kFailed; // of the latest record read
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
            // Deliberate: the list is half applied, and its lock is kept from everybody else.
            lock.leave_locked();
            return saved;
        }
        _NWL_REC_T record = {};
        saved = nwList->getInfo(mwdbId, record_id, &record);
        if (saved != kDone) {
            return kFailed;
        }
        set_network_info(object, record);
        // Another failure than -22 would not end the list, but the manager has none.
        if (jni.failed() || nwList->updateInfo(mwdbId, &record) == kFailed) {
            return kFailed;
        }
    }
    return kDone;
}

jstring com_velotra_tv_tavro_networklist_add_Info(JNIEnv* env, jobject, jint mwdbId, jobject network) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 3109);
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
    return tavro::answer_add(env, "nwList->addInfo", status, mwdbId, record.ui2_nwl_rec_id, nothing);
}

jstring com_velotra_tv_tavro_networklist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    TAVRO_LOG_JNI("[%s][%d] ", __func__, 3208);
    Jni jni(env);
    jstring nothing = jni.new_string("");
    _NWL_REC_T record = {};
    if (!tavro::read_named(jni, *nwList, identifier, record)) {
        return nothing;
    }
    const int status = nwList->copyInfo(mwdbId, &record);
    return tavro::answer_add(env, "nwList->copyInfo", status, mwdbId, record.ui2_nwl_rec_id, nothing);
}
