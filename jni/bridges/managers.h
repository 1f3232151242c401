// The process-wide objects of the library.
#pragma once

#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvSatelliteList.h"
#include "channellist/NativeVltTvTransportStreamList.h"
#include "jni/bridges/list_lock.h"

#include <jni.h>

#include <cstdint>

// The Java virtual machine; null until the library has been loaded successfully.
extern JavaVM* javaVM;

// The managers of the list kinds; null until the Java class's nativeSetup has run, which every other
// native of the class counts on.
extern NativeVltTvChannelList* chList;
extern NativeVltTvTransportStreamList* tsList;
extern NativeVltTvNetworkList* nwList;
extern NativeVltTvSatelliteList* satList;

// The write lock of a service list.
using SvlWriteLock =
    tavro::ListLock<NativeVltTvChannelList, &NativeVltTvChannelList::lockSvl, &NativeVltTvChannelList::unLockSvl>;

namespace tavro {

// Puts a new manager in place of the one in `slot`, which is left behind on purpose: open handles are
// kept by the process-wide maps, which destroying it would close. Returns what nativeSetup answers: the
// address of the slot, cut to an int. It is never 0 and carries no status.
template <class Manager>
jint set_up(Manager*& slot) {
    slot = new Manager();
    return static_cast<jint>(reinterpret_cast<std::uintptr_t>(&slot));
}

} // namespace tavro
