#include "journal.h"
#include "middleware/channel_id.h"

using tavro::memory::journal;

std::uint32_t x_sb_gen_channel_id(std::int32_t major, std::int32_t minor, std::int32_t index) {
    journal(__func__, major, minor, index);
    return static_cast<std::uint32_t>(major) << 18 | static_cast<std::uint32_t>(minor) << 8 |
           static_cast<std::uint32_t>(index);
}
std::int32_t x_sb_get_channel_index(std::uint32_t channel_id) {
    journal(__func__, channel_id);
    return static_cast<std::int32_t>(channel_id & 0xFF);
}
