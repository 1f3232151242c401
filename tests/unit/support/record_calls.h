// The JNI calls that asking Java record objects for their values makes, as the fake platform journals them.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace tavro::test {

using Lines = std::vector<std::string>;

template <class... Lists>
Lines joined(Lines first, const Lists&... more) {
    (first.insert(first.end(), more.begin(), more.end()), ...);
    return first;
}

inline std::string quoted(const std::string& text) { return '"' + text + '"'; }

// A local reference that is given back, by its object's name.
inline Lines given_back(const std::string& name) { return {"DeleteLocalRef(" + name + ")"}; }

// What asking `object` for a key leaves when the object lacks it, or has it and `reads` is done for it.
inline Lines asked(const std::string& object, const std::string& key, const Lines& reads = {}) {
    const std::string string = quoted(key);
    return joined({"NewStringUTF(" + string + ")", object + ".isContainsKey(" + object + ", " + string + ")"}, reads,
                  given_back(string));
}

inline Lines int_read(const std::string& field) {
    return {"GetFieldID(" + field + ", I)", "GetIntField(" + field + ")"};
}
inline Lines object_read(const std::string& field, const std::string& descriptor = "Ljava/lang/String;") {
    return {"GetFieldID(" + field + ", " + descriptor + ")", "GetObjectField(" + field + ")"};
}

// The characters of a string, kept or given back.
inline Lines chars_kept(const std::string& text) { return {"GetStringUTFChars(" + quoted(text) + ")"}; }
inline Lines chars(const std::string& text) {
    return joined(chars_kept(text), Lines{"ReleaseStringUTFChars(" + quoted(text) + ")"});
}

// A conversion's read of a string: the characters are kept, the reference is given back after that.
inline Lines text_read(const std::string& field, const std::string& text) {
    return joined(object_read(field), chars_kept(text), given_back(quoted(text)));
}

inline const std::string kStreamClass = "com/velotra/tv/tavro/services/channellist/VltTvTransportStreamInfoBase";
inline const std::string kFindStreamClass = "FindClass(" + kStreamClass + ")";
inline const std::string kStreamContainsKey =
    "GetMethodID(isContainsKey, (Lcom/velotra/tv/tavro/services/channellist/VltTvTransportStreamInfoBase;"
    "Ljava/lang/String;)Z)";

// The whole conversion of an object, stage by stage. `reads` holds what is done for the keys that it carries.
inline Lines stream_conversion(const std::string& object, const std::map<std::string, Lines>& reads = {}) {
    const std::vector<std::vector<const char*>> stages = {
        {"BroadcastType", "BroadcastMedium", "NetworkId", "OriginalNetworkId", "TransportStreamId", "TslNwlRecId",
         "Frequency", "Bandwidth", "BroadcastMode", "PlpId", "PlpGroupId", "NetworkName", "BarkerChannel"},
        {"FecInner", "Modulation", "Standard", "GuardInterval", "TransmissionMode"},
        {"Hierarchy", "FecOuter", "SymbolRate", "PilotInsert", "RollOff", "CodeRate", "IsHomeTransponder"},
        {"TslSatlRecId", "AcTsName", "TunerPolarizaTion", "SignalStrength", "SignalQuality"},
        {"AlternateFrequencyInfoList", "RcKeyId"}};
    Lines lines = {kFindStreamClass};
    for (const auto& stage : stages) {
        lines.push_back(kStreamContainsKey);
        for (const char* key : stage) {
            const auto read = reads.find(key);
            lines = joined(lines, asked(object, key, read == reads.end() ? Lines{} : read->second));
        }
    }
    return joined(lines, given_back(kStreamClass));
}

} // namespace tavro::test
