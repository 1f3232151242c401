// What the satellite list's natives do differently when they add and update. record_writes_test.cpp has the shared
// rules.

#include "bridge_test_support.h"

#include <stdexcept>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

// Reads of every value. Fields are named after their keys; one is not.
std::map<std::string, Lines> all_reads() {
    std::map<std::string, Lines> reads;
    for (const std::string& key : kSatelliteAddKeys) {
        reads[key] = int_read(satellite_field(key));
    }
    // Deliberate: neither the name's characters nor its reference are released.
    reads["Name"] = joined(object_read("Name"), chars_kept("Due"));
    return reads;
}

bool is_text(const std::string& key) { return key == "Name" || key == "RecId"; }

class SatelliteWrites : public BridgeTest {
protected:
    SatelliteWrites() : BridgeTest(satellite_kind()) {}

    // A satellite with all values.
    FakeObject& filled(const char* identifier) {
        FakeObject& made = named(identifier);
        made.keys.insert(kSatelliteAddKeys.begin(), kSatelliteAddKeys.end());
        made.object_fields["Name"] = &jni.string("Due");
        return made;
    }
    static std::string add(FakeJni& platform, FakeObject& satellite) {
        return text_of(
            com_velotra_tv_tavro_satellitelist_add_Info(platform.env(), nullptr, 1, FakeJni::ref(satellite)));
    }
    static jint update(FakeJni& platform, FakeObject& satellite) {
        return com_velotra_tv_tavro_satellitelist_updateInfo(platform.env(), nullptr, FakeJni::ref(satellite));
    }
    Lines added(const std::map<std::string, Lines>& reads) const {
        return joined(Lines{"NewStringUTF(\"\")", "GetObjectClass(satellite)", "FindClass(" + kSatelliteBase + ")"},
                      satellite_conversion(true, reads), call("qry_rec_id(@1, 2)"),
                      call_under_lock("add_rec(@1, record)", "@1"), Lines{"NewStringUTF(\"1,2\")"});
    }
};

TEST_F(SatelliteWrites, AnAddAsksForEveryKeyInItsOrder) {
    EXPECT_EQ(add(jni, object()), "1,2");
    EXPECT_EQ(journal(), added({}));
}

TEST_F(SatelliteWrites, AnAddReadsTheValuesAndKeepsTheName) {
    EXPECT_EQ(add(jni, filled("1,17")), "1,2");
    EXPECT_EQ(journal(), added(all_reads()));
    EXPECT_EQ(jni.unreleased_chars(), 1);
}

TEST_F(SatelliteWrites, AnUpdateReadsTheValuesButNotDiseqcPolar) {
    EXPECT_EQ(update(jni, filled("2,12")), 0);
    EXPECT_EQ(journal(),
              joined(Lines{"FindClass(" + kSatelliteBase + ")", "GetObjectClass(satellite)", kSatelliteContainsKeyCall},
                     id_asked(id_read("2,12")), call("get_rec(@2, 12)"), satellite_conversion(false, all_reads()),
                     call_under_lock("update_rec(@2, record, 0)", "@2"), given_back("class of satellite")));
}

// The object's identifier names the list too.
TEST_F(SatelliteWrites, AnUpdateWithoutAnIdentifierReadsRecord0OfList0) {
    for (FakeObject* unnamed : {&object(), &named(nullptr)}) {
        jni.clear_journal();
        EXPECT_EQ(update(jni, *unnamed), -22);
        EXPECT_EQ(jni.journal_with(kind.calls), call("open(0, 0, 0)"));
    }
}

TEST_F(SatelliteWrites, AListUpdateTakesEachElementsOwnList) {
    FakeObject& list = jni.list({&named("1,17"), &named("2,18")});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), 0);
    EXPECT_EQ(jni.journal_with(kind.calls),
              joined(call("get_rec(@1, 17)"), call_under_lock("update_rec(@1, record, 0)", "@1"),
                     call("get_rec(@2, 18)"), call_under_lock("update_rec(@2, record, 0)", "@2")));
}

TEST_F(SatelliteWrites, AnEmptyListUpdateTouchesNoList) {
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(jni.list({}))), 0);
    EXPECT_EQ(journal(), (Lines{"GetObjectClass(list)", "GetMethodID(get, (I)Ljava/lang/Object;)",
                                "GetMethodID(size, ()I)", "list.size()", "DeleteLocalRef(class of list)"}));
}

// Deliberate: the result is that of the element before.
TEST_F(SatelliteWrites, AListUpdateEndsAtABadIdentifier) {
    const auto update_list = [&](FakeObject& list) {
        jni.clear_journal();
        return com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list));
    };
    EXPECT_EQ(update_list(jni.list({&named("x,1"), &named("1,17")})), -22);
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
    EXPECT_EQ(update_list(jni.list({&named("1,17"), &named("x,1"), &named("1,18")})), 0);
    EXPECT_EQ(jni.journal_with("update_rec"), call("update_rec(@1, record, 0)"));
}

TEST_F(SatelliteWrites, AnAddStartsWithoutAToneBurst) {
    EXPECT_EQ(add(jni, object()), "1,2");
    _SATL_REC_T expected = {};
    expected.ui2_satl_rec_id = 2;
    expected.t_diseqc_info.ui1_tone_burst = 0xFF;
    EXPECT_EQ(last_record(), bytes_of(expected));
}

TEST_F(SatelliteWrites, AKeysLineComesBeforeItsStringIsReleased) {
    log_level("D");
    FakeObject& satellite = object();
    satellite.keys = {"LnbType"};
    add(jni, satellite);
    const std::string line = "log 3 -: [jni_VltTvList_Init] e_lnb_type = 0 \n";
    EXPECT_EQ(journal_before(line).back(), "GetIntField(LnbType)");
    EXPECT_EQ(journal_from(line).at(1), "DeleteLocalRef(\"LnbType\")");
}

TEST_F(SatelliteWrites, KeysAreAskedOnTheOwnClassFieldsOnTheBaseClass) {
    add(jni, filled("1,17"));
    update(jni, filled("1,17"));
    Lines fields;
    for (const FakeJni::LookUp& look_up : jni.look_ups()) {
        if (look_up.name == "isContainsKey") {
            EXPECT_EQ(look_up.cls, "class of satellite");
        } else {
            EXPECT_EQ(look_up.cls, kSatelliteBase) << look_up.name;
            EXPECT_EQ(look_up.signature, is_text(look_up.name) ? "Ljava/lang/String;" : "I") << look_up.name;
            fields.push_back(look_up.name);
        }
    }
    Lines expected;
    for (const std::string& key : joined(kSatelliteAddKeys, Lines{"RecId"}, kSatelliteUpdateKeys)) {
        expected.push_back(satellite_field(key));
    }
    EXPECT_EQ(fields, expected);
}

TEST_F(SatelliteWrites, AMissingFieldEndsAnAddWithoutALineOfItsKey) {
    log_level("D");
    for (const std::string& key : kSatelliteAddKeys) {
        FakeObject& satellite = object();
        satellite.keys = {key};
        FakeJni failing;
        failing.fail((is_text(key) ? object_read(key) : int_read(satellite_field(key)))[0]);
        EXPECT_EQ(add(failing, satellite), "");
        EXPECT_EQ(failing.journal_with("log "), entry("add_Info")) << key;
        EXPECT_EQ(failing.journal_with(kind.calls), Lines{});
        EXPECT_TRUE(failing.exception_pending());
    }
}

TEST_F(SatelliteWrites, AMissingFieldEndsAnUpdateWithoutALineOfItsKey) {
    log_level("D");
    for (const std::string& key : kSatelliteUpdateKeys) {
        FakeObject& satellite = named("1,17");
        satellite.keys.insert(key);
        FakeJni failing;
        failing.fail((is_text(key) ? object_read(key) : int_read(satellite_field(key)))[0]);
        EXPECT_EQ(update(failing, satellite), -22);
        EXPECT_EQ(
            failing.journal_with("log 3 -:"),
            joined(entry("updateInfo"), Lines{kJniLine + "[" + kind.native_names + "updateInfo][4714], sRecID: 1,17 "}))
            << key;
        EXPECT_EQ(failing.journal_with("update_rec"), Lines{});
        EXPECT_TRUE(failing.exception_pending());
    }
}

TEST_F(SatelliteWrites, AListUpdateLogsTheIdentifierOfEachElement) {
    log_level("D");
    FakeObject& list = jni.list({&named("1,17"), &named("2,18")});
    EXPECT_EQ(com_velotra_tv_tavro_satellitelist_updateInfoList(jni.env(), nullptr, FakeJni::ref(list)), 0);
    const std::string line = kJniLine + "[" + kind.native_names + "updateInfoList][4847], sRecID: ";
    EXPECT_EQ(jni.journal_with("sRecID"), (Lines{line + "1,17 ", line + "2,18 "}));
}

// The manager and the conversion throw what std::stoi throws; nobody catches it.
TEST_F(SatelliteWrites, PartsOfIdentifiersThatAreNotNumbersThrow) {
    const auto get = [&](const char* identifier) {
        return com_velotra_tv_tavro_satellitelist_getInfo(jni.env(), nullptr, text(identifier), nullptr);
    };
    EXPECT_THROW(get("5,x"), std::invalid_argument);
    EXPECT_THROW(get(",5"), std::invalid_argument);
    EXPECT_THROW(get("5,2147483648"), std::out_of_range);
    for (const char* identifier : {"5,", ",12"}) { // an empty part passes the test for digits
        EXPECT_THROW(update(jni, named(identifier)), std::invalid_argument);
    }
    EXPECT_EQ(jni.journal_with(kind.calls), Lines{});
}

} // namespace
