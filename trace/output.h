// The file that a trace is written to.
#pragma once

#include <string>

namespace tavro::trace {

// Appends one line of text, or one JSON event, in a single write, so that a killed process leaves whole lines. Opens
// the file named by the settings at the first call; standard error is used if that is not possible. The caller holds
// the lock of the sink.
//
// Several processes can write to the same file. A JSON file is complete after every event: each event replaces the end
// of the file and writes it again. A pipe or terminal gets the end when the process exits.
class Output {
public:
    void line(const std::string& text);
    void event(const std::string& json);

    // The process was forked: it must not use the file position of its parent.
    void reopen() { descriptor_ = -1; }
    // The process exits.
    void end();

    // What went wrong when the file was opened; empty if nothing.
    std::string problem() const { return problem_; }
    // Opens the file if it is not open.
    void open();

private:
    bool open_file(const std::string& path);
    void replace_end(const std::string& json);

    int descriptor_ = -1;
    bool regular_ = false; // a file whose end can be replaced
    bool empty_ = true;    // no event was written to a pipe
    std::string problem_;
};

} // namespace tavro::trace
