#include "jni/bridges/satellite_list_bridge.h"

#include "jni/bridges/list_lock.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/satellite_record.h"

#include <string>

using tavro::JavaList;
using tavro::Jni;
using tavro::Key;
using tavro::LocalRef;
using tavro::RecordObject;

namespace {

using Manager = NativeVltTvSatelliteList;
using WriteLock = tavro::ListLock<Manager, &Manager::lockSatl, &Manager::unLockSatl>;

struct Lines : tavro::EntryLines {
    static constexpr int kSetup = 3694;
    static constexpr int kClean = 3700;
    static constexpr int kClose = 3707;
    static constexpr int kDelete = 3715;
    static constexpr int kCopy = 3723;
    static constexpr int kOpen = 3733;
    static constexpr int kOpenPath = 3741;
    static constexpr int kStore = 3749;
    static constexpr int kAdd = 4373;
    static constexpr int kAddByRecordId = 4464;
    static constexpr int kRemove = 4492;
    static constexpr int kRemoveByRecordId = 4502;
    static constexpr int kUpdate = 4690;
    static constexpr int kUpdateByRecordId = 4797;
};

constexpr std::uint8_t kNoToneBurst = 0xFF;

_SATL_REC_T new_record() {
    _SATL_REC_T record = {};
    record.t_diseqc_info.ui1_tone_burst = kNoToneBurst;
    return record;
}

// The record that an object names; both ids are 0 when it names none.
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
           tavro::parse_identifier(object.jni(), identifier.get(), name.list_id, name.record_id);
}

constexpr int kUpdateIdentifierLine = 4714;
constexpr int kUpdateListIdentifierLine = 4847;

enum class Applied { kStored, kFailed, kBadIdentifier };

// Overlays the record that a satellite names with its values, on behalf of the native `name`.
// `identifier_line` is the number of the line that tells the identifier.
Applied apply(Jni& jni, jclass base_class, jobject satellite, const char* name, int identifier_line) {
    const LocalRef cls(jni, jni.class_of(satellite));
    RecordObject object(jni, cls.get(), base_class, satellite, kSatelliteContainsKey);
    object.look_up_contains_key();
    RecordName record_name;
    const bool parsed = record_name_of(object, record_name);
    if (jni.failed()) {
        return Applied::kFailed;
    }
    if (!parsed) {
        return Applied::kBadIdentifier;
    }
    const std::string identifier = combineStrMId(record_name.list_id, record_name.record_id);
    TAVRO_LOG_JNI("[%s][%d], sRecID: %s ", name, identifier_line, identifier.c_str());
    _SATL_REC_T record = {};
    if (satList->getInfo(identifier, &record) != kDone) {
        return Applied::kFailed;
    }
    // The polarisation stays, deliberately.
    set_main_data(object, record);
    set_diseqc_data(object, record.t_diseqc_info);
    set_lnb_data(object, record);
    return !jni.failed() && tavro::update_locked<WriteLock>(*satList, record_name.list_id, record) == kDone
               ? Applied::kStored
               : Applied::kFailed;
}

} // namespace

jint com_velotra_tv_tavro_satellitelist_native_setup(JNIEnv*, jobject) {
    tavro::trace_entry(__func__, Lines::kSetup);
    return tavro::set_up(satList);
}

TAVRO_DEFINE_FORWARDING(com_velotra_tv_tavro_satellitelist, satList, WriteLock, Lines);

jint com_velotra_tv_tavro_satellitelist_updateInfo(JNIEnv* env, jobject, jobject satellite) {
    tavro::trace_entry(__func__, Lines::kUpdate);
    if (satellite == nullptr) {
        return kFailed;
    }
    Jni jni(env);
    jclass base_class = jni.find_class(kSatelliteInfoBase);
    const Applied applied = apply(jni, base_class, satellite, __func__, kUpdateIdentifierLine);
    return applied == Applied::kStored ? kDone : kFailed;
}

jint com_velotra_tv_tavro_satellitelist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    tavro::trace_entry(__func__, Lines::kUpdateByRecordId);
    _SATL_REC_T record = {};
    return satList->getInfo(jstr2str(env, identifier), &record) == kDone
               ? tavro::update_locked<WriteLock>(*satList, mwdbId, record)
               : kFailed;
}

jint com_velotra_tv_tavro_satellitelist_updateInfoList(JNIEnv* env, jobject, jobject satellites) {
    TAVRO_LOG_JNI("%s", __func__);
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
        switch (apply(jni, base_class, satellite.get(), __func__, kUpdateListIdentifierLine)) {
        case Applied::kStored:
            break;
        case Applied::kFailed:
            return kFailed;
        case Applied::kBadIdentifier:
            // Deliberate: behind the first element this looks like success.
            return i == 0 ? kFailed : kDone;
        }
    }
    return kDone;
}

jstring com_velotra_tv_tavro_satellitelist_add_Info(JNIEnv* env, jobject, jint mwdbId, jobject satellite) {
    tavro::trace_entry(__func__, Lines::kAdd);
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
    return tavro::answer_add(env, "satList->addInfo", status, mwdbId, record.ui2_satl_rec_id, nothing);
}

jstring com_velotra_tv_tavro_satellitelist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    tavro::trace_entry(__func__, Lines::kAddByRecordId);
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
    return tavro::answer_add(env, "satList->copyInfo", status, mwdbId, record.ui2_satl_rec_id, nothing);
}
