// A JNI environment that writes down every call before the virtual machine makes it.
#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace tavro::bench {

// The calls of the JNI table that the library uses, each passed on to the real environment; any other ends the
// program with its number. References are written by the order in which they came, so that two runs of the same
// calls read the same; ids by what they were looked up with.
class RecordingEnv {
public:
    explicit RecordingEnv(JNIEnv* real);

    JNIEnv* env() { return &env_; }
    JavaVM* vm() { return &vm_; } // its GetEnv gives env()

    // Forgets the journal and the numbers of references, and journals the memory platform's calls too.
    void start();
    // Ends the platform's part and returns the journal.
    std::vector<std::string> stop();

    // What was registered through env() so far.
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
