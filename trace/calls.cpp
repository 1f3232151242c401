// The 86 middleware functions: each traces its call and forwards it to the middleware's own.
#include "middleware/calls.h"

#include "trace/next.h"
#include "trace/records.h"
#include "trace/settings.h"
#include "trace/sink.h"
#include "trace/text.h"

#include <atomic>
#include <cerrno>
#include <exception>
#include <string_view>
#include <type_traits>
#include <utility>

namespace tavro::trace {
namespace {

enum Kind : std::uint8_t { kServices, kStreams, kNetworks, kSatellites, kKinds };

template <class Record>
constexpr Kind kKindOf = std::is_same_v<Record, _SVL_REC_T>   ? kServices
                         : std::is_same_v<Record, _TSL_REC_T> ? kStreams
                         : std::is_same_v<Record, _NWL_REC_T> ? kNetworks
                                                              : kSatellites;

const RecordFormat& format_of(Kind kind) {
    static const std::vector<RecordFormat>& all = *[] {
        auto* const formats = new std::vector<RecordFormat>; // never destroyed: calls are traced during exit, too
        for (const layouts::Record& record : layouts::all_records()) {
            formats->emplace_back(record);
        }
        return formats;
    }();
    return all[kind];
}

RecordMemory& memory() {
    static RecordMemory& once = *new RecordMemory;
    return once;
}

// One of the functions.
struct Function {
    const char* library;
    const char* name;      // x_svl_get_rec
    const char* method;    // get_rec
    const char* arguments; // (handle, record_id, record, version)
    const void* own;
    std::atomic<void*> next{nullptr};

    void* find() {
        void* found = next;
        if (found == nullptr) {
            found = find_next(library, name, own);
            next = found;
        }
        return found;
    }
    bool is(std::string_view other) const { return other == method; }
    Kind kind() const {
        const std::string_view prefix = std::string_view(name).substr(0, 5);
        return prefix == "x_svl"   ? kServices
               : prefix == "x_tsl" ? kStreams
               : prefix == "x_nwl" ? kNetworks
               : prefix == "x_sat" ? kSatellites
                                   : kKinds;
    }
    bool writes_record() const { return is("add_rec") || is("update_rec"); }
};

// Splits "(handle, record_id)".
class Names {
public:
    explicit Names(std::string_view list) : rest_(list.substr(1, list.size() - 2)) {}
    std::string next() {
        const std::size_t comma = rest_.find(',');
        std::string name(rest_.substr(0, comma));
        rest_.remove_prefix(comma == std::string_view::npos ? rest_.size() : comma + 2);
        return name;
    }

private:
    std::string_view rest_;
};

bool is_handle(std::string_view name) { return name == "handle" || name == "from" || name == "to"; }

std::string number_text(std::string_view name, std::uint32_t number) {
    const bool hex = is_handle(name) || name == "network_mask" || name == "channel_id";
    return hex ? hexadecimal(number) : std::to_string(number);
}
std::string number_text(std::string_view, std::int32_t number) { return std::to_string(number); }

std::string result_text(MwStatus status) { return std::to_string(status); }
std::string result_text(std::uint32_t channel_id) { return hexadecimal(channel_id); }

template <class Record>
Bytes bytes_of(const Record* record) {
    const auto* const first = reinterpret_cast<const std::uint8_t*>(record);
    return {first, first + sizeof(Record)};
}

// One call while it is traced.
class Call {
public:
    explicit Call(const Function& function) : function_(function), event_(Category::kMiddleware, function.name) {}

    // Before the call. Where results go is shown after it, unless it is null.
    void before(const std::string& name, std::uint16_t number) {
        event_.argument(name, std::to_string(number));
        (name == "list_id" ? list_ : record_) = number;
    }
    void before(const std::string& name, std::uint32_t number) {
        event_.argument(name, number_text(name, number));
        if (is_handle(name)) {
            handle_ = number; // of a copy: the list that is written
        }
    }
    void before(const std::string& name, std::int32_t number) { event_.argument(name, std::to_string(number)); }
    void before(const std::string& name, const char* text) { event_.argument(name, quoted(text)); }
    template <class Pointee>
    void before(const std::string& name, Pointee* pointer) {
        if (pointer == nullptr) {
            event_.argument(name, "null");
        } else if constexpr (std::is_class_v<Pointee>) {
            if (function_.writes_record()) {
                written_ = bytes_of(pointer);
                event_.argument(name,
                                memory().described(kKindOf<Pointee>, format_of(kKindOf<Pointee>), handle_, written_));
            }
        }
    }

    void begin() {
        if (settings().early) {
            event_.begin();
        }
    }
    void returned() { event_.returned(); }

    // After a successful call.
    template <class Value>
    void after(const std::string&, Value) {}
    void after(const std::string&, const char*) {}
    template <class Pointee>
    void after(const std::string& name, Pointee* pointer) {
        if (pointer == nullptr) {
            return;
        }
        if constexpr (std::is_class_v<Pointee>) {
            const RecordFormat& format = format_of(kKindOf<Pointee>);
            const Bytes bytes = bytes_of(pointer);
            if (!function_.writes_record()) {
                out_.push_back({name, memory().described(kKindOf<Pointee>, format, handle_, bytes)});
            } else if (bytes != written_) {
                out_.push_back({name + "_after", format.changes(written_, bytes)});
            }
            memory().remember(kKindOf<Pointee>, format, handle_, bytes);
        } else {
            out_.push_back({name, number_text(name, *pointer)});
            if (name == "handle") {
                memory().opened(function_.kind(), *pointer, list_);
            }
        }
    }

    void finish(const std::string& result, bool done) {
        if (done && function_.kind() != kKinds) {
            forget();
        }
        event_.finish(result, out_);
    }

private:
    // What is no longer there after a successful call.
    void forget() {
        const Kind kind = function_.kind();
        if (function_.is("del_rec")) {
            memory().forget(kind, handle_, record_);
        } else if (function_.is("clean") || function_.is("remove") || function_.is("copy_date") ||
                   function_.is("fs_sync")) {
            memory().forget_list(kind, handle_);
        }
        if (function_.is("remove") || function_.is("close")) {
            memory().closed(kind, handle_);
        }
    }

    const Function& function_;
    Event event_;
    std::uint32_t handle_ = 0;
    std::uint16_t list_ = 0;
    std::uint16_t record_ = 0;
    Bytes written_;
    std::vector<Value> out_;
};

// A const text is never a result.
template <class Argument>
void describe_before(Call& call, Names& names, Argument argument) {
    call.before(names.next(), argument);
}
template <class Argument>
void describe_after(Call& call, Names& names, Argument argument) {
    call.after(names.next(), argument);
}

template <class Pointer>
struct Forward;

template <class Result, class... Arguments>
struct Forward<Result (*)(Arguments...)> {
    Function& function;

    Result operator()(Arguments... arguments) const {
        const int callers_errno = errno;
        auto* const next = reinterpret_cast<Result (*)(Arguments...)>(function.find());
        errno = callers_errno;
        if (next == nullptr) {
            return static_cast<Result>(-1);
        }
        if (is_quiet()) {
            return next(arguments...);
        }
        return traced(next, arguments...);
    }

private:
    // Without memory, the call is made and not traced.
    Result traced(Result (*next)(Arguments...), Arguments... arguments) const {
        const int callers_errno = errno;
        Call call(function);
        attempt([&] {
            Names names(function.arguments);
            (describe_before(call, names, arguments), ...);
        });
        call.begin();
        errno = callers_errno;
        const Result result = next(arguments...);
        const int errno_of_call = errno;
        call.returned();
        attempt([&] {
            const bool done = std::is_same_v<Result, MwStatus> && static_cast<MwStatus>(result) >= 0;
            if (done) {
                Names names(function.arguments);
                (describe_after(call, names, arguments), ...);
            }
            call.finish(result_text(result), done);
        });
        errno = errno_of_call;
        return result;
    }

    template <class Action>
    static void attempt(Action action) noexcept {
        try {
            action();
        } catch (const std::exception&) {
            // Out of memory.
        }
    }
};

} // namespace
} // namespace tavro::trace

#define TAVRO_FORWARD(LIBRARY, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                            \
    RESULT NAME PARAMETERS {                                                                                           \
        static tavro::trace::Function function{LIBRARY, #NAME, #METHOD, #ARGUMENTS, reinterpret_cast<void*>(&NAME)};   \
        return tavro::trace::Forward<decltype(&NAME)>{function} ARGUMENTS;                                             \
    }
#define TAVRO_FORWARD_SERVICES(...) TAVRO_FORWARD("libvelotra_tv_services.so", __VA_ARGS__)
#define TAVRO_FORWARD_SVL_BUILDER(...) TAVRO_FORWARD("libvelotra_tv_svl_builder.so", __VA_ARGS__)
#define TAVRO_FORWARD_BASIC(...) TAVRO_FORWARD("libvelotra_tv_basic.so", __VA_ARGS__)

extern "C" {
TAVRO_SERVICES_CALLS(TAVRO_FORWARD_SERVICES)
TAVRO_SVL_BUILDER_CALLS(TAVRO_FORWARD_SVL_BUILDER)
TAVRO_BASIC_CALLS(TAVRO_FORWARD_BASIC)
}
