// Counts the instructions of single calls under valgrind --tool=callgrind; see counts.sh.
#pragma once

#include <functional>
#include <string>

namespace tavro::counts {

// Marks for its scope whether the library or a fake is running. Only the library's allocations are counted.
class Running {
public:
    enum class What { kLibrary, kFake };
    explicit Running(What what);
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    bool before_;
};

// Calls `operation` twice and counts the second call, because the first one binds functions and opens lists. Prints
// "NAME allocations NUMBER" and makes callgrind write a dump with the name in its trigger.
void count(const std::string& name, const std::function<void()>& operation);

} // namespace tavro::counts
