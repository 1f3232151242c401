// What the service list manager does differently.
#include "manager_test.h"

using namespace tavro;

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class ServiceList : public ManagerTest {
protected:
    ServiceList() : ManagerTest(kServices) {}

    // The line in which an operation logs the sample.
    Steps sample_line(const std::string& operation, std::uint16_t record_id = 17) const {
        return record_line(operation, kind.sample_as(record_id));
    }

    // Makes the call with the sample as a record; `after` is the record afterwards.
    template <class Call>
    int with_sample(Call call) {
        _SVL_REC_T record = {};
        std::memcpy(&record, sample.data(), sizeof(record));
        const int result = call(&record);
        after.assign(sizeof(record), std::byte{0});
        std::memcpy(after.data(), &record, sizeof(record));
        return result;
    }
    int add(int id) {
        return with_sample([&](_SVL_REC_T* record) { return manager.addInfo(id, record); });
    }
    int copy(int id) {
        return with_sample([&](_SVL_REC_T* record) { return manager.copyInfo(id, record); });
    }

    NativeVltTvChannelList manager;
    const Bytes sample = kind.sample();
    Bytes after;
};

TEST_F(ServiceList, ThePathIsTheOneLastSet) {
    EXPECT_EQ(manager.getPath(), "");
    manager.setPath("/data/a.bin");
    EXPECT_EQ(manager.getPath(), "/data/a.bin");
    manager.setPath("");
    EXPECT_EQ(manager.getPath(), "");
    EXPECT_EQ(NativeVltTvChannelList().getPath(), "");
    expect_journal({});
}

TEST_F(ServiceList, OpenWithAPathSetsThePathFirstEvenIfItFails) {
    std::string path_at_open;
    script::observe([&](const std::string& text) {
        if (text.rfind("x_svl_open", 0) == 0) {
            path_at_open = manager.getPath();
        }
    });
    EXPECT_EQ(manager.open(0, "/data/a.bin"), -22);
    EXPECT_EQ(path_at_open, "/data/a.bin");
    EXPECT_EQ(manager.getPath(), "/data/a.bin");
    given_open(5);
    EXPECT_EQ(manager.open(5, "/data/b.bin"), 0);
    EXPECT_EQ(manager.getPath(), "/data/b.bin");
}

TEST_F(ServiceList, OpenWithAnEmptyPathLeavesThePathAlone) {
    manager.setPath("/data/a.bin");
    EXPECT_EQ(manager.open(5, ""), -22);
    EXPECT_EQ(manager.getPath(), "/data/a.bin");
}

TEST_F(ServiceList, ThePathIsTheManagersOwnAndNeitherOpenNorStoreChangesIt) {
    NativeVltTvChannelList other;
    manager.setPath("/data/a.bin");
    EXPECT_EQ(manager.open(5), 0);
    EXPECT_EQ(manager.store(5, "/data/b.bin"), 0);
    EXPECT_EQ(manager.getPath(), "/data/a.bin");
    EXPECT_EQ(other.getPath(), "");
}

TEST_F(ServiceList, DestroyingAManagerClosesTheListsBeforeItsPathIsReleased) {
    // A path of this length lies in memory of its own, whose first bytes change when it is released.
    const std::string long_path = "/data/" + std::string(200, 'x') + "/list.bin";
    auto other = std::make_unique<NativeVltTvChannelList>();
    const NativeVltTvChannelList* const destroyed = other.get();
    other->setPath(long_path);
    given_open(5);
    given_open(7);
    std::vector<std::string> paths;
    script::observe([&](const std::string& call) {
        if (call.rfind("x_svl_close(", 0) == 0) {
            paths.push_back(destroyed->getPath());
        }
    });
    other.reset();
    script::observe({});
    EXPECT_EQ(paths, (std::vector<std::string>{long_path, long_path}));
    expect_open_lists({});
}

TEST_F(ServiceList, OpenTmpReturnsAHandleThatIsNotRecorded) {
    EXPECT_EQ(manager.openTmp(5), 0x10005U);
    expect_journal(entry("openTmp") + tried_open(5) + debug("#[openTmp]: mwdbId = 5 set handle ok \n"));
    given_open(5); // a list that is open is opened once more
    answer("open", with_value(0, 0x77));
    EXPECT_EQ(manager.openTmp(65541), 0x77U);
    expect_journal(entry("openTmp", 65541) + tried_open(5) + debug("#[openTmp]: mwdbId = 65541 set handle ok \n"));
    EXPECT_EQ(manager.openTmp(0), 0x10000U);
    expect_journal(entry("openTmp", 0) + tried_open(0) + debug("#[openTmp]: mwdbId = 0 set handle ok \n"));
    expect_open_lists({{5, handle(5)}});
}

TEST_F(ServiceList, OpenTmpOfAListThatDoesNotExistReturnsZeroAndCreatesNone) {
    answer("open", with_value(-7, 0x77));
    EXPECT_EQ(manager.openTmp(5), 0U);
    expect_journal(entry("openTmp") + tried_open(5));
}

TEST_F(ServiceList, CloseTmpClosesTheHandleAndLeavesTheMapAlone) {
    given_open(5);
    EXPECT_EQ(manager.closeTmp(handle(5)), 0);
    expect_journal(debug("#[closeTmp]:\n") + call("close(@5)") + debug("#[closeTmp]: mwdbId = 65541 set handle ok \n"));
    answer("close", -3);
    EXPECT_EQ(manager.closeTmp(0), -22);
    expect_journal(debug("#[closeTmp]:\n") + call("close(0x0)"));
    expect_open_lists({{5, handle(5)}});
}

TEST_F(ServiceList, TheReadLocksPassTheirHandleOnUnchecked) {
    for (const unsigned int any : {0x10005U, 0U, 0xFFFFFFFFU}) {
        const std::string at = any == 0 ? "0x0" : any == 0x10005 ? "0x10005" : "0xffffffff";
        EXPECT_EQ(manager.readLockSvl(any), 0);
        EXPECT_EQ(manager.unReadLockSvl(any), 0);
        answer("read_lock", -3);
        answer("read_unlock", -3);
        EXPECT_EQ(manager.readLockSvl(any), -22);
        EXPECT_EQ(manager.unReadLockSvl(any), -22);
        const Steps both = call("read_lock(" + at + ")") + call("read_unlock(" + at + ")");
        expect_journal(both + both);
    }
}

TEST_F(ServiceList, AddInfoAddsUnderTheNextIdWithoutALock) {
    given_open(5);
    for (const std::uint16_t next : {0, 1, 1207, 65534}) {
        answer("qry_rec_id", with_value(0, next));
        EXPECT_EQ(add(5), 0);
        expect_journal(entry("addInfo") + found(5) + call("qry_rec_id(@5, 3)") + sample_line("addInfo", next) +
                       call("add_rec(@5, record)", kind.sample_as(next)));
        EXPECT_EQ(after, kind.sample_as(next));
    }
}

TEST_F(ServiceList, AddInfoFailsWhenTheListOffersNoId) {
    given_open(5);
    for (const auto& offer : {with_value(0, 65535), with_value(-3, 1), with_value(-6, 0), with_value(-11, 1)}) {
        answer("qry_rec_id", offer);
        EXPECT_EQ(add(5), -22);
        expect_journal(entry("addInfo") + found(5) + call("qry_rec_id(@5, 3)"));
        EXPECT_EQ(after, sample);
    }
}

TEST_F(ServiceList, AddInfoFailsWhenTheMiddlewareRefusesTheRecord) {
    given_open(5);
    for (const MwStatus status : {-3, -11}) { // a taken id is not written over
        answer("qry_rec_id", with_value(0, 40));
        answer("add_rec", status);
        EXPECT_EQ(add(5), -22);
        expect_journal(entry("addInfo") + found(5) + call("qry_rec_id(@5, 3)") + sample_line("addInfo", 40) +
                       call("add_rec(@5, record)", kind.sample_as(40)));
    }
}

TEST_F(ServiceList, AddInfoToHandleZeroSucceedsWithoutAdding) {
    given_handle(5, 0);
    answer("qry_rec_id", with_value(0, 40));
    EXPECT_EQ(add(5), 0);
    expect_journal(entry("addInfo") + found(5, 0) + call("qry_rec_id(0x0, 3)") + sample_line("addInfo", 40));
    EXPECT_EQ(after, kind.sample_as(40));
}

TEST_F(ServiceList, CopyInfoKeepsTheRecordAsItIs) {
    given_open(5);
    EXPECT_EQ(copy(5), 0);
    expect_journal(entry("copyInfo") + found(5) + call("add_rec(@5, record)", sample) +
                   debug("[copyInfo]: x_svl_add_rec OK , svl_rec_id=17  \n"));
    EXPECT_EQ(after, sample);
}

TEST_F(ServiceList, CopyInfoLogsARefusalAndReplacesNothing) {
    for (const char* property : {kEveryLine, kNoLine}) {
        start(property);
        given_open(5);
        for (const MwStatus status : {-3, -11}) {
            answer("add_rec", status);
            EXPECT_EQ(copy(5), -22);
            expect_journal(entry("copyInfo") + found(5) + call("add_rec(@5, record)", sample) +
                           debug("[copyInfo]: fail \n"));
        }
    }
}

TEST_F(ServiceList, CopyInfoOfNoRecordOrToHandleZeroFailsWithoutACall) {
    given_open(5);
    EXPECT_EQ(manager.copyInfo(5, nullptr), -22);
    expect_journal(entry("copyInfo") + found(5) + debug("[copyInfo]: fail \n"));
    given_handle(6, 0);
    EXPECT_EQ(copy(6), -22);
    expect_journal(entry("copyInfo", 6) + found(6, 0) + debug("[copyInfo]: fail \n"));
}

TEST_F(ServiceList, AddsAndCopiesOpenAListThatIsNotOpenButCreateNone) {
    for (const char* property : {kEveryLine, kNoLine}) {
        start(property);
        EXPECT_EQ(add(5), 0);
        expect_journal(entry("addInfo") + opened(5) + call("qry_rec_id(@5, 3)") + sample_line("addInfo", 1) +
                       call("add_rec(@5, record)", kind.sample_as(1)));
        EXPECT_EQ(copy(6), 0);
        expect_journal(entry("copyInfo", 6) + opened(6) + call("add_rec(@6, record)", sample) +
                       debug("[copyInfo]: x_svl_add_rec OK , svl_rec_id=17  \n"));
        always("open", -7);
        EXPECT_EQ(add(7), -22);
        EXPECT_EQ(copy(7), -22);
        expect_journal(entry("addInfo", 7) + tried_open(7) + entry("copyInfo", 7) + tried_open(7));
        EXPECT_EQ(add(65536), -22);
        EXPECT_EQ(copy(0), -22);
        expect_journal(entry("addInfo", 65536) + tried_open(0) + entry("copyInfo", 0) + tried_open(0));
    }
}

TEST_F(ServiceList, GetInfoTakesTheLowSixteenBitsOfTheRecordId) {
    given_open(5);
    answer("get_rec", with_record(0, sample));
    EXPECT_EQ(with_sample([&](_SVL_REC_T* record) {
                  *record = {};
                  return manager.getInfo(5, 65553, record);
              }),
              0);
    expect_journal(get_entry(5, 65553) + found(5) + call("get_rec(@5, 17)") + sample_line("getInfo"));
    EXPECT_EQ(after, sample);
}

TEST_F(ServiceList, GetInfoByIdxReadsAmongAllRecords) {
    int version = 0;
    answer("get_rec_by_brdcst_type", with_record(0, sample, 9));
    const auto read = [&](int index, unsigned int at) {
        return with_sample([&](_SVL_REC_T* record) {
            *record = {};
            return manager.getInfoByIdx(index, at, &version, record);
        });
    };
    EXPECT_EQ(read(65539, 0x10005), 0);
    expect_journal(call("get_rec_by_brdcst_type(@5, 0, 0xffffffff, 3)"));
    EXPECT_EQ(after, sample);
    EXPECT_EQ(version, 9);
    answer("get_rec_by_brdcst_type", -3);
    EXPECT_EQ(read(-1, 0x10005), -22);
    expect_journal(call("get_rec_by_brdcst_type(@5, 0, 0xffffffff, 65535)"));
    EXPECT_EQ(read(3, 0), -22);
    expect_journal({});
}

TEST_F(ServiceList, GetInfoByIdxReadsByTransportStream) {
    int version = 0;
    answer("get_rec_by_ts", with_record(0, sample, 9));
    const auto read = [&](int key1, int key2, int index, unsigned int at) {
        return with_sample([&](_SVL_REC_T* record) {
            *record = {};
            return manager.getInfoByIdx(key1, key2, index, at, &version, record);
        });
    };
    EXPECT_EQ(read(65537, -2, 65539, 0x10005), 0);
    expect_journal(call("get_rec_by_ts(@5, 1, 65534, 0xffffffff, 3)"));
    EXPECT_EQ(after, sample);
    EXPECT_EQ(version, 9);
    answer("get_rec_by_ts", -3);
    EXPECT_EQ(read(1, 2, 3, 0x10005), -22);
    expect_journal(call("get_rec_by_ts(@5, 1, 2, 0xffffffff, 3)"));
    EXPECT_EQ(read(1, 2, 3, 0), -22);
    expect_journal({});
}

TEST_F(ServiceList, GetInfoListNumCountsEveryRecordOfAHandle) {
    answer("get_num_rec_by_brdcst_type", with_value(0, 65535));
    EXPECT_EQ(manager.getInfoListNum(0x10005), 65535);
    answer("get_num_rec_by_brdcst_type", with_value(-3, 12));
    EXPECT_EQ(manager.getInfoListNum(0x10005), 0);
    const Steps counting = entry("getInfoListNum", 65541) + call("get_num_rec_by_brdcst_type(@5, 0, 0xffffffff)");
    expect_journal(counting + counting);
    EXPECT_EQ(manager.getInfoListNum(0), 0);
    expect_journal(entry("getInfoListNum", 0));
}

TEST_F(ServiceList, GetInfoListNumCountsTheRecordsOfATransportStream) {
    answer("get_num_rec_by_ts", with_value(0, 65535));
    EXPECT_EQ(manager.getInfoListNum(0x10005, 65537, -2), 65535);
    answer("get_num_rec_by_ts", with_value(-3, 12));
    EXPECT_EQ(manager.getInfoListNum(0x10005, 1, 65534), 0);
    const Steps counting = entry("getInfoListNum", 65541) + call("get_num_rec_by_ts(@5, 1, 65534, 0xffffffff)");
    expect_journal(counting + counting);
    EXPECT_EQ(manager.getInfoListNum(0, 1, 2), 0);
    expect_journal(entry("getInfoListNum", 0));
}

TEST_F(ServiceList, GetInfoListAndUpdateInfoListAreSilentPlaceholders) {
    for (const int id : {5, 0}) {
        EXPECT_EQ(manager.getInfoList(id), 0);
        EXPECT_EQ(manager.updateInfoList(id), -22);
    }
    expect_journal({});
    expect_open_lists({});
}

} // namespace
