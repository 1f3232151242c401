#include "jni/bridges/satellite_list_bridge.h"

#include "jni/bridges/forwarding.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/satellite_record.h"

#include <string>

using namespace tavro;

namespace {

// Line numbers in the entry lines.
constexpr int kSetupLine = 3694;
constexpr int kCleanLine = 3700;
constexpr int kCloseLine = 3707;
constexpr int kDeleteLine = 3715;
constexpr int kCopyLine = 3723;
constexpr int kOpenLine = 3733;
constexpr int kOpenPathLine = 3741;
constexpr int kStoreLine = 3749;
constexpr int kAddLine = 4373;
constexpr int kAddCopyLine = 4464;
constexpr int kRemoveLine = 4492;
constexpr int kRemoveByRecordIdLine = 4502;
constexpr int kUpdateLine = 4690;
constexpr int kUpdateCopyLine = 4797;

constexpr std::uint8_t kNoToneBurst = 0xFF;

_SATL_REC_T new_record() {
    _SATL_REC_T record = {};
    record.t_diseqc_info.ui1_tone_burst = kNoToneBurst;
    return record;
}

// The record that an object names; both ids are 0 without an identifier.
struct RecordName {
    int list_id = 0;
    int record_id = 0;
};

// Returns false when the object's identifier cannot be parsed.
bool record_name_of(RecordObject& object, RecordName& name) {
    const Key key(object, kSatelliteIdKey);
    const std::optional<jstring> field = key.present() ? object.string_field(kSatelliteIdKey) : std::nullopt;
    const LocalRef identifier(object.jni(), field.value_or(nullptr));
    return identifier.get() == nullptr ||
           parse_identifier(object.jni(), identifier.get(), name.list_id, name.record_id);
}

constexpr int kUpdateIdentifierLine = 4714;
constexpr int kUpdateListIdentifierLine = 4847;

// Updates the record that a satellite names with the satellite's values, for the native `name`. `identifier_line` is
// the number in the debug line of the identifier.
Updated update(Jni& jni, jclass base_class, jobject satellite, const char* name, int identifier_line) {
    const LocalRef cls(jni, jni.class_of(satellite));
    RecordObject object(jni, cls.get(), base_class, satellite, kSatelliteContainsKey);
    object.look_up_contains_key();
    RecordName record_name;
    const bool parsed = record_name_of(object, record_name);
    if (jni.failed()) {
        return Updated::kFailed;
    }
    if (!parsed) {
        return Updated::kBadIdentifier;
    }
    const std::string identifier = combineStrMId(record_name.list_id, record_name.record_id);
    TAVRO_LOG_JNI("[%s][%d], sRecID: %s ", name, identifier_line, identifier.c_str());
    _SATL_REC_T record = {};
    if (satList->getInfo(identifier, &record) != kDone) {
        return Updated::kFailed;
    }
    // Deliberate: the polarization is not updated.
    set_main_data(object, record);
    set_diseqc_data(object, record.t_diseqc_info);
    set_lnb_data(object, record);
    return !jni.failed() && update_locked(*satList, record_name.list_id, record) == kDone ? Updated::kDone
                                                                                          : Updated::kFailed;
}

} // namespace

jint com_velotra_tv_tavro_satellitelist_native_setup(JNIEnv*, jobject) {
    trace_entry({__func__, kSetupLine});
    return set_up(satList);
}

jint com_velotra_tv_tavro_satellitelist_open(JNIEnv*, jobject, jint mwdbId) {
    return forward::open({__func__, kOpenLine}, satList, mwdbId);
}

jint com_velotra_tv_tavro_satellitelist_open_path(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::open_path({__func__, kOpenPathLine}, satList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_satellitelist_close(JNIEnv*, jobject, jint mwdbId) {
    return forward::close({__func__, kCloseLine}, satList, mwdbId);
}

jint com_velotra_tv_tavro_satellitelist_clean(JNIEnv*, jobject, jint mwdbId) {
    return forward::clean({__func__, kCleanLine}, satList, mwdbId);
}

jint com_velotra_tv_tavro_satellitelist_delete(JNIEnv*, jobject, jint mwdbId) {
    return forward::delete_list({__func__, kDeleteLine}, satList, mwdbId);
}

jint com_velotra_tv_tavro_satellitelist_store(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::store({__func__, kStoreLine}, satList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_satellitelist_copy(JNIEnv*, jobject, jint sourceId, jint destinationId) {
    return forward::copy({__func__, kCopyLine}, satList, sourceId, destinationId);
}

jint com_velotra_tv_tavro_satellitelist_remove_info(JNIEnv* env, jobject, jstring identifier) {
    return forward::remove({__func__, kRemoveLine}, satList, env, identifier);
}

jint com_velotra_tv_tavro_satellitelist_remove_info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    return forward::remove_by_record_id({__func__, kRemoveByRecordIdLine}, satList, env, mwdbId, identifier);
}

jint com_velotra_tv_tavro_satellitelist_updateInfo(JNIEnv* env, jobject, jobject satellite) {
    trace_entry({__func__, kUpdateLine});
    if (satellite == nullptr) {
        return kFailed;
    }
    Jni jni(env);
    jclass base_class = jni.find_class(kSatelliteInfoBase);
    const Updated updated = update(jni, base_class, satellite, __func__, kUpdateIdentifierLine);
    return updated == Updated::kDone ? kDone : kFailed;
}

jint com_velotra_tv_tavro_satellitelist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    trace_entry({__func__, kUpdateCopyLine});
    _SATL_REC_T record = {};
    return satList->getInfo(jstr2str(env, identifier), &record) == kDone ? update_locked(*satList, mwdbId, record)
                                                                         : kFailed;
}

jint com_velotra_tv_tavro_satellitelist_updateInfoList(JNIEnv* env, jobject, jobject satellites) {
    trace_entry(__func__);
    Jni jni(env);
    JavaList list(jni, satellites);
    if (jni.failed()) {
        return kFailed;
    }
    if (list.size() < 1) {
        return kDone;
    }
    jclass base_class = jni.find_class(kSatelliteInfoBase);
    for (jint i = 0; i < list.size(); ++i) {
        const LocalRef satellite(jni, list.get(i));
        if (satellite.get() == nullptr) {
            return kFailed;
        }
        switch (update(jni, base_class, satellite.get(), __func__, kUpdateListIdentifierLine)) {
        case Updated::kDone:
            break;
        case Updated::kFailed:
            return kFailed;
        case Updated::kBadIdentifier:
            // Deliberate: after the first element this returns success.
            return i == 0 ? kFailed : kDone;
        }
    }
    return kDone;
}

jstring com_velotra_tv_tavro_satellitelist_add_Info(JNIEnv* env, jobject, jint mwdbId, jobject satellite) {
    trace_entry({__func__, kAddLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    if (satellite == nullptr || jni.failed()) {
        return nothing;
    }
    _SATL_REC_T record = new_record();
    jclass cls = jni.class_of(satellite);
    RecordObject object(jni, cls, jni.find_class(kSatelliteInfoBase), satellite, kSatelliteContainsKey);
    set_main_data(object, record);
    set_diseqc_data(object, record.t_diseqc_info);
    set_sub_diseqc_data(object, record.t_diseqc_info);
    set_lnb_data(object, record);
    if (jni.failed()) {
        return nothing;
    }
    const int status = satList->addInfo(mwdbId, &record);
    return added(env, "satList->addInfo", status, mwdbId, record.ui2_satl_rec_id, nothing);
}

jstring com_velotra_tv_tavro_satellitelist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    trace_entry({__func__, kAddCopyLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    if (jni.failed()) {
        return nothing;
    }
    _SATL_REC_T record = new_record();
    if (satList->getInfo(jni.text(identifier), &record) != kDone) {
        return nothing;
    }
    const int status = satList->copyInfo(mwdbId, &record);
    return added(env, "satList->copyInfo", status, mwdbId, record.ui2_satl_rec_id, nothing);
}
