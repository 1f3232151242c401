// The conditions of the service list's filtered reads.
#pragma once

#include "middleware/svl.h"

namespace tavro {

// Kinds of condition.
inline constexpr int kMatchEvery = 0;           // every service
inline constexpr int kMatchTransportStream = 1; // the transport stream record has the wanted transport stream id
inline constexpr int kMatchNetwork = 2;         // the network record has the wanted network id

} // namespace tavro

// Whether a service passes a condition; false for an unknown kind of condition. Opens the list that the service refers
// to, from the service list manager's path unless that is empty. A record that cannot be read does not match. Closes
// all lists of that kind afterwards.
bool IsMatchCondition(int kind, int wanted, const _SVL_REC_T& service);
