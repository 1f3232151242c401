// What native_bench measures: operations, each through the library and through the floor.
#pragma once

#include "jvm.h"

#include <functional>
#include <string>
#include <vector>

namespace tavro::bench {

// One way of doing an operation: `count` calls in a row.
using Calls = std::function<void(JNIEnv* env, int count)>;

struct Operation {
    std::string name;   // "service/read_list"
    int records = 0;    // of the list, or 0 where that does not matter
    int batch = 1;      // calls in one local frame
    char log_level = 0; // the log level property; 0 is a closed gate
    Calls library;
    Calls floor;
    Calls copy{};                   // a plain copy of zeroed records out of the platform, for whole lists of bytes
    std::function<void()> before{}; // brings the lists back to how they were
};

// All of them; the lists that they use are made on the memory platform. `most` is the size of the largest list.
std::vector<Operation> operations(Jvm& jvm, int most);

} // namespace tavro::bench
