#include "jni/bridges/channel_list_bridge.h"

#include "jni/bridges/forwarding.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/record_filter.h"
#include "jni/env/jni_env.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"

#include <memory>
#include <mutex>
#include <new>

using namespace tavro;

namespace {

// Line numbers in the entry lines.
constexpr int kRemoveLine = 115;
constexpr int kRemoveByRecordIdLine = 120;

// Held while a list is opened or deleted, since the manager's handle map is not guarded.
std::mutex chListMutex;

// A temporary handle of a list, with the list's read lock.
class LockedWalk {
public:
    explicit LockedWalk(int mwdbId) : handle_(chList->openTmp(mwdbId)) { chList->readLockSvl(handle_); }
    ~LockedWalk() {
        chList->unReadLockSvl(handle_);
        chList->closeTmp(handle_);
    }
    LockedWalk(const LockedWalk&) = delete;
    LockedWalk& operator=(const LockedWalk&) = delete;

    unsigned int handle() const { return handle_; }

private:
    unsigned int handle_;
};

// Reads the records of a list that `keep` accepts into a Java array. `count` and `read` are the manager's calls on a
// handle; `name` is the name in the log line of a failed read.
template <class Count, class Read, class Keep>
jbyteArray list_records(JNIEnv* env, const char* name, int mwdbId, Count count, Read read, Keep keep) {
    std::unique_ptr<_SVL_REC_T[]> buffer;
    std::size_t kept = 0;
    {
        const LockedWalk walk(mwdbId);
        const int number = count(walk.handle());
        if (number < 1) {
            return nullptr;
        }
        buffer.reset(new (std::nothrow) _SVL_REC_T[static_cast<std::size_t>(number)]);
        if (buffer == nullptr) {
            TAVRO_LOG_JNI("sa_svl_buffer malloc fail");
            return nullptr;
        }
        for (int index = 0; index < number; ++index) {
            // The next record overwrites one that is not kept. Zeroing slot by slot, not the whole buffer at once,
            // keeps the records of a long list in the CPU cache.
            _SVL_REC_T& slot = buffer[kept];
            slot = {};
            int version = 0;
            const int result = read(index, walk.handle(), &version, &slot);
            if (result != kDone) {
                TAVRO_LOG_JNI("%s getInfoByIdx fail ret=%d ", name, result);
                return nullptr;
            }
            kept += keep(slot) ? 1U : 0U;
        }
    }
    return to_byte_array(env, buffer.get(), kept * sizeof(_SVL_REC_T));
}

// All services of a list that pass a condition of IsMatchCondition.
jbyteArray get_svl_list_info(JNIEnv* env, int mwdbId, int condition, int wanted) {
    return list_records(
        env, __func__, mwdbId, [](unsigned int handle) { return chList->getInfoListNum(handle); },
        [](int index, unsigned int handle, int* version, _SVL_REC_T* record) {
            return chList->getInfoByIdx(index, handle, version, record);
        },
        [&](const _SVL_REC_T& record) {
            return condition == kMatchEvery || IsMatchCondition(condition, wanted, record);
        });
}

} // namespace

jint com_velotra_tv_tavro_ch_list_native_setup(JNIEnv*, jobject) { return set_up(chList); }

jint com_velotra_tv_tavro_channellist_clean(JNIEnv*, jobject, jint mwdbId) {
    return forward::clean(kSilent, chList, mwdbId);
}

jint com_velotra_tv_tavro_channellist_close(JNIEnv*, jobject, jint mwdbId) {
    return forward::close(kSilent, chList, mwdbId);
}

jint com_velotra_tv_tavro_channellist_delete(JNIEnv*, jobject, jint mwdbId) {
    const std::lock_guard<std::mutex> guard(chListMutex);
    return forward::delete_list(kSilent, chList, mwdbId);
}

jint com_velotra_tv_tavro_channellist_copy(JNIEnv*, jobject, jint sourceId, jint destinationId) {
    return forward::copy(kSilent, chList, sourceId, destinationId);
}

jint com_velotra_tv_tavro_channellist_open(JNIEnv*, jobject, jint mwdbId) {
    const std::lock_guard<std::mutex> guard(chListMutex);
    return forward::open(kSilent, chList, mwdbId);
}

jint com_velotra_tv_tavro_channellist_open_path(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    // Deliberate: not forward::open_path. A path that cannot be read from Java is passed on as empty, and the mutex is
    // taken after the conversion.
    const std::string text = jstr2str(env, path);
    const std::lock_guard<std::mutex> guard(chListMutex);
    return chList->open(mwdbId, text);
}

jint com_velotra_tv_tavro_channellist_store(JNIEnv* env, jobject, jint mwdbId, jstring path) {
    return forward::store(kSilent, chList, env, mwdbId, path);
}

jint com_velotra_tv_tavro_channellist_remove_info(JNIEnv* env, jobject, jstring identifier) {
    return forward::remove({__func__, kRemoveLine}, chList, env, identifier);
}

jint com_velotra_tv_tavro_channellist_remove_Info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    return forward::remove_by_record_id({__func__, kRemoveByRecordIdLine}, chList, env, mwdbId, identifier);
}

jbyteArray com_velotra_tv_tavro_channellist_getSVLInfo(JNIEnv* env, jobject, jstring identifier) {
    int list_id = 0;
    int record_id = 0;
    Jni jni(env);
    if (!parse_identifier(jni, identifier, list_id, record_id)) {
        return nullptr;
    }
    _SVL_REC_T record = {};
    const int result = chList->getInfo(list_id, record_id, &record);
    if (result != kDone) {
        TAVRO_LOG_JNI("%s getSVLInfo fail ret=%d ", __func__, result);
        return nullptr;
    }
    return to_byte_array(env, &record, sizeof(record));
}

jbyteArray com_velotra_tv_tavro_channellist_getSVLInfoList(JNIEnv* env, jobject, jint mwdbId) {
    return get_svl_list_info(env, mwdbId, kMatchEvery, 0);
}

jbyteArray com_velotra_tv_tavro_channellist_getInfoListByTransportStream(JNIEnv* env, jobject, jint mwdbId,
                                                                         jint transportStreamId) {
    return get_svl_list_info(env, mwdbId, kMatchTransportStream, transportStreamId);
}

jbyteArray com_velotra_tv_tavro_channellist_getInfoListByNetwork(JNIEnv* env, jobject, jint mwdbId, jint networkId) {
    return get_svl_list_info(env, mwdbId, kMatchNetwork, networkId);
}

jbyteArray com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord(JNIEnv* env, jobject, jint mwdbId,
                                                                               jint transportStreamRecordId) {
    return list_records(
        env, "get_svl_list_info_by_transportRecord", mwdbId,
        [&](unsigned int handle) { return chList->getInfoListNum(handle, mwdbId, transportStreamRecordId); },
        [&](int index, unsigned int handle, int* version, _SVL_REC_T* record) {
            return chList->getInfoByIdx(mwdbId, transportStreamRecordId, index, handle, version, record);
        },
        [](const _SVL_REC_T&) { return true; });
}
