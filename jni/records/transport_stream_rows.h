// The keys of transport streams: where the values of a Java object go in a transport stream record.
#pragma once

#include "jni/records/to_record_rows.h"
#include "jni/records/transport_stream_codes.h"
#include "middleware/tsl.h"

namespace tavro::transport_stream_rows {

// Values with rules of their own, and the debug line of the name.
void put_by_medium(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_frequency(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_mode(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_fec_inner(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_modulation(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_standard(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_guard_interval(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_transmission_mode(const ToRecordRow& row, RecordObject& object, std::byte* record);
void put_alternate_frequencies(const ToRecordRow& row, RecordObject& object, std::byte* record);
void trace_ts_name(const ToRecordRow& row, const std::byte* record, jint value);

#define TS(MEMBER) TAVRO_PLACE(_TSL_REC_T, MEMBER)
#define TER(MEMBER) TS(u_tuner.t_ter.MEMBER)
#define CAB(MEMBER) TS(u_tuner.t_cab.MEMBER)
#define SAT(MEMBER) TS(u_tuner.t_sat.MEMBER)

// One variant per medium: terrestrial, cable, satellite.
inline constexpr Place kNowhere = {0, 0};
inline constexpr Variant kModeWord[] = {{TER(e_mode)}, {CAB(e_mode)}, {SAT(e_mode)}};
inline constexpr Variant kStandard[] = {{TER(e_mode), &kTerrestrialStandardCodes},
                                        {CAB(e_mode), &kCableStandardCodes},
                                        {SAT(e_mode), &kSatelliteStandardCodes}};
inline constexpr Variant kFecInner[] = {{TER(e_fec_inner)}, {CAB(e_fec_inner)}, {SAT(e_fec_inner)}};
inline constexpr Variant kFecOuter[] = {
    {TER(e_fec_outer), &kFecOuterCodes}, {CAB(e_fec_outer), &kFecOuterCodes}, {kNowhere}};
inline constexpr Variant kModulation[] = {{TER(e_mod)}, {CAB(e_mod)}, {SAT(e_mod)}};
inline constexpr Variant kSymbolRate[] = {{kNowhere}, {CAB(ui4_sym_rate)}, {SAT(ui4_sym_rate)}};
inline constexpr Variant kCodeRate[] = {
    {TER(e_code_rate), &kTerrestrialCodeRateCodes}, {kNowhere}, {SAT(e_code_rate), &kSatelliteCodeRateCodes}};
inline constexpr Variant kSignalLevel[] = {{TER(ui1_sig_level)}, {CAB(ui1_sig_level)}, {SAT(ui1_sig_level)}};
inline constexpr Variant kSignalQuality[] = {{TER(ui4_sig_quality)}, {CAB(ui4_sig_quality)}, {SAT(ui4_sig_quality)}};

// Rows without per-medium variants put the same bytes for every medium, even where another medium keeps something
// else there.
inline constexpr ToRecordRow kFirstRows[] = {
    integer("BroadcastType", "broadcastType", TS(e_bcst_type)),
    integer("BroadcastMedium", "broadcastMedium", TS(e_bcst_medium)),
    integer("NetworkId", "networkId", TS(ui2_nw_id)),
    integer("OriginalNetworkId", "originalNetworkId", TS(ui2_on_id)),
    integer("TransportStreamId", "transportStreamId", TS(ui2_ts_id)),
    record_id("TslNwlRecId", "tslNwlRecId", TS(ui1_nwl_id), TS(ui2_nwl_rec_id)),
    special("Frequency", "frequency", put_frequency, TS(ui4_freq)),
    code("Bandwidth", "bandwidth", TER(e_bandwidth), kBandwidthCodes),
    special("BroadcastMode", "broadcastMode", put_mode, kModeWord),
    integer("PlpId", "plpId", TER(ui1_plp_id)),
    integer("PlpGroupId", "plpGroupId", TER(ui1_plp_group_id)),
    short_text("NetworkName", "networkName", TS(ac_nw_name)),
    flag_if_positive("BarkerChannel", "barkerChannel", TS(ui4_flags), 0x2),
};

inline constexpr ToRecordRow kSubRows[] = {
    special("FecInner", "fecInner", put_fec_inner, kFecInner, &kFecInnerCodes),
    special("Modulation", "modulation", put_modulation, kModulation),
    special("Standard", "standard", put_standard, kStandard),
    special("GuardInterval", "guardInterval", put_guard_interval, TER(e_guard_interval), &kGuardIntervalTCodes),
    special("TransmissionMode", "transmissionMode", put_transmission_mode, TER(e_trans_mode), &kTransmissionModeCodes),
};

inline constexpr ToRecordRow kSub2Rows[] = {
    code("Hierarchy", "hierarchy", TER(e_hierarchy), kHierarchyCodes),
    special("FecOuter", "fecOuter", put_by_medium, kFecOuter),
    special("SymbolRate", "symbolRate", put_by_medium, kSymbolRate),
    integer("PilotInsert", "pilotInsert", SAT(ui1_pilot_insert)),
    code("RollOff", "rollOff", SAT(e_roll_off), kRollOffCodes),
    special("CodeRate", "codeRate", put_by_medium, kCodeRate),
    flag("IsHomeTransponder", "isHomeTransponder", TS(ui4_flags_ex), 0x800),
};

inline constexpr ToRecordRow kSub3Rows[] = {
    record_id("TslSatlRecId", "tslSatlRecId", TS(ui2_satl_id), TS(ui2_satl_rec_id)),
    short_text("AcTsName", "acTsName", TS(ac_ts_name), trace_ts_name),
    integer("TunerPolarizaTion", "tunerPolarizaTion", SAT(e_pol)),
    special("SignalStrength", "signalStrength", put_by_medium, kSignalLevel),
    special("SignalQuality", "signalQuality", put_by_medium, kSignalQuality),
};

inline constexpr ToRecordRow kSub4Rows[] = {
    special("AlternateFrequencyInfoList", "alternateFrequencyInfoList", put_alternate_frequencies, TS(at_alt_freq)),
    integer("RcKeyId", "rcKeyId", TS(ui1_rc_key_id)),
};

#undef TS
#undef TER
#undef CAB
#undef SAT

} // namespace tavro::transport_stream_rows
