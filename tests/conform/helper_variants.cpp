// Platforms with defects of the channel number helpers, the properties and the log.
#include "hooks.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <map>
#include <thread>

namespace tavro::broken {

namespace {

// Calls `change` with the name and the value of each property that is read; the result is the value's length.
template <class Change>
void change_property(Change change) {
    System::hooks.property_get = [change](const char* key, char* value, const char* default_value) {
        System::next.property_get(key, value, default_value);
        change(key, value);
        return static_cast<int>(std::strlen(value));
    };
}

// Ends the process at a line that is `bad`.
template <class Bad>
void abort_at_line(Bad bad) {
    System::hooks.log = [bad](int priority, const char* tag, const char* text) {
        if (bad(tag, text)) {
            std::abort();
        }
        return System::next.log(priority, tag, text);
    };
}

bool is_of_checks(const char* tag) { return tag != nullptr && std::strcmp(tag, "tavro-conform") == 0; }

} // namespace

void add_helper_variants(Variants& variants) {
    const auto add = [&variants](const char* check, std::function<void()> break_it) {
        variants.push_back({check, std::move(break_it)});
    };
    add("x_sb_get_channel_index.returns-index", [] {
        Builder::hooks.get_channel_index = [](std::uint32_t id) { return Builder::next.get_channel_index(id) & 7; };
    });
    add("x_sb_gen_channel_id.ids-differ", [] {
        Builder::hooks.gen_channel_id = [](std::int32_t major_number, std::int32_t minor_number, std::int32_t index) {
            return Builder::next.gen_channel_id(major_number, minor_number == 100 ? 99 : minor_number, index);
        };
    });
    add("x_sb_gen_channel_id.ids-stay", [] {
        Builder::hooks.gen_channel_id = [](std::int32_t major_number, std::int32_t minor_number, std::int32_t index) {
            static std::uint32_t calls = 0;
            return Builder::next.gen_channel_id(major_number, minor_number, index) | (++calls % 2) << 31;
        };
    });

    add("property_get.unset", [] {
        change_property([](const char*, char* value) {
            if (*value == '\0') {
                std::strcpy(value, "E");
            }
        });
    });
    add("property_get.value", [] {
        change_property([](const char*, char* value) {
            if (std::strlen(value) == 1) {
                *value = static_cast<char>(std::toupper(*value));
            }
        });
    });
    add("property_get.changes", [] {
        change_property([](const char* key, char* value) {
            static std::map<std::string, std::string> cache;
            std::strcpy(value, cache.emplace(key, value).first->second.c_str());
        });
    });
    add("property_get.longest-value", [] { change_property([](const char*, char* value) { value[90] = '\0'; }); });
    add("property_get.buffer", [] {
        change_property([](const char*, char* value) {
            if (std::strlen(value) == 91) {
                value[92] = '\0';
            }
        });
    });

    add("__android_log_print.null-tag",
        [] { abort_at_line([](const char* tag, const char*) { return tag == nullptr; }); });
    add("__android_log_print.percent-sign",
        [] { abort_at_line([](const char*, const char* text) { return std::strstr(text, "%n") != nullptr; }); });
    add("__android_log_print.long-line",
        [] { abort_at_line([](const char*, const char* text) { return std::strlen(text) > 4096; }); });
    add("__android_log_print.threads", [] {
        abort_at_line([](const char* tag, const char*) {
            static const std::thread::id first = std::this_thread::get_id();
            return is_of_checks(tag) && first != std::this_thread::get_id();
        });
    });
}

} // namespace tavro::broken
