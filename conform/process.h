// Runs code in processes of its own.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace tavro::conform {

// How a process ended.
struct Ended {
    enum class How { kExited, kSignal, kTimeout, kInterrupted, kNotStarted };
    How how;
    int number; // exit code, signal, or 0; with kInterrupted the signal that this program got
};

// Blocks SIGCHLD and the signals that end this program, so that run_process can wait for them.
void prepare_for_processes();

// Runs `body` in a child process, which ends with exit code 0 when `body` returns. Its standard output is this
// program's standard error. When the process has ended or `timeout` has passed, ends it and all processes that it
// started, unless they left its process group.
Ended run_process(const std::function<void()>& body, std::chrono::milliseconds timeout);

// "SIGSEGV", or "signal 42".
std::string signal_name(int number);

} // namespace tavro::conform
