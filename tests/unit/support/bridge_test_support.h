// A test of the natives of one list kind over the fake platform and the scripted middleware.
#pragma once

#include "bridge_kinds.h"
#include "every_native_test.h"
#include "fake_jni.h"
#include "record_calls.h"
#include "script.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tavro::test {

// How the log lines of the natives begin.
inline const std::string kJniLine = "log 3 -: [jni_VltTvList_Init] ";

class BridgeTest : public EveryNativeTest {
protected:
    // Lists 1, 2 and 300 are open.
    explicit BridgeTest(const BridgeKind& tested) : kind(tested) {
        for (const int id : {1, 2, 300}) {
            kind.handles().insert(id, handle(id));
        }
    }

    // JNI calls, middleware calls and log lines in one order, without the managers' own log lines.
    Lines journal() const { return journal(jni); }
    static Lines journal(const FakeJni& platform) {
        Lines rest = platform.journal();
        rest.erase(std::remove_if(rest.begin(), rest.end(),
                                  [](const std::string& entry) {
                                      return entry.rfind("log ", 0) == 0 &&
                                             entry.find("List_Cpp: ") != std::string::npos;
                                  }),
                   rest.end());
        return rest;
    }
    // The journal before the first entry with this text, and from there on.
    Lines journal_before(const std::string& entry) const {
        const Lines lines = journal();
        return {lines.begin(), std::find(lines.begin(), lines.end(), entry)};
    }
    Lines journal_from(const std::string& entry) const {
        const Lines lines = journal();
        return {std::find(lines.begin(), lines.end(), entry), lines.end()};
    }
    // The record that the last add or update stored.
    static Bytes last_record() {
        Bytes last;
        for (const script::Entry& entry : script::journal()) {
            last = entry.record.empty() ? last : entry.record;
        }
        return last;
    }

    static script::Answer reads(const Bytes& record) { return {0, {}, record, 0, {}}; }
    template <class Record>
    static script::Answer reads(const Record& record) {
        return reads(bytes_of(record));
    }
    static script::Answer counts(std::uint32_t number) { return {0, number, {}, 0, {}}; }
    static script::Answer fails() { return {-7, {}, {}, 0, {}}; }
    static jstring ref(FakeObject& text) { return FakeJni::string_ref(text); }
    jstring text(const std::string& value) { return ref(jni.string(value)); }
    static const std::string& text_of(jstring text) { return FakeJni::from(text).text; }

    static Bytes bytes_in(jbyteArray array) {
        Bytes bytes;
        for (const jbyte byte : FakeJni::from(array).bytes) {
            bytes.push_back(static_cast<std::byte>(byte));
        }
        return bytes;
    }

    // The name of a middleware call: "lock" is x_tsl_lock for transport streams.
    std::string call_name(const std::string& call) const { return kind.calls + call; }
    // The journal entry of such a call. "@1" stands for the handle of list 1: "lock(@1)".
    Lines call(std::string entry) const {
        for (std::size_t at = entry.find('@'); at != std::string::npos; at = entry.find('@', at)) {
            std::size_t end = at + 1;
            const int id = std::stoi(entry.substr(end));
            while (end < entry.size() && entry[end] >= '0' && entry[end] <= '9') {
                ++end;
            }
            char hex[16];
            std::snprintf(hex, sizeof(hex), "0x%x", handle(id));
            entry.replace(at, end - at, hex);
        }
        return {kind.calls + entry};
    }
    Lines call_under_lock(const std::string& entry, const std::string& list) const {
        return joined(call("lock(" + list + ")"), call(entry), call("unlock(" + list + ")"));
    }

    // The entry line of a native; nothing when it has none.
    Lines entry(const std::string& native) const {
        const auto line = kind.entry_lines.find(native);
        return line == kind.entry_lines.end() ? Lines{} : Lines{kJniLine + line->second};
    }
    // A log line that begins with the name of a native.
    std::string native_line(const std::string& native, const std::string& rest) const {
        return kJniLine + kind.native_names + native + rest;
    }
    // The entries that end a successful add.
    static Lines identifier_made(const std::string& list, const std::string& record_id) {
        return {kJniLine + "[combineMId] mwdbId = " + list + ", recId = " + record_id,
                "NewStringUTF(" + quoted(list + "," + record_id) + ")"};
    }

    // A record object without keys, and one with an identifier; nullptr leaves its field null.
    FakeObject& object() { return jni.object(kind.object); }
    FakeObject& named(const char* identifier) {
        FakeObject& made = object();
        made.keys = {kind.id_key};
        made.object_fields = {{kind.id_field, identifier == nullptr ? nullptr : &jni.string(identifier)}};
        return made;
    }
    // Asks an object for its identifier. The second keeps the reference of the key's string.
    Lines id_asked(const Lines& read) const { return asked(kind.object, kind.id_key, read); }
    Lines id_asked_and_kept(const Lines& read) const {
        Lines lines = id_asked(read);
        lines.pop_back();
        return lines;
    }
    Lines id_read() const { return object_read(kind.id_field); } // of a null field
    Lines id_read(const std::string& text) const { return joined(id_read(), chars(text), given_back(quoted(text))); }

    const BridgeKind& kind;
    FakeJni jni;

private:
    tavro::MwdbHandle handle(int id) const { return kind.number << 16 | static_cast<tavro::MwdbHandle>(id); }
};

// A suite that runs once for each of several kinds.
class BridgeKindTest : public BridgeTest, public testing::WithParamInterface<const BridgeKind*> {
protected:
    BridgeKindTest() : BridgeTest(*GetParam()) {}
};

inline std::string kind_name(const testing::TestParamInfo<const BridgeKind*>& info) { return info.param->name; }

} // namespace tavro::test
