// The course that all operations on one list take, whatever they do in the end: find the handle or
// open the list, call the middleware, turn its status into a result.
#include "store_test_support.h"

#include <functional>
#include <tuple>

namespace script = tavro::script;

namespace {

using namespace tavro::test;

constexpr MwStatus kAnyFailure = -3;

// One operation on a list.
struct Operation {
    std::string name;
    std::function<int()> run;
    Steps entry;           // before the handle is looked for
    std::string answering; // the call whose status decides
    Steps work;            // with the handle
    Steps done{};          // after success
    Steps failed{};        // after a failure
    Steps with_zero_handle{};
    int zero_handle_result = -22;
    script::Answer answer{}; // on success
    int done_result = 0;
    int failed_result = -22;
    bool opens = true; // on its first use
    bool closes = false;
};

class EveryOperation : public StoreTest, public testing::WithParamInterface<std::tuple<const Kind*, const char*>> {
protected:
    EveryOperation() : StoreTest(*std::get<0>(GetParam())), store(kind.make()) {}

    // The tested operation, on that list.
    Operation operation(int id) {
        for (const Operation& operation : operations(id)) {
            if (operation.name == std::get<1>(GetParam())) {
                return operation;
            }
        }
        throw std::logic_error(std::get<1>(GetParam()));
    }

    // Runs it with the given answer of its deciding call.
    int run(const Operation& operation, script::Answer answer) {
        StoreTest::answer(operation.answering, answer);
        return operation.run();
    }
    int run(const Operation& operation) { return run(operation, operation.answer); }
    int run_failing(const Operation& operation) {
        script::Answer answer = operation.answer;
        answer.status = kAnyFailure;
        return run(operation, answer);
    }

private:
    std::vector<Operation> operations(int id) {
        const Bytes sample = kind.sample();
        const std::string number = std::to_string(id);
        const std::string k = key(id);
        const std::string at = "@" + k;
        const std::string comma_17 = number + ",17";
        const std::string list_and_17 =
            std::string(kind.list_word) + " = " + number + ", " + kind.record_word + " = 17";
        const std::string id_and_17 = "mwdbId = " + number + ", " + kind.record_word + " = 17";
        const auto entry = [&](const std::string& name) {
            return debug("#[" + name + "]: mwdbId = " + number + " \n");
        };
        const auto locked = [&](const Steps& work) {
            return call("lock(" + at + ")") + work + call("unlock(" + at + ")");
        };
        const auto trace = [&](const std::string& name) { return debug("#[" + name + "]:" + kind.sample_trace); };
        const Steps status_line = kind.is_transport_streams() ? error("i4_ret: 0") : Steps{};
        const Steps removal = locked(call("del_rec(" + at + ", 17)") + status_line);
        const bool removal_opens = !kind.is_transport_streams();
        const script::Answer reads = with_record(0, sample);

        std::vector<Operation> all = {
            {"close", [=] { return store->close(id); }, entry("close"), "close", call("close(" + at + ")"),
             forgotten(id)},
            {"_delete", [=] { return store->delete_list(id); }, entry("_delete"), "delete", call("delete(" + at + ")"),
             forgotten(id)},
            {"clean", [=] { return store->clean(id); },
             debug(kind.clean_class_name + ("[clean]: mwdbId = " + number) + " \n"), "clean",
             locked(call("clean(" + at + ")"))},
            {"store", [=] { return store->store(id, "/data/list.bin"); },
             debug("#[store]: mwdbId = " + number + " path = /data/list.bin\n"), "fs_store",
             locked(call("fs_store(" + at + ", \"/data/list.bin\", " + k + ")"))},
            {"updateInfo",
             [=] {
                 Bytes record = sample;
                 const int result = store->update(id, record);
                 EXPECT_EQ(record, sample);
                 return result;
             },
             entry("updateInfo"),
             "update_rec",
             trace("updateInfo") + call("update_rec(" + at + ", record, 0)", sample),
             {},
             {},
             trace("updateInfo")},
            {"removeInfo", [=] { return store->remove(comma_17); },
             debug("[removeInfo]: string recId = " + comma_17 + " \n") + debug("[removeInfo]: " + list_and_17 + " \n"),
             "del_rec", removal},
            {"removeInfoByRecId", [=] { return store->remove_by_record_id(id, "9,17"); },
             debug("[removeInfoByRecId]: string recId = 9,17 \n") + debug("[removeInfoByRecId]: " + id_and_17 + " \n"),
             "del_rec", removal},
            {"lock",
             [=] { return store->lock(kLock, id); },
             {},
             "lock",
             call("lock(" + at + ")"),
             {},
             {},
             call("lock(0x0)"),
             0},
            {"unlock",
             [=] { return store->lock(kUnlock, id); },
             {},
             "unlock",
             call("unlock(" + at + ")"),
             {},
             {},
             call("unlock(0x0)"),
             0},
        };
        for (Operation& operation : all) {
            operation.closes = operation.name == "close" || operation.name == "_delete";
            operation.opens = operation.answering != "del_rec" || removal_opens;
        }

        // The read is told on the way in and out, but not of transport streams.
        Operation get{"getInfo",
                      [=] {
                          Bytes record(sample.size());
                          return store->get(id, 17, record);
                      },
                      {},
                      "get_rec",
                      call("get_rec(" + at + ", 17)")};
        get.answer = reads;
        if (!kind.is_transport_streams()) {
            get.entry = debug("#[getInfo]: mwdbId = " + number + " recId = 17\n");
            get.done = get.failed = trace("getInfo");
        }
        all.push_back(get);

        if (kind.is_services()) {
            return all;
        }
        all.push_back({"readLock",
                       [=] { return store->lock(kReadLock, id); },
                       {},
                       "read_lock",
                       call("read_lock(" + at + ")"),
                       {},
                       {},
                       call("read_lock(0x0)"),
                       0});
        all.push_back({"readUnlock",
                       [=] { return store->lock(kReadUnlock, id); },
                       {},
                       "read_unlock",
                       call("read_unlock(" + at + ")"),
                       {},
                       {},
                       call("read_unlock(0x0)"),
                       0});
        all.push_back({"getInfoByIdx",
                       [=] {
                           Bytes record(sample.size());
                           int version = 0;
                           return store->get_by_index(id, 4, version, record);
                       },
                       debug("#[getInfoByIdx]: mwdbId = " + number + " idx = 4\n"), "get_rec_by_rec_idx",
                       call("get_rec_by_rec_idx(" + at + ", 4)"), trace("getInfoByIdx"), trace("getInfoByIdx")});
        all.back().answer = reads;

        // Only the network list tells what it counted. The number of a failed call does not count.
        const std::string count = kind.is_transport_streams() ? "get_num_recs" : "get_num_rec";
        const auto counted = [&](const char* text) {
            return kind.is_transport_streams() ? Steps{}
                                               : debug("#[getInfoListNum]:i2_num_rec:" + (text + std::string(" \n")));
        };
        all.push_back({"getInfoListNum", [=] { return store->count(id); }, entry("getInfoListNum"), count,
                       call(count + "(" + at + ")"), counted("65535"), counted("0"), counted("0"), 0,
                       with_value(0, 65535), 65535, 0});
        return all;
    }

    std::unique_ptr<Store> store;
};

TEST_P(EveryOperation, UsesTheHandleOfAnOpenListAndGivesZeroOnSuccess) {
    const Operation tested = operation(5);
    given_open(5);
    given_open(6);
    EXPECT_EQ(run(tested), tested.done_result);
    expect_journal(tested.entry + found(5) + tested.work + tested.done);
    expect_open_lists(tested.closes ? OpenLists{{6, handle(6)}} : OpenLists{{5, handle(5)}, {6, handle(6)}});
}

TEST_P(EveryOperation, OpensAListThatIsNotOpenAndLeavesItOpen) {
    const Operation tested = operation(5);
    if (!tested.opens) { // the removals from transport stream lists
        EXPECT_EQ(run(tested), -22);
        expect_journal(tested.entry);
        expect_open_lists({});
        given_open(6); // another list does not help
        EXPECT_EQ(run(tested), -22);
        expect_journal(tested.entry);
        expect_open_lists({{6, handle(6)}});
        return;
    }
    EXPECT_EQ(run(tested), tested.done_result);
    expect_journal(tested.entry + opened(5) + tested.work + tested.done);
    expect_open_lists(tested.closes ? OpenLists{} : OpenLists{{5, handle(5)}});
}

TEST_P(EveryOperation, FailsWhenTheMiddlewareFailsAndLeavesTheListOpen) {
    Operation tested = operation(5);
    given_open(5);
    EXPECT_EQ(run_failing(tested), tested.failed_result);
    for (Step& step : tested.work) {
        const std::size_t status = step.text.find("i4_ret: 0");
        if (status != std::string::npos) {
            step.text.replace(status, 9, "i4_ret: -3");
        }
    }
    expect_journal(tested.entry + found(5) + tested.work + tested.failed);
    expect_open_lists({{5, handle(5)}});
}

TEST_P(EveryOperation, FailsWhenTheListCannotBeOpenedAndCreatesNone) {
    const Operation tested = operation(5);
    answer("open", with_value(kAnyFailure, 0x77)); // a handle that comes with a failure is none
    EXPECT_EQ(tested.run(), -22);
    expect_journal(tested.entry + (tested.opens ? call("open(5, 0, 0)") : Steps{}));
    expect_open_lists({});
}

TEST_P(EveryOperation, FailsWhenTheOpenedListHasNoHandle) {
    const Operation tested = operation(5);
    answer("open", with_value(0, 0));
    EXPECT_EQ(tested.run(), -22);
    expect_journal(tested.entry + (tested.opens ? call("open(5, 0, 0)") : Steps{}));
    expect_open_lists({});
}

TEST_P(EveryOperation, FailsForListZeroAfterOneAttemptToOpenIt) {
    for (const int id : {0, 65536, -65536}) {
        const Operation tested = operation(id);
        EXPECT_EQ(tested.run(), -22) << id;
        expect_journal(tested.entry + (tested.opens ? call("open(0, 0, 0)") : Steps{}));
        expect_open_lists({});
    }
}

TEST_P(EveryOperation, AListRecordedWithHandleZeroFailsWithoutACallExceptForTheLocks) {
    const Operation tested = operation(5);
    given_handle(5, 0);
    EXPECT_EQ(run(tested), tested.zero_handle_result);
    expect_journal(tested.entry + found(5, 0) + tested.with_zero_handle);
    expect_open_lists({{5, 0}});
}

TEST_P(EveryOperation, CountsAListIdByItsLowSixteenBits) {
    for (const int id : {65541, -65531, -1, 65535}) {
        start(kEveryLine);
        const Operation tested = operation(id);
        given_open(id);
        EXPECT_EQ(run(tested), tested.done_result) << id;
        expect_journal(tested.entry + found(id) + tested.work + tested.done);
    }
}

TEST_P(EveryOperation, MakesTheSameCallsWhateverTheGateLetsPass) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        const Operation tested = operation(5);
        given_open(5);
        EXPECT_EQ(run(tested), tested.done_result);
        expect_journal(tested.entry + found(5) + tested.work + tested.done);

        start(property);
        if (tested.opens) {
            EXPECT_EQ(run(tested), tested.done_result);
            expect_journal(tested.entry + opened(5) + tested.work + tested.done);
        }
    }
}

std::string operation_name(const testing::TestParamInfo<std::tuple<const Kind*, const char*>>& info) {
    return std::string(std::get<0>(info.param)->name) + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(Stores, EveryOperation,
                         testing::Combine(kAllKinds, testing::Values("close", "_delete", "clean", "store", "updateInfo",
                                                                     "removeInfo", "removeInfoByRecId", "lock",
                                                                     "unlock", "getInfo")),
                         operation_name);
INSTANTIATE_TEST_SUITE_P(Companions, EveryOperation,
                         testing::Combine(kCompanions,
                                          testing::Values("readLock", "readUnlock", "getInfoByIdx", "getInfoListNum")),
                         operation_name);

// The operations that make their call under the write lock.
class UnderTheWriteLock : public EveryOperation {};

TEST_P(UnderTheWriteLock, TheStatusesOfTheLockCountForNothing) {
    const Operation tested = operation(5);
    given_open(5);
    always("lock", -1);
    always("unlock", -1);
    EXPECT_EQ(run(tested), 0);
    expect_journal(tested.entry + found(5) + tested.work + tested.done);
}

INSTANTIATE_TEST_SUITE_P(Stores, UnderTheWriteLock,
                         testing::Combine(kAllKinds,
                                          testing::Values("clean", "store", "removeInfo", "removeInfoByRecId")),
                         operation_name);

} // namespace
