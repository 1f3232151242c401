// Properties of the four list kinds that the storage needs.
#pragma once

#include "middleware/nwl.h"
#include "middleware/satl.h"
#include "middleware/svl.h"
#include "middleware/tsl.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tavro::host {

struct Kind {
    std::uint32_t number; // stored in databases and list files; must not change
    const char* name;
    std::size_t record_bytes;
    std::size_t record_id_offset; // of the 16-bit record id
};

inline constexpr Kind kSvl{1, "svl", sizeof(_SVL_REC_T), offsetof(_SVL_REC_T, ui2_svl_rec_id)};
inline constexpr Kind kTsl{2, "tsl", sizeof(_TSL_REC_T), offsetof(_TSL_REC_T, ui2_tsl_rec_id)};
inline constexpr Kind kNwl{3, "nwl", sizeof(_NWL_REC_T), offsetof(_NWL_REC_T, ui2_nwl_rec_id)};
inline constexpr Kind kSatl{4, "satl", sizeof(_SATL_REC_T), offsetof(_SATL_REC_T, ui2_satl_rec_id)};

// Returns the kind with that number, or null.
inline const Kind* find_kind(std::int64_t number) {
    for (const Kind* const kind : {&kSvl, &kTsl, &kNwl, &kSatl}) {
        if (kind->number == number) {
            return kind;
        }
    }
    return nullptr;
}

inline std::uint16_t record_id_of(const Kind& kind, const void* record) {
    std::uint16_t id = 0;
    std::memcpy(&id, static_cast<const char*>(record) + kind.record_id_offset, sizeof id);
    return id;
}

// Identifies a list, and computes the storage's keys for the list and its records.
struct ListKey {
    std::uint32_t kind; // Kind::number
    std::uint16_t list_id;

    // 0x30004 for network list 4.
    std::int64_t number() const { return std::int64_t{kind} << 16 | list_id; }
    // 0x300040011 for its record 17.
    std::int64_t record(std::uint16_t record_id) const { return number() << 16 | record_id; }

    bool operator<(const ListKey& other) const { return number() < other.number(); }
    bool operator==(const ListKey& other) const { return number() == other.number(); }
};

} // namespace tavro::host
