// Loading a list file: content of any bytes, damaged list files, and crafted databases. A load succeeds or is refused
// and then leaves the list as it was. A damaged file never loads with other records than were stored. Nothing is left
// next to the file.
#include "fuzz.h"
#include "kinds.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sqlite3.h>
#include <string>
#include <vector>

using namespace tavro;
using namespace tavro::fuzz;

namespace {

constexpr std::uint16_t kList = 1;
constexpr int kMostStatements = 6;
constexpr int kMostEdits = 4;

std::string folder;

std::string read_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The list that is loaded into, and a good list file, by kind.
struct Target {
    MwdbHandle handle = 0;
    Contents before;
    std::string good_file;
    Contents good;
};

// Gives the list its one record.
template <class Kind>
void fill(const Target& target) {
    require(Kind::clean(target.handle) == kMwOk && add<Kind>(target.handle, 7, 0x77) == kMwOk,
            "the list can be filled");
}

template <class Kind>
const Target& target_of() {
    static const Target target = [] {
        Target made;
        made.handle = created<Kind>(kList);
        const std::string path = folder + "/good";
        for (const int id : {9, 2, 65534, 4}) {
            add<Kind>(made.handle, static_cast<std::uint16_t>(id), static_cast<unsigned char>(id % 251));
        }
        require(Kind::store(made.handle, path.c_str(), kList) == kMwOk, "a list can be stored");
        made.good = contents<Kind>(made.handle);
        made.good_file = read_file(path);
        std::filesystem::remove(path);
        fill<Kind>(made);
        made.before = contents<Kind>(made.handle);
        return made;
    }();
    return target;
}

// Flips bits, and truncates, extends or repeats parts.
std::string damaged(Input& input, std::string file) {
    for (std::uint32_t edits = 1 + input.choice(kMostEdits); edits > 0 && !file.empty(); --edits) {
        const std::size_t at = input.choice(static_cast<std::uint32_t>(file.size()));
        switch (input.choice(8)) {
        case 0:
            file.resize(at);
            break;
        case 1:
            file += file.substr(0, at);
            break;
        case 2:
            file.replace(at, 64, 64, static_cast<char>(input.byte()));
            break;
        case 3:
            file[at] = static_cast<char>(input.byte());
            break;
        default:
            file[at] = static_cast<char>(file[at] ^ (1 << input.choice(8)));
            break;
        }
    }
    return file;
}

// A record of a kind as an SQL literal, or some other value.
template <class Kind>
std::string literal(Input& input, std::uint16_t id) {
    const auto record = record_of<Kind>(id, 0x11);
    const std::string bytes = bytes_of(record);
    std::string hex = "x'";
    for (const char byte : bytes) {
        static constexpr char kDigits[] = "0123456789abcdef";
        hex += kDigits[static_cast<unsigned char>(byte) / 16];
        hex += kDigits[static_cast<unsigned char>(byte) % 16];
    }
    switch (input.choice(8)) {
    case 0:
        return "zeroblob(" + std::to_string(input.choice(2000)) + ")";
    case 1:
        return "'text'";
    case 2:
        return std::to_string(input.number());
    default:
        return hex + "'";
    }
}

template <class Kind>
std::string statement(Input& input) {
    const std::uint16_t id = static_cast<std::uint16_t>(input.byte() < 250 ? input.choice(12) : 65535);
    const std::string number =
        std::to_string(input.byte() < 250 ? static_cast<std::int32_t>(input.choice(8)) : input.number());
    switch (input.choice(16)) {
    case 0:
        return "UPDATE records SET position = " + number + " WHERE record_id = " + std::to_string(id);
    case 1:
        return "UPDATE list SET kind = " + number;
    case 2:
        return "PRAGMA user_version = " + number;
    case 3:
        return "PRAGMA application_id = " + number;
    case 4:
        return "CREATE VIEW extra AS SELECT * FROM records";
    case 5:
        return "CREATE TRIGGER extra AFTER INSERT ON list BEGIN DELETE FROM records; END";
    case 6:
        return "DROP TABLE records; CREATE VIEW records AS SELECT 1 AS record_id, 1 AS position, "
               "zeroblob(900000000) AS bytes";
    case 7:
        return "DROP TABLE records; CREATE VIEW records AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 "
               "FROM n) SELECT i AS record_id, i AS position, zeroblob(552) AS bytes FROM n";
    case 8:
        return "PRAGMA page_size = " + std::to_string(512U << input.choice(8)) + "; VACUUM";
    case 9:
        return "PRAGMA auto_vacuum = " + number + "; VACUUM";
    case 10:
        return "UPDATE list SET records = " + number;
    case 11:
        return "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET rootpage = " + number;
    case 12:
        return "PRAGMA encoding = 'UTF-16'; DELETE FROM records WHERE record_id = " + std::to_string(id);
    case 13:
        return "CREATE INDEX extra ON records(position, bytes)";
    default:
        return "INSERT OR REPLACE INTO records VALUES (" + std::to_string(id) + ", " + number + ", " +
               literal<Kind>(input, id) + ")";
    }
}

// A database made from a good list file, or from an empty one of the first version, by statements.
template <class Kind>
std::string crafted(Input& input, int number, const Target& target) {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> closer(database, sqlite3_close);
    const auto run = [&](const std::string& sql) { sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr); };
    if (input.flag()) {
        std::string good = target.good_file;
        auto* const copy = static_cast<unsigned char*>(sqlite3_malloc64(good.size()));
        std::copy(good.begin(), good.end(), copy);
        sqlite3_deserialize(database, "main", copy, static_cast<sqlite3_int64>(good.size()),
                            static_cast<sqlite3_int64>(good.size()),
                            SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    } else {
        run("PRAGMA page_size = 512; PRAGMA application_id = 1417038918; PRAGMA user_version = 1; CREATE TABLE list "
            "(kind INTEGER NOT NULL, kind_name TEXT NOT NULL, list_id INTEGER NOT NULL, name TEXT NOT NULL); CREATE "
            "TABLE records (record_id INTEGER PRIMARY KEY, position INTEGER NOT NULL, bytes BLOB NOT NULL)");
        run("INSERT INTO list VALUES (" + std::to_string(number) + ", 'kind', 1, 'list')");
    }
    for (int i = 0; i < kMostStatements && !input.at_end(); ++i) {
        run(statement<Kind>(input));
    }
    sqlite3_int64 size = 0;
    unsigned char* const bytes = sqlite3_serialize(database, "main", &size, 0);
    const std::string content(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    sqlite3_free(bytes);
    return content;
}

// The names of the files next to the list file, without the storage's own.
std::vector<std::string> files() {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder + "/files")) {
        names.push_back(file.path().filename().string());
    }
    return names;
}

template <class Kind>
void require_sound(MwdbHandle handle) {
    std::uint16_t count = 0;
    std::int32_t version = 0;
    require(Kind::count(handle, &count, &version) == kMwOk, "a loaded list can be counted");
    std::vector<std::uint16_t> ids;
    for (std::uint16_t index = 0; index < count; ++index) {
        typename Kind::Record by_index{};
        typename Kind::Record by_id{};
        require(Kind::get_at(handle, index, &by_index, &version) == kMwOk, "a loaded record can be read by index");
        ids.push_back(Kind::id_of(by_index));
        require(Kind::get(handle, ids.back(), &by_id, &version) == kMwOk, "a loaded record can be read by its id");
        require(bytes_of(by_index) == bytes_of(by_id), "both reads give the same bytes");
    }
    std::sort(ids.begin(), ids.end());
    require(std::adjacent_find(ids.begin(), ids.end()) == ids.end(), "the records of a loaded list have different ids");
    require(ids.empty() || ids.back() != kMwNoRecordId, "no loaded record has the id that no record can have");
}

template <class Kind>
void load(Input& input, int number) {
    enum { kAnyBytes, kDamaged, kCrafted };
    const Target& target = target_of<Kind>();
    const std::uint32_t how = input.choice(3);
    const std::string path = folder + "/files/list";
    const std::string content = how == kAnyBytes  ? input.rest()
                                : how == kDamaged ? damaged(input, target.good_file)
                                                  : crafted<Kind>(input, number, target);
    std::ofstream(path, std::ios::binary) << content;
    const MwStatus status = Kind::sync(target.handle, 0, path.c_str(), kList);
    require(status == kMwOk || status == kMwNotAListFile, "a regular file is a list file or is not");
    require(files() == std::vector<std::string>{"list"}, "nothing is left next to the file");
    if (status != kMwOk) {
        require(contents<Kind>(target.handle) == target.before, "a refused file leaves the list as it was");
        return;
    }
    require_sound<Kind>(target.handle);
    require(how != kDamaged || contents<Kind>(target.handle) == target.good,
            "a damaged file is refused, or loads the records that were stored");
    fill<Kind>(target);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (folder.empty()) {
        folder = temporary_folder();
        ::setenv("TAVRO_HOME", folder.c_str(), 1);
        ::setenv("TAVRO_LOG_FILE", "/dev/null", 1);
        std::filesystem::create_directory(folder + "/files");
    }
    Input input(data, size);
    switch (input.choice(4)) {
    case 0:
        load<Services>(input, 1);
        break;
    case 1:
        load<TransportStreams>(input, 2);
        break;
    case 2:
        load<Networks>(input, 3);
        break;
    default:
        load<Satellites>(input, 4);
        break;
    }
    return 0;
}
