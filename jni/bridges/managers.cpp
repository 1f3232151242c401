#include "jni/bridges/managers.h"

JavaVM* javaVM = nullptr;
NativeVltTvChannelList* chList = nullptr;
NativeVltTvTransportStreamList* tsList = nullptr;
NativeVltTvNetworkList* nwList = nullptr;
NativeVltTvSatelliteList* satList = nullptr;
