// Random sequences of all natives over a platform that fails at random: middleware calls return any status, and JNI
// calls fail. Handles are used only while they are open, locks are released, failures are reported, and no JNI call is
// made while an exception is pending.
#include "bridge_kinds.h"
#include "fuzz.h"
#include "fuzz_jni.h"

#include <map>
#include <set>
#include <string>
#include <vector>

using namespace tavro;
using namespace tavro::fuzz;
using tavro::test::BridgeKind;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

constexpr int kMostCalls = 12;

const BridgeKind* const kKinds[] = {&test::service_kind(), &test::transport_stream_kind(), &test::network_kind(),
                                    &test::satellite_kind()};

// The middleware calls after their prefix, such as "x_svl_". The natives make no others.
const char* const kCalls[] = {"open",
                              "create",
                              "close",
                              "delete",
                              "clean",
                              "copy_date",
                              "fs_sync",
                              "fs_store",
                              "lock",
                              "unlock",
                              "read_lock",
                              "read_unlock",
                              "qry_rec_id",
                              "add_rec",
                              "update_rec",
                              "del_rec",
                              "get_rec",
                              "get_rec_by_rec_idx",
                              "get_num_recs",
                              "get_num_rec",
                              "get_rec_by_brdcst_type",
                              "get_num_rec_by_brdcst_type",
                              "get_rec_by_ts",
                              "get_num_rec_by_ts",
                              "get_rec_by_sat",
                              "get_num_rec_by_sat"};

// Java objects whose fields are taken from the input.
class FuzzedJni : public FakeJni {
public:
    explicit FuzzedJni(Input& input) : input_(input) {}

    // An identifier, or another text that no native refuses with an exception.
    std::string text() {
        static const char* const kTexts[] = {"1,17", "2,3", "300,1", "1,65535", "65537,0", "", "17", "a name"};
        return kTexts[input_.choice(std::size(kTexts))];
    }

protected:
    jint int_value(FakeObject&, const LookUp&) override { return input_.flag() ? input_.byte() % 16 : input_.number(); }
    FakeObject* object_value(FakeObject&, const LookUp& field) override {
        if (input_.choice(8) == 0) {
            return nullptr;
        }
        if (field.signature == "[I") {
            return &int_array(std::vector<jint>(input_.choice(5), 7));
        }
        if (field.signature.front() == '[') {
            FakeObject& array = object("array");
            array.elements = {&object("entry"), nullptr};
            return &array;
        }
        return &string(text());
    }

private:
    Input& input_;
};

class Run {
public:
    explicit Run(Input& input) : input_(input), logs_(input.flag()), jni_(input) {
        testing::GTEST_FLAG(break_on_failure) = true;
        chList = &channels_;
        tsList = &streams_;
        nwList = &networks_;
        satList = &satellites_;
    }
    ~Run() {
        for (const BridgeKind* kind : kKinds) {
            kind->handles().clear();
        }
        script::reset();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void calls() {
        for (int call = 0; call < kMostCalls && !input_.at_end() && !jni_.exception_pending(); ++call) {
            write_script();
            if (input_.choice(16) == 0) {
                jni_.fail_nth(1 + input_.byte() % 64);
            }
            make_call(static_cast<int>(input_.choice(4)));
            require(jni_.forbidden_calls().empty(), "no JNI call is made while an exception is pending");
            read_journal();
        }
    }

private:
    // Sets what every middleware call returns until the next native.
    void write_script() {
        static const MwStatus kStatuses[] = {kMwEmpty, kMwNoFile, kMwRecordExists, kMwNotAListFile, -22, 1};
        script::reset();
        if (logs_) {
            script::set_property("vendor.vlt.broadcast.log.level", "d");
        }
        statuses_.clear();
        std::map<std::string, MwStatus> failing; // up to three, so that a few bytes of input decide
        for (std::uint32_t i = input_.choice(4); i > 0; --i) {
            const char* const call = kCalls[input_.choice(std::size(kCalls))];
            failing[call] = kStatuses[input_.choice(std::size(kStatuses))];
        }
        const std::uint32_t highest = input_.choice(3) == 0 ? kMwNoRecordId : input_.byte();
        const std::uint32_t count = input_.choice(4);
        std::vector<std::byte> record(32, static_cast<std::byte>(input_.byte()));
        for (const BridgeKind* kind : kKinds) {
            for (const char* call : kCalls) {
                const std::string name = kind->calls + std::string(call);
                const bool counts = name.find("num_rec") != std::string::npos;
                const bool reads = name.find("get_rec") != std::string::npos;
                const auto found = failing.find(call);
                const MwStatus status = found == failing.end() ? kMwOk : found->second;
                script::Answer answer;
                answer.status = status;
                if (counts) {
                    answer.value = count;
                } else if (name.find("qry_rec_id") != std::string::npos) {
                    answer.value = highest;
                }
                if (reads) {
                    answer.record = record;
                }
                script::always(name, answer);
                statuses_[name] = status;
            }
        }
    }

    int list() {
        static const int kLists[] = {1, 2, 300, 1, 0, 65537, -65535};
        return kLists[input_.choice(std::size(kLists))];
    }
    jstring text() { return input_.choice(10) == 0 ? nullptr : FakeJni::string_ref(jni_.string(jni_.text())); }
    jobject object() {
        if (input_.choice(10) == 0) {
            return nullptr;
        }
        FakeObject& made = jni_.object("object");
        made.has_all_keys = input_.flag();
        return FakeJni::ref(made);
    }
    jobject list_of(bool keys) {
        if (keys && input_.flag()) {
            return nullptr; // all keys
        }
        static const char* const kKeys[] = {"NetworkName", "Name", "RecId", "NwlIdNwlRecId", "AntennaType", "none"};
        std::vector<FakeObject*> elements;
        for (std::uint32_t i = input_.choice(4); i > 0; --i) {
            elements.push_back(keys ? &jni_.string(kKeys[input_.choice(std::size(kKeys))])
                                    : reinterpret_cast<FakeObject*>(object()));
        }
        return FakeJni::ref(jni_.list(elements));
    }

    // A native that only passes a call on: succeeds if and only if the call is made and nothing but locks fails.
    void require_passed_on(jint result, const char* call) {
        bool made = false;
        bool failed = false;
        for (const std::string& line : script::lines()) {
            const std::string name = line.substr(0, line.find('('));
            const auto status = statuses_.find(name);
            if (status != statuses_.end() && name.find("lock") == std::string::npos) {
                failed = failed || status->second != kMwOk;
                made = made || name.find(call) != std::string::npos;
            }
        }
        if ((result == kDone) != (made && !failed)) {
            fail(std::string("a native returns 0 if ") + call + " and what comes before it succeed");
        }
        require(result == kDone || result == kFailed || result == -1, "a failure is -22 or -1");
    }

    void make_call(int number) {
        const BridgeKind& kind = *kKinds[number];
        const test::BridgeNatives& natives = kind.natives;
        JNIEnv* const env = jni_.env();
        const int first = list();
        left_locked_ = false;
        switch (input_.choice(18)) {
        case 0:
            natives.open(env, nullptr, first);
            break;
        case 1:
            natives.open_path(env, nullptr, first, text());
            break;
        case 2:
            return require_passed_on(natives.close(env, nullptr, first), "_close");
        case 3:
            return require_passed_on(natives.clean(env, nullptr, first), "_clean");
        case 4:
            return require_passed_on(natives.remove_list(env, nullptr, first), "_delete");
        case 5:
            return require_passed_on(natives.store(env, nullptr, first, text()), "_fs_store");
        case 6:
            return require_passed_on(natives.copy(env, nullptr, first, list()), "_copy_date");
        case 7:
            return require_passed_on(natives.remove(env, nullptr, text()), "_del_rec");
        case 8:
            return require_passed_on(natives.remove_by_record_id(env, nullptr, first, text()), "_del_rec");
        case 9:
            natives.add(env, nullptr, first, object());
            break;
        case 10:
            natives.add_by_record_id(env, nullptr, first, text());
            break;
        case 11:
            natives.update(env, nullptr, first, object());
            break;
        case 12:
            natives.update_by_record_id(env, nullptr, first, text());
            break;
        case 13:
            // Deliberate: after a bad identifier services and networks stay locked.
            left_locked_ = number == 0 || number == 2;
            natives.update_list(env, nullptr, first, list_of(false));
            break;
        default:
            read(number, first);
            break;
        }
    }

    void read(int number, int list) {
        JNIEnv* const env = jni_.env();
        const std::uint32_t how = input_.choice(5);
        const jint id = input_.byte();
        switch (number) {
        case 0:
            how == 0   ? com_velotra_tv_tavro_channellist_getSVLInfo(env, nullptr, text())
            : how == 1 ? com_velotra_tv_tavro_channellist_getSVLInfoList(env, nullptr, list)
            : how == 2 ? com_velotra_tv_tavro_channellist_getInfoListByTransportStream(env, nullptr, list, id)
            : how == 3 ? com_velotra_tv_tavro_channellist_getInfoListByTransportStreamRecord(env, nullptr, list, id)
                       : com_velotra_tv_tavro_channellist_getInfoListByNetwork(env, nullptr, list, id);
            break;
        case 1:
            how < 2   ? com_velotra_tv_tavro_transportstreamlist_getInfo(env, nullptr, text())
            : how < 4 ? com_velotra_tv_tavro_transportstreamlist_getInfoList(env, nullptr, list)
                      : com_velotra_tv_tavro_transportstreamlist_getInfoListBySatellite(env, nullptr, list, id);
            break;
        case 2:
            how < 2 ? com_velotra_tv_tavro_networklist_getInfo(env, nullptr, text(), list_of(true))
                    : com_velotra_tv_tavro_networklist_getInfoList(env, nullptr, list, list_of(true));
            break;
        default:
            how < 2 ? com_velotra_tv_tavro_satellitelist_getInfo(env, nullptr, text(), list_of(true))
                    : com_velotra_tv_tavro_satellitelist_getInfoList(env, nullptr, list, list_of(true));
            break;
        }
    }

    // Checks handles and locks in the middleware calls of the last native.
    void read_journal() {
        std::map<std::string, int> locks; // by the unlock call that is missing
        for (const std::string& line : script::lines()) {
            const std::size_t bracket = line.find('(');
            const std::string name = line.substr(0, bracket);
            const auto status = statuses_.find(name);
            if (status == statuses_.end()) {
                continue; // a log line or a call of another library
            }
            const std::string kind = name.substr(0, name.find('_', 2) + 1);
            const std::string call = name.substr(kind.size());
            const std::string arguments = line.substr(bracket + 1);
            if (call == "open" || call == "create") {
                if (status->second == kMwOk) {
                    const std::size_t at = call == "open" ? 0 : arguments.find(", ") + 2;
                    issued_.insert(kind + std::to_string(std::stoi(arguments.substr(at))));
                }
                continue;
            }
            const std::uint32_t handle = static_cast<std::uint32_t>(std::stoul(arguments, nullptr, 16));
            const std::string list = kind + std::to_string(handle & 0xFFFFU);
            // Deliberate: a list of services that cannot be opened is locked, unlocked and closed under handle 0.
            if (handle == 0 ? call.find("lock") == std::string::npos && name != "x_svl_close"
                            : issued_.count(list) == 0) {
                fail("a handle is used only while it is open: " + line);
            }
            const bool read = call.rfind("read_", 0) == 0;
            if (call == "lock" || call == "read_lock") {
                ++locks[list + (read ? " read" : "")];
            } else if (call == "unlock" || call == "read_unlock") {
                --locks[list + (read ? " read" : "")];
            }
        }
        for (const auto& lock : locks) {
            require(lock.second == 0 || (lock.second == 1 && left_locked_), "each lock is released by its native");
        }
        for (const BridgeKind* kind : kKinds) {
            for (const auto& entry : kind->handles()) {
                require(issued_.count(kind->calls + std::to_string(entry.first)) != 0, "an open list has a handle");
                require(entry.second == (kind->number << 16U | entry.first), "an open list has its own handle");
            }
        }
    }

    Input& input_;
    bool logs_;
    FuzzedJni jni_;
    NativeVltTvChannelList channels_;
    NativeVltTvTransportStreamList streams_;
    NativeVltTvNetworkList networks_;
    NativeVltTvSatelliteList satellites_;
    std::map<std::string, MwStatus> statuses_; // of the middleware calls, by name
    std::set<std::string> issued_;             // lists that were opened, such as "x_svl_3"
    bool left_locked_ = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    Run(input).calls();
    return 0;
}
