// The network list's natives that hand networks to Java as objects.

#include "jni/bridges/info_objects.h"
#include "jni/bridges/list_lock.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/network_record.h"

#include <cstring>

using tavro::JavaClass;
using tavro::JavaList;
using tavro::Jni;
using tavro::LocalRef;
using tavro::UtfChars;

namespace {

using Manager = NativeVltTvNetworkList;
using ReadLock = tavro::ListLock<Manager, &Manager::readLockNwl, &Manager::readUnLockNwl>;

bool find_info_class(Jni& jni, const char* name, JavaClass& info) {
    return tavro::find_class(jni, name, kNetworkInfo, "Info class not find!", "init class failed!", info);
}

bool find_base_class(Jni& jni, const char* name, JavaClass& base) {
    return tavro::find_class(jni, name, kNetworkInfoBase, "VltTvNetworkInfoBase class not find!",
                             "jcls_init init class failed!", base);
}

// The result object and the carrier that its values are put into first.
struct Result {
    jobject info;
    jmethodID take_over;
    jclass base_class;
    jobject carrier;
    jstring identifier;
};

// Makes both for the record of that identifier.
Result make_result(Jni& jni, const JavaClass& info, jobject info_object, const JavaClass& base, jstring identifier) {
    Result result = {};
    result.info = info_object;
    result.base_class = base.cls;
    result.carrier = jni.new_object(base.cls, base.constructor);
    result.take_over =
        jni.method(info.cls, "nwlToNetworkInfo", "(Lcom/velotra/tv/tavro/services/channellist/VltTvNetworkInfoBase;)V");
    result.identifier = identifier;
    return result;
}

void set_identifier(Jni& jni, const Result& result) {
    jmethodID setter = jni.method(result.base_class, "setNwlIdNwlRecId", "(Ljava/lang/String;)V");
    jni.call_void(result.carrier, setter, result.identifier);
}

// Puts the value of one key into the carrier.
void put_value(Jni& jni, const Result& result, const char* key, const _NWL_REC_T& record) {
    _get_nwl_info(jni, result.base_class, result.carrier, key, record);
    if (std::strcmp(key, kNetworkIdKey) == 0) {
        set_identifier(jni, result);
    }
}

// Puts every value into the carrier.
void put_values(Jni& jni, const Result& result, const _NWL_REC_T& record) {
    set_identifier(jni, result);
    _get_networklist_data(jni, result.base_class, result.carrier, record);
}

// Lets the result object take over what the carrier holds. Null when the platform has failed.
jobject finish(Jni& jni, const Result& result) {
    jni.call_void(result.info, result.take_over, result.carrier);
    return jni.failed() ? nullptr : result.info;
}

} // namespace

jobject com_velotra_tv_tavro_networklist_getInfo(JNIEnv* env, jobject, jstring identifier, jobject keys) {
    TAVRO_LOG_JNI("%s line:%d ", __func__, 3258);
    Jni jni(env);
    JavaClass info;
    if (!find_info_class(jni, __func__, info)) {
        return nullptr;
    }
    int list_id = 0;
    int record_id = 0;
    if (!tavro::parse_identifier(jni, identifier, list_id, record_id)) {
        return nullptr;
    }
    _NWL_REC_T record = {};
    const int read = nwList->getInfo(list_id, record_id, &record);
    if (read != kDone) {
        TAVRO_LOG_JNI("%s getInfo fail ret=%d ", __func__, read);
        return nullptr;
    }
    jstring read_identifier = tavro::combine_identifier(jni, list_id, record.ui2_nwl_rec_id);
    jobject info_object = jni.new_object(info.cls, info.constructor);
    JavaClass base;
    if (!find_base_class(jni, __func__, base)) {
        return nullptr;
    }
    const Result result = make_result(jni, info, info_object, base, read_identifier);
    if (jni.failed()) {
        return nullptr;
    }
    if (keys == nullptr) {
        put_values(jni, result, record);
        return finish(jni, result);
    }
    JavaList list(jni, keys, JavaList::LookUp::kSizeFirst);
    if (jni.failed()) {
        return nullptr;
    }
    TAVRO_LOG_JNI("Key List size = %d\n", list.size());
    for (jint i = 0; i < list.size(); ++i) {
        const LocalRef name(jni, static_cast<jstring>(list.get(i)));
        const UtfChars key(jni, name.get());
        put_value(jni, result, key.c_str(), record);
    }
    return finish(jni, result);
}

jobject com_velotra_tv_tavro_networklist_getInfoList(JNIEnv* env, jobject, jint mwdbId, jobject keys) {
    TAVRO_LOG_JNI("%s", __func__);
    Jni jni(env);
    tavro::ResultList results;
    if (!results.create(jni, __func__)) {
        return nullptr;
    }
    JavaClass info;
    JavaClass base;
    if (!find_info_class(jni, __func__, info) || !find_base_class(jni, __func__, base)) {
        return nullptr;
    }
    const ReadLock lock(*nwList, mwdbId);
    const int number = nwList->getInfoListNum(mwdbId);
    for (int index = 0; index < number; ++index) {
        _NWL_REC_T record = {};
        int version = 0;
        if (nwList->getInfoByIdx(mwdbId, index, &version, &record) != kDone) {
            return nullptr;
        }
        TAVRO_LOG_JNI("%s  pt_nwl_rec.ui2_nwl_rec_id:%d ", __func__, record.ui2_nwl_rec_id);
        const LocalRef identifier(jni, tavro::combine_identifier(jni, mwdbId, record.ui2_nwl_rec_id));
        const LocalRef info_object(jni, jni.new_object(info.cls, info.constructor));
        const Result result = make_result(jni, info, info_object.get(), base, identifier.get());
        const LocalRef carrier(jni, result.carrier);
        if (jni.failed()) {
            return nullptr;
        }
        if (keys == nullptr) {
            put_values(jni, result, record);
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
                put_value(jni, result, key.c_str(), record);
            }
        }
        jobject filled = finish(jni, result);
        if (filled == nullptr) {
            return nullptr;
        }
        results.add(jni, filled);
    }
    return results.list();
}
