// The natives of the list classes: each is replaced by a function that traces the call and forwards it.
#pragma once

#include <string>

namespace tavro::trace {

// A native method that is being bound.
struct NativeMethod {
    std::string cls;       // signature of its class: Lcom/velotra/tv/tavro/services/channellist/VltTvChannelList;
    std::string name;      // native_open
    std::string signature; // (I)I
};

// Returns the function that takes the place of `function`, or `function` itself: for a native of another class, and if
// there are more natives than can be traced. The same method and function have the same replacement.
void* replacement_of(const NativeMethod& method, void* function);

} // namespace tavro::trace
