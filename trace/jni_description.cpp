#include "trace/jni_description.h"

#include <string_view>

namespace tavro::trace {
namespace {

// Writes the arguments of a method; `next` returns the next one as a jvalue of that type.
template <class Next>
void describe_all(JniObserver& observer, JniCall& call, Next next) {
    std::string_view types = call.signature;
    types = types.substr(types.find('(') + 1);
    while (!types.empty() && types.front() != ')') {
        const jvalue value = next(types.front());
        switch (types.front()) {
        case 'Z':
            call.arguments.emplace_back(value.z != JNI_FALSE ? "true" : "false");
            break;
        case 'J':
            call.arguments.push_back(std::to_string(value.j));
            break;
        case 'F':
        case 'D':
            call.arguments.push_back(std::to_string(value.d));
            break;
        case 'L':
        case '[':
            call.arguments.push_back(observer.reference(call.env, value.l));
            break;
        default:
            call.arguments.push_back(std::to_string(value.i));
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

std::string look_up_result(JniObserver& observer, JniCall& call, const void* id) {
    if (id == nullptr) {
        return "null";
    }
    observer.add_member(id, class_name(static_cast<jclass>(call.first)) + "." + call.texts[0], call.texts[1]);
    return "";
}

} // namespace

void describe(JniObserver& observer, JniCall& call, va_list given) {
    VariadicArguments arguments(given);
    describe_all(observer, call, [&](char type) {
        jvalue value = {};
        // The analyzer does not see that the constructor copies the list.
        // NOLINTBEGIN(clang-analyzer-valist.Uninitialized)
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
        // NOLINTEND(clang-analyzer-valist.Uninitialized)
        return value;
    });
}

void describe(JniObserver& observer, JniCall& call, const jvalue* values) {
    describe_all(observer, call, [&](char) { return *values++; });
}

std::string describe_result(JniObserver& observer, JniCall& call, jmethodID method) {
    return look_up_result(observer, call, method);
}
std::string describe_result(JniObserver& observer, JniCall& call, jfieldID field) {
    return look_up_result(observer, call, field);
}

} // namespace tavro::trace
