// The functions that replace those of the virtual machine's JNI table. There is one for each of its 229 functions.

#include "agent/recorder.h"

#include <cstdarg>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace tavro::agent {
namespace {

bool starts_with(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }
bool ends_with(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

// What a call does to what is held, beyond returning a local reference.
enum class Effect { kNone, kDeletesLocal, kDeletesGlobal, kMakesGlobal, kPushesFrame, kPopsFrame, kGets, kGivesBack };

Effect effect_of(std::string_view name) {
    if (name == "DeleteLocalRef") {
        return Effect::kDeletesLocal;
    }
    if (name == "PushLocalFrame") {
        return Effect::kPushesFrame;
    }
    if (name == "PopLocalFrame") {
        return Effect::kPopsFrame;
    }
    if (ends_with(name, "GlobalRef")) {
        return starts_with(name, "Delete") ? Effect::kDeletesGlobal : Effect::kMakesGlobal;
    }
    if (ends_with(name, "Chars") || ends_with(name, "ArrayElements") || ends_with(name, "Critical")) {
        return starts_with(name, "Get") ? Effect::kGets : Effect::kGivesBack;
    }
    return Effect::kNone;
}

// The exception of a call that is made to fail; null for functions that do not fail.
const char* exception_of(std::string_view name) {
    if (name == "FindClass") {
        return "java/lang/NoClassDefFoundError";
    }
    if (name == "GetMethodID" || name == "GetStaticMethodID") {
        return "java/lang/NoSuchMethodError";
    }
    if (name == "GetFieldID" || name == "GetStaticFieldID") {
        return "java/lang/NoSuchFieldError";
    }
    if (starts_with(name, "Call")) {
        return "java/lang/IllegalStateException";
    }
    const bool allocates = starts_with(name, "New") || name == "AllocObject" || effect_of(name) == Effect::kGets;
    return allocates ? "java/lang/OutOfMemoryError" : nullptr;
}

// A function of the table.
struct Function {
    const char* name = nullptr;
    std::string shown{}; // without the V or A of variants
    Effect effect = Effect::kNone;
    const char* exception = nullptr;

    Function() = default;
    explicit Function(const char* text)
        : name(text), shown(text), effect(effect_of(text)), exception(exception_of(text)) {
        const bool varies = starts_with(shown, "Call") || starts_with(shown, "NewObject");
        if (varies && (shown.back() == 'V' || shown.back() == 'A')) {
            shown.pop_back();
        }
    }
    const char* memory_word() const { return shown.find("String") != std::string::npos ? "characters" : "elements"; }
};

template <class Value>
constexpr bool kIsReference = std::is_convertible_v<Value, jobject>;

// One call while it is recorded.
struct Call {
    Recorder& recorder;
    JNIEnv* env;
    const Function& function;
    std::string text;                 // "NAME(ARGUMENTS"
    std::string origin;               // what the call returns, for the list of what is held
    std::string signature;            // of the method that is called
    const void* memory = nullptr;     // pointer argument that is released
    jobject first = nullptr;          // first object argument
    std::vector<const char*> names{}; // text arguments

    void add(const std::string& argument) { text += (text.back() == '(' ? "" : ", ") + argument; }
};

// How arguments are written.

void describe(Call& call, jobject object) {
    call.first = call.first == nullptr ? object : call.first;
    call.add(call.recorder.label(call.env, object));
}
void describe(Call& call, jmethodID method) {
    call.signature = call.recorder.id_signature(method);
    call.origin = "result of " + call.recorder.id_name(method);
    call.add(call.recorder.id_name(method));
}
void describe(Call& call, jfieldID field) {
    call.origin = "field " + call.recorder.id_name(field);
    call.add(call.recorder.id_name(field));
}
void describe(Call& call, const char* text) {
    call.names.push_back(text);
    call.memory = text;
    call.add(call.function.effect == Effect::kGivesBack ? "characters" : abbreviated(quoted(text)));
}
void describe(Call& call, jboolean value) { call.add(value != JNI_FALSE ? "true" : "false"); }
template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>> describe(Call& call, Number number) {
    call.add(std::to_string(number));
}
// Other pointers, such as buffers, are not written.
template <class Pointee>
std::enable_if_t<!kIsReference<Pointee*>> describe(Call& call, Pointee* pointer) {
    call.memory = pointer;
}

// Writes the arguments of a method; `next` returns the next one as a jvalue of that type.
template <class Next>
void describe_all(Call& call, Next next) {
    std::string_view types = call.signature;
    types = types.substr(types.find('(') + 1);
    while (!types.empty() && types.front() != ')') {
        const jvalue value = next(types.front());
        switch (types.front()) {
        case 'Z':
            call.add(value.z != JNI_FALSE ? "true" : "false");
            break;
        case 'J':
            call.add(std::to_string(value.j));
            break;
        case 'F':
        case 'D':
            call.add(std::to_string(value.d));
            break;
        case 'L':
        case '[':
            call.add(call.recorder.label(call.env, value.l));
            break;
        default:
            call.add(std::to_string(value.i));
            break;
        }
        types = types.substr(types.find_first_not_of('['));
        types = types.substr(types.front() == 'L' ? types.find(';') + 1 : 1);
    }
}

// The arguments of a variadic call.
struct VariadicArguments {
    va_list list;
    explicit VariadicArguments(va_list given) { va_copy(list, given); }
    ~VariadicArguments() { va_end(list); }
    VariadicArguments(const VariadicArguments&) = delete;
    VariadicArguments& operator=(const VariadicArguments&) = delete;
};

void describe(Call& call, va_list given) {
    VariadicArguments arguments(given);
    describe_all(call, [&](char type) {
        jvalue value = {};
        switch (type) {
        case 'J':
            value.j = va_arg(arguments.list, jlong);
            break;
        case 'F':
        case 'D':
            value.d = va_arg(arguments.list, double);
            break;
        case 'L':
        case '[':
            value.l = va_arg(arguments.list, jobject);
            break;
        default:
            value.i = va_arg(arguments.list, int);
            break;
        }
        return value;
    });
}

void describe(Call& call, const jvalue* values) {
    describe_all(call, [&](char) { return *values++; });
}

// What the reference refers to that a call has returned.
std::string origin_of_result(const Call& call, jobject result) {
    const std::string& name = call.function.shown;
    if (name == "NewStringUTF") {
        return "string " + description(call.env, result);
    }
    if (name == "GetObjectClass" || name == "FindClass") {
        return "class " + description(call.env, result);
    }
    if (starts_with(name, "New")) {
        return "new " + description(call.env, result);
    }
    return call.origin.empty() ? name : call.origin;
}

std::string result_text(Call& call, jobject result) {
    if (result == nullptr) {
        return "null";
    }
    if (call.function.effect == Effect::kMakesGlobal) {
        call.recorder.held().add_memory(result, "global reference");
        return "global";
    }
    const std::string known = call.recorder.known_name(call.env, result);
    const std::string label =
        call.recorder.held().add(call.env, result, call.function.name, origin_of_result(call, result));
    if (starts_with(call.function.shown, "New")) {
        return label; // the arguments say what it is
    }
    return label + " " + (known.empty() ? description(call.env, result) : known);
}
std::string result_text(Call&, jboolean result) { return result != JNI_FALSE ? "true" : "false"; }
template <class Number>
std::enable_if_t<!std::is_pointer_v<Number>, std::string> result_text(Call&, Number result) {
    return std::to_string(result);
}
std::string result_text(Call& call, jmethodID method) {
    if (method != nullptr) {
        const std::string name = class_name(static_cast<jclass>(call.first)) + "." + call.names[0];
        call.recorder.add_id(method, name, call.names[1]);
    }
    return method == nullptr ? "null" : "";
}
std::string result_text(Call& call, jfieldID field) {
    if (field != nullptr) {
        call.recorder.add_id(field, class_name(static_cast<jclass>(call.first)) + "." + call.names[0], call.names[1]);
    }
    return field == nullptr ? "null" : "";
}
template <class Pointee>
std::enable_if_t<!kIsReference<Pointee*>, std::string> result_text(Call& call, Pointee* memory) {
    if (memory == nullptr) {
        return "null";
    }
    if (call.function.effect == Effect::kGets) {
        call.recorder.held().add_memory(memory, std::string(call.function.memory_word()) + " of " +
                                                    call.recorder.origin(call.env, call.first));
    }
    if constexpr (std::is_same_v<Pointee, const char>) {
        return quoted(memory);
    } else {
        return "";
    }
}

void finish(Call& call, const std::string& result) {
    call.recorder.line(call.text + ")" + (result.empty() ? "" : " = " + result));
}

// Does what a call does to local references, before the call, since that ends them.
void end_references(Held& held, Effect effect, jobject first) {
    if (effect == Effect::kDeletesLocal) {
        held.remove(first);
    } else if (effect == Effect::kPopsFrame) {
        held.pop_frame();
    } else if (effect == Effect::kPushesFrame) {
        held.push_frame();
    }
}

// Does what a call does to memory and global references, and notes in its text if these are not held.
void give_back(Call& call) {
    if (call.function.effect == Effect::kDeletesGlobal) {
        call.recorder.held().remove_memory(call.first);
    } else if (call.function.effect == Effect::kGivesBack) {
        const std::string held = call.recorder.held().remove_memory(call.memory);
        const std::string expected =
            std::string(call.function.memory_word()) + " of " + call.recorder.origin(call.env, call.first);
        if (held != expected) {
            call.add("not held");
        }
    }
}

template <class Result>
Result fail(Call& call) {
    const char* const exception = call.function.exception;
    jclass cls = original.FindClass(call.env, exception);
    original.ThrowNew(call.env, cls, "made to fail");
    original.DeleteLocalRef(call.env, cls);
    call.recorder.line(call.text + ") fails: " + (std::strrchr(exception, '/') + 1));
    return Result();
}

jobject first_reference() { return nullptr; }
template <class First, class... Rest>
jobject first_reference(First first, Rest... rest) {
    if constexpr (kIsReference<First>) {
        return first;
    } else {
        return first_reference(rest...);
    }
}

// Passes a call on and counts references only.
template <class Result, class... Arguments, class... Given>
Result count(Recorder& recorder, const Function& function, Result (JNICALL* Table::*slot)(JNIEnv*, Arguments...),
             JNIEnv* env, Given... given) {
    end_references(recorder.held(), function.effect, first_reference(given...));
    if constexpr (kIsReference<Result>) {
        Result result = (original.*slot)(env, given...);
        if (function.effect != Effect::kMakesGlobal) {
            recorder.held().add(nullptr, result, function.name, "");
        }
        return result;
    } else {
        return (original.*slot)(env, given...);
    }
}

// Passes a call on and records it.
template <class Result, class... Arguments, class... Given>
Result record(const Function& function, Result (JNICALL* Table::*slot)(JNIEnv*, Arguments...), JNIEnv* env,
              Given... given) {
    Recorder& recorder = Recorder::of_thread();
    if (!recorder.records()) {
        return (original.*slot)(env, given...);
    }
    if (!recorder.with_lines()) {
        return count(recorder, function, slot, env, given...);
    }
    Call call{recorder, env, function, function.shown + "(", "", ""};
    (describe(call, given), ...);
    end_references(recorder.held(), function.effect, call.first);
    give_back(call);
    if (function.exception != nullptr && recorder.is_to_fail(call.text)) {
        return fail<Result>(call);
    }
    if constexpr (std::is_void_v<Result>) {
        (original.*slot)(env, given...);
        finish(call, "");
    } else {
        Result result = (original.*slot)(env, given...);
        finish(call, result_text(call, result));
        return result;
    }
}

// Replacement for a function with a fixed number of arguments.
template <auto Slot>
struct Fixed;
template <class Result, class... Arguments, Result (JNICALL* Table::*Slot)(JNIEnv*, Arguments...)>
struct Fixed<Slot> {
    static inline Function function;
    static Result JNICALL call(JNIEnv* env, Arguments... arguments) {
        return record(function, Slot, env, arguments...);
    }
};

struct EndOf {
    va_list& arguments;
    ~EndOf() { va_end(arguments); }
};

// Replacement for a variadic function; it calls the one that takes a va_list.
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

template <auto Slot>
void replace(Table& table, const char* name) {
    Fixed<Slot>::function = Function(name);
    table.*Slot = Fixed<Slot>::call;
}

#define FIXED(NAME) replace<&Table::NAME>(table, #NAME)
#define CALLS(NAME)                                                                                                    \
    FIXED(NAME##V);                                                                                                    \
    FIXED(NAME##A);                                                                                                    \
    table.NAME = Variadic<&Table::NAME, &Table::NAME##V>::call
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

void replace_calls(Table& table) {
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

void replace_others(Table& table) {
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
bool replaced_all(const Table& table) {
    constexpr std::size_t kReserved = 4;
    constexpr std::size_t kSlots = sizeof(Table) / sizeof(void*);
    void* const* before = reinterpret_cast<void* const*>(&original);
    void* const* after = reinterpret_cast<void* const*>(&table);
    for (std::size_t i = kReserved; i < kSlots; ++i) {
        if (before[i] == after[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

bool replace_jni_functions() {
    Table* table = nullptr;
    if (jvmti->GetJNIFunctionTable(&table) != JVMTI_ERROR_NONE) {
        return false;
    }
    original = *table;
    replace_calls(*table);
    replace_others(*table);
    const bool replaced = replaced_all(*table) && jvmti->SetJNIFunctionTable(table) == JVMTI_ERROR_NONE;
    jvmti->Deallocate(reinterpret_cast<unsigned char*>(table));
    return replaced;
}

} // namespace tavro::agent
