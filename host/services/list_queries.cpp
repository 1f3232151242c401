#include "list_queries.h"

#include "status.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tavro::host {
namespace {

// A database up to this size is checked when it is opened, which takes 1 ms for each MB. Larger ones are checked row by
// row as they are read, which does not notice missing rows.
constexpr std::int64_t kMostCheckedBytes = std::int64_t{4} << 20;

// In milliseconds since 1970: the year 9999.
constexpr std::int64_t kLastTime = 253'402'300'799'999;

// Versions and positions grow by 1 with each change.
constexpr std::int64_t kMostChanges = std::int64_t{1} << 48;

// Reads the id of one of the list's records from the column with its number.
std::uint16_t record_id(const Statement& row, int column, const ListKey& list) {
    return static_cast<std::uint16_t>(
        row.number(column, "the id of a record", first_record(list), last_record(list) - 1) - first_record(list));
}

const std::byte* record_bytes(Connection& database, const Statement& row, int column, const Kind& kind,
                              std::uint16_t id) {
    const std::byte* const bytes = row.blob(column, "a record", kind.record_bytes);
    if (record_id_of(kind, bytes) != id) {
        database.damaged("the id in a record is invalid");
    }
    return bytes;
}

// Calls `visit` with the position, the id and the bytes of every record, in ascending order of their ids.
template <class Visit>
void scan(Connection& database, const ListKey& list, const Kind& kind, Visit visit) {
    Statement rows =
        database.prepare("SELECT number, position, bytes FROM records WHERE number BETWEEN ? AND ? ORDER BY number");
    rows.bind(first_record(list)).bind(last_record(list));
    std::int32_t previous = -1;
    while (rows.step()) {
        const std::uint16_t id = record_id(rows, 0, list);
        if (id <= previous) { // also ends the scan of a damaged tree that has a cycle
            database.damaged("the ids of records are not in order");
        }
        previous = id;
        visit(rows.number(1, "the position of a record", 0, kMostChanges), id,
              record_bytes(database, rows, 2, kind, id));
    }
}

} // namespace

void check_database(Connection& database) {
    if (database.number("PRAGMA page_count") * database.number("PRAGMA page_size") > kMostCheckedBytes) {
        return;
    }
    Statement check = database.prepare("PRAGMA quick_check(1)");
    if (!check.step() || check.text(0, "the result of a check") != "ok") {
        database.damaged(sqlite3_errstr(SQLITE_CORRUPT));
    }
}

ListState state_of(const Statement& row, std::uint64_t epoch) {
    return {epoch, row.number(0, "the version of a list", 0, kMostChanges),
            row.number(1, "the next position of a list", 0, kMostChanges)};
}

MwStatus query_state(Connection& database, const ListKey& list, std::uint64_t epoch, ListState& state) {
    Statement row = database.prepare("SELECT version, next_position FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!row.bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    state = state_of(row, epoch);
    return kMwOk;
}

MwStatus query_record(Connection& database, const ListKey& list, const Kind& kind, std::uint16_t record_id,
                      std::uint64_t epoch, ListState& state, ListImage& image) {
    Statement row =
        database.prepare("SELECT version, next_position, records.number, bytes FROM lists LEFT JOIN records "
                         "ON records.number = ? WHERE lists.number = ? AND name IS NOT NULL");
    if (!row.bind(list.record(record_id)).bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    state = state_of(row, epoch);
    if (row.is_null(2)) {
        return kHostNoSuchRecord;
    }
    image.keep(record_id, record_bytes(database, row, 3, kind, record_id), state.version);
    return kMwOk;
}

MwStatus query_highest_id(Connection& database, const ListKey& list, std::uint64_t epoch, ListState& state,
                          ListImage& image) {
    Statement row =
        database.prepare("SELECT version, next_position, (SELECT number FROM records WHERE number BETWEEN ? AND ? "
                         "ORDER BY number DESC LIMIT 1) FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!row.bind(first_record(list)).bind(last_record(list)).bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    state = state_of(row, epoch);
    image.keep_highest_id(row.is_null(2) ? ListImage::kNone : record_id(row, 2, list), state.version);
    return kMwOk;
}

MwStatus query_all(Connection& database, const ListKey& list, const Kind& kind, std::uint64_t epoch, ListState& state,
                   ListImage& image) {
    const MwStatus status = query_state(database, list, epoch, state);
    if (status != kMwOk) {
        return status;
    }
    std::vector<std::pair<std::int64_t, std::uint16_t>> order; // position and id
    scan(database, list, kind, [&](std::int64_t position, std::uint16_t id, const std::byte* bytes) {
        image.keep(id, bytes, state.version);
        order.emplace_back(position, id);
    });
    std::sort(order.begin(), order.end());
    std::vector<std::uint16_t> ids;
    ids.reserve(order.size());
    for (const auto& [position, id] : order) {
        ids.push_back(id);
    }
    image.complete(std::move(ids), state.version);
    return kMwOk;
}

MwStatus query_records(Connection& database, const ListKey& list, const Kind& kind, std::string& name,
                       StoredRecords& records) {
    Statement row = database.prepare("SELECT name FROM lists WHERE number = ? AND name IS NOT NULL");
    if (!row.bind(list.number()).step()) {
        return kHostNoSuchList;
    }
    name = row.text(0, "the name of a list");
    std::vector<std::tuple<std::int64_t, std::uint16_t, std::size_t>> order; // position, id, offset in by_id
    std::vector<std::byte> by_id;
    scan(database, list, kind, [&](std::int64_t position, std::uint16_t id, const std::byte* bytes) {
        order.emplace_back(position, id, by_id.size());
        by_id.insert(by_id.end(), bytes, bytes + kind.record_bytes);
    });
    std::sort(order.begin(), order.end());
    records.ids.reserve(order.size());
    records.bytes.reserve(by_id.size());
    for (const auto& [position, id, offset] : order) {
        const auto bytes = by_id.begin() + static_cast<std::ptrdiff_t>(offset);
        records.ids.push_back(id);
        records.bytes.insert(records.bytes.end(), bytes, bytes + static_cast<std::ptrdiff_t>(kind.record_bytes));
    }
    return kMwOk;
}

#define TAVRO_LISTS_QUERY(TIME)                                                                                        \
    "SELECT number, name, version, (SELECT count(*) FROM records WHERE records.number BETWEEN lists.number << 16 AND " \
    "lists.number << 16 | 65535), " TIME                                                                               \
    " FROM lists WHERE name IS NOT NULL AND number BETWEEN ? AND ? ORDER BY number"

std::vector<ListEntry> query_lists(Connection& database, std::int64_t first, std::int64_t last) {
    std::vector<ListEntry> lists;
    const bool has_times = database.number("PRAGMA user_version") != kOldListDatabaseVersion;
    Statement row = database.prepare(has_times ? TAVRO_LISTS_QUERY("changed") : TAVRO_LISTS_QUERY("NULL"));
    row.bind(first).bind(last);
    while (row.step()) {
        const std::int64_t number = row.number(0);
        const ListKey list{static_cast<std::uint32_t>(number >> 16), static_cast<std::uint16_t>(number & 0xFFFF)};
        if (find_kind(list.kind) == nullptr) {
            database.damaged("the number of a list is invalid");
        }
        ListEntry entry{list, row.text(1, "the name of a list"), row.number(3),
                        row.number(2, "the version of a list", 0, kMostChanges), std::nullopt};
        if (!row.is_null(4)) {
            entry.changed = row.number(4, "the time of a change", 0, kLastTime);
        }
        lists.push_back(std::move(entry));
    }
    return lists;
}

void check_records(Connection& database, const ListKey& list, const Kind& kind) {
    scan(database, list, kind, [](auto&&...) {});
}

} // namespace tavro::host
