// The JNI calls that read and fill Java record objects, as the fake platform journals them.
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

// Releases a local reference, named after its object.
inline Lines given_back(const std::string& name) { return {"DeleteLocalRef(" + name + ")"}; }

// Asks `object` whether it has a key. `reads` are the calls that follow when the object has the key.
inline Lines asked(const std::string& object, const std::string& key, const Lines& reads = {}) {
    const std::string string = quoted(key);
    return joined({"NewStringUTF(" + string + ")", object + ".isContainsKey(" + object + ", " + string + ")"}, reads,
                  given_back(string));
}

// Asks for keys in their order. `reads` has the calls for those that the object has.
inline Lines all_asked(const std::string& object, const Lines& keys, const std::map<std::string, Lines>& reads = {}) {
    Lines lines;
    for (const std::string& key : keys) {
        const auto read = reads.find(key);
        lines = joined(lines, asked(object, key, read == reads.end() ? Lines{} : read->second));
    }
    return lines;
}

inline Lines int_read(const std::string& field) {
    return {"GetFieldID(" + field + ", I)", "GetIntField(" + field + ")"};
}
inline Lines object_read(const std::string& field, const std::string& descriptor = "Ljava/lang/String;") {
    return {"GetFieldID(" + field + ", " + descriptor + ")", "GetObjectField(" + field + ")"};
}

// Gets the characters of a string, and keeps or releases them.
inline Lines chars_kept(const std::string& text) { return {"GetStringUTFChars(" + quoted(text) + ")"}; }
inline Lines chars(const std::string& text) {
    return joined(chars_kept(text), Lines{"ReleaseStringUTFChars(" + quoted(text) + ")"});
}

// Reads a string value of a record: its characters are kept, its reference is released.
inline Lines text_read(const std::string& field, const std::string& text) {
    return joined(object_read(field), chars_kept(text), given_back(quoted(text)));
}

// Calls a setter of `object`. `before` comes between its look-up and its call.
inline Lines value_set(const std::string& object, const std::string& setter, const std::string& argument,
                       const std::string& signature, const Lines& before = {}) {
    return joined(Lines{"GetMethodID(" + setter + ", " + signature + ")"}, before,
                  Lines{object + "." + setter + "(" + argument + ")"});
}
inline Lines number_set(const std::string& object, const std::string& setter, int value) {
    return value_set(object, setter, std::to_string(value), "(I)V");
}
// The same for a text, for which a string is made.
inline Lines text_set(const std::string& object, const std::string& setter, const std::string& text) {
    return joined(
        value_set(object, setter, quoted(text), "(Ljava/lang/String;)V", {"NewStringUTF(" + quoted(text) + ")"}),
        given_back(quoted(text)));
}

inline const std::string kPackage = "com/velotra/tv/tavro/services/channellist/";

// The look-up of isContainsKey for objects of a class.
inline std::string contains_key_of(const std::string& cls) {
    return "GetMethodID(isContainsKey, (L" + cls + ";Ljava/lang/String;)Z)";
}

inline const std::string kStreamClass = kPackage + "VltTvTransportStreamInfoBase";
inline const std::string kFindStreamClass = "FindClass(" + kStreamClass + ")";
inline const std::string kStreamContainsKey = contains_key_of(kStreamClass);

// The whole conversion of a transport stream. `reads` has the calls for the keys that the object has.
inline Lines stream_conversion(const std::string& object, const std::map<std::string, Lines>& reads = {}) {
    const std::vector<Lines> stages = {
        {"BroadcastType", "BroadcastMedium", "NetworkId", "OriginalNetworkId", "TransportStreamId", "TslNwlRecId",
         "Frequency", "Bandwidth", "BroadcastMode", "PlpId", "PlpGroupId", "NetworkName", "BarkerChannel"},
        {"FecInner", "Modulation", "Standard", "GuardInterval", "TransmissionMode"},
        {"Hierarchy", "FecOuter", "SymbolRate", "PilotInsert", "RollOff", "CodeRate", "IsHomeTransponder"},
        {"TslSatlRecId", "AcTsName", "TunerPolarizaTion", "SignalStrength", "SignalQuality"},
        {"AlternateFrequencyInfoList", "RcKeyId"}};
    Lines lines = {kFindStreamClass};
    for (const Lines& stage : stages) {
        lines = joined(lines, Lines{kStreamContainsKey}, all_asked(object, stage, reads));
    }
    return joined(lines, given_back(kStreamClass));
}

// Values of a network, in the order in which they are read.
inline const Lines kNetworkKeys = {"NetworkVersion", "NetworkName", "NwlFavNetworkCandidate", "NwlFavNetwork",
                                   "NwlNetworkId"};

// Values of a satellite, in the order in which they are read for an add. isContainsKey is looked up before each of
// the first three groups. An update does not read the third.
inline const Lines kSatelliteMainKeys = {"MaskStatusOn",      "MaskLnbUniver", "MaskLnbSingcab", "MaskLnbSingcabJess",
                                         "LnbSignalDetected", "OrbitPosition", "Name",           "AntennaType"};
inline const Lines kSatelliteDiseqcKeys = {"LnbPower",
                                           "ToneBurst",
                                           "DiseqcType",
                                           "Tone22k",
                                           "SingleCableUserBandMain",
                                           "UnicablePosition",
                                           "DiseqcPosition",
                                           "SingleCableBandFreqMain",
                                           "MduType",
                                           "DiseqcTypeEx",
                                           "DiseqcPositionEx"};
inline const Lines kSatellitePolarKeys = {"DiseqcPolar"};
inline const Lines kSatelliteLnbKeys = {
    "SingleCableUserBandSub", "SingleCableBandFreqSub", "LnbType", "LnbLowFreq", "LnbHighFreq", "LnbSwitchFreq"};
inline const Lines kSatelliteAddKeys =
    joined(kSatelliteMainKeys, kSatelliteDiseqcKeys, kSatellitePolarKeys, kSatelliteLnbKeys);
inline const Lines kSatelliteUpdateKeys = joined(kSatelliteMainKeys, kSatelliteDiseqcKeys, kSatelliteLnbKeys);

inline std::string satellite_field(const std::string& key) {
    return key == "LnbSignalDetected" ? "lnbSignalDetected" : key;
}

inline const std::string kSatelliteBase = kPackage + "VltTvSatelliteInfoBase";
inline const std::string kSatelliteContainsKeyCall = contains_key_of(kSatelliteBase);

// The conversion of a satellite. `reads` has the calls for the keys that the object has.
inline Lines satellite_conversion(bool is_add, const std::map<std::string, Lines>& reads = {}) {
    const Lines look_up = {kSatelliteContainsKeyCall};
    const Lines polar = is_add ? joined(look_up, all_asked("satellite", kSatellitePolarKeys, reads)) : Lines{};
    return joined(look_up, all_asked("satellite", kSatelliteMainKeys, reads), look_up,
                  all_asked("satellite", kSatelliteDiseqcKeys, reads), polar,
                  all_asked("satellite", kSatelliteLnbKeys, reads));
}

} // namespace tavro::test
