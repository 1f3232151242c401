#include "jni/record_id.h"

#include "jni/log_gate.h"

#include <algorithm>

bool AllisNum(std::string text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool trimId(std::string identifier, int& list_id, int& record_id) {
    if (identifier.empty()) {
        TAVRO_LOG_ERROR(kNoTag, "Invalid param.\n");
        return false;
    }
    const std::size_t comma = identifier.find(',');
    if (comma == std::string::npos) {
        TAVRO_LOG_ERROR(kNoTag, "Unknown data s_Id.\n");
        return false;
    }
    const std::string list = identifier.substr(0, comma);
    const std::string record = identifier.substr(comma + 1, identifier.find(',', comma + 1) - comma - 1);
    if (!AllisNum(list) || !AllisNum(record)) {
        return false;
    }
    list_id = std::stoi(list);
    record_id = std::stoi(record);
    return true;
}

std::string combineStrMId(int list_id, int record_id) {
    return std::to_string(list_id) + "," + std::to_string(record_id);
}

jstring combineMId(JNIEnv* env, int list_id, int record_id) {
    tavro::Jni jni(env);
    return tavro::combine_identifier(jni, list_id, record_id);
}

namespace tavro {

bool parse_identifier(Jni& jni, jstring identifier, int& list_id, int& record_id) {
    return trimId(jni.text(identifier), list_id, record_id);
}

jstring combine_identifier(Jni& jni, int list_id, int record_id) {
    TAVRO_LOG_DEBUG(kNoTag, TAVRO_JNI_PREFIX "[combineMId] mwdbId = %d, recId = %d", list_id, record_id);
    return jni.new_string(combineStrMId(list_id, record_id).c_str());
}

} // namespace tavro
