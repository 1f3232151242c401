// libvelotra_tv_svl_builder.so without x_sb_get_channel_index.
#include "middleware/channel_id.h"

extern "C" std::uint32_t x_sb_gen_channel_id(std::int32_t, std::int32_t, std::int32_t) { return 0; }
