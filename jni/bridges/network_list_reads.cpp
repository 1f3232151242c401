// The network list's natives that read networks into Java objects.

#include "jni/bridges/entry_line.h"
#include "jni/bridges/info_objects.h"
#include "jni/bridges/list_locks.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/network_record.h"

#include <cstring>

using namespace tavro;

namespace {

constexpr int kGetInfoLine = 3258;

constexpr InfoMethods kMethods = {
    "nwlToNetworkInfo", "(Lcom/velotra/tv/tavro/services/channellist/VltTvNetworkInfoBase;)V", "setNwlIdNwlRecId"};

bool find_info_class(Jni& jni, const char* name, InfoClasses& classes) {
    return find_class(jni, name, kNetworkInfo, "Info class not find!", "init class failed!", classes.info);
}

bool find_base_class(Jni& jni, const char* name, InfoClasses& classes) {
    return find_class(jni, name, kNetworkInfoBase, "VltTvNetworkInfoBase class not find!",
                      "jcls_init init class failed!", classes.base);
}

// Writes every value.
void write_all(Jni& jni, InfoWriter& writer, jstring identifier, const _NWL_REC_T& record) {
    writer.set_identifier(identifier);
    _get_networklist_data(jni, writer.base_class(), writer.carrier(), record);
}

// Writes the value of one key.
void write(Jni& jni, InfoWriter& writer, const char* key, jstring identifier, const _NWL_REC_T& record) {
    _get_nwl_info(jni, writer.base_class(), writer.carrier(), key, record);
    if (std::strcmp(key, kNetworkIdKey) == 0) {
        writer.set_identifier(identifier);
    }
}

} // namespace

jobject com_velotra_tv_tavro_networklist_getInfo(JNIEnv* env, jobject, jstring identifier, jobject keys) {
    TAVRO_LOG_JNI("%s line:%d ", __func__, kGetInfoLine);
    Jni jni(env);
    InfoClasses classes;
    if (!find_info_class(jni, __func__, classes)) {
        return nullptr;
    }
    int list_id = 0;
    int record_id = 0;
    if (!parse_identifier(jni, identifier, list_id, record_id)) {
        return nullptr;
    }
    _NWL_REC_T record = {};
    const int read = nwList->getInfo(list_id, record_id, &record);
    if (read != kDone) {
        TAVRO_LOG_JNI("%s getInfo fail ret=%d ", __func__, read);
        return nullptr;
    }
    jstring read_identifier = combine_identifier(jni, list_id, record.ui2_nwl_rec_id);
    jobject info = jni.new_object(classes.info.cls, classes.info.constructor);
    if (!find_base_class(jni, __func__, classes)) {
        return nullptr;
    }
    InfoWriter writer(jni, classes, kMethods);
    if (jni.failed()) {
        return nullptr;
    }
    if (keys == nullptr) {
        write_all(jni, writer, read_identifier, record);
        return writer.finish(info);
    }
    JavaList list(jni, keys, JavaList::LookUp::kSizeFirst);
    if (jni.failed()) {
        return nullptr;
    }
    TAVRO_LOG_JNI("Key List size = %d\n", list.size());
    for (jint i = 0; i < list.size(); ++i) {
        const LocalRef name(jni, static_cast<jstring>(list.get(i)));
        const UtfChars key(jni, name.get());
        write(jni, writer, key.c_str(), read_identifier, record);
    }
    return writer.finish(info);
}

jobject com_velotra_tv_tavro_networklist_getInfoList(JNIEnv* env, jobject, jint mwdbId, jobject keys) {
    trace_entry(__func__);
    Jni jni(env);
    ResultList results;
    if (!results.create(jni, __func__)) {
        return nullptr;
    }
    InfoClasses classes;
    if (!find_info_class(jni, __func__, classes) || !find_base_class(jni, __func__, classes)) {
        return nullptr;
    }
    const ReadLock<NativeVltTvNetworkList> lock(*nwList, mwdbId);
    const int number = nwList->getInfoListNum(mwdbId);
    for (int index = 0; index < number; ++index) {
        _NWL_REC_T record = {};
        int version = 0;
        if (nwList->getInfoByIdx(mwdbId, index, &version, &record) != kDone) {
            return nullptr;
        }
        TAVRO_LOG_JNI("%s  pt_nwl_rec.ui2_nwl_rec_id:%d ", __func__, record.ui2_nwl_rec_id);
        const LocalRef identifier(jni, combine_identifier(jni, mwdbId, record.ui2_nwl_rec_id));
        const LocalRef info(jni, jni.new_object(classes.info.cls, classes.info.constructor));
        InfoWriter writer(jni, classes, kMethods);
        const LocalRef carrier(jni, writer.carrier());
        if (jni.failed()) {
            return nullptr;
        }
        if (keys == nullptr) {
            write_all(jni, writer, identifier.get(), record);
        } else {
            JavaList list(jni, keys, JavaList::LookUp::kSizeFirst);
            if (jni.failed()) {
                return nullptr;
            }
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]getInfoList, Key List size = %d\n", list.size());
            for (jint i = 0; i < list.size(); ++i) {
                const LocalRef name(jni, static_cast<jstring>(list.get(i)));
                const UtfChars key(jni, name.get());
                if (jni.failed()) {
                    return nullptr;
                }
                TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]getInfoList, keyName = %s \n", key.c_str());
                write(jni, writer, key.c_str(), identifier.get(), record);
            }
        }
        jobject filled = writer.finish(info.get());
        if (filled == nullptr) {
            return nullptr;
        }
        results.add(jni, filled);
    }
    return results.list();
}
