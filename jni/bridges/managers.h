// The process-wide objects of the library.
#pragma once

#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvSatelliteList.h"
#include "channellist/NativeVltTvTransportStreamList.h"

#include <jni.h>

#include <cstdint>

// The Java virtual machine; null until the library has been loaded successfully.
extern JavaVM* javaVM;

// The managers of the list kinds; null until the Java class's nativeSetup has run. The other natives of the class do
// not check that.
extern NativeVltTvChannelList* chList;
extern NativeVltTvTransportStreamList* tsList;
extern NativeVltTvNetworkList* nwList;
extern NativeVltTvSatelliteList* satList;

namespace tavro {

// Puts a new manager into `slot` and returns nativeSetup's result: the slot's address cut to an int, which is never 0
// and no status. Deliberate: the manager before it is not destroyed, since that would close the handles in the
// process-wide maps.
template <class Manager>
jint set_up(Manager*& slot) {
    slot = new Manager();
    return static_cast<jint>(reinterpret_cast<std::uintptr_t>(&slot));
}

} // namespace tavro
