// A child process with pipes to its standard input and from its standard output.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class ChildProcess {
public:
    // Starts the program of tests/host/helper.cpp with these arguments. `launcher` is a command, found in PATH, that
    // runs the program given by its arguments; it must keep the process id, as exec does.
    explicit ChildProcess(const std::vector<std::string>& arguments, const std::vector<std::string>& launcher = {});
    ~ChildProcess(); // kills and reaps the process if it still runs
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const { return process_; }

    // Reads the next line of its output, without the newline. Empty at the end of output.
    std::string read_line();
    // Reads the rest of its output.
    std::vector<std::string> read_lines();
    // Writes a line to its standard input.
    void write_line(const std::string& line);
    // Writes a line to its standard input and reads one line of output.
    std::string ask(const std::string& line);
    // Closes its standard input.
    void close_input();
    // Stops it with SIGSTOP and waits until it has stopped.
    void stop();
    // Waits until it has stopped itself or has ended. Returns true if it has stopped.
    bool await_stop();
    // Sends SIGKILL and waits until it has ended.
    void kill();
    // Waits until it has ended. Returns the exit code, or minus the signal number.
    int wait();

private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};
