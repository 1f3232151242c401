// Turns errors of the storage into failures: the status, and a message that names the path, the cause and the remedy.
#pragma once

#include "failure.h"
#include "sqlite.h"

#include <string>

namespace tavro::host {

// "cannot ACTION PATH: cause; remedy", for a file or directory of the storage and an errno value.
Failure storage_failure(const std::string& action, const std::string& path, int error);

// For an error of the list database. The same cause gets the same message, whatever code SQLite gave for it.
Failure storage_failure(const SqlError& error);

// For a list file at `path` that cannot be written: an errno value, or an error of the database that is to
// become the file.
Failure write_failure(const std::string& path, int error);
Failure write_failure(const std::string& path, const SqlError& error);

} // namespace tavro::host
