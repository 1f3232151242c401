// Channel-number helpers of the TV middleware's service list builder.
#pragma once

#include <cstdint>

extern "C" {
// The 32-bit channel id of a major and minor channel number; `index` distinguishes services with the same numbers.
std::uint32_t x_sb_gen_channel_id(std::int32_t major, std::int32_t minor, std::int32_t index);
// The index inside a channel id.
std::int32_t x_sb_get_channel_index(std::uint32_t channel_id);
}
