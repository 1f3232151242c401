// The middleware's file functions.
#include "middleware/files.h"
#include "services/status.h"
#include "workspace.h"

#include <filesystem>
#include <sys/stat.h>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

class FileHelpers : public Workspace {
protected:
    static MwStatus find(const std::string& path) {
        std::uint32_t words[3] = {};
        return fs_raw_qry_fpath(0, path.c_str(), &words[0], &words[1], &words[2]);
    }
};

} // namespace

TEST_F(FileHelpers, PreparingMakesAFileOrKeepsWhatItHolds) {
    const std::string file = path("list");
    EXPECT_EQ(fs_raw_init(0, file.c_str()), kMwOk);
    EXPECT_EQ(read_file(file), "");
    EXPECT_TRUE(fs::is_regular_file(file));
    write_file(file, "content");
    EXPECT_EQ(fs_raw_init(0, file.c_str()), kMwOk);
    EXPECT_EQ(read_file(file), "content");
}

TEST_F(FileHelpers, PlatformPathsLieBelowTheStorageDirectory) {
    for (const char* path : {"/cache/a.bin", "/data/b/c.bin", "/3rd/d", "/mnt/vendor/e/f"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(find(path), kMwNoFile);
        EXPECT_EQ(fs_raw_init(0, path), kMwOk);
        EXPECT_TRUE(fs::is_regular_file(home() + path));
        EXPECT_EQ(find(path), kMwOk);
        EXPECT_EQ(x_fm_delete_file(0, path), kMwOk);
        EXPECT_FALSE(fs::exists(home() + path));
    }
}

TEST_F(FileHelpers, PlatformPathsAreKnownInEverySpelling) {
    EXPECT_EQ(fs_raw_init(0, "/no-such-directory/..//cache/./a.bin"), kMwOk);
    EXPECT_TRUE(fs::is_regular_file(home() + "/cache/a.bin"));
}

TEST_F(FileHelpers, PathsThatOnlyLookLikeThePlatformsAreTheUsers) {
    EXPECT_EQ(find("/cachet"), kMwNoFile);
    EXPECT_EQ(fs_raw_init(0, "/no-such-directory/list"), kHostCannotWriteFile);
    EXPECT_EQ(log(), std::vector<std::string>{"E/TavroHost" + process_mark() +
                                              ": cannot open /no-such-directory/list: No such file or directory; "
                                              "check the path, or choose another path"});
}

TEST_F(FileHelpers, FindingDescribesTheFile) {
    write_file(path("list"), "12345");
    struct stat expected {};
    ASSERT_EQ(::stat(path("list").c_str(), &expected), 0);
    std::uint32_t size = 0;
    std::uint32_t modified = 0;
    std::uint32_t mode = 0;
    EXPECT_EQ(fs_raw_qry_fpath(0, path("list").c_str(), &size, &modified, &mode), kMwOk);
    EXPECT_EQ(size, 5u);
    EXPECT_EQ(modified, static_cast<std::uint32_t>(expected.st_mtime));
    EXPECT_EQ(mode, expected.st_mode);
    EXPECT_EQ(find(path("nothing")), kMwNoFile);
    EXPECT_EQ(find(path("list/below")), kHostCannotReadFile);
    EXPECT_EQ(log(), std::vector<std::string>{"E/TavroHost" + process_mark() + ": cannot find " + path("list/below") +
                                              ": Not a directory; check the path, or choose another path"});
    EXPECT_EQ(find(directory()), kMwNoFile);
}

TEST_F(FileHelpers, CopyingReplacesTheTarget) {
    const std::string large(200'000, 'x');
    write_file(path("from"), large + "end");
    write_file(path("to"), "old");
    EXPECT_EQ(fs_raw_copy(0, path("from").c_str(), 0, path("to").c_str()), kMwOk);
    EXPECT_EQ(read_file(path("to")), large + "end");
    EXPECT_EQ(read_file(path("from")), large + "end");
    EXPECT_EQ(fs_raw_copy(0, path("from").c_str(), 0, "/cache/new/copy"), kMwOk);
    EXPECT_EQ(read_file(home() + "/cache/new/copy"), large + "end");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory()), {}), 3); // from, to, home
}

TEST_F(FileHelpers, AFailedCopyLeavesTheTarget) {
    write_file(path("to"), "old");
    EXPECT_EQ(fs_raw_copy(0, path("nothing").c_str(), 0, path("to").c_str()), kMwNoFile);
    EXPECT_EQ(read_file(path("to")), "old");
    write_file(path("from"), "new");
    EXPECT_EQ(fs_raw_copy(0, path("from").c_str(), 0, path("nowhere/to").c_str()), kHostCannotWriteFile);
    EXPECT_EQ(fs_raw_copy(0, directory().c_str(), 0, path("to").c_str()), kHostCannotReadFile);
    EXPECT_EQ(read_file(path("to")), "old");
}

TEST_F(FileHelpers, DeletingRemovesTheFileOnce) {
    write_file(path("list"), "content");
    EXPECT_EQ(x_fm_delete_file(0, path("list").c_str()), kMwOk);
    EXPECT_FALSE(fs::exists(path("list")));
    EXPECT_EQ(x_fm_delete_file(0, path("list").c_str()), kMwNoFile);
    EXPECT_EQ(x_fm_delete_file(0, directory().c_str()), kHostCannotWriteFile);
}

TEST_F(FileHelpers, OtherDrivesAndMissingPathsAreRefused) {
    std::uint32_t word = 0;
    EXPECT_EQ(fs_raw_init(1, path("list").c_str()), kHostBadArgument);
    EXPECT_EQ(fs_raw_init(0, nullptr), kHostBadArgument);
    EXPECT_EQ(fs_raw_init(0, ""), kHostBadArgument);
    EXPECT_EQ(fs_raw_qry_fpath(0, path("list").c_str(), nullptr, &word, &word), kHostBadArgument);
    EXPECT_EQ(fs_raw_copy(0, "a", 1, "b"), kHostBadArgument);
    EXPECT_EQ(fs_raw_copy(0, nullptr, 0, "b"), kHostBadArgument);
    EXPECT_EQ(x_fm_delete_file(1, "a"), kHostBadArgument);
}
