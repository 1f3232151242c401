// The bytes that the conversion of transport stream objects writes, and its log lines.
#include "fake_jni.h"
#include "jni/records/transport_stream_record.h"
#include "script.h"
#include "scripted_test.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using tavro::Jni;
using tavro::test::FakeJni;
using tavro::test::FakeObject;

namespace {

using Lines = std::vector<std::string>;
using Bytes = std::array<unsigned char, sizeof(_TSL_REC_T)>;

// An int key and the bytes that it writes for each medium, from 0 (none) to 4 (unknown).
struct IntKey {
    const char* key;
    const char* field;
    std::size_t offsets[5]; // by medium; 0: nothing is stored
    std::size_t width;
};

constexpr std::size_t kNo = 0;

const IntKey kPlainKeys[] = {
    {"BroadcastType", "broadcastType", {4, 4, 4, 4, 4}, 1},
    {"NetworkId", "networkId", {12, 12, 12, 12, 12}, 2},
    {"OriginalNetworkId", "originalNetworkId", {14, 14, 14, 14, 14}, 2},
    {"TransportStreamId", "transportStreamId", {16, 16, 16, 16, 16}, 2},
    {"Frequency", "frequency", {kNo, 44, 44, 44, kNo}, 4},
    {"BroadcastMode", "broadcastMode", {120, 120, 80, 92, 120}, 4},
    {"PlpId", "plpId", {124, 124, 124, 124, 124}, 1},
    {"PlpGroupId", "plpGroupId", {164, 164, 164, 164, 164}, 1},
    {"SymbolRate", "symbolRate", {kNo, kNo, 48, 56, kNo}, 4},
    {"PilotInsert", "pilotInsert", {112, 112, 112, 112, 112}, 1},
    {"TunerPolarizaTion", "tunerPolarizaTion", {76, 76, 76, 76, 76}, 4},
    {"SignalStrength", "signalStrength", {kNo, 165, 92, 121, kNo}, 1},
    {"SignalQuality", "signalQuality", {kNo, 168, 96, 124, kNo}, 4},
    {"RcKeyId", "rcKeyId", {176, 176, 176, 176, 176}, 1},
};

// A key whose value is converted to a code.
struct CodeKey {
    const char* key;
    const char* field;
    std::size_t offsets[5];
    std::map<jint, std::uint32_t> codes;
    std::uint32_t fallback;
};

const std::map<jint, std::uint32_t> kBandwidths = {{6000, 1}, {7000, 2}, {8000, 3}, {5000, 4}, {10000, 5}, {1712, 6}};

const CodeKey kCodeKeys[] = {
    {"Bandwidth", "bandwidth", {48, 48, 48, 48, 48}, kBandwidths, 0},
    {"FecInner",
     "fecInner",
     {kNo, 56, 56, 68, kNo},
     {{1, 2}, {2, 3}, {3, 4}, {4, 6}, {5, 7}, {6, 8}, {7, 9}, {8, 10}, {9, 11}},
     0},
    {"TransmissionMode",
     "transmissionMode",
     {76, 76, 76, 76, 76},
     {{2, 5}, {3, 1}, {4, 6}, {5, 2}, {6, 7}, {7, 8}, {8, 3}, {9, 4}},
     0},
    {"Hierarchy", "hierarchy", {64, 64, 64, 64, 64}, {{4, 1}, {5, 2}, {6, 3}, {7, 4}}, 0},
    {"FecOuter", "fecOuter", {kNo, 52, 52, kNo, kNo}, {{1, 1}, {2, 2}}, 0},
    {"RollOff", "rollOff", {100, 100, 100, 100, 100}, {{3, 1}, {4, 2}}, 0},
    {"CodeRate",
     "codeRate",
     {kNo, 132, kNo, kNo, kNo},
     {{2, 1}, {3, 3}, {4, 4}, {5, 6}, {6, 7}, {7, 0}, {8, 2}, {9, 5}},
     0},
    {"CodeRate",
     "codeRate",
     {kNo, kNo, kNo, 108, kNo},
     {{2, 3}, {3, 5}, {4, 6}, {5, 8}, {6, 9}, {7, 2}, {8, 4}, {9, 7}, {10, 12}, {11, 10}},
     12},
};

class TransportStreamRecord : public tavro::test::ScriptedTest {
protected:
    TransportStreamRecord() {
        log_level("S");
        for (std::size_t i = 0; i < before.size(); ++i) {
            before[i] = static_cast<unsigned char>(0xA5 + i * 7);
        }
    }

    Bytes convert() {
        std::memcpy(&record, before.data(), before.size());
        Jni env(jni.env());
        _set_ts_info(env, FakeJni::ref(stream), record);
        Bytes bytes;
        std::memcpy(bytes.data(), &record, bytes.size());
        return bytes;
    }

    static void put(Bytes& bytes, std::size_t offset, std::size_t width, std::uint32_t value) {
        for (std::size_t i = 0; i < width; ++i) {
            bytes[offset + i] = static_cast<unsigned char>(value >> (8 * i));
        }
    }
    Bytes with(std::size_t offset, std::size_t width, std::uint32_t value) const {
        Bytes bytes = before;
        put(bytes, offset, width, value);
        return bytes;
    }
    void medium(std::uint8_t value) { before[5] = value; }

    void set(const char* key, const char* field, jint value) {
        stream.keys = {key};
        stream.int_fields = {{field, value}};
    }
    void set(const char* key, const char* field, FakeObject* value) {
        stream.keys = {key};
        stream.object_fields = {{field, value}};
    }

    FakeObject& alternates(std::vector<std::pair<jint, jint>> entries) {
        FakeObject& array = jni.object("alternates");
        for (const auto& [frequency, bandwidth] : entries) {
            FakeObject& entry = jni.object("entry");
            entry.int_fields = {{"alternateFreq", frequency}, {"alternateBandwidth", bandwidth}};
            array.elements.push_back(&entry);
        }
        return array;
    }

    FakeJni jni;
    FakeObject& stream = jni.object("stream");
    Bytes before{};
    _TSL_REC_T record;
};

TEST_F(TransportStreamRecord, WithoutAnyKeyStaysByteForByte) {
    for (std::uint8_t m = 0; m <= 4; ++m) {
        medium(m);
        EXPECT_EQ(convert(), before);
    }
}

TEST_F(TransportStreamRecord, EveryIntKeyWritesItsBytesByMediumAndNoOther) {
    for (const IntKey& key : kPlainKeys) {
        for (std::uint8_t m = 0; m <= 4; ++m) {
            medium(m);
            for (const jint value : {0x12345678, -2, 0}) {
                set(key.key, key.field, value);
                EXPECT_EQ(convert(), key.offsets[m] == kNo
                                         ? before
                                         : with(key.offsets[m], key.width, static_cast<std::uint32_t>(value)))
                    << key.key << " medium " << int(m) << " value " << value;
            }
        }
    }
}

TEST_F(TransportStreamRecord, EveryCodeKeyConvertsByItsTableAndFallsBack) {
    for (const CodeKey& key : kCodeKeys) {
        for (std::uint8_t m = 0; m <= 4; ++m) {
            if (key.offsets[m] == kNo) {
                continue;
            }
            medium(m);
            for (jint value = -1; value <= 12; ++value) {
                set(key.key, key.field, value);
                const auto code = key.codes.find(value);
                EXPECT_EQ(convert(), with(key.offsets[m], 4, code == key.codes.end() ? key.fallback : code->second))
                    << key.key << " medium " << int(m) << " value " << value;
            }
            for (const auto& [value, code] : key.codes) {
                set(key.key, key.field, value);
                EXPECT_EQ(convert(), with(key.offsets[m], 4, code)) << key.key << " value " << value;
            }
        }
    }
}

TEST_F(TransportStreamRecord, CodesWithoutAFieldForTheMediumAreDropped) {
    const struct {
        const char* key;
        const char* field;
        std::vector<std::uint8_t> media;
    } cases[] = {
        {"FecInner", "fecInner", {0, 4}}, {"FecOuter", "fecOuter", {0, 3, 4}}, {"CodeRate", "codeRate", {0, 2, 4}}};
    for (const auto& c : cases) {
        for (const std::uint8_t m : c.media) {
            medium(m);
            set(c.key, c.field, 2);
            EXPECT_EQ(convert(), before) << c.key << int(m);
        }
    }
}

TEST_F(TransportStreamRecord, Bandwidth7999BecomesZeroAnd1712BecomesSix) {
    set("Bandwidth", "bandwidth", 7999);
    EXPECT_EQ(convert(), with(48, 4, 0));
    set("Bandwidth", "bandwidth", 1712);
    EXPECT_EQ(convert(), with(48, 4, 6));
}

TEST_F(TransportStreamRecord, CodeRateOneIs12OnSatellite0OnTerrestrialAndUnsetOnCable) {
    set("CodeRate", "codeRate", 1);
    medium(3);
    EXPECT_EQ(convert(), with(108, 4, 12));
    medium(1);
    EXPECT_EQ(convert(), with(132, 4, 0));
    medium(2);
    EXPECT_EQ(convert(), before);
}

TEST_F(TransportStreamRecord, ModulationHasASharedFieldAndOneForSatelliteAsWell) {
    for (const jint value : {0, 1, 5, 28, 29, -1}) {
        const auto code = static_cast<std::uint32_t>(value >= 1 && value <= 28 ? value : 0);
        set("Modulation", "modulation", value);
        for (const std::uint8_t m : {0, 1, 2, 4}) {
            medium(m);
            EXPECT_EQ(convert(), with(60, 4, code));
        }
        medium(3);
        Bytes both = with(60, 4, code);
        put(both, 72, 4, code);
        EXPECT_EQ(convert(), both);
    }
}

TEST_F(TransportStreamRecord, TheMediumOfTheObjectAppliesToTheKeysAfterIt) {
    stream.keys = {"BroadcastMedium", "SignalQuality"};
    stream.int_fields = {{"broadcastMedium", 0x102}, {"signalQuality", 77}};
    medium(3);
    Bytes expected = with(5, 1, 2);
    put(expected, 96, 4, 77);
    EXPECT_EQ(convert(), expected);
}

TEST_F(TransportStreamRecord, StandardsSetTheModeOfTheJavaMediumEvenWithoutItsKey) {
    const struct {
        jint java_medium;
        std::size_t offset;
        std::map<jint, std::uint32_t> codes;
    } cases[] = {{1, 120, {{3, 1}, {4, 2}}}, {2, 80, {{1, 1}, {2, 2}}}, {3, 92, {{5, 1}, {6, 2}}}};
    medium(4); // the medium of the record is ignored
    for (const auto& c : cases) {
        for (jint standard = 0; standard <= 7; ++standard) {
            set("Standard", "standard", standard);
            stream.int_fields["broadcastMedium"] = c.java_medium;
            const auto code = c.codes.find(standard);
            EXPECT_EQ(convert(), with(c.offset, 4, code == c.codes.end() ? 0 : code->second));
        }
    }
    for (const jint java_medium : {0, 4, -1, 257}) {
        set("Standard", "standard", 3);
        stream.int_fields["broadcastMedium"] = java_medium;
        EXPECT_EQ(convert(), before);
    }
}

TEST_F(TransportStreamRecord, GuardIntervalsDependOnTheTerrestrialModeForEveryMedium) {
    for (std::uint8_t m = 0; m <= 4; ++m) {
        medium(m);
        for (jint value = 0; value <= 10; ++value) {
            set("GuardInterval", "guardInterval", value);
            before = with(120, 4, 2);
            EXPECT_EQ(convert(), with(148, 4, value >= 2 && value <= 8 ? static_cast<std::uint32_t>(value - 1) : 0));
            before = with(120, 4, 1);
            EXPECT_EQ(convert(), with(144, 4, value >= 2 && value <= 5 ? static_cast<std::uint32_t>(value - 1) : 0));
            for (const std::uint32_t mode : {0U, 3U}) {
                before = with(120, 4, mode);
                EXPECT_EQ(convert(), before);
            }
        }
    }
}

TEST_F(TransportStreamRecord, TheGuardIntervalDependsOnTheModeThatTheSameObjectSets) {
    medium(1);
    before = with(120, 4, 0);
    stream.keys = {"Standard", "GuardInterval"};
    stream.int_fields = {{"standard", 4}, {"broadcastMedium", 1}, {"guardInterval", 8}};
    Bytes expected = with(120, 4, 2);
    put(expected, 148, 4, 7);
    EXPECT_EQ(convert(), expected);
}

TEST_F(TransportStreamRecord, ThePolarizationWinsOverTheTransmissionMode) {
    stream.keys = {"TransmissionMode", "TunerPolarizaTion"};
    stream.int_fields = {{"transmissionMode", 3}, {"tunerPolarizaTion", 9}};
    EXPECT_EQ(convert(), with(76, 4, 9));
}

TEST_F(TransportStreamRecord, TheBarkerFlagIsSetByPositiveValuesTheHomeFlagByOneOnly) {
    for (const std::uint32_t word : {0U, 0xFFFFFFFFU}) {
        for (const jint value : {-1, 0, 1, 2}) {
            before = with(8, 4, word);
            set("BarkerChannel", "barkerChannel", value);
            EXPECT_EQ(convert(), with(8, 4, value > 0 ? word | 0x2U : word & ~0x2U));
            before = with(704, 4, word);
            set("IsHomeTransponder", "isHomeTransponder", value);
            EXPECT_EQ(convert(), with(704, 4, value == 1 ? word | 0x800U : word & ~0x800U));
        }
    }
}

TEST_F(TransportStreamRecord, RecordIdentifiersSetTheNetworkAndTheSatellite) {
    set("TslNwlRecId", "tslNwlRecId", &jni.string("300,70000"));
    Bytes expected = with(18, 2, 4464);
    put(expected, 20, 1, 44);
    EXPECT_EQ(convert(), expected);
    set("TslSatlRecId", "tslSatlRecId", &jni.string("7,9"));
    EXPECT_EQ(convert(), with(712, 4, 9U << 16 | 7U));
    for (const auto& [key, field] : {std::pair{"TslNwlRecId", "tslNwlRecId"}, {"TslSatlRecId", "tslSatlRecId"}}) {
        set(key, field, &jni.string("x,9"));
        EXPECT_EQ(convert(), before);
        set(key, field, nullptr);
        EXPECT_EQ(convert(), before);
    }
}

TEST_F(TransportStreamRecord, NamesShorterThanTheirFieldAreStoredAndTheRestIsKept) {
    const struct {
        const char* key;
        const char* field;
        std::size_t offset;
        std::size_t limit;
    } cases[] = {{"NetworkName", "networkName", 544, 32}, {"AcTsName", "acTsName", 212, 41}};
    for (const auto& c : cases) {
        for (const std::size_t length : {std::size_t{0}, std::size_t{5}, c.limit - 1}) {
            set(c.key, c.field, &jni.string(std::string(length, 'n')));
            Bytes expected = before;
            std::memset(expected.data() + c.offset, 'n', length);
            expected[c.offset + length] = 0;
            EXPECT_EQ(convert(), expected) << c.key << length;
        }
        for (const std::size_t length : {c.limit, c.limit + 1}) {
            set(c.key, c.field, &jni.string(std::string(length, 'n')));
            EXPECT_EQ(convert(), before) << c.key << length;
        }
        set(c.key, c.field, nullptr);
        EXPECT_EQ(convert(), before) << c.key;
    }
    EXPECT_EQ(jni.journal_with("ReleaseStringUTFChars"), Lines{});
}

TEST_F(TransportStreamRecord, UpToFiveAlternateFrequenciesAreStoredAndTheRestZeroed) {
    const auto entries = [&](const std::vector<std::pair<std::uint32_t, std::uint32_t>>& list) {
        Bytes bytes = before;
        std::memset(bytes.data() + 576, 0, 40);
        for (std::size_t i = 0; i < list.size(); ++i) {
            put(bytes, 576 + 8 * i, 4, list[i].first);
            put(bytes, 580 + 8 * i, 4, list[i].second);
        }
        return bytes;
    };
    const char* key = "AlternateFrequencyInfoList";
    const char* field = "alternateFrequencyInfoList";
    set(key, field, &alternates({}));
    EXPECT_EQ(convert(), entries({}));
    set(key, field, &alternates({{474000, 8000}, {-1, 10000}, {1, 2}}));
    EXPECT_EQ(convert(), entries({{474000, 3}, {0xFFFFFFFF, 5}, {1, 0}}));
    set(key, field, &alternates({{1, 6000}, {2, 7000}, {3, 8000}, {4, 5000}, {5, 1712}}));
    EXPECT_EQ(convert(), entries({{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 6}}));
    set(key, field, &alternates({{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}, {6, 6}}));
    EXPECT_EQ(convert(), before);
    set(key, field, nullptr);
    EXPECT_EQ(convert(), before);
    FakeObject& gap = alternates({{1, 6000}, {2, 7000}});
    gap.elements[0] = nullptr;
    set(key, field, &gap);
    EXPECT_EQ(convert(), entries({{0, 0}, {2, 2}}));
}

TEST_F(TransportStreamRecord, EveryKeyThatIsPresentWritesItsLine) {
    log_level("D");
    medium(4);
    before = with(44, 4, 1234);
    before[212] = 'o';
    before[213] = 0;
    stream.keys = {"Frequency",
                   "FecInner",
                   "Modulation",
                   "Standard",
                   "TransmissionMode",
                   "AcTsName",
                   "AlternateFrequencyInfoList"};
    stream.int_fields = {{"frequency", 99}, {"fecInner", 10},       {"modulation", 29},
                         {"standard", 3},   {"broadcastMedium", 7}, {"transmissionMode", 2}};
    stream.object_fields = {{"acTsName", &jni.string(std::string(41, 'x'))},
                            {"alternateFrequencyInfoList", &alternates({{5, 10000}})}};
    convert();
    const std::string prefix = "log 3 -: [jni_VltTvList_Init] ";
    EXPECT_EQ(jni.journal_with("log 3"), (Lines{
                                             prefix + "[_set_ts_info][2544] ",
                                             prefix + "[_set_freq_by_medium][2537] ui4_freq:1234 iFrequency:99 ",
                                             prefix + "[_get_fecInner_by_switch][2228] fecInner:0 ",
                                             prefix + "[_get_mod_by_switch][2320] mod:0 ",
                                             prefix + "[_set_sub_ts_info][2403] BroadcastMedium=7 iStandard3 ",
                                             prefix + "[_get_transmission_mode_by_switch][2352] transMode:5 ",
                                             prefix + "ac_ts_name = o\n",
                                             prefix + "iAlternateFreq = 5 iAlternateBandwidth=5 \n",
                                         }));
}

TEST_F(TransportStreamRecord, AValueOutsideItsTableLeavesTheOutputOfItsFunctionAlone) {
    TUNER_FEC_INNER_T fec = 99;
    _get_fecInner_by_switch(10, fec);
    EXPECT_EQ(fec, 99U);
    _get_fecInner_by_switch(9, fec);
    EXPECT_EQ(fec, 11U);
    TUNER_MODULATION_T modulation = 99;
    _get_mod_by_switch(29, modulation);
    EXPECT_EQ(modulation, 99U);
    _get_mod_by_switch(28, modulation);
    EXPECT_EQ(modulation, 28U);
    TUNER_TRANSMISSION_MODE_T mode = 99;
    _get_transmission_mode_by_switch(1, mode);
    EXPECT_EQ(mode, 99U);
    _get_transmission_mode_by_switch(9, mode);
    EXPECT_EQ(mode, 4U);
}

TEST_F(TransportStreamRecord, TheModeFieldDependsOnTheMedium) {
    const std::size_t offsets[] = {120, 120, 80, 92, 120};
    for (std::uint8_t m = 0; m <= 4; ++m) {
        _TSL_REC_T zero = {};
        zero.e_bcst_medium = m;
        set_mode(&zero, 0x01020304);
        std::uint32_t stored = 0;
        std::memcpy(&stored, reinterpret_cast<const char*>(&zero) + offsets[m], sizeof(stored));
        EXPECT_EQ(stored, 0x01020304U) << int(m);
        EXPECT_EQ(get_mode(&zero), 0x01020304U) << int(m);
    }
}

TEST_F(TransportStreamRecord, AnyFailureEndsTheConversionWithTheExceptionPending) {
    stream.keys = {"BroadcastType",   "TslNwlRecId",
                   "Frequency",       "NetworkName",
                   "FecInner",        "Standard",
                   "Hierarchy",       "CodeRate",
                   "AcTsName",        "GuardInterval",
                   "RcKeyId",         "SymbolRate",
                   "BroadcastMode",   "AlternateFrequencyInfoList",
                   "BarkerChannel",   "Modulation",
                   "TransmissionMode"};
    stream.object_fields = {{"tslNwlRecId", &jni.string("5,9")},
                            {"networkName", &jni.string("One")},
                            {"acTsName", &jni.string("Two")},
                            {"alternateFrequencyInfoList", &alternates({{1, 2}})}};
    bool clean = false;
    for (int n = 1; !clean; ++n) {
        FakeJni failing;
        failing.fail_nth(n);
        Jni env(failing.env());
        std::memcpy(&record, before.data(), before.size());
        _set_ts_info(env, FakeJni::ref(stream), record);
        clean = !failing.exception_pending();
        EXPECT_EQ(env.failed(), !clean);
        EXPECT_EQ(failing.forbidden_calls(), Lines{}) << n;
        ASSERT_LT(n, 400);
    }
}

} // namespace
