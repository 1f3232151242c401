// Damaged and crafted list files: what is read is the list that was stored, or nothing.
#include "kinds.h"
#include "list_file_forms.h"
#include "services/kinds.h"
#include "services/list_file.h"

#include <cstdint>
#include <filesystem>
#include <pthread.h>
#include <sqlite3.h>

using namespace tavro;

using tavro::host::kNwl;
using tavro::host::parse_list_file;
using tavro::host::read_list_file;
using tavro::host::StoredRecords;
using tavro::host::write_list_file;

namespace {

// Under an emulator and with sanitizers, only every nth damage is tried.
#if defined(__arm__) || defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kStride = 61;
#else
constexpr std::size_t kStride = 1;
#endif

const Contents kThree{{1, 0x11}, {2, 0x22}, {3, 0x33}};

class ListFileContent : public ListFileForms {
protected:
    static MwStatus parse(const std::string& content, StoredRecords& records) {
        return parse_list_file(content.data(), content.size(), kNwl, records);
    }
    static MwStatus parse(const std::string& content) {
        StoredRecords records;
        return parse(content, records);
    }

    // Changes bits of one byte at a time. Each content must be refused or read as the same list; in the old form, at
    // least as the same ids in the same order. Returns how many were refused.
    static std::size_t refused(const std::string& good, const std::vector<std::pair<std::size_t, int>>& changes) {
        StoredRecords expected;
        EXPECT_EQ(parse(good, expected), kMwOk);
        std::size_t refused = 0;
        std::string content = good;
        for (std::size_t i = 0; i < changes.size(); i += kStride) {
            const auto [place, bits] = changes[i];
            content[place] = static_cast<char>(content[place] ^ bits);
            StoredRecords records;
            const MwStatus status = parse(content, records);
            refused += status == kMwNotAListFile ? 1 : 0;
            const bool same_bytes = is_old(good) || records.bytes == expected.bytes;
            if (status != kMwNotAListFile && (status != kMwOk || records.ids != expected.ids || !same_bytes)) {
                ADD_FAILURE() << "bits " << bits << " of byte " << place << ": status " << status;
                break;
            }
            content[place] = good[place];
        }
        return refused;
    }

    static bool is_old(const std::string& content) { return content[63] == 1; } // user_version

    // Checks that the content is a list file until one of the SQL statements has changed it.
    void expect_refused_after(const std::string& content, const std::vector<std::string>& statements) {
        EXPECT_EQ(parse(content), kMwOk);
        EXPECT_EQ(parse(changed(content, "VACUUM")), kMwOk);
        for (const std::string& statement : statements) {
            SCOPED_TRACE(statement);
            EXPECT_EQ(parse(changed(content, statement)), kMwNotAListFile);
        }
    }
};

std::string hex_of(std::size_t count, const std::string& byte) {
    std::string text = "x'";
    for (std::size_t i = 0; i < count; ++i) {
        text += byte;
    }
    return text + "'";
}

} // namespace

TEST_F(ListFileContent, WithAFlippedBitIsTheListOrRefused) {
    const std::string good = stored({{7, 0x77}, {2, 0x22}, {5, 0x55}});
    std::vector<std::pair<std::size_t, int>> changes; // all bits that are in use, and one of each unused byte
    for (std::size_t place = 0; place < good.size(); ++place) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            if (good[place] != 0 || bit == place % 8) {
                changes.emplace_back(place, 1 << bit);
            }
        }
    }
    const std::size_t record_bits = 3 * sizeof(_NWL_REC_T) * 8;
    EXPECT_GT(refused(good, changes), record_bits / kStride);
}

TEST_F(ListFileContent, WithAChangedByteIsTheListOrRefused) {
    Contents records;
    for (int id = 20; id > 0; --id) {
        records.emplace_back(id, id);
    }
    const std::string good = stored(records);
    std::vector<std::pair<std::size_t, int>> changes;
    for (std::size_t place = 0; place < good.size(); ++place) {
        changes.emplace_back(place, 1 + place % 255);
    }
    EXPECT_GT(refused(good, changes), records.size() * sizeof(_NWL_REC_T) / kStride);
}

TEST_F(ListFileContent, OfTheOldFormIsNeverReadInPart) {
    const std::string good = stored_in_old_form(kThree);
    std::vector<std::pair<std::size_t, int>> changes;
    for (std::size_t place = 0; place < good.size(); ++place) {
        changes.emplace_back(place, good[place] == 0 ? 1 + place % 255 : good[place]); // many become 0
    }
    EXPECT_GT(refused(good, changes), 3 * sizeof(std::uint16_t));
    std::string shorter = good;
    ASSERT_EQ(shorter[2 * 4096 + 4], 3); // the number of rows in the page with the records
    shorter[2 * 4096 + 4] = 2;
    EXPECT_EQ(parse(shorter), kMwNotAListFile);
}

TEST_F(ListFileContent, OfTheOldFormIsReadWholeOrRefused) {
    StoredRecords records;
    const std::string good = stored_in_old_form(kThree);
    EXPECT_EQ(parse(good.substr(0, good.size() - 1)), kMwNotAListFile); // the last byte of a record
    EXPECT_EQ(parse(stored_in_old_form({{9, 0x99}, {0, 0x10}, {65534, 0x34}}), records), kMwOk);
    EXPECT_EQ(records.ids, (std::vector<std::uint16_t>{9, 0, 65534}));
    const std::string bytes(reinterpret_cast<const char*>(records.bytes.data()), records.bytes.size());
    EXPECT_EQ(bytes, bytes_of(record_of<Networks>(9, 0x99)) + bytes_of(record_of<Networks>(0, 0x10)) +
                         bytes_of(record_of<Networks>(65534, 0x34)));
}

// In the old form, because its rows have no checksum.
TEST_F(ListFileContent, WithRowsOfNoListIsRefused) {
    const std::string last_id = "UPDATE records SET bytes = " + hex_of(sizeof(_NWL_REC_T), "FF") + ", record_id = ";
    expect_refused_after(
        stored_in_old_form(kThree),
        {"UPDATE records SET position = 2 WHERE record_id = 1", "UPDATE records SET position = 4 WHERE record_id = 3",
         "UPDATE records SET position = 0 WHERE record_id = 1", "UPDATE records SET position = -1 WHERE record_id = 1",
         "UPDATE records SET position = 1 << 29 WHERE record_id = 3",
         "UPDATE records SET position = 'x' WHERE record_id = 1",
         "UPDATE records SET position = 1.5 WHERE record_id = 1",
         "UPDATE records SET bytes = CAST(bytes AS TEXT) WHERE record_id = 1",
         "UPDATE records SET bytes = 0 WHERE record_id = 1",
         "UPDATE records SET bytes = substr(bytes, 2) WHERE record_id = 1",
         "UPDATE records SET bytes = CAST(bytes || x'00' AS BLOB) WHERE record_id = 1",
         "UPDATE records SET record_id = 9 WHERE record_id = 3", last_id + "65535 WHERE record_id = 3",
         last_id + "-1 WHERE record_id = 3", "DELETE FROM records WHERE record_id = 1", "DELETE FROM list",
         "INSERT INTO list SELECT * FROM list", "UPDATE list SET kind = 4", "UPDATE list SET kind = 'nwl'"});
}

TEST_F(ListFileContent, WithOtherRecordsThanCountedIsRefused) {
    expect_refused_after(stored(kThree), {"DELETE FROM records WHERE record_id = 3", "UPDATE list SET records = 4",
                                          "UPDATE list SET checksum = checksum + 1", "UPDATE list SET checksum = 'x'",
                                          "UPDATE records SET position = 6 - position WHERE record_id > 1; "
                                          "UPDATE records SET position = position - 1 WHERE record_id > 1",
                                          "INSERT INTO list SELECT * FROM list", "PRAGMA user_version = 1"});
}

TEST_F(ListFileContent, WithOtherTablesThanTheTwoIsRefused) {
    const std::string rows = " AS SELECT 1 AS record_id, 1 AS position, zeroblob(304) AS bytes";
    const std::vector<std::string> statements{
        "CREATE TABLE other (x)",
        "CREATE VIEW other AS SELECT 1",
        "CREATE INDEX other ON records (position)",
        "CREATE TRIGGER other AFTER INSERT ON records BEGIN DELETE FROM records; END",
        "CREATE VIRTUAL TABLE other USING fts5(x)",
        "ALTER TABLE records ADD COLUMN other AS (record_id + 1)",
        "DROP TABLE records; CREATE VIEW records" + rows,
        "DROP TABLE records; CREATE TABLE records" + rows,
        "DROP TABLE list; CREATE VIEW list AS SELECT 3 AS kind, 3 AS records, 0 AS checksum",
        "DROP TABLE records",
        "DROP TABLE list",
        "PRAGMA application_id = 1",
        "PRAGMA user_version = 3",
        "PRAGMA user_version = 0",
        "PRAGMA journal_mode = WAL"};
    for (const std::string& statement : statements) {
        SCOPED_TRACE(statement);
        const std::string file = path("crafted");
        write_file(file, stored(kThree));
        query(file, statement);
        EXPECT_EQ(parse(read_file(file)), kMwNotAListFile);
    }
}

TEST_F(ListFileContent, WithTooMuchInItIsRefusedWithLittleMemory) {
    std::string tables = "BEGIN;";
    for (int i = 0; i < 500; ++i) {
        tables += "CREATE TABLE t" + std::to_string(i) + " (a, b, c, d);";
    }
    const std::string large_row = "UPDATE records SET bytes = zeroblob(2000000) WHERE record_id = 1";
    for (const std::string& statements : {tables + "COMMIT", large_row}) {
        const std::string content = changed(stored(kThree), statements);
        sqlite3_memory_highwater(1);
        const sqlite3_int64 before = sqlite3_memory_used();
        EXPECT_EQ(parse(content), kMwNotAListFile);
        EXPECT_LT(sqlite3_memory_highwater(0) - before, 200'000);
    }
}

namespace {

void put_number(std::string& content, std::size_t place, std::size_t bytes, std::size_t number) {
    for (std::size_t i = 0; i < bytes; ++i) {
        content[place + i] = static_cast<char>(number >> 8 * (bytes - 1 - i));
    }
}

// Runs `parse` on a small stack and returns its status.
MwStatus on_small_stack(const std::string& content) {
    struct Call {
        const std::string& content;
        MwStatus status = 1;
    } call{content};
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, std::size_t{256} * 1024);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        auto& call = *static_cast<Call*>(argument);
        StoredRecords records;
        call.status = parse_list_file(call.content.data(), call.content.size(), kNwl, records);
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &small, run, &call), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
    return call.status;
}

} // namespace

TEST_F(ListFileContent, WithAnIdTwiceIsRefusedWithoutBlamingTheStorage) {
    StoredRecords records{{1, 2, 3}, {}};
    for (const std::uint16_t id : {1, 1, 3}) {
        const auto record = record_of<Networks>(id, 0x11);
        const auto* const first = reinterpret_cast<const std::byte*>(&record);
        records.bytes.insert(records.bytes.end(), first, first + sizeof record);
    }
    write_list_file(path("list"), kNwl, 1, "list", records);
    std::string content = read_file(path("list"));
    const std::size_t page = 2 * 4096; // of the records, whose second cell is at this place:
    const std::size_t cell =
        static_cast<unsigned char>(content[page + 10]) << 8 | static_cast<unsigned char>(content[page + 11]);
    ASSERT_EQ(content[page + cell + 2], 2); // its id, after two bytes of size
    content[page + cell + 2] = 1;
    write_file(path("list"), content);
    const MwdbHandle list = created<Networks>(1);
    EXPECT_EQ(x_nwl_fs_sync(list, 0, path("list").c_str(), 1), kMwNotAListFile);
    EXPECT_EQ(log(), std::vector<std::string>{});
}

// SQLite's own check descends the tree by recursion.
TEST_F(ListFileContent, OfADeepTreeIsRefusedOnASmallStack) {
    std::string content = stored_in_old_form(kThree);
    constexpr std::size_t kPage = 4096;
    constexpr std::size_t kLevels = 3000;
    const std::string leaf = content.substr(2 * kPage, kPage); // page 3 has the records
    ASSERT_EQ(content.size(), 3 * kPage);
    std::string inner(kPage, '\0'); // a page with no row and one page below it
    inner[0] = 5;
    put_number(inner, 5, 2, kPage);
    for (std::size_t page = 3; page < 3 + kLevels; ++page) {
        put_number(inner, 8, 4, page + 1);
        content.replace((page - 1) * kPage, kPage, inner);
    }
    content += leaf;
    put_number(content, 28, 4, content.size() / kPage);
    EXPECT_EQ(on_small_stack(content), kMwNotAListFile);
}

// A page that occurs many times in the tree makes few bytes look like many rows.
TEST_F(ListFileContent, WithOnePageInManyPlacesIsRefused) {
    for (const bool old : {false, true}) {
        std::string content = old ? stored_in_old_form(kThree) : stored(kThree);
        constexpr std::size_t kPage = 4096;
        constexpr std::size_t kChildren = 500;
        ASSERT_EQ(content.size(), 3 * kPage);
        content += content.substr(2 * kPage); // page 4 has the records
        std::string inner(kPage, '\0');
        inner[0] = 5;
        put_number(inner, 3, 2, kChildren);
        put_number(inner, 5, 2, kPage - 6 * kChildren);
        put_number(inner, 8, 4, 4);
        for (std::size_t i = 0; i < kChildren; ++i) {
            const std::size_t cell = kPage - 6 * (i + 1);
            put_number(inner, 12 + 2 * i, 2, cell);
            put_number(inner, cell, 4, 4);
            put_number(inner, cell + 4, 1, 3);
        }
        content.replace(2 * kPage, kPage, inner);
        put_number(content, 28, 4, 4);
        EXPECT_EQ(parse(content), kMwNotAListFile);
    }
}

TEST_F(ListFileContent, MayBeAFullList) {
    StoredRecords full;
    const int most = kStride == 1 ? kMwNoRecordId : 2000; // a full list takes long there
    for (int id = most - 1; id >= 0; --id) {
        const std::string bytes = bytes_of(record_of<Networks>(static_cast<std::uint16_t>(id), 0x11));
        const auto* const first = reinterpret_cast<const std::byte*>(bytes.data());
        full.ids.push_back(static_cast<std::uint16_t>(id));
        full.bytes.insert(full.bytes.end(), first, first + bytes.size());
    }
    write_list_file(path("full"), kNwl, 1, std::string(5000, 'n'), full);
    StoredRecords read;
    EXPECT_EQ(read_list_file(path("full"), kNwl, read), kMwOk);
    EXPECT_TRUE(read.ids == full.ids && read.bytes == full.bytes);
}

TEST_F(ListFileContent, OfAnySizeIsNotReadIfItIsTooLarge) {
    stored(kThree);
    std::filesystem::resize_file(path("stored"), std::uintmax_t{1} << 36);
    EXPECT_EQ(x_nwl_fs_sync(opened<Networks>(1), 0, path("stored").c_str(), 1), kMwNotAListFile);
}

TEST_F(ListFileContent, IsReadWithoutTouchingItsNeighbors) {
    stored(kThree);
    const MwdbHandle list = opened<Networks>(1);
    for (const char* suffix : {"-journal", "-wal", "-shm"}) {
        write_file(path("stored") + suffix, "a neighbor");
    }
    EXPECT_EQ(x_nwl_fs_sync(list, 0, path("stored").c_str(), 1), kMwOk);
    EXPECT_EQ(contents<Networks>(list), kThree);
    for (const char* suffix : {"-journal", "-wal", "-shm"}) {
        EXPECT_EQ(read_file(path("stored") + suffix), "a neighbor") << suffix;
    }
}
