// An embedded Java virtual machine with the library loaded, over the memory platform.
#pragma once

#include "recording_env.h"

#include <jni.h>

#include <string>
#include <vector>

namespace tavro::bench {

// Options for measuring: a fixed heap and collector, and all heap pages touched in advance.
extern const std::vector<std::string> kMeasuringOptions;
// Options for a few calls.
extern const std::vector<std::string> kCheckingOptions;

class Jvm {
public:
    // Starts the virtual machine, loads the library through the Java classes and creates its managers. Throws
    // std::runtime_error.
    explicit Jvm(const std::vector<std::string>& options);
    Jvm(const Jvm&) = delete;
    Jvm& operator=(const Jvm&) = delete;
    ~Jvm();

    JNIEnv* env() { return env_; }
    JavaVM* vm() { return vm_; }
    RecordingEnv& recorder() { return *recorder_; }

    // The function that the library registered for a method of VltTv<KIND>List.
    void* native(const std::string& kind, const std::string& method, const std::string& signature) const;

    // The library's JNI_OnLoad.
    jint (*on_load() const)(JavaVM*, void*) { return on_load_; }

    // The list object of a kind, as a global reference.
    jobject list_object(const std::string& kind);

    jstring text(const std::string& characters); // a global reference
    // Makes record objects with values, see Records.make. Returns a global reference to a java.util.List.
    jobject records(const std::string& kind, const std::string& first, int keys, const std::string& identifier_key,
                    int list_id, bool identified, int size);
    // The elements of a java.util.List, as global references.
    std::vector<jobject> elements(jobject list);
    // A java.util.List with one string, as a global reference.
    jobject list_of(const std::string& characters);

    // If a Java exception is pending, prints it and throws std::runtime_error.
    void check(const char* what);

private:
    jobject global(jobject local);

    JavaVM* vm_ = nullptr;
    JNIEnv* env_ = nullptr;
    RecordingEnv* recorder_ = nullptr;
    jint (*on_load_)(JavaVM*, void*) = nullptr;
};

} // namespace tavro::bench
