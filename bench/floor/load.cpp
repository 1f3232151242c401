#include "common.h"
#include "floor.h"

namespace tavro::bench::floor {

Table tables[4];

jint load(JavaVM* vm, void*) {
    void* env_place;
    vm->GetEnv(&env_place, JNI_VERSION_1_4);
    auto* env = static_cast<JNIEnv*>(env_place);
    FLOOR_ERROR("Tavro_onLoad_channellist", "channellist JNI_OnLoad OK.");
    for (const Table& table : tables) {
        env->RegisterNatives(env->FindClass(table.path), table.methods, table.count);
    }
    return JNI_VERSION_1_4;
}

} // namespace tavro::bench::floor
