#include "trace/jni_calls.h"

#include "trace/java_values.h"
#include "trace/jni_observer.h"
#include "trace/settings.h"
#include "trace/sink.h"
#include "trace/text.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace tavro::trace {
namespace {

// Puts the pending exception aside, if there is one, and back at the end of the scope.
class WithoutException {
public:
    explicit WithoutException(JNIEnv* env) : env_(env), thrown_(original_jni.ExceptionOccurred(env)) {
        if (thrown_ != nullptr) {
            original_jni.ExceptionClear(env);
        }
    }
    ~WithoutException() {
        if (thrown_ != nullptr) {
            original_jni.Throw(env_, thrown_);
            original_jni.DeleteLocalRef(env_, thrown_);
        }
    }
    WithoutException(const WithoutException&) = delete;
    WithoutException& operator=(const WithoutException&) = delete;

private:
    JNIEnv* env_;
    jthrowable thrown_;
};

// A method or field that was looked up.
struct Member {
    std::string name;
    std::string signature;
};

struct Members {
    std::mutex mutex;
    std::map<const void*, Member> by_id;
};

// Never destroyed: natives may run during exit.
Members& members() {
    static Members& once = *new Members;
    return once;
}

Member member(const void* id) {
    const std::lock_guard<std::mutex> lock(members().mutex);
    const auto found = members().by_id.find(id);
    return found == members().by_id.end() ? Member{"unknown", ""} : found->second;
}

// What is kept of one call.
struct Traced {
    Event event;
    bool was_pending; // an exception, when the call began

    Traced(const JniCall& call, bool pending)
        : event(Category::kJni, call.function.shown.c_str()), was_pending(pending) {}
};

// Writes each call as an event. It has no state: one serves all threads.
class Tracer final : public JniObserver {
public:
    bool describes() const override { return true; }

    std::string reference(JNIEnv* env, jobject object) override {
        const Quiet here;
        const WithoutException aside(env);
        return object_text(env, object);
    }
    std::string quotation(const char* text) override { return quoted(text); }

    void add_member(const void* id, const std::string& name, const char* signature) override {
        const std::lock_guard<std::mutex> lock(members().mutex);
        members().by_id[id] = {name, signature};
    }
    std::string member_name(const void* id) override { return id == nullptr ? "null" : member(id).name; }
    std::string member_signature(const void* id) override { return member(id).signature; }

    bool begin(JniCall& call) override {
        const bool pending = original_jni.ExceptionCheck(call.env) != JNI_FALSE;
        const auto traced = std::make_shared<Traced>(call, pending);
        for (std::string& argument : call.arguments) {
            traced->event.argument("", std::move(argument));
        }
        call.own = traced;
        if (settings().early) {
            traced->event.begin();
        }
        return false;
    }
    void failed(JniCall&) override {}
    void returned(JniCall& call) override { of(call).event.returned(); }
    std::string reference_result(JniCall& call, jobject result) override { return reference(call.env, result); }
    void memory_result(JniCall&, const void*) override {}
    void end(JniCall& call, const std::string& result) override {
        Traced& traced = of(call);
        std::string exception;
        if (!traced.was_pending) {
            const Quiet here;
            exception = pending_exception(call.env);
        }
        traced.event.finish(exception.empty() ? result : "threw " + exception);
    }

private:
    static Traced& of(const JniCall& call) { return *static_cast<Traced*>(call.own.get()); }
};

JniObserver* tracer_of_natives(JNIEnv* env) {
    if (natives_running() == 0 || is_quiet() || !is_list_native_running(env)) {
        return nullptr;
    }
    static Tracer& tracer = *new Tracer;
    return &tracer;
}

} // namespace

bool trace_jni_calls(jvmtiEnv* jvmti, JNIEnv* /*env*/) { return replace_jni_functions(jvmti, tracer_of_natives); }

} // namespace tavro::trace
