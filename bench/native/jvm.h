// The embedded Java virtual machine with the library in it, over the memory platform.
#pragma once

#include "recording_env.h"

#include <jni.h>

#include <string>
#include <vector>

namespace tavro::bench {

// Options for measuring, so that heap and collector are always the same and no page of the heap is new.
extern const std::vector<std::string> kMeasuringOptions;
// Options for a few calls.
extern const std::vector<std::string> kCheckingOptions;

class Jvm {
public:
    // Starts the virtual machine, loads the library through the Java classes and makes its managers. Throws
    // std::runtime_error that says what failed.
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

    // The list object of a kind; a global reference.
    jobject list_object(const std::string& kind);

    jstring text(const std::string& characters); // a global reference
    // Record objects with values; see Records.make. A global reference to a java.util.List.
    jobject records(const std::string& kind, const std::string& first, int keys, const std::string& identifier_key,
                    int list_id, bool identified, int size);
    // The elements of a java.util.List; global references.
    std::vector<jobject> elements(jobject list);
    // A java.util.List of one text; a global reference.
    jobject list_of(const std::string& characters);

    // Throws with what a Java call has thrown.
    void check(const char* what);

private:
    jobject global(jobject local);

    JavaVM* vm_ = nullptr;
    JNIEnv* env_ = nullptr;
    RecordingEnv* recorder_ = nullptr;
    jint (*on_load_)(JavaVM*, void*) = nullptr;
};

} // namespace tavro::bench
