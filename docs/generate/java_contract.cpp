// Prints what the library asks of the Java side, as docs/java-contract.md: it loads the library's objects
// into a Java environment that has everything, calls every native, and writes down what was looked up.

#include "jni/jni_VltTvList_Init.h"
#include "middleware/satl.h"
#include "natives.h"
#include "script.h"

#include <algorithm>
#include <cctype>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <deque>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
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
std::vector<Natives> registered;
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
        registered.push_back({from(cls).text, {methods, methods + count}});
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

// Of a class's path, its name.
std::string class_name(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// The bit of a list class in natives::Kinds.
unsigned kind_of(const Natives& list) {
    const std::pair<const char*, natives::Kinds> kinds[] = {{"VltTvChannelList", natives::kService},
                                                            {"VltTvTransportStreamList", natives::kStream},
                                                            {"VltTvNetworkList", natives::kNetwork},
                                                            {"VltTvSatelliteList", natives::kSatellite}};
    for (const auto& [name, kind] : kinds) {
        if (class_name(list.path) == name) {
            return kind;
        }
    }
    return 0;
}

// A row's declaration as the class spells it.
std::string spelled(const natives::Native& row, unsigned kind) {
    std::string text = row.declaration;
    const std::size_t at = text.find("native_");
    if (kind == natives::kSatellite && at != std::string::npos) {
        text.erase(at + std::strlen("native"), 1);
        char& letter = text[at + std::strlen("native")];
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    return text;
}

const std::regex kParameterName(" (\\w+)(?=[,)])");

// The only row that describes a native. Otherwise complains and returns null.
const natives::Native* row_of(const Natives& list, const std::string& native) {
    const natives::Native* found = nullptr;
    int rows = 0;
    for (const natives::Native& row : natives::kNatives) {
        const unsigned kind = kind_of(list);
        if ((row.kinds & kind) != 0 && std::regex_replace(spelled(row, kind), kParameterName, "") == native) {
            found = &row;
            ++rows;
        }
    }
    if (rows != 1) {
        std::fprintf(stderr, "docs/generate/natives.h has %d rows for %s of %s, not one\n", rows, native.c_str(),
                     list.path.c_str());
    }
    return rows == 1 ? found : nullptr;
}

// Whether every native has a row of its own, every row is of a native, and the parameters that rows name are the ones
// that have a meaning.
bool check_natives() {
    bool complete = true;
    for (const Natives& list : registered) {
        const unsigned kind = kind_of(list);
        const auto rows = std::count_if(std::begin(natives::kNatives), std::end(natives::kNatives),
                                        [&](const natives::Native& row) { return (row.kinds & kind) != 0; });
        if (static_cast<std::size_t>(rows) != list.methods.size()) {
            std::fprintf(stderr, "docs/generate/natives.h has %d rows for the %zu natives of %s\n",
                         static_cast<int>(rows), list.methods.size(), list.path.c_str());
            complete = false;
        }
        for (const JNINativeMethod& method : list.methods) {
            complete = row_of(list, declaration(method.name, method.signature)) != nullptr && complete;
        }
    }
    std::set<std::string> used;
    for (const natives::Native& row : natives::kNatives) {
        const std::string text = row.declaration;
        for (std::sregex_iterator name(text.begin(), text.end(), kParameterName), end; name != end; ++name) {
            used.insert((*name)[1]);
        }
    }
    std::set<std::string> explained;
    for (const natives::Parameter& parameter : natives::kParameters) {
        std::istringstream names(parameter.name);
        for (std::string name; std::getline(names >> std::ws, name, ',');) {
            explained.insert(name);
        }
    }
    if (used != explained) {
        std::fprintf(stderr, "docs/generate/natives.h does not explain exactly the parameters that its rows name\n");
        complete = false;
    }
    return complete;
}

void print_parameters() {
    std::printf("\n| Parameter | Meaning |\n|---|---|\n");
    for (const natives::Parameter& parameter : natives::kParameters) {
        const std::string names = std::regex_replace(std::string(parameter.name), std::regex("\\w+"), "`$&`");
        std::printf("| %s | %s |\n", names.c_str(), parameter.meaning);
    }
}

void print_natives() {
    for (const Natives& list : registered) {
        std::printf("\n### %s\n\n| Native | Effect | Result | On failure |\n|---|---|---|---|\n", list.path.c_str());
        for (const JNINativeMethod& method : list.methods) {
            const natives::Native& row = *row_of(list, declaration(method.name, method.signature));
            std::printf("| `%s` | %s | %s | %s |\n", spelled(row, kind_of(list)).c_str(), row.effect, row.result,
                        row.failure);
        }
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

The program `java_contract` of the test build makes this document: it calls every native, and writes down which classes,
methods and fields the library looks up. What the natives do is a table in `docs/generate/natives.h`; the program fails
unless that has exactly one row for each native, with the parameter types of its registration.

Names and types are looked up at run time, so a difference shows only when the call is made. Keep obfuscators away from
all of them.

## Natives

The Java classes declare these methods `native`, without `static`. Loading fails when one is missing.

- An identifier can be *refused*; [porting.md](porting.md#bad-input) says which are, and which end the process.
- When Java lacks a class, method or field that a native looks up, the native returns its failure result and the
  exception stays pending.
- A native opens its list when it is not open, unless its table says otherwise; only `native_open` creates lists.
- Which natives lock the list is in [porting.md](porting.md#when-a-lock-fails).
)";

constexpr char kClasses[] = R"(
## Classes that are used

A field with a key is read when `isContainsKey` has returned true for the key; a field without one is always read. The
lists of keys that getters take hold the same keys.
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
        for (const Natives& list : registered) {
            for (const JNINativeMethod& method : list.methods) {
                call(list, method, &env);
            }
        }
    }

    if (!check_natives()) {
        return 1;
    }
    std::printf("%s", kIntroduction);
    print_parameters();
    print_natives();
    std::printf("%s", kClasses);
    for (const ClassUse& use : uses) {
        print_use(use);
    }
    return 0;
}
