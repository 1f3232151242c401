// The exception for storage failures; the engine turns it into a status.
#pragma once

#include "middleware/types.h"

#include <stdexcept>
#include <string>

namespace tavro::host {

// Carries the status and a log message: what failed, on which file, why, and what to do. Never leaves the platform
// library.
class Failure : public std::runtime_error {
public:
    Failure(tavro::MwStatus status, const std::string& message) : std::runtime_error(message), status_(status) {}
    tavro::MwStatus status() const { return status_; }

private:
    tavro::MwStatus status_;
};

} // namespace tavro::host
