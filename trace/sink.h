// Where everything that is traced goes: one event per call, one line per log message, as text or as Chrome trace JSON.
// All functions may be called on any thread, and none throws: an event for which memory is missing is lost.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tavro::trace {

// While one exists, nothing is traced on its thread. For calls that the tracer itself makes.
class Quiet {
public:
    Quiet() noexcept;
    ~Quiet();
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;
};
bool is_quiet() noexcept;

// How many natives are running on this thread.
int natives_running() noexcept;

// Whether this thread is in a call of the platform. What the platform calls then is its own affair.
bool in_platform_call() noexcept;

// A named value. Texts are ready to show: escaped, in quotes where they are text, see text.h.
struct Value {
    std::string name; // empty if there is none
    std::string text;
};

enum class Category : std::uint8_t {
    kNative,     // a native method
    kMiddleware, // a call of the platform
    kJni,        // a call that a native makes to the virtual machine
};

// One call in progress on this thread, a local variable of the function that makes it. Written at finish(), as a line
// such as `NAME(handle=0x1, record_id=5) = 0, version=3 <12 us>`. If something else is written on the thread before,
// the name and the arguments are written first, and the rest on a line of its own. An event that is never finished is
// not written.
class Event {
public:
    // The text at `name` must stay. The time counts from here.
    Event(Category category, const char* name) noexcept;
    ~Event() { close(); }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    bool is_of(Category category) const noexcept { return category_ == category; }
    void argument(std::string name, std::string text);
    // Writes the name and the arguments now, and indents what this thread writes until finish(). The time counts from
    // here.
    void begin() noexcept;
    // Ends the time that counts. What follows until finish() belongs to the tracer.
    void returned() noexcept;
    // `result` is empty for a call that returns nothing. A result such as "threw X" is not written as "= threw X".
    void finish(const std::string& result, const std::vector<Value>& out) noexcept;
    void finish(const std::string& result) noexcept { finish(result, {}); }

    // Writes what begin() writes, for this event and those around it, as far as that is not done. The lock of the sink
    // is held.
    void write_begin();

private:
    void write(const std::string& result, const std::vector<Value>& out) const;
    void close() noexcept;

    Category category_;
    const char* name_;
    Event* outer_; // the event that is in progress around this one
    bool open_ = true;
    bool begun_ = false;
    std::int64_t start_ns_;
    std::int64_t end_ns_ = 0;
    std::vector<Value> arguments_;
};

// Writes one line at the thread's indentation: a log message, with an escaped tag and text.
void log_line(char priority, const std::string& tag, const std::string& text) noexcept;

// Writes one line about the trace itself, such as a bad setting. In JSON it is an event, too.
void remark(const std::string& text) noexcept;

// Set by the agent: returns the name of the current thread in Java, or "".
using ThreadName = std::string (*)();
void set_thread_names(ThreadName source) noexcept;

} // namespace tavro::trace
