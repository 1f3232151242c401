// Another process of a check, for what happens between processes.
//
// The process is started before the check loads the platform, and loads it on its own. It runs functions of this
// program, one at a time, in the order in which they are started. They share no memory with the check: what they leave
// in variables stays in the other process.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace tavro::conform {

class Run;

class Peer {
public:
    // What the other process runs. Its expectations count: the check fails with them. A lambda without captures will
    // do.
    using Function = std::int64_t (*)(Run& run, std::int64_t argument);

    ~Peer(); // ends the other process
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    // Starts a function and returns at once.
    void start(Function function, std::int64_t argument = 0);
    // The result of the function that was started first, if it arrives within `wait`.
    std::optional<std::int64_t> result(std::chrono::milliseconds wait);
    // Starts a function and waits for its result.
    std::int64_t call(Function function, std::int64_t argument = 0);
    // Ends the other process with SIGKILL, and returns when it has ended. Nothing can be started after that.
    void kill();

private:
    friend class PeerStarter;
    Peer(pid_t process, int commands, int results) : process_(process), commands_(commands), results_(results) {}

    pid_t process_;
    int commands_; // written by the check
    int results_;  // read by the check
};

} // namespace tavro::conform
