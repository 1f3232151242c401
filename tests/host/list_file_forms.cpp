#include "list_file_forms.h"

#include <filesystem>
#include <sqlite3.h>

using namespace tavro;

std::string query(const std::string& path, const std::string& sql) {
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    std::string result;
    const auto row = [](void* out, int columns, char** values, char**) {
        std::string& text = *static_cast<std::string*>(out);
        text += text.empty() ? "" : "|";
        for (int i = 0; i < columns; ++i) {
            text += (i == 0 ? "" : " ") + std::string(values[i] == nullptr ? "NULL" : values[i]);
        }
        return 0;
    };
    if (sqlite3_exec(database, sql.c_str(), row, &result, nullptr) != SQLITE_OK) {
        result = sqlite3_errmsg(database);
    }
    sqlite3_close(database);
    return result;
}

std::string ListFileForms::stored(const Contents& records) {
    const MwdbHandle list = created<Networks>(++lists_);
    for (const auto& [id, fill] : records) {
        EXPECT_EQ(add<Networks>(list, static_cast<std::uint16_t>(id), static_cast<unsigned char>(fill)), kMwOk);
    }
    EXPECT_EQ(x_nwl_fs_store(list, path("stored").c_str(), lists_), kMwOk);
    return read_file(path("stored"));
}

std::string ListFileForms::stored_in_old_form(const Contents& records) {
    stored(records);
    const std::string old = path("old");
    std::filesystem::remove(old);
    EXPECT_EQ(query(old, "PRAGMA application_id = 0x54764C46; PRAGMA user_version = 1;"
                         "CREATE TABLE list (kind INTEGER NOT NULL, kind_name TEXT NOT NULL, list_id INTEGER NOT NULL, "
                         "name TEXT NOT NULL);"
                         "CREATE TABLE records (record_id INTEGER PRIMARY KEY, position INTEGER NOT NULL, bytes BLOB "
                         "NOT NULL);"
                         "ATTACH '" +
                             path("stored") +
                             "' AS new;"
                             "INSERT INTO list SELECT kind, kind_name, list_id, name FROM new.list;"
                             "INSERT INTO records SELECT * FROM new.records"),
              "");
    return read_file(old);
}

std::string ListFileForms::changed(const std::string& content, const std::string& sql) {
    const std::string file = path("changed");
    write_file(file, content);
    EXPECT_EQ(query(file, sql), "");
    return read_file(file);
}
