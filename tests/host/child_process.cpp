#include "child_process.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const std::vector<std::string>& launcher) {
    int to_child[2];
    int from_child[2];
    if (::pipe2(to_child, O_CLOEXEC) != 0 || ::pipe2(from_child, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot create pipes for a child process");
    }
    std::vector<std::string> copies = launcher;
    copies.emplace_back(HOST_HELPER);
    copies.insert(copies.end(), arguments.begin(), arguments.end());
    std::vector<char*> words;
    for (std::string& argument : copies) {
        words.push_back(argument.data());
    }
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, to_child[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, from_child[1], STDOUT_FILENO);
    const int error = ::posix_spawnp(&process_, words[0], &actions, nullptr, words.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(to_child[0]);
    ::close(from_child[1]);
    input_ = to_child[1];
    output_ = from_child[0];
    if (error != 0) {
        throw std::runtime_error("cannot start " + copies[0]);
    }
}

ChildProcess::~ChildProcess() {
    if (process_ > 0) {
        kill();
    }
    close_input();
    ::close(output_);
}

std::string ChildProcess::read_line() {
    std::string line;
    for (char letter = 0; ::read(output_, &letter, 1) == 1 && letter != '\n';) {
        line += letter;
    }
    return line;
}

std::vector<std::string> ChildProcess::read_lines() {
    std::vector<std::string> lines;
    for (std::string line = read_line(); !line.empty(); line = read_line()) {
        lines.push_back(line);
    }
    return lines;
}

void ChildProcess::write_line(const std::string& line) {
    const std::string text = line + "\n";
    if (::write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("cannot write to a child process");
    }
}

std::string ChildProcess::ask(const std::string& line) {
    write_line(line);
    return read_line();
}

void ChildProcess::close_input() {
    if (input_ >= 0) {
        ::close(input_);
        input_ = -1;
    }
}

void ChildProcess::stop() {
    int status = 0;
    if (::kill(process_, SIGSTOP) != 0 || ::waitpid(process_, &status, WUNTRACED) != process_ || !WIFSTOPPED(status)) {
        throw std::runtime_error("cannot stop a child process");
    }
}

bool ChildProcess::await_stop() {
    siginfo_t found{};
    const int options = WSTOPPED | WEXITED | WNOWAIT;
    return ::waitid(P_PID, static_cast<id_t>(process_), &found, options) == 0 && found.si_code == CLD_STOPPED;
}

void ChildProcess::kill() {
    ::kill(process_, SIGKILL);
    wait();
}

int ChildProcess::wait() {
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}
