// Records the JNI calls that natives of the list classes make on one thread, and what they hold.
#pragma once

#include "trace/jni_observer.h"

#include <jni.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tavro::agent {

// A text in double quotes; other bytes than printable ASCII are escaped.
std::string quoted(const char* text);

// The size of an array as "byte[552]", a string's text, a class's name; the name of any other object's class.
std::string description(JNIEnv* env, jobject object);

// A local reference that a native has got.
struct Reference {
    std::string label;   // "string3"; numbers are used again after the reference was deleted
    std::string origin;  // what it refers to: "field VltTvSatelliteInfoBase.Name"
    const char* made_by; // the JNI function
    int number;
};

// What one thread's natives hold.
class Held {
public:
    // Returns the new reference's label. Without `env` it has none.
    std::string add(JNIEnv* env, jobject reference, const char* made_by, const std::string& origin);
    // Ignores unknown references, which are arguments of the native.
    void remove(jobject reference);
    void push_frame() { frames_.emplace_back(); }
    void pop_frame();
    const Reference* find(jobject reference) const;

    // Characters, array elements and global references, by their address.
    void add_memory(const void* memory, const std::string& text) { memory_.emplace(memory, text); }
    // Returns what was held there: "" if nothing.
    std::string remove_memory(const void* memory);

    // The most references at once, and those by the functions that made them: "12 NewStringUTF, 3 GetObjectClass".
    int maximum() const { return maximum_; }
    std::string maximum_by_function() const;

    // "reference class VltTvChannelInfoBase", "characters of field VltTvSatelliteInfoBase.Name", sorted.
    std::vector<std::string> texts() const;

private:
    void forget(const Reference& reference);

    std::vector<std::map<jobject, Reference>> frames_ = std::vector<std::map<jobject, Reference>>(1);
    std::multimap<const void*, std::string> memory_;
    std::set<int> numbers_;
    std::map<const char*, int> live_by_;
    std::map<const char*, int> maximum_by_;
    int live_ = 0;
    int maximum_ = 0;
};

class Recorder final : public trace::JniObserver {
public:
    static Recorder& of_thread();

    // The recorder of the current thread; null if it is off, or the calling native is not one of a list class.
    static trace::JniObserver* of_calls(JNIEnv* env);

    // Which call fails: of those that can fail and whose text contains `text`, the one with that number, from 1 on.
    struct Failing {
        std::string text;
        int number;
    };

    // Starts to record. The names stand for the objects wherever these occur. Without lines only references are
    // counted.
    void begin(std::vector<std::string> names, std::vector<jobject> objects, Failing failing, bool with_lines);
    // Ends recording; the rest stays until the next begin().
    void end(JNIEnv* env);

    bool with_lines() const { return with_lines_; }

    void line(const std::string& text) { lines_.push_back(text); }
    void end_line(const std::string& text) { lines_.back() += text; }

    bool describes() const override { return with_lines_; }
    // A reference in a line: its label, the name of a known object, or what it refers to.
    std::string reference(JNIEnv* env, jobject object) override;
    std::string quotation(const char* text) override { return quoted(text); }
    // Methods and fields are known by the look-up of the same recording.
    void add_member(const void* id, const std::string& name, const char* signature) override {
        ids_[id] = {name, signature};
    }
    std::string member_name(const void* id) override;
    std::string member_signature(const void* id) override;
    bool begin(trace::JniCall& call) override;
    void failed(trace::JniCall& call) override;
    void returned(trace::JniCall&) override {}
    std::string reference_result(trace::JniCall& call, jobject result) override;
    void memory_result(trace::JniCall& call, const void* memory) override;
    void end(trace::JniCall& call, const std::string& result) override;

    Held& held() { return held_; }
    const std::vector<std::string>& lines() const { return lines_; }
    bool failed() const { return failing_.number > 0 && matching_ >= failing_.number; }

private:
    struct Id {
        std::string name;
        std::string signature;
    };

    // The name of a known object, else "".
    std::string known_name(JNIEnv* env, jobject reference) const;
    // What a reference refers to, for the list of what is held.
    std::string origin(JNIEnv* env, jobject reference);
    void end_references(const trace::JniCall& call);
    void give_back(trace::JniCall& call);
    // Called for each call that can fail, with its text. Returns whether this is the one to fail.
    bool is_to_fail(const std::string& text);

    bool on_ = false;
    bool with_lines_ = false;
    Failing failing_{{}, 0};
    int matching_ = 0; // calls so far that could have been the failing one
    std::vector<std::string> names_;
    std::vector<jobject> objects_; // global references
    std::map<const void*, Id> ids_;
    Held held_;
    std::vector<std::string> lines_;
};

} // namespace tavro::agent
