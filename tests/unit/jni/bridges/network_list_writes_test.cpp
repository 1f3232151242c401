// What the network list's natives do differently when they add and update. record_writes_test.cpp has the shared rules.

#include "bridge_test_support.h"

#include <utility>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

const Lines kObjectAsked = {"GetObjectClass(network)", contains_key_of(kPackage + "VltTvNetworkInfoBase")};
const Lines kListAsked = {"GetObjectClass(list)", "GetMethodID(get, (I)Ljava/lang/Object;)", "GetMethodID(size, ()I)",
                          "list.size()", "DeleteLocalRef(class of list)"};
const Lines kElementEnd = {"DeleteLocalRef(class of network)", "DeleteLocalRef(network)"};
const Lines kNoValues = all_asked("network", kNetworkKeys);
const Lines kAllValues = all_asked("network", kNetworkKeys,
                                   {{"NetworkVersion", int_read("NetworkVersion")},
                                    {"NetworkName", text_read("NetworkName", "Due")},
                                    {"NwlFavNetworkCandidate", int_read("NwlFavNetworkCandidate")},
                                    {"NwlFavNetwork", int_read("NwlFavNetwork")},
                                    {"NwlNetworkId", int_read("NwlNetworkId")}});

class NetworkWrites : public BridgeTest {
protected:
    NetworkWrites() : BridgeTest(network_kind()) {}

    FakeObject& filled(const char* identifier) {
        FakeObject& made = named(identifier);
        made.keys.insert(kNetworkKeys.begin(), kNetworkKeys.end());
        made.object_fields["NetworkName"] = &jni.string("Due");
        return made;
    }
    jint update_list(std::vector<FakeObject*> elements) {
        jni.clear_journal();
        return com_velotra_tv_tavro_networklist_updateInfoList(jni.env(), nullptr, 1,
                                                               FakeJni::ref(jni.list(std::move(elements))));
    }
    std::string add(FakeObject& network) {
        jni.clear_journal();
        return text_of(com_velotra_tv_tavro_networklist_add_Info(jni.env(), nullptr, 1, FakeJni::ref(network)));
    }
    // The journal of an add up to the middleware's calls.
    static Lines added(const Lines& values, const Lines& id) {
        return joined(Lines{"NewStringUTF(\"\")"}, kObjectAsked, values, id);
    }
    Lines journal_to_add() const { return journal_before(call("qry_rec_id(@1, 2)")[0]); }
};

TEST_F(NetworkWrites, AnUpdateReadsTheValuesAndKeepsTheNamesCharacters) {
    EXPECT_EQ(com_velotra_tv_tavro_networklist_updateInfo(jni.env(), nullptr, 1, FakeJni::ref(filled("9,17"))), 0);
    EXPECT_EQ(journal(), joined(kObjectAsked, id_asked(id_read("9,17")), call("get_rec(@1, 17)"), kAllValues,
                                call_under_lock("update_rec(@1, record, 0)", "@1")));
    EXPECT_EQ(jni.unreleased_chars(), 1);
}

TEST_F(NetworkWrites, AListUpdateReadsTheValuesOfEachElement) {
    EXPECT_EQ(update_list({&filled("9,17"), &named(nullptr)}), 0);
    EXPECT_EQ(journal(),
              joined(kListAsked, call("lock(@1)"), Lines{"list.get(0)"}, kObjectAsked, id_asked(id_read("9,17")),
                     call("get_rec(@1, 17)"), kAllValues, call("update_rec(@1, record, 0)"), kElementEnd,
                     Lines{"list.get(1)"}, kObjectAsked, id_asked(id_read()), call("get_rec(@1, 0)"), kNoValues,
                     call("update_rec(@1, record, 0)"), kElementEnd, call("unlock(@1)")));
}

// Deliberate: the result is that of the element before, and the lock is kept.
TEST_F(NetworkWrites, AListUpdateEndsAtABadIdentifierAndStaysLocked) {
    const Lines bad = joined(kObjectAsked, id_asked_and_kept(id_read("x,1")), kElementEnd);
    EXPECT_EQ(update_list({&named("x,1"), &named("1,17")}), -22);
    EXPECT_EQ(journal(), joined(kListAsked, call("lock(@1)"), Lines{"list.get(0)"}, bad));
    EXPECT_EQ(update_list({&named("1,17"), &named("x,1"), &named("1,18")}), 0);
    EXPECT_EQ(journal(), joined(kListAsked, call("lock(@1)"), Lines{"list.get(0)"}, kObjectAsked,
                                id_asked(id_read("1,17")), call("get_rec(@1, 17)"), kNoValues,
                                call("update_rec(@1, record, 0)"), kElementEnd, Lines{"list.get(1)"}, bad));
}

TEST_F(NetworkWrites, AnAddReadsTheValuesThenTheIdentifier) {
    EXPECT_EQ(add(filled("1,77")), "1,2");
    EXPECT_EQ(journal_to_add(), added(kAllValues, id_asked(id_read("1,77"))));
}

TEST_F(NetworkWrites, AnAddIgnoresABadIdentifierAndReleasesItsKey) {
    for (const char* bad : {"x,1", "1,x", "17"}) {
        EXPECT_EQ(add(named(bad)), "1,2");
        EXPECT_EQ(journal_to_add(), added(kNoValues, id_asked(id_read(bad)))) << bad;
    }
    log_level("D");
    EXPECT_EQ(add(named("17")), "1,2");
    EXPECT_EQ(jni.journal_with("log 6"), Lines{"log 6 -: Unknown data s_Id.\n"});
}

} // namespace
