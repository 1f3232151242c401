// Turns storage errors into Failures: a status, and a message that names the path, the cause and the remedy.
#pragma once

#include "failure.h"
#include "sqlite.h"

#include <string>

namespace tavro::host {

// Makes "cannot ACTION PATH: CAUSE; REMEDY" from an errno value for a file or directory of the storage.
Failure storage_failure(const std::string& action, const std::string& path, int error);

// For an error of the list database. The same cause always gets the same message, whichever code SQLite returned.
Failure storage_failure(const SqlError& error);

// The same for a connection that only reads.
Failure read_failure(const std::string& path, int error);
Failure read_failure(const SqlError& error);

} // namespace tavro::host
