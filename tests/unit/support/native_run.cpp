#include "native_run.h"

#include "allocations.h"
#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvSatelliteList.h"
#include "channellist/NativeVltTvTransportStreamList.h"

#include <array>
#include <cstddef>
#include <map>

namespace tavro::test {
namespace {

using Sizes = std::array<std::ptrdiff_t, 4>;

const std::array<const char*, 4> kPrefixes = {"x_svl_", "x_tsl_", "x_nwl_", "x_satl_"};

// How many lists of each kind are recorded as open.
Sizes recorded() {
    Sizes sizes{};
    std::size_t kind = 0;
    for (const tavro::HandleMap* map : {&tavro::SvlKind::handles(), &tavro::TslKind::handles(),
                                        &tavro::NwlKind::handles(), &tavro::SatlKind::handles()}) {
        sizes[kind++] = std::distance(map->begin(), map->end());
    }
    return sizes;
}

// What the calls of one kind left. Deliberate: a list that could not be opened for its lock may be opened for the work
// that follows; it is then unlocked without a lock. `recorded` is by how many the recorded handles grew.
std::string left_by(const std::string& prefix, std::ptrdiff_t recorded, const std::vector<TappedCall>& calls) {
    std::map<MwdbHandle, int> locks;
    std::map<MwdbHandle, int> read_locks;
    std::ptrdiff_t handles = 0;
    std::ptrdiff_t failed_closes = 0;
    for (const TappedCall& call : calls) {
        if (call.name.rfind(prefix, 0) != 0 || (call.handle == 0 && call.status == kMwOk)) {
            continue; // a call of another kind, or one that was given no handle
        }
        const std::string operation = call.name.substr(prefix.size());
        locks[call.handle] += operation == "lock" ? 1 : operation == "unlock" ? -1 : 0;
        read_locks[call.handle] += operation == "read_lock" ? 1 : operation == "read_unlock" ? -1 : 0;
        if (operation == "open" || operation == "create") {
            handles += call.status == kMwOk ? 1 : 0;
        } else if (operation == "close" || operation == "delete") {
            handles -= call.status == kMwOk ? 1 : 0;
            failed_closes += call.status == kMwOk ? 0 : 1;
        }
    }
    std::string left;
    for (const auto* each : {&locks, &read_locks}) {
        for (const auto& [handle, number] : *each) {
            left += number <= 0 ? "" : " " + prefix + (each == &locks ? "lock" : "read_lock");
        }
    }
    if (handles < recorded || handles > recorded + failed_closes) {
        left += " " + prefix + "handles:" + std::to_string(handles - recorded);
    }
    return left;
}

} // namespace

namespace {

NativeRun run_once(const NativeCase& native, FakeJni& jni, const Failures& failures, int failing_allocation) {
    NativeRun run;
    const Sizes before = recorded();
    {
        PlatformTap tap;
        tap.fail(failures.first, failures.last, failures.status);
        {
            const FailingAllocation failing(failing_allocation);
            run.result = native.call(jni);
        }
        run.calls = std::move(tap.calls);
    }
    const Sizes after = recorded();
    for (std::size_t kind = 0; kind < kPrefixes.size(); ++kind) {
        run.left += left_by(kPrefixes[kind], after[kind] - before[kind], run.calls);
    }
    for (const std::string& entry : jni.journal()) {
        if (entry.rfind("log ", 0) == 0) {
            run.lines.push_back(entry);
        }
    }
    return run;
}

} // namespace

NativeRun run_native(const NativeCase& native, FakeJni& jni, const Failures& failures) {
    return run_once(native, jni, failures, 0);
}

NativeRun run_native(const NativeCase& native, FakeJni& jni, int failing_allocation) {
    return run_once(native, jni, {}, failing_allocation);
}

} // namespace tavro::test
