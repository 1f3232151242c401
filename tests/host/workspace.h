// A storage directory and a log of its own for each test.
#pragma once

#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Sets an environment variable and puts the old value back at its end.
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

    // The test's directory, which holds everything else.
    std::string directory() const { return directory_; }
    // TAVRO_HOME of the test; not yet made.
    std::string home() const { return directory_ + "/home"; }
    std::string path(const std::string& name) const { return directory_ + "/" + name; }

    // Opens the storage anew, as a new process would.
    void restart() const;

    // What the log has got so far, line by line.
    std::vector<std::string> log() const;

    // The test's process as it stands in a log line: "(  123)".
    static std::string process_mark();

    static void write_file(const std::string& path, const std::string& content);
    static std::string read_file(const std::string& path);

    Environment environment;

private:
    std::string directory_;
};
