// Channel ids pack the major number, the minor number and the index.
#include "middleware/channel_id.h"

#include <gtest/gtest.h>

TEST(ChannelIds, PackMajorMinorAndIndex) {
    EXPECT_EQ(x_sb_gen_channel_id(1, 2, 3), 1u << 18 | 2u << 8 | 3u);
    EXPECT_EQ(x_sb_gen_channel_id(16383, 1023, 255), 0xFFFFFFFFu);
    EXPECT_EQ(x_sb_gen_channel_id(0, 0, 0), 0u);
}

TEST(ChannelIds, CutNumbersThatDoNotFit) {
    EXPECT_EQ(x_sb_gen_channel_id(16384, 1024, 256), 0u);
    EXPECT_EQ(x_sb_gen_channel_id(-1, 0, 0), 16383u << 18);
}

TEST(ChannelIds, GiveTheIndexBack) {
    for (const std::int32_t index : {0, 1, 16, 255}) {
        EXPECT_EQ(x_sb_get_channel_index(x_sb_gen_channel_id(700, 12, index)), index);
    }
}
