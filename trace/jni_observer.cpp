#include "trace/jni_observer.h"

#include <string_view>

namespace tavro::trace {
namespace {

constexpr char kPackage[] = "com/velotra/tv/tavro/services/channellist/";

bool starts_with(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }
bool ends_with(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

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

} // namespace

JniFunction::JniFunction(const char* text)
    : name(text), shown(text), effect(effect_of(text)), exception(exception_of(text)) {
    const bool varies = starts_with(shown, "Call") || starts_with(shown, "NewObject");
    if (varies && (shown.back() == 'V' || shown.back() == 'A')) {
        shown.pop_back();
    }
}

std::string JniCall::text() const {
    std::string all = function.shown + "(";
    for (const std::string& argument : arguments) {
        all += (all.back() == '(' ? "" : ", ") + argument;
    }
    return all;
}

std::string class_name(jclass cls) {
    std::string signature = class_signature(cls);
    if (signature.empty() || signature.front() != 'L') {
        return signature;
    }
    signature.pop_back();
    return signature.substr(signature.rfind('/') + 1);
}

std::string abbreviated(std::string text) {
    for (std::size_t at = text.find(kPackage); at != std::string::npos; at = text.find(kPackage, at)) {
        text.replace(at, sizeof(kPackage) - 1, ".../");
    }
    return text;
}

} // namespace tavro::trace
