// The four list kinds for tests of their natives: the natives, and what differs between the kinds.
#pragma once

#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "jni/bridges/transport_stream_list_bridge.h"
#include "record_calls.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace tavro::test {

using Bytes = std::vector<std::byte>;

template <class Record>
Bytes bytes_of(const Record& record) {
    Bytes bytes(sizeof(record));
    std::memcpy(bytes.data(), &record, sizeof(record));
    return bytes;
}

// A record whose bytes differ from their neighbors, with that record id.
template <class Record, auto Id>
Record sample_record(std::uint16_t id) {
    Bytes bytes(sizeof(Record));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(i * 3 + 1);
    }
    Record record;
    std::memcpy(&record, bytes.data(), sizeof(record));
    record.*Id = id;
    return record;
}

struct BridgeNatives {
    jint (*set_up)(JNIEnv*, jobject);
    jint (*open)(JNIEnv*, jobject, jint list);
    jint (*open_path)(JNIEnv*, jobject, jint list, jstring path);
    jint (*close)(JNIEnv*, jobject, jint list);
    jint (*clean)(JNIEnv*, jobject, jint list);
    jint (*remove_list)(JNIEnv*, jobject, jint list);
    jint (*store)(JNIEnv*, jobject, jint list, jstring path);
    jint (*copy)(JNIEnv*, jobject, jint source, jint target);
    jint (*remove)(JNIEnv*, jobject, jstring identifier);
    jint (*remove_by_record_id)(JNIEnv*, jobject, jint list, jstring identifier);
    jstring (*add)(JNIEnv*, jobject, jint list, jobject object);
    jstring (*add_by_record_id)(JNIEnv*, jobject, jint list, jstring identifier);
    // The satellite list's natives ignore the list id here; they take it from the object.
    jint (*update)(JNIEnv*, jobject, jint list, jobject object);
    jint (*update_by_record_id)(JNIEnv*, jobject, jint list, jstring identifier);
    jint (*update_list)(JNIEnv*, jobject, jint list, jobject objects);
};

// The manager that a global variable holds.
struct ManagerSlot {
    const void* address;
    const void* (*current)();
    void (*destroy)(const void* manager);
};

template <auto& Slot>
ManagerSlot manager_slot() {
    return {&Slot, []() -> const void* { return Slot; },
            [](const void* manager) {
                delete static_cast<const std::remove_pointer_t<std::remove_reference_t<decltype(Slot)>>*>(manager);
            }};
}

struct BridgeKind {
    const char* name; // in the names of parameterized tests
    BridgeNatives natives;
    ManagerSlot manager;
    const char* manager_name; // in log lines
    tavro::HandleMap& (*handles)();
    const char* calls;    // start of the names of middleware calls
    std::uint32_t number; // the scripted handles are number << 16 | list id

    std::string native_names; // how the names of the natives begin
    // Entry log lines by the end of the native's name, without the prefix of all lines. The other natives write none.
    std::map<std::string, std::string> entry_lines;
    std::string remove_by_record_id = "remove_info_by_recId"; // end of that native's name

    // The journal's name of record objects, and the key and field of their identifier.
    std::string object;
    std::string id_key;
    std::string id_field;

    Bytes sample; // a record with record id 17
    // The sample as updateInfo_by_recId stores it in list 300.
    Bytes stamped;

    // An identifier that cannot be parsed. Parts that are not numbers throw in the satellite list manager.
    std::string bad_identifier = "1,x";

    bool is_services() const { return number == 1; }
};

inline void PrintTo(const BridgeKind* kind, std::ostream* out) { *out << kind->name; }

// Entry lines with the native's name alone (number 0), or with a number.
inline std::map<std::string, std::string> entry_lines(const std::string& natives,
                                                      const std::map<std::string, int>& numbers) {
    std::map<std::string, std::string> lines;
    for (const auto& [native, number] : numbers) {
        const std::string name = natives + native;
        lines[native] = number == 0 ? name : "[" + name + "][" + std::to_string(number) + "] ";
    }
    return lines;
}

inline const BridgeKind& service_kind() {
    static const BridgeKind kind = [] {
        const std::string natives = "com_velotra_tv_tavro_channellist_";
        auto stored = sample_record<_SVL_REC_T, &_SVL_REC_T::ui2_svl_rec_id>(17);
        BridgeKind made = {
            "Services",
            {com_velotra_tv_tavro_ch_list_native_setup, com_velotra_tv_tavro_channellist_open,
             com_velotra_tv_tavro_channellist_open_path, com_velotra_tv_tavro_channellist_close,
             com_velotra_tv_tavro_channellist_clean, com_velotra_tv_tavro_channellist_delete,
             com_velotra_tv_tavro_channellist_store, com_velotra_tv_tavro_channellist_copy,
             com_velotra_tv_tavro_channellist_remove_info, com_velotra_tv_tavro_channellist_remove_Info_by_recId,
             com_velotra_tv_tavro_channellist_add_Info, com_velotra_tv_tavro_channellist_add_Info_by_recId,
             com_velotra_tv_tavro_channellist_updateInfo, com_velotra_tv_tavro_channellist_updateInfo_by_recId,
             com_velotra_tv_tavro_channellist_updateInfoList},
            manager_slot<chList>(),
            "chList",
            tavro::SvlKind::handles,
            "x_svl_",
            1,
            natives,
            entry_lines(natives, {{"remove_info", 115},
                                  {"remove_Info_by_recId", 120},
                                  {"updateInfo", 0},
                                  {"updateInfo_by_recId", 0},
                                  {"updateInfoList", 0},
                                  {"add_Info", 242},
                                  {"add_Info_by_recId", 265}}),
            "remove_Info_by_recId",
            "channel",
            "SvlIdSvlRecId",
            "svlIdSvlRecId",
            bytes_of(stored),
            {}};
        stored.t_header.ui2_tsl_id = 300;
        stored.t_header.ui2_nwl_id = 300;
        stored.t_header.ui2_satl_id = 300;
        made.stamped = bytes_of(stored);
        return made;
    }();
    return kind;
}

inline const BridgeKind& transport_stream_kind() {
    static const BridgeKind kind = [] {
        const std::string natives = "com_velotra_tv_tavro_transportstreamlist_";
        BridgeKind made = {
            "TransportStreams",
            {com_velotra_tv_tavro_ts_list_native_setup, com_velotra_tv_tavro_transportstreamlist_open,
             com_velotra_tv_tavro_transportstreamlist_open_path, com_velotra_tv_tavro_transportstreamlist_close,
             com_velotra_tv_tavro_transportstreamlist_clean, com_velotra_tv_tavro_transportstreamlist_delete,
             com_velotra_tv_tavro_transportstreamlist_store, com_velotra_tv_tavro_transportstreamlist_copy,
             com_velotra_tv_tavro_transportstreamlist_remove_info,
             com_velotra_tv_tavro_transportstreamlist_remove_info_by_recId,
             com_velotra_tv_tavro_transportstreamlist_add_Info,
             com_velotra_tv_tavro_transportstreamlist_add_Info_by_recId,
             com_velotra_tv_tavro_transportstreamlist_updateInfo,
             com_velotra_tv_tavro_transportstreamlist_updateInfo_by_recId,
             com_velotra_tv_tavro_transportstreamlist_updateInfoList},
            manager_slot<tsList>(),
            "tsList",
            tavro::TslKind::handles,
            "x_tsl_",
            2,
            natives,
            entry_lines(natives, {{"remove_info", 2867},
                                  {"remove_info_by_recId", 2876},
                                  {"updateInfo", 0},
                                  {"updateInfo_by_recId", 0},
                                  {"updateInfoList", 0},
                                  {"add_Info", 2811},
                                  {"add_Info_by_recId", 2836},
                                  {"getInfoList", 0},
                                  {"getInfoListBySatellite", 0}}),
            "remove_info_by_recId",
            "stream",
            "TslIdTslRecId",
            "tslIdTslRecId",
            bytes_of(sample_record<_TSL_REC_T, &_TSL_REC_T::ui2_tsl_rec_id>(17)),
            {}};
        made.stamped = made.sample;
        made.stamped[20] = std::byte{44}; // 300 cut to a byte
        for (const std::size_t list_id : {708U, 712U}) {
            made.stamped[list_id] = std::byte{0x2C};
            made.stamped[list_id + 1] = std::byte{0x01};
        }
        return made;
    }();
    return kind;
}

inline const BridgeKind& network_kind() {
    static const BridgeKind kind = [] {
        const std::string natives = "com_velotra_tv_tavro_networklist_";
        auto stored = sample_record<_NWL_REC_T, &_NWL_REC_T::ui2_nwl_rec_id>(17);
        BridgeKind made = {
            "Networks",
            {com_velotra_tv_tavro_nw_list_native_setup, com_velotra_tv_tavro_networklist_open,
             com_velotra_tv_tavro_networklist_open_path, com_velotra_tv_tavro_networklist_close,
             com_velotra_tv_tavro_networklist_clean, com_velotra_tv_tavro_networklist_delete,
             com_velotra_tv_tavro_networklist_store, com_velotra_tv_tavro_networklist_copy,
             com_velotra_tv_tavro_networklist_remove_info, com_velotra_tv_tavro_networklist_remove_info_by_recId,
             com_velotra_tv_tavro_networklist_add_Info, com_velotra_tv_tavro_networklist_add_Info_by_recId,
             com_velotra_tv_tavro_networklist_updateInfo, com_velotra_tv_tavro_networklist_updateInfo_by_recId,
             com_velotra_tv_tavro_networklist_updateInfoList},
            manager_slot<nwList>(),
            "nwList",
            tavro::NwlKind::handles,
            "x_nwl_",
            3,
            natives,
            entry_lines(natives, {{"remove_info", 3238},
                                  {"remove_info_by_recId", 3248},
                                  {"updateInfo", 3462},
                                  {"updateInfo_by_recId", 3555},
                                  {"updateInfoList", 0},
                                  {"add_Info", 3109},
                                  {"add_Info_by_recId", 3208},
                                  {"getInfoList", 0}}),
            "remove_info_by_recId",
            "network",
            "NwlIdNwlRecId",
            "NwlIdNwlRecId",
            bytes_of(stored),
            {}};
        made.entry_lines["getInfo"] = natives + "getInfo line:3258 ";
        stored.ui2_nwl_id = 300;
        made.stamped = bytes_of(stored);
        return made;
    }();
    return kind;
}

inline const BridgeKind& satellite_kind() {
    static const BridgeKind kind = [] {
        const std::string natives = "com_velotra_tv_tavro_satellitelist_";
        const Bytes stored = bytes_of(sample_record<_SATL_REC_T, &_SATL_REC_T::ui2_satl_rec_id>(17));
        BridgeKind made = {
            "Satellites",
            {com_velotra_tv_tavro_satellitelist_native_setup, com_velotra_tv_tavro_satellitelist_open,
             com_velotra_tv_tavro_satellitelist_open_path, com_velotra_tv_tavro_satellitelist_close,
             com_velotra_tv_tavro_satellitelist_clean, com_velotra_tv_tavro_satellitelist_delete,
             com_velotra_tv_tavro_satellitelist_store, com_velotra_tv_tavro_satellitelist_copy,
             com_velotra_tv_tavro_satellitelist_remove_info, com_velotra_tv_tavro_satellitelist_remove_info_by_recId,
             com_velotra_tv_tavro_satellitelist_add_Info, com_velotra_tv_tavro_satellitelist_add_Info_by_recId,
             [](JNIEnv* env, jobject self, jint, jobject satellite) {
                 return com_velotra_tv_tavro_satellitelist_updateInfo(env, self, satellite);
             },
             com_velotra_tv_tavro_satellitelist_updateInfo_by_recId,
             [](JNIEnv* env, jobject self, jint, jobject satellites) {
                 return com_velotra_tv_tavro_satellitelist_updateInfoList(env, self, satellites);
             }},
            manager_slot<satList>(),
            "satList",
            tavro::SatlKind::handles,
            "x_satl_",
            4,
            natives,
            entry_lines(natives, {{"native_setup", 3694},
                                  {"clean", 3700},
                                  {"close", 3707},
                                  {"delete", 3715},
                                  {"copy", 3723},
                                  {"open", 3733},
                                  {"open_path", 3741},
                                  {"store", 3749},
                                  {"remove_info", 4492},
                                  {"remove_info_by_recId", 4502},
                                  {"updateInfo", 4690},
                                  {"updateInfo_by_recId", 4797},
                                  {"updateInfoList", 0},
                                  {"add_Info", 4373},
                                  {"add_Info_by_recId", 4464},
                                  {"getInfoList", 4601}}),
            "remove_info_by_recId",
            "satellite",
            "RecId",
            "RecId",
            stored,
            stored};
        made.bad_identifier = "17";
        return made;
    }();
    return kind;
}

inline const BridgeKind* const kBridgeKinds[] = {&service_kind(), &transport_stream_kind(), &network_kind(),
                                                 &satellite_kind()};

} // namespace tavro::test
