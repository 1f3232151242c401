// Random sequences of natives of all four kinds over the workstation's platform, compared with a simple model: the
// result of each native, which lists are open, the records of all lists, and that no lock is left.
#include "fuzz.h"
#include "fuzz_jni.h"
#include "list_model.h"
#include "services/control.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

using namespace tavro;
using namespace tavro::fuzz;
using tavro::test::BridgeKind;
using tavro::test::BridgeNatives;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

constexpr int kMostCalls = 24;

// The keys of the values in Java objects, and the middleware's calls, by kind.
struct Names {
    const BridgeKind* bridge;
    const char* number_key;
    const char* number_field;
    const char* text_key;
    const char* text_field;
    const char* reference_key;
    const char* reference_field;
    MwStatus (*open)(std::uint16_t, std::uint32_t, std::uint32_t, MwdbHandle*);
    MwStatus (*close)(MwdbHandle);
    MwStatus (*remove)(MwdbHandle);
    MwStatus (*lock)(MwdbHandle);
    MwStatus (*count)(MwdbHandle, std::uint16_t*);
    MwStatus (*get_at)(MwdbHandle, std::uint16_t, std::byte*);
};

template <class Record>
Record* as(std::byte* bytes) {
    return reinterpret_cast<Record*>(bytes);
}
std::int32_t version = 0;

const Names kNames[] = {
    {&test::service_kind(), "ServiceId", "serviceId", "ServiceName", "serviceName", "TslRecId", "tslRecId", x_svl_open,
     x_svl_close, x_svl_delete, x_svl_lock,
     [](MwdbHandle handle, std::uint16_t* count) {
         return x_svl_get_num_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, count, &version);
     },
     [](MwdbHandle handle, std::uint16_t index, std::byte* record) {
         return x_svl_get_rec_by_brdcst_type(handle, kMwEveryBroadcastType, kMwEveryNetworkMask, index,
                                             as<_SVL_REC_T>(record), &version);
     }},
    {&test::transport_stream_kind(), "TransportStreamId", "transportStreamId", "NetworkName", "networkName",
     "TslSatlRecId", "tslSatlRecId", x_tsl_open, x_tsl_close, x_tsl_delete, x_tsl_lock,
     [](MwdbHandle handle, std::uint16_t* count) { return x_tsl_get_num_recs(handle, count, &version); },
     [](MwdbHandle handle, std::uint16_t index, std::byte* record) {
         return x_tsl_get_rec_by_rec_idx(handle, index, as<_TSL_REC_T>(record), &version);
     }},
    {&test::network_kind(), "NwlNetworkId", "NwlNetworkId", "NetworkName", "NetworkName", nullptr, nullptr, x_nwl_open,
     x_nwl_close, x_nwl_delete, x_nwl_lock,
     [](MwdbHandle handle, std::uint16_t* count) { return x_nwl_get_num_rec(handle, count, &version); },
     [](MwdbHandle handle, std::uint16_t index, std::byte* record) {
         return x_nwl_get_rec_by_rec_idx(handle, index, as<_NWL_REC_T>(record), &version);
     }},
    {&test::satellite_kind(), "OrbitPosition", "OrbitPosition", "Name", "Name", nullptr, nullptr, x_satl_open,
     x_satl_close, x_satl_delete, x_satl_lock,
     [](MwdbHandle handle, std::uint16_t* count) { return x_satl_get_num_recs(handle, count, &version); },
     [](MwdbHandle handle, std::uint16_t index, std::byte* record) {
         return x_satl_get_rec_by_rec_idx(handle, index, as<_SATL_REC_T>(record), &version);
     }},
};

std::string identifier(int list, int record) { return std::to_string(list) + "," + std::to_string(record); }

void require_equal(int got, int expected, const std::string& what) {
    if (got != expected) {
        fail(what + " returns " + std::to_string(expected) + ", not " + std::to_string(got));
    }
}

Bytes joined(const std::vector<Bytes>& records) {
    Bytes all;
    for (const Bytes& record : records) {
        all.insert(all.end(), record.begin(), record.end());
    }
    return all;
}

// The process, its storage and the models of the four kinds. The storage is used by all runs; each run deletes what it
// created.
class Run {
public:
    Run(Input& input, const std::string& folder) : input_(input), folder_(folder), platform_(false) {
        chList = new NativeVltTvChannelList;
        tsList = new NativeVltTvTransportStreamList;
        nwList = new NativeVltTvNetworkList;
        satList = new NativeVltTvSatelliteList;
    }
    ~Run() {
        delete chList; // closes all lists
        delete tsList;
        delete nwList;
        delete satList;
        for (int kind = 0; kind < 4; ++kind) {
            for (const auto& list : models_[kind].lists()) {
                MwdbHandle handle = 0;
                kNames[kind].open(list.first, 0, 0, &handle);
                kNames[kind].remove(handle);
            }
        }
        for (const auto& file : files_) {
            std::filesystem::remove(file.first);
        }
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void calls() {
        for (int call = 0; call < kMostCalls && !input_.at_end(); ++call) {
            make_call(static_cast<int>(input_.choice(4)));
            compare_open_lists();
            platform_.require_allowed_calls();
        }
        compare_records();
        require_unlocked();
    }

private:
    // A list that often exists. Only the low 16 bits of an id count.
    int list() {
        static const int kLists[] = {1, 2, 3, 1, 2, 1, 0, 65537, -65535};
        return kLists[input_.choice(std::size(kLists))];
    }
    // The same for an identifier, which has no signs.
    int named_list() { return list() & 0x1FFFF; }
    int record() { return static_cast<int>(input_.choice(8)) + (input_.byte() == 0 ? 65536 : 0); }
    std::string path() {
        const std::uint32_t choice = input_.choice(4);
        return choice == 0 ? "" : folder_ + "/list" + std::to_string(choice);
    }
    Values values() {
        return {named_list(), record(), input_.number(), input_.text(80), static_cast<int>(input_.choice(4)), record()};
    }
    jstring text(const std::string& value) { return FakeJni::string_ref(jni_.string(value)); }

    FakeObject& object(const Names& names, const Values& values) {
        FakeObject& made = jni_.object("object");
        const std::string name = identifier(values.list_id, values.record_id);
        made.keys = {names.bridge->id_key, names.number_key, names.text_key};
        made.int_fields = {{names.number_field, values.number}};
        made.object_fields = {{names.bridge->id_field, &jni_.string(name)},
                              {names.text_field, &jni_.string(values.text)}};
        if (names.reference_key != nullptr) {
            made.keys.insert(names.reference_key);
            made.object_fields[names.reference_field] =
                &jni_.string(identifier(values.reference_list, values.reference_record));
        }
        return made;
    }

    void require_identifier(jstring got, int list, int record_id, const char* what) {
        const std::string expected = record_id == kFailed ? "" : identifier(list, record_id);
        const std::string& text = FakeJni::from(got).text;
        if (text != expected) {
            fail(what + (" returns \"" + expected) + "\", not \"" + text + "\"");
        }
    }
    static void require_bytes(jbyteArray got, const std::optional<Bytes>& expected, const char* what) {
        require((got != nullptr) == expected.has_value(), what);
        if (expected) {
            const std::vector<jbyte>& bytes = FakeJni::from(got).bytes;
            const auto equal = [](jbyte byte, std::byte other) { return static_cast<std::byte>(byte) == other; };
            require(std::equal(bytes.begin(), bytes.end(), expected->begin(), expected->end(), equal), what);
        }
    }
    static std::optional<Bytes> bytes_or_null(const std::vector<Bytes>& records) {
        return records.empty() ? std::nullopt : std::optional(joined(records));
    }

    void make_call(int kind) {
        const Names& names = kNames[kind];
        const BridgeNatives& natives = names.bridge->natives;
        ListModel& model = models_[kind];
        JNIEnv* const env = jni_.env();
        const int first = list();
        switch (input_.choice(20)) {
        case 0:
            return require_equal(natives.open(env, nullptr, first), model.open(first), "open");
        case 1: {
            const std::string file = path();
            if (kind == kServices && !file.empty()) {
                service_path_ = file;
            }
            const int got = natives.open_path(env, nullptr, first, text(file));
            return require_equal(got, model.open_path(first, file, files_), "open with a path");
        }
        case 2:
            return require_equal(natives.close(env, nullptr, first), model.close(first), "close");
        case 3:
            return require_equal(natives.clean(env, nullptr, first), model.clean(first), "clean");
        case 4:
            return require_equal(natives.remove_list(env, nullptr, first), model.remove_list(first), "delete");
        case 5: {
            const std::string file = path();
            const int got = natives.store(env, nullptr, first, text(file));
            return require_equal(got, model.store(first, file, files_), "store");
        }
        case 6: {
            const int second = list();
            return require_equal(natives.copy(env, nullptr, first, second), model.copy(first, second), "copy");
        }
        case 7: {
            const int from = named_list();
            const int id = record();
            const int got = natives.remove(env, nullptr, text(identifier(from, id)));
            return require_equal(got, model.remove(from, id), "remove");
        }
        case 8: {
            const int id = record();
            const int got = natives.remove_by_record_id(env, nullptr, first, text(identifier(named_list(), id)));
            return require_equal(got, model.remove(first, id), "remove by record id");
        }
        case 9:
            return require_equal(natives.remove(env, nullptr, text("17")), -1, "remove without a comma");
        case 10: {
            const int source = named_list();
            const int id = record();
            jstring const got = natives.add_by_record_id(env, nullptr, first, text(identifier(source, id)));
            return require_identifier(got, first, model.add_by_record_id(first, source, id), "add by record id");
        }
        case 11: {
            const Values changed = values();
            const int target = kind == kSatellites ? changed.list_id : first;
            const int got = natives.update(env, nullptr, first, FakeJni::ref(object(names, changed)));
            return require_equal(got, model.update(target, changed), "update");
        }
        case 12: {
            const int source = named_list();
            const int id = record();
            const int got = natives.update_by_record_id(env, nullptr, first, text(identifier(source, id)));
            return require_equal(got, model.update_by_record_id(first, source, id), "update by record id");
        }
        case 13:
            return update_list(kind, first);
        case 14:
        case 15:
            return read(kind, first);
        case 16:
            return restart();
        default: {
            const Values added = values();
            jstring const got = natives.add(env, nullptr, first, FakeJni::ref(object(names, added)));
            return require_identifier(got, first, model.add(first, added), "add");
        }
        }
    }

    void update_list(int kind, int list) {
        ListModel& model = models_[kind];
        std::vector<FakeObject*> objects;
        std::vector<Values> changes;
        for (std::uint32_t i = input_.choice(4); i > 0; --i) {
            changes.push_back(values());
            objects.push_back(&object(kNames[kind], changes.back()));
        }
        const int got =
            kNames[kind].bridge->natives.update_list(jni_.env(), nullptr, list, FakeJni::ref(jni_.list(objects)));
        if (kind != kSatellites) {
            model.use(list); // is opened first, for its lock
        }
        int expected = kDone;
        for (const Values& change : changes) {
            if (model.update(kind == kSatellites ? change.list_id : list, change) != kDone) {
                expected = kFailed;
                break;
            }
        }
        require_equal(got, expected, "update of a list");
    }

    // The services of a list whose stream or network has that id. Each is looked up in its list, which is opened for
    // that and may be created or loaded.
    std::optional<Bytes> matching(int list, int kind, std::size_t list_at, std::size_t id_at, int wanted) {
        ListModel& companions = models_[kind];
        const std::vector<Bytes> services = models_[kServices].records(list);
        std::vector<Bytes> found;
        for (const Bytes& service : services) {
            const int companion_list = number16(service, list_at);
            if (service_path_.empty()) {
                companions.open(companion_list);
            } else {
                companions.open_path(companion_list, service_path_, files_);
            }
            const Bytes* const companion = companions.get(companion_list, number16(service, list_at + 2));
            if (companion != nullptr && number16(*companion, id_at) == wanted) {
                found.push_back(service);
            }
            companions.close_all();
        }
        return services.empty() ? std::nullopt : std::optional(joined(found));
    }

    // The records of a list that refer to a record of the list with the same id.
    std::optional<Bytes> referring(int kind, int list, int id) const {
        const ModelKind& layout = models_[kind].kind();
        std::vector<Bytes> found;
        for (const Bytes& record : models_[kind].records(list)) {
            if (number16(record, layout.reference_list_at) == low16(list) &&
                number16(record, layout.reference_record_at) == low16(id)) {
                found.push_back(record);
            }
        }
        return bytes_or_null(found);
    }

    void read(int kind, int list) {
        const int named = named_list();
        JNIEnv* const env = jni_.env();
        ListModel& model = models_[kind];
        const int id = record();
        const std::uint32_t how = input_.choice(5);
        if (kind == kNetworks || kind == kSatellites) {
            return read_objects(kind, how < 3 ? named : list, id, how);
        }
        if (how == 0) {
            const auto get = kind == kServices ? com_velotra_tv_tavro_channellist_getSVLInfo
                                               : com_velotra_tv_tavro_transportstreamlist_getInfo;
            const Bytes* const expected = model.get(named, id);
            return require_bytes(get(env, nullptr, text(identifier(named, id))),
                                 expected == nullptr ? std::nullopt : std::optional(*expected), "a record is read");
        }
        if (kind == kStreams) {
            model.use(list);
            if (how < 3) {
                return require_bytes(com_velotra_tv_tavro_transportstreamlist_getInfoList(env, nullptr, list),
                                     bytes_or_null(model.records(list)), "streams are read");
            }
            return require_bytes(
                com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(env, nullptr, list, id),
                referring(kind, list, id), "streams are read by satellite");
        }
        const int wanted = input_.choice(3);
        switch (how) {
        case 1:
            return require_bytes(com_velotra_tv_tavro_channellist_getSVLInfoList(env, nullptr, list),
                                 bytes_or_null(model.records(list)), "services are read");
        case 2:
            return require_bytes(
                com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord(env, nullptr, list, id),
                referring(kind, list, id), "services are read by stream record");
        case 3:
            return require_bytes(
                com_velotra_tv_tavro_channellist_getInfoListByTransportStream(env, nullptr, list, wanted),
                matching(list, kStreams, 26, 16, wanted), "services are read by stream");
        default:
            return require_bytes(com_velotra_tv_tavro_channellist_getInfoListByNetwork(env, nullptr, list, wanted),
                                 matching(list, kNetworks, 30, 10, wanted), "services are read by network");
        }
    }

    // Reads one network or satellite, or all. Which objects are returned; the target "to_java" checks their values.
    void read_objects(int kind, int list, int id, std::uint32_t how) {
        JNIEnv* const env = jni_.env();
        ListModel& model = models_[kind];
        if (how < 3) {
            const auto get = kind == kNetworks ? com_velotra_tv_tavro_networklist_getInfo
                                               : com_velotra_tv_tavro_satellitelist_getInfo;
            const bool found = get(env, nullptr, text(identifier(list, id)), nullptr) != nullptr;
            return require(found == (model.get(list, id) != nullptr), "an object is read if there is a record");
        }
        const auto get = kind == kNetworks ? com_velotra_tv_tavro_networklist_getInfoList
                                           : com_velotra_tv_tavro_satellitelist_getInfoList;
        jobject const objects = get(env, nullptr, list, nullptr);
        model.use(list);
        require((objects == nullptr ? 0 : FakeJni::from(objects).elements.size()) == model.records(list).size(),
                "an object is read for every record");
    }

    // Like the start of another process with the same storage.
    void restart() {
        tavro_host_reset();
        for (int kind = 0; kind < 4; ++kind) {
            kNames[kind].bridge->handles().clear();
            models_[kind].close_all();
        }
    }

    void compare_open_lists() const {
        for (int kind = 0; kind < 4; ++kind) {
            std::set<std::uint16_t> open;
            for (const auto& entry : kNames[kind].bridge->handles()) {
                open.insert(entry.first);
            }
            require(open == models_[kind].open_lists(), "the lists that were used and not closed are open");
        }
    }

    void compare_records() const {
        for (int kind = 0; kind < 4; ++kind) {
            const Names& names = kNames[kind];
            for (std::uint16_t list = 1; list < 4; ++list) {
                const std::vector<Bytes> expected = models_[kind].records(list);
                MwdbHandle handle = 0;
                const bool exists = names.open(list, 0, 0, &handle) == kMwOk;
                require(exists == (models_[kind].lists().count(list) != 0), "the lists exist that should");
                std::uint16_t count = 0;
                names.count(handle, &count);
                require(count == expected.size(), "a list has as many records as it should");
                for (std::uint16_t index = 0; index < count; ++index) {
                    Bytes record(expected[index].size());
                    require(names.get_at(handle, index, record.data()) == kMwOk && record == expected[index],
                            "each record has the bytes that it should, at its position");
                }
                names.close(handle);
            }
        }
    }

    // No list is locked by this thread: another one gets each lock at once.
    void require_unlocked() const {
        std::thread([&] {
            for (int kind = 0; kind < 4; ++kind) {
                for (const auto& list : models_[kind].lists()) {
                    MwdbHandle handle = 0;
                    kNames[kind].open(list.first, 0, 0, &handle);
                    require(kNames[kind].lock(handle) == kMwOk, "no native leaves a list locked");
                    kNames[kind].close(handle); // releases the lock
                }
            }
        }).join();
    }

    Input& input_;
    const std::string& folder_;
    Platform platform_;
    FakeJni& jni_ = platform_.jni;
    std::array<ListModel, 4> models_ = {ListModel(kServices), ListModel(kStreams), ListModel(kNetworks),
                                        ListModel(kSatellites)};
    ListModel::Files files_;
    std::string service_path_; // of the last service list that was opened with a path
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string folder = [] {
        std::string made = temporary_folder();
        ::setenv("TAVRO_HOME", made.c_str(), 1);
        ::setenv("TAVRO_LOCK_TIMEOUT_MS", "0", 1);
        return made;
    }();
    Input input(data, size);
    Run(input, folder).calls();
    return 0;
}
