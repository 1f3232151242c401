// Tests of the managers over the scripted middleware.
//
// ManagerTest compares the whole journal with an expected transcript, written as a sum of steps:
//
//     expect_journal(entry("close", 5) + found(5) + call("close(@5)"));
//
// In the texts # stands for the kind's class name in brackets and @5 for its handle of list 5. The journal
// also holds the log gate's property reads. So a transcript proves that the gate is asked exactly once
// before every line, whether the line is then written or not.
#pragma once

#include "list_kind.h"
#include "script.h"
#include "scripted_test.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tavro::test {

// One expected journal entry.
struct Step {
    std::string text;
    Bytes record{}; // the record of an add or update
};
using Steps = std::vector<Step>;

inline Steps operator+(Steps first, const Steps& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

// Values of the log property: all lines pass, only error lines pass, none pass (the property is not set).
inline constexpr char kEveryLine[] = "v";
inline constexpr char kErrorLines[] = "e";
inline constexpr char kNoLine[] = "";

class ManagerTest : public ScriptedTest {
protected:
    explicit ManagerTest(const ListKind& kind_) : kind(kind_) { start(kEveryLine); }

    // Starts again with this log property: no journal, no scripted results, no open list.
    void start(const char* property) {
        start_again();
        verbosity = property;
        if (!verbosity.empty()) {
            log_level(property);
        }
        script::journal_properties(true);
        seen = 0;
    }

    std::uint32_t handle(int id) const { return kind.number << 16 | (static_cast<std::uint32_t>(id) & 0xFFFF); }
    void given_open(int id) { given_handle(id, handle(id)); }
    void given_handle(int id, std::uint32_t value) { ASSERT_TRUE(kind.handles->insert(id, value)); }

    // Scripts the result of the middleware call of that name ("open").
    void answer(const std::string& call, tavro::MwStatus status) { answer(call, script::Answer{status}); }
    void answer(const std::string& call, const script::Answer& what) { script::answer(kind.calls() + call, what); }
    void always(const std::string& call, tavro::MwStatus status) {
        script::always(kind.calls() + call, script::Answer{status});
    }
    static script::Answer with_value(tavro::MwStatus status, std::uint32_t value) {
        return script::Answer{status, value};
    }
    static script::Answer with_record(tavro::MwStatus status, const Bytes& record, std::int32_t version = 0) {
        return script::Answer{status, {}, record, version};
    }

    // Log lines, and middleware calls. A call of the kind is written without its prefix: call("open(5, 0, 0)").
    Steps debug(const std::string& text) const { return {{std::string("log 3 ") + kind.tag + ": " + filled(text)}}; }
    Steps error(const std::string& text) const { return {{std::string("log 6 ") + kind.tag + ": " + filled(text)}}; }
    Steps call(const std::string& text, const Bytes& record = {}) const {
        return {{kind.calls() + filled(text), record}};
    }
    static Steps file_call(const std::string& text) { return {{text}}; }

    // The first line of most operations. Ids are logged as given.
    Steps entry(const std::string& operation, int id = 5) const { return entry(kind.prefix, operation, id); }
    Steps entry(const std::string& prefix, const std::string& operation, int id) const {
        return debug(prefix + list_line(operation, id) + " \n");
    }
    // The first line of addInfo and copyInfo of a companion list, of open and store with a path, of copy, and of reads
    // by index.
    Steps record_entry(const std::string& operation, int id = 5) const { return entry("", operation, id); }
    Steps open_entry(int id, const std::string& path) const {
        return debug(kind.prefix + list_line("open", id) + " path = " + path + " \n");
    }
    Steps store_entry(int id, const std::string& path) const {
        return debug(kind.prefix + list_line("store", id) + " path = " + path + "\n");
    }
    Steps copy_entry(int source, int destination) const {
        return debug(std::string(kind.prefix) + "[copy]: " + kind.copy_source + " = " + std::to_string(source) + " " +
                     kind.copy_destination + " = " + std::to_string(destination) + "\n");
    }
    Steps index_entry(const std::string& operation, int id, int index) const {
        return debug("#" + list_line(operation, id) + " idx = " + std::to_string(index) + "\n");
    }

    // An operation that takes an identifier ("5,17") logs its text and then the numbers in it. removeInfo and
    // removeInfoByRecId have their own ways to log the numbers.
    Steps identifier_line(const std::string& operation, const std::string& identifier) const {
        return debug("[" + operation + "]: string recId = " + identifier + " \n");
    }
    Steps named_line(const std::string& operation, int list, int record) const {
        return numbers_line(operation, kind.named_list, list, kind.named_record, record);
    }
    Steps removal_line(int list, int record) const {
        return numbers_line("removeInfo", kind.named_list, list, kind.named_record, logged_record_id(record));
    }
    Steps removal_by_id_line(int list, int record) const {
        return numbers_line("removeInfoByRecId", "mwdbId", list, kind.removed_record, logged_record_id(record));
    }

    // getInfo's lines before the look-up and after the read.
    Steps get_entry(int id, int record_id) const {
        switch (kind.get_lines) {
        case ListKind::GetLines::kListAndRecord:
            return debug("#" + list_line("getInfo", id) + " recId = " + std::to_string(record_id) + "\n");
        case ListKind::GetLines::kIdentifier:
            return identifier_line("getInfo", std::to_string(id) + "," + std::to_string(record_id)) +
                   named_line("getInfo", id, record_id);
        default:
            return {};
        }
    }
    Steps got(const Bytes& record) const { return kind.get_prints_record ? record_line("getInfo", record) : Steps{}; }
    // The line in which an update or a read logs a record, for the kinds that have one.
    Steps record_line(const std::string& operation, const Bytes& record) const {
        return kind.printed == nullptr ? Steps{} : debug("#[" + operation + "]:" + kind.printed(record) + "\n");
    }
    Steps counted(int number) const {
        return kind.logs_count ? debug(std::string(kind.count_prefix) +
                                       "[getInfoListNum]:i2_num_rec:" + std::to_string(number) + " \n")
                               : Steps{};
    }

    // What the look-up of an open list writes.
    Steps found(int id) const { return found(id, handle(id)); }
    Steps found(int id, std::uint32_t value) const {
        return kind.logs_lookups ? handle_line("get", id, value) : Steps{};
    }
    // What is written when a handle is recorded or forgotten.
    Steps recorded(int id) const { return handle_line("set", id, handle(id)); }
    Steps forgotten(int id) const { return handle_line("delete", id, handle(id)); }
    Steps handle_line(const std::string& operation, int id, std::uint32_t value) const {
        return debug("#[" + operation + kind.handle_operation + "]: " + kind.list_id + " = " + key(id) + " " +
                     kind.handle + ":" + hex(value) + "\n");
    }

    // An attempt to open a list, the opening of a list on its first use, and the creation of a list.
    Steps tried_open(int id) const { return call("open(" + key(id) + ", 0, 0)"); }
    Steps opened(int id) const { return tried_open(id) + recorded(id); }
    Steps created(int id, int number) const {
        return call(std::string("create(\"") + kind.storage + std::to_string(number) + "\", " + key(id) +
                    ", 1, 16, 0, 0)");
    }
    // What open logs after it has recorded a list.
    Steps set_handle_ok(int id) const {
        return kind.logs_opening ? debug(kind.prefix + list_line("open", id) + " set handle ok \n") : Steps{};
    }
    Steps locked(int id, const Steps& work) const {
        return call("lock(@" + key(id) + ")") + work + call("unlock(@" + key(id) + ")");
    }
    // The removal of a record from an open list.
    Steps removal(int list, int record, tavro::MwStatus status = 0) const {
        return locked(list, call("del_rec(@" + key(list) + ", " + key(record) + ")") +
                                (kind.logs_removal_status ? error("i4_ret: " + std::to_string(status)) : Steps{}));
    }

    // Compares the journal since the last comparison, records included.
    void expect_journal(const Steps& steps) {
        std::string expected;
        for (const Step& step : steps) {
            const bool is_line = step.text.rfind("log ", 0) == 0;
            if (is_line) {
                expected += "property_get(\"vendor.vlt.broadcast.log.level\", \"\")\n";
                expected += verbosity.empty() ? "property_get(\"persist.vendor.vlt.broadcast.log.level\", \"\")\n" : "";
            }
            if (!is_line || verbosity == kEveryLine || (verbosity == kErrorLines && step.text[4] == '6')) {
                expected += shown(step.text, step.record);
            }
        }
        std::string actual;
        const std::vector<script::Entry> journal = script::journal();
        for (; seen < journal.size(); ++seen) {
            actual += shown(journal[seen].text, journal[seen].record);
        }
        EXPECT_EQ(actual, expected);
    }

    using OpenLists = std::map<std::uint16_t, tavro::MwdbHandle>;
    void expect_open_lists(const OpenLists& lists) const {
        EXPECT_EQ(OpenLists(kind.handles->begin(), kind.handles->end()), lists);
    }

    static std::string key(int id) { return std::to_string(id & 0xFFFF); }

    const ListKind& kind;

private:
    std::string list_line(const std::string& operation, int id) const {
        return "[" + operation + "]: " + kind.list_id + " = " + std::to_string(id);
    }
    int logged_record_id(int record) const { return kind.cuts_logged_record_id ? record & 0xFFFF : record; }
    Steps numbers_line(const std::string& operation, const std::string& list_word, int list,
                       const std::string& record_word, int record) const {
        return debug("[" + operation + "]: " + list_word + " = " + std::to_string(list) + ", " + record_word + " = " +
                     std::to_string(static_cast<std::uint32_t>(record)) + " \n");
    }

    static std::string hex(std::uint32_t value) {
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "0x%x", value);
        return text.data();
    }

    // Replaces # and @.
    std::string filled(const std::string& text) const {
        std::string result;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '#') {
                result += kind.class_name;
            } else if (text[i] == '@') {
                std::size_t digits = 0;
                result += hex(handle(std::stoi(text.substr(i + 1), &digits)));
                i += digits;
            } else {
                result += text[i];
            }
        }
        return result;
    }

    // A journal entry as text: newlines are made visible, and its record is dumped.
    static std::string shown(const std::string& text, const Bytes& record) {
        std::string result;
        for (const char c : text) {
            result += c == '\n' ? std::string("\\n") : std::string(1, c);
        }
        for (std::size_t i = 0; i < record.size(); ++i) {
            std::array<char, 16> dump{};
            std::snprintf(dump.data(), dump.size(), i % 16 == 0 ? "\n    %02x" : " %02x",
                          std::to_integer<unsigned int>(record[i]));
            result += dump.data();
        }
        return result + "\n";
    }

    std::string verbosity;
    std::size_t seen = 0;
};

// A test that runs for several kinds.
class EachKind : public ManagerTest, public testing::WithParamInterface<const ListKind*> {
protected:
    EachKind() : ManagerTest(*GetParam()) {}

    const std::unique_ptr<AnyManager> manager = kind.make();
    const Bytes sample = kind.sample();
    Bytes record = sample;
};

inline std::string kind_name(const testing::TestParamInfo<const ListKind*>& info) { return info.param->name; }

inline const auto kAllKinds = testing::ValuesIn(kEveryKind);
inline const auto kCompanions = testing::Values(&kTransportStreams, &kNetworks, &kSatellites);

} // namespace tavro::test
