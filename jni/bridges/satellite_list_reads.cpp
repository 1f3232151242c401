// The satellite list's natives that hand satellites to Java as objects.

#include "jni/bridges/info_objects.h"
#include "jni/bridges/list_lock.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/satellite_record.h"
#include "text/identifier.h"

#include <string>

using tavro::JavaClass;
using tavro::JavaList;
using tavro::Jni;
using tavro::LocalRef;

namespace {

using Manager = NativeVltTvSatelliteList;
using ReadLock = tavro::ListLock<Manager, &Manager::readLockSatl, &Manager::readUnLockSatl>;

constexpr int kGetInfoListLine = 4601;

// The class of the result objects and the class of the carrier, which hands them its values.
struct InfoClasses {
    JavaClass info;
    JavaClass base;
};

bool find_classes(Jni& jni, const char* name, InfoClasses& classes) {
    return tavro::find_class(jni, name, kSatelliteInfo, "Info class not find!", "init class failed!", classes.info) &&
           tavro::find_class(jni, name, kSatelliteInfoBase, "VltTvSatelliteInfoBase class not find!",
                             "jcls_init init class failed!", classes.base);
}

// The object whose setters take a record's values, and through which results get them.
class Carrier {
public:
    Carrier(Jni& jni, const InfoClasses& classes)
        : jni_(jni), classes_(classes), object_(jni.new_object(classes.base.cls, classes.base.constructor)),
          take_over_(jni.method(classes.info.cls, "satlToSatelliteInfo",
                                "(Lcom/velotra/tv/tavro/services/channellist/VltTvSatelliteInfoBase;)V")) {}

    // Makes the result object for the record of that identifier and gives the carrier the identifier.
    jobject begin_result(int list_id, int record_id) {
        const LocalRef identifier(jni_, tavro::combine_identifier(jni_, list_id, record_id));
        jobject result = jni_.new_object(classes_.info.cls, classes_.info.constructor);
        jni_.call_void(object_, jni_.method(classes_.base.cls, "setRecId", "(Ljava/lang/String;)V"), identifier.get());
        return result;
    }

    void put_all(const _SATL_REC_T& record) {
        get_satellite_data(jni_, classes_.base.cls, object_, record);
        get_all_diseqc_data(jni_, classes_.base.cls, object_, record.t_diseqc_info);
    }

    void put(JavaList& keys, const _SATL_REC_T& record) {
        for (jint i = 0; i < keys.size(); ++i) {
            const LocalRef name(jni_, static_cast<jstring>(keys.get(i)));
            const char* key = jni_.keep_utf_chars(name.get());
            if (key != nullptr) {
                get_main_data(jni_, classes_.base.cls, object_, key, record);
                get_diseqc_data(jni_, classes_.base.cls, object_, key, record.t_diseqc_info);
            }
        }
    }

    // Lets the result take over what the carrier holds. Null when the platform has failed.
    jobject finish(jobject result) {
        jni_.call_void(result, take_over_, object_);
        return jni_.failed() ? nullptr : result;
    }

private:
    Jni& jni_;
    const InfoClasses& classes_;
    jobject object_;
    jmethodID take_over_;
};

} // namespace

jobject com_velotra_tv_tavro_satellitelist_getInfo(JNIEnv* env, jobject, jstring identifier, jobject keys) {
    Jni jni(env);
    const std::string text = jni.text(identifier);
    InfoClasses classes;
    if (!find_classes(jni, __func__, classes)) {
        return nullptr;
    }
    Carrier carrier(jni, classes);
    if (jni.failed()) {
        return nullptr;
    }
    _SATL_REC_T record = {};
    const int read = satList->getInfo(text, &record);
    TAVRO_LOG_DEBUG(kNoTag, "[%s]: pt_satl_rec.ui4_mask = %d \n", __func__, static_cast<int>(record.ui4_mask));
    if (read != kDone) {
        TAVRO_LOG_JNI("%s getInfo fail ret=%d ", __func__, read);
        return nullptr;
    }
    // The manager has refused text without a comma, so that this test only makes the split below safe.
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        TAVRO_LOG_ERROR(kNoTag, "Unknown recId info.\n");
        return nullptr;
    }
    const int list_id = decimal(std::string_view(text).substr(0, comma));
    jobject result = carrier.begin_result(list_id, record.ui2_satl_rec_id);
    if (keys == nullptr) {
        carrier.put_all(record);
    } else {
        JavaList list(jni, keys);
        if (jni.failed()) {
            return nullptr;
        }
        TAVRO_LOG_JNI("Key List size = %d\n", list.size());
        carrier.put(list, record);
    }
    return carrier.finish(result);
}

jobject com_velotra_tv_tavro_satellitelist_getInfoList(JNIEnv* env, jobject, jint mwdbId, jobject keys) {
    tavro::trace_entry(__func__, kGetInfoListLine);
    Jni jni(env);
    tavro::ResultList results;
    InfoClasses classes;
    if (!results.create(jni, __func__) || !find_classes(jni, __func__, classes)) {
        return nullptr;
    }
    const ReadLock lock(*satList, mwdbId);
    const int number = satList->getInfoListNum(mwdbId);
    Carrier carrier(jni, classes);
    if (jni.failed()) {
        return nullptr;
    }
    for (int index = 0; index < number; ++index) {
        _SATL_REC_T record = {};
        int version = 0;
        if (satList->getInfoByIdx(mwdbId, index, &version, &record) != kDone) {
            TAVRO_LOG_JNI("%s : %s", __func__, "getInfoByIdx failed!");
            return nullptr;
        }
        TAVRO_LOG_DEBUG(kNoTag, "[%s]:List pt_satl_rec.ui4_mask = %d \n", __func__, static_cast<int>(record.ui4_mask));
        const LocalRef result(jni, carrier.begin_result(mwdbId, record.ui2_satl_rec_id));
        if (keys == nullptr) {
            carrier.put_all(record);
        } else {
            JavaList list(jni, keys);
            if (jni.failed()) {
                return nullptr;
            }
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]getInfoList, Key List size = %d\n", list.size());
            carrier.put(list, record);
        }
        jobject filled = carrier.finish(result.get());
        if (filled == nullptr) {
            return nullptr;
        }
        results.add(jni, filled);
    }
    return results.list();
}
