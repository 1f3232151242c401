// Storing lists to files and loading them.
#include "kinds.h"
#include "list_file_forms.h"
#include "services/list_file.h"
#include "services/status.h"
#include "workspace.h"

#include <algorithm>
#include <filesystem>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

std::vector<std::string> files_in(const std::string& directory) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

template <class Kind>
class ListFiles : public Workspace {
protected:
    // Creates list 1 with records 8, 3 and 5.
    MwdbHandle three_records() {
        const MwdbHandle handle = created<Kind>(1);
        EXPECT_EQ(add<Kind>(handle, 8, 0x88), kMwOk);
        EXPECT_EQ(add<Kind>(handle, 3, 0x33), kMwOk);
        EXPECT_EQ(add<Kind>(handle, 5, 0x55), kMwOk);
        return handle;
    }
};
TYPED_TEST_SUITE(ListFiles, EveryKind, KindNames);

TYPED_TEST(ListFiles, CarryRecordsIdsAndOrder) {
    const std::string file = this->path("list");
    ASSERT_EQ(TypeParam::store(this->three_records(), file.c_str(), 1), kMwOk);
    const MwdbHandle target = created<TypeParam>(2);
    ASSERT_EQ(add<TypeParam>(target, 3, 0x99), kMwOk);
    ASSERT_EQ(add<TypeParam>(target, 4, 0x99), kMwOk);
    ASSERT_EQ(contents<TypeParam>(target).size(), 2u);
    EXPECT_EQ(TypeParam::sync(target, 0, file.c_str(), 2), kMwOk);
    EXPECT_EQ(contents<TypeParam>(target), (Contents{{8, 0x88}, {3, 0x33}, {5, 0x55}}));
    EXPECT_EQ(add<TypeParam>(target, 1, 0x11), kMwOk);
    EXPECT_EQ(contents<TypeParam>(target), (Contents{{8, 0x88}, {3, 0x33}, {5, 0x55}, {1, 0x11}}));
    this->restart();
    EXPECT_EQ(contents<TypeParam>(opened<TypeParam>(2)), (Contents{{8, 0x88}, {3, 0x33}, {5, 0x55}, {1, 0x11}}));
}

TYPED_TEST(ListFiles, CanBeLookedIntoWithSqlite) {
    const std::string file = this->path("list");
    ASSERT_EQ(TypeParam::store(this->three_records(), file.c_str(), 1), kMwOk);
    EXPECT_EQ(query(file, "PRAGMA application_id"), std::to_string(tavro::host::kListFileApplication));
    EXPECT_EQ(query(file, "SELECT kind_name, list_id, name, records FROM list"),
              std::string(TypeParam::kName) + " 1 list 3");
    const std::string bytes = std::to_string(sizeof(typename TypeParam::Record));
    EXPECT_EQ(query(file, "SELECT record_id, length(bytes) FROM records ORDER BY position"),
              "8 " + bytes + "|3 " + bytes + "|5 " + bytes);
}

TYPED_TEST(ListFiles, OfAnEmptyListLoadAsAnEmptyList) {
    const std::string file = this->path("list");
    ASSERT_EQ(TypeParam::store(created<TypeParam>(2), file.c_str(), 2), kMwOk);
    const MwdbHandle target = this->three_records();
    EXPECT_EQ(TypeParam::sync(target, 0, file.c_str(), 1), kMwOk);
    EXPECT_EQ(contents<TypeParam>(target), Contents{});
}

TYPED_TEST(ListFiles, OfThePlatformLieBelowTheStorageDirectory) {
    const MwdbHandle handle = this->three_records();
    EXPECT_EQ(TypeParam::store(handle, "/data/lists/terrestrial", 1), kMwOk);
    EXPECT_TRUE(fs::is_regular_file(this->home() + "/data/lists/terrestrial"));
    ASSERT_EQ(TypeParam::clean(handle), kMwOk);
    EXPECT_EQ(TypeParam::sync(handle, 0, "/data/lists/terrestrial", 1), kMwOk);
    EXPECT_EQ(contents<TypeParam>(handle).size(), 3u);
}

// A file that cannot be loaded must leave the list unchanged.
template <class Kind>
class BadListFiles : public ListFiles<Kind> {
protected:
    void SetUp() override {
        file_ = this->path("list");
        handle_ = this->three_records();
        ASSERT_EQ(Kind::store(handle_, file_.c_str(), 1), kMwOk);
        good_ = Workspace::read_file(file_);
    }

    void expect_refused(MwStatus status) {
        EXPECT_EQ(Kind::sync(handle_, 0, file_.c_str(), 1), status);
        EXPECT_EQ(contents<Kind>(handle_), (Contents{{8, 0x88}, {3, 0x33}, {5, 0x55}}));
    }

    std::string file_;
    std::string good_;
    MwdbHandle handle_ = 0;
};
TYPED_TEST_SUITE(BadListFiles, EveryKind, KindNames);

TYPED_TEST(BadListFiles, Missing) {
    fs::remove(this->file_);
    this->expect_refused(kMwNoFile);
}

TYPED_TEST(BadListFiles, Empty) {
    Workspace::write_file(this->file_, "");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, Text) {
    Workspace::write_file(this->file_, "NAME;FREQUENCY\nnothing that was ever a list\n");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, TruncatedAnywhere) {
    for (std::size_t size = 1; size < this->good_.size(); size = size * 2 + 1) {
        SCOPED_TRACE(size);
        Workspace::write_file(this->file_, this->good_.substr(0, size));
        this->expect_refused(kMwNotAListFile);
    }
    Workspace::write_file(this->file_, this->good_.substr(0, this->good_.size() - 1));
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, SomebodyElsesDatabase) {
    query(this->file_, "PRAGMA application_id = 1");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, OfALaterForm) {
    query(this->file_, "PRAGMA user_version = 3");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, WithoutItsTables) {
    query(this->file_, "DROP TABLE records");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, WithARecordOfTheWrongSize) {
    query(this->file_, "UPDATE records SET bytes = x'0500' WHERE record_id = 5");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, WithARecordUnderAnothersId) {
    query(this->file_, "UPDATE records SET record_id = 6 WHERE record_id = 5");
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, OfAnotherKind) {
    const std::string other = TypeParam::kName == std::string("nwl") ? "satl" : "nwl";
    const MwStatus stored = other == "nwl" ? x_nwl_fs_store(created<Networks>(9), this->file_.c_str(), 9)
                                           : x_satl_fs_store(created<Satellites>(9), this->file_.c_str(), 9);
    ASSERT_EQ(stored, kMwOk);
    this->expect_refused(kMwNotAListFile);
}

TYPED_TEST(BadListFiles, ADirectory) {
    fs::remove(this->file_);
    fs::create_directory(this->file_);
    EXPECT_EQ(TypeParam::sync(0, 0, this->file_.c_str(), 1), kHostBadHandle); // whatever the file is
    EXPECT_EQ(this->log(), std::vector<std::string>{});
    this->expect_refused(kHostCannotReadFile);
    EXPECT_EQ(this->log(),
              std::vector<std::string>{"E/TavroHost" + Workspace::process_mark() + ": cannot read list file " +
                                       this->file_ + ": Is a directory; move it away, or choose another path"});
}

TYPED_TEST(BadListFiles, StoredWhereNoDirectoryIs) {
    const std::string file = this->path("nowhere/list");
    EXPECT_EQ(TypeParam::store(this->handle_, file.c_str(), 1), kHostCannotWriteFile);
    EXPECT_EQ(this->log(),
              std::vector<std::string>{"E/TavroHost" + Workspace::process_mark() + ": cannot write list file " + file +
                                       ": No such file or directory; check the path, or choose another path"});
}

TYPED_TEST(BadListFiles, StoredOverADirectory) {
    const std::string target = this->path("taken");
    fs::create_directory(target);
    EXPECT_EQ(TypeParam::store(this->handle_, target.c_str(), 1), kHostCannotWriteFile);
    EXPECT_EQ(fs::is_directory(target), true);
    EXPECT_EQ(files_in(this->directory()), (std::vector<std::string>{"home", "list", "log", "taken"}));
}
