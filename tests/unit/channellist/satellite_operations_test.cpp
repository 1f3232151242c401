// The course that every operation of a satellite list store takes: find the handle or open the list, call
// the middleware, turn its status into a result.
#include "satellite_store_support.h"

#include <functional>
#include <stdexcept>

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
    int done_result = 0;
    int failed_result = -22;
    bool closes = false;
};

class SatelliteOperations : public SatelliteStore, public testing::WithParamInterface<const char*> {
protected:
    // The tested operation, on that list.
    Operation operation(int id) {
        for (const Operation& operation : operations(id)) {
            if (operation.name == GetParam()) {
                return operation;
            }
        }
        throw std::logic_error(GetParam());
    }

    void script(const Operation& operation, MwStatus status) {
        tavro::script::Answer scripted = with_value(status, 65535);
        if (operation.answering != "get_num_recs") {
            scripted.value.reset();
        }
        answer(operation.answering, scripted);
    }

private:
    std::vector<Operation> operations(int id) {
        const std::string number = std::to_string(id);
        const std::string k = key(id);
        const std::string at = "@" + k;
        const auto text_entry = [&](const std::string& name, const std::string& text, const std::string& numbers) {
            return debug("[" + name + "]: string recId = " + text + " \n") +
                   debug("[" + name + "]: " + numbers + " \n");
        };
        const std::string named = number + ",17";
        const std::string list_and_17 = "satId = " + number + ", satRecId = 17";
        const Steps removal = locked(id, call("del_rec(" + at + ", 17)"));
        std::vector<Operation> all = {
            {"close", [=] { return manager.close(id); }, entry("close", id), "close", call("close(" + at + ")"),
             forgotten(id)},
            {"_delete", [=] { return manager._delete(id); }, entry("_delete", id), "delete", call("delete(" + at + ")"),
             forgotten(id)},
            {"clean", [=] { return manager.clean(id); }, entry("clean", id), "clean",
             locked(id, call("clean(" + at + ")"))},
            {"store", [=] { return manager.store(id, "/data/satl.bin"); },
             debug("[store]: satId = " + number + " path = /data/satl.bin\n"), "fs_store",
             locked(id, call("fs_store(" + at + ", \"/data/satl.bin\", " + k + ")"))},
            {"updateInfo",
             [=] {
                 _SATL_REC_T record = sample();
                 const int result = manager.updateInfo(id, &record);
                 EXPECT_EQ(bytes_of(record), bytes_of(sample()));
                 return result;
             },
             entry("updateInfo", id), "update_rec", call("update_rec(" + at + ", record, 0)", bytes_of(sample()))},
            {"removeInfo", [=] { return manager.removeInfo(named); }, text_entry("removeInfo", named, list_and_17),
             "del_rec", removal},
            {"removeInfoByRecId", [=] { return manager.removeInfoByRecId(id, "9,17"); },
             text_entry("removeInfoByRecId", "9,17", "mwdbId = " + number + ", nwlRecId = 17"), "del_rec", removal},
            {"getInfo",
             [=] {
                 _SATL_REC_T record = {};
                 return manager.getInfo(named, &record);
             },
             text_entry("getInfo", named, list_and_17), "get_rec", call("get_rec(" + at + ", 17)")},
            {"getInfoByIdx",
             [=] {
                 _SATL_REC_T record = {};
                 int version = 0;
                 return manager.getInfoByIdx(id, 4, &version, &record);
             },
             debug("[NativeVltTvSatelliteList][getInfoByIdx]: satId = " + number + " idx = 4\n"), "get_rec_by_rec_idx",
             call("get_rec_by_rec_idx(" + at + ", 4)")},
            {"getInfoListNum", [=] { return manager.getInfoListNum(id); }, entry("getInfoListNum", id), "get_num_recs",
             call("get_num_recs(" + at + ")"), debug("[getInfoListNum]:i2_num_rec:65535 \n"),
             debug("[getInfoListNum]:i2_num_rec:0 \n"), 65535, 0},
            {"lockSatl", [=] { return manager.lockSatl(id); }, {}, "lock", call("lock(" + at + ")")},
            {"unLockSatl", [=] { return manager.unLockSatl(id); }, {}, "unlock", call("unlock(" + at + ")")},
            {"readLockSatl", [=] { return manager.readLockSatl(id); }, {}, "read_lock", call("read_lock(" + at + ")")},
            {"readUnLockSatl",
             [=] { return manager.readUnLockSatl(id); },
             {},
             "read_unlock",
             call("read_unlock(" + at + ")")},
        };
        all[0].closes = all[1].closes = true;
        return all;
    }
};

TEST_P(SatelliteOperations, UseTheHandleOfAnOpenListAndGiveZeroOnSuccess) {
    for (const int id : {5, 65541, -65531, -1, 65535}) {
        start(kEveryLine);
        const Operation tested = operation(id);
        given_open(id);
        given_open(6);
        script(tested, 0);
        EXPECT_EQ(tested.run(), tested.done_result) << id;
        expect_journal(tested.entry + found(id) + tested.work + tested.done);
        OpenLists left = {{static_cast<std::uint16_t>(id), handle(id)}, {6, 0x40006}};
        if (tested.closes) {
            left.erase(static_cast<std::uint16_t>(id));
        }
        expect_open_lists(left);
    }
}

TEST_P(SatelliteOperations, OpenAListThatIsNotOpenAndLeaveItOpen) {
    const Operation tested = operation(5);
    script(tested, 0);
    EXPECT_EQ(tested.run(), tested.done_result);
    expect_journal(tested.entry + opened(5) + tested.work + tested.done);
    expect_open_lists(tested.closes ? OpenLists{} : OpenLists{{5, 0x40005}});
}

TEST_P(SatelliteOperations, FailWhenTheMiddlewareFailsAndLeaveTheListOpen) {
    const Operation tested = operation(5);
    given_open(5);
    script(tested, kAnyFailure);
    EXPECT_EQ(tested.run(), tested.failed_result);
    expect_journal(tested.entry + found(5) + tested.work + tested.failed);
    expect_open_lists({{5, 0x40005}});
}

TEST_P(SatelliteOperations, FailWhenTheListCannotBeOpenedOrHasNoHandleAndCreateNone) {
    const Operation tested = operation(5);
    answer("open", with_value(kAnyFailure, 0x77)); // a handle that comes with a failure is none
    EXPECT_EQ(tested.run(), -22);
    answer("open", with_value(0, 0));
    EXPECT_EQ(tested.run(), -22);
    expect_journal(tested.entry + tried_open(5) + tested.entry + tried_open(5));
    expect_open_lists({});
}

TEST_P(SatelliteOperations, FailForListZeroAfterOneAttemptToOpenIt) {
    for (const int id : {0, 65536}) {
        const Operation tested = operation(id);
        EXPECT_EQ(tested.run(), -22) << id;
        expect_journal(tested.entry + tried_open(0));
        expect_open_lists({});
    }
}

TEST_P(SatelliteOperations, MakeTheSameCallsWhateverTheGateLetsPass) {
    for (const char* property : {kErrorLines, kNoLine}) {
        start(property);
        const Operation tested = operation(5);
        script(tested, 0);
        EXPECT_EQ(tested.run(), tested.done_result);
        expect_journal(tested.entry + opened(5) + tested.work + tested.done);
    }
}

std::string operation_name(const testing::TestParamInfo<const char*>& info) { return info.param; }

INSTANTIATE_TEST_SUITE_P(Store, SatelliteOperations,
                         testing::Values("close", "_delete", "clean", "store", "updateInfo", "removeInfo",
                                         "removeInfoByRecId", "getInfo", "getInfoByIdx", "getInfoListNum", "lockSatl",
                                         "unLockSatl", "readLockSatl", "readUnLockSatl"),
                         operation_name);

// The operations that refuse a list that is recorded with no handle, without a call.
class SatelliteOperationsThatNeedAHandle : public SatelliteOperations {};

TEST_P(SatelliteOperationsThatNeedAHandle, FailWithoutACallForHandleZero) {
    const Operation tested = operation(5);
    given_handle(5, 0);
    EXPECT_EQ(tested.run(), -22);
    expect_journal(tested.entry + found_zero(5));
    expect_open_lists({{5, 0}});
}

INSTANTIATE_TEST_SUITE_P(Store, SatelliteOperationsThatNeedAHandle,
                         testing::Values("close", "_delete", "clean", "store", "updateInfo", "removeInfo",
                                         "removeInfoByRecId", "getInfo", "getInfoByIdx"),
                         operation_name);

// The operations that make their call under the write lock.
class SatelliteOperationsUnderTheWriteLock : public SatelliteOperations {};

TEST_P(SatelliteOperationsUnderTheWriteLock, TheStatusesOfTheLockCountForNothing) {
    const Operation tested = operation(5);
    given_open(5);
    always("lock", -1);
    always("unlock", -1);
    EXPECT_EQ(tested.run(), 0);
    expect_journal(tested.entry + found(5) + tested.work);
}

INSTANTIATE_TEST_SUITE_P(Store, SatelliteOperationsUnderTheWriteLock,
                         testing::Values("clean", "store", "removeInfo", "removeInfoByRecId"), operation_name);

} // namespace
