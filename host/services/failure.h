// A failure of the workstation's storage, on its way to the status that the caller gets.
#pragma once

#include "middleware/types.h"

#include <stdexcept>
#include <string>

namespace tavro::host {

// Carries the status and a message for the log: what failed, on which file, why, and what to do. It
// never leaves the platform's functions.
class Failure : public std::runtime_error {
public:
    Failure(MwStatus status, const std::string& message) : std::runtime_error(message), status_(status) {}
    MwStatus status() const { return status_; }

private:
    MwStatus status_;
};

} // namespace tavro::host
