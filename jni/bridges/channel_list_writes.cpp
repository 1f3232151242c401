// The channel list's natives that write records: updates and adds.

#include "jni/bridges/channel_list_bridge.h"
#include "jni/bridges/entry_line.h"
#include "jni/bridges/list_writes.h"
#include "jni/bridges/managers.h"
#include "jni/env/java_list.h"
#include "jni/env/jni_log.h"
#include "jni/env/record_id.h"
#include "jni/records/channel_record.h"
#include "middleware/channel_id.h"

using namespace tavro;

namespace {

// Line numbers in the debug lines of the natives that add.
constexpr int kAddLine = 242;
constexpr int kAddHeaderDoneLine = 255;
constexpr int kAddCopyLine = 265;

// Calls `add` under the list's write lock; `call` is its name in the log. Returns the service's identifier, or
// `nothing` after a failure.
jstring add_locked(JNIEnv* env, const char* call, int (NativeVltTvChannelList::*add)(int, _SVL_REC_T*), int mwdbId,
                   _SVL_REC_T& record, jstring nothing) {
    int result = kDone;
    {
        const WriteLock<NativeVltTvChannelList> lock(*chList, mwdbId);
        result = (chList->*add)(mwdbId, &record);
    }
    TAVRO_LOG_JNI("[%s][%d] mwdbId = %d, rec_id = %d", call, result, mwdbId, record.ui2_svl_rec_id);
    return result == kDone ? combineMId(env, mwdbId, record.ui2_svl_rec_id) : nothing;
}

// The channel number that an object carries; 0 means none.
struct ChannelNumber {
    std::uint32_t major_number;
    std::uint32_t minor_number;

    bool is_set() const { return major_number != 0 || minor_number != 0; }
};

std::uint32_t number_or_0(RecordObject& object, const char* key_name, const char* field) {
    const Key key(object, key_name);
    return key.present() ? static_cast<std::uint32_t>(object.int_field(field).value_or(0)) : 0;
}

ChannelNumber channel_number(RecordObject& object) {
    const std::uint32_t major_number = number_or_0(object, "MajorChannelNumber", "majorChannelNumber");
    const std::uint32_t minor_number = number_or_0(object, "MinorChannelNumber", "minorChannelNumber");
    return {major_number, minor_number};
}

std::uint32_t generate_channel_id(ChannelNumber number, std::int32_t index) {
    return x_sb_gen_channel_id(static_cast<std::int32_t>(number.major_number),
                               static_cast<std::int32_t>(number.minor_number), index);
}

// Channel id of DVB and DTMB services: the major number from bit 18 on, above the low bits of `seed`.
std::uint32_t major_only_channel_id(ChannelNumber number, std::uint32_t seed, std::uint32_t seed_mask) {
    return ((seed & seed_mask) | (number.major_number << 18)) + 0x80;
}

constexpr std::uint32_t kDvbSeedMask = 0xF;
constexpr std::uint32_t kDtmbSeedMask = 0x3F;
constexpr std::uint32_t kType5MajorMask = 0x3FC0000;

void trace_unsupported_type(const _SVL_REC_HEADER_T& header) {
    TAVRO_LOG_JNI("e_brdcst_type = %d, unsupport type stheader.e_serv_type=%d \n", header.e_brdcst_type,
                  header.e_serv_type);
}

// Rebuilds the channel id of a stored service from the number that the object carries. Deliberate: for broadcast type 5
// the major number of the old id stays.
void renumber_stored(RecordObject& object, _SVL_REC_HEADER_T& header) {
    const ChannelNumber number = channel_number(object);
    if (!number.is_set() || object.jni().failed()) {
        return;
    }
    std::uint32_t& id = header.ui4_channel_id;
    switch (header.e_brdcst_type) {
    case kBroadcastDvb:
        id = major_only_channel_id(number, id, kDvbSeedMask);
        break;
    case kBroadcastType3:
        id = generate_channel_id(number, x_sb_get_channel_index(id));
        break;
    case kBroadcastType5:
        id = ((number.minor_number << 8) & 0xFFFF) + (id & kType5MajorMask) + (id & 0xFF);
        break;
    case kBroadcastDtmb:
        id = major_only_channel_id(number, id, kDtmbSeedMask);
        break;
    default:
        trace_unsupported_type(header);
        break;
    }
}

// Builds the channel id of a new service. Deliberate: the service type takes the place of the low bits of an old id.
void number_new(RecordObject& object, _SVL_REC_HEADER_T& header) {
    const ChannelNumber number = channel_number(object);
    if (!number.is_set() || object.jni().failed()) {
        return;
    }
    std::uint32_t& id = header.ui4_channel_id;
    switch (header.e_brdcst_type) {
    case kBroadcastDvb:
        id = major_only_channel_id(number, header.e_serv_type, kDvbSeedMask);
        break;
    case kBroadcastType3:
        id = generate_channel_id(number, header.e_serv_type);
        break;
    case kBroadcastType5:
        id = (((number.major_number << 18) & kType5MajorMask) | ((number.minor_number & 0xFF) << 8)) +
             header.e_serv_type;
        break;
    case kBroadcastDtmb:
        id = major_only_channel_id(number, header.e_serv_type, kDtmbSeedMask);
        break;
    default:
        trace_unsupported_type(header);
        break;
    }
}

// Converts the specific part of the broadcast types that have one.
void set_specific_info(RecordObject& object, _SVL_REC_T& record) {
    if (record.t_header.e_brdcst_type == kBroadcastDtmb) {
        _set_dtmb_info(object, record.u_specific.t_dtmb);
    } else if (record.t_header.e_brdcst_type == kBroadcastDvb) {
        _set_dvb_info(object, record.u_specific.t_dvb);
    }
}

constexpr char kRecordIdField[] = "svlIdSvlRecId";

// Reads the record id from the identifier in an object's field; 0 without an identifier. The list id is ignored.
// Returns false when the identifier cannot be parsed.
bool record_id_of(RecordObject& object, int& record_id) {
    record_id = 0;
    const LocalRef identifier(object.jni(), object.string_field(kRecordIdField).value_or(nullptr));
    int list_id = 0;
    return identifier.get() == nullptr || parse_identifier(object.jni(), identifier.get(), list_id, record_id);
}

// Updates the service that one element of a list names. The caller holds the write lock.
Updated update_element(Jni& jni, int mwdbId, jobject element) {
    const LocalRef cls(jni, jni.class_of(element));
    RecordObject object(jni, cls.get(), element, kChannelContainsKey);
    int record_id = 0;
    if (!record_id_of(object, record_id)) {
        return jni.failed() ? Updated::kFailed : Updated::kBadIdentifier;
    }
    _SVL_REC_T record = {};
    if (chList->getInfo(mwdbId, record_id, &record) != kDone) {
        return Updated::kFailed;
    }
    _set_header_info(object, record.t_header);
    renumber_stored(object, record.t_header);
    set_specific_info(object, record);
    return !jni.failed() && chList->updateInfo(mwdbId, &record) == kDone ? Updated::kDone : Updated::kFailed;
}

} // namespace

jint com_velotra_tv_tavro_channellist_updateInfo(JNIEnv* env, jobject, jint mwdbId, jobject channel) {
    trace_entry(__func__);
    if (channel == nullptr) {
        return kFailed;
    }
    Jni jni(env);
    RecordObject object(jni, jni.class_of(channel), channel, kChannelContainsKey);
    object.look_up_contains_key();
    int record_id = 0;
    {
        const Key key(object, "SvlIdSvlRecId");
        if (key.present() && !record_id_of(object, record_id)) {
            return kFailed;
        }
    }
    _SVL_REC_T record = {};
    if (chList->getInfo(mwdbId, record_id, &record) != kDone) {
        return kFailed;
    }
    _set_header_info(object, record.t_header);
    renumber_stored(object, record.t_header);
    set_specific_info(object, record);
    if (record.t_header.e_brdcst_type == kBroadcastType5) {
        const Key key(object, "SdtServiceType");
        if (key.present()) {
            std::uint8_t& type = record.u_specific.t_type5.ui1_sdt_service_type;
            type = static_cast<std::uint8_t>(object.int_field("sdtServiceType").value_or(type));
        }
    }
    return jni.failed() ? kFailed : update_locked(*chList, mwdbId, record);
}

jint com_velotra_tv_tavro_channellist_updateInfo_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    trace_entry(__func__);
    Jni jni(env);
    _SVL_REC_T record = {};
    if (!read_named(jni, *chList, identifier, record)) {
        return kFailed;
    }
    record.t_header.ui2_tsl_id = low16(mwdbId);
    record.t_header.ui2_nwl_id = low16(mwdbId);
    record.t_header.ui2_satl_id = low16(mwdbId);
    return update_locked(*chList, mwdbId, record);
}

jint com_velotra_tv_tavro_channellist_updateInfoList(JNIEnv* env, jobject, jint mwdbId, jobject channels) {
    trace_entry(__func__);
    Jni jni(env);
    JavaList list(jni, channels);
    if (jni.failed()) {
        return kFailed;
    }
    WriteLock<NativeVltTvChannelList> lock(*chList, mwdbId);
    for (jint i = 0; i < list.size(); ++i) {
        const LocalRef element(jni, list.get(i));
        if (element.get() == nullptr) {
            return kFailed;
        }
        switch (update_element(jni, mwdbId, element.get())) {
        case Updated::kDone:
            break;
        case Updated::kFailed:
            return kFailed;
        case Updated::kBadIdentifier:
            // Deliberate: the list stays half updated, and locked.
            lock.leave_locked();
            return i == 0 ? kFailed : kDone;
        }
    }
    return kDone;
}

jstring com_velotra_tv_tavro_channellist_add_Info(JNIEnv* env, jobject, jint mwdbId, jobject channel) {
    trace_entry({__func__, kAddLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    if (channel == nullptr || jni.failed()) {
        return nothing;
    }
    _SVL_REC_T record = {};
    record.t_header.ui4_nw_mask = 1;
    RecordObject object(jni, jni.class_of(channel), channel, kChannelContainsKey);
    _set_header_info(object, record.t_header);
    if (jni.failed()) {
        return nothing;
    }
    trace_entry({__func__, kAddHeaderDoneLine});
    number_new(object, record.t_header);
    set_specific_info(object, record);
    if (jni.failed()) {
        return nothing;
    }
    return add_locked(env, "chList->addInfo", &NativeVltTvChannelList::addInfo, mwdbId, record, nothing);
}

jstring com_velotra_tv_tavro_channellist_add_Info_by_recId(JNIEnv* env, jobject, jint mwdbId, jstring identifier) {
    trace_entry({__func__, kAddCopyLine});
    Jni jni(env);
    jstring nothing = jni.new_string("");
    _SVL_REC_T record = {};
    if (!read_named(jni, *chList, identifier, record)) {
        return nothing;
    }
    return add_locked(env, "chList->copyInfo", &NativeVltTvChannelList::copyInfo, mwdbId, record, nothing);
}
