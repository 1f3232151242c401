#include "recorder.h"

#include <deque>
#include <map>
#include <mutex>
#include <set>

namespace tavro::script {
namespace {

struct Script {
    std::mutex mutex;
    std::vector<Entry> journal;
    std::map<std::string, std::deque<Answer>> queued;
    std::map<std::string, Answer> lasting;
    std::map<std::string, std::string> properties;
    bool journals_properties = false;
    std::function<void(const std::string&)> observer;
    std::function<void(MwStatus)> failure_observer;
    std::multiset<std::uint32_t> handles;
};

// Never destroyed, because log lines are written until the process exits.
Script& script() {
    static Script& instance = *new Script;
    return instance;
}

using Lock = std::lock_guard<std::mutex>;

} // namespace

void reset() {
    Script& s = script();
    Lock lock(s.mutex);
    s.journal.clear();
    s.queued.clear();
    s.lasting.clear();
    s.properties.clear();
    s.journals_properties = false;
    s.observer = nullptr;
    s.failure_observer = nullptr;
}

void answer(const std::string& call, Answer answer) {
    Lock lock(script().mutex);
    script().queued[call].push_back(std::move(answer));
}

void always(const std::string& call, Answer answer) {
    Lock lock(script().mutex);
    script().lasting[call] = std::move(answer);
}

std::vector<Entry> journal() {
    Lock lock(script().mutex);
    return script().journal;
}

std::vector<std::string> lines() {
    Lock lock(script().mutex);
    std::vector<std::string> texts;
    texts.reserve(script().journal.size());
    for (const Entry& entry : script().journal) {
        texts.push_back(entry.text);
    }
    return texts;
}

std::vector<std::uint32_t> open_handles() {
    Lock lock(script().mutex);
    return {script().handles.begin(), script().handles.end()};
}

void forget_handles() {
    Lock lock(script().mutex);
    script().handles.clear();
}

void set_property(const std::string& name, const std::string& value) {
    Lock lock(script().mutex);
    script().properties[name] = value;
}

void journal_properties(bool on) {
    Lock lock(script().mutex);
    script().journals_properties = on;
}

void observe(std::function<void(const std::string& text)> observer) {
    Lock lock(script().mutex);
    script().observer = std::move(observer);
}

void observe_failures(std::function<void(MwStatus status)> observer) {
    Lock lock(script().mutex);
    script().failure_observer = std::move(observer);
}

void append(Entry entry) {
    std::function<void(const std::string&)> observer;
    const std::string text = entry.text;
    {
        Lock lock(script().mutex);
        script().journal.push_back(std::move(entry));
        observer = script().observer;
    }
    if (observer) {
        observer(text);
    }
}

std::optional<Answer> take(const std::string& call) {
    Script& s = script();
    Lock lock(s.mutex);
    const auto queue = s.queued.find(call);
    if (queue != s.queued.end() && !queue->second.empty()) {
        Answer first = std::move(queue->second.front());
        queue->second.pop_front();
        return first;
    }
    const auto lasting = s.lasting.find(call);
    return lasting == s.lasting.end() ? std::nullopt : std::optional<Answer>(lasting->second);
}

std::optional<std::string> property(const std::string& name, const std::string& default_value) {
    Script& s = script();
    bool journals = false;
    std::optional<std::string> value;
    {
        Lock lock(s.mutex);
        journals = s.journals_properties;
        const auto found = s.properties.find(name);
        if (found != s.properties.end()) {
            value = found->second;
        }
    }
    if (journals) {
        append({"property_get(" + text_of(name.c_str()) + ", " + text_of(default_value.c_str()) + ")", {}});
    }
    return value;
}

void opened(std::uint32_t handle) {
    Lock lock(script().mutex);
    script().handles.insert(handle);
}

void closed(std::uint32_t handle) {
    Lock lock(script().mutex);
    const auto found = script().handles.find(handle);
    if (found != script().handles.end()) {
        script().handles.erase(found);
    }
}

std::string text_of(Hex value) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    do {
        digits.insert(digits.begin(), kDigits[value.value % 16]);
        value.value /= 16;
    } while (value.value != 0);
    return "0x" + digits;
}

std::string text_of(const char* text) { return text == nullptr ? "null" : '"' + std::string(text) + '"'; }

std::string text_of(RecordArgument record) { return record.data == nullptr ? "null" : "record"; }

std::optional<Answer> play(const std::string& name, const std::vector<std::string>& arguments, RecordArgument record) {
    Entry entry{name + "(", {}};
    for (const std::string& argument : arguments) {
        if (entry.text.back() != '(') {
            entry.text += ", ";
        }
        entry.text += argument;
    }
    entry.text += ")";
    if (record.data != nullptr) {
        const auto* first = static_cast<const std::byte*>(record.data);
        entry.record.assign(first, first + record.bytes);
    }
    append(std::move(entry));
    std::optional<Answer> answer = take(name);
    if (answer && answer->status != kMwOk) {
        std::function<void(MwStatus)> observer;
        {
            Lock lock(script().mutex);
            observer = script().failure_observer;
        }
        if (observer) {
            observer(answer->status);
        }
    }
    return answer;
}

} // namespace tavro::script
