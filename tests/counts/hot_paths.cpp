// Runs and counts each hot path of the library; see counts.sh.
#include "counted_jni.h"
#include "counting.h"
#include "entries.h"
#include "platform.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using tavro::counts::CountedJni;
using tavro::counts::Running;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

constexpr std::size_t kElements = 100; // of list updates
constexpr int kDvb = 2;
constexpr int kSatellite = 3;
constexpr std::size_t kServiceSize = 552;

#define PACKAGE "com/velotra/tv/tavro/services/channellist/"

// Counts an operation. Exits if it returns false, because a failing path costs less.
template <class Operation>
void count(CountedJni& jni, const std::string& name, Operation operation) {
    bool done = true;
    tavro::counts::count(name, [&] {
        jni.clear_journal();
        done = operation() && done;
    });
    if (!done) {
        std::fprintf(stderr, "hot path failed: %s\n", name.c_str());
        std::exit(1);
    }
}

std::size_t size_of(jbyteArray array) { return array == nullptr ? 0 : FakeJni::from(array).bytes.size(); }

// The operations that all list classes have.
class ListClass {
public:
    ListClass(CountedJni& jni, const char* cls, const std::string& info)
        : jni_(jni), cls_(cls), info_("L" PACKAGE + info + ";") {
        jni_.call<jint>(cls_, "nativeSetup", "()I");
    }

    jstring identifier() { return FakeJni::string_ref(jni_.string("1,17")); }
    jobject keys(const char* key) { return FakeJni::ref(jni_.list({&jni_.string(key)})); }
    jobject list_of(FakeObject& element) {
        return FakeJni::ref(jni_.list(std::vector<FakeObject*>(kElements, &element)));
    }

    bool add(FakeObject& info) {
        const std::string signature = "(I" + info_ + ")Ljava/lang/String;";
        jstring added = jni_.call<jstring>(cls_, "nativeAdd", signature.c_str(), jint{1}, FakeJni::ref(info));
        return !FakeJni::from(added).text.empty();
    }
    bool update(FakeObject& info) {
        const std::string signature = "(I" + info_ + ")I";
        return jni_.call<jint>(cls_, "native_updateInfo", signature.c_str(), jint{1}, FakeJni::ref(info)) == 0;
    }
    bool update_all(jobject infos) {
        return jni_.call<jint>(cls_, "native_updateInfoList", "(ILjava/util/List;)I", jint{1}, infos) == 0;
    }

private:
    CountedJni& jni_;
    const char* cls_;
    std::string info_;
};

void count_services(CountedJni& jni) {
    constexpr char kClass[] = "VltTvChannelList";
    ListClass lists(jni, kClass, "VltTvChannelInfoBase");
    jstring identifier = lists.identifier();
    count(jni, "read_service", [&] {
        return size_of(jni.call<jbyteArray>(kClass, "native_getSvlInfo", "(Ljava/lang/String;)[B", identifier)) ==
               kServiceSize;
    });
    count(jni, "read_1000_services", [&] {
        return size_of(jni.call<jbyteArray>(kClass, "native_getSvlInfoList", "(I)[B", jint{1})) ==
               kServiceSize * tavro::counts::kRecords;
    });
    FakeObject& one_key = jni.object("service");
    one_key.keys = {"ServiceId"};
    count(jni, "add_service_1_key", [&] { return lists.add(one_key); });
    FakeObject& service = jni.with_all_keys("service");
    service.int_fields["broadcastType"] = kDvb;
    count(jni, "add_service_all_keys", [&] { return lists.add(service); });
    jobject services = lists.list_of(service);
    count(jni, "update_100_services_all_keys", [&] { return lists.update_all(services); });
}

void count_streams(CountedJni& jni) {
    ListClass lists(jni, "VltTvTransportStreamList", "VltTvTransportStreamInfoBase");
    FakeObject& stream = jni.with_all_keys("stream");
    stream.int_fields["broadcastMedium"] = kSatellite;
    count(jni, "add_stream_all_keys", [&] { return lists.add(stream); });
    jobject streams = lists.list_of(stream);
    count(jni, "update_100_streams_all_keys", [&] { return lists.update_all(streams); });
}

void count_networks(CountedJni& jni) {
    constexpr char kClass[] = "VltTvNetworkList";
    constexpr char kRead[] = "(Ljava/lang/String;Ljava/util/List;)L" PACKAGE "VltTvNetworkInfo;";
    ListClass lists(jni, kClass, "VltTvNetworkInfoBase");
    jstring identifier = lists.identifier();
    jobject all = nullptr;
    count(jni, "read_network_all_keys",
          [&] { return jni.call<jobject>(kClass, "native_getInfo", kRead, identifier, all) != nullptr; });
    jobject one_key = lists.keys("NwlNetworkId");
    count(jni, "read_network_1_key",
          [&] { return jni.call<jobject>(kClass, "native_getInfo", kRead, identifier, one_key) != nullptr; });
    FakeObject& network = jni.with_all_keys("network");
    count(jni, "add_network_all_keys", [&] { return lists.add(network); });
    jobject networks = lists.list_of(network);
    count(jni, "update_100_networks_all_keys", [&] { return lists.update_all(networks); });
}

void count_satellites(CountedJni& jni) {
    constexpr char kClass[] = "VltTvSatelliteList";
    constexpr char kRead[] = "(Ljava/lang/String;Ljava/util/List;)L" PACKAGE "VltTvSatelliteInfo;";
    ListClass lists(jni, kClass, "VltTvSatelliteInfoBase");
    jstring identifier = lists.identifier();
    jobject all = nullptr;
    count(jni, "read_satellite_all_keys",
          [&] { return jni.call<jobject>(kClass, "nativeGetInfo", kRead, identifier, all) != nullptr; });
    jobject one_key = lists.keys("DiseqcPolar");
    count(jni, "read_satellite_1_key",
          [&] { return jni.call<jobject>(kClass, "nativeGetInfo", kRead, identifier, one_key) != nullptr; });
    FakeObject& satellite = jni.with_all_keys("satellite");
    count(jni, "add_satellite_all_keys", [&] { return lists.add(satellite); });
    jobject satellites = lists.list_of(satellite);
    count(jni, "update_100_satellites_all_keys",
          [&] { return jni.call<jint>(kClass, "nativeUpdateInfoList", "(Ljava/util/List;)I", satellites) == 0; });
}

} // namespace

int main() {
    CountedJni jni;
    const std::string identifier = "3,1207";
    int list_id = 0;
    int record_id = 0;
    count(jni, "log_gate_closed", [] {
        const Running library(Running::What::kLibrary);
        return tavro_log_gate() == 0;
    });
    count(jni, "parse_record_id", [&] {
        const Running library(Running::What::kLibrary);
        return tavro_parse_record_id(identifier, list_id, record_id) && record_id == 1207;
    });
    count_services(jni);
    count_streams(jni);
    count_networks(jni);
    count_satellites(jni);
    return 0;
}
