// What every list interface of the TV middleware shares: handle and status types.
#pragma once

#include <cstdint>

namespace tavro {

// Identifies an open list in the middleware. 0 is never a valid handle.
using MwdbHandle = std::uint32_t;

// What every middleware call returns: 0 on success, a negative code otherwise.
using MwStatus = std::int32_t;

// The statuses that the library distinguishes. It treats every other code as a failure.
inline constexpr MwStatus kMwOk = 0;
inline constexpr MwStatus kMwEmpty = -6;         // highest record id of an empty list
inline constexpr MwStatus kMwNoFile = -8;        // the list file does not exist
inline constexpr MwStatus kMwRecordExists = -11; // the record id to add is taken
inline constexpr MwStatus kMwNotAListFile = -12; // the file exists but is not a list file

// Record id queries of x_..._qry_rec_id.
inline constexpr std::uint32_t kMwQueryHighestRecordId = 2; // transport streams, networks, satellites
inline constexpr std::uint32_t kMwQueryNextRecordId = 3;    // services; 65535 when none is left

// First record id that no record can have.
inline constexpr std::uint16_t kMwNoRecordId = 0xFFFF;

// Selectors that match every record.
inline constexpr std::uint32_t kMwEveryBroadcastType = 0;
inline constexpr std::uint32_t kMwEveryNetworkMask = 0xFFFFFFFF;

// Constants of x_..._create and x_..._update_rec. Their meaning is the middleware's; the names are this project's.
inline constexpr std::uint32_t kMwCreateMode = 1;
inline constexpr std::uint32_t kMwCreateGrowth = 16;
inline constexpr std::uint32_t kMwUpdatePlain = 0;   // update of a record read before
inline constexpr std::uint32_t kMwUpdateReplace = 1; // update after an add found the id taken

// The drive argument of every middleware call that has one. The name is this project's.
inline constexpr std::uint32_t kMwRootDrive = 0;

} // namespace tavro
