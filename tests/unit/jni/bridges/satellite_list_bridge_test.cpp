// What the satellite list's natives that write ask of the platform, in one order with their middleware
// calls. Their behaviour on a real Java virtual machine is tested in tests/jvm.
#include "satellite_bridge_support.h"

#include <algorithm>
#include <stdexcept>

namespace {

using namespace tavro::test;

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
    EXPECT_EQ(calls(), joined(taken_record_id("5,12"), Lines{"x_satl_get_rec(0x40005, 12)"}, taken(kUpdatedKeys),
                              Lines{"x_satl_lock(0x40005)", "x_satl_update_rec(0x40005, record, 0)",
                                    "x_satl_unlock(0x40005)", "DeleteLocalRef(class of satellite)"}));
}

TEST_F(SatelliteBridge, AListUpdateDoesTheSameForEachElement) {
    carry_all_keys();
    carry_record_id("5,12");
    FakeObject& list = jni.list({&satellite, &satellite});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), 0);
    const Lines element =
        joined(taken_record_id("5,12"), Lines{"x_satl_get_rec(0x40005, 12)"}, taken(kUpdatedKeys),
               Lines{"x_satl_lock(0x40005)", "x_satl_update_rec(0x40005, record, 0)", "x_satl_unlock(0x40005)",
                     "DeleteLocalRef(class of satellite)", "DeleteLocalRef(satellite)"});
    EXPECT_EQ(calls(), joined(Lines{"list.size()", "DeleteLocalRef(class of list)", "list.get(0)"}, element,
                              Lines{"list.get(1)"}, element));
}

TEST_F(SatelliteBridge, AnEmptyListUpdateAsksItsSizeAndTouchesNoList) {
    FakeObject& list = jni.list({});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), 0);
    EXPECT_EQ(calls(), (Lines{"list.size()", "DeleteLocalRef(class of list)"}));
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

TEST_F(SatelliteBridge, ANullObjectOrListFailsWithoutAskingAnything) {
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, nullptr), -22);
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, nullptr), -22);
    EXPECT_EQ(jni.journal(), Lines{});
    jstring added = com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, nullptr);
    EXPECT_EQ(FakeJni::from(added).text, "");
    EXPECT_EQ(jni.journal(), Lines{"NewStringUTF(\"\")"});
}

TEST_F(SatelliteBridge, EachConversionLooksIsContainsKeyUpBeforeItsFirstKey) {
    const std::string method = "GetMethodID(isContainsKey, " + kContainsKey + ")";
    const auto before = [&](const std::string& key) {
        const Lines& journal = jni.journal();
        const auto asked_key = std::find(journal.begin(), journal.end(), "NewStringUTF(" + quoted(key) + ")");
        return asked_key == journal.begin() || asked_key == journal.end() ? "" : *(asked_key - 1);
    };
    com_velotra_tv_tavro_satellitelist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(satellite));
    for (const auto& keys : {kMainKeys, kDiseqcKeys, kSubDiseqcKeys}) {
        EXPECT_EQ(before(keys.front()), method) << keys.front();
    }
    jni.clear_journal();
    carry_record_id("5,12");
    com_velotra_tv_tavro_satellitelist_updateInfo(jni.env(), nullptr, FakeJni::ref(satellite));
    EXPECT_EQ(before("RecId"), method);
    for (const auto& keys : {kMainKeys, kDiseqcKeys}) {
        EXPECT_EQ(before(keys.front()), method) << keys.front();
    }
}

TEST_F(SatelliteBridge, AMissingFieldEndsAnAddOrAnUpdateWithoutALineOfItsKeyAndStoresNothing) {
    log_level("D");
    for (const std::string& key : joined(kAddedKeys, std::vector<std::string>{"RecId"})) {
        satellite.keys = {key};
        const bool text = key == "Name" || key == "RecId";
        const std::string look_up = "GetFieldID(" + field_of(key) + (text ? ", Ljava/lang/String;)" : ", I)");
        const bool is_value = key != "RecId";
        if (is_value) {
            FakeJni failing;
            failing.fail(look_up);
            jstring added =
                com_velotra_tv_tavro_satellitelist_add_Info(failing.env(), nullptr, 1, FakeJni::ref(satellite));
            EXPECT_EQ(FakeJni::from(added).text, "");
            EXPECT_EQ(failing.journal_with("log "),
                      Lines{"log 3 -: [jni_VltTvList_Init] [" + kBridge + "add_Info][4373] "})
                << key;
            EXPECT_EQ(failing.journal_with("x_satl"), Lines{});
            EXPECT_TRUE(failing.exception_pending());
        }
        if (key != "DiseqcPolar") {
            FakeJni failing;
            if (is_value) {
                carry_record_id("5,12");
            }
            failing.fail(look_up);
            EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfo(failing.env(), nullptr, FakeJni::ref(satellite)),
                      -22);
            EXPECT_EQ(failing.journal_with("update_rec"), Lines{}) << key;
            const std::string start = "log 3 -: [jni_VltTvList_Init] [" + kBridge + "updateInfo]";
            EXPECT_EQ(failing.journal_with("log 3 -:"),
                      joined(Lines{start + "[4690] "}, is_value ? Lines{start + "[4714], sRecID: 5,12 "} : Lines{}))
                << key;
            EXPECT_TRUE(failing.exception_pending());
        }
    }
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
    EXPECT_NE(SatlKind::handles().find(5), nullptr);

    SatlKind::handles().clear();
    delete left_behind;
    delete satList;
    satList = nullptr;
}

} // namespace
