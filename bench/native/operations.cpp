#include "operations.h"

#include "control.h"
#include "floor.h"
#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"

#include <algorithm>
#include <cstring>

namespace tavro::bench {

namespace {

constexpr int kBatch = 16;        // calls of what takes microseconds
constexpr int kIdentifiers = 256; // that single reads go round

// Lists on the memory platform. Those to read have one id for each size; the others may be changed.
constexpr int kAddedTo = 2;
constexpr int kRemovedFrom = 3;
constexpr int kUpdated = 4;
constexpr int kCleaned = 5;
constexpr int kFirstReadList = 10;
constexpr int kSizes[] = {10, 100, 1'000, 10'000, 65'534};
constexpr int kThousand = kFirstReadList + 2; // the list of 1,000
constexpr int kPerFilter = 10;                // one in so many records matches a filter
constexpr int kUpdateSizes[] = {10, 1'000, 60'000};
constexpr int kKeyCounts[] = {1, 10, 1'000};

// Results end here, so that no call is left out; the check compares them.
void keep(jint result) {
    if (tavro_memory_journal != nullptr) {
        tavro_memory_journal(("returns " + std::to_string(result)).c_str());
    }
}
void keep(jobject result) {
    if (tavro_memory_journal != nullptr) {
        tavro_memory_journal(result == nullptr ? "returns null" : "returns an object");
    }
}

// A kind of list, and how its class names things.
struct Kind {
    const char* name;  // in the names of operations
    const char* java;  // VltTv<java>List
    int number;        // on the memory platform
    const char* first; // keys that come first, with their values
    const char* id_key;
    const char* get;
    const char* update;
    const char* update_list;
    const char* open;
    const char* clean;
};

#define LIST_PACKAGE "com/velotra/tv/tavro/services/channellist/"

constexpr Kind kServices = {"service",
                            "Channel",
                            1,
                            "ServiceName=0,ServiceId=77,BroadcastType=2,VnetActive=1,MajorChannelNumber=12",
                            "SvlIdSvlRecId",
                            "native_getSvlInfo",
                            "native_updateInfo",
                            "native_updateInfoList",
                            "native_open",
                            "native_clean"};
constexpr Kind kStreams = {"stream",
                           "TransportStream",
                           2,
                           "Frequency=11778000,BroadcastMedium=3,TransportStreamId=1089,Standard=6,CodeRate=3",
                           "TslIdTslRecId",
                           "native_getInfo",
                           "native_updateInfo",
                           "native_updateInfoList",
                           "native_open",
                           "native_clean"};
constexpr Kind kNetworks = {"network",
                            "Network",
                            3,
                            "NetworkName=0",
                            "NwlIdNwlRecId",
                            "native_getInfo",
                            "native_updateInfo",
                            "native_updateInfoList",
                            "native_open",
                            "native_clean"};
[[maybe_unused]] constexpr Kind kSatellites = {"satellite",
                                               "Satellite",
                                               4,
                                               "Name=0,OrbitPosition=192,AntennaType=3",
                                               "RecId",
                                               "nativeGetInfo",
                                               "nativeUpdateInfo",
                                               "nativeUpdateInfoList",
                                               "nativeOpen",
                                               "nativeClean"};

class Builder {
public:
    Builder(Jvm& jvm, int most) : jvm_(jvm), most_(most) {}

    std::vector<Operation> take() { return std::move(operations_); }

    // An operation whose ways are the library's native and the floor's, called by `call(native, env, i)`.
    template <class Native, class Call>
    Operation& add(const std::string& name, void* library, Native floor, int batch, Call call) {
        Operation operation;
        operation.name = name;
        operation.batch = batch;
        operation.library = calls(reinterpret_cast<Native>(library), call);
        operation.floor = calls(floor, call);
        operations_.push_back(std::move(operation));
        return operations_.back();
    }

    template <class Native, class Call>
    static Calls calls(Native native, Call call) {
        return [native, call](JNIEnv* env, int count) {
            for (int i = 0; i < count; ++i) {
                keep(call(native, env, i));
            }
        };
    }

    void companions();
    void services();

private:
    std::vector<jstring> identifiers(int list) {
        std::vector<jstring> texts;
        for (int id = 1; id <= kIdentifiers; ++id) {
            texts.push_back(jvm_.text(std::to_string(list) + "," + std::to_string(id)));
        }
        return texts;
    }

    void* native(const Kind& kind, const char* method, const char* signature) {
        return jvm_.native(kind.java, method, signature);
    }

    static std::string with_size(const char* name, int size) { return std::string(name) + ":" + std::to_string(size); }

    // The lists of a kind, filled with copies of a record that `vary(record, position)` changes.
    template <class Record, class Vary>
    void fill(const Kind& kind, const Record& record, Vary vary) {
        int list = kFirstReadList;
        for (const int size : kSizes) {
            fill_one(kind, list, std::min(size, most_), record, vary);
            ++list;
        }
        for (const int changed : {kAddedTo, kUpdated, kRemovedFrom, kCleaned}) {
            fill_one(kind, changed, changed == kUpdated ? std::max(1'000, most_) : 1'000, record, vary);
        }
    }
    template <class Record, class Vary>
    void fill_one(const Kind& kind, int list, int size, const Record& record, Vary vary) {
        tavro_memory_fill(kind.number, list, size, &record);
        for (int i = 0; i < size; ++i) {
            vary(*static_cast<Record*>(tavro_memory_record(kind.number, list, i)), list, i);
        }
    }

    // Whole lists of each size.
    template <class Native, class Call>
    void whole_lists(const Kind& kind, const std::string& name, void* library, Native floor, Native copy, Call call) {
        int list = kFirstReadList;
        for (const int size : kSizes) {
            if (size <= most_) {
                const auto read = [call, list](Native native, JNIEnv* env, int) { return call(native, env, list); };
                Operation& operation = add(with_size((std::string(kind.name) + "/" + name).c_str(), size), library,
                                           floor, size <= 100 ? 4 : 1, read);
                operation.records = size;
                if (copy != nullptr) {
                    operation.copy = calls(copy, read);
                }
            }
            ++list;
        }
    }

    // Adds and updates of single objects with 1, 10 and all keys, list updates, removals, opening and cleaning.
    template <class Add, class Update, class UpdateList, class CallUpdate, class CallUpdateList>
    void writes(const Kind& kind, Add add_floor, Update update_floor, UpdateList update_list_floor,
                const char* update_signature, const char* update_list_signature, CallUpdate call_update,
                CallUpdateList call_update_list) {
        const jobject self = jvm_.list_object(kind.java);
        const std::string base = std::string("L" LIST_PACKAGE "VltTv") + kind.java + "InfoBase;";
        const std::string prefix = kind.name;
        for (const int keys : kKeyCounts) {
            const std::string suffix = keys > 100 ? "all_keys" : keys == 1 ? "1_key" : std::to_string(keys) + "_keys";
            const std::vector<jobject> objects =
                jvm_.elements(jvm_.records(kind.java, kind.first, keys, kind.id_key, kAddedTo, false, kBatch));
            const int number = kind.number;
            add(prefix + "/add:" + suffix, jvm_.native(kind.java, "nativeAdd", "(I" + base + ")Ljava/lang/String;"),
                add_floor, kBatch,
                [=](Add native, JNIEnv* env, int i) {
                    return native(env, self, kAddedTo, objects[static_cast<std::size_t>(i)]);
                })
                .before = [number] { tavro_memory_truncate(number, kAddedTo, 1'000); };
            const std::vector<jobject> identified =
                jvm_.elements(jvm_.records(kind.java, kind.first, keys, kind.id_key, kUpdated, true, kBatch));
            add(prefix + "/update:" + suffix, native(kind, kind.update, update_signature), update_floor, kBatch,
                [=](Update native, JNIEnv* env, int i) {
                    return call_update(native, env, self, identified[static_cast<std::size_t>(i)]);
                });
        }
        for (const int size : kUpdateSizes) {
            if (size <= most_) {
                const jobject list = jvm_.records(kind.java, kind.first, 1, kind.id_key, kUpdated, true, size);
                add(with_size((prefix + "/update_list").c_str(), size),
                    native(kind, kind.update_list, update_list_signature), update_list_floor, 1,
                    [=](UpdateList native, JNIEnv* env, int) { return call_update_list(native, env, self, list); })
                    .records = size;
            }
        }
    }

    template <class Record>
    void removals(const Kind& kind, jint (*remove)(JNIEnv*, jobject, jstring), jint (*open)(JNIEnv*, jobject, jint),
                  jint (*clean)(JNIEnv*, jobject, jint), const Record& record) {
        const jobject self = jvm_.list_object(kind.java);
        const std::string prefix = kind.name;
        const int number = kind.number;
        std::vector<jstring> last;
        for (int i = 0; i < kBatch; ++i) {
            last.push_back(jvm_.text(std::to_string(kRemovedFrom) + "," + std::to_string(1'000 - i)));
        }
        add(prefix + "/remove", native(kind, "nativeRemove", "(Ljava/lang/String;)I"), remove, kBatch,
            [=](auto native, JNIEnv* env, int i) { return native(env, self, last[static_cast<std::size_t>(i)]); })
            .before = [=] { tavro_memory_fill(number, kRemovedFrom, 1'000, &record); };
        add(prefix + "/clean:1000", native(kind, kind.clean, "(I)I"), clean, 1, [=](auto native, JNIEnv* env, int) {
            return native(env, self, kCleaned);
        }).before = [=] { tavro_memory_fill(number, kCleaned, 1'000, &record); };
        add(prefix + "/open_again", native(kind, kind.open, "(I)I"), open, kBatch,
            [=](auto native, JNIEnv* env, int) { return native(env, self, kThousand); });
    }

    Jvm& jvm_;
    int most_;
    std::vector<Operation> operations_;
};

void Builder::services() {
    _SVL_REC_T record = {};
    std::strcpy(record.t_header.ac_name, "A service of usual name");
    record.t_header.e_brdcst_type = kBroadcastDvb;
    record.t_header.ui4_channel_id = 0x123456;
    fill(kServices, record, [](_SVL_REC_T& one, int list, int position) {
        one.t_header.ui2_tsl_id = one.t_header.ui2_nwl_id = static_cast<std::uint16_t>(list);
        one.t_header.ui2_tsl_rec_id = one.t_header.ui2_nwl_rec_id =
            static_cast<std::uint16_t>(position % kPerFilter + 1);
    });
    const jobject self = jvm_.list_object(kServices.java);

    void* get = native(kServices, kServices.get, "(Ljava/lang/String;)[B");
    const std::vector<jstring> texts = identifiers(kThousand);
    const auto read = [=](auto native, JNIEnv* env, int i) {
        return native(env, self, texts[static_cast<std::size_t>(i % kIdentifiers)]);
    };
    add("service/read", get, floor::service_get, kBatch, read);
    add("service/read:log_open", get, floor::service_get, kBatch, read).log_level = 'D';

    whole_lists(kServices, "read_list", native(kServices, "native_getSvlInfoList", "(I)[B"), floor::service_get_list,
                floor::service_copy, [=](auto native, JNIEnv* env, jint list) { return native(env, self, list); });

    const auto filtered = [=](auto native, JNIEnv* env, int) { return native(env, self, kThousand, 3); };
    add("service/read_by_stream_record:1000", native(kServices, "native_getInfoListByTransportStreamRecord", "(II)[B"),
        floor::service_get_by_stream_record, 1, filtered);
    add("service/read_by_stream:1000", native(kServices, "native_getInfoListByTransportStream", "(II)[B"),
        floor::service_get_by_stream, 1, filtered);
    add("service/read_by_network:1000", native(kServices, "native_getInfoListByNetwork", "(II)[B"),
        floor::service_get_by_network, 1, filtered);

    writes(
        kServices, floor::service_add, floor::service_update, floor::service_update_list,
        "(IL" LIST_PACKAGE "VltTvChannelInfoBase;)I", "(ILjava/util/List;)I",
        [](auto native, JNIEnv* env, jobject list, jobject one) { return native(env, list, kUpdated, one); },
        [](auto native, JNIEnv* env, jobject list, jobject all) { return native(env, list, kUpdated, all); });
    removals(kServices, floor::service_remove, floor::service_open, floor::service_clean, record);
}

// Streams and networks that services point at: number `position` has the id `position`.
void Builder::companions() {
    _TSL_REC_T stream = {};
    std::strcpy(stream.ac_ts_name, "A transport stream");
    stream.e_bcst_medium = kMediumSatellite;
    fill(kStreams, stream, [](_TSL_REC_T& one, int list, int position) {
        one.ui2_ts_id = static_cast<std::uint16_t>(position + 1);
        one.ui2_satl_id = static_cast<std::uint16_t>(list);
        one.ui2_satl_rec_id = static_cast<std::uint16_t>(position % kPerFilter + 1);
    });
    _NWL_REC_T network = {};
    std::strcpy(network.ac_nw_name, "A network");
    fill(kNetworks, network, [](_NWL_REC_T& one, int list, int position) {
        one.ui2_nw_id = static_cast<std::uint16_t>(position + 1);
        one.ui2_nwl_id = static_cast<std::uint16_t>(list);
    });
}

} // namespace

std::vector<Operation> operations(Jvm& jvm, int most) {
    Builder builder(jvm, most);
    builder.companions();
    builder.services();
    return builder.take();
}

} // namespace tavro::bench
