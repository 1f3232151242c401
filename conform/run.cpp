#include "conform/check.h"
#include "conform/peer.h"
#include "conform/shared.h"

#include <cstdio>
#include <utility>

namespace tavro::conform {
namespace {

std::string status_text(MwStatus status) { return std::to_string(status); }

} // namespace

Run::Run(std::vector<std::unique_ptr<Peer>> peers) : peers_(std::move(peers)) {}
Run::~Run() = default;

std::uint16_t Run::list(std::size_t index) const { return own_list_id(index); }

std::string Run::file(const char* name) const { return settings().directory + "/" + name; }

Peer& Run::peer(std::size_t index) { return *peers_.at(index); }

std::chrono::milliseconds Run::timeout() const { return std::chrono::milliseconds(settings().timeout_ms); }

void Run::done(MwStatus status) const { returns(kMwOk, status); }

void Run::fails(MwStatus status) const {
    if (status == kMwOk) {
        fail(last_call() + " returns another status than 0", status_text(status));
    }
}

void Run::returns(MwStatus expected, MwStatus status) const {
    if (status != expected) {
        fail(last_call() + " returns " + status_text(expected), status_text(status));
    }
}

void Run::equal_numbers(const char* what, long long expected, long long found) const {
    if (found != expected) {
        fail(std::string(what) + ": " + std::to_string(expected), std::to_string(found));
    }
}

void Run::equal_text(const char* what, const std::string& expected, const std::string& found) const {
    if (found != expected) {
        fail(std::string(what) + ": \"" + expected + '"', '"' + found + '"');
    }
}

void Run::equal_bytes(const char* what, const void* expected, const void* found, std::size_t size) const {
    const auto* wanted = static_cast<const unsigned char*>(expected);
    const auto* bytes = static_cast<const unsigned char*>(found);
    std::size_t different = 0;
    std::size_t first = size;
    for (std::size_t i = size; i-- > 0;) {
        if (bytes[i] != wanted[i]) {
            ++different;
            first = i;
        }
    }
    if (different != 0) {
        char text[120];
        std::snprintf(text, sizeof text, "%zu bytes differ; byte %zu is 0x%02X, not 0x%02X", different, first,
                      static_cast<unsigned int>(bytes[first]), static_cast<unsigned int>(wanted[first]));
        fail(std::string(what) + ": the same " + std::to_string(size) + " bytes", text);
    }
}

void Run::expect(bool holds, const std::string& expected, const std::string& found) const {
    if (!holds) {
        fail(expected, found);
    }
}

void Run::fail(const std::string& expected, const std::string& found) const {
    end_check(Outcome::kFailed, expected, found);
}

void Run::skip(const std::string& why) const { end_check(Outcome::kSkipped, "", why); }

} // namespace tavro::conform
