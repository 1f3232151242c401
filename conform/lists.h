// What checks of all kinds do with lists and records.
#pragma once

#include "conform/check.h"
#include "conform/kinds.h"

#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace tavro::conform {

// Adds a row for the kind. In the row, the name has no kind, a function no prefix ("add_rec"), "count" and "get_at" are
// the kind's own functions, and "{lists}" stands for "service lists" and so on.
template <class Kind>
void add_of_kind(std::vector<Check>& checks, Check row) {
    row.kind = Kind::kName;
    row.name = row.kind + "." + row.name;
    row.roles = row.functions;
    for (std::string& function : row.functions) {
        function = "x_" + row.kind + "_" +
                   (function == "count"    ? Kind::kCount
                    : function == "get_at" ? Kind::kGetAt
                                           : function);
    }
    checks.push_back(std::move(row));
}

// Creates the check's list number `index` like the library does, and returns its handle.
template <class Kind>
MwdbHandle create(Run& run, std::size_t index = 0) {
    const std::uint16_t id = run.list(index);
    char name[32];
    std::snprintf(name, sizeof name, Kind::kStorageName, id - 1);
    MwdbHandle handle = 0;
    run.done(Kind::create(name, id, kMwCreateMode, kMwCreateGrowth, 0, 0, &handle));
    run.expect(handle != 0, last_call() + " gives a handle other than 0", "handle 0");
    return handle;
}

// Opens a list that exists, and returns its handle.
template <class Kind>
MwdbHandle open(Run& run, std::uint16_t list_id) {
    MwdbHandle handle = 0;
    run.done(Kind::open(list_id, 0, 0, &handle));
    run.expect(handle != 0, last_call() + " gives a handle other than 0", "handle 0");
    return handle;
}

// A record whose other bytes depend on `seed` and take all values.
template <class Kind>
typename Kind::Record make_record(std::uint16_t id, std::uint32_t seed = 1) {
    typename Kind::Record record;
    auto* bytes = reinterpret_cast<unsigned char*>(&record);
    std::uint32_t state = seed * 2654435761U + id;
    for (std::size_t i = 0; i < sizeof record; ++i) {
        state = state * 1664525U + 1013904223U;
        bytes[i] = static_cast<unsigned char>(state >> 24);
    }
    Kind::id(record) = id;
    return record;
}

// Adds make_record(id, seed) and returns it.
template <class Kind>
typename Kind::Record add(Run& run, MwdbHandle handle, std::uint16_t id, std::uint32_t seed = 1) {
    typename Kind::Record record = make_record<Kind>(id, seed);
    typename Kind::Record passed = record;
    run.done(Kind::add_rec(handle, &passed));
    return record;
}

// Number of records.
template <class Kind>
std::uint16_t count(Run& run, MwdbHandle handle) {
    std::uint16_t number = 0;
    std::int32_t version = 0;
    run.done(Kind::count(handle, &number, &version));
    return number;
}

// All records by index.
template <class Kind>
std::vector<typename Kind::Record> contents(Run& run, MwdbHandle handle) {
    std::vector<typename Kind::Record> records;
    for (std::uint16_t index = 0, number = count<Kind>(run, handle); index < number; ++index) {
        typename Kind::Record record = {};
        std::int32_t version = 0;
        run.done(Kind::get_at(handle, index, &record, &version));
        records.push_back(record);
    }
    return records;
}

// Fails unless the list has exactly these records. Their order is the middleware's.
template <class Kind>
void expect_contents(Run& run, MwdbHandle handle, const std::vector<typename Kind::Record>& expected) {
    auto found = contents<Kind>(run, handle);
    run.equal("records in the list", expected.size(), found.size());
    for (auto record : expected) {
        std::size_t at = 0;
        while (at < found.size() && Kind::id(found[at]) != Kind::id(record)) {
            ++at;
        }
        const std::string what = "record " + std::to_string(Kind::id(record));
        run.expect(at < found.size(), what + " in the list", "none");
        run.equal_bytes(what.c_str(), &record, &found[at], sizeof record);
    }
}

// Fails unless the list has exactly these records, in this order. `expected` comes from contents().
template <class Kind>
void expect_order(Run& run, MwdbHandle handle, const std::vector<typename Kind::Record>& expected) {
    const auto found = contents<Kind>(run, handle);
    run.equal("records in the list", expected.size(), found.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const std::string what = "record at index " + std::to_string(i);
        run.equal_bytes(what.c_str(), &expected[i], &found[i], sizeof expected[i]);
    }
}

// Reads a record by its id.
template <class Kind>
typename Kind::Record get(Run& run, MwdbHandle handle, std::uint16_t id) {
    typename Kind::Record record = {};
    std::int32_t version = 0;
    run.done(Kind::get_rec(handle, id, &record, &version));
    return record;
}

} // namespace tavro::conform
