// Observes the JNI calls of the library's natives: for the tracer, and for tests that record them.
#pragma once

#include <jni.h>

#include <jvmti.h>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace tavro::trace {

using JniTable = JNINativeInterface_;

// The virtual machine's own JNI functions. Calls of these are not observed.
extern JniTable original_jni;

// What a call does to what a native holds, beyond returning a local reference.
enum class Effect { kNone, kDeletesLocal, kDeletesGlobal, kMakesGlobal, kPushesFrame, kPopsFrame, kGets, kGivesBack };

// A function of the table.
struct JniFunction {
    const char* name = nullptr;
    std::string shown{}; // without the V or A of variants
    Effect effect = Effect::kNone;
    const char* exception = nullptr; // class of the exception when it fails; null for functions that do not fail

    JniFunction() = default;
    explicit JniFunction(const char* text);
};

// One call in progress.
struct JniCall {
    JNIEnv* env;
    const JniFunction& function;
    std::vector<std::string> arguments{}; // as the observer writes them; empty if it does not want them
    jobject first = nullptr;              // first object argument
    const void* memory = nullptr;         // pointer argument, such as characters that are released
    std::string member{};                 // name of the method or field
    bool is_field = false;
    std::string signature{};          // of the method
    std::vector<const char*> texts{}; // text arguments
    std::shared_ptr<void> own{};      // what the observer keeps for the duration of the call

    // "NAME(ARGUMENT, ARGUMENT", without the closing parenthesis.
    std::string text() const;
};

// Sees the calls of one thread.
class JniObserver {
public:
    JniObserver() = default;
    JniObserver(const JniObserver&) = default;
    JniObserver& operator=(const JniObserver&) = default;
    virtual ~JniObserver() = default;

    // Whether arguments and results are to be described. Otherwise begin() and reference_result() see only references.
    virtual bool describes() const = 0;

    // How an object argument is written, and a text argument or result.
    virtual std::string reference(JNIEnv* env, jobject object) = 0;
    virtual std::string quotation(const char* text) = 0;

    // Methods and fields, by the look-up that returned them. The name has the class before a dot.
    virtual void add_member(const void* id, const std::string& name, const char* signature) = 0;
    virtual std::string member_name(const void* id) = 0;
    virtual std::string member_signature(const void* id) = 0;

    // Before the call, with its arguments. Returns whether it is to fail: it is then not made, an exception is thrown,
    // and failed() follows instead of end().
    virtual bool begin(JniCall& call) = 0;
    virtual void failed(JniCall& call) = 0;

    // After the call. The results of references and pointers are asked for before end().
    virtual void returned(JniCall& call) = 0;
    virtual std::string reference_result(JniCall& call, jobject result) = 0;
    virtual void memory_result(JniCall& call, const void* memory) = 0;
    virtual void end(JniCall& call, const std::string& result) = 0;
};

// Returns the observer of the current thread; null if its calls are not observed now.
using FindObserver = JniObserver* (*)(JNIEnv* env);

// Replaces all functions of the virtual machine's JNI table by ones that are observed. Returns false if that is not
// possible.
bool replace_jni_functions(jvmtiEnv* jvmti, FindObserver find);

// Whether the caller is itself a native of a list class, not Java code or another native that it has called.
bool is_list_native_running(JNIEnv* env);

// The name of a class without its package: "VltTvNetworkInfo".
std::string class_name(jclass cls);

// The signature of a class, such as "Ljava/lang/String;"; "" if it cannot be read.
std::string class_signature(jclass cls);

// The text with the package of the list classes abbreviated to "...".
std::string abbreviated(std::string text);

} // namespace tavro::trace
