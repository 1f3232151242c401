// The operations that native_bench measures, each through the library and through the floor.
#pragma once

#include "jvm.h"

#include <functional>
#include <string>
#include <vector>

namespace tavro::bench {

// One implementation of an operation: makes `count` calls.
using Calls = std::function<void(JNIEnv* env, int count)>;

struct Operation {
    std::string name;   // "service/read_list"
    int records = 0;    // in the list; 0 if that does not matter
    int batch = 1;      // calls per local reference frame
    char log_level = 0; // the log level property; 0 means a closed gate
    Calls library;
    Calls floor;
    Calls copy{};                   // for whole lists of bytes: a plain copy from the platform
    std::function<void()> before{}; // restores the lists before each batch
};

// Returns all operations, and creates the lists that they use on the memory platform. `most` is the size of the largest
// list.
std::vector<Operation> operations(Jvm& jvm, int most);

} // namespace tavro::bench
