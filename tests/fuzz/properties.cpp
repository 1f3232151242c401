// The properties file: whatever its bytes, each property has the value that a simple reference parser finds.
#include "fuzz.h"

#include <cutils/properties.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

using namespace tavro::fuzz;

namespace {

constexpr std::size_t kMostValueBytes = PROPERTY_VALUE_MAX - 1;
constexpr char kBlanks[] = " \t\r";

std::string trimmed(std::string text) {
    text.erase(0, std::min(text.size(), text.find_first_not_of(kBlanks)));
    text.erase(text.find_last_not_of(kBlanks) + 1);
    return text;
}

// The properties of a file; the last line of a name counts.
std::map<std::string, std::string> properties_of(const std::string& content) {
    std::map<std::string, std::string> properties;
    for (std::size_t start = 0; start < content.size();) {
        const std::size_t end = std::min(content.find('\n', start), content.size());
        const std::string line = content.substr(start, end - start);
        const std::size_t sign = line.find('=');
        const std::string name = trimmed(line.substr(0, sign));
        if (sign != std::string::npos && !name.empty() && name.front() != '#') {
            properties[name] = trimmed(line.substr(sign + 1));
        }
        start = end + 1;
    }
    return properties;
}

void require_value(const std::string& name, const std::string& set, const std::string& default_value) {
    std::string expected = set.empty() ? default_value : set;
    expected.resize(std::min(expected.size(), kMostValueBytes));
    // The bytes after the value show writes beyond its end.
    std::string buffer(PROPERTY_VALUE_MAX, '~');
    const int length = property_get(name.c_str(), buffer.data(), default_value.c_str());
    require(length == static_cast<int>(expected.size()), "a property's length is returned");
    require(buffer.substr(0, expected.size() + 1) == expected + '\0', "a property has its value, terminated");
    require(buffer.find_first_not_of('~', expected.size() + 1) == std::string::npos, "nothing is written after it");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = [] {
        std::string made = temporary_folder() + "/properties";
        ::setenv("TAVRO_PROPERTIES", made.c_str(), 1);
        return made;
    }();
    Input input(data, size);
    const std::string other_name = input.text(20);
    const std::string default_value = input.text(100);
    const std::string content = input.rest();
    std::ofstream(path, std::ios::binary) << content;

    const auto properties = properties_of(content);
    int asked = 0;
    for (const auto& [name, value] : properties) {
        if (name.find('\0') == std::string::npos && ++asked <= 8) {
            require_value(name, value, default_value);
        }
    }
    const auto other = properties.find(other_name);
    require_value(other_name, other == properties.end() ? "" : other->second, default_value);
    return 0;
}
