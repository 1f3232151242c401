// Codes of tuner parameters in transport stream records, by Java value.
//
// The numbers are fixed by the Java side and the middleware's tuner. The names are this project's reading of them: most
// Java values follow the order of the standard's codes, and transmission modes ascend with the FFT size. Clauses are
// those of ETSI EN 300 468: 6.2.13 for the delivery system descriptors and 6.4.6.3 for the DVB-T2 descriptor.
#pragma once

#include "jni/records/code_table.h"

namespace tavro {

// Bandwidth in kHz (6.2.13.4 and 6.4.6.3).
inline constexpr NamedCode kBandwidths[] = {
    {6000, 1, "6 MHz"}, {7000, 2, "7 MHz"},   {8000, 3, "8 MHz"},
    {5000, 4, "5 MHz"}, {10000, 5, "10 MHz"}, {1712, 6, "1.712 MHz"},
};
inline constexpr auto kBandwidthNumbers = numbers(kBandwidths);
inline constexpr CodeTable kBandwidthCodes(kBandwidthNumbers, 0);

// Inner FEC (FEC_inner, 6.2.13.1).
inline constexpr NamedCode kFecInners[] = {
    {1, 2, "1/2"}, {2, 3, "2/3"}, {3, 4, "3/4"},  {4, 6, "5/6"},   {5, 7, "7/8"},
    {6, 8, "8/9"}, {7, 9, "3/5"}, {8, 10, "4/5"}, {9, 11, "9/10"},
};
inline constexpr auto kFecInnerNumbers = numbers(kFecInners);
inline constexpr CodeTable kFecInnerCodes(kFecInnerNumbers, 0);

// Outer FEC (FEC_outer, 6.2.13.1).
inline constexpr NamedCode kFecOuters[] = {{1, 1, "none"}, {2, 2, "RS(204/188)"}};
inline constexpr auto kFecOuterNumbers = numbers(kFecOuters);
inline constexpr CodeTable kFecOuterCodes(kFecOuterNumbers, 0);

// Modulations in this range are kept unchanged, and any other becomes 0. Their numbers are the tuner's own.
inline constexpr int kFirstModulation = 1;
inline constexpr int kLastModulation = 28;

// Transmission mode: the FFT size (transmission_mode, 6.2.13.4 and 6.4.6.3).
inline constexpr NamedCode kTransmissionModes[] = {
    {2, 5, "1K"},  {3, 1, "2K"},  {4, 6, "4K"},     {5, 2, "8K"},
    {6, 7, "16K"}, {7, 8, "32K"}, {8, 3, "mode 8"}, {9, 4, "mode 9"}, // the standard has no name for the last two
};
inline constexpr auto kTransmissionModeNumbers = numbers(kTransmissionModes);
inline constexpr CodeTable kTransmissionModeCodes(kTransmissionModeNumbers, 0);

// Hierarchy (hierarchy_information, 6.2.13.4).
inline constexpr NamedCode kHierarchies[] = {
    {4, 1, "non-hierarchical"}, {5, 2, "alpha 1"}, {6, 3, "alpha 2"}, {7, 4, "alpha 4"}};
inline constexpr auto kHierarchyNumbers = numbers(kHierarchies);
inline constexpr CodeTable kHierarchyCodes(kHierarchyNumbers, 0);

// Roll-off factor (roll_off, 6.2.13.2). 0.35, the factor of DVB-S, is stored as 0 like any other value.
inline constexpr NamedCode kRollOffs[] = {{3, 1, "0.25"}, {4, 2, "0.20"}};
inline constexpr auto kRollOffNumbers = numbers(kRollOffs);
inline constexpr CodeTable kRollOffCodes(kRollOffNumbers, 0);

// Standards become the mode word of their medium.
inline constexpr std::uint32_t kModeT = 1;
inline constexpr std::uint32_t kModeT2 = 2;
inline constexpr NamedCode kCableStandards[] = {{1, 1, "DVB-C"}, {2, 2, "DVB-C2"}};
inline constexpr auto kCableStandardNumbers = numbers(kCableStandards);
inline constexpr CodeTable kCableStandardCodes(kCableStandardNumbers, 0);
inline constexpr NamedCode kTerrestrialStandards[] = {{3, kModeT, "DVB-T"}, {4, kModeT2, "DVB-T2"}};
inline constexpr auto kTerrestrialStandardNumbers = numbers(kTerrestrialStandards);
inline constexpr CodeTable kTerrestrialStandardCodes(kTerrestrialStandardNumbers, 0);
inline constexpr NamedCode kSatelliteStandards[] = {{5, 1, "DVB-S"}, {6, 2, "DVB-S2"}};
inline constexpr auto kSatelliteStandardNumbers = numbers(kSatelliteStandards);
inline constexpr CodeTable kSatelliteStandardCodes(kSatelliteStandardNumbers, 0);

// Guard interval of DVB-T (guard_interval, 6.2.13.4).
inline constexpr NamedCode kGuardIntervalsT[] = {{2, 1, "1/32"}, {3, 2, "1/16"}, {4, 3, "1/8"}, {5, 4, "1/4"}};
inline constexpr auto kGuardIntervalTNumbers = numbers(kGuardIntervalsT);
inline constexpr CodeTable kGuardIntervalTCodes(kGuardIntervalTNumbers, 0);

// Guard interval of DVB-T2 (guard_interval, 6.4.6.3).
inline constexpr NamedCode kGuardIntervalsT2[] = {
    {2, 1, "1/32"}, {3, 2, "1/16"}, {4, 3, "1/8"}, {5, 4, "1/4"}, {6, 5, "1/128"}, {7, 6, "19/128"}, {8, 7, "19/256"},
};
inline constexpr auto kGuardIntervalT2Numbers = numbers(kGuardIntervalsT2);
inline constexpr CodeTable kGuardIntervalT2Codes(kGuardIntervalT2Numbers, 0);

// Code rate of a satellite stream (6.2.13.2). The stored codes ascend with the rate; 12 also stands for all other
// values. Deliberate: satellite falls back to 12, terrestrial to 0.
inline constexpr NamedCode kSatelliteCodeRates[] = {
    {2, 3, "1/2"}, {3, 5, "2/3"}, {4, 6, "3/4"}, {5, 8, "5/6"},    {6, 9, "7/8"},
    {7, 2, "2/5"}, {8, 4, "3/5"}, {9, 7, "4/5"}, {10, 12, "none"}, {11, 10, "8/9"},
};
inline constexpr auto kSatelliteCodeRateNumbers = numbers(kSatelliteCodeRates);
inline constexpr CodeTable kSatelliteCodeRateCodes(kSatelliteCodeRateNumbers, 12);

// Code rate of a terrestrial stream (code_rate, 6.2.13.4). The stored codes ascend with the rate; 0, the code of 2/5,
// also stands for all other values.
inline constexpr NamedCode kTerrestrialCodeRates[] = {
    {2, 1, "1/2"}, {3, 3, "2/3"}, {4, 4, "3/4"}, {5, 6, "5/6"},
    {6, 7, "7/8"}, {7, 0, "2/5"}, {8, 2, "3/5"}, {9, 5, "4/5"},
};
inline constexpr auto kTerrestrialCodeRateNumbers = numbers(kTerrestrialCodeRates);
inline constexpr CodeTable kTerrestrialCodeRateCodes(kTerrestrialCodeRateNumbers, 0);

} // namespace tavro
