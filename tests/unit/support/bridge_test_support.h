// A test of the natives of one list kind over the fake platform and the scripted middleware.
#pragma once

#include "channellist/HandleMap.h"
#include "fake_jni.h"
#include "record_calls.h"
#include "script.h"
#include "scripted_test.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace tavro::test {

// How the lines of the natives begin.
inline const std::string kJniLine = "log 3 -: [jni_VltTvList_Init] ";

// A list kind as its natives see it.
struct BridgeKind {
    std::string natives; // start of their names
    std::string object;  // the journal's name of record objects
    std::string id_key;  // of a record object's identifier
    std::string id_field;
    HandleMap& handles;
    std::uint32_t number; // the scripted handles are number << 16 | list id
};

template <class Record>
std::vector<std::byte> bytes_of(const Record& record) {
    std::vector<std::byte> bytes(sizeof(record));
    std::memcpy(bytes.data(), &record, sizeof(record));
    return bytes;
}

class BridgeTest : public ScriptedTest {
protected:
    // Lists 1, 2 and 300 are open.
    explicit BridgeTest(const BridgeKind& kind_) : kind(kind_) {
        kind.handles.clear();
        for (const int id : {1, 2, 300}) {
            kind.handles.insert(id, kind.number << 16 | static_cast<MwdbHandle>(id));
        }
    }
    ~BridgeTest() override { kind.handles.clear(); }

    // JNI calls, middleware calls and lines in one order, without the store's own debug lines.
    Lines journal() const { return journal(jni); }
    static Lines journal(const FakeJni& platform) {
        Lines rest;
        for (const std::string& entry : platform.journal()) {
            if (entry.rfind("log 3 NativeVlt", 0) != 0) {
                rest.push_back(entry);
            }
        }
        return rest;
    }
    // The record that the last add or update handed over.
    static std::vector<std::byte> last_record() {
        std::vector<std::byte> last;
        for (const script::Entry& entry : script::journal()) {
            last = entry.record.empty() ? last : entry.record;
        }
        return last;
    }

    static script::Answer reads(const std::vector<std::byte>& record) { return {0, {}, record, 0, {}}; }
    static script::Answer counts(std::uint32_t number) { return {0, number, {}, 0, {}}; }
    static script::Answer fails() { return {-7, {}, {}, 0, {}}; }
    static jstring ref(FakeObject& text) { return FakeJni::string_ref(text); }
    static const std::string& text_of(jstring text) { return FakeJni::from(text).text; }

    // The lines that natives begin with.
    Lines entry(const std::string& native) const { return {kJniLine + kind.natives + native}; }
    Lines entry(const std::string& native, int line) const {
        return {kJniLine + "[" + kind.natives + native + "][" + std::to_string(line) + "] "};
    }

    // A record object without keys, and one with that identifier; null for one whose field is null.
    FakeObject& object() { return jni.object(kind.object); }
    FakeObject& named(const char* identifier) {
        FakeObject& made = object();
        made.keys = {kind.id_key};
        made.object_fields = {{kind.id_field, identifier == nullptr ? nullptr : &jni.string(identifier)}};
        return made;
    }
    // What asking an object for its identifier leaves; kept: without the key's string being given back.
    Lines id_asked(const Lines& read) const { return asked(kind.object, kind.id_key, read); }
    Lines id_asked_and_kept(const Lines& read) const {
        Lines lines = id_asked(read);
        lines.pop_back();
        return lines;
    }
    Lines id_read() const { return object_read(kind.id_field); } // of a null field
    Lines id_read(const std::string& text) const { return joined(id_read(), chars(text), given_back(quoted(text))); }

    BridgeKind kind;
    FakeJni jni;
};

} // namespace tavro::test
