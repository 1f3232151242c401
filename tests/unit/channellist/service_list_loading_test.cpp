// How the service list manager loads a list from its file, and what it does when the file cannot be loaded.
#include "manager_test.h"

using namespace tavro;

namespace script = tavro::script;

namespace {

using namespace tavro::test;

class ServiceListLoading : public ManagerTest {
protected:
    ServiceListLoading() : ManagerTest(kServices) {}

    NativeVltTvChannelList manager;
};

// Open with a path while the list is open.
class ServiceListReopened : public ServiceListLoading {
protected:
    const Steps counting = open_entry(5, "/data/scan_cable.bin") + found(5) + entry("getInfoListNum", 65541) +
                           call("get_num_rec_by_brdcst_type(@5, 0, 0xffffffff)");
    const Steps loading = call("fs_sync(@5, 0, \"/data/scan_cable.bin\", 5)");

    int reopen() { return manager.open(5, "/data/scan_cable.bin"); }
};

TEST_F(ServiceListReopened, AListWithRecordsIsLeftAsItIs) {
    for (const std::uint32_t count : {1U, 65535U}) {
        start(kEveryLine);
        given_open(5);
        answer("get_num_rec_by_brdcst_type", with_value(0, count));
        EXPECT_EQ(reopen(), 0);
        expect_journal(counting);
    }
}

TEST_F(ServiceListReopened, AListWithoutRecordsIsLoadedAndNeverSeeded) {
    given_open(5);
    for (const MwStatus status : {0, -8, -3}) {
        answer("fs_sync", status);
        EXPECT_EQ(reopen(), 0);
        expect_journal(counting + loading);
    }
    expect_open_lists({{5, handle(5)}});
}

TEST_F(ServiceListReopened, AListThatCannotBeCountedIsLoaded) {
    given_open(5);
    answer("get_num_rec_by_brdcst_type", with_value(-3, 12));
    EXPECT_EQ(reopen(), 0);
    expect_journal(counting + loading);
}

TEST_F(ServiceListReopened, AFileThatIsNotAListFileIsPreparedWithoutALine) {
    for (const MwStatus prepared : {0, -1}) {
        start(kEveryLine);
        given_open(5);
        answer("fs_sync", -12);
        script::answer("fs_raw_init", script::Answer{prepared});
        EXPECT_EQ(reopen(), 0);
        expect_journal(counting + loading + file_call("fs_raw_init(0, \"/data/scan_cable.bin\")"));
    }
}

TEST_F(ServiceListReopened, OpenTakesTheLowSixteenBitsOfTheListId) {
    given_open(5);
    EXPECT_EQ(manager.open(65541, "/data/scan_cable.bin"), 0);
    Steps steps = counting + loading;
    steps.front() = open_entry(65541, "/data/scan_cable.bin").front();
    expect_journal(steps);
}

TEST_F(ServiceListReopened, AListRecordedWithHandleZeroIsNotCountedButLoaded) {
    given_handle(5, 0);
    EXPECT_EQ(reopen(), 0);
    expect_journal(open_entry(5, "/data/scan_cable.bin") + found(5, 0) + entry("getInfoListNum", 0) +
                   call("fs_sync(0x0, 0, \"/data/scan_cable.bin\", 5)"));
}

// Open with a path whose file cannot be loaded.
class ServiceListSeeding : public ServiceListLoading {
protected:
    static constexpr MwStatus kNoCache = -8;

    // List 2 is opened and loaded from `path`.
    Steps loading(const std::string& path) const {
        return open_entry(2, path) + tried_open(2) + call("fs_sync(@2, 0, \"" + path + "\", 2)") + recorded(2);
    }
    Steps prepared(const std::string& path) const {
        return file_call("fs_raw_init(0, \"" + path + "\")") +
               error("#[open]: init current path  ps_svl_path " + path + " \n");
    }
    Steps look(const std::string& cache, MwStatus found = 0) const {
        return file_call("fs_raw_qry_fpath(0, \"" + cache + "\")") +
               error("#[open]: find cache path, i4_ret " + std::to_string(found) + "\n");
    }
    Steps seeding(const std::string& cache, const std::string& path, const std::string& at = "@2") const {
        return error("#[open]: Try to copy cache! \n") + file_call("fs_raw_init(0, \"" + cache + "\")") +
               file_call("fs_raw_copy(0, \"" + cache + "\", 0, \"" + path + "\")") +
               call("fs_sync(" + at + ", 0, \"" + cache + "\", 2)") + error("#[open]:copy ps_svl_path2 " + path + "\n");
    }
    Steps deletion(const std::string& cache, MwStatus status = 0) const {
        return file_call("x_fm_delete_file(0, \"" + cache + "\")") +
               error("#[open]: cache file deleted! i4_ret" + std::to_string(status) + " \n");
    }
    static void file_answer(const std::string& call, MwStatus status) { script::answer(call, script::Answer{status}); }

    const std::string cable = "/cache/scan_cable.bin";
    const std::string terrestrial = "/cache/scan_terrestrial.bin";
    const std::string path = "/data/scan_cable_1.bin";
};

TEST_F(ServiceListSeeding, AFileThatIsNotAListFileIsReplacedByTheCache) {
    for (const char* property : {kEveryLine, kErrorLines, kNoLine}) {
        start(property);
        answer("fs_sync", -12);
        EXPECT_EQ(manager.open(2, path), 0);
        expect_journal(loading(path) + prepared(path) + look(cable) + seeding(cable, path) + deletion(cable));
        expect_open_lists({{2, handle(2)}});
        EXPECT_EQ(manager.getPath(), path);
    }
}

TEST_F(ServiceListSeeding, AMissingFileIsReplacedByTheCacheWithoutBeingPrepared) {
    answer("fs_sync", -8);
    EXPECT_EQ(manager.open(2, path), 0);
    expect_journal(loading(path) + look(cable) + seeding(cable, path) + deletion(cable));
}

TEST_F(ServiceListSeeding, AFileThatCannotBePreparedIsSeededWithoutALine) {
    answer("fs_sync", -12);
    file_answer("fs_raw_init", -1);
    EXPECT_EQ(manager.open(2, path), 0);
    expect_journal(loading(path) + file_call("fs_raw_init(0, \"" + path + "\")") + look(cable) + seeding(cable, path) +
                   deletion(cable));
}

TEST_F(ServiceListSeeding, ThePathChoosesTheCacheOrNone) {
    const struct {
        const char* path;
        const std::string cache;
    } cases[] = {
        {"/data/scan_cable.bin", cable}, {"/cable/scan_1.bin", cable}, // "cable" may stand anywhere
        {"cablescan_", cable},           {"/data/scan_1.bin", terrestrial}, {"/data/scan_Cable.bin", terrestrial},
        {"scan_", terrestrial},          {"/data/cable.bin", ""},           {"/data/scan-cable.bin", ""},
        {"/data/SCAN_cable.bin", ""},
    };
    for (const auto& c : cases) {
        start(kEveryLine);
        answer("fs_sync", -8);
        EXPECT_EQ(manager.open(2, c.path), 0);
        expect_journal(loading(c.path) +
                       (c.cache.empty() ? Steps{} : look(c.cache) + seeding(c.cache, c.path) + deletion(c.cache)));
    }
}

TEST_F(ServiceListSeeding, AFileThatNamesNoScanIsOnlyPrepared) {
    answer("fs_sync", -12);
    EXPECT_EQ(manager.open(2, "/data/cable.bin"), 0);
    expect_journal(loading("/data/cable.bin") + prepared("/data/cable.bin"));
}

TEST_F(ServiceListSeeding, AListThatIsLoadedOrFailsOtherwiseIsNotSeeded) {
    for (const MwStatus status : {0, -3, -6, -11}) {
        start(kEveryLine);
        answer("fs_sync", status);
        EXPECT_EQ(manager.open(2, path), 0);
        expect_journal(loading(path));
    }
}

TEST_F(ServiceListSeeding, WithoutACacheFileNothingIsCopied) {
    for (const MwStatus found : {kNoCache, 1}) {
        start(kErrorLines);
        answer("fs_sync", -8);
        file_answer("fs_raw_qry_fpath", found);
        EXPECT_EQ(manager.open(2, path), 0);
        expect_journal(loading(path) + look(cable, found));
    }
}

TEST_F(ServiceListSeeding, ACacheThatCannotBeLoadedIsKept) {
    for (const MwStatus status : {-8, -12, -3}) {
        start(kEveryLine);
        answer("fs_sync", -8);
        answer("fs_sync", status);
        EXPECT_EQ(manager.open(2, path), 0);
        expect_journal(loading(path) + look(cable) + seeding(cable, path));
        expect_open_lists({{2, handle(2)}});
    }
}

TEST_F(ServiceListSeeding, PreparingCopyingAndDeletingTheCacheMayFail) {
    answer("fs_sync", -8);
    file_answer("fs_raw_init", -1);
    file_answer("fs_raw_copy", -2);
    file_answer("x_fm_delete_file", -5);
    EXPECT_EQ(manager.open(2, path), 0);
    expect_journal(loading(path) + look(cable) + seeding(cable, path) + deletion(cable, -5));
}

TEST_F(ServiceListSeeding, AFailedCreateIsSeededWithoutAHandle) {
    const Steps creating = open_entry(2, path) + tried_open(2) + created(2, 1);
    for (const MwStatus status : {-8, -12, -7}) {
        start(kEveryLine);
        answer("open", -7);
        answer("create", status);
        EXPECT_EQ(manager.open(2, path), 0);
        expect_journal(creating + (status == -12 ? prepared(path) : Steps{}) +
                       (status == -7 ? Steps{} : look(cable) + seeding(cable, path, "0x0") + deletion(cable)));
        expect_open_lists({});
    }
}

TEST_F(ServiceListSeeding, ListZeroFailsBeforeItIsSeeded) {
    answer("fs_sync", -12);
    EXPECT_EQ(manager.open(65536, path), -22);
    expect_journal(open_entry(65536, path) + tried_open(0) + call("fs_sync(@0, 0, \"" + path + "\", 0)"));
    expect_open_lists({});
    EXPECT_EQ(manager.getPath(), path);
}

} // namespace
