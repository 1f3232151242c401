// The network list's natives that hand networks to Java as objects.

#include "jni/jni_env.h"
#include "jni/list_lock.h"
#include "jni/log_gate.h"
#include "jni/managers.h"
#include "jni/network_list_bridge.h"
#include "jni/network_record.h"
#include "jni/record_id.h"

#include <cstring>

using tavro::Jni;
using tavro::UtfChars;

namespace {

using Manager = NativeVltTvNetworkList;
using ReadLock = tavro::ListLock<Manager, &Manager::readLockNwl, &Manager::readUnLockNwl>;

// A Java class with its constructor without arguments.
struct JavaClass {
    jclass cls = nullptr;
    jmethodID constructor = nullptr;
};

// Finds a class and its constructor, or says on behalf of the native `name` which of them is missing.
bool find_class(Jni& jni, const char* name, const char* path, const char* no_class, const char* no_constructor,
                JavaClass& found) {
    found.cls = jni.find_class(path);
    found.constructor = jni.method(found.cls, "<init>", "()V");
    if (jni.failed()) {
        TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "%s : %s", name, found.cls == nullptr ? no_class : no_constructor);
        return false;
    }
    return true;
}

bool find_info_class(Jni& jni, const char* name, JavaClass& info) {
    return find_class(jni, name, kNetworkInfo, "Info class not find!", "init class failed!", info);
}

bool find_base_class(Jni& jni, const char* name, JavaClass& base) {
    return find_class(jni, name, kNetworkInfoBase, "VltTvNetworkInfoBase class not find!",
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

// A Java list of the keys whose values are wanted.
class KeyList {
public:
    KeyList(Jni& jni, jobject list) : jni_(jni), list_(list) {
        jclass cls = jni.class_of(list);
        jmethodID size = jni.method(cls, "size", "()I");
        get_ = jni.method(cls, "get", "(I)Ljava/lang/Object;");
        size_ = jni.call_int(list, size);
    }

    jint size() const { return size_; }
    jstring get(jint index) { return static_cast<jstring>(jni_.call_object(list_, get_, index)); }

private:
    Jni& jni_;
    jobject list_;
    jmethodID get_;
    jint size_;
};

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
    TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "%s line:%d ", __func__, 3258);
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
        TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "%s getInfo fail ret=%d ", __func__, read);
        return nullptr;
    }
    jstring read_identifier = tavro::combine_identifier(jni, list_id, record.ui2_nwl_rec_id);
    jobject info_object = jni.new_object(info.cls, info.constructor);
    JavaClass base;
    if (!find_base_class(jni, __func__, base)) {
        return nullptr;
    }
    const Result result = make_result(jni, info, info_object, base, read_identifier);
    if (keys == nullptr) {
        put_values(jni, result, record);
        return finish(jni, result);
    }
    KeyList list(jni, keys);
    TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "Key List size = %d\n", list.size());
    for (jint i = 0; i < list.size(); ++i) {
        const UtfChars key(jni, list.get(i));
        put_value(jni, result, key.c_str(), record);
    }
    return finish(jni, result);
}

jobject com_velotra_tv_tavro_networklist_getInfoList(JNIEnv* env, jobject, jint mwdbId, jobject keys) {
    TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "%s", __func__);
    Jni jni(env);
    JavaClass array_list;
    constexpr char kNoArrayList[] = "ArrayList class not find!";
    if (!find_class(jni, __func__, "java/util/ArrayList", kNoArrayList, kNoArrayList, array_list)) {
        return nullptr;
    }
    jobject results = jni.new_object(array_list.cls, array_list.constructor);
    jmethodID add = jni.method(array_list.cls, "add", "(Ljava/lang/Object;)Z");
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
        TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "%s  pt_nwl_rec.ui2_nwl_rec_id:%d ", __func__, record.ui2_nwl_rec_id);
        jstring identifier = tavro::combine_identifier(jni, mwdbId, record.ui2_nwl_rec_id);
        jobject info_object = jni.new_object(info.cls, info.constructor);
        const Result result = make_result(jni, info, info_object, base, identifier);
        if (keys == nullptr) {
            put_values(jni, result, record);
        } else {
            KeyList list(jni, keys);
            TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]getInfoList, Key List size = %d\n", list.size());
            for (jint i = 0; i < list.size(); ++i) {
                const UtfChars key(jni, list.get(i));
                TAVRO_LOG_DEBUG(kNoTag, "[jni_VltTvList_Init]getInfoList, keyName = %s \n", key.c_str());
                put_value(jni, result, key.c_str(), record);
            }
        }
        jobject filled = finish(jni, result);
        if (filled == nullptr) {
            return nullptr;
        }
        jni.call_boolean(results, add, filled);
    }
    return results;
}
