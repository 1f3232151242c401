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

constexpr int kBatch = 16;        // calls per batch for operations that take microseconds
constexpr int kIdentifiers = 256; // number of records that single reads cycle through

// List ids on the memory platform. There is one list to read for each size; the other lists are changed.
constexpr int kAddedTo = 2;
constexpr int kRemovedFrom = 3;
constexpr int kUpdated = 4;
constexpr int kCleaned = 5;
constexpr int kFirstReadList = 10;
constexpr int kSizes[] = {10, 100, 1'000, 10'000, 65'534};
constexpr int kThousand = kFirstReadList + 2; // the list of 1,000
constexpr int kPerFilter = 10;                // one record in ten matches a filter
constexpr int kFiltered = 3;                  // the record id that filters look for
constexpr int kUpdateSizes[] = {10, 1'000, 60'000};
constexpr int kKeyCounts[] = {1, 10, 1'000};

// Uses a result, so that the call is not optimized away. The check compares the results.
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

// A list kind, and the names that its class uses.
struct Kind {
    const char* name;  // in the names of operations
    const char* java;  // VltTv<java>List
    int number;        // on the memory platform
    const char* first; // the first keys, with their values
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
constexpr Kind kSatellites = {"satellite",
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

    // Adds an operation that calls the library's and the floor's native through `call(native, env, i)`.
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

    void fill_lists();
    void services();
    void streams();
    void networks();
    void satellites();
    void load();
    // Adds these operations a second time with all log lines enabled.
    void with_open_log(const std::vector<std::string>& names);

private:
    std::vector<jstring> identifiers(int list) {
        std::vector<jstring> texts;
        for (int id = 1; id <= kIdentifiers; ++id) {
            texts.push_back(jvm_.text(std::to_string(list) + "," + std::to_string(id)));
        }
        return texts;
    }

    // Reads single records in turn.
    static auto reading(jobject self, const std::vector<jstring>& texts) {
        return [self, texts](auto native, JNIEnv* env, int i) {
            return native(env, self, texts[static_cast<std::size_t>(i % kIdentifiers)]);
        };
    }

    template <class Get, class GetList>
    void objects(const Kind& kind, const char* info, const char* get_list, const char* key, Get get_floor,
                 GetList get_list_floor);

    void* native(const Kind& kind, const char* method, const char* signature) {
        return jvm_.native(kind.java, method, signature);
    }

    static std::string with_size(const char* name, int size) { return std::string(name) + ":" + std::to_string(size); }

    // Fills the lists of a kind with copies of a record, each modified by `vary(record, position)`.
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

    // Adds an operation on whole lists for each size.
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

    // Adds the writing operations: add and update with 1, 10 and all keys, list update, remove, open and clean.
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
            .before = [=, env = jvm_.env(),
                       open_list = reinterpret_cast<decltype(open)>(native(kind, kind.open, "(I)I"))] {
            tavro_memory_fill(number, kRemovedFrom, 1'000, &record);
            open_list(env, self, kRemovedFrom); // transport streams can be removed only from open lists
            open(env, self, kRemovedFrom);
        };
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

_SVL_REC_T service() {
    _SVL_REC_T record = {};
    std::strcpy(record.t_header.ac_name, "A service of usual name");
    record.t_header.e_brdcst_type = kBroadcastDvb;
    record.t_header.ui4_channel_id = 0x123456;
    return record;
}

_TSL_REC_T stream() {
    _TSL_REC_T record = {};
    std::strcpy(record.ac_ts_name, "A transport stream");
    record.e_bcst_medium = kMediumSatellite;
    return record;
}

_NWL_REC_T network() {
    _NWL_REC_T record = {};
    std::strcpy(record.ac_nw_name, "A network");
    return record;
}

_SATL_REC_T satellite() {
    _SATL_REC_T record = {};
    std::strcpy(record.ac_sat_name, "A satellite of usual name");
    record.ui4_mask = 0x6000; // enabled, universal LNB
    record.t_diseqc_info.e_diseqc_type = 2;
    return record;
}

// The id of a stream, network or satellite is its position. Of every ten records, one belongs to the first record of
// the companion list, one to the second, and so on.
void Builder::fill_lists() {
    const auto owner = [](int position) { return static_cast<std::uint16_t>(position % kPerFilter + 1); };
    const auto id = [](int number) { return static_cast<std::uint16_t>(number); };
    fill(kServices, service(), [=](_SVL_REC_T& one, int list, int position) {
        one.t_header.ui2_tsl_id = one.t_header.ui2_nwl_id = id(list);
        one.t_header.ui2_tsl_rec_id = one.t_header.ui2_nwl_rec_id = owner(position);
    });
    fill(kStreams, stream(), [=](_TSL_REC_T& one, int list, int position) {
        one.ui2_ts_id = id(position + 1);
        one.ui2_satl_id = id(list);
        one.ui2_satl_rec_id = owner(position);
    });
    fill(kNetworks, network(), [=](_NWL_REC_T& one, int list, int position) {
        one.ui2_nw_id = id(position + 1);
        one.ui2_nwl_id = id(list);
    });
    fill(kSatellites, satellite(), [](_SATL_REC_T& one, int, int position) {
        one.i2_orb_pos = static_cast<std::int16_t>(position % 3'600 - 1'800);
    });
}

void Builder::services() {
    const jobject self = jvm_.list_object(kServices.java);

    void* get = native(kServices, kServices.get, "(Ljava/lang/String;)[B");
    const auto read = reading(self, identifiers(kThousand));
    add("service/read", get, floor::service_get, kBatch, read);

    whole_lists(kServices, "read_list", native(kServices, "native_getSvlInfoList", "(I)[B"), floor::service_get_list,
                floor::service_copy, [=](auto native, JNIEnv* env, jint list) { return native(env, self, list); });

    const auto filtered = [=](auto native, JNIEnv* env, int) { return native(env, self, kThousand, kFiltered); };
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
    removals(kServices, floor::service_remove, floor::service_open, floor::service_clean, service());
}

void Builder::streams() {
    const jobject self = jvm_.list_object(kStreams.java);
    void* get = native(kStreams, kStreams.get, "(Ljava/lang/String;)[B");
    add("stream/read", get, floor::stream_get, kBatch, reading(self, identifiers(kThousand)));
    whole_lists(kStreams, "read_list", native(kStreams, "native_getInfoList", "(I)[B"), floor::stream_get_list,
                floor::stream_copy, [=](auto native, JNIEnv* env, jint list) { return native(env, self, list); });
    add("stream/read_by_satellite:1000", native(kStreams, "native_getInfoListBySatellite", "(II)[B"),
        floor::stream_get_by_satellite, 1,
        [=](auto native, JNIEnv* env, int) { return native(env, self, kThousand, kFiltered); });
    writes(
        kStreams, floor::stream_add, floor::stream_update, floor::stream_update_list,
        "(IL" LIST_PACKAGE "VltTvTransportStreamInfoBase;)I", "(ILjava/util/List;)I",
        [](auto native, JNIEnv* env, jobject list, jobject one) { return native(env, list, kUpdated, one); },
        [](auto native, JNIEnv* env, jobject list, jobject all) { return native(env, list, kUpdated, all); });
    removals(kStreams, floor::stream_remove, floor::stream_open, floor::stream_clean, stream());
}

// Adds the reads of single objects and of whole lists of objects, with all keys and with one key.
template <class Get, class GetList>
void Builder::objects(const Kind& kind, const char* info, const char* get_list, const char* key, Get get_floor,
                      GetList get_list_floor) {
    const jobject self = jvm_.list_object(kind.java);
    const std::vector<jstring> texts = identifiers(kThousand);
    void* get = native(kind, kind.get,
                       ("(Ljava/lang/String;Ljava/util/List;)L" LIST_PACKAGE + std::string(info) + ";").c_str());
    void* list_get = native(kind, get_list, "(ILjava/util/List;)Ljava/util/List;");
    for (const jobject keys : {jobject{nullptr}, jvm_.list_of(key)}) {
        const std::string suffix = keys == nullptr ? "all_keys" : "1_key";
        add(std::string(kind.name) + "/read_" + suffix, get, get_floor, kBatch, [=](Get native, JNIEnv* env, int i) {
            return native(env, self, texts[static_cast<std::size_t>(i % kIdentifiers)], keys);
        });
        whole_lists(kind, "read_list_" + suffix, list_get, get_list_floor, GetList{nullptr},
                    [=](GetList native, JNIEnv* env, jint list) { return native(env, self, list, keys); });
    }
}

void Builder::networks() {
    objects(kNetworks, "VltTvNetworkInfo", "native_getInfoList", "NetworkName", floor::network_get,
            floor::network_get_list);
    writes(
        kNetworks, floor::network_add, floor::network_update, floor::network_update_list,
        "(IL" LIST_PACKAGE "VltTvNetworkInfoBase;)I", "(ILjava/util/List;)I",
        [](auto native, JNIEnv* env, jobject list, jobject one) { return native(env, list, kUpdated, one); },
        [](auto native, JNIEnv* env, jobject list, jobject all) { return native(env, list, kUpdated, all); });
    removals(kNetworks, floor::network_remove, floor::network_open, floor::network_clean, network());
}

void Builder::satellites() {
    objects(kSatellites, "VltTvSatelliteInfo", "nativeGetInfoList", "Name", floor::satellite_get,
            floor::satellite_get_list);
    writes(
        kSatellites, floor::satellite_add, floor::satellite_update, floor::satellite_update_list,
        "(L" LIST_PACKAGE "VltTvSatelliteInfoBase;)I", "(Ljava/util/List;)I",
        [](auto native, JNIEnv* env, jobject list, jobject one) { return native(env, list, one); },
        [](auto native, JNIEnv* env, jobject list, jobject all) { return native(env, list, all); });
    removals(kSatellites, floor::satellite_remove, floor::satellite_open, floor::satellite_clean, satellite());
}

void Builder::load() {
    add("load", reinterpret_cast<void*>(jvm_.on_load()), floor::load, 1, [](auto native, JNIEnv* env, int) {
        JavaVM* vm = nullptr;
        env->GetJavaVM(&vm);
        return native(vm, nullptr);
    });
}

void Builder::with_open_log(const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        const auto found = std::find_if(operations_.begin(), operations_.end(),
                                        [&](const Operation& operation) { return operation.name == name; });
        if (found != operations_.end()) { // exists unless its list is too large for this run
            Operation operation = *found;
            operation.name += ":log_open";
            operation.log_level = 'D';
            operations_.push_back(std::move(operation));
        }
    }
}

} // namespace

std::vector<Operation> operations(Jvm& jvm, int most) {
    Builder builder(jvm, most);
    builder.fill_lists();
    builder.services();
    builder.streams();
    builder.networks();
    builder.satellites();
    builder.load();
    builder.with_open_log({"service/read", "service/add:all_keys", "stream/read_list:1000", "network/read_all_keys",
                           "satellite/update:all_keys"});
    return builder.take();
}

} // namespace tavro::bench
