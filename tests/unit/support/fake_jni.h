// A Java environment made of plain C++ objects, for tests that check every JNI call or make one fail. Its function
// table has only the functions that the library uses; any other call ends the test.
#pragma once

#include <jni.h>

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace tavro::test {

// A Java object, class, string or array; depending on the members that are set.
struct FakeObject {
    std::string name;                  // in the journal
    std::string text;                  // of strings
    std::vector<jint> ints;            // of int arrays
    std::vector<jbyte> bytes;          // of byte arrays
    std::vector<FakeObject*> elements; // of lists
    std::set<std::string> keys;        // what isContainsKey is true for
    bool has_all_keys = false;         // isContainsKey is true for every key
    std::map<std::string, jint> int_fields;
    std::map<std::string, FakeObject*> object_fields;
    std::map<std::string, jint> int_answers; // of int and boolean methods, by name
    std::map<std::string, FakeObject*> object_answers;
};

class FakeJni {
public:
    FakeJni();
    virtual ~FakeJni();
    FakeJni(const FakeJni&) = delete;
    FakeJni& operator=(const FakeJni&) = delete;

    JNIEnv* env() { return &env_; }
    JavaVM* vm() { return &vm_; }

    // Creates an object, which lives as long as the environment.
    FakeObject& object(const std::string& name);
    FakeObject& string(const std::string& text);
    FakeObject& int_array(std::vector<jint> elements);
    FakeObject& list(std::vector<FakeObject*> elements);
    static jobject ref(FakeObject& object) { return reinterpret_cast<jobject>(&object); }
    static jstring string_ref(FakeObject& object) { return reinterpret_cast<jstring>(&object); }
    static FakeObject& from(jobject reference) { return *reinterpret_cast<FakeObject*>(reference); }

    // JNI calls, middleware calls and log lines in one order; JNI calls look like "GetFieldID(serviceId, I)".
    const std::vector<std::string>& journal() const { return journal_; }
    std::vector<std::string> journal_with(const std::string& part) const;
    void clear_journal() { journal_.clear(); }

    // Makes the n-th call (from 1) with this journal text fail, or the n-th of all calls that can fail: the call
    // returns null with an exception pending.
    void fail(const std::string& text, int n = 1) { failing_[text] = n; }
    void fail_nth(int n) { countdown_ = n; }

    // The journal from the first failed call on; empty if no call has failed.
    std::vector<std::string> journal_from_failure() const;
    bool exception_pending() const { return pending_; }

    // Calls made while an exception was pending, except the few that JNI allows then.
    const std::vector<std::string>& forbidden_calls() const { return forbidden_; }

    // The number of strings whose characters were not released.
    int unreleased_chars() const { return unreleased_chars_; }

    // The number of local references that calls created and nobody released, and its peak. A test that counts the
    // references of one native call starts anew before the call. A reference that is released twice, or used after its
    // release, fails the test.
    int live_references() const { return live_references_; }
    int most_references() const { return most_references_; }
    void count_references_anew();

    // What was looked up on which class.
    struct LookUp {
        std::string cls;
        std::string name;
        std::string signature;
        std::string key; // of a field: the key that was asked before its look-up
    };
    const std::deque<LookUp>& look_ups() const { return look_ups_; }

    // What GetEnv and RegisterNatives return and what was registered.
    jint get_env_result = JNI_OK;
    jint register_result = JNI_OK;
    struct Registered {
        std::string cls;
        std::vector<JNINativeMethod> methods;
    };
    std::vector<Registered> registered;

protected:
    // The values of fields. A derived environment can have its own rules.
    virtual jint int_value(FakeObject& object, const LookUp& field) { return object.int_fields[field.name]; }
    virtual FakeObject* object_value(FakeObject& object, const LookUp& field) {
        return object.object_fields[field.name];
    }

private:
    static FakeJni& self(JNIEnv* env);
    // Journals a call. Returns false if the call has to fail.
    bool call(const std::string& text);
    bool fallible(const std::string& text);
    template <class Id>
    Id looked_up(const char* call, const LookUp& member);
    FakeObject& make();
    // Counts a local reference, which may be null.
    jobject referred(FakeObject* object);
    void give_back(FakeObject& object);
    // Records a use of an object whose references were all released.
    FakeObject& used(jobject reference);
    FakeObject* used_argument(FakeObject* object);
    void fill_table();
    template <auto Slot, class Result, class... Arguments>
    static auto marked(Result (JNICALL* JNINativeInterface_::*)(JNIEnv*, Arguments...));
    void mark_calls();

    JNINativeInterface_ table_{};
    JNINativeInterface_ unmarked_{};
    JNIInvokeInterface_ vm_table_{};
    JNIEnv_ env_{};
    JavaVM_ vm_{};
    std::deque<FakeObject> objects_;
    std::deque<std::unique_ptr<char, void (*)(void*)>> chars_;
    std::vector<std::string> journal_;
    std::deque<LookUp> look_ups_; // method and field ids point into it
    std::string asked_key_;
    std::map<std::string, int> failing_; // how many calls until the one that fails
    std::vector<std::string> forbidden_;
    int countdown_ = 0;
    std::size_t failed_at_ = 0;
    int unreleased_chars_ = 0;
    std::map<const FakeObject*, int> references_; // 0: all were released
    std::vector<std::string> misused_references_;
    int live_references_ = 0;
    int most_references_ = 0;
    bool pending_ = false;
};

} // namespace tavro::test
