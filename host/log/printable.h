// Makes text safe to show on a terminal.
#pragma once

#include <string>
#include <string_view>

// Replaces every control character except tab and newline with a dot (U+00B7): C0, DEL, C1 (U+0080 to U+009F), and
// bytes 0x80 to 0x9F outside valid UTF-8, which some terminals treat as C1. Everything else is kept, including
// invalid UTF-8.
std::string printable(std::string text);
