// The satellite list's natives that read satellites into Java objects.

#include "jni/bridges/entry_line.h"
#include "jni/bridges/info_objects.h"
#include "jni/bridges/list_locks.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/satellite_record.h"
#include "text/identifier.h"

#include <string>

using namespace tavro;

namespace {

constexpr int kGetInfoListLine = 4601;

constexpr InfoMethods kMethods = {"satlToSatelliteInfo",
                                  "(Lcom/velotra/tv/tavro/services/channellist/VltTvSatelliteInfoBase;)V", "setRecId"};

bool find_classes(Jni& jni, const char* name, InfoClasses& classes) {
    return find_class(jni, name, kSatelliteInfo, "Info class not find!", "init class failed!", classes.info) &&
           find_class(jni, name, kSatelliteInfoBase, "VltTvSatelliteInfoBase class not find!",
                      "jcls_init init class failed!", classes.base);
}

// Makes the info object for the record with that identifier and writes the identifier.
jobject begin_info(Jni& jni, const InfoClasses& classes, InfoWriter& writer, int list_id, int record_id) {
    const LocalRef identifier(jni, combine_identifier(jni, list_id, record_id));
    jobject info = jni.new_object(classes.info.cls, classes.info.constructor);
    writer.set_identifier(identifier.get());
    return info;
}

// Writes every value.
void write_all(Jni& jni, InfoWriter& writer, const _SATL_REC_T& record) {
    get_satellite_data(jni, writer.base_class(), writer.carrier(), record);
    get_all_diseqc_data(jni, writer.base_class(), writer.carrier(), record.t_diseqc_info);
}

// Writes the values of the keys in a Java list.
void write(Jni& jni, InfoWriter& writer, JavaList& keys, const _SATL_REC_T& record) {
    for (jint i = 0; i < keys.size(); ++i) {
        const LocalRef name(jni, static_cast<jstring>(keys.get(i)));
        const char* key = jni.keep_utf_chars(name.get());
        if (key != nullptr) {
            get_main_data(jni, writer.base_class(), writer.carrier(), key, record);
            get_diseqc_data(jni, writer.base_class(), writer.carrier(), key, record.t_diseqc_info);
        }
    }
}

} // namespace

jobject com_velotra_tv_tavro_satellitelist_getInfo(JNIEnv* env, jobject, jstring identifier, jobject keys) {
    Jni jni(env);
    const std::string text = jni.text(identifier);
    InfoClasses classes;
    if (!find_classes(jni, __func__, classes)) {
        return nullptr;
    }
    InfoWriter writer(jni, classes, kMethods);
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
    // The manager has refused text without a comma already; the test keeps the split below safe.
    const std::size_t comma = text.find(',');
    if (comma == std::string::npos) {
        TAVRO_LOG_ERROR(kNoTag, "Unknown recId info.\n");
        return nullptr;
    }
    const int list_id = decimal(std::string_view(text).substr(0, comma));
    jobject info = begin_info(jni, classes, writer, list_id, record.ui2_satl_rec_id);
    if (keys == nullptr) {
        write_all(jni, writer, record);
    } else {
        JavaList list(jni, keys);
        if (jni.failed()) {
            return nullptr;
        }
        TAVRO_LOG_JNI("Key List size = %d\n", list.size());
        write(jni, writer, list, record);
    }
    return writer.finish(info);
}

jobject com_velotra_tv_tavro_satellitelist_getInfoList(JNIEnv* env, jobject, jint mwdbId, jobject keys) {
    trace_entry({__func__, kGetInfoListLine});
    Jni jni(env);
    ResultList results;
    InfoClasses classes;
    if (!results.create(jni, __func__) || !find_classes(jni, __func__, classes)) {
        return nullptr;
    }
    const ReadLock<NativeVltTvSatelliteList> lock(*satList, mwdbId);
    const int number = satList->getInfoListNum(mwdbId);
    InfoWriter writer(jni, classes, kMethods);
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
        const LocalRef info(jni, begin_info(jni, classes, writer, mwdbId, record.ui2_satl_rec_id));
        if (keys == nullptr) {
            write_all(jni, writer, record);
        } else {
            JavaList list(jni, keys);
            if (jni.failed()) {
                return nullptr;
            }
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]getInfoList, Key List size = %d\n", list.size());
            write(jni, writer, list, record);
        }
        jobject filled = writer.finish(info.get());
        if (filled == nullptr) {
            return nullptr;
        }
        results.add(jni, filled);
    }
    return results.list();
}
