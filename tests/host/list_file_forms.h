// Makes list files of networks in every form, and changes them.
#pragma once

#include "kinds.h"
#include "workspace.h"

#include <string>

// Returns the result of a query, with blanks between columns and bars between rows, or SQLite's error message.
std::string query(const std::string& path, const std::string& sql);

class ListFileForms : public Workspace {
protected:
    // The content of a file with these records: ids and fills, in list order.
    std::string stored(const Contents& records);

    // The same list in version 1, which had no count and no checksum.
    std::string stored_in_old_form(const Contents& records);

    // The content after these SQL statements.
    std::string changed(const std::string& content, const std::string& sql);

private:
    std::uint16_t lists_ = 0;
};
