// Loads a library like a Java virtual machine and calls its JNI_OnLoad, so that the cost can be counted: load_probe
// LIBRARY. Exits with 0 if JNI_OnLoad returned a JNI version.

#include <jni.h>

#include <cstdio>
#include <dlfcn.h>

namespace {

int registered = 0;

} // namespace

int main(int count, char** arguments) {
    // The functions that JNI_OnLoad needs; any other call crashes.
    static JNINativeInterface_ functions{};
    functions.FindClass = [](JNIEnv* env, const char*) { return reinterpret_cast<jclass>(env); };
    functions.RegisterNatives = [](JNIEnv*, jclass, const JNINativeMethod*, jint methods) -> jint {
        registered += methods;
        return JNI_OK;
    };
    static JNIEnv env{&functions};
    JNIInvokeInterface_ machine_functions{};
    machine_functions.GetEnv = [](JavaVM*, void** found, jint) -> jint {
        *found = &env;
        return JNI_OK;
    };
    JavaVM machine{&machine_functions};

    void* library = count == 2 ? dlopen(arguments[1], RTLD_NOW) : nullptr;
    if (library == nullptr) {
        std::fprintf(stderr, "load_probe: cannot load the library: %s\n",
                     count == 2 ? dlerror() : "usage: load_probe LIBRARY");
        return 2;
    }
    using LoadEntry = jint (*)(JavaVM*, void*);
    const auto load = reinterpret_cast<LoadEntry>(dlsym(library, "JNI_OnLoad"));
    const jint version = load == nullptr ? JNI_ERR : load(&machine, nullptr);
    std::printf("%d natives registered\n", registered);
    return version > 0 ? 0 : 1;
}
