// What networks and satellites have in common, which are returned as objects: the classes, and how a read ends.

#include "bridge_test_support.h"

namespace script = tavro::script;

namespace {

using namespace tavro::test;

struct InfoKind {
    const BridgeKind& kind;
    jobject (*get)(JNIEnv*, jobject, jstring identifier, jobject keys);
    jobject (*get_list)(JNIEnv*, jobject, jint list, jobject keys);
    std::string info; // class of the results
    std::string base; // class of the carrier, from which results take their values over
    std::string take_over;
    std::string count; // call that counts the records of a list
};

const InfoKind& networks() {
    static const InfoKind kind = {network_kind(),
                                  com_velotra_tv_tavro_networklist_getInfo,
                                  com_velotra_tv_tavro_networklist_getInfoList,
                                  "VltTvNetworkInfo",
                                  "VltTvNetworkInfoBase",
                                  "nwlToNetworkInfo",
                                  "get_num_rec"};
    return kind;
}

const InfoKind& satellites() {
    static const InfoKind kind = {satellite_kind(),
                                  com_velotra_tv_tavro_satellitelist_getInfo,
                                  com_velotra_tv_tavro_satellitelist_getInfoList,
                                  "VltTvSatelliteInfo",
                                  "VltTvSatelliteInfoBase",
                                  "satlToSatelliteInfo",
                                  "get_num_recs"};
    return kind;
}

class InfoObjects : public BridgeTest, public testing::WithParamInterface<const InfoKind*> {
protected:
    InfoObjects() : BridgeTest(GetParam()->kind) {
        log_level("D");
        script::always(call_name("get_rec"), reads(kind.sample));
        script::always(call_name("get_rec_by_rec_idx"), reads(kind.sample));
        script::always(call_name(info.count), counts(1));
    }

    jobject get(FakeJni& platform) { return info.get(platform.env(), nullptr, text("1,17"), nullptr); }
    jobject get_list(FakeJni& platform) { return info.get_list(platform.env(), nullptr, 1, nullptr); }

    // What happens from the call that failed on, but for what releases references and locks.
    static Lines end_of(const FakeJni& failing) {
        Lines rest = failing.journal_from_failure();
        rest.erase(std::remove_if(rest.begin(), rest.end(),
                                  [](const std::string& entry) {
                                      return entry.rfind("DeleteLocalRef(", 0) == 0 ||
                                             entry.find("_read_unlock(") != std::string::npos ||
                                             entry.find("List_Cpp: ") != std::string::npos;
                                  }),
                   rest.end());
        return rest;
    }
    std::string find_class(const std::string& name) const { return "FindClass(" + kPackage + name + ")"; }

    // A call that fails, the n-th with that text, and the message that is logged then.
    struct Failure {
        std::string call;
        int n;
        std::string message;
    };

    void expect_messages(const std::string& native, const std::vector<Failure>& failures) {
        for (const Failure& failure : failures) {
            FakeJni failing;
            failing.fail(failure.call, failure.n);
            EXPECT_EQ(native == "getInfo" ? get(failing) : get_list(failing), nullptr);
            EXPECT_EQ(end_of(failing), (Lines{failure.call, native_line(native, " : " + failure.message)}));
            EXPECT_EQ(failing.journal_with("lock("), Lines{});
        }
    }

    const InfoKind& info = *GetParam();
    const std::string constructor = "GetMethodID(<init>, ()V)";
    const std::string no_base = info.base + " class not find!";
    const std::string take_over = "GetMethodID(" + info.take_over + ", (L" + kPackage + info.base + ";)V)";
};

TEST_P(InfoObjects, OneLogsTheClassOrConstructorThatIsMissing) {
    expect_messages("getInfo", {{find_class(info.info), 1, "Info class not find!"},
                                {constructor, 1, "init class failed!"},
                                {find_class(info.base), 1, no_base},
                                {constructor, 2, "jcls_init init class failed!"}});
}

TEST_P(InfoObjects, AListLogsTheClassOrMethodThatIsMissingBeforeItLocks) {
    const std::string no_list = "ArrayList class not find!";
    expect_messages("getInfoList", {{"FindClass(java/util/ArrayList)", 1, no_list},
                                    {constructor, 1, no_list},
                                    {"NewObject(ArrayList)", 1, no_list},
                                    {"GetMethodID(add, (Ljava/lang/Object;)Z)", 1, no_list},
                                    {find_class(info.info), 1, "Info class not find!"},
                                    {constructor, 2, "init class failed!"},
                                    {find_class(info.base), 1, no_base},
                                    {constructor, 3, "jcls_init init class failed!"}});
}

TEST_P(InfoObjects, LogNothingWhenAnObjectOrItsMethodIsMissing) {
    for (const std::string& call : {"NewObject(" + info.info + ")", "NewObject(" + info.base + ")", take_over}) {
        for (const bool list : {false, true}) {
            FakeJni failing;
            failing.fail(call);
            EXPECT_EQ(list ? get_list(failing) : get(failing), nullptr);
            EXPECT_EQ(end_of(failing), Lines{call});
            EXPECT_EQ(failing.journal_with("read_lock(").size(), failing.journal_with("read_unlock(").size());
        }
    }
}

TEST_P(InfoObjects, OneThatCannotBeReadIsNullWithALine) {
    script::always(call_name("get_rec"), fails());
    EXPECT_EQ(get(jni), nullptr);
    EXPECT_EQ(journal().back(), native_line("getInfo", " getInfo fail ret=-22 "));
}

TEST_P(InfoObjects, AListWithoutRecordsIsEmpty) {
    script::always(call_name(info.count), counts(0));
    jobject list = get_list(jni);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(FakeJni::from(list).name, "ArrayList");
    EXPECT_TRUE(FakeJni::from(list).elements.empty());
    EXPECT_EQ(jni.journal_with(kind.calls),
              joined(call("read_lock(@1)"), call(info.count + "(@1)"), call("read_unlock(@1)")));
}

TEST_P(InfoObjects, AListIsNullWhenOneRecordCannotBeRead) {
    script::always(call_name(info.count), counts(3));
    script::answer(call_name("get_rec_by_rec_idx"), reads(kind.sample));
    script::answer(call_name("get_rec_by_rec_idx"), fails());
    EXPECT_EQ(get_list(jni), nullptr);
    EXPECT_EQ(jni.journal_with(kind.calls),
              joined(call("read_lock(@1)"), call(info.count + "(@1)"), call("get_rec_by_rec_idx(@1, 0)"),
                     call("get_rec_by_rec_idx(@1, 1)"), call("read_unlock(@1)")));
}

INSTANTIATE_TEST_SUITE_P(Kinds, InfoObjects, testing::Values(&networks(), &satellites()),
                         [](const testing::TestParamInfo<const InfoKind*>& tested) { return tested.param->kind.name; });

} // namespace
