// Error messages of the workstation's platform.
#pragma once

#include <string>

namespace tavro::host {

// Writes one error line to the log (priority 6, tag "TavroHost").
void report(const std::string& message);

// Writes each distinct message once per process, because a broken setup fails every call.
void report_once(const std::string& message);

} // namespace tavro::host
