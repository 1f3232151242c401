// Gives each test its own storage directory and log.
#pragma once

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Sets environment variables and restores the old values on destruction.
class Environment {
public:
    ~Environment();
    void set(const std::string& name, const std::string& value);
    void unset(const std::string& name);

private:
    void remember(const std::string& name);
    std::map<std::string, std::optional<std::string>> before_;
};

class Workspace : public ::testing::Test {
protected:
    Workspace();
    ~Workspace() override;

    // The test's directory, which contains everything else.
    std::string directory() const { return directory_; }
    // TAVRO_HOME of the test. Not created yet.
    std::string home() const { return directory_ + "/home"; }
    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    // Closes the storage; the next call reopens it, like a new process.
    void restart() const;

    // The lines logged so far.
    std::vector<std::string> log() const;

    // The process id as shown in log lines: "(  123)".
    static std::string process_mark();

    static void write_file(const std::string& path, const std::string& content);
    static std::string read_file(const std::string& path);

    Environment environment;

private:
    std::string directory_;
};
