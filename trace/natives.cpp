#include "trace/natives.h"

#include "docs/generate/natives.h"
#include "trace/java_values.h"
#include "trace/sink.h"

#include <jni.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <map>
#include <mutex>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace tavro::trace {
namespace {

constexpr std::string_view kPackage = "Lcom/velotra/tv/tavro/services/channellist/";

// A native that is traced.
struct Native {
    void* function = nullptr;
    std::string title;                   // VltTvChannelList.native_open
    std::vector<std::string> parameters; // their names, as far as they are known
};

std::string value_text(JNIEnv*, jint number) { return std::to_string(number); }
std::string value_text(JNIEnv* env, jobject object) { return object_text(env, object); }

std::string result_text(JNIEnv* env, jint number) { return value_text(env, number); }
std::string result_text(JNIEnv* env, jobject object) { return value_text(env, object); }

// Without memory, a call is made and not traced.
template <class Action>
void attempt(Action action) {
    const Quiet here;
    try {
        action();
    } catch (const std::exception&) {
        // Out of memory.
    }
}

// Not inlined: once per shape is enough.
template <class Result, class... Arguments>
__attribute__((noinline)) Result traced(const Native& native, JNIEnv* env, jobject self, Arguments... arguments) {
    auto* const function = reinterpret_cast<Result (*)(JNIEnv*, jobject, Arguments...)>(native.function);
    Event event(Category::kNative, native.title.c_str());
    attempt([&] {
        std::size_t index = 0;
        [[maybe_unused]] const auto name = [&] {
            return index < native.parameters.size() ? native.parameters[index++] : std::string();
        };
        (event.argument(name(), value_text(env, arguments)), ...);
    });
    event.begin();
    const Result result = function(env, self, arguments...);
    event.returned();
    std::string shown;
    attempt([&] {
        const std::string exception = pending_exception(env);
        shown = exception.empty() ? result_text(env, result) : "threw " + exception;
    });
    event.finish(shown);
    return result;
}

// How many natives of one shape can be traced. The library has at most 26.
constexpr std::size_t kSlots = 32;

// Functions for natives that take and return the same types. References of all types are passed alike.
template <class Result, class... Arguments>
class Shape {
public:
    // Returns a function for the native; null if all are in use.
    static void* add(Native native) {
        if (used_ == kSlots) {
            return nullptr;
        }
        natives_[used_] = std::move(native);
        return functions(std::make_index_sequence<kSlots>())[used_++];
    }

private:
    template <std::size_t Slot>
    static Result JNICALL call(JNIEnv* env, jobject self, Arguments... arguments) {
        return traced<Result>(natives_[Slot], env, self, arguments...);
    }
    template <std::size_t... Slots>
    static std::array<void*, kSlots> functions(std::index_sequence<Slots...>) {
        return {reinterpret_cast<void*>(&call<Slots>)...};
    }

    static std::array<Native, kSlots>& natives_;
    static std::size_t used_;
};

// Never destroyed: natives may run during exit.
template <class Result, class... Arguments>
std::array<Native, kSlots>& Shape<Result, Arguments...>::natives_ = *new std::array<Native, kSlots>;
template <class Result, class... Arguments>
std::size_t Shape<Result, Arguments...>::used_ = 0;

// The types of a signature, one letter each, the result last: "IL" and then "I" for (ILjava/util/List;)I.
std::string shape_of(const std::string& signature) {
    std::string shape;
    for (std::size_t at = 1; at < signature.size(); ++at) {
        char letter = signature[at];
        while (signature[at] == '[') {
            ++at;
        }
        if (signature[at] == 'L') {
            at = signature.find(';', at);
            letter = 'L';
        }
        shape += letter == '[' ? 'L' : letter;
    }
    return shape;
}

void* add_to_shape(const std::string& shape, Native native) {
    using Add = void* (*)(Native);
    static const std::map<std::string, Add>& shapes = *new std::map<std::string, Add>{
        {")I", Shape<jint>::add},
        {"I)I", Shape<jint, jint>::add},
        {"L)I", Shape<jint, jobject>::add},
        {"II)I", Shape<jint, jint, jint>::add},
        {"IL)I", Shape<jint, jint, jobject>::add},
        {"I)L", Shape<jobject, jint>::add},
        {"L)L", Shape<jobject, jobject>::add},
        {"II)L", Shape<jobject, jint, jint>::add},
        {"IL)L", Shape<jobject, jint, jobject>::add},
        {"LL)L", Shape<jobject, jobject, jobject>::add},
    };
    const auto found = shapes.find(shape);
    return found == shapes.end() ? nullptr : found->second(std::move(native));
}

// "VltTvChannelList" for the signature of its class.
std::string simple_name(const std::string& cls) {
    return cls.substr(kPackage.size(), cls.size() - kPackage.size() - 1);
}

unsigned kind_of(const std::string& cls) {
    const std::string name = simple_name(cls);
    return name == "VltTvChannelList"           ? natives::kService
           : name == "VltTvTransportStreamList" ? natives::kStream
           : name == "VltTvNetworkList"         ? natives::kNetwork
           : name == "VltTvSatelliteList"       ? natives::kSatellite
                                                : 0U;
}

// The Java types of a signature's parameters without packages: {"int", "String"}.
std::vector<std::string> types_of(std::string_view signature) {
    std::vector<std::string> types;
    signature = signature.substr(1, signature.find(')') - 1);
    while (!signature.empty()) {
        if (signature.front() != 'L') {
            types.emplace_back(signature.front() == 'I' ? "int" : "");
            signature.remove_prefix(1);
            continue;
        }
        const std::string_view name = signature.substr(0, signature.find(';'));
        types.emplace_back(name.substr(name.rfind('/') + 1));
        signature.remove_prefix(name.size() + 1);
    }
    return types;
}

// The name as the satellite list spells it: nativeOpen for native_open.
std::string satellite_spelling(std::string name) {
    const std::size_t underscore = name.find('_');
    if (underscore != std::string::npos && underscore + 1 < name.size()) {
        name.erase(underscore, 1);
        name[underscore] = static_cast<char>(name[underscore] - 'a' + 'A');
    }
    return name;
}

// Splits "int native_open(int mwdbId, String path)" into the name, and a type and a name per parameter.
struct Declaration {
    std::string name;
    std::vector<std::string> types;
    std::vector<std::string> parameters;

    explicit Declaration(std::string_view text) {
        const std::size_t open = text.find('(');
        const std::size_t space = text.rfind(' ', open) + 1;
        name = text.substr(space, open - space);
        text = text.substr(open + 1, text.size() - open - 2);
        while (!text.empty()) {
            const std::string_view parameter = text.substr(0, text.find(','));
            const std::size_t between = parameter.find(' ');
            types.emplace_back(parameter.substr(0, between));
            parameters.emplace_back(parameter.substr(between + 1));
            text.remove_prefix(parameter.size() == text.size() ? text.size() : parameter.size() + 2);
        }
    }
};

std::vector<std::string> parameters_of(const NativeMethod& method) {
    const unsigned kind = kind_of(method.cls);
    const std::vector<std::string> types = types_of(method.signature);
    for (const natives::Native& native : natives::kNatives) {
        if ((native.kinds & kind) == 0) {
            continue;
        }
        const Declaration declaration(native.declaration);
        const bool same_name = method.name == declaration.name ||
                               (kind == natives::kSatellite && method.name == satellite_spelling(declaration.name));
        if (same_name && types == declaration.types) {
            return declaration.parameters;
        }
    }
    return {};
}

} // namespace

void* replacement_of(const NativeMethod& method, void* function) {
    if (method.cls.rfind(kPackage, 0) != 0) {
        return function;
    }
    static std::mutex& mutex = *new std::mutex;
    static auto& known = *new std::map<std::tuple<std::string, std::string, std::string, void*>, void*>;
    const std::lock_guard<std::mutex> lock(mutex);
    void*& replacement = known[{method.cls, method.name, method.signature, function}];
    if (replacement == nullptr) {
        const std::string title = simple_name(method.cls) + '.' + method.name;
        replacement = add_to_shape(shape_of(method.signature), {function, title, parameters_of(method)});
        if (replacement == nullptr) {
            remark("calls of " + title + method.signature +
                   " are not traced: there are too many natives, or its types are unknown");
            replacement = function;
        }
    }
    return replacement;
}

} // namespace tavro::trace
