// A damaged list database: every call returns a documented status, and nothing that was read is used unchecked.
#include "edited_database.h"
#include "kinds.h"
#include "services/status.h"
#include "workspace.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace tavro;

namespace fs = std::filesystem;

namespace {

// A database with more pages than this is not checked when it is opened.
constexpr std::uint32_t kMostCheckedPages = 1024;

class Damage : public Workspace {
protected:
    std::string database() const { return home() + "/lists.db"; }

    // Makes network list 1 with two records and list 2, and changes it with `sql`. Then the storage is reopened
    // unchecked, so that only the checks of the rows can notice the change.
    MwdbHandle damaged_by(const std::string& sql) {
        const MwdbHandle handle = created<Networks>(1);
        EXPECT_EQ(add<Networks>(handle, 7, 17), kMwOk);
        EXPECT_EQ(add<Networks>(handle, 8, 34), kMwOk);
        created<Networks>(2);
        restart();
        edit_database(database(), sql);
        make_large();
        return opened_unchecked();
    }

    // Adds unused pages to the database.
    void make_large() const {
        constexpr std::uint32_t kPages = kMostCheckedPages + 1;
        fs::resize_file(database(), std::uintmax_t{kPages} * 4096);
        std::fstream file(database(), std::ios::binary | std::ios::in | std::ios::out);
        const char count[] = {0, 0, kPages >> 8, kPages & 0xFF};
        file.seekp(28).write(count, sizeof count);
    }

    static MwdbHandle opened_unchecked() {
        MwdbHandle handle = 0;
        x_nwl_open(1, 0, 0, &handle);
        return handle;
    }

    static MwStatus read(MwdbHandle handle, std::uint16_t id) {
        _NWL_REC_T record{};
        std::int32_t version = 0;
        return x_nwl_get_rec(handle, id, &record, &version);
    }

    // The log line for damage, without prefix, with this reason.
    std::string line(const std::string& reason) const {
        return "E/TavroHost" + process_mark() + ": cannot use the list database " + database() +
               ": the file is damaged (" + reason +
               "); move the file away to start without lists, or set TAVRO_HOME to another directory";
    }

    // Checks that reads by index and by id, stores and copies report the damage, with one line.
    void expect_damage(const std::string& sql, const std::string& reason) {
        const MwdbHandle handle = damaged_by(sql);
        EXPECT_EQ(contents<Networks>(handle), (Contents{{-1, kHostStorageUnavailable}}));
        EXPECT_EQ(x_nwl_fs_store(handle, path("list").c_str(), 1), kHostStorageUnavailable);
        EXPECT_FALSE(fs::exists(path("list")));
        const MwdbHandle other = opened<Networks>(2);
        EXPECT_EQ(x_nwl_copy_date(handle, other), kHostStorageUnavailable);
        for (std::uint16_t id : {7, 8, 11}) {
            EXPECT_EQ(read(other, id), kHostNoSuchRecord);
        }
        EXPECT_EQ(log(), std::vector<std::string>{line(reason)});
    }
};

} // namespace

TEST_F(Damage, ARecordOfTheWrongSizeIsReported) {
    expect_damage("UPDATE records SET bytes = x'222222220700' WHERE record_id = 7", "a record has the wrong size");
    EXPECT_EQ(read(opened_unchecked(), 7), kHostStorageUnavailable);
    EXPECT_EQ(read(opened_unchecked(), 8), kMwOk);
}

TEST_F(Damage, ARecordWithoutBytesIsReported) {
    expect_damage("PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = replace(sql, 'bytes BLOB NOT NULL', "
                  "'bytes BLOB'); PRAGMA writable_schema = RESET; UPDATE records SET bytes = NULL",
                  "a record has the wrong size");
    EXPECT_EQ(read(opened_unchecked(), 7), kHostStorageUnavailable);
}

TEST_F(Damage, ARecordThatIsATextIsReported) {
    expect_damage("UPDATE records SET bytes = CAST(bytes AS TEXT) WHERE record_id = 7", "a record has the wrong size");
}

TEST_F(Damage, ARecordThatHasAnotherIdIsReported) {
    expect_damage("UPDATE records SET number = number + 4 WHERE record_id = 7", "the id in a record is invalid");
    EXPECT_EQ(read(opened_unchecked(), 11), kHostStorageUnavailable);
}

TEST_F(Damage, ARecordWithTheIdThatNoRecordHasIsReported) {
    expect_damage("UPDATE records SET number = number | 65535 WHERE record_id = 7", "the id of a record is invalid");
    std::uint16_t id = 0;
    EXPECT_EQ(x_nwl_qry_rec_id(opened_unchecked(), kMwQueryHighestRecordId, &id), kHostStorageUnavailable);
    EXPECT_EQ(read(opened_unchecked(), 65535), kHostStorageUnavailable);
}

TEST_F(Damage, APositionThatIsNoNumberIsReported) {
    expect_damage("UPDATE records SET position = 'first'", "the position of a record is invalid");
}

TEST_F(Damage, AnInvalidVersionIsReportedByEveryCall) {
    for (const char* version : {"-1", "9223372036854775807", "'one'"}) {
        SCOPED_TRACE(version);
        const MwdbHandle handle = damaged_by("UPDATE lists SET version = " + std::string(version));
        EXPECT_EQ(handle, 0u);
        edit_database(database(), "UPDATE lists SET version = 5");
        make_large();
        restart();
        const MwdbHandle open = opened<Networks>(1);
        edit_database(database(), "UPDATE lists SET version = " + std::string(version));
        EXPECT_EQ(contents<Networks>(open), (Contents{{-1, kHostStorageUnavailable}}));
        EXPECT_EQ(read(open, 7), kHostStorageUnavailable);
        EXPECT_EQ(add<Networks>(open, 9, 0x11), kHostStorageUnavailable);
        EXPECT_EQ(x_nwl_clean(open), kHostStorageUnavailable);
        restart();
        fs::remove_all(home());
    }
    EXPECT_EQ(log(), std::vector<std::string>{line("the version of a list is invalid")});
}

TEST_F(Damage, ANameThatIsNotATextIsReported) {
    const MwdbHandle handle = damaged_by("UPDATE lists SET name = x'00'");
    EXPECT_EQ(contents<Networks>(handle), (Contents{{7, 17}, {8, 34}}));
    EXPECT_EQ(x_nwl_fs_store(handle, path("list").c_str(), 1), kHostStorageUnavailable);
    EXPECT_EQ(log(), std::vector<std::string>{line("the name of a list is not a text")});
}

TEST_F(Damage, ASmallDatabaseIsCheckedWhenItIsOpened) {
    EXPECT_EQ(add<Networks>(created<Networks>(1), 7, 17), kMwOk);
    restart();
    // Page 3 has the records: a number of cells that the page cannot hold.
    std::fstream file(database(), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(2 * 4096 + 3).put('\x7F');
    file.close();
    EXPECT_EQ(opened_unchecked(), 0u);
    EXPECT_EQ(log(), std::vector<std::string>{line("database disk image is malformed")});
}

namespace {

// Makes calls of every kind on list 1, and returns the distinct statuses.
template <class Kind>
std::vector<MwStatus> use(const std::string& file) {
    std::vector<MwStatus> seen;
    const auto status = [&](MwStatus status) {
        if (std::find(seen.begin(), seen.end(), status) == seen.end()) {
            seen.push_back(status);
        }
    };
    MwdbHandle handle = 0;
    MwdbHandle other = 0;
    status(Kind::open(1, 0, 0, &handle));
    status(Kind::open(2, 0, 0, &other));
    auto record = record_of<Kind>(0, 0);
    std::int32_t version = 0;
    std::uint16_t number = 0;
    for (std::uint16_t id : {1, 2, 65535}) {
        const MwStatus read = Kind::get(handle, id, &record, &version);
        status(read);
        EXPECT_TRUE(read != kMwOk || Kind::id_of(record) == id);
    }
    status(Kind::count(handle, &number, &version));
    for (std::uint16_t index = 0; index < 4; ++index) {
        status(Kind::get_at(handle, index, &record, &version));
    }
    status(Kind::query(handle, kMwQueryHighestRecordId, &number));
    status(Kind::query(handle, kMwQueryNextRecordId, &number));
    status(Kind::store(handle, file.c_str(), 1));
    record = record_of<Kind>(9, 0);
    status(Kind::add(handle, &record));
    status(Kind::update(handle, &record, kMwUpdatePlain));
    status(Kind::copy(handle, other));
    status(Kind::remove_record(handle, 1));
    status(Kind::clean(handle));
    status(Kind::remove(other));
    return seen;
}

} // namespace

// Every record has zeros only, so that the bytes that are not zero are those of SQLite. Of these, every `stride`th bit
// is flipped. TAVRO_TEST_EVERY_BIT=1 flips all of them, in 2 minutes.
TEST_F(Damage, OneFlippedBitGivesADocumentedStatus) {
    for (std::uint16_t list : {1, 2}) {
        const MwdbHandle handle = created<Networks>(list);
        for (std::uint16_t id : {1, 2, 3}) {
            ASSERT_EQ(add<Networks>(handle, id, 0), kMwOk);
        }
    }
    restart();
    const std::string intact = read_file(database());
    const bool all = std::getenv("TAVRO_TEST_EVERY_BIT") != nullptr;
    const std::vector<MwStatus> documented{
        kMwOk,          kMwEmpty,          kMwRecordExists,      kHostNoSuchList,
        kHostBadHandle, kHostNoSuchRecord, kHostIndexOutOfRange, kHostStorageUnavailable};
    std::size_t bit = 0;
    std::size_t flips = 0;
    std::size_t noticed = 0;
    for (std::size_t place = 0; place < intact.size(); ++place) {
        for (int in_byte = 0; in_byte < 8 && intact[place] != 0; ++in_byte) {
            if (++bit % 13 != 0 && !all) {
                continue;
            }
            SCOPED_TRACE("bit " + std::to_string(in_byte) + " of byte " + std::to_string(place));
            for (const bool checked : {true, false}) {
                std::string bytes = intact;
                bytes[place] = static_cast<char>(bytes[place] ^ (1 << in_byte));
                restart();
                fs::remove_all(home());
                fs::create_directory(home());
                write_file(database(), bytes);
                if (!checked) {
                    make_large();
                }
                const std::vector<MwStatus> seen = use<Networks>(path("list"));
                for (const MwStatus status : seen) {
                    EXPECT_NE(std::find(documented.begin(), documented.end(), status), documented.end()) << status;
                }
                ++flips;
                noticed += std::count(seen.begin(), seen.end(), kHostStorageUnavailable);
            }
        }
    }
    EXPECT_GT(flips, 500u);
    EXPECT_GT(noticed, flips / 4);
    RecordProperty("flips", static_cast<int>(flips));
    RecordProperty("noticed", static_cast<int>(noticed));
}
