// A JNI environment that records every call and passes it on to the virtual machine.
#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace tavro::bench {

// Supports the JNI functions that the library uses. Any other one aborts the program with its slot number. References
// are numbered in order of appearance, so that two runs of the same calls give the same text; method and field ids are
// shown by name and signature.
class RecordingEnv {
public:
    explicit RecordingEnv(JNIEnv* real);

    JNIEnv* env() { return &env_; }
    JavaVM* vm() { return &vm_; } // its GetEnv returns env()

    // Clears the journal and the reference numbers, and starts recording the memory platform's calls too.
    void start();
    // Stops recording the platform's calls and returns the journal.
    std::vector<std::string> stop();

    // The natives registered through env() so far.
    struct Registered {
        std::string path; // of the class
        const JNINativeMethod* methods;
        jint count;
    };
    const std::vector<Registered>& registered() const { return registered_; }

private:
    friend struct RecordingCalls;

    JNIEnv env_;
    JavaVM vm_;
    std::vector<Registered> registered_;
};

} // namespace tavro::bench
