// The steps that every operation on a list takes: find the handle or open the list, call the middleware, turn its
// status into a result.
#include "manager_test.h"

#include <functional>
#include <stdexcept>
#include <tuple>

using namespace tavro;

namespace script = tavro::script;

namespace {

using namespace tavro::test;

constexpr MwStatus kAnyFailure = -3;

// One operation on a list.
struct Operation {
    std::string name;
    std::function<int()> run;
    Steps entry;          // before the look-up of the handle
    std::string deciding; // the call whose status decides
    Steps work;           // with the handle
    Steps done{};         // after success
    Steps failed{};       // after a failure
    Steps failed_work{};  // instead of `work`, if the middleware fails; empty if the same
    Steps with_handle_zero{};
    int handle_zero_result = -22;
    script::Answer answer{}; // on success
    int done_result = 0;
    int failed_result = -22;
    bool opens = true; // on its first use
    bool closes = false;
};

class EveryOperation : public ManagerTest,
                       public testing::WithParamInterface<std::tuple<const ListKind*, const char*>> {
protected:
    EveryOperation() : ManagerTest(*std::get<0>(GetParam())) {}

    // The tested operation, on that list.
    Operation operation(int id) {
        for (const Operation& operation : operations(id)) {
            if (operation.name == std::get<1>(GetParam())) {
                return operation;
            }
        }
        throw std::logic_error(std::get<1>(GetParam()));
    }

    // Runs it with that result of its deciding call.
    int run(const Operation& operation, MwStatus status = 0) {
        script::Answer answer = operation.answer;
        answer.status = status;
        ManagerTest::answer(operation.deciding, answer);
        return operation.run();
    }

private:
    std::vector<Operation> operations(int id) {
        std::vector<Operation> all = list_operations(id);
        for (const auto& more : {record_operations(id), lock_operations(id)}) {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }

    std::vector<Operation> list_operations(int id) {
        const std::string at = "@" + key(id);
        Operation close{"close", [=] { return manager->close(id); }, entry("close", id), "close",
                        call("close(" + at + ")")};
        Operation remove{"_delete", [=] { return manager->delete_list(id); }, entry("_delete", id), "delete",
                         call("delete(" + at + ")")};
        close.done = remove.done = forgotten(id);
        close.closes = remove.closes = true;

        const Operation clean{"clean", [=] { return manager->clean(id); }, entry(kind.clean_prefix, "clean", id),
                              "clean", locked(id, call("clean(" + at + ")"))};
        const Operation store{"store", [=] { return manager->store(id, "/data/list.bin"); },
                              store_entry(id, "/data/list.bin"), "fs_store",
                              locked(id, call("fs_store(" + at + ", \"/data/list.bin\", " + key(id) + ")"))};

        // The number that comes with a failed count is ignored.
        Operation count{"getInfoListNum", [=] { return manager->count(id); }, entry("getInfoListNum", id),
                        kind.count_call, call(kind.count_call + ("(" + at) + ")")};
        count.answer = with_value(0, 65535);
        count.done_result = 65535;
        count.done = counted(65535);
        count.failed_result = count.handle_zero_result = 0;
        count.failed = count.with_handle_zero = counted(0);
        return {close, remove, clean, store, count};
    }

    std::vector<Operation> record_operations(int id) {
        const std::string at = "@" + key(id);
        const std::string named = std::to_string(id) + ",17";
        const Bytes sample = kind.sample();
        const Steps line = record_line("updateInfo", sample);
        Operation update{"updateInfo",
                         [=] {
                             Bytes record = sample;
                             const int result = manager->update(id, record);
                             EXPECT_EQ(record, sample);
                             return result;
                         },
                         entry("updateInfo", id), "update_rec",
                         line + call("update_rec(" + at + ", record, 0)", sample)};
        update.with_handle_zero = line;

        Operation remove{"removeInfo", [=] { return manager->remove(named); },
                         identifier_line("removeInfo", named) + removal_line(id, 17), "del_rec", removal(id, 17)};
        Operation remove_by_id{"removeInfoByRecId", [=] { return manager->remove_by_record_id(id, "9,17"); },
                               identifier_line("removeInfoByRecId", "9,17") + removal_by_id_line(id, 17), "del_rec",
                               removal(id, 17)};
        remove.failed_work = remove_by_id.failed_work = removal(id, 17, kAnyFailure);
        remove.opens = remove_by_id.opens = kind.removal_opens;

        Operation get{"getInfo",
                      [=] {
                          Bytes record(sample.size());
                          return manager->get(id, 17, record);
                      },
                      get_entry(id, 17), "get_rec", call("get_rec(" + at + ", 17)")};
        get.done = get.failed = got(sample);
        Operation get_at{"getInfoByIdx",
                         [=] {
                             Bytes record(sample.size());
                             int version = 0;
                             return manager->get_by_index(id, 4, version, record);
                         },
                         index_entry("getInfoByIdx", id, 4), "get_rec_by_rec_idx",
                         call("get_rec_by_rec_idx(" + at + ", 4)")};
        get_at.done = get_at.failed = record_line("getInfoByIdx", sample);
        get.answer = get_at.answer = with_record(0, sample);
        return {update, remove, remove_by_id, get, get_at};
    }

    std::vector<Operation> lock_operations(int id) {
        const struct {
            const char* name;
            LockCall which;
            const char* call;
        } locks[] = {{"lock", kLock, "lock"},
                     {"unlock", kUnlock, "unlock"},
                     {"readLock", kReadLock, "read_lock"},
                     {"readUnlock", kReadUnlock, "read_unlock"}};
        std::vector<Operation> all;
        for (const auto& lock : locks) {
            all.push_back({lock.name,
                           [this, id, which = lock.which] { return manager->lock(which, id); },
                           {},
                           lock.call,
                           call(lock.call + ("(@" + key(id)) + ")")});
            all.back().with_handle_zero = call(lock.call + std::string("(0x0)"));
            all.back().handle_zero_result = 0;
        }
        return all;
    }

    const std::unique_ptr<AnyManager> manager = kind.make();
};

TEST_P(EveryOperation, UsesTheHandleOfAnOpenList) {
    const Operation tested = operation(5);
    given_open(5);
    given_open(6);
    EXPECT_EQ(run(tested), tested.done_result);
    expect_journal(tested.entry + found(5) + tested.work + tested.done);
    expect_open_lists(tested.closes ? OpenLists{{6, handle(6)}} : OpenLists{{5, handle(5)}, {6, handle(6)}});
}

TEST_P(EveryOperation, OpensAListThatIsNotOpenAndLeavesItOpen) {
    const Operation tested = operation(5);
    if (!tested.opens) {
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
    const Operation tested = operation(5);
    given_open(5);
    EXPECT_EQ(run(tested, kAnyFailure), tested.failed_result);
    expect_journal(tested.entry + found(5) + (tested.failed_work.empty() ? tested.work : tested.failed_work) +
                   tested.failed);
    expect_open_lists({{5, handle(5)}});
}

TEST_P(EveryOperation, FailsWhenTheListCannotBeOpenedAndCreatesNone) {
    const Operation tested = operation(5);
    answer("open", with_value(kAnyFailure, 0x77)); // a handle that comes with a failure is ignored
    EXPECT_EQ(tested.run(), -22);
    expect_journal(tested.entry + (tested.opens ? tried_open(5) : Steps{}));
    expect_open_lists({});
}

TEST_P(EveryOperation, FailsWhenTheOpenedListHasNoHandle) {
    const Operation tested = operation(5);
    answer("open", with_value(0, 0));
    EXPECT_EQ(tested.run(), -22);
    expect_journal(tested.entry + (tested.opens ? tried_open(5) : Steps{}));
    expect_open_lists({});
}

TEST_P(EveryOperation, FailsForListZeroAfterOneAttemptToOpenIt) {
    for (const int id : {0, 65536, -65536}) {
        const Operation tested = operation(id);
        EXPECT_EQ(tested.run(), -22) << id;
        expect_journal(tested.entry + (tested.opens ? tried_open(0) : Steps{}));
        expect_open_lists({});
    }
}

TEST_P(EveryOperation, PassesHandleZeroToNoCallButTheLocks) {
    const Operation tested = operation(5);
    given_handle(5, 0);
    EXPECT_EQ(run(tested), tested.handle_zero_result);
    expect_journal(tested.entry + found(5, 0) + tested.with_handle_zero);
    expect_open_lists({{5, 0}});
}

TEST_P(EveryOperation, TakesTheLowSixteenBitsOfAListId) {
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

std::string operation_name(const testing::TestParamInfo<std::tuple<const ListKind*, const char*>>& info) {
    return std::string(std::get<0>(info.param)->name) + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(Lists, EveryOperation,
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

TEST_P(UnderTheWriteLock, LockErrorsAreIgnored) {
    const Operation tested = operation(5);
    given_open(5);
    always("lock", -1);
    always("unlock", -1);
    EXPECT_EQ(run(tested), 0);
    expect_journal(tested.entry + found(5) + tested.work + tested.done);
}

INSTANTIATE_TEST_SUITE_P(Lists, UnderTheWriteLock,
                         testing::Combine(kAllKinds,
                                          testing::Values("clean", "store", "removeInfo", "removeInfoByRecId")),
                         operation_name);

} // namespace
