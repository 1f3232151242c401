// The functions that replace those of the virtual machine's JNI table. There is one for each of its 229 functions.
#include "trace/jni_description.h"
#include "trace/jni_observer.h"

#include <cstdarg>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <type_traits>

namespace tavro::trace {

JniTable original_jni;

namespace {

jvmtiEnv* tool = nullptr;
FindObserver find_observer = nullptr;

template <class Result>
Result fail(JniObserver& observer, JniCall& call) {
    jclass cls = original_jni.FindClass(call.env, call.function.exception);
    original_jni.ThrowNew(call.env, cls, "made to fail");
    original_jni.DeleteLocalRef(call.env, cls);
    observer.failed(call);
    return Result();
}

// Describes a call and announces it. Returns the observer's wish that it fails; null without memory for that.
template <class... Given>
std::optional<bool> begin(JniObserver& observer, JniCall& call, Given... given) noexcept {
    try {
        (note(call, given), ...);
        if (observer.describes()) {
            (describe(observer, call, given), ...);
        }
        return observer.begin(call);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

template <class... Result>
void end(JniObserver& observer, JniCall& call, Result... result) noexcept {
    try {
        if (observer.describes()) {
            observer.end(call, (std::string() + ... + describe_result(observer, call, result)));
        } else if constexpr ((kIsReference<Result> || ...)) {
            (observer.reference_result(call, result), ...);
        }
    } catch (const std::exception&) {
        // Out of memory: the call stays undescribed.
    }
}

// Passes a call on, and shows it to the observer of the thread.
template <class Result, class... Arguments, class... Given>
Result observed(const JniFunction& function, Result (JNICALL* JniTable::*slot)(JNIEnv*, Arguments...), JNIEnv* env,
                Given... given) {
    JniObserver* const observer = find_observer(env);
    if (observer == nullptr) {
        return (original_jni.*slot)(env, given...);
    }
    JniCall call{env, function};
    const std::optional<bool> fails = begin(*observer, call, given...);
    if (!fails) {
        return (original_jni.*slot)(env, given...);
    }
    if (*fails) {
        return fail<Result>(*observer, call);
    }
    if constexpr (std::is_void_v<Result>) {
        (original_jni.*slot)(env, given...);
        observer->returned(call);
        end(*observer, call);
    } else {
        Result result = (original_jni.*slot)(env, given...);
        observer->returned(call);
        end(*observer, call, result);
        return result;
    }
}

// Replacement for a function with a fixed number of arguments.
template <auto Slot>
struct Fixed;
template <class Result, class... Arguments, Result (JNICALL* JniTable::*Slot)(JNIEnv*, Arguments...)>
struct Fixed<Slot> {
    static inline JniFunction function;
    static Result JNICALL call(JNIEnv* env, Arguments... arguments) {
        return observed(function, Slot, env, arguments...);
    }
};

struct EndOf {
    va_list& arguments;
    ~EndOf() { va_end(arguments); }
};

// Replacement for a variadic function; it calls the one that takes a va_list.
template <auto Slot, auto SlotV>
struct Variadic;
template <class Result, class Object, Result (JNICALL* JniTable::*Slot)(JNIEnv*, Object, jmethodID, ...),
          Result (JNICALL* JniTable::*SlotV)(JNIEnv*, Object, jmethodID, va_list)>
struct Variadic<Slot, SlotV> {
    static Result JNICALL call(JNIEnv* env, Object object, jmethodID method, ...) {
        va_list arguments;
        va_start(arguments, method);
        const EndOf end{arguments};
        return Fixed<SlotV>::call(env, object, method, arguments);
    }
};
template <class Result, Result (JNICALL* JniTable::*Slot)(JNIEnv*, jobject, jclass, jmethodID, ...),
          Result (JNICALL* JniTable::*SlotV)(JNIEnv*, jobject, jclass, jmethodID, va_list)>
struct Variadic<Slot, SlotV> {
    static Result JNICALL call(JNIEnv* env, jobject object, jclass cls, jmethodID method, ...) {
        va_list arguments;
        va_start(arguments, method);
        const EndOf end{arguments};
        return Fixed<SlotV>::call(env, object, cls, method, arguments);
    }
};

template <auto Slot>
void replace(JniTable& table, const char* name) {
    Fixed<Slot>::function = JniFunction(name);
    table.*Slot = Fixed<Slot>::call;
}

#define FIXED(NAME) replace<&JniTable::NAME>(table, #NAME)
#define CALLS(NAME)                                                                                                    \
    FIXED(NAME##V);                                                                                                    \
    FIXED(NAME##A);                                                                                                    \
    table.NAME = Variadic<&JniTable::NAME, &JniTable::NAME##V>::call
#define CALLS_OF_TYPE(TYPE)                                                                                            \
    CALLS(Call##TYPE##Method);                                                                                         \
    CALLS(CallNonvirtual##TYPE##Method);                                                                               \
    CALLS(CallStatic##TYPE##Method)
#define VALUES_OF_TYPE(TYPE)                                                                                           \
    CALLS_OF_TYPE(TYPE);                                                                                               \
    FIXED(Get##TYPE##Field);                                                                                           \
    FIXED(Set##TYPE##Field);                                                                                           \
    FIXED(GetStatic##TYPE##Field);                                                                                     \
    FIXED(SetStatic##TYPE##Field)
#define NUMBERS_OF_TYPE(TYPE)                                                                                          \
    VALUES_OF_TYPE(TYPE);                                                                                              \
    FIXED(New##TYPE##Array);                                                                                           \
    FIXED(Get##TYPE##ArrayElements);                                                                                   \
    FIXED(Release##TYPE##ArrayElements);                                                                               \
    FIXED(Get##TYPE##ArrayRegion);                                                                                     \
    FIXED(Set##TYPE##ArrayRegion)

void replace_calls(JniTable& table) {
    CALLS_OF_TYPE(Void);
    CALLS(NewObject);
    VALUES_OF_TYPE(Object);
    NUMBERS_OF_TYPE(Boolean);
    NUMBERS_OF_TYPE(Byte);
    NUMBERS_OF_TYPE(Char);
    NUMBERS_OF_TYPE(Short);
    NUMBERS_OF_TYPE(Int);
    NUMBERS_OF_TYPE(Long);
    NUMBERS_OF_TYPE(Float);
    NUMBERS_OF_TYPE(Double);
}

void replace_others(JniTable& table) {
    FIXED(AllocObject);
    FIXED(DefineClass);
    FIXED(DeleteGlobalRef);
    FIXED(DeleteLocalRef);
    FIXED(DeleteWeakGlobalRef);
    FIXED(EnsureLocalCapacity);
    FIXED(ExceptionCheck);
    FIXED(ExceptionClear);
    FIXED(ExceptionDescribe);
    FIXED(ExceptionOccurred);
    FIXED(FatalError);
    FIXED(FindClass);
    FIXED(FromReflectedField);
    FIXED(FromReflectedMethod);
    FIXED(GetArrayLength);
    FIXED(GetDirectBufferAddress);
    FIXED(GetDirectBufferCapacity);
    FIXED(GetFieldID);
    FIXED(GetJavaVM);
    FIXED(GetMethodID);
    FIXED(GetModule);
    FIXED(GetObjectArrayElement);
    FIXED(GetObjectClass);
    FIXED(GetObjectRefType);
    FIXED(GetPrimitiveArrayCritical);
    FIXED(GetStaticFieldID);
    FIXED(GetStaticMethodID);
    FIXED(GetStringChars);
    FIXED(GetStringCritical);
    FIXED(GetStringLength);
    FIXED(GetStringRegion);
    FIXED(GetStringUTFChars);
    FIXED(GetStringUTFLength);
    FIXED(GetStringUTFRegion);
    FIXED(GetSuperclass);
    FIXED(GetVersion);
    FIXED(IsAssignableFrom);
    FIXED(IsInstanceOf);
    FIXED(IsSameObject);
    FIXED(MonitorEnter);
    FIXED(MonitorExit);
    FIXED(NewDirectByteBuffer);
    FIXED(NewGlobalRef);
    FIXED(NewLocalRef);
    FIXED(NewObjectArray);
    FIXED(NewString);
    FIXED(NewStringUTF);
    FIXED(NewWeakGlobalRef);
    FIXED(PopLocalFrame);
    FIXED(PushLocalFrame);
    FIXED(RegisterNatives);
    FIXED(ReleasePrimitiveArrayCritical);
    FIXED(ReleaseStringChars);
    FIXED(ReleaseStringCritical);
    FIXED(ReleaseStringUTFChars);
    FIXED(SetObjectArrayElement);
    FIXED(Throw);
    FIXED(ThrowNew);
    FIXED(ToReflectedField);
    FIXED(ToReflectedMethod);
    FIXED(UnregisterNatives);
}

// Whether every function was replaced; the first slots of the table are reserved.
bool replaced_all(const JniTable& table) {
    constexpr std::size_t kReserved = 4;
    constexpr std::size_t kSlots = sizeof(JniTable) / sizeof(void*);
    void* const* before = reinterpret_cast<void* const*>(&original_jni);
    void* const* after = reinterpret_cast<void* const*>(&table);
    for (std::size_t i = kReserved; i < kSlots; ++i) {
        if (before[i] == after[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

bool replace_jni_functions(jvmtiEnv* jvmti, FindObserver find) {
    tool = jvmti;
    find_observer = find;
    JniTable* table = nullptr;
    if (jvmti->GetJNIFunctionTable(&table) != JVMTI_ERROR_NONE) {
        return false;
    }
    original_jni = *table;
    replace_calls(*table);
    replace_others(*table);
    const bool replaced = replaced_all(*table) && jvmti->SetJNIFunctionTable(table) == JVMTI_ERROR_NONE;
    jvmti->Deallocate(reinterpret_cast<unsigned char*>(table));
    return replaced;
}

std::string class_signature(jclass cls) {
    char* signature = nullptr;
    if (cls == nullptr || tool->GetClassSignature(cls, &signature, nullptr) != JVMTI_ERROR_NONE) {
        return "";
    }
    std::string copy = signature;
    tool->Deallocate(reinterpret_cast<unsigned char*>(signature));
    return copy;
}

bool is_list_native_running(JNIEnv* env) {
    jmethodID method = nullptr;
    jlocation location = 0;
    if (tool->GetFrameLocation(nullptr, 0, &method, &location) != JVMTI_ERROR_NONE) {
        return false;
    }
    thread_local jmethodID last = nullptr;
    thread_local bool last_is_list_native = false;
    if (method != last) {
        jboolean native = JNI_FALSE;
        jclass cls = nullptr;
        last_is_list_native = tool->IsMethodNative(method, &native) == JVMTI_ERROR_NONE && native != JNI_FALSE &&
                              tool->GetMethodDeclaringClass(method, &cls) == JVMTI_ERROR_NONE &&
                              abbreviated(class_signature(cls)).rfind("L.../VltTv", 0) == 0;
        last = method;
        original_jni.DeleteLocalRef(env, cls);
    }
    return last_is_list_native;
}

} // namespace tavro::trace
