// Channel ids: major number in bits 18 to 31, minor number in bits 8 to 17, index in bits 0 to 7.
// Higher bits are dropped, so ids are unique for major numbers up to 16,383, minor numbers up to 1,023 and indices up
// to 255.
#include "middleware/channel_id.h"

#include "faults/faults.h"

namespace {

constexpr unsigned kMajorShift = 18;
constexpr unsigned kMinorShift = 8;
constexpr std::uint32_t kMajorMask = 0x3FFF;
constexpr std::uint32_t kMinorMask = 0x3FF;
constexpr std::uint32_t kIndexMask = 0xFF;

struct ChannelIds {
    static std::uint32_t gen_channel_id(std::int32_t major, std::int32_t minor, std::int32_t index) {
        return (static_cast<std::uint32_t>(major) & kMajorMask) << kMajorShift |
               (static_cast<std::uint32_t>(minor) & kMinorMask) << kMinorShift |
               (static_cast<std::uint32_t>(index) & kIndexMask);
    }
    static std::int32_t get_channel_index(std::uint32_t channel_id) {
        return static_cast<std::int32_t>(channel_id & kIndexMask);
    }
};

} // namespace

extern "C" {

#define TAVRO_DEFINE_CHANNEL_ID_CALL(RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)                                      \
    TAVRO_DEFINE_CALL(ChannelIds, RESULT, NAME, METHOD, PARAMETERS, ARGUMENTS)
TAVRO_SVL_BUILDER_CALLS(TAVRO_DEFINE_CHANNEL_ID_CALL)
}
