// Counts single calls of the library under valgrind --tool=callgrind; see counts.sh.
#pragma once

#include <functional>
#include <string>

namespace tavro::counts {

// Says, as long as it lives, whether the library runs, or a fake that it calls. The library's allocations are counted.
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

// Calls `operation` twice and counts the second call: prints "NAME allocations NUMBER", and has callgrind dump what the
// call cost, with the name in the dump's trigger. The first call binds functions and opens lists.
void count(const std::string& name, const std::function<void()>& operation);

} // namespace tavro::counts
