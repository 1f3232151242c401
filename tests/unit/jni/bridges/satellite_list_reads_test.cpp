// The satellite list's natives that read: satellites are returned as objects. info_objects_test.cpp has the rules that
// networks share.

#include "bridge_test_support.h"

#include <cstring>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

const std::string kInfo = kPackage + "VltTvSatelliteInfo";
const std::string kConstructor = "GetMethodID(<init>, ()V)";
const Lines kFindClasses = {"FindClass(" + kInfo + ")", kConstructor, "FindClass(" + kSatelliteBase + ")",
                            kConstructor};

// The carrier takes the values; the results take them over from it.
const std::string kCarrierName = "VltTvSatelliteInfoBase";
const Lines kCarrier = {"NewObject(VltTvSatelliteInfoBase)",
                        "GetMethodID(satlToSatelliteInfo, (L" + kSatelliteBase + ";)V)"};
const Lines kTakeOver = {"VltTvSatelliteInfo.satlToSatelliteInfo(VltTvSatelliteInfoBase)"};

// The setters with the values of `stored`, in their order.
const std::vector<std::pair<std::string, int>> kSetters = {{"setMaskStatusOn", 1},
                                                           {"setMaskLnbUniver", 0},
                                                           {"setMaskLnbSingcab", 1},
                                                           {"setLnbSignalDetected", 0},
                                                           {"setMaskLnbSingcabJess", 0},
                                                           {"setOrbitPosition", -300},
                                                           {"setName", 0},
                                                           {"setSingleCableUserBandSub", 0},
                                                           {"setSingleCableBandFreqSub", 0},
                                                           {"setLnbType", 0},
                                                           {"setLnbLowFreq", 0},
                                                           {"setLnbHighFreq", 0},
                                                           {"setLnbSwitchFreq", 0},
                                                           {"setAntennaType", 1},
                                                           {"setLnbPower", 0},
                                                           {"setToneBurst", 0},
                                                           {"setDiseqcType", 2},
                                                           {"setTone22k", 0},
                                                           {"setSingleCableUserBandMain", 0},
                                                           {"setUnicablePosition", 0},
                                                           {"setDiseqcPosition", 3},
                                                           {"setSingleCableBandFreqMain", 0},
                                                           {"setMduType", 0},
                                                           {"setDiseqcTypeEx", 0},
                                                           {"setDiseqcPositionEx", 0},
                                                           {"setDiseqcPolar", 0}};

Lines set_number(const std::string& setter, int value) { return number_set(kCarrierName, setter, value); }
Lines set_all() {
    Lines lines;
    for (const auto& [setter, value] : kSetters) {
        lines = joined(lines, setter == "setName" ? text_set(kCarrierName, setter, "Uno") : set_number(setter, value));
    }
    return lines;
}
// Makes the result and gives the carrier its identifier.
Lines result_made(const std::string& identifier) {
    return joined(Lines{"NewStringUTF(" + quoted(identifier) + ")", "NewObject(VltTvSatelliteInfo)"},
                  value_set(kCarrierName, "setRecId", quoted(identifier), "(Ljava/lang/String;)V"),
                  given_back(quoted(identifier)));
}

class SatelliteReads : public BridgeTest {
protected:
    SatelliteReads() : BridgeTest(satellite_kind()) {
        stored.ui2_satl_rec_id = 17;
        stored.ui4_mask = 0xA000; // enabled, single cable
        stored.i2_orb_pos = -300;
        std::strcpy(stored.ac_sat_name, "Uno");
        stored.t_diseqc_info.e_diseqc_type = 2;
        stored.t_diseqc_info.ui1_port = 3;
    }

    // Reads the satellite 12 of list 2, whose record has the id 17.
    jobject get(jobject keys) {
        script::answer("x_satl_get_rec", reads(stored));
        return com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, text("2,12"), keys);
    }
    Lines one_begun() const {
        return joined(chars("2,12"), kFindClasses, kCarrier, call("get_rec(@2, 12)"), result_made("2,17"));
    }
    Lines list_begun() const {
        return joined(Lines{"FindClass(java/util/ArrayList)", kConstructor, "NewObject(ArrayList)",
                            "GetMethodID(add, (Ljava/lang/Object;)Z)"},
                      kFindClasses, call("read_lock(@2)"), call("get_num_recs(@2)"), kCarrier);
    }
    // What was looked up on a class.
    Lines members_of(const std::string& cls) const {
        Lines members;
        for (const FakeJni::LookUp& look_up : jni.look_ups()) {
            if (look_up.cls == cls) {
                members.push_back(look_up.name);
            }
        }
        return members;
    }

    _SATL_REC_T stored = {};
};

TEST_F(SatelliteReads, OneIsReadWithoutALockThroughACarrier) {
    jobject info = get(nullptr);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(FakeJni::from(info).name, "VltTvSatelliteInfo");
    EXPECT_EQ(journal(), joined(one_begun(), set_all(), kTakeOver));
    EXPECT_EQ(jni.unreleased_chars(), 0);
}

// Deliberate: the keys' characters are not released.
TEST_F(SatelliteReads, OneByKeysHasTheirValuesAloneAndKeepsTheKeys) {
    const auto key_set = [](int index, const std::string& key, const Lines& setter) {
        return joined(Lines{"list.get(" + std::to_string(index) + ")"}, chars_kept(key), setter,
                      given_back(quoted(key)));
    };
    FakeObject& keys = jni.list({&jni.string("DiseqcPolar"), &jni.string("Nothing"), &jni.string("OrbitPosition")});
    ASSERT_NE(get(FakeJni::ref(keys)), nullptr);
    EXPECT_EQ(journal(), joined(one_begun(),
                                Lines{"GetObjectClass(list)", "GetMethodID(get, (I)Ljava/lang/Object;)",
                                      "GetMethodID(size, ()I)", "list.size()", "DeleteLocalRef(class of list)"},
                                key_set(0, "DiseqcPolar", set_number("setDiseqcPolar", 0)), key_set(1, "Nothing", {}),
                                key_set(2, "OrbitPosition", set_number("setOrbitPosition", -300)), kTakeOver));
    EXPECT_EQ(jni.unreleased_chars(), 3);
}

TEST_F(SatelliteReads, AListHasOneCarrierForAllItsRecords) {
    script::always("x_satl_get_num_recs", counts(2));
    script::answer("x_satl_get_rec_by_rec_idx", reads(stored));
    stored.ui2_satl_rec_id = 18;
    script::answer("x_satl_get_rec_by_rec_idx", reads(stored));
    jobject list = com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 2, nullptr);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(FakeJni::from(list).elements.size(), 2U);
    const auto record = [&](const std::string& index, const std::string& identifier) {
        return joined(call("get_rec_by_rec_idx(@2, " + index + ")"), result_made(identifier), set_all(), kTakeOver,
                      Lines{"ArrayList.add(VltTvSatelliteInfo)"}, given_back("VltTvSatelliteInfo"));
    };
    EXPECT_EQ(journal(), joined(list_begun(), record("0", "2,17"), record("1", "2,18"), call("read_unlock(@2)")));
}

TEST_F(SatelliteReads, SettersAreLookedUpOnTheBaseClass) {
    Lines expected = {"<init>", "setRecId"};
    for (const auto& setter : kSetters) {
        expected.push_back(setter.first);
    }
    ASSERT_NE(get(nullptr), nullptr);
    EXPECT_EQ(members_of(kSatelliteBase), expected);
    EXPECT_EQ(members_of(kInfo), (Lines{"<init>", "satlToSatelliteInfo"}));
}

TEST_F(SatelliteReads, LogTheMaskOfEachRecord) {
    log_level("D");
    script::always("x_satl_get_num_recs", counts(1));
    script::always("x_satl_get_rec_by_rec_idx", reads(stored));
    ASSERT_NE(get(nullptr), nullptr);
    ASSERT_NE(com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 2, nullptr), nullptr);
    const std::string name = "log 3 -: [" + kind.native_names;
    EXPECT_EQ(jni.journal_with("ui4_mask"), (Lines{name + "getInfo]: pt_satl_rec.ui4_mask = 40960 \n",
                                                   name + "getInfoList]:List pt_satl_rec.ui4_mask = 40960 \n"}));
}

TEST_F(SatelliteReads, AListLogsARecordThatCannotBeRead) {
    log_level("D");
    script::always("x_satl_get_num_recs", counts(1));
    script::always("x_satl_get_rec_by_rec_idx", fails());
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 2, nullptr), nullptr);
    EXPECT_EQ(jni.journal_with("failed!"), Lines{native_line("getInfoList", " : getInfoByIdx failed!")});
}

TEST_F(SatelliteReads, KeyListsAreLogged) {
    log_level("D");
    FakeObject& keys = jni.list({&jni.string("Name")});
    script::always("x_satl_get_num_recs", counts(1));
    script::always("x_satl_get_rec_by_rec_idx", reads(stored));
    ASSERT_NE(get(FakeJni::ref(keys)), nullptr);
    ASSERT_NE(com_velotra_tv_tavro_satellitelist_getInfoList(jni.env(), nullptr, 2, FakeJni::ref(keys)), nullptr);
    EXPECT_EQ(
        jni.journal_with("Key List size"),
        (Lines{kJniLine + "Key List size = 1\n", "log 3 -: [jni_VltTvList_Init]getInfoList, Key List size = 1\n"}));
}

} // namespace
