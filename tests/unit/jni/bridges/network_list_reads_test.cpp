// What the network list's natives that hand networks to Java as objects ask of the platform, in one order with
// their middleware calls and lines. Their behaviour on a real Java virtual machine is tested in tests/jvm.

#include "bridge_test_support.h"
#include "jni/bridges/managers.h"
#include "jni/bridges/network_list_bridge.h"
#include "jni/records/network_record.h"

#include <gtest/gtest.h>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

const std::string kPackage = "com/velotra/tv/tavro/services/channellist/";
const std::string kFindInfo = "FindClass(" + kPackage + "VltTvNetworkInfo)";
const std::string kFindBase = "FindClass(" + kPackage + "VltTvNetworkInfoBase)";
const std::string kConstructor = "GetMethodID(<init>, ()V)";

// The carrier that the values are put into, and its being taken over by the result.
const std::string kTakeOverMethod = "GetMethodID(nwlToNetworkInfo, (L" + kPackage + "VltTvNetworkInfoBase;)V)";
const Lines kCarrier = {"NewObject(VltTvNetworkInfoBase)", kTakeOverMethod};
const Lines kTakeOver = {"VltTvNetworkInfo.nwlToNetworkInfo(VltTvNetworkInfoBase)"};
const Lines kKeysAsked = {"GetObjectClass(list)", "GetMethodID(size, ()I)", "GetMethodID(get, (I)Ljava/lang/Object;)",
                          "list.size()", "DeleteLocalRef(class of list)"};

// One setter, with what comes before its call.
Lines set(const std::string& setter, const std::string& argument, const std::string& signature,
          const Lines& before = {}) {
    return joined(Lines{"GetMethodID(" + setter + ", " + signature + ")"}, before,
                  Lines{"VltTvNetworkInfoBase." + setter + "(" + argument + ")"});
}
Lines set_number(const std::string& setter, int value) { return set(setter, std::to_string(value), "(I)V"); }
Lines set_id(const std::string& identifier) {
    return set("setNwlIdNwlRecId", quoted(identifier), "(Ljava/lang/String;)V");
}
Lines set_name(const std::string& name) {
    return joined(set("setNetworkName", quoted(name), "(Ljava/lang/String;)V", {"NewStringUTF(" + quoted(name) + ")"}),
                  Lines{"DeleteLocalRef(" + quoted(name) + ")"});
}
Lines set_all(const std::string& identifier) {
    return joined(set_id(identifier), set_number("setNetworkVersion", 200), set_name("Uno"),
                  set_number("setNwlFavNetworkCandidate", 0), set_number("setNwlFavNetwork", 1),
                  set_number("setNwlNetworkId", 8468));
}

Lines identifier_made(const std::string& record_id) {
    return {kJniLine + "[combineMId] mwdbId = 1, recId = " + record_id,
            "NewStringUTF(" + quoted("1," + record_id) + ")", "NewObject(VltTvNetworkInfo)"};
}

class NetworkReading : public BridgeTest {
protected:
    NetworkReading() : BridgeTest({"com_velotra_tv_tavro_networklist_", "", "", "", NwlKind::handles(), 3}) {
        nwList = &manager;
        log_level("D");
        stored.ui4_nwl_flags = 0x4;
        stored.ui2_nwl_rec_id = 17;
        stored.ui2_nw_id = 8468;
        stored.ui1_nw_version = 200;
        std::strcpy(stored.ac_nw_name, "Uno");
    }
    ~NetworkReading() override { nwList = nullptr; }

    FakeObject& three_keys() {
        return jni.list({&jni.string("NetworkName"), &jni.string("Nothing"), &jni.string("NwlIdNwlRecId")});
    }
    // What taking them leaves; `line` is written before each but its key.
    static Lines three_keys_taken(const std::string& line, const std::string& identifier) {
        const auto taken = [&](const std::string& index, const std::string& key, const Lines& setter) {
            return joined(Lines{"list.get(" + index + ")", "GetStringUTFChars(" + quoted(key) + ")"},
                          line.empty() ? Lines{} : Lines{line + key + " \n"}, setter,
                          Lines{"ReleaseStringUTFChars(" + quoted(key) + ")"}, given_back(quoted(key)));
        };
        const Lines told = {"log 3 -: [KEY_NETWORK_NAME] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:17"};
        return joined(taken("0", "NetworkName", joined(told, set_name("Uno"))), taken("1", "Nothing", {}),
                      taken("2", "NwlIdNwlRecId", set_id(identifier)));
    }

    jobject get(FakeJni& platform, const char* identifier, FakeObject* keys) {
        return com_velotra_tv_tavro_networklist_getInfo(platform.env(), nullptr, ref(jni.string(identifier)),
                                                        keys == nullptr ? nullptr : FakeJni::ref(*keys));
    }
    jobject get_list(FakeJni& platform, FakeObject* keys) {
        return com_velotra_tv_tavro_networklist_getInfoList(platform.env(), nullptr, 1,
                                                            keys == nullptr ? nullptr : FakeJni::ref(*keys));
    }
    Lines one_begun(const std::string& identifier) const {
        return joined(entry("getInfo line:3258 "), Lines{kFindInfo, kConstructor}, chars(identifier));
    }
    // One network as it is built before its values are set.
    static Lines one_built(const Lines& begun) {
        return joined(begun, Lines{"x_nwl_get_rec(0x30001, 99)"}, identifier_made("17"), Lines{kFindBase, kConstructor},
                      kCarrier);
    }
    Lines list_begun() const {
        return joined(entry("getInfoList"),
                      Lines{"FindClass(java/util/ArrayList)", kConstructor, "NewObject(ArrayList)",
                            "GetMethodID(add, (Ljava/lang/Object;)Z)", kFindInfo, kConstructor, kFindBase, kConstructor,
                            "x_nwl_read_lock(0x30001)", "x_nwl_get_num_rec(0x30001)"});
    }
    Lines record_begun(const std::string& index, const std::string& record_id) const {
        return joined(Lines{"x_nwl_get_rec_by_rec_idx(0x30001, " + index + ")"},
                      entry("getInfoList  pt_nwl_rec.ui2_nwl_rec_id:" + record_id + " "), identifier_made(record_id),
                      kCarrier);
    }

    // What ends a record of a walk: its carrier, the result that the list holds now, the identifier.
    static Lines record_given_back(const std::string& record_id) {
        return joined(given_back("VltTvNetworkInfoBase"), given_back("VltTvNetworkInfo"),
                      given_back(quoted("1," + record_id)));
    }

    NativeVltTvNetworkList manager;
    _NWL_REC_T stored = {};
    const Lines added = joined(kTakeOver, Lines{"ArrayList.add(VltTvNetworkInfo)"});
    const Lines unlocked = {"x_nwl_read_unlock(0x30001)"};
};

TEST_F(NetworkReading, OneNetworkIsReadWithoutALockIntoACarrierThatTheResultTakesOver) {
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    jobject info = get(jni, "1,99", nullptr);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(FakeJni::from(info).name, "VltTvNetworkInfo");
    EXPECT_EQ(journal(), joined(one_built(one_begun("1,99")), set_all("1,17"), kTakeOver));
    EXPECT_EQ(jni.unreleased_chars(), 0);
}

TEST_F(NetworkReading, OneNetworkByKeysSetsThoseAloneAndReleasesTheKeysCharacters) {
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    ASSERT_NE(get(jni, "1,99", &three_keys()), nullptr);
    EXPECT_EQ(journal(), joined(one_built(one_begun("1,99")), kKeysAsked, Lines{kJniLine + "Key List size = 3\n"},
                                three_keys_taken("", "1,17"), kTakeOver));
    EXPECT_EQ(jni.unreleased_chars(), 0);
    jni.clear_journal();
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    ASSERT_NE(get(jni, "1,99", &jni.list({})), nullptr);
    EXPECT_EQ(journal(),
              joined(one_built(one_begun("1,99")), kKeysAsked, Lines{kJniLine + "Key List size = 0\n"}, kTakeOver));
}

TEST_F(NetworkReading, TheIdentifiersKeyIsComparedExactly) {
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    FakeObject& keys =
        jni.list({&jni.string("NwlIdNwlRecId "), &jni.string("NwlIdNwlRec"), &jni.string("nwlIdNwlRecId")});
    ASSERT_NE(get(jni, "1,99", &keys), nullptr);
    EXPECT_EQ(jni.journal_with("setNwlIdNwlRecId"), Lines{});
}

TEST_F(NetworkReading, ASetterThatIsMissingMakesTheResultNullAndUnlocks) {
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    jni.fail("GetMethodID(setNwlIdNwlRecId, (Ljava/lang/String;)V)");
    EXPECT_EQ(get(jni, "1,99", nullptr), nullptr);
    const Lines missing = {"GetMethodID(setNwlIdNwlRecId, (Ljava/lang/String;)V)"};
    EXPECT_EQ(journal(), joined(one_built(one_begun("1,99")), missing));

    FakeJni failing;
    failing.fail(missing[0]);
    script::answer("x_nwl_get_num_rec", counts(2));
    script::answer("x_nwl_get_rec_by_rec_idx", reads(bytes_of(stored)));
    EXPECT_EQ(get_list(failing, nullptr), nullptr);
    EXPECT_EQ(journal(failing),
              joined(list_begun(), record_begun("0", "17"), missing, record_given_back("17"), unlocked));
}

TEST_F(NetworkReading, OneNetworkThatCannotBeReadIsNullWithALine) {
    script::answer("x_nwl_get_rec", fails());
    EXPECT_EQ(get(jni, "1,99", nullptr), nullptr);
    EXPECT_EQ(journal(),
              joined(one_begun("1,99"), Lines{"x_nwl_get_rec(0x30001, 99)"}, entry("getInfo getInfo fail ret=-22 ")));
    jni.clear_journal();
    EXPECT_EQ(get(jni, "1,x", nullptr), nullptr);
    EXPECT_EQ(journal(), one_begun("1,x"));
}

TEST_F(NetworkReading, AListMakesACarrierForEachRecordUnderTheReadLock) {
    script::always("x_nwl_get_num_rec", counts(2));
    script::answer("x_nwl_get_rec_by_rec_idx", reads(bytes_of(stored)));
    jobject list = get_list(jni, nullptr); // the second read leaves its record as it is: zero
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(FakeJni::from(list).elements.size(), 2U);
    EXPECT_EQ(journal(), joined(list_begun(), record_begun("0", "17"), set_all("1,17"), added, record_given_back("17"),
                                record_begun("1", "0"), set_id("1,0"), set_number("setNetworkVersion", 0), set_name(""),
                                set_number("setNwlFavNetworkCandidate", 0), set_number("setNwlFavNetwork", 0),
                                set_number("setNwlNetworkId", 0), added, record_given_back("0"), unlocked));
}

TEST_F(NetworkReading, AListByKeysAsksTheKeysForEachRecordAndReleasesTheirCharacters) {
    script::always("x_nwl_get_num_rec", counts(2));
    script::always("x_nwl_get_rec_by_rec_idx", reads(bytes_of(stored)));
    ASSERT_NE(get_list(jni, &three_keys()), nullptr);
    const std::string start = "log 3 -: [jni_VltTvList_Init]getInfoList, ";
    const Lines by_keys = joined(kKeysAsked, Lines{start + "Key List size = 3\n"},
                                 three_keys_taken(start + "keyName = ", "1,17"), added, record_given_back("17"));
    EXPECT_EQ(journal(),
              joined(list_begun(), record_begun("0", "17"), by_keys, record_begun("1", "17"), by_keys, unlocked));
    EXPECT_EQ(jni.unreleased_chars(), 0);
}

TEST_F(NetworkReading, AListWithoutRecordsIsEmptyAndOneWhoseReadFailsIsNullAndBothUnlock) {
    jobject list = get_list(jni, nullptr);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(FakeJni::from(list).name, "ArrayList");
    EXPECT_TRUE(FakeJni::from(list).elements.empty());
    EXPECT_EQ(journal(), joined(list_begun(), unlocked));
    jni.clear_journal();
    script::always("x_nwl_get_num_rec", counts(2));
    script::answer("x_nwl_get_rec_by_rec_idx", fails());
    EXPECT_EQ(get_list(jni, nullptr), nullptr);
    EXPECT_EQ(journal(), joined(list_begun(), Lines{"x_nwl_get_rec_by_rec_idx(0x30001, 0)"}, unlocked));
}

TEST_F(NetworkReading, AnUnknownKeySetsNothingAndKnownOnesAreComparedExactly) {
    FakeObject& base = jni.object("VltTvNetworkInfoBase");
    const auto given = [&](const char* key) {
        jni.clear_journal();
        tavro::Jni env(jni.env());
        _get_nwl_info(env, static_cast<jclass>(FakeJni::ref(base)), FakeJni::ref(base), key, stored);
        return journal();
    };
    const std::string version = "log 3 -: [KEY_NETWORK_VERSION] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:17 ";
    EXPECT_EQ(given("NetworkVersion"), joined(Lines{version}, set_number("setNetworkVersion", 200)));
    EXPECT_EQ(given("NwlFavNetworkCandidate"), set_number("setNwlFavNetworkCandidate", 0));
    EXPECT_EQ(given("NwlFavNetwork"), set_number("setNwlFavNetwork", 1));
    EXPECT_EQ(given("NwlNetworkId"), set_number("setNwlNetworkId", 8468));
    for (const char* key : {"", "networkVersion", "NetworkVersion ", "NwlFav", "NwlIdNwlRecId"}) {
        EXPECT_EQ(given(key), Lines{}) << key;
    }
}

TEST_F(NetworkReading, ANameWithoutItsNulIsHandedOverToTheEndOfItsField) {
    std::memset(&stored, 0xFF, sizeof(stored));
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    const std::string name(32, '\xFF');
    ASSERT_NE(get(jni, "1,99", nullptr), nullptr);
    EXPECT_EQ(jni.journal_with("setNetworkName"), (Lines{"GetMethodID(setNetworkName, (Ljava/lang/String;)V)",
                                                         "VltTvNetworkInfoBase.setNetworkName(" + quoted(name) + ")"}));
}

TEST_F(NetworkReading, AClassOrConstructorThatIsMissingIsTold) {
    const Lines begun = entry("getInfo line:3258 ");
    const Lines read = joined(one_begun("1,99"), Lines{"x_nwl_get_rec(0x30001, 99)"}, identifier_made("17"));
    const struct {
        int call; // counted among those that can fail
        Lines made;
        const char* message;
    } cases[] = {
        {1, joined(begun, Lines{kFindInfo}), "Info class not find!"},
        {2, joined(begun, Lines{kFindInfo, kConstructor}), "init class failed!"},
        {6, joined(read, Lines{kFindBase}), "VltTvNetworkInfoBase class not find!"},
        {7, joined(read, Lines{kFindBase, kConstructor}), "jcls_init init class failed!"},
    };
    script::always("x_nwl_get_rec", reads(bytes_of(stored)));
    for (const auto& c : cases) {
        FakeJni failing;
        failing.fail_nth(c.call);
        EXPECT_EQ(get(failing, "1,99", nullptr), nullptr) << c.message;
        EXPECT_EQ(journal(failing), joined(c.made, entry(std::string("getInfo : ") + c.message)));
        EXPECT_TRUE(failing.exception_pending());
    }
}

TEST_F(NetworkReading, AnObjectThatCannotBeMadeEndsTheReadWithoutAMessage) {
    script::answer("x_nwl_get_rec", reads(bytes_of(stored)));
    jni.fail("NewObject(VltTvNetworkInfo)");
    EXPECT_EQ(get(jni, "1,99", nullptr), nullptr);
    EXPECT_EQ(journal(), joined(one_begun("1,99"), Lines{"x_nwl_get_rec(0x30001, 99)"}, identifier_made("17")));
}

TEST_F(NetworkReading, AClassOrConstructorThatIsMissingForAListIsToldBeforeTheLock) {
    const char* const messages[] = {"ArrayList class not find!", // the class, its constructor, the list itself, "add"
                                    "ArrayList class not find!",   "ArrayList class not find!",
                                    "ArrayList class not find!",   "Info class not find!",
                                    "init class failed!",          "VltTvNetworkInfoBase class not find!",
                                    "jcls_init init class failed!"};
    const Lines begun = list_begun();
    for (int call = 1; call <= 8; ++call) { // all of them can fail
        FakeJni failing;
        failing.fail_nth(call);
        EXPECT_EQ(get_list(failing, nullptr), nullptr) << call;
        EXPECT_EQ(journal(failing), joined(Lines(begun.begin(), begun.begin() + 1 + call),
                                           entry(std::string("getInfoList : ") + messages[call - 1])));
        EXPECT_TRUE(failing.exception_pending());
    }
}

} // namespace
