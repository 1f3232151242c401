// Loads a library as a Java virtual machine would, calls its load entry and ends, for counting what that
// costs: load_probe LIBRARY. Ends with 0 when the load entry answered a JNI version.

#include <jni.h>

#include <cstdio>
#include <dlfcn.h>

namespace {

int registered = 0;

} // namespace

int main(int count, char** arguments) {
    // What the load entry needs of the platform; any other call would end the program.
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
        std::fprintf(stderr, "cannot load the library: %s\n", count == 2 ? dlerror() : "name one");
        return 2;
    }
    using LoadEntry = jint (*)(JavaVM*, void*);
    const auto load = reinterpret_cast<LoadEntry>(dlsym(library, "JNI_OnLoad"));
    const jint version = load == nullptr ? JNI_ERR : load(&machine, nullptr);
    std::printf("%d natives registered\n", registered);
    return version > 0 ? 0 : 1;
}
