// A helper process with pipes to its standard input and from its standard output.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class ChildProcess {
public:
    // Starts tests/host/helper.cpp with these arguments in the test's environment. `launcher` is a command, found
    // in PATH, that runs the program named by the words after it; it must keep the process id, as exec does.
    explicit ChildProcess(const std::vector<std::string>& arguments, const std::vector<std::string>& launcher = {});
    ~ChildProcess(); // kills and reaps what still runs
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t id() const { return process_; }

    // The next line that it writes, without its newline; empty at the end of its output.
    std::string read_line();
    // The rest of what it writes, line by line.
    std::vector<std::string> read_lines();
    // Writes a line to its standard input.
    void write_line(const std::string& line);
    // Writes a line to its standard input and returns the line that it writes then.
    std::string ask(const std::string& line);
    // Ends its standard input.
    void close_input();
    // Stops it with SIGSTOP and waits until it has stopped.
    void stop();
    // Kills it with SIGKILL and waits for its end.
    void kill();
    // Waits for its end; the exit code, or minus the signal that ended it.
    int wait();

private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
};
