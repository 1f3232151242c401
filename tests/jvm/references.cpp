// Counts the local references that a thread's natives hold (class References). Loading this library replaces the
// virtual machine's JNI function table through JVMTI; on threads without a count the functions only pass calls on.

#include <jni.h>

#include <cstdarg>
#include <cstddef>
#include <jvmti.h>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Table = JNINativeInterface_;

Table original;

// The local references of one thread, by the JNI function that created each. References of Java code that a native
// calls, and of natives called from there, are not counted.
class Count {
public:
    void begin() {
        *this = Count();
        counting_ = true;
    }
    void end() { counting_ = false; }

    void enter_java() { ++java_depth_; }
    void leave_java() { --java_depth_; }

    void add(jobject reference, const char* made_by) {
        if (!counts() || reference == nullptr) {
            return;
        }
        frames_.back()[reference] = made_by;
        ++live_by_[made_by];
        if (++live_ > maximum_) {
            maximum_ = live_;
            maximum_by_ = live_by_;
        }
    }
    // Ignores unknown references, which are arguments of the native.
    void remove(jobject reference) {
        for (std::size_t i = frames_.size(); counts() && i-- > 0;) {
            const auto found = frames_[i].find(reference);
            if (found != frames_[i].end()) {
                forget(found->second);
                frames_[i].erase(found);
                return;
            }
        }
    }
    void push_frame() {
        if (counts()) {
            frames_.emplace_back();
        }
    }
    void pop_frame() {
        if (counts() && frames_.size() > 1) {
            for (const auto& [reference, made_by] : frames_.back()) {
                forget(made_by);
            }
            frames_.pop_back();
        }
    }

    int maximum() const { return maximum_; }
    // The live references when the maximum was first reached: "12 NewStringUTF, 3 GetObjectClass".
    std::string maximum_by_function() const {
        std::string text;
        for (const auto& [made_by, number] : maximum_by_) {
            if (number > 0) {
                text += (text.empty() ? "" : ", ") + std::to_string(number) + " " + made_by;
            }
        }
        return text;
    }

private:
    bool counts() const { return counting_ && java_depth_ == 0; }
    void forget(const char* made_by) {
        --live_;
        --live_by_[made_by];
    }

    bool counting_ = false;
    int java_depth_ = 0;
    int live_ = 0;
    int maximum_ = 0;
    std::vector<std::map<jobject, const char*>> frames_ = std::vector<std::map<jobject, const char*>>(1);
    std::map<const char*, int> live_by_;
    std::map<const char*, int> maximum_by_;
};

thread_local Count count;

// Marks a scope in which the virtual machine may run Java code on this thread.
struct InJava {
    InJava() { count.enter_java(); }
    ~InJava() { count.leave_java(); }
};

template <class Result>
constexpr bool kIsReference = std::is_convertible_v<Result, jobject>;

// Calls the function that a slot held before and counts the reference that it returns.
template <class Result, class... Arguments, class... Given>
Result pass_on(const char* name, Result (JNICALL* Table::*slot)(JNIEnv*, Arguments...), JNIEnv* env, Given... given) {
    if constexpr (std::is_void_v<Result>) {
        const InJava in_java;
        (original.*slot)(env, given...);
    } else {
        Result result = [&] {
            const InJava in_java;
            return (original.*slot)(env, given...);
        }();
        if constexpr (kIsReference<Result>) {
            count.add(result, name);
        }
        return result;
    }
}

// Replacement for a slot with a fixed number of arguments.
template <auto Slot>
struct Fixed;
template <class Result, class... Arguments, Result (JNICALL* Table::*Slot)(JNIEnv*, Arguments...)>
struct Fixed<Slot> {
    static inline const char* name = nullptr;
    static Result JNICALL call(JNIEnv* env, Arguments... arguments) { return pass_on(name, Slot, env, arguments...); }
};

struct EndOf {
    va_list& arguments;
    ~EndOf() { va_end(arguments); }
};

// Replacement for a variadic slot; it calls the slot that takes a va_list.
template <auto Slot, auto SlotV>
struct Variadic;
template <class Result, class Object, Result (JNICALL* Table::*Slot)(JNIEnv*, Object, jmethodID, ...),
          Result (JNICALL* Table::*SlotV)(JNIEnv*, Object, jmethodID, va_list)>
struct Variadic<Slot, SlotV> {
    static Result JNICALL call(JNIEnv* env, Object object, jmethodID method, ...) {
        va_list arguments;
        va_start(arguments, method);
        const EndOf end{arguments};
        return Fixed<SlotV>::call(env, object, method, arguments);
    }
};
template <class Result, Result (JNICALL* Table::*Slot)(JNIEnv*, jobject, jclass, jmethodID, ...),
          Result (JNICALL* Table::*SlotV)(JNIEnv*, jobject, jclass, jmethodID, va_list)>
struct Variadic<Slot, SlotV> {
    static Result JNICALL call(JNIEnv* env, jobject object, jclass cls, jmethodID method, ...) {
        va_list arguments;
        va_start(arguments, method);
        const EndOf end{arguments};
        return Fixed<SlotV>::call(env, object, cls, method, arguments);
    }
};

void JNICALL delete_local_ref(JNIEnv* env, jobject reference) {
    count.remove(reference);
    original.DeleteLocalRef(env, reference);
}

jint JNICALL push_local_frame(JNIEnv* env, jint capacity) {
    const jint status = original.PushLocalFrame(env, capacity);
    if (status == JNI_OK) {
        count.push_frame();
    }
    return status;
}

jobject JNICALL pop_local_frame(JNIEnv* env, jobject result) {
    count.pop_frame();
    jobject kept = original.PopLocalFrame(env, result);
    count.add(kept, "PopLocalFrame");
    return kept;
}

template <auto Slot>
void replace(Table& table, const char* name) {
    Fixed<Slot>::name = name;
    table.*Slot = Fixed<Slot>::call;
}

void replace_functions(Table& table) {
#define FIXED(NAME) replace<&Table::NAME>(table, #NAME)
#define CALLS(NAME)                                                                                                    \
    FIXED(NAME##V);                                                                                                    \
    FIXED(NAME##A);                                                                                                    \
    table.NAME = Variadic<&Table::NAME, &Table::NAME##V>::call
#define CALLS_OF_TYPE(TYPE)                                                                                            \
    CALLS(Call##TYPE##Method);                                                                                         \
    CALLS(CallNonvirtual##TYPE##Method);                                                                               \
    CALLS(CallStatic##TYPE##Method)

    // Functions that return a local reference or may run Java code.
    CALLS_OF_TYPE(Object);
    CALLS_OF_TYPE(Boolean);
    CALLS_OF_TYPE(Byte);
    CALLS_OF_TYPE(Char);
    CALLS_OF_TYPE(Short);
    CALLS_OF_TYPE(Int);
    CALLS_OF_TYPE(Long);
    CALLS_OF_TYPE(Float);
    CALLS_OF_TYPE(Double);
    CALLS_OF_TYPE(Void);
    CALLS(NewObject);
    FIXED(AllocObject);
    FIXED(DefineClass);
    FIXED(ExceptionDescribe);
    FIXED(ExceptionOccurred);
    FIXED(FindClass);
    FIXED(GetFieldID);
    FIXED(GetMethodID);
    FIXED(GetModule);
    FIXED(GetObjectArrayElement);
    FIXED(GetObjectClass);
    FIXED(GetObjectField);
    FIXED(GetStaticFieldID);
    FIXED(GetStaticMethodID);
    FIXED(GetStaticObjectField);
    FIXED(GetSuperclass);
    FIXED(NewBooleanArray);
    FIXED(NewByteArray);
    FIXED(NewCharArray);
    FIXED(NewDirectByteBuffer);
    FIXED(NewDoubleArray);
    FIXED(NewFloatArray);
    FIXED(NewIntArray);
    FIXED(NewLocalRef);
    FIXED(NewLongArray);
    FIXED(NewObjectArray);
    FIXED(NewShortArray);
    FIXED(NewString);
    FIXED(NewStringUTF);
    FIXED(ThrowNew);
    FIXED(ToReflectedField);
    FIXED(ToReflectedMethod);

    table.DeleteLocalRef = delete_local_ref;
    table.PushLocalFrame = push_local_frame;
    table.PopLocalFrame = pop_local_frame;
}

} // namespace

extern "C" JNIEXPORT jint JNICALL JNI_OnLoad(JavaVM* vm, void*) {
    jvmtiEnv* jvmti = nullptr;
    Table* table = nullptr;
    if (vm->GetEnv(reinterpret_cast<void**>(&jvmti), JVMTI_VERSION_1_2) != JNI_OK ||
        jvmti->GetJNIFunctionTable(&table) != JVMTI_ERROR_NONE) {
        return JNI_ERR;
    }
    original = *table;
    replace_functions(*table);
    const bool replaced = jvmti->SetJNIFunctionTable(table) == JVMTI_ERROR_NONE;
    jvmti->Deallocate(reinterpret_cast<unsigned char*>(table));
    return replaced ? JNI_VERSION_1_8 : JNI_ERR;
}

#define REFERENCES(RESULT, NAME)                                                                                       \
    extern "C" JNIEXPORT RESULT JNICALL Java_com_velotra_tv_tavro_services_channellist_References_##NAME

REFERENCES(void, begin)(JNIEnv*, jclass) { count.begin(); }
REFERENCES(jint, end)(JNIEnv*, jclass) {
    count.end();
    return count.maximum();
}
REFERENCES(jstring, maximumByFunction)(JNIEnv* env, jclass) {
    return env->NewStringUTF(count.maximum_by_function().c_str());
}
