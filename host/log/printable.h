// Text that a terminal can show without obeying it.
#pragma once

#include <string>
#include <string_view>

// `text` with a dot (U+00B7) for every control character but tab and newline: C0, DEL, the C1 controls U+0080 to
// U+009F, and bytes 0x80 to 0x9F outside valid UTF-8, which some terminals take for C1 controls. Everything else
// stays, be it valid UTF-8 or not.
std::string printable(std::string text);
