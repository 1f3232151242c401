// Java antenna types and switch positions in satellite records.
#pragma once

#include "middleware/satl.h"

#include <jni.h>

#include <optional>

namespace tavro {

// The bits of _SATL_REC_T::ui4_mask that the library uses.
inline constexpr std::uint32_t kLnbSignalDetected = 0x00020;
inline constexpr std::uint32_t kSatelliteEnabled = 0x02000;
inline constexpr std::uint32_t kLnbUniversal = 0x04000;
inline constexpr std::uint32_t kLnbSingleCable = 0x08000;
inline constexpr std::uint32_t kLnbSingleCableJess = 0x10000; // second generation of single cable
inline constexpr std::uint32_t kLnbKind = kLnbUniversal | kLnbSingleCable | kLnbSingleCableJess;

// Applies a Java antenna type (0-6) to the record; other values are ignored.
void set_antenna_type(_SATL_REC_T& record, jint type);

// The Java antenna type of a record; nothing when the record has no LNB kind.
std::optional<jint> antenna_type(const _SATL_REC_T& record);

// Positions 0 to 3 set the committed switch port and clear the tone burst. Positions 5 and 6 set the tone burst and
// leave the port as it is. Any other position clears both.
void set_diseqc_position(_TUNER_DISEQC_INFO_T& diseqc, jint position);

// The Java position of a dish-control block; 255 when it has none.
jint diseqc_position(const _TUNER_DISEQC_INFO_T& diseqc);

} // namespace tavro
