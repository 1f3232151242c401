#include "conform/peer.h"

#include "conform/calls.h"
#include "conform/check.h"
#include "conform/shared.h"
#include "conform/starter.h"

#include <cerrno>
#include <csignal>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavro::conform {
namespace {

struct Command {
    Peer::Function function;
    std::int64_t argument;
};

// Reads or writes `size` bytes; false when the other side has ended.
template <class Transfer, class Bytes>
bool transfer_all(Transfer transfer, int file, Bytes* bytes, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
        const ssize_t now = transfer(file, bytes + done, size - done);
        if (now > 0) {
            done += static_cast<std::size_t>(now);
        } else if (now == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

template <class Value>
bool read_value(int file, Value& value) {
    return transfer_all(::read, file, reinterpret_cast<char*>(&value), sizeof value);
}

template <class Value>
bool write_value(int file, const Value& value) {
    return transfer_all(::write, file, reinterpret_cast<const char*>(&value), sizeof value);
}

// The other process: runs functions until the check has ended.
[[noreturn]] void serve(int commands, int results) {
    load_platform();
    Run run({});
    Command command = {};
    while (read_value(commands, command)) {
        if (!write_value(results, command.function(run, command.argument))) {
            break;
        }
    }
    _exit(0);
}

// Ends this process like one that has ended: what the other process reported stays, otherwise its end is the failure.
[[noreturn]] void end_with_peer() {
    end_check(Outcome::kFailed, "the check's other process runs to the end", "it ended");
}

} // namespace

std::unique_ptr<Peer> PeerStarter::start() {
    int commands[2];
    int results[2];
    if (pipe(commands) != 0 || pipe(results) != 0) {
        end_check(Outcome::kFailed, "a pipe to another process", "no pipe could be made");
    }
    const pid_t process = fork();
    if (process < 0) {
        end_check(Outcome::kFailed, "another process", "it could not be started");
    }
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::close(commands[1]);
        ::close(results[0]);
        for (const int file : files_) {
            ::close(file);
        }
        serve(commands[0], results[1]);
    }
    ::close(commands[0]);
    ::close(results[1]);
    files_.push_back(commands[1]);
    files_.push_back(results[0]);
    return std::unique_ptr<Peer>(new Peer(process, commands[1], results[0]));
}

Peer::~Peer() { kill(); }

void Peer::start(Function function, std::int64_t argument) {
    if (!write_value(commands_, Command{function, argument})) {
        end_with_peer();
    }
}

std::optional<std::int64_t> Peer::result(std::chrono::milliseconds wait) {
    pollfd file = {results_, POLLIN, 0};
    const int ready = poll(&file, 1, static_cast<int>(wait.count()));
    if (ready <= 0) {
        return std::nullopt;
    }
    std::int64_t value = 0;
    if (!read_value(results_, value)) {
        end_with_peer();
    }
    return value;
}

std::int64_t Peer::call(Function function, std::int64_t argument) {
    start(function, argument);
    std::int64_t value = 0;
    if (!read_value(results_, value)) {
        end_with_peer();
    }
    return value;
}

void Peer::kill() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
        }
        ::close(commands_);
        ::close(results_);
        process_ = 0;
    }
}

} // namespace tavro::conform
