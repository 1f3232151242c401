// Every native on each of its paths over the stored lists, while its first, second, third... middleware call fails: no
// other record changes, no record is partial, and the native works afterwards.

#include "bridge_test_support.h"
#include "kinds.h"
#include "native_run.h"
#include "workspace.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <unistd.h>
#include <vector>

using namespace tavro;
using tavro::test::BridgeKind;
using tavro::test::Failures;
using tavro::test::FakeJni;
using tavro::test::is_failure;
using tavro::test::NativeCase;
using tavro::test::NativeRun;
using tavro::test::Situation;

namespace {

// A record by kind, list and record id; a list itself has the record id -1.
using Place = std::tuple<std::string, int, int>;
using Store = std::map<Place, std::string>;

constexpr std::uint16_t kLists[] = {1, 2};

// Builds whose tests run slowly try every fourth case.
#ifdef TAVRO_SLOW_BUILD
constexpr int kEvery = 4;
#else
constexpr int kEvery = 1;
#endif

// The lists that a kind has when a case begins.
template <class Kind>
struct StoredKind {
    static typename Kind::Record record(std::uint16_t id, unsigned char fill) {
        auto made = record_of<Kind>(id, fill);
        // Records refer to record 17 of the lists with the id 1.
        if constexpr (std::is_same_v<Kind, Services>) {
            made.t_header.ui2_tsl_id = made.t_header.ui2_nwl_id = made.t_header.ui2_satl_id = 1;
            made.t_header.ui2_tsl_rec_id = made.t_header.ui2_nwl_rec_id = made.t_header.ui2_satl_rec_id = 17;
        } else if constexpr (std::is_same_v<Kind, TransportStreams>) {
            made.ui2_satl_id = 1;
            made.ui2_satl_rec_id = 17;
        }
        return made;
    }

    static MwdbHandle open(std::uint16_t list) {
        MwdbHandle handle = 0;
        return Kind::open(list, 0, 0, &handle) == kMwOk ? handle : 0;
    }

    static void remove(std::uint16_t list) {
        if (const MwdbHandle handle = open(list)) {
            EXPECT_EQ(Kind::remove(handle), kMwOk);
        }
    }

    // Makes a list anew.
    static void fill(std::uint16_t list, const std::vector<std::uint16_t>& ids) {
        remove(list);
        const MwdbHandle handle = created<Kind>(list);
        for (const std::uint16_t id : ids) {
            auto made = record(id, static_cast<unsigned char>(list * 16 + id));
            EXPECT_EQ(Kind::add(handle, &made), kMwOk);
        }
        EXPECT_EQ(Kind::close(handle), kMwOk);
    }

    static void fill_both(const Situation& situation) {
        fill(1, situation.empty ? std::vector<std::uint16_t>{} : std::vector<std::uint16_t>{17, 18});
        fill(2, {17, 19});
        if (situation.missing) {
            remove(1);
        }
    }

    static void read(Store& store) {
        for (const std::uint16_t list : kLists) {
            const MwdbHandle handle = open(list);
            if (handle == 0) {
                continue;
            }
            store[{Kind::kName, list, -1}] = "";
            std::uint16_t number = 0;
            std::int32_t version = 0;
            EXPECT_EQ(Kind::count(handle, &number, &version), kMwOk);
            for (std::uint16_t index = 0; index < number; ++index) {
                typename Kind::Record record{};
                EXPECT_EQ(Kind::get_at(handle, index, &record, &version), kMwOk);
                store[{Kind::kName, list, Kind::id_of(record)}] = bytes_of(record);
            }
            EXPECT_EQ(Kind::close(handle), kMwOk);
        }
    }

    // Closes the lists that are recorded as open, which also releases their locks.
    static void close(HandleMap& handles) {
        for (const auto& entry : handles) {
            Kind::close(entry.second);
        }
        handles.clear();
    }

    static void record_open(HandleMap& handles) {
        for (const std::uint16_t list : kLists) {
            handles.insert(list, open(list));
        }
    }

    static void store_file(const char* path) {
        const MwdbHandle handle = open(2);
        EXPECT_EQ(Kind::store(handle, path, 2), kMwOk);
        EXPECT_EQ(Kind::close(handle), kMwOk);
    }
};

// The same by the number of the kind.
struct Stored {
    void (*fill_both)(const Situation&);
    void (*read)(Store&);
    void (*close)(HandleMap&);
    void (*record_open)(HandleMap&);
    void (*store_file)(const char*);
};
template <class Kind>
constexpr Stored kStored = {StoredKind<Kind>::fill_both, StoredKind<Kind>::read, StoredKind<Kind>::close,
                            StoredKind<Kind>::record_open, StoredKind<Kind>::store_file};
const std::array<Stored, 4> kAllStored = {kStored<Services>, kStored<TransportStreams>, kStored<Networks>,
                                          kStored<Satellites>};

class FailingNatives : public Workspace, public testing::WithParamInterface<const BridgeKind*> {
public:
    // The test makes its lists anew some hundred times. In memory that takes a tenth of the time.
    static void SetUpTestSuite() {
        if (::access("/dev/shm", W_OK) == 0) {
            ::setenv("TMPDIR", "/dev/shm", 1);
        }
    }

protected:
    FailingNatives() {
        chList = &channels_;
        tsList = &streams_;
        nwList = &networks_;
        satList = &satellites_;
    }
    ~FailingNatives() override {
        close_lists();
        chList = nullptr;
        tsList = nullptr;
        nwList = nullptr;
        satList = nullptr;
    }

    static Store stored() {
        Store store;
        for (const Stored& kind : kAllStored) {
            kind.read(store);
        }
        return store;
    }

    // Makes the store and the files that a case finds, and opens its lists.
    void set_up(const NativeCase& native) {
        close_lists();
        channels_.setPath("");
        chList = &channels_;
        tsList = &streams_;
        nwList = &networks_;
        satList = &satellites_;
        const std::size_t tested = native.kind->number - 1;
        if (stored() != fresh_ || situation_of(native) != filled_for_) {
            for (std::size_t kind = 0; kind < kAllStored.size(); ++kind) {
                kAllStored[kind].fill_both(kind == tested ? native.situation : Situation{});
            }
            fresh_ = stored();
            filled_for_ = situation_of(native);
        }
        if (native.name.rfind("open with path", 0) == 0) {
            make_files(native);
        }
        if (native.situation.open) {
            kAllStored[tested].record_open(native.kind->handles());
        }
    }

    NativeRun run(const NativeCase& native, const Failures& failures = {}) {
        FakeJni jni;
        return run_native(native, jni, failures);
    }

    void close_lists() {
        for (const BridgeKind* kind : tavro::test::kBridgeKinds) {
            kAllStored[kind->number - 1].close(kind->handles());
        }
    }

private:
    static std::tuple<std::uint32_t, bool, bool> situation_of(const NativeCase& native) {
        return {native.kind->number, native.situation.missing, native.situation.empty};
    }

    void make_files(const NativeCase& native) const {
        const Stored& kind = kAllStored[native.kind->number - 1];
        for (const char* path : {"/data/x", "/data/scan_cable.bin", "/data/scan_terrestrial.bin"}) {
            std::filesystem::remove(home() + path);
            if (native.situation.file == kMwOk) {
                kind.store_file(path);
            } else if (native.situation.file == kMwNotAListFile) {
                std::filesystem::create_directories(home() + "/data");
                write_file(home() + path, "not a list file");
            }
        }
        for (const char* path : {"/cache/scan_cable.bin", "/cache/scan_terrestrial.bin"}) {
            std::filesystem::remove(home() + path);
            if (native.situation.cached) {
                kind.store_file(path);
            }
        }
    }

    NativeVltTvChannelList channels_;
    NativeVltTvTransportStreamList streams_;
    NativeVltTvNetworkList networks_;
    NativeVltTvSatelliteList satellites_;
    Store fresh_;
    std::optional<std::tuple<std::uint32_t, bool, bool>> filled_for_;
};

std::string text_of(const Place& place) {
    const auto& [kind, list, record] = place;
    return kind + " " + std::to_string(list) + "," + std::to_string(record);
}

// Checks that each record is as it was before, or as the native leaves it when nothing fails.
void expect_whole(const Store& before, const Store& after, const Store& good, const std::string& what) {
    std::set<Place> places;
    for (const Store* store : {&before, &after, &good}) {
        for (const auto& entry : *store) {
            places.insert(entry.first);
        }
    }
    const auto content = [](const Store& store, const Place& place) {
        const auto found = store.find(place);
        return found == store.end() ? std::string("missing") : found->second;
    };
    for (const Place& place : places) {
        const std::string found = content(after, place);
        EXPECT_TRUE(found == content(before, place) || found == content(good, place)) << what << ": " << text_of(place);
    }
}

// The store after list 1 was loaded from the file that list 2 was stored to.
Store with_file_loaded(const Store& before, const char* kind) {
    Store loaded;
    for (const auto& [place, record] : before) {
        const auto& [its_kind, list, id] = place;
        if (its_kind != kind || list != 1 || id == -1) {
            loaded[place] = record;
        }
        if (its_kind == kind && list == 2) {
            loaded[{its_kind, 1, id}] = record;
        }
    }
    return loaded;
}

TEST_P(FailingNatives, ChangeNoOtherRecordAndWorkAfterwards) {
    int number = 0;
    for (const NativeCase& native : tavro::test::native_cases(*GetParam())) {
        if (native.slow || native.name == "set up" || ++number % kEvery != 0) {
            continue; // the same calls of the middleware, or none
        }
        set_up(native);
        const Store before = stored();
        const NativeRun good = run(native);
        close_lists();
        const Store after_good = stored();
        EXPECT_EQ(good.left, "") << native.name;
        for (int n = 1; n <= static_cast<int>(good.calls.size()); ++n) {
            for (const Failures& failures :
                 {Failures{n, n, -5}, Failures{n, n, kMwNotAListFile}, Failures{n, 1 << 20, -5}}) {
                const std::string what = native.name + ", call " + std::to_string(n) + " " +
                                         good.calls[static_cast<std::size_t>(n) - 1].name + ", " +
                                         std::to_string(failures.status) + (failures.last == n ? "" : " from then on");
                set_up(native);
                const NativeRun failed = run(native, failures);
                EXPECT_EQ(failed.left, "") << what;
                // Deliberate: an open service list whose records cannot be counted is loaded as if it were empty.
                const bool loads = native.kind->is_services() && native.name == "open with path, open list";
                expect_whole(before, stored(), loads ? with_file_loaded(before, "svl") : after_good, what);
                if (is_failure(failed.result)) {
                    if (native.name.rfind("open with path", 0) != 0) {
                        EXPECT_EQ(run(native).result, good.result) << what;
                    }
                    expect_whole(before, stored(), after_good, what + ", again");
                } else {
                    EXPECT_FALSE(is_failure(good.result)) << what;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Lists, FailingNatives, testing::ValuesIn(tavro::test::kBridgeKinds), tavro::test::kind_name);

} // namespace
