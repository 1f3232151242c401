// Error messages of the workstation's platform. Nothing here throws: without memory, messages are lost.
#pragma once

#include <string>

namespace tavro::host {

// Writes one error line to the log (priority 6, tag "TavroHost").
void report(const std::string& message) noexcept;

// Writes each distinct message once per process, because a broken setup fails every call. A message that is lost for
// lack of memory does not count.
void report_once(const std::string& message) noexcept;

} // namespace tavro::host
