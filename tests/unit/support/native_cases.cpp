#include "native_cases.h"

#include "in_platform.h"
#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"

#include <utility>

namespace tavro::test {
namespace {

constexpr jint kList = 1;
constexpr jint kOtherList = 2;

std::string text_of(jint status) { return std::to_string(status); }
std::string text_of(jobject object) {
    if (object == nullptr) {
        return "null";
    }
    const FakeObject& made = FakeJni::from(object);
    return made.name == "ArrayList" ? "list of " + std::to_string(made.elements.size()) : made.name;
}
std::string text_of(jstring text) { return text == nullptr ? "null" : quoted(FakeJni::from(text).text); }
std::string text_of(jbyteArray bytes) {
    return bytes == nullptr ? "null" : std::to_string(FakeJni::from(bytes).bytes.size()) + " bytes";
}

// Java values are made as by the platform: their memory is not the library's.
jstring string(FakeJni& jni, const char* text) {
    const InPlatform here;
    return text == nullptr ? nullptr : FakeJni::string_ref(jni.string(text));
}

// The cases of a kind, as they are collected.
class Cases {
public:
    explicit Cases(const BridgeKind& kind) : kind_(kind) {}

    template <class Native, class Call>
    void add(const std::string& name, Native* native, const Situation& situation, Call call, bool slow = false) {
        made.push_back({name, &kind_, reinterpret_cast<const void*>(native), situation,
                        [call](FakeJni& jni) {
                            const auto result = call(jni);
                            const InPlatform here;
                            return text_of(result);
                        },
                        slow});
    }
    // The same with the list closed and with the list open.
    template <class Native, class Call>
    void add_both(const std::string& name, Native* native, Call call, Situation situation = {}) {
        situation.open = false;
        add(name + ", closed list", native, situation, call);
        situation.open = true;
        add(name + ", open list", native, situation, call);
    }

    std::vector<NativeCase> made;

private:
    const BridgeKind& kind_;
};

// The Java list of some objects.
using Objects = std::vector<FakeObject*>;
jobject list_of(FakeJni& jni, const Objects& objects) {
    const InPlatform here;
    return FakeJni::ref(jni.list(objects));
}

// Two record objects, or one and a null.
jobject two_objects(FakeJni& jni, bool null_last = false) {
    const InPlatform here;
    FakeObject& second = filled_object(jni);
    for (const char* field : {"svlIdSvlRecId", "tslIdTslRecId", "NwlIdNwlRecId", "RecId"}) {
        second.object_fields[field] = &jni.string("1,18");
    }
    return list_of(jni, {&filled_object(jni), null_last ? nullptr : &second});
}

Situation with_file(MwStatus status, Situation situation = {}) {
    situation.file = status;
    return situation;
}

const Situation kOpen = [] {
    Situation situation;
    situation.open = true;
    return situation;
}();
const Situation kMissing = [] {
    Situation situation;
    situation.missing = true;
    return situation;
}();
const Situation kEmpty = [] {
    Situation situation;
    situation.open = true;
    situation.empty = true;
    return situation;
}();

// The registered functions of the natives for which a kind has a function of its own.
const void* registered_update(const BridgeKind& kind) {
    return kind.number == 4 ? reinterpret_cast<const void*>(com_velotra_tv_tavro_satellitelist_updateInfo)
                            : reinterpret_cast<const void*>(kind.natives.update);
}
const void* registered_list_update(const BridgeKind& kind) {
    return kind.number == 4 ? reinterpret_cast<const void*>(com_velotra_tv_tavro_satellitelist_updateInfoList)
                            : reinterpret_cast<const void*>(kind.natives.update_list);
}

void add_list_natives(Cases& cases, const BridgeKind& kind) {
    const BridgeNatives& natives = kind.natives;
    cases.add("open, closed list", natives.open, {},
              [=](FakeJni& jni) { return natives.open(jni.env(), nullptr, kList); });
    cases.add("open, open list", natives.open, kOpen,
              [=](FakeJni& jni) { return natives.open(jni.env(), nullptr, kList); });
    cases.add("open, missing list", natives.open, kMissing,
              [=](FakeJni& jni) { return natives.open(jni.env(), nullptr, kList); });

    const auto open_path = [&](const std::string& name, const Situation& situation, const char* path) {
        cases.add("open with path, " + name, natives.open_path, situation,
                  [=](FakeJni& jni) { return natives.open_path(jni.env(), nullptr, kList, string(jni, path)); });
    };
    open_path("closed list", {}, "/data/x");
    open_path("open list", kOpen, "/data/x");
    open_path("missing list", kMissing, "/data/x");
    open_path("empty list", kEmpty, "/data/x");
    open_path("no file", with_file(kMwNoFile), "/data/x");
    open_path("not a list file", with_file(kMwNotAListFile), "/data/x");
    open_path("empty list, not a list file", with_file(kMwNotAListFile, kEmpty), "/data/x");
    open_path("scan list, no file, no cache", with_file(kMwNoFile), "/data/scan_cable.bin");
    Situation cached = with_file(kMwNoFile);
    cached.cached = true;
    open_path("scan list, no file, cache", cached, "/data/scan_cable.bin");
    cached.file = kMwNotAListFile;
    open_path("scan list, not a list file, cache", cached, "/data/scan_terrestrial.bin");
    open_path("null path", {}, nullptr);

    cases.add_both("close", natives.close, [=](FakeJni& jni) { return natives.close(jni.env(), nullptr, kList); });
    cases.add_both("clean", natives.clean, [=](FakeJni& jni) { return natives.clean(jni.env(), nullptr, kList); });
    cases.add_both("delete", natives.remove_list,
                   [=](FakeJni& jni) { return natives.remove_list(jni.env(), nullptr, kList); });
    cases.add_both("copy", natives.copy,
                   [=](FakeJni& jni) { return natives.copy(jni.env(), nullptr, kOtherList, kList); });
    cases.add_both("store", natives.store,
                   [=](FakeJni& jni) { return natives.store(jni.env(), nullptr, kList, string(jni, "/data/stored")); });
    cases.add("store, null path", natives.store, {},
              [=](FakeJni& jni) { return natives.store(jni.env(), nullptr, kList, nullptr); });
}

void add_writing_natives(Cases& cases, const BridgeKind& kind) {
    const BridgeNatives& natives = kind.natives;
    cases.add_both("remove", natives.remove,
                   [=](FakeJni& jni) { return natives.remove(jni.env(), nullptr, string(jni, "1,18")); });
    cases.add("remove, no comma", natives.remove, {},
              [=](FakeJni& jni) { return natives.remove(jni.env(), nullptr, string(jni, "18")); });
    cases.add_both("remove by record id", natives.remove_by_record_id, [=](FakeJni& jni) {
        return natives.remove_by_record_id(jni.env(), nullptr, kList, string(jni, "9,18"));
    });
    cases.add("remove by record id, no comma", natives.remove_by_record_id, {},
              [=](FakeJni& jni) { return natives.remove_by_record_id(jni.env(), nullptr, kList, string(jni, "18")); });

    const auto add = [=](FakeJni& jni, int type) {
        return natives.add(jni.env(), nullptr, kList, FakeJni::ref(filled_object(jni, type)));
    };
    cases.add_both("add", natives.add, [=](FakeJni& jni) { return add(jni, 2); });
    cases.add("add, null object", natives.add, {},
              [=](FakeJni& jni) { return natives.add(jni.env(), nullptr, kList, nullptr); });
    cases.add(
        "add, every key", natives.add, kOpen,
        [=](FakeJni& jni) {
            FakeObject& object = filled_object(jni);
            object.has_all_keys = true;
            return natives.add(jni.env(), nullptr, kList, FakeJni::ref(object));
        },
        true);
    cases.add_both("add a copy", natives.add_by_record_id, [=](FakeJni& jni) {
        return natives.add_by_record_id(jni.env(), nullptr, kList, string(jni, "2,19"));
    });
    Situation taken = kOpen;
    taken.taken = true;
    cases.add("add a copy, id taken", natives.add_by_record_id, taken,
              [=](FakeJni& jni) { return natives.add_by_record_id(jni.env(), nullptr, kList, string(jni, "2,17")); });

    const auto update = [=](FakeJni& jni, int type) {
        return natives.update(jni.env(), nullptr, kList, FakeJni::ref(filled_object(jni, type)));
    };
    const auto add_update = [&](const std::string& name, const Situation& situation, auto call, bool slow = false) {
        cases.add(name, natives.update, situation, call, slow);
        cases.made.back().native = registered_update(kind);
    };
    add_update("update, closed list", {}, [=](FakeJni& jni) { return update(jni, 2); });
    add_update("update, open list", kOpen, [=](FakeJni& jni) { return update(jni, 2); });
    add_update("update, null object", {},
               [=](FakeJni& jni) { return natives.update(jni.env(), nullptr, kList, nullptr); });
    add_update(
        "update, every key", kOpen,
        [=](FakeJni& jni) {
            FakeObject& object = filled_object(jni);
            object.has_all_keys = true;
            return natives.update(jni.env(), nullptr, kList, FakeJni::ref(object));
        },
        true);
    if (kind.is_services()) {
        for (const int type : {3, 5, 7, 9}) {
            const std::string suffix = ", broadcast type " + std::to_string(type);
            cases.add("add" + suffix, natives.add, kOpen, [=](FakeJni& jni) { return add(jni, type); });
            add_update("update" + suffix, kOpen, [=](FakeJni& jni) { return update(jni, type); });
        }
    }
    cases.add_both("update by record", natives.update_by_record_id, [=](FakeJni& jni) {
        return natives.update_by_record_id(jni.env(), nullptr, kList, string(jni, "2,17"));
    });

    const auto add_list_update = [&](const std::string& name, const Situation& situation, auto call) {
        cases.add(name, natives.update_list, situation, call);
        cases.made.back().native = registered_list_update(kind);
    };
    const auto two = [=](FakeJni& jni) { return natives.update_list(jni.env(), nullptr, kList, two_objects(jni)); };
    add_list_update("update list, closed list", {}, two);
    add_list_update("update list, open list", kOpen, two);
    add_list_update("update list, no elements", {},
                    [=](FakeJni& jni) { return natives.update_list(jni.env(), nullptr, kList, list_of(jni, {})); });
    add_list_update("update list, null list", {},
                    [=](FakeJni& jni) { return natives.update_list(jni.env(), nullptr, kList, nullptr); });
    add_list_update("update list, null element", kOpen, [=](FakeJni& jni) {
        return natives.update_list(jni.env(), nullptr, kList, two_objects(jni, true));
    });
}

void add_service_reads(Cases& cases) {
    const auto add_walk = [&](const std::string& name, jbyteArray (*native)(JNIEnv*, jobject, jint, jint),
                              jint wanted) {
        cases.add_both(name, native, [=](FakeJni& jni) { return native(jni.env(), nullptr, kList, wanted); });
    };
    cases.add_both("read", com_velotra_tv_tavro_channellist_getSVLInfo, [](FakeJni& jni) {
        return com_velotra_tv_tavro_channellist_getSVLInfo(jni.env(), nullptr, string(jni, "1,17"));
    });
    const auto read_all = [](FakeJni& jni) {
        return com_velotra_tv_tavro_channellist_getSVLInfoList(jni.env(), nullptr, kList);
    };
    cases.add_both("read all", com_velotra_tv_tavro_channellist_getSVLInfoList, read_all);
    cases.add("read all, empty list", com_velotra_tv_tavro_channellist_getSVLInfoList, kEmpty, read_all);
    add_walk("filter by stream", com_velotra_tv_tavro_channellist_getInfoListByTransportStream, 7);
    cases.add("filter by stream, list loaded from a file",
              com_velotra_tv_tavro_channellist_getInfoListByTransportStream, kOpen, [=](FakeJni& jni) {
                  chList->setPath("/data/x");
                  return com_velotra_tv_tavro_channellist_getInfoListByTransportStream(jni.env(), nullptr, kList, 7);
              });
    add_walk("filter by stream record", com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord, 17);
    add_walk("filter by network", com_velotra_tv_tavro_channellist_getInfoListByNetwork, 7);
}

void add_stream_reads(Cases& cases) {
    cases.add_both("read", com_velotra_tv_tavro_transportstreamlist_getInfo, [](FakeJni& jni) {
        return com_velotra_tv_tavro_transportstreamlist_getInfo(jni.env(), nullptr, string(jni, "1,17"));
    });
    const auto read_all = [](FakeJni& jni) {
        return com_velotra_tv_tavro_transportstreamlist_getInfoList(jni.env(), nullptr, kList);
    };
    cases.add_both("read all", com_velotra_tv_tavro_transportstreamlist_getInfoList, read_all);
    cases.add("read all, empty list", com_velotra_tv_tavro_transportstreamlist_getInfoList, kEmpty, read_all);
    cases.add_both(
        "filter by satellite", com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite, [](FakeJni& jni) {
            return com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(jni.env(), nullptr, kList, 17);
        });
}

// The reads of networks and of satellites, which make Java objects.
void add_object_reads(Cases& cases, jobject (*one)(JNIEnv*, jobject, jstring, jobject),
                      jobject (*all)(JNIEnv*, jobject, jint, jobject), const std::vector<const char*>& keys) {
    const auto names = [keys](FakeJni& jni) {
        const InPlatform here;
        Objects strings;
        for (const char* key : keys) {
            strings.push_back(&jni.string(key));
        }
        return list_of(jni, strings);
    };
    cases.add_both("read", one, [=](FakeJni& jni) { return one(jni.env(), nullptr, string(jni, "1,17"), nullptr); });
    cases.add("read by keys", one, kOpen,
              [=](FakeJni& jni) { return one(jni.env(), nullptr, string(jni, "1,17"), names(jni)); });
    cases.add_both("read all", all, [=](FakeJni& jni) { return all(jni.env(), nullptr, kList, nullptr); });
    cases.add("read all by keys", all, kOpen, [=](FakeJni& jni) { return all(jni.env(), nullptr, kList, names(jni)); });
    cases.add("read all, empty list", all, kEmpty,
              [=](FakeJni& jni) { return all(jni.env(), nullptr, kList, nullptr); });
}

} // namespace

std::vector<NativeCase> native_cases(const BridgeKind& kind) {
    Cases cases(kind);
    cases.add("set up", kind.natives.set_up, {}, [&](FakeJni& jni) -> jint {
        const void* before = kind.manager.current();
        const bool made = kind.natives.set_up(jni.env(), nullptr) != 0;
        const void* manager = kind.manager.current();
        if (manager != before) {
            kind.manager.destroy(manager);
        }
        return made ? 1 : 0;
    });
    add_list_natives(cases, kind);
    add_writing_natives(cases, kind);
    switch (kind.number) {
    case 1:
        add_service_reads(cases);
        break;
    case 2:
        add_stream_reads(cases);
        break;
    case 3:
        add_object_reads(cases, com_velotra_tv_tavro_networklist_getInfo, com_velotra_tv_tavro_networklist_getInfoList,
                         {"NetworkName", "NwlIdNwlRecId"});
        break;
    default:
        add_object_reads(cases, com_velotra_tv_tavro_satellitelist_getInfo,
                         com_velotra_tv_tavro_satellitelist_getInfoList, {"Name", "LnbType"});
        break;
    }
    return cases.made;
}

FakeObject& filled_object(FakeJni& jni, int broadcast_type) {
    const InPlatform here;
    FakeObject& object = jni.object("object");
    object.keys = {"SvlIdSvlRecId",
                   "TslIdTslRecId",
                   "NwlIdNwlRecId",
                   "TslRecId",
                   "ServiceName",
                   "BroadcastType",
                   "DadInfo",
                   "MajorChannelNumber",
                   "NetworkName",
                   "TargetRegionCode",
                   "TslNwlRecId",
                   "AcTsName",
                   "FecInner",
                   "Standard",
                   "NwlNetworkId",
                   "RecId",
                   "MaskStatusOn",
                   "OrbitPosition",
                   "Name",
                   "AntennaType",
                   "LnbPower",
                   "DiseqcPosition",
                   "DiseqcPositionEx",
                   "DiseqcPolar",
                   "SingleCableUserBandSub",
                   "LnbSwitchFreq",
                   "TslSatlRecId",
                   "AlternateFrequencyInfoList"};
    object.int_fields = {{"broadcastType", broadcast_type}, {"majorChannelNumber", 5}};
    FakeObject& array = jni.object("array");
    array.elements = {&jni.object("entry"), &jni.object("entry")};
    FakeObject& text = jni.string("2,18");
    object.object_fields = {{"svlIdSvlRecId", &jni.string("1,17")},
                            {"tslIdTslRecId", &jni.string("1,17")},
                            {"NwlIdNwlRecId", &jni.string("1,17")},
                            {"RecId", &jni.string("1,17")},
                            {"Name", &text},
                            {"tslRecId", &text},
                            {"serviceName", &text},
                            {"dadInfo", &text},
                            {"networkName", &text},
                            {"NetworkName", &text},
                            {"tslNwlRecId", &text},
                            {"acTsName", &text},
                            {"tslSatlRecId", &text},
                            {"alternateFrequencyInfoList", &array},
                            {"targetRegionCode", &jni.int_array({1})}};
    return object;
}

bool is_failure(const std::string& result) { return result == "null" || result == "\"\"" || result.rfind('-', 0) == 0; }

} // namespace tavro::test
