#include "jni/records/satellite_antenna.h"

#include <iterator>

namespace tavro {
namespace {

constexpr std::uint32_t kToneBurstOnly = 0;
constexpr std::uint32_t kCommittedSwitch = 2;

// The switch modes of a dish: committed, extended and second extended.
struct SwitchModes {
    std::uint32_t type;
    std::uint32_t type_ex;
    std::uint32_t type_ex2;
};

constexpr SwitchModes kCommitted = {kCommittedSwitch, 0, 0};
constexpr SwitchModes kExtended = {kToneBurstOnly, 4, 0};
constexpr SwitchModes kSecondExtended = {kToneBurstOnly, 0, 5};

struct Antenna {
    std::uint32_t lnb_kind;
    const SwitchModes* modes; // null: the record's modes stay
};

// By Java antenna type.
constexpr Antenna kAntennas[] = {
    {kLnbUniversal, nullptr},     {kLnbSingleCable, nullptr},  {kLnbSingleCableJess, nullptr},
    {kLnbUniversal, &kCommitted}, {kLnbUniversal, &kExtended}, {kLnbUniversal, &kSecondExtended},
    {kLnbUniversal, nullptr},
};

constexpr jint kUniversalType = 0;
constexpr jint kSingleCableType = 1;
constexpr jint kSingleCableJessType = 2;

bool has_modes(const _TUNER_DISEQC_INFO_T& diseqc, const SwitchModes& modes) {
    return diseqc.e_diseqc_type == modes.type && diseqc.e_diseqc_type_ex == modes.type_ex &&
           diseqc.e_diseqc_type_ex2 == modes.type_ex2;
}

constexpr jint kLastPort = 3;
constexpr jint kToneBurstPositionA = 5;
constexpr jint kToneBurstPositionB = 6;
constexpr jint kNoPosition = 255;
constexpr std::uint8_t kToneBurstA = 0;
constexpr std::uint8_t kToneBurstB = 1;
constexpr std::uint8_t kNone = 0xFF;

} // namespace

void set_antenna_type(_SATL_REC_T& record, jint type) {
    if (type < 0 || type >= static_cast<jint>(std::size(kAntennas))) {
        return;
    }
    const Antenna& antenna = kAntennas[type];
    record.ui4_mask = (record.ui4_mask & ~kLnbKind) | antenna.lnb_kind;
    if (antenna.modes != nullptr) {
        record.t_diseqc_info.e_diseqc_type = antenna.modes->type;
        record.t_diseqc_info.e_diseqc_type_ex = antenna.modes->type_ex;
        record.t_diseqc_info.e_diseqc_type_ex2 = antenna.modes->type_ex2;
    }
}

std::optional<jint> antenna_type(const _SATL_REC_T& record) {
    if ((record.ui4_mask & kLnbSingleCable) != 0) {
        return kSingleCableType;
    }
    if ((record.ui4_mask & kLnbSingleCableJess) != 0) {
        return kSingleCableJessType;
    }
    if ((record.ui4_mask & kLnbUniversal) == 0) {
        return std::nullopt;
    }
    for (const Antenna& antenna : kAntennas) {
        if (antenna.modes != nullptr && has_modes(record.t_diseqc_info, *antenna.modes)) {
            return static_cast<jint>(&antenna - kAntennas);
        }
    }
    return kUniversalType;
}

void set_diseqc_position(_TUNER_DISEQC_INFO_T& diseqc, jint position) {
    switch (position) {
    case kToneBurstPositionA:
        diseqc.ui1_tone_burst = kToneBurstA;
        break;
    case kToneBurstPositionB:
        diseqc.ui1_tone_burst = kToneBurstB;
        break;
    default:
        diseqc.ui1_port = position >= 0 && position <= kLastPort ? static_cast<std::uint8_t>(position) : kNone;
        diseqc.ui1_tone_burst = kNone;
        break;
    }
}

jint diseqc_position(const _TUNER_DISEQC_INFO_T& diseqc) {
    switch (diseqc.e_diseqc_type) {
    case kToneBurstOnly:
        return diseqc.ui1_tone_burst == kToneBurstA   ? kToneBurstPositionA
               : diseqc.ui1_tone_burst == kToneBurstB ? kToneBurstPositionB
                                                      : kNoPosition;
    case kCommittedSwitch:
        return diseqc.ui1_port;
    default:
        return kNoPosition;
    }
}

} // namespace tavro
