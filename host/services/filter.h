// Selects the records that a filtered count or read considers.
#pragma once

#include "middleware/types.h"

#include <cstddef>
#include <cstdint>

namespace tavro::host {

inline constexpr std::uint16_t kEveryNetwork = 0xFFFF; // of x_tsl_..._by_sat

class Filter {
public:
    // Matches every record.
    Filter() = default;

    // Services of one broadcast type with at least one network mask bit in common with `network_mask`.
    // kMwEveryBroadcastType and kMwEveryNetworkMask match all.
    static Filter by_broadcast_type(std::uint32_t broadcast_type, std::uint32_t network_mask);
    // Services of one transport stream record.
    static Filter by_transport_stream(std::uint16_t tsl_id, std::uint16_t tsl_rec_id, std::uint32_t network_mask);
    // Transport streams of one satellite record, of one network_id or kEveryNetwork.
    static Filter by_satellite(std::uint16_t network, std::uint16_t satl_id, std::uint16_t satl_rec_id);

    bool is_everything() const { return field_ == Field::kNone; }
    // `record` must be of the kind that the filter was made for.
    bool matches(const std::byte* record) const;
    bool operator==(const Filter& other) const;

private:
    enum class Field { kNone, kBroadcastType, kTransportStream, kSatellite };

    Filter(Field field, std::uint32_t first, std::uint32_t second, std::uint32_t network)
        : field_(field), first_(first), second_(second), network_(network) {}

    Field field_ = Field::kNone;
    std::uint32_t first_ = 0;   // broadcast type, or list id
    std::uint32_t second_ = 0;  // record id
    std::uint32_t network_ = 0; // mask, or network_id
};

} // namespace tavro::host
