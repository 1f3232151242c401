#include "conform/process.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavro::conform {
namespace {

using Clock = std::chrono::steady_clock;

sigset_t awaited_signals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGCHLD, SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&signals, number);
    }
    return signals;
}

// In the child: makes it a process like any other, in a group of its own.
void begin_child() {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const sigset_t signals = awaited_signals();
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

void end_group(pid_t process) {
    kill(-process, SIGKILL);
    kill(process, SIGKILL);
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

// Waits until `process` has ended, a signal to end has arrived or `end` has passed.
Ended wait_for(pid_t process, Clock::time_point end) {
    const sigset_t signals = awaited_signals();
    for (;;) {
        // The process is left as a zombie until its group has been ended, so its id stays taken.
        siginfo_t info = {};
        if (waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0) {
            return info.si_code == CLD_EXITED ? Ended{Ended::How::kExited, info.si_status}
                                              : Ended{Ended::How::kSignal, info.si_status};
        }
        const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(end - Clock::now()).count();
        if (left <= 0) {
            return {Ended::How::kTimeout, 0};
        }
        const timespec wait = {static_cast<time_t>(left / 1'000'000'000), static_cast<long>(left % 1'000'000'000)};
        const int number = sigtimedwait(&signals, nullptr, &wait);
        if (number > 0 && number != SIGCHLD) {
            return {Ended::How::kInterrupted, number};
        }
    }
}

} // namespace

void prepare_for_processes() {
    const sigset_t signals = awaited_signals();
    sigprocmask(SIG_BLOCK, &signals, nullptr);
}

Ended run_process(const std::function<void()>& body, std::chrono::milliseconds timeout) {
    const pid_t process = fork();
    if (process < 0) {
        return {Ended::How::kNotStarted, errno};
    }
    if (process == 0) {
        begin_child();
        body();
        _exit(0);
    }
    setpgid(process, process); // whoever comes first
    const Ended ended = wait_for(process, Clock::now() + timeout);
    end_group(process);
    return ended;
}

std::string signal_name(int number) {
    switch (number) {
    case SIGABRT:
        return "SIGABRT";
    case SIGALRM:
        return "SIGALRM";
    case SIGBUS:
        return "SIGBUS";
    case SIGFPE:
        return "SIGFPE";
    case SIGILL:
        return "SIGILL";
    case SIGKILL:
        return "SIGKILL";
    case SIGPIPE:
        return "SIGPIPE";
    case SIGSEGV:
        return "SIGSEGV";
    case SIGSYS:
        return "SIGSYS";
    case SIGTERM:
        return "SIGTERM";
    case SIGTRAP:
        return "SIGTRAP";
    default:
        return "signal " + std::to_string(number);
    }
}

} // namespace tavro::conform
