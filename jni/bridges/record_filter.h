// The filter of the channel list's listings.
#pragma once

#include "middleware/svl.h"

// Kinds of condition.
inline constexpr int kMatchEvery = 0;           // every service
inline constexpr int kMatchTransportStream = 1; // the transport stream record has the wanted transport stream id
inline constexpr int kMatchNetwork = 2;         // the network record has the wanted network id

// Whether a service passes a condition; none passes one of another kind. Opens the lists that the service points at
// when they are not open, with the channel list's storage path when it has one. A record that cannot be read does not
// match. Afterwards all lists of that kind are closed.
bool IsMatchCondition(int kind, int wanted, const _SVL_REC_T& service);
