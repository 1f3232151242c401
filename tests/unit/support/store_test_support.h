// A list store over the scripted middleware, and the transcripts that its operations should leave.
//
// The stores of services, transport streams and networks differ in a few words and rules; satellites, which
// differ in more, have tests of their own. A Kind says which, a Store gives the three managers one shape, and StoreTest
// compares the whole journal with an expected transcript, written as a sum of steps:
//
//     expect_journal(debug("#[close]: mwdbId = 5 \n") + found(5) + call("close(@5)"));
//
// In the texts # stands for the kind's class name in brackets and @5 for its handle of list 5. The
// journal holds the log gate's property reads too, so a transcript also proves that the gate is asked
// before every line, once, whether the line is then written or not.
#pragma once

#include "channellist/NativeVltTvChannelList.h"
#include "channellist/NativeVltTvNetworkList.h"
#include "channellist/NativeVltTvTransportStreamList.h"
#include "script.h"
#include "scripted_test.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tavro::test {

using Bytes = std::vector<std::byte>;

// Writes a number or a text with its terminator into a record.
inline void put16(Bytes& record, std::size_t at, std::uint16_t number) {
    std::memcpy(record.data() + at, &number, sizeof(number));
}
inline void put_text(Bytes& record, std::size_t at, const char* text) {
    std::memcpy(record.data() + at, text, std::strlen(text) + 1);
}

enum LockCall { kLock, kUnlock, kReadLock, kReadUnlock };

// A manager of any kind. Records are their bytes.
class Store {
public:
    virtual ~Store() = default;

    virtual bool get_handle(int id, unsigned int& handle) = 0;
    virtual bool set_handle(int id, unsigned int& handle, bool opened) = 0;
    virtual bool delete_handle(int id, unsigned int handle) = 0;
    virtual void clear_handles() = 0;
    virtual int open(int id) = 0;
    virtual int open(int id, const std::string& path) = 0;
    virtual int close(int id) = 0;
    virtual int delete_list(int id) = 0;
    virtual int clean(int id) = 0;
    virtual int copy(int source, int destination) = 0;
    virtual int store(int id, const std::string& path) = 0;
    virtual int lock(LockCall which, int id) = 0;
    virtual int add(int id, Bytes* record) = 0;
    virtual int copy_record(int id, Bytes* record) = 0;
    virtual int update(int id, Bytes& record) = 0;
    virtual int get(int id, int record_id, Bytes& record) = 0;
    virtual int remove(const std::string& identifier) = 0;
    virtual int remove_by_record_id(int id, const std::string& identifier) = 0;
    virtual int list_records(int id) = 0;
    virtual int update_records(int id) = 0;
    // By list id: the transport stream and network lists alone have these.
    virtual int get_by_index(int id, int index, int& version, Bytes& record) = 0;
    virtual int count(int id) = 0;
};

// `LockCalls` are the manager's lock operations that take a list id, in the order of LockCall.
template <class Manager, class Record, auto... LockCalls>
class StoreOf : public Store {
    static constexpr bool kByListId = sizeof...(LockCalls) == 4;

public:
    bool get_handle(int id, unsigned int& handle) override { return manager.getMwdbHandle(id, handle); }
    bool set_handle(int id, unsigned int& handle, bool opened) override {
        return manager.setMwdbHandle(id, handle, opened);
    }
    bool delete_handle(int id, unsigned int handle) override { return manager.deleteMwdbHandle(id, handle); }
    void clear_handles() override { manager.clearMwdbHandle(); }
    int open(int id) override { return manager.open(id); }
    int open(int id, const std::string& path) override { return manager.open(id, path); }
    int close(int id) override { return manager.close(id); }
    int delete_list(int id) override { return manager._delete(id); }
    int clean(int id) override { return manager.clean(id); }
    int copy(int source, int destination) override { return manager.copy(source, destination); }
    int store(int id, const std::string& path) override { return manager.store(id, path); }
    int lock(LockCall which, int id) override {
        const std::array<int (Manager::*)(int), sizeof...(LockCalls)> calls = {LockCalls...};
        return (manager.*calls.at(which))(id);
    }
    int add(int id, Bytes* record) override {
        return with(record, [&](Record* native) { return manager.addInfo(id, native); });
    }
    int copy_record(int id, Bytes* record) override {
        return with(record, [&](Record* native) { return manager.copyInfo(id, native); });
    }
    int update(int id, Bytes& record) override {
        return with(&record, [&](Record* native) { return manager.updateInfo(id, native); });
    }
    int get(int id, int record_id, Bytes& record) override {
        return with(&record, [&](Record* native) { return manager.getInfo(id, record_id, native); });
    }
    int remove(const std::string& identifier) override { return manager.removeInfo(identifier); }
    int remove_by_record_id(int id, const std::string& identifier) override {
        return manager.removeInfoByRecId(id, identifier);
    }
    int list_records(int id) override { return manager.getInfoList(id); }
    int update_records(int id) override { return manager.updateInfoList(id); }
    int get_by_index([[maybe_unused]] int id, [[maybe_unused]] int index, [[maybe_unused]] int& version,
                     [[maybe_unused]] Bytes& record) override {
        if constexpr (kByListId) {
            return with(&record, [&](Record* native) { return manager.getInfoByIdx(id, index, &version, native); });
        } else {
            throw std::logic_error("services are read by handle");
        }
    }
    int count([[maybe_unused]] int id) override {
        if constexpr (kByListId) {
            return manager.getInfoListNum(id);
        } else {
            throw std::logic_error("services are counted by handle");
        }
    }

private:
    // Calls with the record as the manager wants it and takes over what became of it.
    template <class Call>
    static int with(Bytes* record, Call call) {
        if (record == nullptr) {
            return call(nullptr);
        }
        const auto native = std::make_unique<Record>();
        EXPECT_EQ(record->size(), sizeof(Record));
        std::memcpy(native.get(), record->data(), sizeof(Record));
        const int result = call(native.get());
        std::memcpy(record->data(), native.get(), sizeof(Record));
        return result;
    }

    Manager manager;
};

template <class AnyStore>
std::unique_ptr<Store> make_store() {
    return std::make_unique<AnyStore>();
}

using ServiceStore =
    StoreOf<NativeVltTvChannelList, _SVL_REC_T, &NativeVltTvChannelList::lockSvl, &NativeVltTvChannelList::unLockSvl>;
using TransportStreamStore =
    StoreOf<NativeVltTvTransportStreamList, _TSL_REC_T, &NativeVltTvTransportStreamList::lockTsl,
            &NativeVltTvTransportStreamList::unLockTsl, &NativeVltTvTransportStreamList::readLockTsl,
            &NativeVltTvTransportStreamList::readUnLockTsl>;
using NetworkStore =
    StoreOf<NativeVltTvNetworkList, _NWL_REC_T, &NativeVltTvNetworkList::lockNwl, &NativeVltTvNetworkList::unLockNwl,
            &NativeVltTvNetworkList::readLockNwl, &NativeVltTvNetworkList::readUnLockNwl>;

// What tells one kind's transcripts from another's.
struct Kind {
    const char* name; // in the names of parameterised tests
    const char* tag;
    const char* class_name;
    const char* clean_class_name; // as the trace of clean spells it
    const char* calls;            // start of the middleware calls' names
    const char* storage;          // start of the storage names
    const char* list_word;        // the removals' words for list id and record id
    const char* record_word;
    HandleMap& handles;
    std::unique_ptr<Store> (*make)();
    std::uint32_t number; // the scripted handles are number << 16 | list id
    bool traces_lookups;

    // The record's bytes, and where the fields lie that the store writes or prints.
    std::size_t record_bytes;
    std::size_t record_id_at;
    std::size_t printed_id_at; // service, transport stream or network id
    std::size_t name_at;
    const char* sample_trace; // what is printed of the sample record

    bool is_services() const { return number == 1; }
    bool is_transport_streams() const { return number == 2; }

    // A record without two neighbouring bytes alike; record id 17, printed id 258, name "Name".
    Bytes sample() const {
        Bytes record(record_bytes);
        for (std::size_t i = 0; i < record.size(); ++i) {
            record[i] = static_cast<std::byte>(i * 31 + 7);
        }
        put16(record, record_id_at, 17);
        put16(record, printed_id_at, 258);
        put_text(record, name_at, "Name");
        return record;
    }
};

inline const Kind kServices = {"Services",
                               "NativeVltTvChannelList_Cpp",
                               "[NativeVltTvChannelList]",
                               "[NativeVltChannelList]",
                               "x_svl_",
                               "fs_Svl_",
                               "svlId",
                               "svlRecId",
                               SvlKind::handles(),
                               make_store<ServiceStore>,
                               1,
                               true,
                               552,
                               0,
                               24,
                               40,
                               "rec_id:17 ui2_prog_id:258 ac_name:Name\n"};
inline const Kind kTransportStreams = {"TransportStreams",
                                       "NativeVltTvTransportStreamList_Cpp",
                                       "[NativeVltTvTransportStreamList]",
                                       "[NativeVltTvTransportStreamList]",
                                       "x_tsl_",
                                       "fs_Tsl_",
                                       "tslId",
                                       "tslRecId",
                                       TslKind::handles(),
                                       make_store<TransportStreamStore>,
                                       2,
                                       false,
                                       724,
                                       0,
                                       16,
                                       544,
                                       "rec_id:17 ts_id:258 s_nw_name:Name\n"};
inline const Kind kNetworks = {"Networks",
                               "NativeVltTvNetworkList_Cpp",
                               "[NativeVltTvNetworkList]",
                               "[NativeVltTvNetworkList]",
                               "x_nwl_",
                               "fs_Nwl_",
                               "nwlId",
                               "nwlRecId",
                               NwlKind::handles(),
                               make_store<NetworkStore>,
                               3,
                               true,
                               304,
                               4,
                               10,
                               13,
                               "rec_id:17 nw_id:258 nit_ver:123 s_nw_name:Name\n"};

// One expected journal entry.
struct Step {
    std::string text;
    Bytes record{}; // what the middleware is handed to add or update
};
using Steps = std::vector<Step>;

inline Steps operator+(Steps first, const Steps& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

// Log property values: all lines pass, error lines alone, none (and the property is not set).
inline constexpr char kEveryLine[] = "v";
inline constexpr char kErrorLines[] = "e";
inline constexpr char kNoLine[] = "";

class StoreTest : public ScriptedTest {
protected:
    explicit StoreTest(const Kind& kind_) : kind(kind_) { start(kEveryLine); }
    ~StoreTest() override { forget_handles(); }

    // Starts anew with this log property: no journal, no answers, no open list.
    void start(const char* property) {
        script::reset();
        forget_handles();
        verbosity = property;
        if (!verbosity.empty()) {
            log_level(property);
        }
        script::journal_properties(true);
        seen = 0;
    }

    std::uint32_t handle(int id) const { return kind.number << 16 | (static_cast<std::uint32_t>(id) & 0xFFFF); }
    void given_open(int id) { given_handle(id, handle(id)); }
    void given_handle(int id, std::uint32_t value) { ASSERT_TRUE(kind.handles.insert(id, value)); }

    // Scripts the kind's middleware call of that name ("open").
    void answer(const std::string& call, MwStatus status) { answer(call, script::Answer{status}); }
    void answer(const std::string& call, const script::Answer& what) { script::answer(kind.calls + call, what); }
    void always(const std::string& call, MwStatus status) { script::always(kind.calls + call, script::Answer{status}); }
    static script::Answer with_value(MwStatus status, std::uint32_t value) { return script::Answer{status, value}; }
    static script::Answer with_record(MwStatus status, const Bytes& record, std::int32_t version = 0) {
        return script::Answer{status, {}, record, version};
    }

    Steps debug(const std::string& text) const { return {{std::string("log 3 ") + kind.tag + ": " + told(text)}}; }
    Steps error(const std::string& text) const { return {{std::string("log 6 ") + kind.tag + ": " + told(text)}}; }
    // A list call of the kind, without the start of its name: call("open(5, 0, 0)").
    Steps call(const std::string& text, const Bytes& record = {}) const { return {{kind.calls + told(text), record}}; }
    static Steps file_call(const std::string& text) { return {{text}}; }

    // What the look-up of an open list writes.
    Steps found(int id) const { return found(id, handle(id)); }
    Steps found(int id, std::uint32_t value) const {
        return kind.traces_lookups ? handle_line("getMwdbHandle", id, value) : Steps{};
    }
    // What is written when a handle is recorded or forgotten.
    Steps recorded(int id) const { return handle_line("setMwdbHandle", id, handle(id)); }
    Steps forgotten(int id) const { return handle_line("deleteMwdbHandle", id, handle(id)); }
    // The opening of a list on its first use.
    Steps opened(int id) const { return call("open(" + key(id) + ", 0, 0)") + recorded(id); }
    Steps handle_line(const std::string& operation, int id, std::uint32_t value) const {
        return debug("#[" + operation + "]: mwdbId = " + key(id) + " mwdbHandle:" + hex(value) + "\n");
    }

    // Compares what was journalled since the last comparison, records included.
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

    using OpenLists = std::map<std::uint16_t, MwdbHandle>;
    void expect_open_lists(const OpenLists& lists) const {
        EXPECT_EQ(OpenLists(kind.handles.begin(), kind.handles.end()), lists);
    }

    static std::string key(int id) { return std::to_string(id & 0xFFFF); }

    const Kind& kind;

private:
    static void forget_handles() {
        SvlKind::handles().clear();
        TslKind::handles().clear();
        NwlKind::handles().clear();
    }

    static std::string hex(std::uint32_t value) {
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "0x%x", value);
        return text.data();
    }

    // Fills in class name and handles.
    std::string told(const std::string& text) const {
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

    // An entry on lines of its own, newlines made visible, with a dump of its record.
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

// A test that runs for each of several kinds.
class EachKind : public StoreTest, public testing::WithParamInterface<const Kind*> {
protected:
    EachKind() : StoreTest(*GetParam()), store(GetParam()->make()) {}

    Bytes sample = GetParam()->sample();
    std::unique_ptr<Store> store;
};

inline std::string kind_name(const testing::TestParamInfo<const Kind*>& info) { return info.param->name; }
inline void PrintTo(const Kind* kind, std::ostream* out) { *out << kind->name; }

inline const auto kAllKinds = testing::Values(&kServices, &kTransportStreams, &kNetworks);
inline const auto kCompanions = testing::Values(&kTransportStreams, &kNetworks);

} // namespace tavro::test
