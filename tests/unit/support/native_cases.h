// Every native on each of its paths, for tests that make one call after the other fail.
#pragma once

#include "bridge_kinds.h"
#include "fake_jni.h"
#include "middleware/types.h"

#include <functional>
#include <string>
#include <vector>

namespace tavro::test {

// What the native finds. Lists 1 and 2 have the records 17 and 18, and 17 and 19.
struct Situation {
    bool open = false;        // lists 1 and 2 are open
    bool missing = false;     // list 1 does not exist
    bool empty = false;       // list 1 has no records
    bool taken = false;       // list 1 has a record with the id that is added
    bool cached = false;      // the scan cache has a list file
    tavro::MwStatus file = 0; // what loading the file returns
};

struct NativeCase {
    std::string name;
    const BridgeKind* kind;
    const void* native; // the function that is registered
    Situation situation;
    // Makes the Java values, calls the native on them and returns its result as text.
    std::function<std::string(FakeJni&)> call;
    // Whether the case makes very many JNI calls. Builds whose tests run slowly leave it out.
    bool slow = false;
};

// The cases of one kind.
std::vector<NativeCase> native_cases(const BridgeKind& kind);

// Whether a result, as text, reports a failure.
bool is_failure(const std::string& result);

// A Java object that serves as a record of any kind and has keys and fields of every type. It names record 17 of list
// 1; `broadcast_type` is its value of that key.
FakeObject& filled_object(FakeJni& jni, int broadcast_type = 2);

} // namespace tavro::test
