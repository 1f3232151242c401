// Edits of lists.db past the middleware, as an engineer may make them with the sqlite3 shell.
#pragma once

#include "kinds.h"

#include <sqlite3.h>
#include <string>

inline void edit_database(const std::string& path, const std::string& sql) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK) << message;
    sqlite3_free(message);
    sqlite3_close(database);
}

// Inserts records FIRST to LAST, filled with zeros, into a list of the kind with that number.
template <class Kind>
void insert_records(const std::string& path, int kind, std::uint16_t list, std::uint16_t first, std::uint16_t last) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_stmt* insert = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(database, "INSERT INTO records (number, position, bytes) VALUES (?, ?, ?)", -1,
                                 &insert, nullptr),
              SQLITE_OK);
    const std::int64_t number = (std::int64_t{kind} << 16 | list) << 16;
    for (std::int64_t id = first; id <= last; ++id) {
        const auto record = record_of<Kind>(static_cast<std::uint16_t>(id), 0);
        sqlite3_bind_int64(insert, 1, number | id);
        sqlite3_bind_int64(insert, 2, id);
        sqlite3_bind_blob(insert, 3, &record, sizeof record, SQLITE_STATIC);
        EXPECT_EQ(sqlite3_step(insert), SQLITE_DONE);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    EXPECT_EQ(sqlite3_exec(database, "UPDATE lists SET version = version + 1; COMMIT", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
}
