#include "trace/sink.h"

#include "trace/json.h"
#include "trace/output.h"
#include "trace/settings.h"
#include "trace/text.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <map>
#include <mutex>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tavro::trace {
namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1000000000;
constexpr std::int64_t kNanosecondsPerMicrosecond = 1000;
constexpr std::size_t kIndentation = 2;

std::int64_t now_ns() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * kNanosecondsPerSecond + now.tv_nsec;
}

// A thread that has written something. Never deleted: threads write during their exit, too.
struct Thread {
    long id;
    std::string name;
};

struct State {
    std::mutex mutex;
    Output output;
    std::int64_t start_ns = now_ns();
    bool begun = false;               // the first line was written
    std::map<std::string, int> names; // how many threads have each name
};

// Never destroyed: calls are traced during exit, too.
State& state() {
    static State& once = *new State;
    return once;
}

thread_local Thread* this_thread = nullptr;
thread_local int quiet = 0;
thread_local int natives = 0;
thread_local int depth = 0;
thread_local Event* innermost = nullptr;
std::atomic<ThreadName> thread_names{nullptr};

std::string name_of_thread() {
    const ThreadName java = thread_names;
    std::string name;
    if (java != nullptr) {
        const Quiet here;
        name = java();
    }
    if (name.empty()) {
        std::array<char, 32> own{};
        ::pthread_getname_np(::pthread_self(), own.data(), own.size());
        name = own.data();
    }
    return escaped(name);
}

// The name of the program, as the system has it.
std::string program() {
    std::ifstream file("/proc/self/comm");
    std::string name;
    std::getline(file, name);
    return escaped(name);
}

std::string first_line() {
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    std::array<char, 64> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S UTC", &utc);
    return "# trace of process " + std::to_string(::getpid()) + " (" + program() + "), begun " + text.data() +
           ", times in microseconds";
}

// The functions below are called with the lock held.

void write_remark(const std::string& text) {
    if (!settings().json) {
        state().output.line("# " + text);
        return;
    }
    state().output.event(
        json_event(this_thread->id, "i", now_ns(), R"("s":"p","cat":"trace","name":)" + json_string(text)));
}

// Before the first line of the process and of the thread.
void prepare() {
    State& all = state();
    if (this_thread == nullptr) {
        this_thread = new Thread{::syscall(SYS_gettid), name_of_thread()};
        const int number = ++all.names[this_thread->name];
        if (number > 1) {
            this_thread->name += '#' + std::to_string(number);
        }
        if (settings().json) {
            all.output.event(
                json_event(this_thread->id, "M", 0,
                           R"("name":"thread_name","args":{"name":)" + json_string(this_thread->name) + '}'));
        }
    }
    if (all.begun) {
        return;
    }
    all.begun = true;
    all.output.open();
    if (settings().json) {
        all.output.event(json_event(this_thread->id, "M", 0,
                                    R"("name":"process_name","args":{"name":)" + json_string(program()) + '}'));
    } else {
        all.output.line(first_line());
    }
    if (!all.output.problem().empty()) {
        write_remark(all.output.problem());
    }
    for (const std::string& wrong : settings().wrong) {
        write_remark(wrong);
    }
}

void write_line(std::int64_t at_ns, const std::string& text) {
    std::array<char, 32> time{};
    std::snprintf(time.data(), time.size(), "%9lld ",
                  static_cast<long long>((at_ns - state().start_ns) / kNanosecondsPerMicrosecond));
    state().output.line(time.data() + this_thread->name + ' ' +
                        std::string(static_cast<std::size_t>(depth) * kIndentation, ' ') + text);
}

// Runs `write` with the lock held and after the first line. Leaves errno alone.
template <class Write>
void locked(Write write) noexcept {
    const int callers_errno = errno;
    try {
        const std::lock_guard<std::mutex> lock(state().mutex);
        prepare();
        write();
    } catch (const std::exception&) {
        // Out of memory: the line is lost.
    }
    errno = callers_errno;
}

std::string joined(const std::vector<Value>& values) {
    std::string all;
    for (const Value& value : values) {
        all += (all.empty() ? "" : ", ") + value.name + (value.name.empty() ? "" : "=") + value.text;
    }
    return all;
}

std::string with_sign(const std::string& result) {
    return result.empty() || result.rfind("threw ", 0) == 0 ? result : "= " + result;
}

const char* category_name(Category category) {
    switch (category) {
    case Category::kNative:
        return "native";
    case Category::kMiddleware:
        return "platform";
    case Category::kJni:
        return "jni";
    }
    return "";
}

void before_fork() { state().mutex.lock(); }
void after_fork() { state().mutex.unlock(); }
void after_fork_in_child() {
    this_thread = nullptr;
    state().output.reopen();
    state().begun = false;
    state().names.clear();
    state().mutex.unlock();
}

__attribute__((constructor)) void prepare_process() {
    state();
    ::pthread_atfork(before_fork, after_fork, after_fork_in_child);
    std::atexit([] {
        const std::lock_guard<std::mutex> lock(state().mutex);
        if (settings().json) {
            state().output.end();
        }
    });
}

} // namespace

Quiet::Quiet() noexcept { ++quiet; }
Quiet::~Quiet() { --quiet; }
bool is_quiet() noexcept { return quiet > 0; }

int natives_running() noexcept { return natives; }

bool in_platform_call() noexcept { return innermost != nullptr && innermost->is_of(Category::kMiddleware); }

Event::Event(Category category, const char* name) noexcept
    : category_(category), name_(name), outer_(innermost), start_ns_(now_ns()) {
    innermost = this;
}

void Event::close() noexcept {
    if (!open_) {
        return;
    }
    open_ = false;
    innermost = outer_;
    depth -= begun_ ? 1 : 0;
    natives -= begun_ && category_ == Category::kNative ? 1 : 0;
}

void Event::argument(std::string name, std::string text) { arguments_.push_back({std::move(name), std::move(text)}); }

void Event::write_begin() {
    if (begun_) {
        return;
    }
    if (outer_ != nullptr) {
        outer_->write_begin();
    }
    if (!settings().json) {
        write_line(start_ns_, name_ + ('(' + joined(arguments_)) + ')');
    }
    begun_ = true;
    ++depth;
    natives += category_ == Category::kNative ? 1 : 0;
}

void Event::begin() noexcept {
    locked([this] { write_begin(); });
    start_ns_ = now_ns();
}

void Event::returned() noexcept { end_ns_ = now_ns(); }

void Event::write(const std::string& result, const std::vector<Value>& out) const {
    const std::string taken =
        std::to_string((end_ns_ - start_ns_ + kNanosecondsPerMicrosecond / 2) / kNanosecondsPerMicrosecond);
    if (!settings().json) {
        const std::string call = begun_ ? "" : name_ + ('(' + joined(arguments_)) + ')';
        const std::string end = with_sign(result) + (out.empty() ? "" : ", " + joined(out));
        write_line(begun_ ? end_ns_ : start_ns_,
                   call + (call.empty() || end.empty() ? "" : " ") + end + " <" + taken + " us>");
        return;
    }
    std::string rest = R"("dur":)" + json_microseconds(end_ns_ - start_ns_) + R"(,"cat":")" + category_name(category_) +
                       R"(","name":)" + json_string(name_) + R"(,"args":{)";
    std::string separator;
    int number = 0;
    const auto add = [&](const std::string& name, const std::string& text) {
        rest += separator + json_string(name) + ':' + json_value(text);
        separator = ",";
    };
    for (const Value& value : arguments_) {
        ++number;
        add(value.name.empty() ? std::to_string(number) : value.name, value.text);
    }
    if (!result.empty()) {
        add("result", result);
    }
    for (const Value& value : out) {
        add(value.name, value.text);
    }
    state().output.event(json_event(this_thread->id, "X", start_ns_, rest + '}'));
}

void Event::finish(const std::string& result, const std::vector<Value>& out) noexcept {
    if (end_ns_ == 0) {
        returned();
    }
    close();
    locked([&] {
        if (outer_ != nullptr) {
            outer_->write_begin();
        }
        write(result, out);
    });
}

void log_line(char priority, const std::string& tag, const std::string& text) noexcept {
    locked([&] {
        if (innermost != nullptr) {
            innermost->write_begin();
        }
        const std::string line = priority + ('/' + tag) + ": " + text;
        if (!settings().json) {
            write_line(now_ns(), line);
            return;
        }
        state().output.event(json_event(this_thread->id, "i", now_ns(),
                                        R"("s":"t","cat":"log","name":)" + json_string(line) +
                                            R"(,"args":{"priority":")" + priority + R"(","tag":)" + json_string(tag) +
                                            R"(,"text":)" + json_string(text) + '}'));
    });
}

void remark(const std::string& text) noexcept {
    locked([&] { write_remark(text); });
}

void set_thread_names(ThreadName source) noexcept { thread_names = source; }

} // namespace tavro::trace
