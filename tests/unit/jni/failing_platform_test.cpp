// Every native on a platform whose first, second, third... JNI call fails, until a run in which none does.

#include "bridge_test_support.h"
#include "native_run.h"
#include "scripted_situation.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace tavro;

using tavro::test::BridgeKind;
using tavro::test::FakeJni;
using tavro::test::FakeObject;
using tavro::test::filled_object;
using tavro::test::is_failure;
using tavro::test::NativeCase;
using tavro::test::NativeRun;
using tavro::test::run_native;
using tavro::test::script_situation;

namespace {

using Lines = std::vector<std::string>;

bool starts_with(const std::string& text, const std::string& start) { return text.rfind(start, 0) == 0; }

// Calls that release something. They are allowed at any time.
bool is_clean_up(const std::string& call) {
    return starts_with(call, "DeleteLocalRef(") || starts_with(call, "ReleaseStringUTFChars(") ||
           call.find("unlock(") != std::string::npos || call.find("_close(") != std::string::npos;
}

#ifdef TAVRO_SLOW_BUILD
constexpr bool kLeavesOutSlowCases = true;
#else
constexpr bool kLeavesOutSlowCases = false;
#endif

bool ends_with(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Lines that may follow a failed call although the native is about to return.
bool may_follow(const std::string& failed, const std::string& line) {
    const auto ends_with_one_of = [&](std::initializer_list<const char*> ends) {
        return std::any_of(ends.begin(), ends.end(), [&](const char* end) { return ends_with(line, end); });
    };
    // An unlock or close looks up its handle.
    if (line.find("[getMwdbHandle]: ") != std::string::npos || line.find("[getSatHandle]: ") != std::string::npos) {
        return true;
    }
    // A string without characters is reported. Natives that pass the text to their manager pass the empty text, as for
    // a null string, and the manager reports and rejects it.
    if (starts_with(failed, "GetStringUTFChars(")) {
        return line == "log 6 -: Invalid String.\n" ||
               ends_with_one_of({"[open]: mwdbId = 1 path =  \n", "[open]: satId = 1 path =  \n",
                                 "[store]: mwdbId = 1 path = \n", "[store]: satId = 1 path = \n",
                                 ": string recId =  \n", ": Unknown recId info.\n"});
    }
    // Natives that make objects report the class that they lack.
    return ends_with_one_of({" : ArrayList class not find!", " : Info class not find!", " : init class failed!",
                             " : VltTvNetworkInfoBase class not find!", " : VltTvSatelliteInfoBase class not find!",
                             " : jcls_init init class failed!"});
}

// An update of services whose identifier cannot be read reads record 0, which changes nothing. These are the read and
// its lines.
bool reads_record_0(const NativeCase& native, const std::string& entry) {
    return native.kind->is_services() && starts_with(native.name, "update") &&
           (ends_with(entry, "_open(1, 0, 0)") || ends_with(entry, "_get_rec(0x10001, 0)") ||
            entry.find("[setMwdbHandle]: ") != std::string::npos || entry.find("List][getInfo]:") != std::string::npos);
}

class FailingPlatform : public tavro::test::EveryNativeTest, public testing::WithParamInterface<const BridgeKind*> {
protected:
    // Runs a native while the n-th call fails; 0 for none. Returns whether one failed.
    bool fails(const NativeCase& native, int n) {
        start_again();
        set_managers();
        script_situation(*native.kind, native.situation);
        log_level("d");
        FakeJni jni;
        jni.fail_nth(n);
        const NativeRun run = run_native(native, jni);
        const bool clean = !jni.exception_pending();
        EXPECT_TRUE(clean || is_failure(run.result)) << run.result;
        EXPECT_EQ(jni.forbidden_calls(), Lines{});
        EXPECT_EQ(run.left, "");

        // After the failure the native only releases what it holds.
        Lines rest = jni.journal_from_failure();
        const std::string failed = rest.empty() ? "" : rest.front();
        rest.erase(std::remove_if(rest.begin(), rest.end(), is_clean_up), rest.end());
        for (std::size_t i = 1; i < rest.size(); ++i) {
            EXPECT_TRUE(may_follow(failed, rest[i]) || reads_record_0(native, rest[i]))
                << "after " << failed << ": " << rest[i];
        }
        return !clean;
    }
};

TEST_P(FailingPlatform, NothingButCleanUpFollowsTheFailureOfAnyCall) {
    for (const NativeCase& native : tavro::test::native_cases(*GetParam())) {
        bool failed = !(native.slow && kLeavesOutSlowCases);
        for (int n = 1; failed; ++n) {
            SCOPED_TRACE(native.name + ", call " + std::to_string(n));
            ASSERT_LT(n, 1000);
            failed = fails(native, n);
        }
    }
}

// An update of a list in which the identifier of an element cannot be read.
struct ListUpdate {
    const char* name;
    const char* calls; // start of the list calls
    jint (*update)(JNIEnv* env, jobject list);
};

void PrintTo(const ListUpdate& update, std::ostream* out) { *out << update.name; }

class FailingIdentifier : public tavro::test::EveryNativeTest, public testing::WithParamInterface<ListUpdate> {};

// This is not a bad identifier: after one, services and networks leave their list locked, and streams go on.
TEST_P(FailingIdentifier, WithoutCharactersFailsTheListUpdateAndReleasesTheLock) {
    const struct {
        std::size_t before; // elements with a good identifier
        std::size_t after;
    } cases[] = {{0, 0}, {0, 1}, {1, 0}, {1, 1}};
    for (const auto& c : cases) {
        start_again();
        FakeJni jni;
        FakeObject& good = filled_object(jni);
        for (const char* field : {"svlIdSvlRecId", "tslIdTslRecId", "NwlIdNwlRecId"}) {
            good.object_fields[field] = &jni.string("1,16");
        }
        jni.fail("GetStringUTFChars(\"1,17\")");
        std::vector<FakeObject*> elements(c.before, &good);
        elements.push_back(&filled_object(jni));
        elements.insert(elements.end(), c.after, &good);
        EXPECT_EQ(GetParam().update(jni.env(), FakeJni::ref(jni.list(elements))), -22) << c.before << c.after;
        const std::string calls = GetParam().calls;
        EXPECT_EQ(jni.journal_with(calls + "lock(").size(), 1U);
        EXPECT_EQ(jni.journal_with(calls + "unlock(").size(), 1U);
        EXPECT_EQ(jni.journal_with(calls + "update_rec(").size(), c.before);
        EXPECT_EQ(jni.journal_with(calls + "get_rec(").size(), c.before);
        EXPECT_EQ(jni.journal_with("list.get(").size(), c.before + 1);
        EXPECT_EQ(jni.forbidden_calls(), Lines{});
    }
}

const ListUpdate kListUpdates[] = {
    {"Services", "x_svl_",
     [](JNIEnv* env, jobject list) { return com_velotra_tv_tavro_channellist_updateInfoList(env, nullptr, 1, list); }},
    {"TransportStreams", "x_tsl_",
     [](JNIEnv* env, jobject list) {
         return com_velotra_tv_tavro_transportstreamlist_updateInfoList(env, nullptr, 1, list);
     }},
    {"Networks", "x_nwl_",
     [](JNIEnv* env, jobject list) { return com_velotra_tv_tavro_networklist_updateInfoList(env, nullptr, 1, list); }},
};

INSTANTIATE_TEST_SUITE_P(Natives, FailingIdentifier, testing::ValuesIn(kListUpdates),
                         [](const testing::TestParamInfo<ListUpdate>& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(Lists, FailingPlatform, testing::ValuesIn(tavro::test::kBridgeKinds), tavro::test::kind_name);

} // namespace
