#include "trace/agent.h"

#include "trace/jni_calls.h"
#include "trace/natives.h"
#include "trace/settings.h"
#include "trace/sink.h"

#include <atomic>
#include <dlfcn.h>
#include <exception>
#include <mutex>
#include <string>

namespace tavro::trace {
namespace {

constexpr char kNotObserved[] = "natives cannot be observed here; only calls of the platform are traced";

std::atomic<jvmtiEnv*> interface { nullptr };
JavaVM* machine = nullptr; // set before `interface`

// A text that the virtual machine allocated.
class Text {
public:
    explicit Text(jvmtiEnv* jvmti) : jvmti_(jvmti) {}
    ~Text() { jvmti_->Deallocate(reinterpret_cast<unsigned char*>(text_)); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    char** address() { return &text_; }
    std::string copy() const { return text_ == nullptr ? "" : text_; }

private:
    jvmtiEnv* jvmti_;
    char* text_ = nullptr;
};

std::string java_thread_name() {
    void* env = nullptr;
    jvmtiThreadInfo info{};
    if (machine->GetEnv(&env, JNI_VERSION_1_4) != JNI_OK ||
        tool_interface()->GetThreadInfo(nullptr, &info) != JVMTI_ERROR_NONE) {
        return ""; // a thread that Java does not know
    }
    std::string name = info.name == nullptr ? "" : info.name;
    tool_interface()->Deallocate(reinterpret_cast<unsigned char*>(info.name));
    static_cast<JNIEnv*>(env)->DeleteLocalRef(info.thread_group);
    static_cast<JNIEnv*>(env)->DeleteLocalRef(info.context_class_loader);
    return name;
}

void JNICALL native_bound(jvmtiEnv* jvmti, JNIEnv* env, jthread, jmethodID method, void* address, void** replacement) {
    const Quiet here;
    jclass cls = nullptr;
    Text class_signature(jvmti);
    Text name(jvmti);
    Text signature(jvmti);
    if (jvmti->GetMethodDeclaringClass(method, &cls) == JVMTI_ERROR_NONE &&
        jvmti->GetClassSignature(cls, class_signature.address(), nullptr) == JVMTI_ERROR_NONE &&
        jvmti->GetMethodName(method, name.address(), signature.address(), nullptr) == JVMTI_ERROR_NONE) {
        try {
            *replacement = replacement_of({class_signature.copy(), name.copy(), signature.copy()}, address);
        } catch (const std::exception&) {
            // Out of memory: the native is not traced.
        }
    }
    if (env != nullptr && cls != nullptr) {
        env->DeleteLocalRef(cls);
    }
}

void start_jni(jvmtiEnv* jvmti, JNIEnv* env) {
    if (settings().jni && !trace_jni_calls(jvmti, env)) {
        remark("JNI calls cannot be traced");
    }
}

void JNICALL machine_begun(jvmtiEnv* jvmti, JNIEnv* env, jthread) {
    const Quiet here;
    start_jni(jvmti, env);
}

bool observe(JavaVM* vm) {
    void* found = nullptr;
    if (vm->GetEnv(&found, JVMTI_VERSION_1_2) != JNI_OK) {
        return false;
    }
    auto* const jvmti = static_cast<jvmtiEnv*>(found);
    jvmtiCapabilities capabilities{};
    capabilities.can_generate_native_method_bind_events = 1;
    jvmtiEventCallbacks callbacks{};
    callbacks.NativeMethodBind = native_bound;
    callbacks.VMInit = machine_begun;
    machine = vm;
    interface = jvmti;
    set_thread_names(java_thread_name);
    if (jvmti->AddCapabilities(&capabilities) != JVMTI_ERROR_NONE ||
        jvmti->SetEventCallbacks(&callbacks, sizeof(callbacks)) != JVMTI_ERROR_NONE ||
        jvmti->SetEventNotificationMode(JVMTI_ENABLE, JVMTI_EVENT_NATIVE_METHOD_BIND, nullptr) != JVMTI_ERROR_NONE) {
        return false;
    }
    jvmtiPhase phase = JVMTI_PHASE_ONLOAD;
    jvmti->GetPhase(&phase);
    void* env = nullptr;
    if (phase == JVMTI_PHASE_LIVE && vm->GetEnv(&env, JNI_VERSION_1_4) == JNI_OK) {
        start_jni(jvmti, static_cast<JNIEnv*>(env));
    } else {
        jvmti->SetEventNotificationMode(JVMTI_ENABLE, JVMTI_EVENT_VM_INIT, nullptr);
    }
    return true;
}

std::mutex& attaching() {
    static std::mutex& mutex = *new std::mutex;
    return mutex;
}

// The virtual machine of this process; null if there is none.
JavaVM* find_machine() {
    using Get = jint (*)(JavaVM**, jsize, jsize*);
    for (const char* library : {"libjvm.so", "libart.so", "libnativehelper.so"}) {
        void* const loaded = ::dlopen(library, RTLD_LAZY | RTLD_NOLOAD);
        auto* const get = loaded == nullptr ? nullptr : reinterpret_cast<Get>(::dlsym(loaded, "JNI_GetCreatedJavaVMs"));
        JavaVM* vm = nullptr;
        jsize count = 0;
        if (get != nullptr && get(&vm, 1, &count) == JNI_OK && count == 1) {
            return vm;
        }
    }
    return nullptr;
}

// Makes the functions of this library visible to libraries that are loaded later. An agent is otherwise not.
void become_global() {
    Dl_info own{};
    if (::dladdr(reinterpret_cast<void*>(&become_global), &own) != 0) {
        ::dlopen(own.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_GLOBAL);
    }
}

jint start(JavaVM* vm) {
    become_global();
    const std::lock_guard<std::mutex> lock(attaching());
    if (interface == nullptr && !observe(vm)) {
        remark(kNotObserved);
    }
    return JNI_OK;
}

} // namespace

jvmtiEnv* tool_interface() noexcept { return interface; }

void attach_to_java() noexcept {
    if (interface != nullptr) {
        return;
    }
    const std::unique_lock<std::mutex> lock(attaching(), std::try_to_lock);
    static bool failed = false;
    JavaVM* const vm = lock && interface == nullptr && !failed ? find_machine() : nullptr;
    if (vm != nullptr) {
        const Quiet here;
        failed = !observe(vm);
        if (failed) {
            remark(kNotObserved);
        }
    }
}

} // namespace tavro::trace

extern "C" JNIEXPORT jint JNICALL Agent_OnLoad(JavaVM* vm, char*, void*) { return tavro::trace::start(vm); }
extern "C" JNIEXPORT jint JNICALL Agent_OnAttach(JavaVM* vm, char*, void*) { return tavro::trace::start(vm); }
