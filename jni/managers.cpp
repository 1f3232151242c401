#include "jni/managers.h"

JavaVM* javaVM = nullptr;
NativeVltTvChannelList* chList = nullptr;
