// Sits between the library and the platform's functions. A program that links this object file calls all of these
// functions through it, whichever platform libraries it is linked to.
#pragma once

#include "middleware/types.h"

#include <string>
#include <vector>

namespace tavro::test {

// A call of the middleware that returns a status.
struct TappedCall {
    std::string name;
    tavro::MwStatus status;
    tavro::MwdbHandle handle;   // the handle passed, or given by open and create; 0 without one
    const char* path = nullptr; // the last path passed; its text may be gone
    std::string path_text{};
};

// Records the calls of this thread while it exists, and makes some of them fail: such a call does not reach the
// platform, returns `status` and leaves its output parameters alone.
class PlatformTap {
public:
    PlatformTap();
    ~PlatformTap();
    PlatformTap(const PlatformTap&) = delete;
    PlatformTap& operator=(const PlatformTap&) = delete;

    // Makes the calls number `first` (from 1) to `last` fail.
    void fail(int first, int last, tavro::MwStatus status);

    std::vector<TappedCall> calls;

    // Used by the functions of the platform.
    bool takes(tavro::MwStatus& status);

private:
    int first_ = 0;
    int last_ = 0;
    tavro::MwStatus status_ = 0;
};

} // namespace tavro::test
