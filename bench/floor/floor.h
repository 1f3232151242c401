// The floor: hand-written natives that make the same JNI and platform calls as the library's natives, in the same
// order, and nothing else. They do not check for errors, and keep ids on the stack.
//
// They support only what the benchmarks use: valid identifiers, existing lists, DVB services and satellite transport
// streams. native_bench --check compares their calls with the library's.
#pragma once

#include <jni.h>

namespace tavro::bench::floor {

jbyteArray service_get(JNIEnv* env, jobject self, jstring identifier);
jbyteArray service_get_list(JNIEnv* env, jobject self, jint list);
jbyteArray service_get_by_stream(JNIEnv* env, jobject self, jint list, jint stream_id);
jbyteArray service_get_by_stream_record(JNIEnv* env, jobject self, jint list, jint record);
jbyteArray service_get_by_network(JNIEnv* env, jobject self, jint list, jint network_id);
jint service_open(JNIEnv* env, jobject self, jint list);
jint service_clean(JNIEnv* env, jobject self, jint list);
jint service_update(JNIEnv* env, jobject self, jint list, jobject channel);
jint service_update_list(JNIEnv* env, jobject self, jint list, jobject channels);
jstring service_add(JNIEnv* env, jobject self, jint list, jobject channel);
jint service_remove(JNIEnv* env, jobject self, jstring identifier);

jbyteArray stream_get(JNIEnv* env, jobject self, jstring identifier);
jbyteArray stream_get_list(JNIEnv* env, jobject self, jint list);
jbyteArray stream_get_by_satellite(JNIEnv* env, jobject self, jint list, jint record);
jint stream_open(JNIEnv* env, jobject self, jint list);
jint stream_clean(JNIEnv* env, jobject self, jint list);
jint stream_update(JNIEnv* env, jobject self, jint list, jobject stream);
jint stream_update_list(JNIEnv* env, jobject self, jint list, jobject streams);
jstring stream_add(JNIEnv* env, jobject self, jint list, jobject stream);
jint stream_remove(JNIEnv* env, jobject self, jstring identifier);

jobject network_get(JNIEnv* env, jobject self, jstring identifier, jobject keys);
jobject network_get_list(JNIEnv* env, jobject self, jint list, jobject keys);
jint network_open(JNIEnv* env, jobject self, jint list);
jint network_clean(JNIEnv* env, jobject self, jint list);
jint network_update(JNIEnv* env, jobject self, jint list, jobject network);
jint network_update_list(JNIEnv* env, jobject self, jint list, jobject networks);
jstring network_add(JNIEnv* env, jobject self, jint list, jobject network);
jint network_remove(JNIEnv* env, jobject self, jstring identifier);

jobject satellite_get(JNIEnv* env, jobject self, jstring identifier, jobject keys);
jobject satellite_get_list(JNIEnv* env, jobject self, jint list, jobject keys);
jint satellite_open(JNIEnv* env, jobject self, jint list);
jint satellite_clean(JNIEnv* env, jobject self, jint list);
jint satellite_update(JNIEnv* env, jobject self, jobject satellite);
jint satellite_update_list(JNIEnv* env, jobject self, jobject satellites);
jstring satellite_add(JNIEnv* env, jobject self, jint list, jobject satellite);
jint satellite_remove(JNIEnv* env, jobject self, jstring identifier);

// The library's own method tables, which `load` registers.
struct Table {
    const char* path;
    const JNINativeMethod* methods;
    jint count;
};
extern Table tables[4];
jint load(JavaVM* vm, void* reserved);

// Less than the floor: copies a list's records from the platform into a Java array, without log lines.
jbyteArray service_copy(JNIEnv* env, jobject self, jint list);
jbyteArray stream_copy(JNIEnv* env, jobject self, jint list);

} // namespace tavro::bench::floor
