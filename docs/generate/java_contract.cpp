// Prints what the library asks of the Java side, as docs/java-contract.md: it loads the library's objects
// into a Java environment that has everything, calls every native, and writes down what was looked up.

#include "jni/jni_VltTvList_Init.h"
#include "middleware/satl.h"
#include "script.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace {

// A Java object; a class is one whose text is its path.
struct Object {
    std::string type; // path of the class, or descriptor of an array
    std::string text;
    std::string element; // path of what a list holds
};

struct Member {
    std::string name;
    std::string signature;
    std::string key; // that was asked before the field was looked up
};

struct ClassUse {
    std::string path;
    std::vector<Member> methods;
    std::vector<Member> fields;
};

struct Natives {
    std::string path;
    std::vector<JNINativeMethod> methods;
};

// What all int fields hold in this round: broadcast type and medium among them, on which it depends
// what else is read.
constexpr jint kRounds = 10;
jint int_fields = 0;

std::deque<Object> objects;
std::deque<Member> members;
std::vector<ClassUse> uses;
std::vector<Natives> natives;
std::string asked_key;

Object& object(const std::string& type, const std::string& text = "", const std::string& element = "") {
    return objects.emplace_back(Object{type, text, element});
}

template <class Reference>
Reference ref(Object& object) {
    return reinterpret_cast<Reference>(&object);
}

Object& from(jobject reference) { return *reinterpret_cast<Object*>(reference); }

ClassUse& use_of(jclass cls) {
    const std::string& path = from(cls).text;
    auto found = std::find_if(uses.begin(), uses.end(), [&](const ClassUse& use) { return use.path == path; });
    return found != uses.end() ? *found : uses.emplace_back(ClassUse{path, {}, {}});
}

void note(std::vector<Member>& list, const Member& member) {
    const bool known = std::any_of(list.begin(), list.end(), [&](const Member& other) {
        return other.name == member.name && other.signature == member.signature && other.key == member.key;
    });
    if (!known) {
        list.push_back(member);
    }
}

template <class Id>
Id id_of(const char* name, const char* signature) {
    return reinterpret_cast<Id>(&members.emplace_back(Member{name, signature, ""}));
}

template <class Id>
const Member& member(Id id) {
    return *reinterpret_cast<const Member*>(id);
}

// The path in the descriptor of an object or of an array of objects.
std::string path_of(const std::string& descriptor) {
    const std::size_t start = descriptor.find('L') + 1;
    return descriptor.substr(start, descriptor.size() - start - 1);
}

void fill(JNINativeInterface_& table) {
    table.FindClass = [](JNIEnv*, const char* path) { return ref<jclass>(object("class", path)); };
    table.GetObjectClass = [](JNIEnv*, jobject of) { return ref<jclass>(object("class", from(of).type)); };
    table.GetMethodID = [](JNIEnv*, jclass cls, const char* name, const char* signature) {
        note(use_of(cls).methods, {name, signature, ""});
        return id_of<jmethodID>(name, signature);
    };
    table.GetFieldID = [](JNIEnv*, jclass cls, const char* name, const char* descriptor) {
        note(use_of(cls).fields, {name, descriptor, std::exchange(asked_key, "")});
        return id_of<jfieldID>(name, descriptor);
    };
    table.NewStringUTF = [](JNIEnv*, const char* text) { return ref<jstring>(object("java/lang/String", text)); };
    table.GetStringUTFChars = [](JNIEnv*, jstring text, jboolean*) { return from(text).text.c_str(); };
    table.ReleaseStringUTFChars = [](JNIEnv*, jstring, const char*) {};
    table.DeleteLocalRef = [](JNIEnv*, jobject) {};
    table.CallBooleanMethodV = [](JNIEnv*, jobject, jmethodID method, va_list arguments) -> jboolean {
        if (member(method).name == "isContainsKey") {
            va_arg(arguments, jobject);
            asked_key = from(va_arg(arguments, jobject)).text;
        }
        return JNI_TRUE;
    };
    table.CallIntMethodV = [](JNIEnv*, jobject, jmethodID, va_list) -> jint { return 1; };
    table.CallObjectMethodV = [](JNIEnv*, jobject on, jmethodID, va_list) {
        return ref<jobject>(object(from(on).element));
    };
    table.CallVoidMethodV = [](JNIEnv*, jobject, jmethodID, va_list) {};
    table.NewObjectV = [](JNIEnv*, jclass cls, jmethodID, va_list) { return ref<jobject>(object(from(cls).text)); };
    table.GetIntField = [](JNIEnv*, jobject, jfieldID) { return int_fields; };
    table.GetObjectField = [](JNIEnv*, jobject, jfieldID field) {
        const std::string& descriptor = member(field).signature;
        return ref<jobject>(descriptor[0] == '[' ? object(descriptor) : object(path_of(descriptor), "1,1"));
    };
    table.GetArrayLength = [](JNIEnv*, jarray) -> jsize { return 1; };
    table.GetObjectArrayElement = [](JNIEnv*, jobjectArray array, jsize) {
        return ref<jobject>(object(path_of(from(array).type)));
    };
    table.GetIntArrayElements = [](JNIEnv*, jintArray, jboolean*) { return &int_fields; };
    table.NewByteArray = [](JNIEnv*, jsize) { return ref<jbyteArray>(object("[B")); };
    table.SetByteArrayRegion = [](JNIEnv*, jbyteArray, jsize, jsize, const jbyte*) {};
    table.RegisterNatives = [](JNIEnv*, jclass cls, const JNINativeMethod* methods, jint count) -> jint {
        natives.push_back({from(cls).text, {methods, methods + count}});
        return JNI_OK;
    };
}

// A JNI type at `at`, which moves behind it, as Java writes it; classes without their package.
std::string java_type(const std::string& signature, std::size_t& at) {
    switch (signature[at++]) {
    case '[':
        return java_type(signature, at) + "[]";
    case 'L': {
        const std::size_t end = signature.find(';', at);
        std::string name = signature.substr(at, end - at);
        at = end + 1;
        name.erase(0, name.rfind('/') + 1);
        std::replace(name.begin(), name.end(), '$', '.');
        return name;
    }
    case 'B':
        return "byte";
    case 'Z':
        return "boolean";
    case 'V':
        return "void";
    default:
        return "int";
    }
}

std::string java_type(const std::string& descriptor) {
    std::size_t at = 0;
    return java_type(descriptor, at);
}

// A method as Java declares it, and its parameters' types.
std::string declaration(const std::string& name, const std::string& signature, std::vector<std::string>* types = {}) {
    std::string parameters;
    std::size_t at = 1;
    while (signature[at] != ')') {
        const std::string type = java_type(signature, at);
        parameters += (parameters.empty() ? "" : ", ") + type;
        if (types != nullptr) {
            types->push_back(type);
        }
    }
    ++at;
    const std::string result = java_type(signature, at);
    return name == "<init>" ? "constructor(" + parameters + ")" : result + " " + name + "(" + parameters + ")";
}

// The path of the record class that a list class's natives take; empty when none does.
std::string record_class(const Natives& list) {
    for (const JNINativeMethod& method : list.methods) {
        const std::string signature = method.signature;
        const std::size_t end = signature.find("InfoBase;");
        if (end != std::string::npos) {
            const std::size_t start = signature.rfind('L', signature.find("com/", 0)) + 1;
            return signature.substr(start, signature.find(';', end) - start);
        }
    }
    return "";
}

template <class... Arguments>
void invoke(const JNINativeMethod& method, JNIEnv* env, Arguments... arguments) {
    const std::string signature = method.signature;
    if (signature.back() == 'I') {
        reinterpret_cast<jint (*)(JNIEnv*, jobject, Arguments...)>(method.fnPtr)(env, nullptr, arguments...);
    } else {
        reinterpret_cast<jobject (*)(JNIEnv*, jobject, Arguments...)>(method.fnPtr)(env, nullptr, arguments...);
    }
}

// Calls a native with list id 1, record 1, a record object, or a list of one; keys that are wanted are
// null, which wants all.
void call(const Natives& list, const JNINativeMethod& method, JNIEnv* env) {
    std::vector<std::string> types;
    declaration(method.name, method.signature, &types);
    const bool reads = std::string(method.name).find("etInfo") != std::string::npos;
    std::vector<jobject> values;
    for (const std::string& type : types) {
        if (type == "String") {
            values.push_back(ref<jobject>(object("java/lang/String", "1,1")));
        } else if (type == "List") {
            values.push_back(reads ? nullptr : ref<jobject>(object("java/util/List", "", record_class(list))));
        } else if (type != "int") {
            values.push_back(ref<jobject>(object(record_class(list))));
        }
    }
    const std::size_t ints = types.size() - values.size();
    if (values.empty() && ints == 0) {
        invoke(method, env);
    } else if (values.empty() && ints == 1) {
        invoke(method, env, jint{1});
    } else if (values.empty()) {
        invoke(method, env, jint{1}, jint{1});
    } else if (ints == 1) {
        invoke(method, env, jint{1}, values[0]);
    } else if (values.size() == 1) {
        invoke(method, env, values[0]);
    } else {
        invoke(method, env, values[0], values[1]);
    }
}

void print_natives() {
    for (const Natives& list : natives) {
        std::printf("\n### %s\n\n```\n", list.path.c_str());
        for (const JNINativeMethod& method : list.methods) {
            std::printf("%s\n", declaration(method.name, method.signature).c_str());
        }
        std::printf("```\n");
    }
}

void print_use(const ClassUse& use) {
    std::printf("\n### %s\n", use.path.c_str());
    if (!use.methods.empty()) {
        std::printf("\n```\n");
        for (const Member& method : use.methods) {
            std::printf("%s\n", declaration(method.name, method.signature).c_str());
        }
        std::printf("```\n");
    }
    if (!use.fields.empty()) {
        std::printf("\n| Key | Field | Type |\n|---|---|---|\n");
        for (const Member& field : use.fields) {
            const std::string key = field.key.empty() ? "" : '`' + field.key + '`';
            std::printf("| %s | `%s` | %s |\n", key.c_str(), field.name.c_str(), java_type(field.signature).c_str());
        }
    }
}

constexpr char kIntroduction[] =
    R"(# What the library asks of the Java side

Made by the program `java_contract` of the test build, from what the library looks up: names and types
are found at run time, so that a difference shows only when the call is made. Obfuscators must leave
all of them alone.

## Natives

The Java classes declare these methods `native`, without `static`. Loading fails when one is missing.
)";

constexpr char kClasses[] = R"(
## Classes that are used

A field is read after `isContainsKey` was true for its key; the few without a key are read unasked. The
lists of wanted keys that getters take have the same keys, and null wants all of them.
)";

} // namespace

int main() {
    JNINativeInterface_ table{};
    fill(table);
    JNIEnv_ env{};
    env.functions = &table;
    tavro::script::Answer one;
    one.value = 1;
    tavro::script::always("x_nwl_get_num_rec", one);
    tavro::script::always("x_satl_get_num_recs", one);
    // A satellite whose mask has every bit: without an LNB kind its antenna type would not be handed over.
    tavro::script::Answer satellite;
    satellite.record.assign(sizeof(_SATL_REC_T), std::byte{0xFF});
    tavro::script::always("x_satl_get_rec", satellite);
    tavro::script::always("x_satl_get_rec_by_rec_idx", satellite);

    if (register_com_velotra_tv_tavro_channellist_VltTvList(&env) == 0) {
        std::fprintf(stderr, "the natives could not be registered\n");
        return 1;
    }
    for (int_fields = 0; int_fields < kRounds; ++int_fields) {
        for (const Natives& list : natives) {
            for (const JNINativeMethod& method : list.methods) {
                call(list, method, &env);
            }
        }
    }

    std::printf("%s", kIntroduction);
    print_natives();
    std::printf("%s", kClasses);
    for (const ClassUse& use : uses) {
        print_use(use);
    }
    return 0;
}
