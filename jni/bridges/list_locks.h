// Locks of a list for the length of a scope.
#pragma once

#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvSatelliteList.h"
#include "channellist/NativeVltTvTransportStreamList.h"

namespace tavro {

// Takes a lock of the list `list_id` through its manager and releases it at the end of the scope. Lock errors are
// ignored; the guarded work runs regardless.
template <class Manager, int (Manager::*Lock)(int), int (Manager::*Unlock)(int)>
class ListLock {
public:
    ListLock(Manager& manager, int list_id) : manager_(manager), list_id_(list_id) { (manager_.*Lock)(list_id_); }
    ~ListLock() {
        if (!left_locked_) {
            (manager_.*Unlock)(list_id_);
        }
    }
    ListLock(const ListLock&) = delete;
    ListLock& operator=(const ListLock&) = delete;

    // Leaves the list locked after the scope.
    void leave_locked() { left_locked_ = true; }

private:
    Manager& manager_;
    int list_id_;
    bool left_locked_ = false;
};

// The locks of each kind of list.
template <class Manager>
struct ListLocks;

template <>
struct ListLocks<NativeVltTvChannelList> {
    using Manager = NativeVltTvChannelList;
    using Write = ListLock<Manager, &Manager::lockSvl, &Manager::unLockSvl>;
};

template <>
struct ListLocks<NativeVltTvTransportStreamList> {
    using Manager = NativeVltTvTransportStreamList;
    using Write = ListLock<Manager, &Manager::lockTsl, &Manager::unLockTsl>;
    using Read = ListLock<Manager, &Manager::readLockTsl, &Manager::readUnLockTsl>;
};

template <>
struct ListLocks<NativeVltTvNetworkList> {
    using Manager = NativeVltTvNetworkList;
    using Write = ListLock<Manager, &Manager::lockNwl, &Manager::unLockNwl>;
    using Read = ListLock<Manager, &Manager::readLockNwl, &Manager::readUnLockNwl>;
};

template <>
struct ListLocks<NativeVltTvSatelliteList> {
    using Manager = NativeVltTvSatelliteList;
    using Write = ListLock<Manager, &Manager::lockSatl, &Manager::unLockSatl>;
    using Read = ListLock<Manager, &Manager::readLockSatl, &Manager::readUnLockSatl>;
};

template <class Manager>
using WriteLock = typename ListLocks<Manager>::Write;
template <class Manager>
using ReadLock = typename ListLocks<Manager>::Read;

} // namespace tavro
