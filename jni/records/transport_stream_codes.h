// Codes of the tuner parameters in transport stream records: Java value, stored code.
//
// The Java values of the outer and inner FEC are taken to be those of FEC_outer and FEC_inner in the
// delivery system descriptors (ETSI EN 300 468, clause 6.2.13).
#pragma once

#include "jni/records/code_table.h"

// Bandwidth in kHz.
inline constexpr tavro::Code kBandwidths[] = {{6000, 1}, {7000, 2}, {8000, 3}, {5000, 4}, {10000, 5}, {1712, 6}};
inline constexpr tavro::CodeTable kBandwidthCodes(kBandwidths, 0);

// Inner FEC: 1/2, 2/3, 3/4, 5/6, 7/8, 8/9, 3/5, 4/5, 9/10.
inline constexpr tavro::Code kFecInners[] = {{1, 2}, {2, 3}, {3, 4}, {4, 6}, {5, 7}, {6, 8}, {7, 9}, {8, 10}, {9, 11}};
inline constexpr tavro::CodeTable kFecInnerCodes(kFecInners, 0);

// Outer FEC: none, RS(204/188).
inline constexpr tavro::Code kFecOuters[] = {{1, 1}, {2, 2}};
inline constexpr tavro::CodeTable kFecOuterCodes(kFecOuters, 0);

// Modulations are stored as they are.
inline constexpr int kFirstModulation = 1;
inline constexpr int kLastModulation = 28;

inline constexpr tavro::Code kTransmissionModes[] = {{2, 5}, {3, 1}, {4, 6}, {5, 2}, {6, 7}, {7, 8}, {8, 3}, {9, 4}};
inline constexpr tavro::CodeTable kTransmissionModeCodes(kTransmissionModes, 0);

inline constexpr tavro::Code kHierarchies[] = {{4, 1}, {5, 2}, {6, 3}, {7, 4}};
inline constexpr tavro::CodeTable kHierarchyCodes(kHierarchies, 0);

inline constexpr tavro::Code kRollOffs[] = {{3, 1}, {4, 2}};
inline constexpr tavro::CodeTable kRollOffCodes(kRollOffs, 0);

// Standards become the mode word of their medium: C or C2, T or T2, S or S2.
inline constexpr std::uint32_t kModeT = 1;
inline constexpr std::uint32_t kModeT2 = 2;
inline constexpr tavro::Code kCableStandards[] = {{1, 1}, {2, 2}};
inline constexpr tavro::CodeTable kCableStandardCodes(kCableStandards, 0);
inline constexpr tavro::Code kTerrestrialStandards[] = {{3, kModeT}, {4, kModeT2}};
inline constexpr tavro::CodeTable kTerrestrialStandardCodes(kTerrestrialStandards, 0);
inline constexpr tavro::Code kSatelliteStandards[] = {{5, 1}, {6, 2}};
inline constexpr tavro::CodeTable kSatelliteStandardCodes(kSatelliteStandards, 0);

// Guard intervals of DVB-T and of DVB-T2.
inline constexpr tavro::Code kGuardIntervalsT[] = {{2, 1}, {3, 2}, {4, 3}, {5, 4}};
inline constexpr tavro::CodeTable kGuardIntervalTCodes(kGuardIntervalsT, 0);
inline constexpr tavro::Code kGuardIntervalsT2[] = {{2, 1}, {3, 2}, {4, 3}, {5, 4}, {6, 5}, {7, 6}, {8, 7}};
inline constexpr tavro::CodeTable kGuardIntervalT2Codes(kGuardIntervalsT2, 0);

// Code rates. Satellite falls back to 12 and terrestrial to 0, deliberately.
inline constexpr tavro::Code kSatelliteCodeRates[] = {{2, 3}, {3, 5}, {4, 6}, {5, 8},   {6, 9},
                                                      {7, 2}, {8, 4}, {9, 7}, {10, 12}, {11, 10}};
inline constexpr tavro::CodeTable kSatelliteCodeRateCodes(kSatelliteCodeRates, 12);
inline constexpr tavro::Code kTerrestrialCodeRates[] = {{2, 1}, {3, 3}, {4, 4}, {5, 6}, {6, 7}, {7, 0}, {8, 2}, {9, 5}};
inline constexpr tavro::CodeTable kTerrestrialCodeRateCodes(kTerrestrialCodeRates, 0);
