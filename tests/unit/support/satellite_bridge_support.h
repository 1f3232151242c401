// The satellite list's natives over a Java environment that shows every call: keys, class names, and which
// class methods and fields are looked up on.
#pragma once

#include "fake_jni.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/satellite_list_bridge.h"
#include "record_calls.h"
#include "script.h"
#include "scripted_test.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace tavro::test {

inline const std::string kPackage = "com/velotra/tv/tavro/services/channellist/";
inline const std::string kInfo = kPackage + "VltTvSatelliteInfo";
inline const std::string kBase = kPackage + "VltTvSatelliteInfoBase";
inline const std::string kContainsKey = "(L" + kBase + ";Ljava/lang/String;)Z";
inline const std::string kBridge = "com_velotra_tv_tavro_satellitelist_";

// The keys in the order in which they are asked of an object that is added.
inline const std::vector<std::string> kMainKeys = {
    "MaskStatusOn",      "MaskLnbUniver", "MaskLnbSingcab", "MaskLnbSingcabJess",
    "LnbSignalDetected", "OrbitPosition", "Name",           "AntennaType"};
inline const std::vector<std::string> kDiseqcKeys = {"LnbPower",
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
inline const std::vector<std::string> kSubDiseqcKeys = {"DiseqcPolar"};
inline const std::vector<std::string> kSubKeys = {
    "SingleCableUserBandSub", "SingleCableBandFreqSub", "LnbType", "LnbLowFreq", "LnbHighFreq", "LnbSwitchFreq"};

inline const std::vector<std::string> kAddedKeys = joined(kMainKeys, kDiseqcKeys, kSubDiseqcKeys, kSubKeys);
inline const std::vector<std::string> kUpdatedKeys = joined(kMainKeys, kDiseqcKeys, kSubKeys); // without DiseqcPolar

inline std::string field_of(const std::string& key) { return key == "LnbSignalDetected" ? "lnbSignalDetected" : key; }

// Sees which class every method and field is looked up on.
class LookUps {
public:
    explicit LookUps(FakeJni& jni) : original_(jni.env()->functions), table_(*original_) {
        table_.reserved1 = this;
        table_.GetMethodID = [](JNIEnv* env, jclass cls, const char* name, const char* signature) {
            return of(env, cls, name, signature).GetMethodID(env, cls, name, signature);
        };
        table_.GetFieldID = [](JNIEnv* env, jclass cls, const char* name, const char* descriptor) {
            return of(env, cls, name, descriptor).GetFieldID(env, cls, name, descriptor);
        };
        jni.env()->functions = &table_;
    }

    // "CLASS.NAME SIGNATURE" of those with this name, or of all.
    Lines with(const std::string& name) const {
        Lines found;
        for (const auto& [member, text] : seen_) {
            if (member == name || name.empty()) {
                found.push_back(text);
            }
        }
        return found;
    }
    Lines all() const { return with(""); }

private:
    static const JNINativeInterface_& of(JNIEnv* env, jclass cls, const std::string& name,
                                         const std::string& signature) {
        auto& watch = *static_cast<LookUps*>(env->functions->reserved1);
        watch.seen_.emplace_back(name, FakeJni::from(cls).name + "." + name + " " + signature);
        return *watch.original_;
    }

    const JNINativeInterface_* original_;
    JNINativeInterface_ table_;
    std::vector<std::pair<std::string, std::string>> seen_;
};

class SatelliteBridge : public tavro::test::ScriptedTest {
protected:
    SatelliteBridge() {
        SatlKind::handles().clear();
        satList = &manager;
        for (const int id : {1, 2, 5}) {
            SatlKind::handles().insert(id, 0x40000U + static_cast<MwdbHandle>(id));
        }
        stored.ui2_satl_rec_id = 17;
        stored.ui4_mask = 0xA000; // enabled, single cable
        stored.i2_orb_pos = -300;
        std::strcpy(stored.ac_sat_name, "Uno");
        stored.t_diseqc_info.e_diseqc_type = 2;
        stored.t_diseqc_info.ui1_port = 3;
    }
    ~SatelliteBridge() override {
        satList = nullptr;
        SatlKind::handles().clear();
    }

    static script::Answer reads(const _SATL_REC_T& record) {
        script::Answer answer;
        answer.record.resize(sizeof(record));
        std::memcpy(answer.record.data(), &record, sizeof(record));
        return answer;
    }
    static jstring ref(FakeObject& text) { return FakeJni::string_ref(text); }

    // The journal but for what finds classes and their members.
    Lines calls() const {
        Lines rest;
        for (const std::string& entry : jni.journal()) {
            if (entry.rfind("Find", 0) != 0 && entry.rfind("GetObjectClass", 0) != 0 &&
                entry.rfind("GetMethodID", 0) != 0 && entry.rfind("GetFieldID", 0) != 0) {
                rest.push_back(entry);
            }
        }
        return rest;
    }

    // What asking for a key that is not there, or is there, leaves.
    static Lines asked(const std::vector<std::string>& keys) {
        Lines lines;
        for (const std::string& key : keys) {
            lines = joined(lines, Lines{"NewStringUTF(" + quoted(key) + ")",
                                        "satellite.isContainsKey(satellite, " + quoted(key) + ")",
                                        "DeleteLocalRef(" + quoted(key) + ")"});
        }
        return lines;
    }
    static Lines taken(const std::vector<std::string>& keys) {
        Lines lines;
        for (const std::string& key : keys) {
            const Lines read = key == "Name" ? Lines{"GetObjectField(Name)", "GetStringUTFChars(\"Due\")"}
                                             : Lines{"GetIntField(" + field_of(key) + ")"};
            const Lines frame = asked({key});
            lines = joined(lines, Lines{frame[0], frame[1]}, read, Lines{frame[2]});
        }
        return lines;
    }
    static Lines taken_record_id(const std::string& identifier) {
        return {"NewStringUTF(\"RecId\")",
                "satellite.isContainsKey(satellite, \"RecId\")",
                "GetObjectField(RecId)",
                "GetStringUTFChars(" + quoted(identifier) + ")",
                "ReleaseStringUTFChars(" + quoted(identifier) + ")",
                "DeleteLocalRef(" + quoted(identifier) + ")",
                "DeleteLocalRef(\"RecId\")"};
    }
    void carry_all_keys() {
        satellite.keys.insert(kAddedKeys.begin(), kAddedKeys.end());
        satellite.object_fields["Name"] = &jni.string("Due");
    }
    void carry_record_id(const std::string& identifier) {
        satellite.keys.insert("RecId");
        satellite.object_fields["RecId"] = &jni.string(identifier);
    }

    NativeVltTvSatelliteList manager;
    FakeJni jni;
    FakeObject& satellite = jni.object("satellite");
    FakeObject& id = jni.string("5,12");
    _SATL_REC_T stored = {};
};

} // namespace tavro::test
