#include "filter.h"

#include "kinds.h"

namespace tavro::host {
namespace {

template <class Record>
Record record_at(const std::byte* bytes) {
    Record record;
    std::memcpy(&record, bytes, sizeof record);
    return record;
}

bool matches_mask(std::uint32_t flags, std::uint32_t mask) {
    return mask == kMwEveryNetworkMask || (flags & mask) != 0;
}

} // namespace

Filter Filter::by_broadcast_type(std::uint32_t broadcast_type, std::uint32_t network_mask) {
    if (broadcast_type == kMwEveryBroadcastType && network_mask == kMwEveryNetworkMask) {
        return {};
    }
    return {Field::kBroadcastType, broadcast_type, 0, network_mask};
}

Filter Filter::by_transport_stream(std::uint16_t tsl_id, std::uint16_t tsl_rec_id, std::uint32_t network_mask) {
    return {Field::kTransportStream, tsl_id, tsl_rec_id, network_mask};
}

Filter Filter::by_satellite(std::uint16_t network, std::uint16_t satl_id, std::uint16_t satl_rec_id) {
    return {Field::kSatellite, satl_id, satl_rec_id, network};
}

bool Filter::matches(const std::byte* bytes) const {
    switch (field_) {
    case Field::kNone:
        return true;
    case Field::kBroadcastType: {
        const auto header = record_at<_SVL_REC_T>(bytes).t_header;
        const bool type_matches = first_ == kMwEveryBroadcastType || header.e_brdcst_type == first_;
        return type_matches && matches_mask(header.ui4_nw_mask, network_);
    }
    case Field::kTransportStream: {
        const auto header = record_at<_SVL_REC_T>(bytes).t_header;
        return header.ui2_tsl_id == first_ && header.ui2_tsl_rec_id == second_ &&
               matches_mask(header.ui4_nw_mask, network_);
    }
    case Field::kSatellite: {
        const auto stream = record_at<_TSL_REC_T>(bytes);
        const bool network_matches = network_ == kEveryNetwork || stream.ui2_nw_id == network_;
        return stream.ui2_satl_id == first_ && stream.ui2_satl_rec_id == second_ && network_matches;
    }
    }
    return false;
}

bool Filter::operator==(const Filter& other) const {
    return field_ == other.field_ && first_ == other.first_ && second_ == other.second_ && network_ == other.network_;
}

} // namespace tavro::host
