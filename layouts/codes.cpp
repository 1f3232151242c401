#include "layouts/codes.h"

#include "middleware/svl.h"
#include "middleware/tsl.h"

#include <iterator>

namespace tavro::layouts {
namespace {

constexpr NamedCode same(std::uint32_t number, const char* name) { return {static_cast<jint>(number), number, name}; }

constexpr NamedCode kBroadcastTypes[] = {same(kBroadcastDvb, "DVB"), same(kBroadcastType5, "type 5"),
                                         same(kBroadcastDtmb, "DTMB")};

constexpr NamedCode kMedia[] = {same(kMediumTerrestrial, "terrestrial"), same(kMediumCable, "cable"),
                                same(kMediumSatellite, "satellite")};

constexpr NamedCode kServiceTypes[] = {same(1, "audio and video"), same(2, "audio"),
                                       same(4, "audio and video"), same(5, "audio"),
                                       same(7, "audio and video"), same(8, "audio")};

constexpr NamedCode kRunningStatuses[] = {
    same(0, "undefined"), same(1, "not running"), same(2, "starts in a few seconds"),
    same(3, "pausing"),   same(4, "running"),     same(5, "service off-air")};

constexpr NamedCode kFreeCaModes[] = {same(0, "not scrambled"), same(1, "scrambled")};

constexpr NamedCode kPresence[] = {same(0, "absent"), same(1, "present")};

constexpr NamedCode kSdtServiceTypes[] = {
    same(0x01, "digital television"),
    same(0x02, "digital radio"),
    same(0x03, "Teletext"),
    same(0x04, "NVOD reference"),
    same(0x05, "NVOD time-shifted"),
    same(0x06, "mosaic"),
    same(0x07, "FM radio"),
    same(0x08, "DVB SRM"),
    same(0x0A, "advanced codec digital radio"),
    same(0x0B, "H.264/AVC mosaic"),
    same(0x0C, "data broadcast"),
    same(0x0E, "RCS map"),
    same(0x0F, "RCS FLS"),
    same(0x10, "DVB MHP"),
    same(0x11, "MPEG-2 HD digital television"),
    same(0x16, "H.264/AVC SD digital television"),
    same(0x17, "H.264/AVC SD NVOD time-shifted"),
    same(0x18, "H.264/AVC SD NVOD reference"),
    same(0x19, "H.264/AVC HD digital television"),
    same(0x1A, "H.264/AVC HD NVOD time-shifted"),
    same(0x1B, "H.264/AVC HD NVOD reference"),
    same(0x1C, "H.264/AVC 3D digital television"),
    same(0x1D, "H.264/AVC 3D NVOD time-shifted"),
    same(0x1E, "H.264/AVC 3D NVOD reference"),
    same(0x1F, "HEVC digital television"),
    same(0x20, "HEVC UHD digital television"),
};

constexpr NamedCode kStreamContents[] = {
    same(0x1, "MPEG-2 video"), same(0x2, "MPEG-1 Layer 2 audio"), same(0x3, "Teletext or subtitles"),
    same(0x4, "AC-3 audio"),   same(0x5, "H.264/AVC video"),      same(0x6, "HE AAC audio"),
    same(0x7, "DTS audio"),
};

constexpr NamedCode kPolarizations[] = {same(0, "horizontal"), same(1, "vertical"), same(2, "left"), same(3, "right")};

// Named as in scan tables.
constexpr NamedCode kModulations[] = {same(1, "QPSK"),    same(2, "PSK/8"),   same(3, "QAM/16"),
                                      same(4, "QAM/32"),  same(5, "QAM/64"),  same(6, "QAM/128"),
                                      same(7, "QAM/256"), same(8, "APSK/16"), same(9, "APSK/32")};

constexpr NamedCode kPilots[] = {same(0, "off"), same(1, "on")};

constexpr NamedCode kDiseqcTypes[] = {same(0, "tone burst only"), same(2, "committed switch")};
constexpr NamedCode kDiseqcTypesEx[] = {same(4, "extended switch")};
constexpr NamedCode kDiseqcTypesEx2[] = {same(5, "second extended switch")};
constexpr NamedCode kDiseqcPorts[] = {same(255, "none")};
constexpr NamedCode kToneBursts[] = {same(0, "burst A"), same(1, "burst B"), same(255, "none")};

constexpr char kStandard[] = "ETSI EN 300 468";
constexpr char kLibrary[] = "the values that the library treats specially";
constexpr char kImporter[] = "`./tavro import`; the numbers are the tuner's own, and a TV may use others";

// A table, and the Java constants of the fields that hold its numbers.
struct FieldCodes {
    CodeNames codes;
    const char* record;
    std::vector<const char*> fields;
};

const std::vector<FieldCodes>& unchanged() {
#define TAVRO_NAMES(NAME, NAMED, SOURCE)                                                                               \
    { NAME, nullptr, std::begin(NAMED), std::end(NAMED), SOURCE }
    static const std::vector<FieldCodes> all = {
        {TAVRO_NAMES("broadcast type", kBroadcastTypes, kLibrary), "", {"BROADCAST_TYPE"}},
        {TAVRO_NAMES("medium", kMedia, kLibrary), "transport stream", {"MEDIUM"}},
        {TAVRO_NAMES("service type", kServiceTypes, kLibrary), "service", {"SERVICE_TYPE"}},
        {TAVRO_NAMES("running status", kRunningStatuses, kStandard), "service", {"RUNNING_STATUS"}},
        {TAVRO_NAMES("free CA mode", kFreeCaModes, kStandard), "service", {"DVB_FREE_CA_MODE", "DTMB_FREE_CA_MODE"}},
        {TAVRO_NAMES("EIT present/following", kPresence, kStandard), "service", {"EIT_PF_FLAG"}},
        {TAVRO_NAMES("SDT service type", kSdtServiceTypes, kStandard),
         "service",
         {"DVB_SDT_SERVICE_TYPE", "TYPE_5_SDT_SERVICE_TYPE", "DTMB_SDT_SERVICE_TYPE"}},
        {TAVRO_NAMES("stream content", kStreamContents, kStandard), "service", {"STREAM_CONTENT"}},
        {TAVRO_NAMES("polarization", kPolarizations, kStandard), "transport stream", {"SAT_POLARIZATION"}},
        {TAVRO_NAMES("modulation", kModulations, kImporter),
         "transport stream",
         {"TER_MODULATION", "CAB_MODULATION", "SAT_MODULATION", "SAT_MODULATION_COPY"}},
        {TAVRO_NAMES("pilots", kPilots, kImporter), "transport stream", {"SAT_PILOT"}},
        {TAVRO_NAMES("DiSEqC type", kDiseqcTypes, kLibrary), "satellite", {"DISEQC_TYPE"}},
        {TAVRO_NAMES("DiSEqC port", kDiseqcPorts, kLibrary), "satellite", {"DISEQC_PORT"}},
        {TAVRO_NAMES("tone burst", kToneBursts, kLibrary), "satellite", {"TONE_BURST"}},
        {TAVRO_NAMES("extended DiSEqC type", kDiseqcTypesEx, kLibrary), "satellite", {"DISEQC_TYPE_EX"}},
        {TAVRO_NAMES("second extended DiSEqC type", kDiseqcTypesEx2, kLibrary), "satellite", {"DISEQC_TYPE_EX_2"}},
    };
#undef TAVRO_NAMES
    return all;
}

} // namespace

std::vector<CodeNames> all_codes() {
    std::vector<CodeNames> all = all_code_names();
    for (const FieldCodes& more : unchanged()) {
        all.push_back(more.codes);
    }
    return all;
}

const CodeNames* codes_of(const Record& record, const std::vector<Key>& keys, const RecordField& field) {
    for (const Key& key : keys) {
        for (const Target& target : key.targets) {
            if (target.field->path == field.path && target.codes != nullptr) {
                return target.codes;
            }
        }
    }
    for (const FieldCodes& more : unchanged()) {
        for (const char* name : more.fields) {
            if (field.java == name && (more.record[0] == '\0' || record.kind == more.record)) {
                return &more.codes;
            }
        }
    }
    return nullptr;
}

} // namespace tavro::layouts
