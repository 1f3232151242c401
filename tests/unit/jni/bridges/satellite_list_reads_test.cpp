// What the satellite list's natives that read ask of the platform, in one order with their middleware calls.
#include "satellite_bridge_support.h"

namespace script = tavro::script;

namespace {

using namespace tavro::test;

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
    EXPECT_EQ(
        calls(),
        joined(Lines{"GetStringUTFChars(\"5,12\")", "ReleaseStringUTFChars(\"5,12\")",
                     "NewObject(VltTvSatelliteInfoBase)", "x_satl_get_rec(0x40005, 12)", "NewStringUTF(\"5,17\")",
                     "NewObject(VltTvSatelliteInfo)"},
               set_record_id("5,17"),
               Lines{"list.size()", "DeleteLocalRef(class of list)", "list.get(0)",
                     "GetStringUTFChars(\"DiseqcPolar\")", "VltTvSatelliteInfoBase.setDiseqcPolar(0)",
                     "DeleteLocalRef(\"DiseqcPolar\")", "list.get(1)", "GetStringUTFChars(\"Nothing\")",
                     "DeleteLocalRef(\"Nothing\")", "list.get(2)", "GetStringUTFChars(\"OrbitPosition\")",
                     "VltTvSatelliteInfoBase.setOrbitPosition(-300)", "DeleteLocalRef(\"OrbitPosition\")", kTakeOver}));
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
                      set_record_id(identifier), set_all(), Lines{kTakeOver, "ArrayList.add(VltTvSatelliteInfo)"},
                      given_back("VltTvSatelliteInfo"));
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

TEST_F(SatelliteBridge, AReadGivesNullWhicheverCallOfThePlatformFails) {
    script::always("x_satl_get_num_recs", {0, 2, {}, 0, {}});
    script::always("x_satl_get_rec", reads(stored));
    script::always("x_satl_get_rec_by_rec_idx", reads(stored));
    FakeObject& keys = jni.list({&jni.string("Name"), &jni.string("LnbType")});
    for (jobject wanted : {static_cast<jobject>(nullptr), FakeJni::ref(keys)}) {
        for (const bool list : {false, true}) {
            bool clean = false;
            for (int n = 1; !clean; ++n) {
                FakeJni failing;
                failing.fail_nth(n);
                jobject result =
                    list ? com_velotra_tv_tavro_satellitelist_getInfoList(failing.env(), nullptr, 5, wanted)
                         : com_velotra_tv_tavro_satellitelist_getInfo(failing.env(), nullptr, ref(id), wanted);
                clean = !failing.exception_pending();
                EXPECT_EQ(result != nullptr, clean) << n;
                ASSERT_LT(n, 1000);
            }
        }
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

} // namespace
