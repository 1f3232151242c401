#include "jvm.h"

#include "floor.h"

#include <dlfcn.h>
#include <stdexcept>

namespace tavro::bench {

namespace {

constexpr char kPackage[] = "com/velotra/tv/tavro/services/channellist/";

std::string list_class(const std::string& kind) { return std::string(kPackage) + "VltTv" + kind + "List"; }

} // namespace

const std::vector<std::string> kMeasuringOptions = {
    "-Xms1200m", "-Xmx1200m", "-Xmn700m", "-XX:+UseSerialGC", "-XX:+AlwaysPreTouch", "-Xss8m", "-XX:-UsePerfData"};
const std::vector<std::string> kCheckingOptions = {"-Xmx128m", "-XX:+UseSerialGC", "-Xint", "-XX:-UsePerfData"};

Jvm::Jvm(const std::vector<std::string>& chosen) {
    std::vector<std::string> texts = chosen;
    texts.emplace_back("-Djava.class.path=" TAVRO_CLASS_PATH);
    texts.emplace_back("-Djava.library.path=" TAVRO_LIBRARY_PATH);
    std::vector<JavaVMOption> options(texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        options[i].optionString = texts[i].data();
    }
    JavaVMInitArgs arguments = {};
    arguments.version = JNI_VERSION_10;
    arguments.nOptions = static_cast<jint>(options.size());
    arguments.options = options.data();
    void* env = nullptr;
    if (JNI_CreateJavaVM(&vm_, &env, &arguments) != JNI_OK) {
        throw std::runtime_error("cannot start the Java virtual machine; is there too little free memory?");
    }
    env_ = static_cast<JNIEnv*>(env);
    for (const char* kind : {"Channel", "TransportStream", "Network", "Satellite"}) {
        list_object(kind);
    }

    // The library is loaded already. Calling JNI_OnLoad again shows the recording environment what it registers.
    void* library = dlopen(TAVRO_LIBRARY_PATH "/libvelotra_tavro_channellist.so", RTLD_NOW | RTLD_NOLOAD);
    on_load_ = library == nullptr ? nullptr : reinterpret_cast<jint (*)(JavaVM*, void*)>(dlsym(library, "JNI_OnLoad"));
    if (on_load_ == nullptr) {
        throw std::runtime_error("the Java classes have not loaded the library in " TAVRO_LIBRARY_PATH);
    }
    recorder_ = new RecordingEnv(env_); // lives as long as the virtual machine
    on_load_(recorder_->vm(), nullptr);
    on_load_(vm_, nullptr);
    if (recorder_->registered().size() != std::size(floor::tables)) {
        throw std::runtime_error("the library does not register four tables");
    }
    for (std::size_t i = 0; i < std::size(floor::tables); ++i) {
        const RecordingEnv::Registered& table = recorder_->registered()[i];
        floor::tables[i] = {table.path.c_str(), table.methods, table.count};
    }
}

Jvm::~Jvm() {
    if (vm_ != nullptr) {
        vm_->DestroyJavaVM();
    }
}

void Jvm::check(const char* what) {
    if (env_->ExceptionCheck() != JNI_FALSE) {
        env_->ExceptionDescribe();
        throw std::runtime_error(std::string(what) + " threw the exception above");
    }
}

jobject Jvm::global(jobject local) {
    jobject global = env_->NewGlobalRef(local);
    env_->DeleteLocalRef(local);
    return global;
}

void* Jvm::native(const std::string& kind, const std::string& method, const std::string& signature) const {
    for (std::size_t i = 0; i < std::size(floor::tables); ++i) {
        const floor::Table& table = floor::tables[i];
        for (jint j = 0; table.path == list_class(kind) && j < table.count; ++j) {
            if (table.methods[j].name == method && table.methods[j].signature == signature) {
                return table.methods[j].fnPtr;
            }
        }
    }
    throw std::runtime_error("the library registers no " + kind + " " + method + signature);
}

jobject Jvm::list_object(const std::string& kind) {
    const std::string path = list_class(kind);
    jclass cls = env_->FindClass(path.c_str());
    check("FindClass");
    jmethodID get = env_->GetStaticMethodID(cls, "getInstance", ("()L" + path + ";").c_str());
    check("getInstance");
    jobject list = env_->CallStaticObjectMethod(cls, get);
    check("getInstance");
    return global(list);
}

jstring Jvm::text(const std::string& characters) {
    return static_cast<jstring>(global(env_->NewStringUTF(characters.c_str())));
}

jobject Jvm::records(const std::string& kind, const std::string& first, int keys, const std::string& identifier_key,
                     int list_id, bool identified, int size) {
    jclass cls = env_->FindClass("com/velotra/tv/tavro/bench/Records");
    check("Records");
    jmethodID make = env_->GetStaticMethodID(cls, "make",
                                             "(Ljava/lang/String;Ljava/lang/String;ILjava/lang/String;IZI)"
                                             "Ljava/util/List;");
    check("Records.make");
    const std::string name = "com.velotra.tv.tavro.services.channellist.VltTv" + kind + "InfoBase";
    jobject list = env_->CallStaticObjectMethod(
        cls, make, env_->NewStringUTF(name.c_str()), env_->NewStringUTF(first.c_str()), keys,
        env_->NewStringUTF(identifier_key.c_str()), list_id, static_cast<jboolean>(identified), size);
    check("Records.make");
    return global(list);
}

std::vector<jobject> Jvm::elements(jobject list) {
    jclass cls = env_->GetObjectClass(list);
    const jint size = env_->CallIntMethod(list, env_->GetMethodID(cls, "size", "()I"));
    jmethodID get = env_->GetMethodID(cls, "get", "(I)Ljava/lang/Object;");
    std::vector<jobject> elements;
    for (jint i = 0; i < size; ++i) {
        elements.push_back(global(env_->CallObjectMethod(list, get, i)));
    }
    return elements;
}

jobject Jvm::list_of(const std::string& characters) {
    jclass cls = env_->FindClass("java/util/ArrayList");
    jobject list = env_->NewObject(cls, env_->GetMethodID(cls, "<init>", "()V"));
    env_->CallBooleanMethod(list, env_->GetMethodID(cls, "add", "(Ljava/lang/Object;)Z"),
                            env_->NewStringUTF(characters.c_str()));
    return global(list);
}

} // namespace tavro::bench
