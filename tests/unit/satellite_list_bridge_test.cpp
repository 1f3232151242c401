// What the satellite list's natives ask of the platform, in one order with their middleware calls, and on
// which class they look methods and fields up. Their behaviour on a real Java virtual machine is tested in
// tests/jvm.

#include "fake_jni.h"
#include "jni/managers.h"
#include "jni/satellite_list_bridge.h"
#include "script.h"
#include "scripted_test.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace script = tavro::script;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

using Lines = std::vector<std::string>;

const std::string kPackage = "com/velotra/tv/tavro/services/channellist/";
const std::string kInfo = kPackage + "VltTvSatelliteInfo";
const std::string kBase = kPackage + "VltTvSatelliteInfoBase";
const std::string kContainsKey = "(L" + kBase + ";Ljava/lang/String;)Z";
const std::string kBridge = "com_velotra_tv_tavro_satellitelist_";

// The keys in the order in which they are asked of an object that is added.
const std::vector<std::string> kMainKeys = {
    "MaskStatusOn",      "MaskLnbUniver", "MaskLnbSingcab", "MaskLnbSingcabJess",
    "LnbSignalDetected", "OrbitPosition", "Name",           "AntennaType"};
const std::vector<std::string> kDiseqcKeys = {"LnbPower",
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
const std::vector<std::string> kSubDiseqcKeys = {"DiseqcPolar"};
const std::vector<std::string> kSubKeys = {
    "SingleCableUserBandSub", "SingleCableBandFreqSub", "LnbType", "LnbLowFreq", "LnbHighFreq", "LnbSwitchFreq"};

template <class List, class... Lists>
List joined(List first, const Lists&... more) {
    (first.insert(first.end(), more.begin(), more.end()), ...);
    return first;
}

const std::vector<std::string> kAddedKeys = joined(kMainKeys, kDiseqcKeys, kSubDiseqcKeys, kSubKeys);
const std::vector<std::string> kUpdatedKeys = joined(kMainKeys, kDiseqcKeys, kSubKeys); // without DiseqcPolar

std::string quoted(const std::string& text) { return '"' + text + '"'; }
std::string field_of(const std::string& key) { return key == "LnbSignalDetected" ? "lnbSignalDetected" : key; }

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
        m_satIdHandleMap.clear();
        satList = &manager;
        for (const int id : {1, 2, 5}) {
            m_satIdHandleMap.insert(id, 0x40000U + static_cast<MwdbHandle>(id));
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
        m_satIdHandleMap.clear();
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
        return {"NewStringUTF(\"RecId\")", "satellite.isContainsKey(satellite, \"RecId\")", "GetObjectField(RecId)",
                "GetStringUTFChars(" + quoted(identifier) + ")", "ReleaseStringUTFChars(" + quoted(identifier) + ")"};
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

TEST_F(SatelliteBridge, AnAddAsksEveryKeyInItsOrderAndGivesEachKeyBack) {
    jstring added = com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
    EXPECT_EQ(FakeJni::from(added).text, "1,2");
    EXPECT_EQ(calls(),
              joined(Lines{"NewStringUTF(\"\")"}, asked(kAddedKeys),
                     Lines{"x_satl_qry_rec_id(0x40001, 2)", "x_satl_lock(0x40001)", "x_satl_add_rec(0x40001, record)",
                           "x_satl_unlock(0x40001)", "NewStringUTF(\"1,2\")"}));
}

TEST_F(SatelliteBridge, AnAddReadsTheValuesThatAreThereAndLeavesTheNameAndItsCharactersAlone) {
    carry_all_keys();
    com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
    EXPECT_EQ(calls(),
              joined(Lines{"NewStringUTF(\"\")"}, taken(kAddedKeys),
                     Lines{"x_satl_qry_rec_id(0x40001, 2)", "x_satl_lock(0x40001)", "x_satl_add_rec(0x40001, record)",
                           "x_satl_unlock(0x40001)", "NewStringUTF(\"1,2\")"}));
    EXPECT_EQ(jni.unreleased_chars(), 1);
}

TEST_F(SatelliteBridge, AKeysLineIsWrittenBeforeItsStringIsGivenBack) {
    log_level("D");
    satellite.keys = {"LnbType"};
    com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
    const Lines journal = calls();
    const auto line = std::find(journal.begin(), journal.end(), "log 3 -: [jni_VltTvList_Init] e_lnb_type = 0 \n");
    ASSERT_NE(line, journal.end());
    EXPECT_EQ(*(line - 1), "GetIntField(LnbType)");
    EXPECT_EQ(*(line + 1), "DeleteLocalRef(\"LnbType\")");
}

TEST_F(SatelliteBridge, KeysAreAskedOnTheObjectsOwnClassAndFieldsFoundOnTheBaseClass) {
    carry_all_keys();
    carry_record_id("5,12");
    LookUps look_ups(jni);
    com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
    com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(satellite));
    const Lines methods = look_ups.with("isContainsKey");
    ASSERT_FALSE(methods.empty());
    EXPECT_EQ(methods, Lines(methods.size(), "class of satellite.isContainsKey " + kContainsKey));

    const auto field = [](const std::string& key) {
        const bool text = key == "Name" || key == "RecId";
        return kBase + "." + field_of(key) + (text ? " Ljava/lang/String;" : " I");
    };
    Lines expected;
    for (const std::string& key : joined(kAddedKeys, std::vector<std::string>{"RecId"}, kUpdatedKeys)) {
        expected.push_back(field(key));
    }
    Lines fields;
    for (const std::string& look_up : look_ups.all()) {
        if (look_up.find(".isContainsKey ") == std::string::npos) {
            fields.push_back(look_up);
        }
    }
    EXPECT_EQ(fields, expected);
}

TEST_F(SatelliteBridge, AnUpdateAsksForTheRecordIdReadsTheRecordAndAsksTheKeysButDiseqcPolar) {
    carry_all_keys();
    carry_record_id("5,12");
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(satellite)), 0);
    Lines journal = calls();
    // Whether the string of the key "RecId" is given back is left open.
    journal.erase(std::remove(journal.begin(), journal.end(), "DeleteLocalRef(\"RecId\")"), journal.end());
    EXPECT_EQ(journal,
              joined(taken_record_id("5,12"), Lines{"x_satl_get_rec(0x40005, 12)"}, taken(kUpdatedKeys),
                     Lines{"x_satl_lock(0x40005)", "x_satl_update_rec(0x40005, record, 0)", "x_satl_unlock(0x40005)"}));
}

TEST_F(SatelliteBridge, AListUpdateDoesTheSameForEachElement) {
    carry_all_keys();
    carry_record_id("5,12");
    FakeObject& list = jni.list({&satellite, &satellite});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), 0);
    Lines journal = calls();
    journal.erase(std::remove(journal.begin(), journal.end(), "DeleteLocalRef(\"RecId\")"), journal.end());
    journal.erase(std::remove(journal.begin(), journal.end(), "DeleteLocalRef(satellite)"), journal.end());
    const Lines element =
        joined(taken_record_id("5,12"), Lines{"x_satl_get_rec(0x40005, 12)"}, taken(kUpdatedKeys),
               Lines{"x_satl_lock(0x40005)", "x_satl_update_rec(0x40005, record, 0)", "x_satl_unlock(0x40005)"});
    EXPECT_EQ(journal, joined(Lines{"list.size()", "list.get(0)"}, element, Lines{"list.get(1)"}, element));
}

TEST_F(SatelliteBridge, AnEmptyListUpdateAsksItsSizeAndTouchesNoList) {
    FakeObject& list = jni.list({});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), 0);
    EXPECT_EQ(calls(), Lines{"list.size()"});
}

// What setting all values of `stored` leaves, in the order of the setters.
const Lines kAllSetters = {"setMaskStatusOn(1)",
                           "setMaskLnbUniver(0)",
                           "setMaskLnbSingcab(1)",
                           "setLnbSignalDetected(0)",
                           "setMaskLnbSingcabJess(0)",
                           "setOrbitPosition(-300)",
                           "setName(\"Uno\")",
                           "setSingleCableUserBandSub(0)",
                           "setSingleCableBandFreqSub(0)",
                           "setLnbType(0)",
                           "setLnbLowFreq(0)",
                           "setLnbHighFreq(0)",
                           "setLnbSwitchFreq(0)",
                           "setAntennaType(1)",
                           "setLnbPower(0)",
                           "setToneBurst(0)",
                           "setDiseqcType(2)",
                           "setTone22k(0)",
                           "setSingleCableUserBandMain(0)",
                           "setUnicablePosition(0)",
                           "setDiseqcPosition(3)",
                           "setSingleCableBandFreqMain(0)",
                           "setMduType(0)",
                           "setDiseqcTypeEx(0)",
                           "setDiseqcPositionEx(0)",
                           "setDiseqcPolar(0)"};

Lines set_all() {
    Lines lines;
    for (const std::string& setter : kAllSetters) {
        const bool is_name = setter.rfind("setName", 0) == 0;
        lines = joined(lines, is_name ? Lines{"NewStringUTF(\"Uno\")"} : Lines{},
                       Lines{"VltTvSatelliteInfoBase." + setter}, is_name ? Lines{"DeleteLocalRef(\"Uno\")"} : Lines{});
    }
    return lines;
}

Lines set_record_id(const std::string& identifier) {
    return {"VltTvSatelliteInfoBase.setRecId(" + quoted(identifier) + ")",
            "DeleteLocalRef(" + quoted(identifier) + ")"};
}

const std::string kTakeOver = "VltTvSatelliteInfo.satlToSatelliteInfo(VltTvSatelliteInfoBase)";

TEST_F(SatelliteBridge, OneSatelliteIsFilledIntoACarrierWhichTheResultTakesOver) {
    script::answer("x_satl_get_rec", reads(stored));
    jobject info = com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, ref(id), nullptr);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(FakeJni::from(info).name, "VltTvSatelliteInfo");
    EXPECT_EQ(calls(), joined(Lines{"GetStringUTFChars(\"5,12\")", "ReleaseStringUTFChars(\"5,12\")",
                                    "NewObject(VltTvSatelliteInfoBase)", "x_satl_get_rec(0x40005, 12)",
                                    "NewStringUTF(\"5,17\")", "NewObject(VltTvSatelliteInfo)"},
                              set_record_id("5,17"), set_all(), Lines{kTakeOver}));
}

TEST_F(SatelliteBridge, EverySetterIsLookedUpOnTheBaseClassForEveryCall) {
    script::always("x_satl_get_num_recs", {0, 2, {}, 0, {}});
    script::always("x_satl_get_rec", reads(stored));
    script::always("x_satl_get_rec_by_rec_idx", reads(stored));
    Lines record = {kBase + ".setRecId (Ljava/lang/String;)V"};
    for (const std::string& setter : kAllSetters) {
        const std::string name = setter.substr(0, setter.find('('));
        record.push_back(kBase + "." + name + (name == "setName" ? " (Ljava/lang/String;)V" : " (I)V"));
    }
    const auto setters = [](const LookUps& look_ups) {
        Lines found;
        for (const std::string& look_up : look_ups.all()) {
            if (look_up.find(".set") != std::string::npos) {
                found.push_back(look_up);
            }
        }
        return found;
    };
    LookUps one(jni);
    com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, ref(id), nullptr);
    EXPECT_EQ(setters(one), record);
    EXPECT_EQ(one.with("<init>"), (Lines{kInfo + ".<init> ()V", kBase + ".<init> ()V"}));
    EXPECT_EQ(one.with("satlToSatelliteInfo"), Lines{kInfo + ".satlToSatelliteInfo (L" + kBase + ";)V"});

    FakeJni other;
    LookUps list(other);
    com_velotra_tv_tavro_satellitelist_getInfoList(other.env(), nullptr, 5, nullptr);
    EXPECT_EQ(setters(list), joined(record, record));
    EXPECT_EQ(list.with("<init>"),
              (Lines{"java/util/ArrayList.<init> ()V", kInfo + ".<init> ()V", kBase + ".<init> ()V"}));
    EXPECT_EQ(list.with("add"), Lines{"java/util/ArrayList.add (Ljava/lang/Object;)Z"});
}

TEST_F(SatelliteBridge, OneSatelliteByKeysCallsTheSettersOfThoseKeysAndKeepsTheKeysCharacters) {
    script::answer("x_satl_get_rec", reads(stored));
    FakeObject& keys = jni.list({&jni.string("DiseqcPolar"), &jni.string("Nothing"), &jni.string("OrbitPosition")});
    ASSERT_NE(com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, ref(id), FakeJni::ref(keys)), nullptr);
    EXPECT_EQ(calls(),
              joined(Lines{"GetStringUTFChars(\"5,12\")", "ReleaseStringUTFChars(\"5,12\")",
                           "NewObject(VltTvSatelliteInfoBase)", "x_satl_get_rec(0x40005, 12)", "NewStringUTF(\"5,17\")",
                           "NewObject(VltTvSatelliteInfo)"},
                     set_record_id("5,17"),
                     Lines{"list.size()", "list.get(0)", "GetStringUTFChars(\"DiseqcPolar\")",
                           "VltTvSatelliteInfoBase.setDiseqcPolar(0)", "list.get(1)", "GetStringUTFChars(\"Nothing\")",
                           "list.get(2)", "GetStringUTFChars(\"OrbitPosition\")",
                           "VltTvSatelliteInfoBase.setOrbitPosition(-300)", kTakeOver}));
    EXPECT_EQ(jni.unreleased_chars(), 3);
}

TEST_F(SatelliteBridge, AListFillsOneCarrierForAllItsRecordsUnderTheReadLock) {
    script::always("x_satl_get_num_recs", {0, 2, {}, 0, {}});
    script::answer("x_satl_get_rec_by_rec_idx", reads(stored));
    stored.ui2_satl_rec_id = 18;
    script::answer("x_satl_get_rec_by_rec_idx", reads(stored));
    jobject list = com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 5, nullptr);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(FakeJni::from(list).elements.size(), 2U);
    const auto record = [](const std::string& index, const std::string& identifier) {
        return joined(Lines{"x_satl_get_rec_by_rec_idx(0x40005, " + index + ")",
                            "NewStringUTF(" + quoted(identifier) + ")", "NewObject(VltTvSatelliteInfo)"},
                      set_record_id(identifier), set_all(), Lines{kTakeOver, "ArrayList.add(VltTvSatelliteInfo)"});
    };
    EXPECT_EQ(calls(), joined(Lines{"NewObject(ArrayList)", "x_satl_read_lock(0x40005)", "x_satl_get_num_recs(0x40005)",
                                    "NewObject(VltTvSatelliteInfoBase)"},
                              record("0", "5,17"), record("1", "5,18"), Lines{"x_satl_read_unlock(0x40005)"}));
}

TEST_F(SatelliteBridge, AClassOrConstructorThatIsMissingIsTold) {
    log_level("D");
    const std::string get = "log 3 -: [jni_VltTvList_Init] " + kBridge + "getInfo : ";
    const struct {
        int call; // counted among those that can fail; the first fetches the identifier's characters
        const char* message;
    } cases[] = {{2, "Info class not find!"},
                 {3, "init class failed!"},
                 {4, "VltTvSatelliteInfoBase class not find!"},
                 {5, "jcls_init init class failed!"}};
    for (const auto& c : cases) {
        FakeJni failing;
        failing.fail_nth(c.call);
        EXPECT_EQ(com_velotra_tv_tavro_satellitelist_getInfo(failing.env(), nullptr, ref(id), nullptr), nullptr);
        EXPECT_EQ(failing.journal_with("log "), Lines{get + c.message});
        EXPECT_EQ(failing.journal_with("x_satl"), Lines{});
        EXPECT_TRUE(failing.exception_pending());
    }
}

TEST_F(SatelliteBridge, AClassOrConstructorThatIsMissingForAListIsToldBeforeTheLock) {
    log_level("D");
    const std::string start = "log 3 -: [jni_VltTvList_Init] ";
    const struct {
        int call;
        const char* message;
    } cases[] = {{1, "ArrayList class not find!"}, // the class, its constructor, the list itself, "add"
                 {2, "ArrayList class not find!"},   {3, "ArrayList class not find!"},
                 {4, "ArrayList class not find!"},   {5, "Info class not find!"},
                 {6, "init class failed!"},          {7, "VltTvSatelliteInfoBase class not find!"},
                 {8, "jcls_init init class failed!"}};
    for (const auto& c : cases) {
        FakeJni failing;
        failing.fail_nth(c.call);
        EXPECT_EQ(com_velotra_tv_tavro_satellitelist_getInfoList(failing.env(), nullptr, 5, nullptr), nullptr);
        EXPECT_EQ(failing.journal_with("log "), (Lines{start + "[" + kBridge + "getInfoList][4601] ",
                                                       start + kBridge + "getInfoList : " + c.message}))
            << c.call;
        EXPECT_EQ(failing.journal_with("x_satl"), Lines{});
        EXPECT_TRUE(failing.exception_pending());
    }
}

TEST_F(SatelliteBridge, ACarrierThatCannotBeMadeOrHandedOverEndsAReadBeforeARecordIsAskedFor) {
    log_level("D");
    for (const int call : {6, 7}) { // the carrier, its "satlToSatelliteInfo"
        FakeJni failing;
        failing.fail_nth(call);
        EXPECT_EQ(com_velotra_tv_tavro_satellitelist_getInfo(failing.env(), nullptr, ref(id), nullptr), nullptr);
        EXPECT_EQ(failing.journal_with("log "), Lines{}) << call;
        EXPECT_EQ(failing.journal_with("x_satl"), Lines{}) << call;
        EXPECT_TRUE(failing.exception_pending());
    }
    ASSERT_EQ(satList->open(5), 0);
    log_level("E");
    for (const int call : {9, 10}) {
        FakeJni failing;
        failing.fail_nth(call);
        EXPECT_EQ(com_velotra_tv_tavro_satellitelist_getInfoList(failing.env(), nullptr, 5, nullptr), nullptr);
        EXPECT_EQ(failing.journal_with("x_satl"),
                  (Lines{"x_satl_read_lock(0x40005)", "x_satl_get_num_recs(0x40005)", "x_satl_read_unlock(0x40005)"}))
            << call;
        EXPECT_TRUE(failing.exception_pending());
    }
}

TEST_F(SatelliteBridge, ANumberThatIsNoneEndsInTheConversionsError) {
    const auto get = [&](const char* text) {
        return com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, ref(jni.string(text)), nullptr);
    };
    EXPECT_THROW(get("5,x"), std::invalid_argument);
    EXPECT_THROW(get(",5"), std::invalid_argument);
    EXPECT_THROW(get("5,2147483648"), std::out_of_range);
    for (const char* text : {"5,", ",12"}) { // an empty field passes the test for digits
        carry_record_id(text);
        EXPECT_THROW(com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(satellite)),
                     std::invalid_argument);
    }
    EXPECT_EQ(jni.journal_with("x_satl"), Lines{});
}

TEST_F(SatelliteBridge, ANullObjectOrListFailsWithoutAskingItAnything) {
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, nullptr), -22);
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, nullptr), -22);
    EXPECT_EQ(calls(), Lines{});
    jstring added = com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, nullptr);
    EXPECT_EQ(FakeJni::from(added).text, "");
    EXPECT_EQ(calls(), Lines{"NewStringUTF(\"\")"});
    EXPECT_FALSE(jni.exception_pending());
}

TEST_F(SatelliteBridge, ANullElementEndsAListUpdateAsARecordThatCannotBeRead) {
    carry_record_id("5,12");
    FakeObject& list = jni.list({&satellite, nullptr, &satellite});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), -22);
    EXPECT_EQ(jni.journal_with("x_satl"), (Lines{"x_satl_get_rec(0x40005, 12)", "x_satl_lock(0x40005)",
                                                 "x_satl_update_rec(0x40005, record, 0)", "x_satl_unlock(0x40005)"}));
}

TEST_F(SatelliteBridge, SetUpReplacesTheManagerKeepsOpenListsAndSaysSo) {
    log_level("D");
    const jint first = com_velotra_tv_tavro_satellitelist_native_setup(jni.env(), nullptr);
    NativeVltTvSatelliteList* left_behind = satList;
    EXPECT_NE(left_behind, &manager);
    const jint second = com_velotra_tv_tavro_satellitelist_native_setup(jni.env(), nullptr);
    EXPECT_NE(satList, left_behind);
    const std::string line = "log 3 -: [jni_VltTvList_Init] [com_velotra_tv_tavro_satellitelist_native_setup][3694] ";
    EXPECT_EQ(jni.journal(), (Lines{line, line}));
    EXPECT_EQ(first, second);
    EXPECT_EQ(first, static_cast<jint>(reinterpret_cast<std::uintptr_t>(&satList)));
    EXPECT_NE(m_satIdHandleMap.find(5), nullptr);

    m_satIdHandleMap.clear();
    delete left_behind;
    delete satList;
    satList = nullptr;
}

} // namespace
