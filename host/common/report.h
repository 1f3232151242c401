// Messages of the workstation's platform to the engineer who uses it.
#pragma once

#include <string>

namespace tavro::host {

// Writes one error line to the log (priority 6, tag "TavroHost").
void report(const std::string& message);

// The same, once in the life of the process for each message: a broken set-up is met by every call.
void report_once(const std::string& message);

} // namespace tavro::host
