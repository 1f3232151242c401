// The network list's natives that read: networks are returned as objects. info_objects_test.cpp has the rules that
// satellites share.

#include "bridge_test_support.h"
#include "jni/records/network_record.h"

#include <cstring>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

const std::string kConstructor = "GetMethodID(<init>, ()V)";
const Lines kFindInfo = {"FindClass(" + kPackage + "VltTvNetworkInfo)", kConstructor};
const Lines kFindBase = {"FindClass(" + kPackage + "VltTvNetworkInfoBase)", kConstructor};

// The carrier takes the values; the result takes them over from it.
const std::string kCarrierName = "VltTvNetworkInfoBase";
const Lines kCarrier = {"NewObject(VltTvNetworkInfoBase)",
                        "GetMethodID(nwlToNetworkInfo, (L" + kPackage + "VltTvNetworkInfoBase;)V)"};
const Lines kTakeOver = {"VltTvNetworkInfo.nwlToNetworkInfo(VltTvNetworkInfoBase)"};
const Lines kAdded = joined(kTakeOver, Lines{"ArrayList.add(VltTvNetworkInfo)"});
const Lines kKeysAsked = {"GetObjectClass(list)", "GetMethodID(size, ()I)", "GetMethodID(get, (I)Ljava/lang/Object;)",
                          "list.size()", "DeleteLocalRef(class of list)"};

Lines set_number(const std::string& setter, int value) { return number_set(kCarrierName, setter, value); }
Lines set_id(const std::string& identifier) {
    return value_set(kCarrierName, "setNwlIdNwlRecId", quoted(identifier), "(Ljava/lang/String;)V");
}
Lines set_name(const std::string& name) { return text_set(kCarrierName, "setNetworkName", name); }
Lines set_all(const std::string& identifier) {
    return joined(set_id(identifier), set_number("setNetworkVersion", 200), set_name("Uno"),
                  set_number("setNwlFavNetworkCandidate", 0), set_number("setNwlFavNetwork", 1),
                  set_number("setNwlNetworkId", 8468));
}

class NetworkReads : public BridgeTest {
protected:
    NetworkReads() : BridgeTest(network_kind()) {
        log_level("D");
        stored.ui4_nwl_flags = 0x4;
        stored.ui2_nwl_rec_id = 17;
        stored.ui2_nw_id = 8468;
        stored.ui1_nw_version = 200;
        std::strcpy(stored.ac_nw_name, "Uno");
    }

    FakeObject& three_keys() {
        return jni.list({&jni.string("NetworkName"), &jni.string("Nothing"), &jni.string("NwlIdNwlRecId")});
    }
    // Sets the values of these keys. `line` is the log line before each, up to the key; "" when there is none.
    static Lines three_keys_set(const std::string& line, const std::string& identifier) {
        const auto key_set = [&](int index, const std::string& key, const Lines& setter) {
            return joined(Lines{"list.get(" + std::to_string(index) + ")"}, chars_kept(key),
                          line.empty() ? Lines{} : Lines{line + key + " \n"}, setter,
                          Lines{"ReleaseStringUTFChars(" + quoted(key) + ")"}, given_back(quoted(key)));
        };
        const Lines name_line = {"log 3 -: [KEY_NETWORK_NAME] _get_nwl_info  pt_nwl_rec.ui2_nwl_rec_id:17"};
        return joined(key_set(0, "NetworkName", joined(name_line, set_name("Uno"))), key_set(1, "Nothing", {}),
                      key_set(2, "NwlIdNwlRecId", set_id(identifier)));
    }

    // Reads the network 99 of list 1, whose record has the id 17.
    jobject get(FakeObject* keys) {
        jni.clear_journal();
        script::answer("x_nwl_get_rec", reads(stored));
        return com_velotra_tv_tavro_networklist_getInfo(jni.env(), nullptr, text("1,99"),
                                                        keys == nullptr ? nullptr : FakeJni::ref(*keys));
    }
    jobject get_list(FakeObject* keys) {
        jni.clear_journal();
        return com_velotra_tv_tavro_networklist_getInfoList(jni.env(), nullptr, 1,
                                                            keys == nullptr ? nullptr : FakeJni::ref(*keys));
    }
    static Lines result_made(const std::string& record_id) {
        return joined(identifier_made("1", record_id), Lines{"NewObject(VltTvNetworkInfo)"});
    }
    // Up to the first setter.
    Lines one_begun() const {
        return joined(entry("getInfo"), kFindInfo, chars("1,99"), call("get_rec(@1, 99)"), result_made("17"), kFindBase,
                      kCarrier);
    }
    Lines list_begun() const {
        return joined(entry("getInfoList"),
                      Lines{"FindClass(java/util/ArrayList)", kConstructor, "NewObject(ArrayList)",
                            "GetMethodID(add, (Ljava/lang/Object;)Z)"},
                      kFindInfo, kFindBase, call("read_lock(@1)"), call("get_num_rec(@1)"));
    }
    Lines record_begun(const std::string& index, const std::string& record_id) const {
        return joined(call("get_rec_by_rec_idx(@1, " + index + ")"),
                      Lines{native_line("getInfoList", "  pt_nwl_rec.ui2_nwl_rec_id:" + record_id + " ")},
                      result_made(record_id), kCarrier);
    }
    // Releases the carrier, the result, which the list holds now, and the identifier.
    static Lines record_given_back(const std::string& record_id) {
        return joined(given_back("VltTvNetworkInfoBase"), given_back("VltTvNetworkInfo"),
                      given_back(quoted("1," + record_id)));
    }

    _NWL_REC_T stored = {};
    const Lines unlocked = call("read_unlock(@1)");
};

TEST_F(NetworkReads, OneIsReadWithoutALockThroughACarrier) {
    jobject info = get(nullptr);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(FakeJni::from(info).name, "VltTvNetworkInfo");
    EXPECT_EQ(journal(), joined(one_begun(), set_all("1,17"), kTakeOver));
    EXPECT_EQ(jni.unreleased_chars(), 0);
}

TEST_F(NetworkReads, OneByKeysHasTheirValuesAlone) {
    ASSERT_NE(get(&three_keys()), nullptr);
    EXPECT_EQ(journal(), joined(one_begun(), kKeysAsked, Lines{kJniLine + "Key List size = 3\n"},
                                three_keys_set("", "1,17"), kTakeOver));
    EXPECT_EQ(jni.unreleased_chars(), 0);
    ASSERT_NE(get(&jni.list({})), nullptr);
    EXPECT_EQ(journal(), joined(one_begun(), kKeysAsked, Lines{kJniLine + "Key List size = 0\n"}, kTakeOver));
}

TEST_F(NetworkReads, OneWithABadIdentifierIsNull) {
    EXPECT_EQ(com_velotra_tv_tavro_networklist_getInfo(jni.env(), nullptr, text("1,x"), nullptr), nullptr);
    EXPECT_EQ(journal(), joined(entry("getInfo"), kFindInfo, chars("1,x")));
}

TEST_F(NetworkReads, TheIdentifiersKeyIsComparedExactly) {
    FakeObject& keys =
        jni.list({&jni.string("NwlIdNwlRecId "), &jni.string("NwlIdNwlRec"), &jni.string("nwlIdNwlRecId")});
    ASSERT_NE(get(&keys), nullptr);
    EXPECT_EQ(jni.journal_with("setNwlIdNwlRecId"), Lines{});
}

TEST_F(NetworkReads, OneWithAMissingSetterIsNull) {
    const std::string missing = set_id("")[0];
    jni.fail(missing);
    EXPECT_EQ(get(nullptr), nullptr);
    EXPECT_EQ(journal(), joined(one_begun(), Lines{missing}));
}

TEST_F(NetworkReads, AListWithAMissingSetterIsNullAndUnlocks) {
    const std::string missing = set_id("")[0];
    jni.fail(missing);
    script::answer("x_nwl_get_num_rec", counts(2));
    script::answer("x_nwl_get_rec_by_rec_idx", reads(stored));
    EXPECT_EQ(get_list(nullptr), nullptr);
    EXPECT_EQ(journal(),
              joined(list_begun(), record_begun("0", "17"), Lines{missing}, record_given_back("17"), unlocked));
}

TEST_F(NetworkReads, AListHasACarrierForEachRecord) {
    script::always("x_nwl_get_num_rec", counts(2));
    script::answer("x_nwl_get_rec_by_rec_idx", reads(stored));
    jobject list = get_list(nullptr); // the second read leaves its record as it is: zero
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(FakeJni::from(list).elements.size(), 2U);
    EXPECT_EQ(journal(), joined(list_begun(), record_begun("0", "17"), set_all("1,17"), kAdded, record_given_back("17"),
                                record_begun("1", "0"), set_id("1,0"), set_number("setNetworkVersion", 0), set_name(""),
                                set_number("setNwlFavNetworkCandidate", 0), set_number("setNwlFavNetwork", 0),
                                set_number("setNwlNetworkId", 0), kAdded, record_given_back("0"), unlocked));
}

TEST_F(NetworkReads, AListByKeysAsksTheKeysForEachRecord) {
    script::always("x_nwl_get_num_rec", counts(2));
    script::always("x_nwl_get_rec_by_rec_idx", reads(stored));
    ASSERT_NE(get_list(&three_keys()), nullptr);
    const std::string line = "log 3 -: [jni_VltTvList_Init]getInfoList, ";
    const Lines by_keys = joined(kKeysAsked, Lines{line + "Key List size = 3\n"},
                                 three_keys_set(line + "keyName = ", "1,17"), kAdded, record_given_back("17"));
    EXPECT_EQ(journal(),
              joined(list_begun(), record_begun("0", "17"), by_keys, record_begun("1", "17"), by_keys, unlocked));
    EXPECT_EQ(jni.unreleased_chars(), 0);
}

TEST_F(NetworkReads, KeysAreComparedExactlyAndUnknownOnesIgnored) {
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

TEST_F(NetworkReads, ANameWithoutItsNulIsReadToTheEndOfItsField) {
    std::memset(&stored, 0xFF, sizeof(stored));
    ASSERT_NE(get(nullptr), nullptr);
    const std::string name = quoted(std::string(32, '\xFF'));
    EXPECT_EQ(jni.journal_with("setNetworkName"),
              value_set(kCarrierName, "setNetworkName", name, "(Ljava/lang/String;)V"));
}

} // namespace
