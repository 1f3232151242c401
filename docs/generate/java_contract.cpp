// Prints what the library asks of the Java side, as docs/java-contract.md. It loads the library's objects into a fake
// Java environment that has everything, calls every native and lists what was looked up.

#include "fake_jni.h"
#include "jni/jni_VltTvList_Init.h"
#include "middleware/satl.h"
#include "natives.h"
#include "script.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using tavro::test::FakeJni;
using tavro::test::FakeObject;

struct ClassUse {
    std::string path;
    std::vector<FakeJni::LookUp> methods;
    std::vector<FakeJni::LookUp> fields;
};

// The list classes with their natives.
std::vector<FakeJni::Registered> registered;

// The path in the descriptor of an object or of an array of objects.
std::string path_of(const std::string& descriptor) {
    const std::size_t start = descriptor.find('L') + 1;
    return descriptor.substr(start, descriptor.size() - start - 1);
}

// A Java environment in which records have every key and every field. Objects are named after the path of their class.
class CompleteJni : public FakeJni {
public:
    // The value of every int field, the broadcast type and medium among them. What else is read depends on it.
    jint number = 0;

    FakeObject& complete(const std::string& path) {
        FakeObject& made = object(path);
        made.has_all_keys = true;
        return made;
    }

private:
    jint int_value(FakeObject&, const LookUp&) override { return number; }
    FakeObject* object_value(FakeObject&, const LookUp& field) override {
        const std::string& descriptor = field.signature;
        if (descriptor == "[I") {
            return &int_array({number});
        }
        if (descriptor[0] == '[') {
            return &list({&complete(path_of(descriptor))});
        }
        FakeObject& text = object(path_of(descriptor));
        text.text = "1,1";
        return &text;
    }
};

constexpr jint kRounds = 10; // one for each value of the int fields

// The path of the class of a look-up. The fake environment names the class of an object after the object.
std::string path_of(const FakeJni::LookUp& look_up) {
    const std::string class_of = "class of ";
    const std::string& name = look_up.cls;
    return name.compare(0, class_of.size(), class_of) == 0 ? name.substr(class_of.size()) : name;
}

std::vector<ClassUse> uses_of(const FakeJni& jni) {
    std::vector<ClassUse> uses;
    for (const FakeJni::LookUp& look_up : jni.look_ups()) {
        const std::string path = path_of(look_up);
        auto use = std::find_if(uses.begin(), uses.end(), [&](const ClassUse& of) { return of.path == path; });
        if (use == uses.end()) {
            use = uses.insert(use, ClassUse{path, {}, {}});
        }
        auto& members = look_up.signature[0] == '(' ? use->methods : use->fields;
        const bool known = std::any_of(members.begin(), members.end(), [&](const FakeJni::LookUp& other) {
            return other.name == look_up.name && other.signature == look_up.signature && other.key == look_up.key;
        });
        if (!known) {
            members.push_back(look_up);
        }
    }
    return uses;
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
std::string record_class(const FakeJni::Registered& list) {
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
void call(CompleteJni& jni, const FakeJni::Registered& list, const JNINativeMethod& method) {
    std::vector<std::string> types;
    declaration(method.name, method.signature, &types);
    const bool reads = std::string(method.name).find("etInfo") != std::string::npos;
    std::vector<jobject> values;
    for (const std::string& type : types) {
        if (type == "String") {
            values.push_back(FakeJni::ref(jni.string("1,1")));
        } else if (type == "List") {
            FakeObject& records = jni.object("java/util/List");
            records.elements = {&jni.complete(record_class(list))};
            values.push_back(reads ? nullptr : FakeJni::ref(records));
        } else if (type != "int") {
            values.push_back(FakeJni::ref(jni.complete(record_class(list))));
        }
    }
    const std::size_t ints = types.size() - values.size();
    if (values.empty() && ints == 0) {
        invoke(method, jni.env());
    } else if (values.empty() && ints == 1) {
        invoke(method, jni.env(), jint{1});
    } else if (values.empty()) {
        invoke(method, jni.env(), jint{1}, jint{1});
    } else if (ints == 1) {
        invoke(method, jni.env(), jint{1}, values[0]);
    } else if (values.size() == 1) {
        invoke(method, jni.env(), values[0]);
    } else {
        invoke(method, jni.env(), values[0], values[1]);
    }
}

// Of a class's path, its name.
std::string class_name(const std::string& path) { return path.substr(path.rfind('/') + 1); }

// The bit of a list class in natives::Kinds.
unsigned kind_of(const FakeJni::Registered& list) {
    const std::pair<const char*, natives::Kinds> kinds[] = {{"VltTvChannelList", natives::kService},
                                                            {"VltTvTransportStreamList", natives::kStream},
                                                            {"VltTvNetworkList", natives::kNetwork},
                                                            {"VltTvSatelliteList", natives::kSatellite}};
    for (const auto& [name, kind] : kinds) {
        if (class_name(list.cls) == name) {
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
const natives::Native* row_of(const FakeJni::Registered& list, const std::string& native) {
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
                     list.cls.c_str());
    }
    return rows == 1 ? found : nullptr;
}

// Whether every native has a row of its own, every row is of a native, and the parameters that rows name are the ones
// that have a meaning.
bool check_natives() {
    bool complete = true;
    for (const FakeJni::Registered& list : registered) {
        const unsigned kind = kind_of(list);
        const auto rows = std::count_if(std::begin(natives::kNatives), std::end(natives::kNatives),
                                        [&](const natives::Native& row) { return (row.kinds & kind) != 0; });
        if (static_cast<std::size_t>(rows) != list.methods.size()) {
            std::fprintf(stderr, "docs/generate/natives.h has %d rows for the %zu natives of %s\n",
                         static_cast<int>(rows), list.methods.size(), list.cls.c_str());
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
    for (const FakeJni::Registered& list : registered) {
        std::printf("\n### %s\n\n| Native | Effect | Result | On failure |\n|---|---|---|---|\n", list.cls.c_str());
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
        for (const FakeJni::LookUp& method : use.methods) {
            std::printf("%s\n", declaration(method.name, method.signature).c_str());
        }
        std::printf("```\n");
    }
    if (!use.fields.empty()) {
        std::printf("\n| Key | Field | Type |\n|---|---|---|\n");
        for (const FakeJni::LookUp& field : use.fields) {
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
    CompleteJni jni;
    tavro::script::Answer one;
    one.value = 1;
    tavro::script::always("x_nwl_get_num_rec", one);
    tavro::script::always("x_satl_get_num_recs", one);
    // A satellite whose mask has every bit: without an LNB kind its antenna type would not be handed over.
    tavro::script::Answer satellite;
    satellite.record.assign(sizeof(_SATL_REC_T), std::byte{0xFF});
    tavro::script::always("x_satl_get_rec", satellite);
    tavro::script::always("x_satl_get_rec_by_rec_idx", satellite);

    if (register_com_velotra_tv_tavro_channellist_VltTvList(jni.env()) == 0) {
        std::fprintf(stderr, "the natives could not be registered\n");
        return 1;
    }
    registered = jni.registered;
    for (jni.number = 0; jni.number < kRounds; ++jni.number) {
        for (const FakeJni::Registered& list : registered) {
            for (const JNINativeMethod& method : list.methods) {
                call(jni, list, method);
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
    for (const ClassUse& use : uses_of(jni)) {
        print_use(use);
    }
    return 0;
}
