// The scripted channel-number helpers.
#include "middleware/channel_id.h"
#include "recorder.h"

using tavro::script::Answer;
using tavro::script::ask;

extern "C" {

std::uint32_t x_sb_gen_channel_id(std::int32_t major, std::int32_t minor, std::int32_t index) {
    return ask(__func__, major, minor, index).value_or(Answer{}).value.value_or(0);
}

std::int32_t x_sb_get_channel_index(std::uint32_t channel_id) {
    return static_cast<std::int32_t>(ask(__func__, channel_id).value_or(Answer{}).value.value_or(0));
}
}
