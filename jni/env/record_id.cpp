#include "jni/env/record_id.h"

#include "jni/env/jni_log.h"
#include "text/identifier.h"

#include <algorithm>

using namespace tavro;

bool AllisNum(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool trimId(std::string_view identifier, int& list_id, int& record_id) {
    if (take_apart(identifier, list_id, record_id)) {
        return true;
    }
    if (identifier.empty()) {
        TAVRO_LOG_ERROR(kNoTag, "Invalid param.\n");
        return false;
    }
    const std::size_t comma = identifier.find(',');
    if (comma == std::string_view::npos) {
        TAVRO_LOG_ERROR(kNoTag, "Unknown data s_Id.\n");
        return false;
    }
    const std::string_view list = identifier.substr(0, comma);
    const std::string_view rest = identifier.substr(comma + 1);
    const std::string_view record = rest.substr(0, rest.find(','));
    if (!AllisNum(list) || !AllisNum(record)) {
        return false;
    }
    list_id = decimal(list);
    record_id = decimal(record);
    return true;
}

std::string combineStrMId(int list_id, int record_id) {
    std::string identifier = std::to_string(list_id);
    identifier += ',';
    identifier += std::to_string(record_id);
    return identifier;
}

jstring combineMId(JNIEnv* env, int list_id, int record_id) {
    Jni jni(env);
    return combine_identifier(jni, list_id, record_id);
}

namespace tavro {

bool parse_identifier(Jni& jni, jstring identifier, int& list_id, int& record_id) {
    if (jni.failed()) {
        return false;
    }
    std::string text;
    {
        // Only an identifier that cannot be parsed is copied, for its log lines.
        const UtfChars chars(jni, identifier);
        if (take_apart(chars.c_str(), list_id, record_id)) {
            return true;
        }
        text = chars.text();
    }
    return !jni.failed() && trimId(text, list_id, record_id);
}

jstring combine_identifier(Jni& jni, int list_id, int record_id) {
    TAVRO_LOG_JNI("[combineMId] mwdbId = %d, recId = %d", list_id, record_id);
    return jni.new_string(combineStrMId(list_id, record_id).c_str());
}

} // namespace tavro
